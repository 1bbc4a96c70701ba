// LessonMap as a JScript host sees it: created by its programmatic
// identifier, called late-bound, with a tree view written in the script (its
// Node and Nodes objects reached late-bound by the map) and MSXML documents
// made by the script. One line per check ("ok ..." or "not ok ..."), then the
// sentinel line; the exit code is the number of failed checks.

// A small tree view: nodes with Key, Text, Child and Next, and a node
// collection whose Add takes (Relative, Relationship, Key, Text) and appends
// as last child for relationship 4, and whose Remove takes the node itself.
function Node(key, parent) {
    this.Key = key;
    this.Text = key;
    this.Child = null;
    this.Next = null;
    this.parent = parent;
}
function lastChild(node) {
    var walk = node.Child;
    while (walk !== null && walk.Next !== null) {
        walk = walk.Next;
    }
    return walk;
}
function Nodes() {
    this.added = 0;
    this.removed = 0;
    this.Add = function (relative, relationship, key, text) {
        if (relationship != 4) {
            throw new Error("unexpected relationship " + relationship);
        }
        var node = new Node(key, relative);
        node.Text = text;
        var last = lastChild(relative);
        if (last === null) {
            relative.Child = node;
        } else {
            last.Next = node;
        }
        this.added++;
        return node;
    };
    this.Remove = function (node) {
        var parent = node.parent;
        if (parent.Child === node) {
            parent.Child = node.Next;
        } else {
            var walk = parent.Child;
            while (walk.Next !== node) {
                walk = walk.Next;
            }
            walk.Next = node.Next;
        }
        this.removed++;
    };
}
function add(nodes, parent, key) {
    return nodes.Add(parent, 4, key, key);
}
function shape(node) {
    var text = "";
    for (var walk = node.Child; walk !== null; walk = walk.Next) {
        text += walk.Key;
        if (walk.Child !== null) {
            text += "(" + shape(walk) + ")";
        }
        if (walk.Next !== null) {
            text += ",";
        }
    }
    return text;
}
// The map's tree as text, read back through a tree view.
function mapShape(map) {
    var root = new Node("root", null);
    map.ToTreeNode(new Nodes(), root);
    return shape(root);
}

