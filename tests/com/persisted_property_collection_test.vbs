' PersistedPropertyCollection as a VBScript host sees it: created by its
' programmatic identifier, called late-bound, errors through Err, the name
' array typed as an array of strings. One line per check ("ok ..." or "not ok ..."),
' then the sentinel line; the exit code is the number of failed checks.
Const kChecks = 12
On Error Resume Next

Dim p
Set p = CreateObject("Quillbank.PersistedPropertyCollection")
Report Err.Number = 0, "Quillbank.PersistedPropertyCollection is created by its programmatic identifier", Err.Description
Err.Clear

p.SetString "caption", "Halves"
p.SetLong "width", 640, 1
p.SetBoolean "visible", True
Report p.GetString("CAPTION", "") = "Halves", "SetString and GetString, names without regard to case", p.ToXMLString()
Report p.GetLong("width", 0) = 640 And p.GetEncodingType("width") = 1, "an encoded long keeps its value and encoding", p.ToXMLString()
Report p.GetBoolean("visible", False) = True, "SetBoolean and GetBoolean", p.ToXMLString()

' The name array is a SAFEARRAY of BSTR (vbArray + vbString). Wine's VBScript
' cannot index or walk arrays of strings, so its contents are checked by the
' early-binding client; here only its type.
Dim names
names = p.GetPropertyNameArray()
Report VarType(names) = 8200, "GetPropertyNameArray gives an array of strings", "VarType " & VarType(names)
Err.Clear

Dim inner, a, b
Set inner = CreateObject("Quillbank.PersistedPropertyCollection")
p.SetPPC "inner", inner
Set a = p.GetPPC("inner", Nothing)
Set b = p.GetPPC("inner", Nothing)
Report a Is b, "a nested bag is the same object each time (Is)", "different objects"
Report Not (a Is inner), "SetPPC stores a copy", "the caller's own object"
Err.Clear

p.FromXMLString "<ppc"
Report Err.Number = -2147220503, "FromXMLString of text that does not parse raises 0x800403E9", "Err.Number " & Err.Number
Report Err.Source = "PersistedPropertyCollection.FromXMLString", "the error's source names the member", "Err.Source " & Err.Source
Report Err.Description = "XML string could not be parsed.", "the error's description", "Err.Description " & Err.Description
Err.Clear

Dim element
Set element = p.ToXMLElement(Nothing)
Report Err.Number = 94, "ToXMLElement of Nothing raises error 94", "Err.Number " & Err.Number
Err.Clear

p.FromXMLElement "<ppc/>"
Report Err.Number = 13, "FromXMLElement of a text argument is a type mismatch", "Err.Number " & Err.Number
Err.Clear

On Error GoTo 0
Finish "VBScript PersistedPropertyCollection suite", kChecks
