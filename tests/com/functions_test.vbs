' The Functions class as a VBScript host sees it: created by its programmatic
' identifier, called late-bound, errors through Err. One line per check
' ("ok ..." or "not ok ..."), then the sentinel line; the exit code is the
' number of failed checks.
Const kChecks = 16
On Error Resume Next

Dim f
Set f = CreateObject("Quillbank.Functions")
Report Err.Number = 0, "Quillbank.Functions is created by its programmatic identifier", Err.Description
Err.Clear

Dim c
Set c = CreateObject("Quillbank.Constants")
Report Err.Number = 0, "Quillbank.Constants is created by its programmatic identifier", Err.Description
Err.Clear

Dim p
Set p = CreateObject("Quillbank.PersistedProperty")
Report Err.Number = 429, "PersistedProperty cannot be created by hosts", "Err.Number " & Err.Number
Err.Clear

Dim g
g = f.NewGUID()
Report Len(g) = 36 And g = UCase(g) And Mid(g, 9, 1) = "-", "NewGUID gives 36 upper-case characters", g
Report f.EmptyGUID() = "00000000-0000-0000-0000-000000000000", "EmptyGUID is the zero GUID", f.EmptyGUID()
Report InStr(f.OCXVersion, " (Build ") > 0, "OCXVersion names the build", f.OCXVersion
Report f.OCXFilename = f.OCXPath & "\Quillbank.dll", "OCXFilename is OCXPath and the file name", f.OCXFilename
' OLE_COLOR arrives as an unsigned 32-bit variant, which VBScript compares
' only after a conversion.
Report CLng(f.HTMLColorToOLEColor("#102030")) = &H302010, "HTMLColorToOLEColor takes red first", CLng(f.HTMLColorToOLEColor("#102030"))
Report f.OLEColorToHTMLColor(&HC0FF&) = "#FFC000", "OLEColorToHTMLColor writes upper-case hex", f.OLEColorToHTMLColor(&HC0FF&)
Report f.CleanXMLString("a" & Chr(8) & "b" & vbTab & "c") = "ab" & vbTab & "c", "CleanXMLString removes U+0008 and keeps TAB", ""
Report f.FormatXMLString("not <xml") = "not <xml", "FormatXMLString gives text that is not XML back unchanged", ""
Err.Clear

Dim html
html = f.OLEColorToHTMLColor(&H7F000000)
Report Err.Number = 5, "an invalid colour raises error 5", "Err.Number " & Err.Number
Report Err.Source = "Quillbank", "the error's source is the library", "Err.Source " & Err.Source
Report Err.Description = "Invalid procedure call or argument", "the error's description", "Err.Description " & Err.Description
Err.Clear

html = f.CleanXMLString()
Report Err.Number <> 0, "a missing required argument is a clear automation error", "no error"
Err.Clear

html = f.OLEColorToHTMLColor("not a number")
Report Err.Number = 13, "a wrong variant type is a type mismatch", "Err.Number " & Err.Number
Err.Clear

On Error GoTo 0
Finish "VBScript Functions suite", kChecks
