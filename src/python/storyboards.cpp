// quillbank.Storyboard and quillbank.StoryboardCollection.

#include <memory>
#include <string>
#include <string_view>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/python_support.hpp"

namespace quillbank::python {

void BindStoryboards(py::module_& module) {
    py::class_<Storyboard, std::shared_ptr<Storyboard>>(
        module, "Storyboard",
        "One page of a lesson: a read-only identifier (sbid), texts, a property bag and a child-element list.")
        .def(py::init(&Storyboard::Create),
             "A new storyboard: a new sbid, the title \"New Storyboard\", empty texts, bag and list.")
        .def_property_readonly("sbid", &Storyboard::SBID, "The identifier (36-character upper-case GUID text).")
        .def_property("title", &Storyboard::Title, &Storyboard::SetTitle, "The title.")
        .def_property("identifier", &Storyboard::Identifier, &Storyboard::SetIdentifier, "The host's identifier.")
        .def_property("sb_type", &Storyboard::SBType, &Storyboard::SetSBType, "The storyboard type.")
        .def_property("classification", &Storyboard::Classification, &Storyboard::SetClassification,
                      "The classification.")
        .def_property_readonly("properties", &Storyboard::Properties, "The owned bag itself.")
        .def_property_readonly("children", &Storyboard::Children, "The owned child-element list itself.")
        .def("clone", &Storyboard::Clone, "A deep copy with the same sbid.")
        .def("duplicate", &Storyboard::Duplicate, py::arg("new_title_prefix") = "",
             "A deep copy with a new sbid, titled new_title_prefix followed by this title.")
        .def(
            "copy_from",
            [](Storyboard& s, const std::shared_ptr<Storyboard>& sb) { return ToPython(s.CopyFrom(sb)); },
            py::arg("sb"), "Copies everything but the sbid from sb. Returns None.")
        .def("to_clear_xml_element", &Storyboard::ToClearXMLElement, py::arg("document"),
             "A new \"storyboard\" element, clear form.")
        .def("to_xml_element", &Storyboard::ToXMLElement, py::arg("document"), "A new \"storyboard\" element.")
        .def("from_xml_element", &Storyboard::FromXMLElement, py::arg("element"),
             "Resets the storyboard (a new sbid included), then reads a \"storyboard\" element.");

    using Set = StoryboardCollection;
    py::class_<Set, std::shared_ptr<Set>>(
        module, "StoryboardCollection",
        "A lesson's storyboards in the order they were added, keyed by sbid (matched without regard to case), "
        "with a current storyboard. len(), iteration (over the storyboards), set[sbid] (KeyError when absent) "
        "and in (an sbid, or a storyboard held under its sbid) work.")
        .def(py::init(&Set::Create), "A new, empty collection.")
        .def_property("current_sb", &Set::CurrentSB, &Set::SetCurrentSB,
                      "The current storyboard (need not be a member), or None.")
        .def_property("current_sbid", &Set::CurrentSBID, &Set::SetCurrentSBID,
                      "The current storyboard's sbid or \"\"; setting makes item(sbid) current.")
        .def("add", &Set::Add, py::arg("sb"), "Appends sb under its sbid, replacing an entry of that sbid; returns sb.")
        .def("contains", &Set::Contains, py::arg("sbid"), "Whether a storyboard is held under sbid.")
        .def_property_readonly("count", &Set::Count, "The number of storyboards.")
        .def("item", &Set::Item, py::arg("sbid"), "The storyboard under sbid, or None.")
        .def("remove", &Set::Remove, py::arg("sbid"), "Removes the entry under sbid; unknown ones are ignored.")
        .def("clear", [](Set& s) { return ToPython(s.Clear()); }, "Empties the set and clears the current storyboard.")
        .def("remove_collection", &Set::RemoveCollection, py::arg("storyboards"),
             "Removes the entries of every storyboard of storyboards.")
        .def("add_collection", &Set::AddCollection, py::arg("storyboards"), py::arg("overwrite_existing") = true,
             "Adds every storyboard of storyboards (shared, not copied).")
        .def("clone", &Set::Clone, py::arg("clone_storyboards") = true,
             "A new collection of clones (or of the same storyboards).")
        .def("to_clear_xml_element", &Set::ToClearXMLElement, py::arg("document"),
             "A new \"storyboards\" element, clear form.")
        .def("to_xml_element", &Set::ToXMLElement, py::arg("document"), "A new \"storyboards\" element.")
        .def("from_xml_element", &Set::FromXMLElement, py::arg("element"), "Reads a \"storyboards\" element.")
        .def("__len__", &Set::Count)
        .def("__getitem__",
             [](const Set& s, std::string_view sbid) {
                 auto sb = s.Item(sbid);
                 if (!sb) {
                     throw py::key_error(std::string(sbid));
                 }
                 return sb;
             })
        .def("__contains__",
             [](const Set& s, const py::object& value) {
                 if (py::isinstance<py::str>(value)) {
                     return s.Contains(value.cast<std::string>());
                 }
                 if (py::isinstance<Storyboard>(value)) {
                     const auto sb = value.cast<std::shared_ptr<Storyboard>>();
                     return s.Item(sb->SBID()) == sb;
                 }
                 return false;
             })
        .def("__iter__", [](const Set& s) {
            py::list items;
            for (const auto& sb : s) {
                items.append(py::cast(sb));
            }
            return IterateSnapshot(items);
        });
}

}  // namespace quillbank::python
