// Storyboard and StoryboardCollection as a JScript host sees them: created
// by their programmatic identifiers, called late-bound, the set walked with
// an Enumerator, with MSXML documents made by the script. One line per check
// ("ok ..." or "not ok ..."), then the sentinel line; the exit code is the
// number of failed checks.

var sb = null;
check("Quillbank.Storyboard is created by its programmatic identifier", function () {
    sb = new ActiveXObject("Quillbank.Storyboard");
    return sb !== null;
});
check("a new storyboard has a fresh identifier and the default title", function () {
    return (sb.SBID.length == 36 && sb.Title == "New Storyboard" && sb.Identifier === "" && sb.SBType === "" &&
            sb.Classification === "") || (sb.SBID + " " + sb.Title);
});
check("the text properties can be set", function () {
    sb.Title = "Halves";
    sb.Identifier = "p1";
    sb.SBType = "page";
    sb.Classification = "easy";
    return (sb.Title == "Halves" && sb.Identifier == "p1" && sb.SBType == "page" && sb.Classification == "easy") ||
        sb.Title;
});
check("Properties and Children are the same objects each time", function () {
    sb.Properties.SetLong("width", 640);
    var child = new ActiveXObject("Quillbank.ChildElement");
    child.Name = "box";
    sb.Children.Append(child);
    return (sb.Properties === sb.Properties && sb.Children === sb.Children && sb.Children.Item(0) === child &&
            sb.Properties.GetLong("width", 0) == 640) || "different objects";
});
check("Clone keeps the identifier and copies deeply", function () {
    var clone = sb.Clone();
    return (clone !== sb && clone.SBID == sb.SBID && clone.Title == "Halves" && clone.Children !== sb.Children &&
            clone.Children.Count == 1 && clone.Properties.GetLong("width", 0) == 640) || clone.SBID;
});
check("Duplicate gives a new identifier and prefixes the title", function () {
    var copy = sb.Duplicate("Copy of ");
    var plain = sb.Duplicate();
    return (copy.SBID != sb.SBID && copy.Title == "Copy of Halves" && plain.Title == "Halves") || copy.Title;
});
check("CopyFrom copies all but the identifier and returns nothing", function () {
    var target = new ActiveXObject("Quillbank.Storyboard");
    var id = target.SBID;
    var returned = target.CopyFrom(sb);
    return (typeof returned == "undefined" && target.SBID == id && target.Title == "Halves" &&
            target.Children.Count == 1) || target.Title;
});
check("ToXMLElement writes the storyboard with its bag and list", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = sb.ToXMLElement(d);
    d.appendChild(element);
    var root = d.documentElement;
    return (root.nodeName == "storyboard" && root.getAttribute("sbid") == sb.SBID &&
            root.getAttribute("title") == "Halves" && root.childNodes.length == 2 &&
            root.childNodes.item(0).nodeName == "ppc" && root.childNodes.item(1).nodeName == "cec" &&
            root.getAttribute("shortid") === null) || d.xml;
});
check("FromXMLElement reads what ToClearXMLElement wrote", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.appendChild(sb.ToClearXMLElement(d));
    var copy = new ActiveXObject("Quillbank.Storyboard");
    copy.FromXMLElement(d.documentElement);
    return (copy.SBID == sb.SBID && copy.Title == "Halves" && copy.Children.Item(0).Name == "box" &&
            copy.Properties.GetLong("width", 0) == 640) || copy.Title;
});
checkRaises("FromXMLElement of an element named Storyboard raises 0x800403E9", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML("<Storyboard/>");
    sb.FromXMLElement(d.documentElement);
}, function (x) {
    return (x.number == -2147220503 && x.description == "Element is not a <storyboard> element" &&
            sb.Title == "Halves") || (x.number + " " + x.description);
});
checkRaises("CopyFrom of null raises 94", function () {
    sb.CopyFrom(null);
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "SB cannot be null") || (x.number + " " + x.description);
});
checkRaises("ToClearXMLElement of null raises 94", function () {
    sb.ToClearXMLElement(null);
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "Document cannot be null") || (x.number + " " + x.description);
});

