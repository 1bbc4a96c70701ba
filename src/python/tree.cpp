// The tree-view bridge: the library's in-memory tree, and adapters that let
// any Python objects with the members a map calls stand for a host's tree
// (nodes with key, child and next; a node collection with add and remove).

#include <memory>
#include <string>
#include <string_view>

#include <pybind11/pybind11.h>

#include "python/python_support.hpp"
#include "python/tree_bridge.hpp"

namespace quillbank::python {

namespace {

// The member `name` of `object`: called when it is callable, so that both
// attributes and methods serve.
py::object Member(const py::object& object, const char* name) {
    py::object member = object.attr(name);
    return PyCallable_Check(member.ptr()) ? member() : member;
}

class PythonTreeNode final : public TreeNode {
public:
    explicit PythonTreeNode(py::object node) : node_(std::move(node)) {}
    ~PythonTreeNode() override {
        py::gil_scoped_acquire gil;
        node_ = py::object();
    }
    PythonTreeNode(const PythonTreeNode&) = delete;
    PythonTreeNode& operator=(const PythonTreeNode&) = delete;

    std::string Key() const override {
        py::gil_scoped_acquire gil;
        return py::str(Member(node_, "key")).cast<std::string>();
    }
    std::shared_ptr<TreeNode> Child() const override {
        py::gil_scoped_acquire gil;
        return NodeFromPython(Member(node_, "child"));
    }
    std::shared_ptr<TreeNode> Next() const override {
        py::gil_scoped_acquire gil;
        return NodeFromPython(Member(node_, "next"));
    }
    const py::object& Object() const { return node_; }

private:
    py::object node_;
};

class PythonTreeNodes final : public TreeNodes {
public:
    explicit PythonTreeNodes(py::object nodes) : nodes_(std::move(nodes)) {}
    ~PythonTreeNodes() override {
        py::gil_scoped_acquire gil;
        nodes_ = py::object();
    }
    PythonTreeNodes(const PythonTreeNodes&) = delete;
    PythonTreeNodes& operator=(const PythonTreeNodes&) = delete;

    std::shared_ptr<TreeNode> Add(const std::shared_ptr<TreeNode>& Relative, std::int32_t Relationship,
                                  std::string_view Key, std::string_view Text) override {
        py::gil_scoped_acquire gil;
        return NodeFromPython(nodes_.attr("add")(NodeToPython(Relative), Relationship, Key, Text));
    }
    void Remove(const std::shared_ptr<TreeNode>& Node) override {
        py::gil_scoped_acquire gil;
        nodes_.attr("remove")(NodeToPython(Node));
    }

private:
    py::object nodes_;
};

}  // namespace

std::shared_ptr<TreeNode> NodeFromPython(const py::object& node) {
    if (node.is_none()) {
        return nullptr;
    }
    if (py::isinstance<TreeNode>(node)) {
        return node.cast<std::shared_ptr<TreeNode>>();
    }
    return std::make_shared<PythonTreeNode>(node);
}

py::object NodeToPython(const std::shared_ptr<TreeNode>& node) {
    if (!node) {
        return py::none();
    }
    if (const auto* adapter = dynamic_cast<const PythonTreeNode*>(node.get())) {
        return adapter->Object();
    }
    return py::cast(node);
}

std::shared_ptr<TreeNodes> NodesFromPython(const py::object& nodes) {
    if (nodes.is_none()) {
        return nullptr;
    }
    if (py::isinstance<TreeNodes>(nodes)) {
        return nodes.cast<std::shared_ptr<TreeNodes>>();
    }
    return std::make_shared<PythonTreeNodes>(nodes);
}

void BindTree(py::module_& module) {
    py::class_<TreeNode, std::shared_ptr<TreeNode>>(
        module, "TreeNode",
        "A node of a tree that a map shows itself in. Any object with the members key, child and next (attributes "
        "or methods; child and next give a node or None) serves as well.")
        .def_property_readonly("key", &TreeNode::Key, "The node's key (a map stores an sbid here).")
        .def_property_readonly("child", &TreeNode::Child, "The first child, or None.")
        .def_property_readonly("next", &TreeNode::Next, "The next sibling, or None.");
    py::class_<TreeNodes, std::shared_ptr<TreeNodes>>(
        module, "TreeNodes",
        "The nodes of a tree. Any object with add(relative, relationship, key, text) -> node and remove(node) "
        "serves as well.")
        .def(
            "add",
            [](TreeNodes& t, const py::object& relative, std::int32_t relationship, std::string_view key,
               std::string_view text) { return NodeToPython(t.Add(NodeFromPython(relative), relationship, key, text)); },
            py::arg("relative"), py::arg("relationship"), py::arg("key"), py::arg("text"),
            "Adds a node placed by relationship (TreeRelationshipConstants) relative to relative; returns it.")
        .def(
            "remove", [](TreeNodes& t, const py::object& node) { t.Remove(NodeFromPython(node)); }, py::arg("node"),
            "Removes the node with its descendants.");

    py::class_<MemoryTreeNode, TreeNode, std::shared_ptr<MemoryTreeNode>>(
        module, "MemoryTreeNode", "A node of a MemoryTreeNodes tree.")
        .def_property_readonly("text", &MemoryTreeNode::Text, "The label shown for the node.")
        .def_property_readonly("first_child", &MemoryTreeNode::FirstChild, "The first child, or None.")
        .def_property_readonly("next_sibling", &MemoryTreeNode::NextSibling, "The next sibling, or None.")
        .def_property_readonly("previous_sibling", &MemoryTreeNode::PreviousSibling, "The previous sibling, or None.")
        .def_property_readonly("last_child", &MemoryTreeNode::LastChild, "The last child, or None.")
        .def_property_readonly("parent", &MemoryTreeNode::Parent, "The parent, or None for a top-level node.")
        .def_property_readonly("children", &MemoryTreeNode::Children, "The number of direct children.");
    py::class_<MemoryTreeNodes, TreeNodes, std::shared_ptr<MemoryTreeNodes>>(
        module, "MemoryTreeNodes", "A tree of keyed, labelled nodes held in memory.")
        .def(py::init(&MemoryTreeNodes::Create), py::arg("unique_keys") = false,
             "A new, empty tree; with unique_keys a repeated non-empty key raises error 35602.")
        .def_property_readonly("count", &MemoryTreeNodes::Count, "The number of nodes at every level.")
        .def_property_readonly("first_root", &MemoryTreeNodes::FirstRoot, "The first top-level node, or None.")
        .def("find", &MemoryTreeNodes::Find, py::arg("key"), "The first node in document order with the key, or None.")
        .def("__len__", &MemoryTreeNodes::Count);
}

}  // namespace quillbank::python
