' LessonMap as a VBScript host sees it: created by its programmatic
' identifier, called late-bound, errors through Err. The tree-view bridge is
' driven from VBScript with tree objects that VBScript holds but cannot write
' itself under Wine: a tree node needs a member named Next, a keyword, and
' Wine's VBScript takes neither that nor the bracketed [Next] that Windows'
' VBScript allows. The nodes are therefore made by JScript inside a script
' control (MSScriptControl.ScriptControl; Wine's cscript runs no .wsf file),
' handed to VBScript, and passed by VBScript to the map, which calls them
' late-bound as it calls a host's tree view. One line per check ("ok ..." or
' "not ok ..."), then the sentinel line; the exit code is the number of
' failed checks.
Const kChecks = 11
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

' The tree view, written in JScript: nodes with Key, Text, Child and Next; a
' node collection whose Add(Relative, Relationship, Key, Text) appends a last
' child for relationship 4 and whose Remove takes the node itself; and
' Shape, the tree below a node as text. The script control takes the code a
' statement at a time.
Dim control, code, line
Set control = CreateObject("MSScriptControl.ScriptControl")
control.Language = "JScript"
code = Array( _
    "function Node(key, parent) { this.Key = key; this.Text = key; this.Child = null; this.Next = null; " & _
        "this.parent = parent; }", _
    "function lastChild(node) { var w = node.Child; while (w !== null && w.Next !== null) { w = w.Next; } " & _
        "return w; }", _
    "function Nodes() { this.added = 0; this.removed = 0; }", _
    "Nodes.prototype.Add = function (relative, relationship, key, text) { " & _
        "if (relationship != 4) { throw new Error('unexpected relationship ' + relationship); } " & _
        "var n = new Node(key, relative); n.Text = text; var last = lastChild(relative); " & _
        "if (last === null) { relative.Child = n; } else { last.Next = n; } this.added++; return n; };", _
    "Nodes.prototype.Remove = function (node) { var parent = node.parent; " & _
        "if (parent.Child === node) { parent.Child = node.Next; } else { var w = parent.Child; " & _
        "while (w.Next !== node) { w = w.Next; } w.Next = node.Next; } this.removed++; };", _
    "function shape(node) { var t = ''; for (var w = node.Child; w !== null; w = w.Next) { t += w.Key; " & _
        "if (w.Child !== null) { t += '(' + shape(w) + ')'; } if (w.Next !== null) { t += ','; } } return t; }", _
    "var nodes = new Nodes();", _
    "var source = new Node('ignored', null);", _
    "var q = null;", _
    "nodes.Add(source, 4, 'P', 'P'); q = nodes.Add(source, 4, 'Q', 'Q'); nodes.Add(q, 4, 'R', 'R');", _
    "var target = new Node('target', null);", _
    "nodes.Add(target, 4, 'old', 'old');", _
    "var full = new Nodes();", _
    "full.Add = function () { throw new Error('the tree is full'); };")
For Each line In code
    control.AddCode line
Next
Report Err.Number = 0 And control.Eval("shape(source)") = "P,Q(R)", _
    "a tree view written in JScript is at hand in VBScript", "Err " & Err.Number & " " & Err.Description
Err.Clear

Dim tree, source, target
Set tree = CreateObject("Quillbank.LessonMap")
Set source = control.Eval("source")
tree.FromTreeNode source
Report Err.Number = 0 And tree.Contains("P") And tree.Contains("R") And Not tree.Contains("ignored"), _
    "FromTreeNode stores the descendants of the root node by key", "Err " & Err.Number & " " & Err.Description
Err.Clear

tree.FromTreeNode Nothing
Report Err.Number = 0 And tree.Contains("Q"), "FromTreeNode of Nothing changes nothing", _
    "Err " & Err.Number & " " & Err.Description
Err.Clear

Set target = control.Eval("target")
tree.ToTreeNode control.Eval("nodes"), target
Report Err.Number = 0 And control.Eval("shape(target)") = "P,Q(R)" And control.Eval("nodes.removed") = 1 And _
    control.Eval("target.Child.Text") = "P", "ToTreeNode empties the root node first and sets key and text", _
    "Err " & Err.Number & " " & Err.Description & " " & control.Eval("shape(target)")
Err.Clear

tree.ToTreeNode control.Eval("nodes"), Nothing
Report Err.Number = 94 And Err.Description = "RootNode cannot be null" And Err.Source = "LessonMap.ToTreeNode", _
    "ToTreeNode without a root node raises error 94", "Err " & Err.Number & " " & Err.Description
Err.Clear

tree.ToTreeNode control.Eval("full"), target
Report Err.Number <> 0 And control.Eval("shape(target)") = "", "a failure of the tree view passes to the caller", _
    "Err " & Err.Number & " " & control.Eval("shape(target)")
Err.Clear

On Error GoTo 0
Finish "VBScript LessonMap suite", kChecks
