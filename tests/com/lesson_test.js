// Lesson as a JScript host sees it: created by its programmatic identifier,
// called late-bound, with MSXML documents made by the script. One line per
// check ("ok ..." or "not ok ..."), then the sentinel line; the exit code is
// the number of failed checks.

var lesson = null;
var sb = null;
check("Quillbank.Lesson is created by its programmatic identifier", function () {
    lesson = new ActiveXObject("Quillbank.Lesson");
    return lesson !== null;
});
check("the identity properties can be set", function () {
    lesson.LessonID = "L-1";
    lesson.Title = "Fractions";
    lesson.Identifier = "frac";
    lesson.Classification = "maths";
    return (lesson.LessonID == "L-1" && lesson.Title == "Fractions" && lesson.Identifier == "frac" &&
            lesson.Classification == "maths") || lesson.Title;
});
check("Properties, Maps and Storyboards are the same objects each time", function () {
    return (lesson.Properties === lesson.Properties && lesson.Maps === lesson.Maps &&
            lesson.Storyboards === lesson.Storyboards) || "different objects";
});
check("a lesson filled by the host writes and reads back through its XML text", function () {
    lesson.Properties.SetString("author", "Ann");
    sb = new ActiveXObject("Quillbank.Storyboard");
    sb.Title = "Halves";
    lesson.Storyboards.Add(sb);
    var map = new ActiveXObject("Quillbank.LessonMap");
    map.Name = "main";
    map.InsertStoryboard("", 2, sb.SBID);
    lesson.Maps.Append(map);
    var copy = new ActiveXObject("Quillbank.Lesson");
    copy.FromXMLString(lesson.ToXMLString());
    return (copy.Title == "Fractions" && copy.Storyboards.Item(sb.SBID).Title == "Halves" &&
            copy.Maps.Item("main").Contains(sb.SBID) && copy.Properties.GetString("author", "") == "Ann" &&
            copy.LessonID == "L-1" && copy.Classification == "maths") || copy.ToXMLString();
});
check("ToClearXMLString writes the lesson element", function () {
    var text = lesson.ToClearXMLString();
    return text.indexOf("<lesson") >= 0 || text;
});
check("Clone keeps every identifier", function () {
    var clone = lesson.Clone();
    return (clone !== lesson && clone.LessonID == "L-1" && clone.Storyboards.Contains(sb.SBID) &&
            clone.Storyboards.Item(sb.SBID) !== sb) || clone.LessonID;
});
check("Duplicate gives new storyboard identifiers and rewrites the maps", function () {
    var copy = lesson.Duplicate();
    var walk = new Enumerator(copy.Storyboards);
    var newId = walk.item().SBID;
    return (copy.Storyboards.Count == 1 && newId != sb.SBID && copy.Maps.Item("main").Contains(newId) &&
            !copy.Maps.Item("main").Contains(sb.SBID) && copy.Title == "Fractions") || newId;
});
check("ToXMLElement creates the lesson element in the host's document", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = lesson.ToXMLElement(d);
    d.appendChild(element);
    var copy = new ActiveXObject("Quillbank.Lesson");
    copy.FromXMLElement(d.documentElement);
    return (copy.Title == "Fractions" && copy.Storyboards.Count == 1) || copy.Title;
});
checkRaises("FromXMLString of text that does not parse raises 0x800403E9", function () {
    lesson.FromXMLString("<lesson");
}, function (x) {
    return (x.number == -2147220503 && x.description == "XML string could not be parsed." &&
            lesson.Title == "Fractions") || (x.number + " " + x.description);
});
checkRaises("ToXMLElement of null raises 94", function () {
    lesson.ToXMLElement(null);
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "Document cannot be null") || (x.number + " " + x.description);
});

finish("JScript Lesson suite");
