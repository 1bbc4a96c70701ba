// Bad input from a JScript host, class by class: a null object where an
// object is required, an argument of the wrong variant type, a missing
// argument, and a DOM node of the wrong kind. Each gives the documented
// error or an automation error (type mismatch, wrong argument count), never a
// crash of the host: the sentinel line at the end is only printed when the
// script host survived every call. One line per check ("ok ..." or
// "not ok ..."), then the sentinel; the exit code is the number of failed
// checks.

var kTypeMismatch = -2147352571;  // DISP_E_TYPEMISMATCH
var kBadParamCount = -2147352562;  // DISP_E_BADPARAMCOUNT
var kParamNotOptional = -2147352561;  // DISP_E_PARAMNOTOPTIONAL

// Expectations: each takes the raised error and answers true or what it saw.
function mismatch(e) {
    return e.number == kTypeMismatch || (e.number + " " + e.description);
}
function missing(e) {
    return e.number == kBadParamCount || e.number == kParamNotOptional || (e.number + " " + e.description);
}
function hostError(number, description) {
    return function (e) {
        return (hostNumber(e) == number && e.description == description) || (e.number + " " + e.description);
    };
}
function formError(description) {
    return function (e) {
        return (e.number == -2147220503 && e.description == description) || (e.number + " " + e.description);
    };
}

var doc = new ActiveXObject("Msxml2.DOMDocument.3.0");
var element = doc.createElement("x");
var comment = doc.createComment("x");
var text = doc.createTextNode("x");

function make(name) {
    return new ActiveXObject("Quillbank." + name);
}

// The writers and the reader every class with a DOM face shares. `kind` is
// the element the reader expects; `wrongElement` how the reader answers an
// element of another name.
function domChecks(name, object, writers, wrongElement) {
    for (var i = 0; i < writers.length; i++) {
        (function (writer) {
            checkRaises(name + "." + writer + " of null raises 94", function () {
                object[writer](null);
            }, hostError(94, "Document cannot be null"));
            checkRaises(name + "." + writer + " of an element instead of a document is a type mismatch", function () {
                object[writer](element);
            }, mismatch);
            checkRaises(name + "." + writer + " of a text argument is a type mismatch", function () {
                object[writer]("<x/>");
            }, mismatch);
            checkRaises(name + "." + writer + " without its document is a wrong argument count", function () {
                object[writer]();
            }, missing);
        })(writers[i]);
    }
    checkRaises(name + ".FromXMLElement of null raises 94", function () {
        object.FromXMLElement(null);
    }, hostError(94, "Element cannot be null"));
    checkRaises(name + ".FromXMLElement of a comment is a type mismatch", function () {
        object.FromXMLElement(comment);
    }, mismatch);
    checkRaises(name + ".FromXMLElement of a text node is a type mismatch", function () {
        object.FromXMLElement(text);
    }, mismatch);
    checkRaises(name + ".FromXMLElement of a document is a type mismatch", function () {
        object.FromXMLElement(doc);
    }, mismatch);
    checkRaises(name + ".FromXMLElement of a number is a type mismatch", function () {
        object.FromXMLElement(42);
    }, mismatch);
    checkRaises(name + ".FromXMLElement of one of our own objects is a type mismatch", function () {
        object.FromXMLElement(make("Functions"));
    }, mismatch);
    checkRaises(name + ".FromXMLElement without its element is a wrong argument count", function () {
        object.FromXMLElement();
    }, missing);
    checkRaises(name + ".FromXMLElement of an element of another name", function () {
        object.FromXMLElement(element);
    }, wrongElement);
}

// PersistedPropertyCollection
var bag = make("PersistedPropertyCollection");
domChecks("PersistedPropertyCollection", bag, ["ToXMLElement", "ToClearXMLElement"],
          hostError(5, "Element is not a <ppc> element"));
checkRaises("PersistedPropertyCollection.SetPPC of a storyboard is a type mismatch", function () {
    bag.SetPPC("p", make("Storyboard"));
}, mismatch);
checkRaises("PersistedPropertyCollection.SetCEC of a bag is a type mismatch", function () {
    bag.SetCEC("c", make("PersistedPropertyCollection"));
}, mismatch);
checkRaises("PersistedPropertyCollection.GetPPC with a lesson as default is a type mismatch", function () {
    bag.GetPPC("p", make("Lesson"));
}, mismatch);
checkRaises("PersistedPropertyCollection.GetCEC with a text default is a type mismatch", function () {
    bag.GetCEC("c", "none");
}, mismatch);
checkRaises("PersistedPropertyCollection.SetLong of text that is no number is a type mismatch", function () {
    bag.SetLong("n", "many");
}, mismatch);
checkRaises("PersistedPropertyCollection.GetDouble with an object as default is a type mismatch", function () {
    bag.GetDouble("d", make("Functions"));
}, mismatch);
checkRaises("PersistedPropertyCollection.SetFont of a number is a type mismatch", function () {
    bag.SetFont("f", 12);
}, mismatch);
checkRaises("PersistedPropertyCollection.GetRectangle with text as default is a type mismatch", function () {
    bag.GetRectangle("r", "wide");
}, mismatch);
checkRaises("PersistedPropertyCollection.SetAsset of null is a type mismatch", function () {
    bag.SetAsset("a", null);
}, mismatch);
checkRaises("PersistedPropertyCollection.SetString without its value is a wrong argument count", function () {
    bag.SetString("s");
}, missing);
checkRaises("PersistedPropertyCollection.GetLong without its default is a wrong argument count", function () {
    bag.GetLong("n");
}, missing);
checkRaises("PersistedPropertyCollection.GetPropertyNameArray of text that is no number is a type mismatch", function () {
    bag.GetPropertyNameArray("all");
}, mismatch);
check("PersistedPropertyCollection is unchanged by the refused calls", function () {
    return bag.Count === 0 || bag.Count;
});

