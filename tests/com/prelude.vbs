' The checks every VBScript suite shares. The Windows tests put this file in
' front of each suite (Wine's cscript runs no .wsf jobs that could include
' it). One line per check ("ok ..." or "not ok ..."), then the sentinel line;
' the exit code is the number of failed checks.
Option Explicit

' A check whose own expression fails is skipped by On Error Resume Next, so
' each suite also says how many checks it has (Finish counts those reported).
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

' The summary line and the sentinel; the exit code is the failures.
Sub Finish(title, checks)
    If reported <> checks Then
        failures = failures + 1
        WScript.Echo "not ok every check reported -- " & reported & " of " & checks
    End If
    WScript.Echo "# " & title & ": " & failures & " failed"
    WScript.Echo "END-OF-SUITE"
    WScript.Quit failures
End Sub

