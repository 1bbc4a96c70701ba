' LessonMap as a VBScript host sees it: created by its programmatic
' identifier, called late-bound, errors through Err (the tree-view bridge is
' checked from JScript). One line per check ("ok ..." or "not ok ..."), then
' the sentinel line; the exit code is the number of failed checks.
Option Explicit

' A check whose own expression fails is skipped by On Error Resume Next, so
' the suite also counts the checks that reported.
Const kChecks = 5
Dim failures, reported
failures = 0
reported = 0

Sub Report(passed, name, detail)
    reported = reported + 1
    If passed Then
        WScript.Echo "ok " & name
    Else
        failures = failures + 1
        WScript.Echo "not ok " & name & " -- " & detail
    End If
End Sub

On Error Resume Next

Dim map
Set map = CreateObject("Quillbank.LessonMap")
Report Err.Number = 0 And map.Name = "New Map", "Quillbank.LessonMap is created and named New Map", Err.Description
Err.Clear

map.InsertStoryboard "", 2, "A"
map.InsertStoryboard "A", 3, "B"
map.InsertStoryboard "", 2, "C"
Report map.Contains("B") And Not map.Contains("D"), "InsertStoryboard and Contains", "Err " & Err.Number
Err.Clear

Dim clone
Set clone = map.Clone()
clone.InsertStoryboard "", 2, "D"
Report clone.Contains("D") And Not map.Contains("D") And Not (clone Is map), "Clone is independent", _
    "Err " & Err.Number
Err.Clear

map.InsertStoryboard "A", 1, ""
Report Err.Number = 380 And Err.Source = "LessonMap.InsertStoryboard", "an empty identifier raises error 380", _
    "Err " & Err.Number & " " & Err.Source
Err.Clear

map.ToTreeNode Nothing, map
Report Err.Number = 94 And Err.Description = "NodeCollection cannot be null", _
    "ToTreeNode without a node collection raises error 94", "Err " & Err.Number & " " & Err.Description
Err.Clear

On Error GoTo 0
If reported <> kChecks Then
    failures = failures + 1
    WScript.Echo "not ok every check reported -- " & reported & " of " & kChecks
End If
WScript.Echo "# VBScript LessonMap suite: " & failures & " failed"
WScript.Echo "END-OF-SUITE"
WScript.Quit failures
