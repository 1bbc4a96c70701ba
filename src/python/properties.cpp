// quillbank.PersistedPropertyCollection: a bag of named, typed values, with
// the manners of a dict (len, in, iteration over names, [name]).

#include <memory>
#include <string>
#include <string_view>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/python_support.hpp"
#include "python/typed_members.hpp"

namespace quillbank::python {

void BindProperties(py::module_& module) {
    using Bag = PersistedPropertyCollection;
    py::class_<Bag, std::shared_ptr<Bag>> cls(
        module, "PersistedPropertyCollection",
        "A bag of named, typed values (a new one is named \"properties\"). Names are matched without regard to "
        "case; the bag keeps its properties in the order they were last set. bag[name] gives the value as the "
        "natural Python value, bag[name] = value sets it by its Python type, del bag[name] removes it, len(), in "
        "and iteration (over the names) work as for a dict.");
    cls.def(py::init(&Bag::Create), "A new bag named \"properties\", with no properties.")
        .def_property("name", &Bag::Name, &Bag::SetName, "The bag's name.")
        .def(
            "get_property_name_array",
            [](const Bag& b, std::int32_t encodingType) { return b.GetPropertyNameArray(encodingType); },
            py::arg("encoding_type") = -1,
            "The names in their order; with encoding_type 0 or 1 only those of that encoding. An empty result is [\"\"].")
        .def("clear", &Bag::Clear, "Removes every property; the name is kept.")
        .def(
            "get_value", [](const Bag& b, std::string_view name) { return ToPython(b.GetValue(name)); },
            py::arg("property_name"), "The property's value as the natural Python value; None when absent.")
        .def(
            "get_encoding_type",
            [](const Bag& b, std::string_view name) { return EnumValue("EncodingTypes", b.GetEncodingType(name)); },
            py::arg("property_name"), "The property's EncodingTypes; -1 when the name is absent.")
        .def(
            "get_property_type",
            [](const Bag& b, std::string_view name) { return EnumValue("PropertyTypes", b.GetPropertyType(name)); },
            py::arg("property_name"), "The property's PropertyTypes; ptNone when the name is absent.")
        .def(
            "get_date",
            [](const Bag& b, std::string_view name, const py::object& d) {
                return DateToPython(b.GetDate(name, d.is_none() ? 0.0 : DateFromPython(d)));
            },
            py::arg("property_name"), py::arg("default_value") = py::none(),
            "The date property as datetime.datetime, or default_value (1899-12-30 when None).")
        .def(
            "set_date",
            [](Bag& b, std::string_view name, const py::handle& v, std::int32_t e) {
                b.SetDate(name, DateFromPython(v), static_cast<EncodingTypes>(e));
            },
            py::arg("property_name"), py::arg("new_value"), py::arg("encoding_type") = 0,
            "Sets a date property from a datetime.datetime (or an automation date number).")
        .def("clone", &Bag::Clone, "A deep copy with the same name and order.")
        .def("to_clear_xml_string", &Bag::ToClearXMLString, "The \"ppc\" element as text, every property plain.")
        .def("to_xml_string", &Bag::ToXMLString, "The \"ppc\" element as text, in the normal form.")
        .def("from_xml_string", &Bag::FromXMLString, py::arg("xml_string"),
             "Reads a \"ppc\" element's text; \"\" resets the bag.")
        .def("to_clear_xml_element", &Bag::ToClearXMLElement, py::arg("document"),
             "A new, unattached \"ppc\" element of document, every property plain, sorted by name.")
        .def("to_xml_element", &Bag::ToXMLElement, py::arg("document"),
             "A new, unattached \"ppc\" element of document: plain properties sorted, then the encoded ones.")
        .def("from_xml_element", &Bag::FromXMLElement, py::arg("element"), "Reads a \"ppc\" element.")
        .def("__getitem__",
             [](const Bag& b, std::string_view name) {
                 if (!b.Exists(name)) {
                     throw py::key_error(std::string(name));
                 }
                 return ToPython(b.GetValue(name));
             })
        .def("__setitem__",
             [](Bag& b, std::string_view name, const py::handle& value) { SetFromPython(b, name, value, etNotEncoded); })
        .def("__delitem__",
             [](Bag& b, std::string_view name) {
                 if (!b.Exists(name)) {
                     throw py::key_error(std::string(name));
                 }
                 b.Remove(name);
             })
        .def("__iter__", [](const Bag& b) {
            py::list names;
            if (b.Count() > 0) {
                for (const std::string& name : b.GetPropertyNameArray()) {
                    names.append(py::str(name));
                }
            }
            return IterateSnapshot(names);
        });
    BindTypedMembers(cls);
}

}  // namespace quillbank::python