var set = null;
function board(title) {
    var made = new ActiveXObject("Quillbank.Storyboard");
    made.Title = title;
    return made;
}
function titles(s) {
    var text = "";
    for (var walk = new Enumerator(s); !walk.atEnd(); walk.moveNext()) {
        text += walk.item().Title;
    }
    return text;
}
var a = board("a"), b = board("b"), c = board("c");
check("Quillbank.StoryboardCollection is created by its programmatic identifier", function () {
    set = new ActiveXObject("Quillbank.StoryboardCollection");
    return (set !== null && set.Count === 0 && set.CurrentSB === null && set.CurrentSBID === "") || set.Count;
});
check("Add returns the storyboard itself and keeps the caller's object", function () {
    var added = set.Add(a);
    set.Add(b);
    set.Add(c);
    return (added === a && set.Count == 3 && set.Item(b.SBID) === b && set(c.SBID) === c &&
            set.Contains(a.SBID.toLowerCase()) && !set.Contains("absent")) || set.Count;
});
check("Item of an unknown identifier gives null", function () {
    return set.Item("absent") === null || "not null";
});
check("an Enumerator walks the storyboards in order", function () {
    return titles(set) == "abc" || titles(set);
});
check("CurrentSB is set by reference; CurrentSBID follows it", function () {
    set.CurrentSB = b;
    var id = set.CurrentSBID;
    set.CurrentSBID = "absent";
    var none = set.CurrentSB;
    set.CurrentSBID = c.SBID;
    return (id == b.SBID && none === null && set.CurrentSB === c) || id;
});
check("Add of an existing identifier moves it to the end and drops the current storyboard", function () {
    set.Add(c);
    return (titles(set) == "abc" && set.CurrentSB === null) || (titles(set) + " " + set.CurrentSBID);
});
check("Remove drops an entry and ignores an unknown identifier", function () {
    var copy = set.Clone(false);
    copy.Remove(a.SBID);
    copy.Remove("absent");
    return (titles(copy) == "bc" && copy.Item(b.SBID) === b) || titles(copy);
});
check("Clone copies the storyboards by default and shares them when asked", function () {
    var deep = set.Clone();
    var shallow = set.Clone(false);
    return (deep.Item(a.SBID) !== a && deep.Item(a.SBID).Title == "a" && shallow.Item(a.SBID) === a) || "differs";
});
check("RemoveCollection and AddCollection work with other sets", function () {
    var some = new ActiveXObject("Quillbank.StoryboardCollection");
    some.Add(a);
    var copy = set.Clone(false);
    copy.RemoveCollection(some);
    var removed = titles(copy);
    copy.AddCollection(some);
    var added = titles(copy);
    copy.AddCollection(set, false);
    return (removed == "bc" && added == "bca" && titles(copy) == "bca") || (removed + " " + added);
});
check("ToXMLElement numbers the storyboards", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.appendChild(set.ToXMLElement(d));
    var nodes = d.documentElement.childNodes;
    return (d.documentElement.nodeName == "storyboards" && nodes.length == 3 &&
            nodes.item(2).getAttribute("shortid") == "2") || d.xml;
});
check("FromXMLElement rebuilds the set", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.appendChild(set.ToClearXMLElement(d));
    var copy = new ActiveXObject("Quillbank.StoryboardCollection");
    copy.FromXMLElement(d.documentElement);
    return (titles(copy) == "abc" && copy.Item(a.SBID) !== a) || titles(copy);
});
checkRaises("ToClearXMLElement of null raises 94 under the writer's own name", function () {
    set.ToClearXMLElement(null);
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "Document cannot be null") || (x.number + " " + x.description);
});
checkRaises("Add of a child element is a clear automation error", function () {
    set.Add(new ActiveXObject("Quillbank.ChildElement"));
}, function (x) {
    return x.number != 0 || "number 0";
});
check("Clear empties the set and returns nothing", function () {
    var copy = set.Clone(false);
    copy.CurrentSB = a;
    var returned = copy.Clear();
    return (typeof returned == "undefined" && copy.Count === 0 && copy.CurrentSB === null) || copy.Count;
});

finish("JScript Storyboard and StoryboardCollection suite");
