"""The tree-view bridge: the in-memory tree, and any Python objects with the
members the bridge calls."""

from __future__ import annotations

from typing import Optional

import pytest

import quillbank


class Node:
    def __init__(self, key: str, child: Optional[Node] = None, next: Optional[Node] = None) -> None:
        self.key = key
        self.child = child
        self.next = next
        self.parent: Optional[Node] = None


class MethodNode:
    """Members as methods serve too."""

    def __init__(self, key: str, child: Optional[MethodNode] = None) -> None:
        self._key = key
        self._child = child

    def key(self) -> str:
        return self._key

    def child(self) -> Optional[MethodNode]:
        return self._child

    def next(self) -> Optional[MethodNode]:
        return None


class Nodes:
    """A host's tree: records every call."""

    def __init__(self) -> None:
        self.calls: list[tuple[object, ...]] = []

    def add(self, relative: object, relationship: int, key: str, text: str) -> Node:
        self.calls.append(("add", relative, relationship, key, text))
        node = Node(key)
        if isinstance(relative, Node):
            node.parent = relative
            if relative.child is None:
                relative.child = node
            else:
                last = relative.child
                while last.next is not None:
                    last = last.next
                last.next = node
        return node

    def remove(self, node: object) -> None:
        """Unlinks the node from its parent's children."""
        self.calls.append(("remove", node))
        assert isinstance(node, Node) and node.parent is not None
        parent = node.parent
        if parent.child is node:
            parent.child = node.next
        else:
            before = parent.child
            while before is not None and before.next is not node:
                before = before.next
            assert before is not None
            before.next = node.next


def make_map() -> quillbank.LessonMap:
    a_map = quillbank.LessonMap()
    a_map.insert_storyboard("", quillbank.sbitInsertAfter, "A")
    a_map.insert_storyboard("A", quillbank.sbitInsertAsChild, "B")
    a_map.insert_storyboard("", quillbank.sbitInsertAfter, "C")
    return a_map


def test_from_python_nodes() -> None:
    a_map = quillbank.LessonMap()
    a_map.from_tree_node(Node("root", Node("X", Node("Y"), Node("Z"))))
    assert a_map.to_xml_element().xml == '<map name="New Map"><item sbid="X"><item sbid="Y"/></item><item sbid="Z"/></map>'
    a_map.from_tree_node(MethodNode("root", MethodNode("M")))
    assert a_map.to_xml_element().xml == '<map name="New Map"><item sbid="M"/></map>'


def test_to_python_nodes() -> None:
    nodes = Nodes()
    old = Node("old")
    root = Node("root", old)
    old.parent = root
    make_map().to_tree_node(nodes, root)
    assert nodes.calls[0] == ("remove", old)
    adds = [call for call in nodes.calls if call[0] == "add"]
    assert [call[3] for call in adds] == ["A", "B", "C"]
    assert all(call[2] == quillbank.tvwChild for call in adds)
    assert adds[0][1] is root
    assert root.child is not None and root.child.key == "A"


def test_memory_tree() -> None:
    tree = quillbank.MemoryTreeNodes()
    root = tree.add(None, quillbank.tvwLast, "root", "Root")
    assert isinstance(root, quillbank.MemoryTreeNode)
    make_map().to_tree_node(tree, root)
    assert tree.count == 4 and len(tree) == 4
    assert root.children == 2
    a = tree.find("A")
    assert a is not None and a.text == "A" and a.parent is root
    back = quillbank.LessonMap()
    back.from_tree_node(root)
    assert back.to_xml_element().xml == make_map().to_xml_element().xml


def test_errors_of_python_trees_pass_through() -> None:
    class Broken(Node):
        @property
        def child(self) -> Optional[Node]:
            raise RuntimeError("broken host")

        @child.setter
        def child(self, value: Optional[Node]) -> None:
            pass

    with pytest.raises(RuntimeError, match="broken host"):
        quillbank.LessonMap().from_tree_node(Broken("root"))
