// ChildElement and ChildElementCollection as a JScript host sees them:
// created by their programmatic identifiers, called late-bound, with MSXML
// documents made by the script. One line per check ("ok ..." or
// "not ok ..."), then the sentinel line; the exit code is the number of
// failed checks.


// ChildElement
var e = null;
check("Quillbank.ChildElement is created by its programmatic identifier", function () {
    e = new ActiveXObject("Quillbank.ChildElement");
    return e !== null;
});
check("a new child element has no name, no type and no properties", function () {
    return (e.Name === "" && e.ElementType === "" && e.Count === 0) ||
        (e.Name + "|" + e.ElementType + "|" + e.Count);
});
check("Name and ElementType can be set; the name is the bag's name", function () {
    e.Name = "box";
    e.ElementType = "shape";
    var bag = e.PPCObject;
    var seen = bag.Name;
    bag.Name = "frame";
    var back = e.Name;
    e.Name = "box";
    return (seen == "box" && back == "frame" && e.ElementType == "shape") || (seen + " " + back);
});
check("PPCObject is the same object each time and changes through it are the element's", function () {
    var a = e.PPCObject;
    var b = e.PPCObject;
    a.SetString("through", "bag");
    return (a === b && e.GetString("through", "") == "bag") || "not the same bag";
});
check("typed setters and getters forward to the bag", function () {
    e.SetString("caption", "Halves");
    e.SetLong("width", 640, 1);
    e.SetDouble("ratio", 0.5);
    e.SetBoolean("visible", true);
    e.SetColor("ink", 0x102030);
    return (e.GetString("CAPTION", "") == "Halves" && e.GetLong("width", 0) == 640 &&
            e.GetDouble("ratio", 0) == 0.5 && e.GetBoolean("visible", false) === true &&
            e.GetColor("ink", 0) == 0x102030 && e.PPCObject.GetEncodingType("width") == 1 &&
            e.Exists("ratio") && e.Count == 6) || e.ToXMLString();
});
check("Remove forwards to the bag and ignores an absent name", function () {
    e.Remove("through");
    e.Remove("absent");
    return (!e.Exists("through") && e.Count == 5) || e.Count;
});
check("ToXMLString writes the ce element with its name, type and properties", function () {
    var text = e.ToXMLString();
    return (text.indexOf('<ce name="box" type="shape">') === 0 && text.indexOf("<ppc") < 0 &&
            text.indexOf('name="caption"') > 0) || text;
});
check("FromXMLString reads back what ToXMLString wrote", function () {
    var copy = new ActiveXObject("Quillbank.ChildElement");
    copy.FromXMLString(e.ToXMLString());
    return (copy.Name == "box" && copy.ElementType == "shape" && copy.ToXMLString() == e.ToXMLString()) ||
        copy.ToXMLString();
});
check("ToClearXMLString writes every property in the clear", function () {
    var text = e.ToClearXMLString();
    return (text.indexOf('<ce name="box" type="shape">') === 0 && text.indexOf('<intProp name="width" value="640"/>') > 0) || text;
});
check("Clone gives a new, equal element", function () {
    var clone = e.Clone();
    return (clone !== e && clone.ToXMLString() == e.ToXMLString() && clone.PPCObject !== e.PPCObject) || "differs";
});
check("a nested bag set on the element is a copy, handed out as one object", function () {
    var inner = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    inner.SetString("x", "1");
    e.SetPPC("inner", inner);
    var a = e.GetPPC("inner", null);
    var b = e.GetPPC("inner", null);
    return (a === b && a !== inner && a.GetString("x", "") == "1") || "not the same object";
});
check("GetPPC of an absent name gives the caller's default back", function () {
    var mine = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    return e.GetPPC("absent", mine) === mine || "another object";
});
check("FromPPC copies the bag and its name and returns nothing", function () {
    var other = new ActiveXObject("Quillbank.ChildElement");
    other.ElementType = "kept";
    var bag = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    bag.Name = "fromBag";
    bag.SetLong("n", 3);
    var returned = other.FromPPC(bag);
    bag.SetLong("n", 4);
    return (typeof returned == "undefined" && other.Name == "fromBag" && other.GetLong("n", 0) == 3 &&
            other.ElementType == "kept") || (other.Name + " " + other.GetLong("n", 0));
});
check("FromPPC of null gives a fresh bag named properties", function () {
    var other = new ActiveXObject("Quillbank.ChildElement");
    other.SetLong("n", 3);
    other.FromPPC(null);
    return (other.Name == "properties" && other.Count === 0) || (other.Name + " " + other.Count);
});
check("ToXMLElement creates an unattached ce element in the host's document", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = e.ToXMLElement(d);
    var unattached = element.parentNode === null;
    d.appendChild(element);
    return (element.nodeName == "ce" && unattached && d.documentElement.getAttribute("type") == "shape") ||
        element.nodeName;
});
check("FromXMLElement reads the host's element; missing attributes are empty", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML('<ce><stringProp name="a">b</stringProp></ce>');
    var other = new ActiveXObject("Quillbank.ChildElement");
    other.ElementType = "old";
    other.FromXMLElement(d.documentElement);
    return (other.Name === "" && other.ElementType === "" && other.GetString("a", "") == "b") ||
        (other.Name + "|" + other.ElementType + "|" + other.Count);
});
checkRaises("FromXMLElement of a ppc element raises 0x800403E9", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML("<ppc/>");
    e.FromXMLElement(d.documentElement);
}, function (x) {
    return (x.number == -2147220503 && x.description == "Element is not a <ce> element") ||
        (x.number + " " + x.description);
});
checkRaises("ToClearXMLElement of a null document raises 94 under ToXMLElement's name", function () {
    e.ToClearXMLElement(null);
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "Document cannot be null") || (x.number + " " + x.description);
});
checkRaises("FromXMLString of text that does not parse raises 0x800403E9", function () {
    e.FromXMLString("<ce");
}, function (x) {
    return (x.number == -2147220503 && x.description == "XML string could not be parsed.") ||
        (x.number + " " + x.description);
});
checkRaises("SetPPC of an object that is not a bag is a clear automation error", function () {
    e.SetPPC("other", new ActiveXObject("Quillbank.ChildElement"));
}, function (x) {
    return x.number != 0 || "number 0";
});
check("FromXMLString of the empty text keeps the type and empties the element", function () {
    var other = e.Clone();
    other.FromXMLString("");
    return (other.Name === "" && other.ElementType == "shape" && other.Count === 0) || other.ToXMLString();
});