// ChildElement
var child = make("ChildElement");
domChecks("ChildElement", child, ["ToXMLElement", "ToClearXMLElement"],
          formError("Element is not a <ce> element"));
checkRaises("ChildElement.FromPPC of a child element is a type mismatch", function () {
    child.FromPPC(make("ChildElement"));
}, mismatch);
checkRaises("ChildElement.SetPPC of a storyboard is a type mismatch", function () {
    child.SetPPC("p", make("Storyboard"));
}, mismatch);
checkRaises("ChildElement.SetCEC of text is a type mismatch", function () {
    child.SetCEC("c", "list");
}, mismatch);
checkRaises("ChildElement.SetLocation of a bag is a type mismatch", function () {
    child.SetLocation("l", make("PersistedPropertyCollection"));
}, mismatch);
checkRaises("ChildElement.GetFont with a number as default is a type mismatch", function () {
    child.GetFont("f", 10);
}, mismatch);
checkRaises("ChildElement.SetBoolean without its value is a wrong argument count", function () {
    child.SetBoolean("b");
}, missing);

// ChildElementCollection
var list = make("ChildElementCollection");
domChecks("ChildElementCollection", list, ["ToXMLElement", "ToClearXMLElement"],
          formError("Element is not a <cec> element"));
checkRaises("ChildElementCollection.Append of a storyboard is a type mismatch", function () {
    list.Append(make("Storyboard"));
}, mismatch);
checkRaises("ChildElementCollection.Insert at an index that is no number is a type mismatch", function () {
    list.Insert(make("ChildElement"), "first");
}, mismatch);
checkRaises("ChildElementCollection.IndexOf of a DOM element is a type mismatch", function () {
    list.IndexOf(element);
}, mismatch);
checkRaises("ChildElementCollection.MoveTo without a destination is a wrong argument count", function () {
    list.MoveTo(make("ChildElement"));
}, missing);
// Item's value is used, as hosts use it: Wine's JScript calls a member whose
// value it drops as a method only, which a property is not.
checkRaises("ChildElementCollection.Item of text that is no number is a type mismatch", function () {
    var item = list.Item("first");
    return item;
}, mismatch);
check("ChildElementCollection is unchanged by the refused calls", function () {
    return list.Count === 0 || list.Count;
});

// Storyboard
var sb = make("Storyboard");
domChecks("Storyboard", sb, ["ToXMLElement", "ToClearXMLElement"],
          formError("Element is not a <storyboard> element"));
checkRaises("Storyboard.CopyFrom of null raises 94", function () {
    sb.CopyFrom(null);
}, hostError(94, "SB cannot be null"));
checkRaises("Storyboard.CopyFrom of a child element is a type mismatch", function () {
    sb.CopyFrom(make("ChildElement"));
}, mismatch);
checkRaises("Storyboard.CopyFrom without its storyboard is a wrong argument count", function () {
    sb.CopyFrom();
}, missing);

// StoryboardCollection
var boards = make("StoryboardCollection");
domChecks("StoryboardCollection", boards, ["ToXMLElement", "ToClearXMLElement"],
          formError("Element is not a <storyboards> element"));
check("StoryboardCollection.Add of null adds nothing and returns null", function () {
    return (boards.Add(null) === null && boards.Count === 0) || boards.Count;
});
checkRaises("StoryboardCollection.Add of a lesson is a type mismatch", function () {
    boards.Add(make("Lesson"));
}, mismatch);
checkRaises("StoryboardCollection.Add without its storyboard is a wrong argument count", function () {
    boards.Add();
}, missing);
checkRaises("StoryboardCollection.CurrentSB set to a map is a type mismatch", function () {
    boards.CurrentSB = make("LessonMap");
}, mismatch);
checkRaises("StoryboardCollection.AddCollection of a bag is a type mismatch", function () {
    boards.AddCollection(make("PersistedPropertyCollection"));
}, mismatch);
checkRaises("StoryboardCollection.RemoveCollection of text is a type mismatch", function () {
    boards.RemoveCollection("all");
}, mismatch);
check("StoryboardCollection is unchanged by the refused calls", function () {
    return (boards.Count === 0 && boards.CurrentSB === null) || boards.Count;
});