var map = null;
check("Quillbank.LessonMap is created by its programmatic identifier", function () {
    map = new ActiveXObject("Quillbank.LessonMap");
    return map !== null;
});
check("a new map is named New Map and is empty", function () {
    var element = map.ToXMLElement();
    return (map.Name == "New Map" && element.nodeName == "map" && element.childNodes.length === 0) || element.xml;
});
check("InsertStoryboard without a root: after appends, the rest go first", function () {
    map.InsertStoryboard("", 2, "A");
    map.InsertStoryboard("", 1, "B");
    map.InsertStoryboard("", 3, "C");
    return mapShape(map) == "C,B,A" || mapShape(map);
});
check("InsertStoryboard as child makes the first child", function () {
    map.InsertStoryboard("A", 3, "X");
    map.InsertStoryboard("A", 3, "Y");
    map.InsertStoryboard("absent", 2, "Z");
    return (mapShape(map) == "C,B,A(Y,X),Z" && map.Contains("Y") && !map.Contains("y")) || mapShape(map);
});
checkRaises("InsertStoryboard of an empty identifier raises 380", function () {
    map.InsertStoryboard("A", 1, "");
}, function (x) {
    return (hostNumber(x) == 380 && x.description == "NewSBID cannot be ''.") || (x.number + " " + x.description);
});
check("FromTreeNode stores the descendants of the root node by key", function () {
    var nodes = new Nodes();
    var root = new Node("ignored", null);
    add(nodes, root, "P");
    var q = add(nodes, root, "Q");
    add(nodes, q, "R");
    var other = new ActiveXObject("Quillbank.LessonMap");
    other.FromTreeNode(root);
    other.FromTreeNode(null);
    return (mapShape(other) == "P,Q(R)" && !other.Contains("ignored")) || mapShape(other);
});
check("ToTreeNode empties the root node first and sets key and text", function () {
    var nodes = new Nodes();
    var root = new Node("root", null);
    add(nodes, root, "old");
    map.ToTreeNode(nodes, root);
    return (shape(root) == "C,B,A(Y,X),Z" && nodes.removed == 1 && root.Child.Text == "C") || shape(root);
});
checkRaises("ToTreeNode without a node collection raises 94", function () {
    map.ToTreeNode(null, new Node("root", null));
}, function (x) {
    return (hostNumber(x) == 94 && x.description == "NodeCollection cannot be null") ||
        (x.number + " " + x.description);
});
checkRaises("a failure of the tree view passes to the caller", function () {
    var nodes = new Nodes();
    nodes.Add = function () {
        throw new Error("the tree is full");
    };
    map.ToTreeNode(nodes, new Node("root", null));
}, function (x) {
    // Wine's JScript hands the error on without its message.
    return x.number != 0 || (x.number + " " + x.description);
});
check("InsertMap puts copies of another map's items first beneath the root", function () {
    var other = new ActiveXObject("Quillbank.LessonMap");
    other.InsertStoryboard("", 2, "P");
    other.InsertStoryboard("", 2, "Q");
    other.InsertStoryboard("Q", 3, "R");
    var target = new ActiveXObject("Quillbank.LessonMap");
    target.InsertStoryboard("", 2, "A");
    target.InsertStoryboard("A", 3, "Z");
    target.InsertMap("A", 3, other);
    return (mapShape(target) == "A(P,Q(R),Z)" && mapShape(other) == "P,Q(R)") || mapShape(target);
});
checkRaises("InsertMap of null raises 380", function () {
    map.InsertMap("", 1, null);
}, function (x) {
    return (hostNumber(x) == 380 && x.description == "NewMap cannot be null.") || (x.number + " " + x.description);
});
check("RemoveStoryboards and KeepStoryboards prune against a set of storyboards", function () {
    var a = new ActiveXObject("Quillbank.Storyboard");
    var b = new ActiveXObject("Quillbank.Storyboard");
    var boards = new ActiveXObject("Quillbank.StoryboardCollection");
    boards.Add(a);
    var removing = new ActiveXObject("Quillbank.LessonMap");
    removing.InsertStoryboard("", 2, a.SBID);
    removing.InsertStoryboard(a.SBID, 3, b.SBID);
    removing.RemoveStoryboards(boards);
    var keeping = new ActiveXObject("Quillbank.LessonMap");
    keeping.InsertStoryboard("", 2, a.SBID);
    keeping.InsertStoryboard(a.SBID, 3, b.SBID);
    keeping.KeepStoryboards(boards);
    return (mapShape(removing) == b.SBID && mapShape(keeping) == a.SBID) ||
        (mapShape(removing) + " " + mapShape(keeping));
});
check("Clone is independent of the map it was made from", function () {
    var clone = map.Clone();
    clone.InsertStoryboard("", 2, "W");
    return (clone !== map && !map.Contains("W") && clone.Contains("W") && clone.Name == map.Name) || mapShape(map);
});
check("ToXMLElement hands out a copy the host can place in its own document", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    var element = map.ToXMLElement(d);
    element.setAttribute("name", "changed");
    var unchanged = map.Name;
    d.loadXML(element.xml);
    return (unchanged == "New Map" && d.documentElement.getAttribute("name") == "changed") || unchanged;
});
check("FromXMLElement reads the host's map element whole", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML('<map name="read" extra="kept"><item sbid="A"><item sbid="B"/></item></map>');
    var other = new ActiveXObject("Quillbank.LessonMap");
    other.FromXMLElement(d.documentElement);
    return (other.Name == "read" && mapShape(other) == "A(B)" &&
            other.ToXMLElement().getAttribute("extra") == "kept") || mapShape(other);
});
checkRaises("FromXMLElement of another element raises 0x800403E9", function () {
    var d = new ActiveXObject("Msxml2.DOMDocument.3.0");
    d.loadXML("<maps/>");
    map.FromXMLElement(d.documentElement);
}, function (x) {
    return (x.number == -2147220503 && x.description == "Element is not a <map> element") ||
        (x.number + " " + x.description);
});
check("Clear keeps the name and drops the items", function () {
    var clone = map.Clone();
    clone.Name = "kept";
    clone.Clear();
    return (clone.Name == "kept" && mapShape(clone) === "") || mapShape(clone);
});

finish("JScript LessonMap suite");