// ChildElementCollection
var list = null;
function named(name) {
    var element = new ActiveXObject("Quillbank.ChildElement");
    element.Name = name;
    return element;
}
function names(l) {
    var text = "";
    for (var i = 0; i < l.Count; i++) {
        text += l.Item(i).Name;
    }
    return text;
}
var a = named("a"), b = named("b"), c = named("c"), x = named("x");
check("Quillbank.ChildElementCollection is created by its programmatic identifier", function () {
    list = new ActiveXObject("Quillbank.ChildElementCollection");
    return list !== null;
});
check("a new list is named children and is empty", function () {
    return (list.Name == "children" && list.Length == -1 && list.Count === 0 && list.Item(0) === null &&
            list.IndexOf(x) == -1) || (list.Name + " " + list.Length + " " + list.Count);
});
check("Append keeps the caller's objects; Item hands them back", function () {
    list.Append(a);
    list.Append(b);
    list.Append(c);
    list.Append(null);
    return (list.Count == 3 && list.Length == 2 && list.Item(0) === a && list.Item(2) === c &&
            list.Item(3) === null && list.Item(-1) === null) || names(list);
});
check("IndexOf compares by identity; an absent element is at 0", function () {
    return (list.IndexOf(b) == 1 && list.IndexOf(c) == 2 && list.IndexOf(x) === 0) || list.IndexOf(x);
});
check("Insert places, and appends when the index is out of range", function () {
    list.Insert(x, 1);
    var placed = names(list);
    list.RemoveAt(1);
    list.Insert(x, -5);
    var appended = names(list);
    list.RemoveAt(3);
    list.Insert(null, 0);
    return (placed == "axbc" && appended == "abcx" && names(list) == "abc") || (placed + " " + appended);
});
check("the move members exchange elements", function () {
    list.MoveFirst(c);
    var first = names(list);
    list.MoveLast(c);
    var last = names(list);
    list.MovePrevious(a);
    list.MoveNext(c);
    var edges = names(list);
    list.MoveTo(a, 7);
    list.MoveTo(a, 1);
    var moved = names(list);
    list.MoveTo(a, 0);
    return (first == "cba" && last == "abc" && edges == "abc" && moved == "bac" && names(list) == "abc") ||
        (first + " " + last + " " + edges + " " + moved);
});
check("Swap exchanges, and ignores bad indexes", function () {
    list.Swap(0, 2);
    var swapped = names(list);
    list.Swap(0, 2);
    list.Swap(-1, 0);
    list.Swap(0, 3);
    list.Swap(1, 1);
    return (swapped == "cba" && names(list) == "abc") || swapped;
});
check("Remove of an absent element removes the first", function () {
    var copy = list.Clone();
    copy.Remove(x);
    copy.RemoveAt(7);
    return (names(copy) == "bc") || names(copy);
});
check("Clone is deep and keeps the order", function () {
    var copy = list.Clone();
    return (copy !== list && names(copy) == "abc" && copy.Item(0) !== a && copy.Name == list.Name) || names(copy);
});
check("ToXMLElement writes cec with one ce per element", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = list.ToXMLElement(d);
    d.appendChild(element);
    var ces = d.documentElement.childNodes;
    return (element.nodeName == "cec" && d.documentElement.getAttribute("name") == "children" && ces.length == 3 &&
            ces.item(1).getAttribute("name") == "b") || d.xml;
});
check("FromXMLElement reads ce children in order and skips the rest", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML('<cec><ce name="p"/>text<ppc/><ce name="q"/></cec>');
    var other = new ActiveXObject("Quillbank.ChildElementCollection");
    other.Name = "old";
    other.FromXMLElement(d.documentElement);
    return (other.Name == "children" && names(other) == "pq") || (other.Name + " " + names(other));
});
check("ToClearXMLElement writes the clear form", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = list.ToClearXMLElement(d);
    return (element.nodeName == "cec" && element.childNodes.length == 3) || element.xml;
});
checkRaises("FromXMLElement of a ce element raises 0x800403E9", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML("<ce/>");
    list.FromXMLElement(d.documentElement);
}, function (y) {
    return (y.number == -2147220503 && y.description == "Element is not a <cec> element") ||
        (y.number + " " + y.description);
});
checkRaises("ToXMLElement of a null document raises 94", function () {
    list.ToXMLElement(null);
}, function (y) {
    return (hostNumber(y) == 94 && y.description == "Document cannot be null") || (y.number + " " + y.description);
});
checkRaises("Append of a bag is a clear automation error", function () {
    list.Append(new ActiveXObject("Quillbank.PersistedPropertyCollection"));
}, function (y) {
    return y.number != 0 || "number 0";
});
check("Clear empties the list and keeps its name", function () {
    var copy = list.Clone();
    copy.Name = "kept";
    copy.Clear();
    return (copy.Count === 0 && copy.Length == -1 && copy.Name == "kept") || copy.Count;
});