// LessonMap
var map = make("LessonMap");
map.InsertStoryboard("", 2, "A");
checkRaises("LessonMap.FromXMLElement of null raises 94", function () {
    map.FromXMLElement(null);
}, hostError(94, "Element cannot be null"));
checkRaises("LessonMap.FromXMLElement of a comment is a type mismatch", function () {
    map.FromXMLElement(comment);
}, mismatch);
checkRaises("LessonMap.FromXMLElement of a document is a type mismatch", function () {
    map.FromXMLElement(doc);
}, mismatch);
checkRaises("LessonMap.FromXMLElement without its element is a wrong argument count", function () {
    map.FromXMLElement();
}, missing);
checkRaises("LessonMap.FromXMLElement of an element of another name", function () {
    map.FromXMLElement(element);
}, formError("Element is not a <map> element"));
checkRaises("LessonMap.InsertMap of null raises 380", function () {
    map.InsertMap("", 1, null);
}, hostError(380, "NewMap cannot be null."));
checkRaises("LessonMap.InsertMap of a lesson is a type mismatch", function () {
    map.InsertMap("", 1, make("Lesson"));
}, mismatch);
checkRaises("LessonMap.InsertStoryboard with a relation that is no number is a type mismatch", function () {
    map.InsertStoryboard("", "after", "B");
}, mismatch);
checkRaises("LessonMap.InsertStoryboard without a new identifier is a wrong argument count", function () {
    map.InsertStoryboard("", 2);
}, missing);
checkRaises("LessonMap.RemoveStoryboards of a map is a type mismatch", function () {
    map.RemoveStoryboards(make("LessonMap"));
}, mismatch);
checkRaises("LessonMap.KeepStoryboards of a number is a type mismatch", function () {
    map.KeepStoryboards(7);
}, mismatch);
checkRaises("LessonMap.FromTreeNode of text is a type mismatch", function () {
    map.FromTreeNode("root");
}, mismatch);
checkRaises("LessonMap.ToTreeNode without a root node raises 94", function () {
    var nodes = {Add: function () { return null; }, Remove: function () {}};
    map.ToTreeNode(nodes, null);
}, hostError(94, "RootNode cannot be null"));
checkRaises("LessonMap.ToTreeNode of a number as node collection is a type mismatch", function () {
    map.ToTreeNode(1, {});
}, mismatch);
checkRaises("LessonMap.ToTreeNode without its arguments is a wrong argument count", function () {
    map.ToTreeNode();
}, missing);
check("LessonMap is unchanged by the refused calls", function () {
    var written = map.ToXMLElement();
    return (written.childNodes.length == 1 && map.Contains("A") && !map.Contains("B")) || written.xml;
});

// LessonMapCollection
var maps = make("LessonMapCollection");
domChecks("LessonMapCollection", maps, ["ToXMLElement"], formError("Element is not a <maps> element"));
checkRaises("LessonMapCollection.Append of a storyboard is a type mismatch", function () {
    maps.Append(make("Storyboard"));
}, mismatch);
checkRaises("LessonMapCollection.DefaultMap set to a lesson is a type mismatch", function () {
    maps.DefaultMap = make("Lesson");
}, mismatch);
checkRaises("LessonMapCollection.Insert at an index that is no number is a type mismatch", function () {
    maps.Insert(make("LessonMap"), "first");
}, mismatch);
checkRaises("LessonMapCollection.IndexOf of a DOM element is a type mismatch", function () {
    maps.IndexOf(element);
}, mismatch);
checkRaises("LessonMapCollection.ItemAt of text that is no number is a type mismatch", function () {
    var item = maps.ItemAt("first");
    return item;
}, mismatch);
check("LessonMapCollection is unchanged by the refused calls", function () {
    return (maps.Count === 0 && maps.DefaultMap === null) || maps.Count;
});

// Lesson
var lesson = make("Lesson");
domChecks("Lesson", lesson, ["ToXMLElement", "ToClearXMLElement"], formError("Element is not a <lesson> element"));
checkRaises("Lesson.FromXMLString of an object is a type mismatch", function () {
    lesson.FromXMLString(make("Functions"));
}, mismatch);
checkRaises("Lesson.FromXMLString without its text is a wrong argument count", function () {
    lesson.FromXMLString();
}, missing);

// Functions
var functions = make("Functions");
checkRaises("Functions.OLEColorToHTMLColor of text that is no number is a type mismatch", function () {
    functions.OLEColorToHTMLColor("red");
}, mismatch);
checkRaises("Functions.HTMLColorToOLEColor without its colour is a wrong argument count", function () {
    functions.HTMLColorToOLEColor();
}, missing);
checkRaises("Functions.FormatXMLString of an object is a type mismatch", function () {
    functions.FormatXMLString(make("Functions"));
}, mismatch);

finish("JScript bad-input suite");
