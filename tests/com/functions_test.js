// The Functions and Constants classes as a JScript host sees them, created
// by their programmatic identifiers and called late-bound. One line per
// check ("ok ..." or "not ok ..."), then the sentinel line; the exit code is
// the number of failed checks.

var f = null;
check("Quillbank.Functions is created by its programmatic identifier", function () {
    f = new ActiveXObject("Quillbank.Functions");
    return f !== null;
});
check("Quillbank.Constants is created by its programmatic identifier", function () {
    return new ActiveXObject("Quillbank.Constants") !== null;
});

check("NewGUID gives 36 upper-case characters without braces", function () {
    var g = f.NewGUID();
    return /^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$/.test(g) || g;
});
check("NewGUID gives a new value each call", function () {
    return f.NewGUID() != f.NewGUID();
});
check("EmptyGUID is the zero GUID", function () {
    return f.EmptyGUID() == "00000000-0000-0000-0000-000000000000" || f.EmptyGUID();
});
check("OCXVersion reads major.minor and the four-digit build", function () {
    return /^\d+\.\d+ \(Build \d{4}\)/.test(f.OCXVersion) || f.OCXVersion;
});
check("OCXFilename is the server's own file", function () {
    return /\\Quillbank\.dll$/i.test(f.OCXFilename) || f.OCXFilename;
});
check("OCXPath is the folder of OCXFilename", function () {
    return f.OCXFilename == f.OCXPath + "\\Quillbank.dll" || f.OCXPath;
});
check("HTMLColorToOLEColor takes red first", function () {
    return f.HTMLColorToOLEColor("#102030") == 0x302010 || f.HTMLColorToOLEColor("#102030");
});
check("HTMLColorToOLEColor gives 0 for text that is not a colour", function () {
    return f.HTMLColorToOLEColor("blue") === 0 || f.HTMLColorToOLEColor("blue");
});
check("OLEColorToHTMLColor writes upper-case hex, red first", function () {
    return f.OLEColorToHTMLColor(0x00C0FF) == "#FFC000" || f.OLEColorToHTMLColor(0x00C0FF);
});
check("OLEColorToHTMLColor resolves a system colour", function () {
    return /^#[0-9A-F]{6}$/.test(f.OLEColorToHTMLColor(0x80000005)) || f.OLEColorToHTMLColor(0x80000005);
});
checkRaises("OLEColorToHTMLColor of an invalid colour raises error 5", function () {
    f.OLEColorToHTMLColor(0x7F000000);
}, function (e) {
    return hostNumber(e) == 5 || ("number " + e.number);
});
checkRaises("the error of an invalid colour has a description", function () {
    f.OLEColorToHTMLColor(0x7F000000);
}, function (e) {
    return e.description == "Invalid procedure call or argument" || ("description " + e.description);
});
check("CleanXMLString removes U+0008 and keeps TAB, LF, CR", function () {
    var cleaned = f.CleanXMLString("a\bb\tc\nd\re");
    return cleaned == "ab\tc\nd\re" || escape(cleaned);
});
check("CleanXMLString keeps U+001F and removes U+0019", function () {
    var cleaned = f.CleanXMLString("x\u001Fy\u0019z");
    return cleaned == "x\u001Fyz" || escape(cleaned);
});
check("FormatXMLString gives text that is not XML back unchanged", function () {
    return f.FormatXMLString("not <xml") == "not <xml";
});
checkRaises("a missing required argument is a clear automation error", function () {
    f.CleanXMLString();
}, function (e) {
    return e.number != 0 || "number 0";
});
checkRaises("an unknown member is a clear automation error", function () {
    f.NoSuchMember();
}, function (e) {
    return e.number != 0 || "number 0";
});

finish("JScript Functions suite");
