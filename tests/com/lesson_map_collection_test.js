// LessonMapCollection as a JScript host sees it: created by its programmatic
// identifier, called late-bound, with MSXML documents made by the script. One
// line per check ("ok ..." or "not ok ..."), then the sentinel line; the exit
// code is the number of failed checks.

function map(name) {
    var made = new ActiveXObject("Quillbank.LessonMap");
    made.Name = name;
    return made;
}
function names(list) {
    var text = "";
    for (var i = 0; i < list.Count; i++) {
        text += list.ItemAt(i).Name;
    }
    return text;
}
var maps = null;
var a = map("a"), b = map("b"), c = map("c");
check("Quillbank.LessonMapCollection is created by its programmatic identifier", function () {
    maps = new ActiveXObject("Quillbank.LessonMapCollection");
    return (maps !== null && maps.Count === 0 && maps.Length == -1 && maps.DefaultMap === null) || maps.Count;
});
check("Append keeps the caller's maps; Item and ItemAt hand them back", function () {
    maps.Append(a);
    var single = maps.DefaultMap;
    maps.Append(b);
    maps.Append(null);
    return (single === null && maps.Count == 2 && maps.ItemAt(1) === b && maps.Item("a") === a &&
            maps.Item("z") === null && maps.ItemAt(5) === null && maps.DefaultMap === a) || names(maps);
});
check("Insert places, IndexOf and IndexOfName find", function () {
    maps.Insert(c, 1);
    return (names(maps) == "acb" && maps.IndexOf(c) == 1 && maps.IndexOf(map("x")) == -1 &&
            maps.IndexOfName("b") == 2 && maps.IndexOfName("x") == -1) || names(maps);
});
check("DefaultMap is set to a member", function () {
    maps.DefaultMap = b;
    return maps.DefaultMap === b || "another map";
});
checkRaises("DefaultMap of a map that is not a member raises error 5", function () {
    maps.DefaultMap = map("x");
}, function (x) {
    return (hostNumber(x) == 5 && x.description == "Default map must be a member of the collection" &&
            maps.DefaultMap === b) || (x.number + " " + x.description);
});
check("ToXMLElement names the default map", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = maps.ToXMLElement(d);
    return (element.nodeName == "maps" && element.getAttribute("default") == "b" &&
            element.childNodes.length == 3) || element.xml;
});
check("FromXMLElement reads the maps and the default", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML('<maps default="q"><map name="p"/><map name="q"><item sbid="A"/></map></maps>');
    var other = new ActiveXObject("Quillbank.LessonMapCollection");
    other.FromXMLElement(d.documentElement);
    return (names(other) == "pq" && other.DefaultMap.Name == "q" && other.Item("q").Contains("A")) ||
        names(other);
});
check("Clone makes new maps with the same names and default", function () {
    var clone = maps.Clone();
    return (names(clone) == "acb" && clone.ItemAt(0) !== a && clone.DefaultMap.Name == "b") || names(clone);
});
check("Remove and RemoveAt drop maps; removing the default clears it", function () {
    maps.Remove(b);
    var removed = names(maps);
    maps.RemoveAt(7);
    maps.RemoveAt(0);
    return (removed == "ac" && names(maps) == "c" && maps.DefaultMap === null) || names(maps);
});
checkRaises("ToXMLElement of null raises 94", function () {
    maps.ToXMLElement(null);
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "Document cannot be null") || (x.number + " " + x.description);
});
checkRaises("Append of a storyboard is a clear automation error", function () {
    maps.Append(new ActiveXObject("Quillbank.Storyboard"));
}, function (x) {
    return x.number != 0 || "number 0";
});
check("Clear empties the list", function () {
    maps.Clear();
    return (maps.Count === 0 && maps.Length == -1) || maps.Count;
});

finish("JScript LessonMapCollection suite");
