' ChildElement and ChildElementCollection as a VBScript host sees them:
' created by their programmatic identifiers, called late-bound, identity
' through Is, errors through Err. One line per check ("ok ..." or
' "not ok ..."), then the sentinel line; the exit code is the number of failed
' checks.
Const kChecks = 17
Function Named(name)
    Dim element
    Set element = CreateObject("Quillbank.ChildElement")
    element.Name = name
    Set Named = element
End Function

Function Names(list)
    Dim i, text
    text = ""
    For i = 0 To list.Length
        text = text & list.Item(i).Name
    Next
    Names = text
End Function

On Error Resume Next

Dim e
Set e = CreateObject("Quillbank.ChildElement")
Report Err.Number = 0, "Quillbank.ChildElement is created by its programmatic identifier", Err.Description
Err.Clear

e.Name = "box"
e.ElementType = "shape"
e.SetString "caption", "Halves"
e.SetLong "width", 640, 1
Report e.PPCObject.Name = "box" And e.ElementType = "shape", "the element's name is its bag's name", e.PPCObject.Name
Report e.GetString("CAPTION", "") = "Halves" And e.GetLong("width", 0) = 640 And e.Count = 2, _
    "typed members forward to the bag", e.ToXMLString()
Report e.PPCObject Is e.PPCObject, "PPCObject is the same object each time (Is)", "different objects"
Err.Clear

Dim bag, nested
Set bag = CreateObject("Quillbank.PersistedPropertyCollection")
bag.SetString "x", "1"
e.SetPPC "inner", bag
Set nested = e.GetPPC("inner", Nothing)
Report Not (nested Is bag) And nested.GetString("x", "") = "1" And nested Is e.GetPPC("inner", Nothing), _
    "SetPPC stores a copy, GetPPC hands out one object", "Err " & Err.Number
Err.Clear

e.FromXMLString "<ppc/>"
Report Err.Number = -2147220503 And Err.Description = "Element is not a <ce> element", _
    "FromXMLString of a ppc element raises 0x800403E9", "Err.Number " & Err.Number & " " & Err.Description
Report Err.Source = "ChildElement.FromXMLElement", "the error's source names the member", "Err.Source " & Err.Source
Err.Clear

Dim element
Set element = e.ToClearXMLElement(Nothing)
Report Err.Number = 94 And Err.Source = "ChildElement.ToXMLElement", _
    "ToClearXMLElement of Nothing raises error 94 under ToXMLElement's name", "Err " & Err.Number & " " & Err.Source
Err.Clear

Dim list, a, b, c
Set list = CreateObject("Quillbank.ChildElementCollection")
Report Err.Number = 0 And list.Name = "children" And list.Length = -1 And list.Item(0) Is Nothing, _
    "Quillbank.ChildElementCollection is created, named children and empty", Err.Description
Err.Clear

Set a = Named("a")
Set b = Named("b")
Set c = Named("c")
list.Append a
list.Append b
list.Append c
list.Append Nothing
Report list.Count = 3 And list.Item(1) Is b And list.IndexOf(c) = 2, "Append keeps the caller's objects", Names(list)
list.MoveFirst c
Report Names(list) = "cba", "MoveFirst exchanges with the first element", Names(list)
list.MoveLast c
Report Names(list) = "abc", "MoveLast exchanges with the last element", Names(list)
list.Insert Named("x"), 1
Report Names(list) = "axbc", "Insert places at the index", Names(list)
list.RemoveAt 1
Report Names(list) = "abc", "RemoveAt removes at the index", Names(list)
Err.Clear

Dim kids
bag.SetCEC "kids", list
Set kids = bag.GetCEC("kids", Nothing)
Report Not (kids Is list) And Names(kids) = "abc" And kids Is bag.GetCEC("kids", Nothing), _
    "SetCEC stores a copy, GetCEC hands out one object", "Err " & Err.Number & " " & Err.Description
Err.Clear

list.Append bag
Report Err.Number <> 0 And list.Count = 3, "Append of a bag is a clear automation error", "Err.Number " & Err.Number
Err.Clear

list.FromXMLElement "<cec/>"
Report Err.Number = 13, "FromXMLElement of a text argument is a type mismatch", "Err.Number " & Err.Number
Err.Clear

On Error GoTo 0
Finish "VBScript ChildElement and ChildElementCollection suite", kChecks