// Child-element lists as property values
check("SetCEC stores a copy; GetCEC hands out one live object", function () {
    var bag = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    bag.SetCEC("kids", list);
    var first = bag.GetCEC("kids", null);
    var second = bag.GetCEC("kids", null);
    first.Append(named("d"));
    return (first === second && first !== list && names(bag.GetCEC("kids", null)) == "abcd" &&
            bag.GetPropertyType("kids") == 12 && bag.GetValue("kids") === first && names(list) == "abc") ||
        names(first);
});
check("GetCEC of an absent name gives the caller's default back", function () {
    var bag = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    return (bag.GetCEC("absent", list) === list && bag.GetCEC("absent", null) === null) || "another object";
});
check("a child element keeps a nested list too, and its clone copies it", function () {
    var element = new ActiveXObject("Quillbank.ChildElement");
    element.SetCEC("kids", list);
    var clone = element.Clone();
    var mine = element.GetCEC("kids", null);
    var theirs = clone.GetCEC("kids", null);
    return (mine !== theirs && names(mine) == "abc" && names(theirs) == "abc") || "shared";
});
checkRaises("SetCEC of a bag is a clear automation error", function () {
    var bag = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    bag.SetCEC("kids", bag);
}, function (y) {
    return y.number != 0 || "number 0";
});

finish("JScript ChildElement and ChildElementCollection suite");
