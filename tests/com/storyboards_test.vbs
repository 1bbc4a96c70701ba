' Storyboard and StoryboardCollection as a VBScript host sees them: created
' by their programmatic identifiers, called late-bound, the set walked with
' For Each, the current storyboard set with Set, errors through Err. One line
' per check ("ok ..." or "not ok ..."), then the sentinel line; the exit code
' is the number of failed checks.
Const kChecks = 12
Function Board(title)
    Dim made
    Set made = CreateObject("Quillbank.Storyboard")
    made.Title = title
    Set Board = made
End Function

Function Titles(boards)
    Dim item, text
    text = ""
    For Each item In boards
        text = text & item.Title
    Next
    Titles = text
End Function

On Error Resume Next

Dim sb
Set sb = CreateObject("Quillbank.Storyboard")
Report Err.Number = 0 And Len(sb.SBID) = 36 And sb.Title = "New Storyboard", _
    "Quillbank.Storyboard is created with an identifier and the default title", Err.Description
Err.Clear

Report sb.Properties Is sb.Properties And sb.Children Is sb.Children, _
    "Properties and Children are the same objects each time (Is)", "different objects"
Err.Clear

Dim copy
Set copy = sb.Duplicate("Copy of ")
Report copy.Title = "Copy of New Storyboard" And copy.SBID <> sb.SBID, "Duplicate prefixes the title", copy.Title
Err.Clear

sb.CopyFrom Nothing
Report Err.Number = 94 And Err.Source = "Storyboard.CopyFrom" And Err.Description = "SB cannot be null", _
    "CopyFrom of Nothing raises error 94", "Err " & Err.Number & " " & Err.Source & " " & Err.Description
Err.Clear

Dim boards, a, b, c
Set boards = CreateObject("Quillbank.StoryboardCollection")
Set a = Board("a")
Set b = Board("b")
Set c = Board("c")
boards.Add a
boards.Add b
boards.Add c
Report Err.Number = 0 And boards.Count = 3, "Quillbank.StoryboardCollection is created and takes storyboards", _
    "Err " & Err.Number & " " & Err.Description
Err.Clear

Report Titles(boards) = "abc", "For Each walks the storyboards in order", Titles(boards)
Err.Clear

Report boards(b.SBID) Is b And boards.Item(c.SBID) Is c, "Item is the default member and hands back the same object", _
    "Err " & Err.Number
Err.Clear

Report boards.Item("absent") Is Nothing, "Item of an unknown identifier is Nothing", "Err " & Err.Number
Err.Clear

Set boards.CurrentSB = b
Report boards.CurrentSB Is b And boards.CurrentSBID = b.SBID, "CurrentSB is boards with Set", "Err " & Err.Number
Err.Clear

boards.Remove b.SBID
Report Titles(boards) = "ac" And boards.CurrentSB Is Nothing, "Remove of the current storyboard clears CurrentSB", _
    Titles(boards)
Err.Clear

Dim element
Set element = boards.ToXMLElement(Nothing)
Report Err.Number = 94 And Err.Source = "StoryboardtCollection.ToXMLElement", _
    "ToXMLElement of Nothing raises error 94 under the writer's own source", "Err " & Err.Number & " " & Err.Source
Err.Clear

boards.Add CreateObject("Quillbank.ChildElement")
Report Err.Number <> 0 And boards.Count = 2, "Add of a child element is a clear automation error", _
    "Err.Number " & Err.Number
Err.Clear

On Error GoTo 0
Finish "VBScript Storyboard and StoryboardCollection suite", kChecks
