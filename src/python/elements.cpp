// quillbank.ChildElement and quillbank.ChildElementCollection.

#include <cstdint>
#include <memory>
#include <string>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/python_support.hpp"
#include "python/typed_members.hpp"

namespace quillbank::python {

namespace {

// A Python index (negative from the end) as a position, or IndexError.
std::int32_t Position(std::int32_t count, std::int64_t index) {
    const std::int64_t position = index < 0 ? index + count : index;
    if (position < 0 || position >= count) {
        throw py::index_error("index out of range");
    }
    return static_cast<std::int32_t>(position);
}

}  // namespace

void BindElements(py::module_& module) {
    py::class_<ChildElement, std::shared_ptr<ChildElement>> element(
        module, "ChildElement",
        "One named, typed element of a storyboard: a type label and an owned property bag (ppc_object), whose "
        "members it forwards. len() and in work on its properties.");
    element.def(py::init(&ChildElement::Create), "A new element: name \"\", no type, an empty bag.")
        .def_property("name", &ChildElement::Name, &ChildElement::SetName, "The element's name (its bag's name).")
        .def_property("element_type", &ChildElement::ElementType, &ChildElement::SetElementType, "The type label.")
        .def_property_readonly("ppc_object", &ChildElement::PPCObject, "The owned bag itself, not a copy.")
        .def("clear", &ChildElement::Clear, "Removes every property; the name and the element type are kept.")
        .def("clone", &ChildElement::Clone, "A deep copy: no property is shared with this element.")
        .def(
            "from_ppc",
            [](ChildElement& e, const std::shared_ptr<PersistedPropertyCollection>& ppc) { return ToPython(e.FromPPC(ppc)); },
            py::arg("ppc"), "The owned bag becomes a copy of ppc (a new bag named \"properties\" for None). Returns None.")
        .def("to_clear_xml_element", &ChildElement::ToClearXMLElement, py::arg("document"),
             "A new, unattached \"ce\" element, every property plain.")
        .def("to_xml_element", &ChildElement::ToXMLElement, py::arg("document"), "A new, unattached \"ce\" element.")
        .def("to_clear_xml_string", &ChildElement::ToClearXMLString, "The clear \"ce\" element as text.")
        .def("to_xml_string", &ChildElement::ToXMLString, "The \"ce\" element as text.")
        .def("from_xml_element", &ChildElement::FromXMLElement, py::arg("element"), "Reads a \"ce\" element.")
        .def("from_xml_string", &ChildElement::FromXMLString, py::arg("xml_string"),
             "Reads a \"ce\" element's text; \"\" gives a new, empty bag named \"\".");
    BindTypedMembers(element);

    using List = ChildElementCollection;
    py::class_<List, std::shared_ptr<List>>(
        module, "ChildElementCollection",
        "A zero-based list of references to child elements (a new one is named \"children\"); the same element "
        "may stand in it twice. len(), iteration, list[i] (negative from the end) and in (by identity) work as "
        "for a list; bad indexes given to the members are ignored as in C++.")
        .def(py::init(&List::Create), "A new, empty list named \"children\".")
        .def_property("name", &List::Name, &List::SetName, "The list's name.")
        .def_property_readonly("length", &List::Length, "The index of the last element; -1 when empty.")
        .def_property_readonly("count", &List::Count, "The number of elements.")
        .def("item", &List::Item, py::arg("index"), "The element at index, or None when out of range.")
        .def("index_of", &List::IndexOf, py::arg("element"),
             "The first position of the very object; -1 for None or an empty list, 0 when not held.")
        .def("append", &List::Append, py::arg("element"), "Appends a reference; None is ignored.")
        .def("insert", &List::Insert, py::arg("element"), py::arg("index"), "Inserts at index; out of range appends.")
        .def("remove", &List::Remove, py::arg("element"), "Removes the element at index_of(element).")
        .def("remove_at", &List::RemoveAt, py::arg("index"), "Removes the element at index.")
        .def("clear", &List::Clear, "Drops every element; the name is kept.")
        .def("swap", &List::Swap, py::arg("source_index"), py::arg("destination_index"),
             "Exchanges two elements when both indexes are in range and differ.")
        .def("move_previous", &List::MovePrevious, py::arg("element"), "Exchanges the element with the one before.")
        .def("move_next", &List::MoveNext, py::arg("element"), "Exchanges the element with the one after.")
        .def("move_first", &List::MoveFirst, py::arg("element"), "Exchanges the element with the first.")
        .def("move_last", &List::MoveLast, py::arg("element"), "Exchanges the element with the last.")
        .def("move_to", &List::MoveTo, py::arg("element"), py::arg("destination_index"),
             "Exchanges the element with the one at destination_index.")
        .def("clone", &List::Clone, "A deep copy: every entry is cloned.")
        .def("to_clear_xml_element", &List::ToClearXMLElement, py::arg("document"), "A new \"cec\" element, clear form.")
        .def("to_xml_element", &List::ToXMLElement, py::arg("document"), "A new \"cec\" element.")
        .def("from_xml_element", &List::FromXMLElement, py::arg("element"), "Reads a \"cec\" element.")
        .def("__len__", &List::Count)
        .def("__getitem__", [](const List& l, std::int64_t index) { return l.Item(Position(l.Count(), index)); })
        .def("__contains__",
             [](const List& l, const py::object& value) {
                 if (!py::isinstance<ChildElement>(value)) {
                     return false;
                 }
                 const auto wanted = value.cast<std::shared_ptr<ChildElement>>();
                 for (std::int32_t i = 0; i < l.Count(); ++i) {
                     if (l.Item(i) == wanted) {
                         return true;
                     }
                 }
                 return false;
             })
        .def("__iter__", [](const List& l) {
            py::list items;
            for (std::int32_t i = 0; i < l.Count(); ++i) {
                items.append(py::cast(l.Item(i)));
            }
            return IterateSnapshot(items);
        });
}

}  // namespace quillbank::python
