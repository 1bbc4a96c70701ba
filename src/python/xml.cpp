// quillbank.xml: the handles of the XML document model that the To/From
// XMLElement members take and give. A null handle is None.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/python_support.hpp"

namespace quillbank::python {

namespace {

// The node as the most specific handle, or None.
py::object Wrap(const xml::Node& node) {
    if (!node) {
        return py::none();
    }
    if (node.IsElement()) {
        return py::cast(node.AsElement());
    }
    return py::cast(node);
}

py::object WrapElement(const xml::Element& element) { return element ? py::cast(element) : py::object(py::none()); }

}  // namespace

void BindXml(py::module_& module) {
    py::module_ xmlModule = module.def_submodule("xml", "The XML document model the lesson objects read and write.");
    py::list pairs;
    for (const auto& [name, value] : std::vector<std::pair<const char*, int>>{{"Element", 1},
                                                                               {"Attribute", 2},
                                                                               {"Text", 3},
                                                                               {"CData", 4},
                                                                               {"ProcessingInstruction", 7},
                                                                               {"Comment", 8},
                                                                               {"Document", 9},
                                                                               {"DocumentType", 10}}) {
        pairs.append(py::make_tuple(name, value));
    }
    py::object nodeType = py::module_::import("enum").attr("IntEnum")("NodeType", pairs, py::arg("module") = "quillbank.xml");
    nodeType.attr("__doc__") = "The type of a node: element 1, text 3, CDATA 4, comment 8, document 9.";
    xmlModule.attr("NodeType") = nodeType;

    py::class_<xml::Node>(xmlModule, "Node", "A node of an XML document (a handle: == compares identity).")
        .def_property_readonly("node_type", [](const xml::Node& n) {
            return py::module_::import("quillbank").attr("xml").attr("NodeType")(static_cast<int>(n.Type()));
        }, "The node type (NodeType).")
        .def_property_readonly("name", &xml::Node::Name, "The node name: an element's name, \"#text\", \"#comment\"...")
        .def_property_readonly("value", &xml::Node::Value, "The text of a text, CDATA or comment node; \"\" for an element.")
        .def_property("text", &xml::Node::Text, &xml::Node::SetText,
                      "All descendant text joined; setting replaces an element's children by one text node.")
        .def_property_readonly("xml", &xml::Node::Xml, "The serialisation of this node alone.")
        .def_property_readonly("parent", [](const xml::Node& n) { return Wrap(n.Parent()); }, "The parent node or None.")
        .def_property_readonly("first_child", [](const xml::Node& n) { return Wrap(n.FirstChild()); }, "The first child or None.")
        .def_property_readonly("last_child", [](const xml::Node& n) { return Wrap(n.LastChild()); }, "The last child or None.")
        .def_property_readonly("next_sibling", [](const xml::Node& n) { return Wrap(n.NextSibling()); }, "The next sibling or None.")
        .def_property_readonly("previous_sibling", [](const xml::Node& n) { return Wrap(n.PreviousSibling()); },
                               "The previous sibling or None.")
        .def("has_child_nodes", &xml::Node::HasChildNodes, "Whether the node has children.")
        .def_property_readonly("child_count", &xml::Node::ChildCount, "The number of children.")
        .def("child_at", [](const xml::Node& n, std::int32_t index) { return Wrap(n.ChildAt(index)); },
             py::arg("index"), "The child at a zero-based index, or None.")
        .def_property_readonly("owner_document", &xml::Node::OwnerDocument, "The document the node belongs to.")
        .def("append_child", [](xml::Node& n, const xml::Node& child) { return Wrap(n.AppendChild(child)); },
             py::arg("child"), "Appends child (taken from where it was) and returns the node now in place.")
        .def("insert_before",
             [](xml::Node& n, const xml::Node& child, const std::optional<xml::Node>& reference) {
                 return Wrap(n.InsertBefore(child, reference.value_or(xml::Node())));
             },
             py::arg("child"), py::arg("reference") = py::none(),
             "Inserts child before reference (None appends) and returns the node now in place.")
        .def("remove_child", [](xml::Node& n, const xml::Node& child) { return Wrap(n.RemoveChild(child)); },
             py::arg("child"), "Removes child; it stays usable, unattached.")
        .def("clone_node", [](const xml::Node& n, bool deep) { return Wrap(n.CloneNode(deep)); }, py::arg("deep"),
             "A copy in the same document, unattached.")
        .def("is_element", &xml::Node::IsElement, "Whether the node is an element.")
        .def("__eq__", [](const xml::Node& a, const xml::Node& b) { return a == b; });

    py::class_<xml::Element, xml::Node>(xmlModule, "Element", "An element of an XML document.")
        .def("get_attribute", &xml::Element::GetAttribute, py::arg("name"),
             "The attribute's value, or None when the element has no such attribute.")
        .def("has_attribute", &xml::Element::HasAttribute, py::arg("name"), "Whether the attribute is there.")
        .def("set_attribute", &xml::Element::SetAttribute, py::arg("name"), py::arg("value"),
             "Sets an attribute; a new one goes after the existing ones.")
        .def("remove_attribute", &xml::Element::RemoveAttribute, py::arg("name"), "Removes an attribute.")
        .def_property_readonly("attribute_count", &xml::Element::AttributeCount, "The number of attributes.")
        .def("set_base64_value",
             [](xml::Element& e, const py::bytes& data) {
                 const std::string bytes = data;
                 e.SetBase64Value(std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                                                bytes.size()));
             },
             py::arg("data"), "The element's text becomes the base64 of the bytes (\"bin.base64\").")
        .def("get_base64_value",
             [](const xml::Element& e) {
                 const std::vector<std::uint8_t> bytes = e.GetBase64Value();
                 return py::bytes(reinterpret_cast<const char*>(bytes.data()), bytes.size());
             },
             "The element's text decoded as base64.");

    py::class_<xml::Document>(xmlModule, "Document", "An XML document (a handle: == compares identity).")
        .def(py::init(&xml::Document::Create), "A new, empty document.")
        .def("create_element", &xml::Document::CreateElement, py::arg("name"), "A new, unattached element.")
        .def("create_text_node", [](xml::Document& d, std::string_view text) { return Wrap(d.CreateTextNode(text)); },
             py::arg("text"), "A new, unattached text node.")
        .def("create_comment", [](xml::Document& d, std::string_view text) { return Wrap(d.CreateComment(text)); },
             py::arg("text"), "A new, unattached comment.")
        .def("create_cdata_section",
             [](xml::Document& d, std::string_view text) { return Wrap(d.CreateCDataSection(text)); }, py::arg("text"),
             "A new, unattached CDATA section.")
        .def("load_xml", &xml::Document::LoadXML, py::arg("text"),
             "Replaces the content with the parsed text; False (and an empty document) when it does not parse.")
        .def("parse_root_element", [](xml::Document& d, std::string_view text) { return WrapElement(d.ParseRootElement(text)); },
             py::arg("text"), "The root element of the text parsed on its own, or None.")
        .def_property("document_element", [](const xml::Document& d) { return WrapElement(d.DocumentElement()); },
                      &xml::Document::SetDocumentElement, "The root element, or None.")
        .def_property("preserve_white_space", &xml::Document::PreserveWhiteSpace, &xml::Document::SetPreserveWhiteSpace,
                      "Whether loading keeps whitespace-only text nodes.")
        .def_property_readonly("xml", &xml::Document::Xml, "The document's text.")
        .def("__eq__", [](const xml::Document& a, const xml::Document& b) { return a == b; });
}

}  // namespace quillbank::python
