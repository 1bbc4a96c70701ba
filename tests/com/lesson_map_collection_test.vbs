' LessonMapCollection as a VBScript host sees it: created by its programmatic
' identifier, called late-bound, the default map set with Set, errors through
' Err. One line per check ("ok ..." or "not ok ..."), then the sentinel line;
' the exit code is the number of failed checks.
Const kChecks = 4
On Error Resume Next

Dim maps, a, b
Set maps = CreateObject("Quillbank.LessonMapCollection")
Set a = CreateObject("Quillbank.LessonMap")
Set b = CreateObject("Quillbank.LessonMap")
a.Name = "a"
b.Name = "b"
maps.Append a
maps.Append b
Report Err.Number = 0 And maps.Count = 2 And maps.Item("b") Is b, _
    "Quillbank.LessonMapCollection is created and keeps the caller's maps", "Err " & Err.Number
Err.Clear

Set maps.DefaultMap = b
Report maps.DefaultMap Is b, "DefaultMap is set with Set", "Err " & Err.Number & " " & Err.Description
Err.Clear

Set maps.DefaultMap = CreateObject("Quillbank.LessonMap")
Report Err.Number = 5 And Err.Source = "LessonMapCollection.DefaultMap (Set)", _
    "DefaultMap of a map that is not a member raises error 5", "Err " & Err.Number & " " & Err.Source
Err.Clear

maps.RemoveAt 1
Report maps.Count = 1 And maps.DefaultMap Is Nothing, "removing the default map clears it", _
    "Err " & Err.Number
Err.Clear

On Error GoTo 0
Finish "VBScript LessonMapCollection suite", kChecks
