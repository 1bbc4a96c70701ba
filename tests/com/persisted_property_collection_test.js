// PersistedPropertyCollection as a JScript host sees it: created by its
// programmatic identifier, called late-bound, with MSXML documents made by
// the script. One line per check ("ok ..." or "not ok ..."), then the
// sentinel line; the exit code is the number of failed checks.

var p = null;
check("Quillbank.PersistedPropertyCollection is created by its programmatic identifier", function () {
    p = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    return p !== null;
});
check("a new bag is named properties and is empty", function () {
    return (p.Name == "properties" && p.Count === 0) || (p.Name + " " + p.Count);
});
check("Name can be set", function () {
    p.Name = "page";
    var named = p.Name;
    p.Name = "properties";
    return named == "page" || named;
});
check("typed setters and getters keep their values", function () {
    p.SetString("caption", "Halves and quarters");
    p.SetLong("width", 640);
    p.SetDouble("ratio", 0.25);
    p.SetBoolean("visible", true);
    p.SetColor("ink", 0x302010);
    return (p.GetString("caption", "") == "Halves and quarters" && p.GetLong("width", 0) == 640 &&
            p.GetDouble("ratio", 0) == 0.25 && p.GetBoolean("visible", false) === true &&
            p.GetColor("ink", 0) == 0x302010) || p.ToXMLString();
});
check("names are matched without regard to case", function () {
    return (p.Exists("CAPTION") && p.GetLong("WIDTH", 0) == 640) || "not found";
});
check("a getter of another type gives the default", function () {
    return p.GetLong("caption", 7) == 7 || p.GetLong("caption", 7);
});
check("the optional encoding argument stores base64", function () {
    p.SetLong("secret", 5, 1);
    return (p.GetEncodingType("secret") == 1 && p.GetEncodingType("width") === 0 &&
            p.GetEncodingType("absent") == -1) || p.GetEncodingType("secret");
});
check("GetPropertyType names the type, ptNone when absent", function () {
    return (p.GetPropertyType("caption") == 4 && p.GetPropertyType("absent") === 0) || p.GetPropertyType("caption");
});
check("GetValue gives the value, Empty when absent", function () {
    return (p.GetValue("width") == 640 && typeof p.GetValue("absent") == "undefined") || typeof p.GetValue("absent");
});
check("ToXMLString writes the ppc element", function () {
    var text = p.ToXMLString();
    return text.indexOf('<ppc name="properties"><stringProp name="caption">Halves and quarters</stringProp>') === 0 ||
        text;
});
check("FromXMLString reads back what ToXMLString wrote", function () {
    var copy = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    copy.FromXMLString(p.ToXMLString());
    return (copy.Count == p.Count && copy.ToXMLString() == p.ToXMLString()) || copy.ToXMLString();
});
check("Clone gives a new, equal bag", function () {
    var clone = p.Clone();
    return (clone !== p && clone.ToXMLString() == p.ToXMLString()) || "differs";
});
check("Remove of an absent name is silent", function () {
    var before = p.Count;
    p.Remove("absent");
    p.Remove("SECRET");
    return p.Count == before - 1 || p.Count;
});
check("a nested bag is handed out as the same object each time", function () {
    var inner = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    inner.SetString("x", "1");
    p.SetPPC("inner", inner);
    var a = p.GetPPC("inner", null);
    var b = p.GetPPC("inner", null);
    return (a === b && a !== inner && a.GetString("x", "") == "1") || "not the same object";
});
check("changes through a fetched nested bag reach the stored property", function () {
    p.GetPPC("inner", null).SetString("y", "2");
    return p.GetPPC("inner", null).GetString("y", "") == "2" || "lost";
});
check("GetPPC of an absent name gives the caller's default back", function () {
    var mine = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    return p.GetPPC("absent", mine) === mine || "another object";
});
check("ToXMLElement creates an unattached element in the host's MSXML document", function () {
    var doc = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = p.ToXMLElement(doc);
    // Wine's MSXML makes a new object on every navigation, so the owner
    // document is checked by placing the element in it, not by identity.
    var unattached = element.parentNode === null;
    doc.appendChild(element);
    return (element.nodeName == "ppc" && unattached && doc.documentElement.getAttribute("name") == "properties") ||
        element.nodeName;
});
check("FromXMLElement reads the host's element", function () {
    var doc = new ActiveXObject("Msxml2.DOMDocument.3.0");
    doc.appendChild(p.ToClearXMLElement(doc));
    var copy = new ActiveXObject("Quillbank.PersistedPropertyCollection");
    copy.FromXMLElement(doc.documentElement);
    return (copy.GetString("caption", "") == "Halves and quarters" && copy.Count == p.Count) || copy.Count;
});
checkRaises("FromXMLElement of another element raises error 5", function () {
    var doc = new ActiveXObject("Msxml2.DOMDocument.3.0");
    doc.loadXML("<ce/>");
    p.FromXMLElement(doc.documentElement);
}, function (e) {
    return (hostNumber(e) == 5 && e.description == "Element is not a <ppc> element") ||
        (e.number + " " + e.description);
});
checkRaises("ToXMLElement of a null document raises error 94", function () {
    p.ToXMLElement(null);
}, function (e) {
    return (hostNumber(e) == 94 && e.description == "Document cannot be null") || (e.number + " " + e.description);
});
checkRaises("FromXMLString of text that does not parse raises 0x800403E9", function () {
    p.FromXMLString("<ppc");
}, function (e) {
    return (e.number == -2147220503 && e.description == "XML string could not be parsed.") ||
        (e.number + " " + e.description);
});
checkRaises("ToXMLElement of an object that is not a document is a clear automation error", function () {
    p.ToXMLElement(new ActiveXObject("Quillbank.Functions"));
}, function (e) {
    return e.number != 0 || "number 0";
});
checkRaises("FromXMLElement of a DOM node that is not an element is a type mismatch", function () {
    var doc = new ActiveXObject("Msxml2.DOMDocument.3.0");
    p.FromXMLElement(doc.createTextNode("ppc"));
}, function (e) {
    return e.number == -2147352571 || (e.number + " " + e.description);  // DISP_E_TYPEMISMATCH
});
checkRaises("FromXMLElement of a text argument is a type mismatch", function () {
    p.FromXMLElement("<ppc/>");
}, function (e) {
    return e.number == -2147352571 || (e.number + " " + e.description);  // DISP_E_TYPEMISMATCH
});
checkRaises("SetPPC of an object that is not a bag is a clear automation error", function () {
    p.SetPPC("other", new ActiveXObject("Quillbank.Functions"));
}, function (e) {
    return e.number != 0 || "number 0";
});
check("Clear empties the bag and keeps its name", function () {
    p.Name = "kept";
    p.Clear();
    return (p.Count === 0 && p.Name == "kept") || p.Count;
});

finish("JScript PersistedPropertyCollection suite");
