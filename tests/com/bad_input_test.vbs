' Bad input from a VBScript host: Nothing where an object is required, an
' argument of the wrong type, a missing argument and a DOM node of the wrong
' kind give the documented error or an automation error (13, type mismatch;
' 450, wrong number of arguments), never a crash of the host. DOM nodes come
' from a document the library hands out, since Wine's VBScript cannot create
' MSXML's DOM itself. One line per check ("ok ..." or "not ok ..."), then the
' sentinel line; the exit code is the number of failed checks.
Const kChecks = 16
' Reports whether the error left by the last statement has `number` (and,
' when not empty, `description`), then clears it.
Sub Expect(number, description, name)
    Dim seen
    seen = "Err " & Err.Number & " " & Err.Description
    Report Err.Number = number And (description = "" Or Err.Description = description), name, seen
    Err.Clear
End Sub

On Error Resume Next

Dim map, element, doc, comment, bag, child, list, sb, boards, maps, lesson, x
Set map = CreateObject("Quillbank.LessonMap")
Set element = map.ToXMLElement()
Set doc = element.ownerDocument
Set comment = doc.createComment("note")
Set bag = CreateObject("Quillbank.PersistedPropertyCollection")
Set child = CreateObject("Quillbank.ChildElement")
Set list = CreateObject("Quillbank.ChildElementCollection")
Set sb = CreateObject("Quillbank.Storyboard")
Set boards = CreateObject("Quillbank.StoryboardCollection")
Set maps = CreateObject("Quillbank.LessonMapCollection")
Set lesson = CreateObject("Quillbank.Lesson")
Report Err.Number = 0, "the objects and a DOM document are at hand", "Err " & Err.Number & " " & Err.Description
Err.Clear

Set x = lesson.ToXMLElement(Nothing)
Expect 94, "Document cannot be null", "Lesson.ToXMLElement of Nothing raises 94"
lesson.FromXMLElement Nothing
Expect 94, "Element cannot be null", "Lesson.FromXMLElement of Nothing raises 94"
lesson.FromXMLElement comment
Expect 13, "", "Lesson.FromXMLElement of a comment is a type mismatch"
Set x = bag.ToXMLElement(element)
Expect 13, "", "PersistedPropertyCollection.ToXMLElement of an element is a type mismatch"
bag.FromXMLElement doc
Expect 13, "", "PersistedPropertyCollection.FromXMLElement of a document is a type mismatch"
bag.SetLong "n", "many"
Expect 13, "", "PersistedPropertyCollection.SetLong of text that is no number is a type mismatch"
bag.SetString "s"
Expect 450, "", "PersistedPropertyCollection.SetString without its value is a wrong argument count"
bag.SetPPC "p", sb
Expect 13, "", "PersistedPropertyCollection.SetPPC of a storyboard is a type mismatch"
child.FromPPC lesson
Expect 13, "", "ChildElement.FromPPC of a lesson is a type mismatch"
list.Append sb
Expect 13, "", "ChildElementCollection.Append of a storyboard is a type mismatch"
sb.CopyFrom Nothing
Expect 94, "SB cannot be null", "Storyboard.CopyFrom of Nothing raises 94"
Set boards.CurrentSB = map
Expect 13, "", "StoryboardCollection.CurrentSB set to a map is a type mismatch"
map.InsertMap "", 1, lesson
Expect 13, "", "LessonMap.InsertMap of a lesson is a type mismatch"
map.InsertStoryboard "", 2
Expect 450, "", "LessonMap.InsertStoryboard without a new identifier is a wrong argument count"
Set maps.DefaultMap = sb
Expect 13, "", "LessonMapCollection.DefaultMap set to a storyboard is a type mismatch"

On Error GoTo 0
Finish "VBScript bad-input suite", kChecks
