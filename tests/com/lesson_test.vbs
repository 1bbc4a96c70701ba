' Lesson as a VBScript host sees it: created by its programmatic identifier,
' called late-bound, its storyboards walked with For Each, errors through Err.
' One line per check ("ok ..." or "not ok ..."), then the sentinel line; the
' exit code is the number of failed checks.
Const kChecks = 4
On Error Resume Next

Dim lesson, sb
Set lesson = CreateObject("Quillbank.Lesson")
lesson.Title = "Fractions"
Set sb = CreateObject("Quillbank.Storyboard")
sb.Title = "Halves"
lesson.Storyboards.Add sb
Report Err.Number = 0 And lesson.Storyboards.Count = 1 And lesson.Storyboards Is lesson.Storyboards, _
    "Quillbank.Lesson is created and owns its storyboards", "Err " & Err.Number & " " & Err.Description
Err.Clear

Dim copy, item, titles
Set copy = CreateObject("Quillbank.Lesson")
copy.FromXMLString lesson.ToXMLString()
titles = ""
For Each item In copy.Storyboards
    titles = titles & item.Title
Next
Report copy.Title = "Fractions" And titles = "Halves", "FromXMLString reads what ToXMLString wrote", _
    titles & " Err " & Err.Number & " " & Err.Description
Err.Clear

Report Not (lesson.Duplicate().Storyboards.Contains(sb.SBID)), "Duplicate gives new storyboard identifiers", _
    "Err " & Err.Number
Err.Clear

lesson.FromXMLString "<lesson"
Report Err.Number = -2147220503 And Err.Source = "Lesson.FromXMLString", _
    "FromXMLString of text that does not parse raises 0x800403E9", "Err " & Err.Number & " " & Err.Source
Err.Clear

On Error GoTo 0
Finish "VBScript Lesson suite", kChecks
