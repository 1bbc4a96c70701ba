// quillbank.LessonMap and quillbank.LessonMapCollection.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/python_support.hpp"
#include "python/tree_bridge.hpp"

namespace quillbank::python {

void BindMaps(py::module_& module) {
    py::class_<LessonMap, std::shared_ptr<LessonMap>>(
        module, "LessonMap",
        "A named tree of references to storyboards: the navigation structure of a lesson. `sbid in map` asks "
        "whether any item at any depth names the sbid.")
        .def(py::init(&LessonMap::Create), "A new map named \"New Map\", without items.")
        .def_property("name", &LessonMap::Name, &LessonMap::SetName,
                      "The map's name; reading the name of a map read without one raises error 94.")
        .def("clear", &LessonMap::Clear, "Drops every item; the name is kept.")
        .def("contains", &LessonMap::Contains, py::arg("sbid"), "Whether any item at any depth names sbid.")
        .def(
            "from_tree_node", [](LessonMap& m, const py::object& root) { m.FromTreeNode(NodeFromPython(root)); },
            py::arg("root_node"),
            "Rebuilds the tree from the descendants of root_node (any object with key, child and next).")
        .def(
            "to_tree_node",
            [](const LessonMap& m, const py::object& nodes, const py::object& root) {
                m.ToTreeNode(NodesFromPython(nodes), NodeFromPython(root));
            },
            py::arg("node_collection"), py::arg("root_node"),
            "Empties root_node, then adds a node beneath it per item through node_collection.add.")
        .def(
            "to_xml_element",
            [](const LessonMap& m, const std::optional<xml::Document>& d) { return m.ToXMLElement(d.value_or(xml::Document())); },
            py::arg("document") = py::none(), "A deep copy of the \"map\" element, not attached anywhere.")
        .def("from_xml_element", &LessonMap::FromXMLElement, py::arg("element"),
             "The map becomes a deep copy of a \"map\" element.")
        .def("clone", &LessonMap::Clone, "An independent deep copy, name included.")
        .def(
            "insert_storyboard",
            [](LessonMap& m, std::string_view root, std::int32_t relation, std::string_view sbid) {
                m.InsertStoryboard(root, static_cast<StoryboardInsertTypes>(relation), sbid);
            },
            py::arg("root_sbid"), py::arg("relation"), py::arg("new_sbid"),
            "Adds an item naming new_sbid relative to the first item naming root_sbid (StoryboardInsertTypes).")
        .def(
            "insert_map",
            [](LessonMap& m, std::string_view root, std::int32_t relation, const std::shared_ptr<LessonMap>& map) {
                m.InsertMap(root, static_cast<StoryboardInsertTypes>(relation), map);
            },
            py::arg("root_sbid"), py::arg("relation"), py::arg("new_map"),
            "Adds copies of the top-level items of new_map relative to the first item naming root_sbid.")
        .def("remove_storyboards", &LessonMap::RemoveStoryboards, py::arg("storyboards"),
             "Drops every item whose storyboard is in storyboards.")
        .def("keep_storyboards", &LessonMap::KeepStoryboards, py::arg("storyboards"),
             "Drops every item whose storyboard is not in storyboards.")
        .def("__contains__", [](const LessonMap& m, const py::object& sbid) {
            return py::isinstance<py::str>(sbid) && m.Contains(sbid.cast<std::string>());
        });

    using Maps = LessonMapCollection;
    py::class_<Maps, std::shared_ptr<Maps>>(
        module, "LessonMapCollection",
        "The ordered maps of a lesson with its default map. len(), iteration, maps[i] (negative from the end), "
        "maps[name] (the first map of that name; KeyError when none) and in (a map by identity, or a name) work.")
        .def(py::init(&Maps::Create), "A new, empty collection without a default map.")
        .def_property("default_map", &Maps::DefaultMap, &Maps::SetDefaultMap,
                      "The stored default map; without one the first map when there are two or more.")
        .def_property_readonly("length", &Maps::Length, "The highest index: -1 when empty.")
        .def_property_readonly("count", &Maps::Count, "The number of maps.")
        .def("item", &Maps::Item, py::arg("name"), "The first map named name, or None.")
        .def("item_at", &Maps::ItemAt, py::arg("index"), "The map at index, or None.")
        .def("index_of", &Maps::IndexOf, py::arg("map"), "The first index of the very map; -1 when absent.")
        .def("index_of_name", &Maps::IndexOfName, py::arg("name"), "The first index of a map named name; -1.")
        .def("append", &Maps::Append, py::arg("map"), "Appends a map (a reference, not a copy).")
        .def("insert", &Maps::Insert, py::arg("map"), py::arg("index"), "Places map at index; out of range appends.")
        .def("remove", &Maps::Remove, py::arg("map"), "Removes the first occurrence of the very map.")
        .def("remove_at", &Maps::RemoveAt, py::arg("index"), "Removes the map at index.")
        .def("clear", &Maps::Clear, "Removes every map and the default.")
        .def("clone", &Maps::Clone, "A new collection of copies of the maps.")
        .def("to_xml_element", &Maps::ToXMLElement, py::arg("document"), "A new \"maps\" element.")
        .def("from_xml_element", &Maps::FromXMLElement, py::arg("element"), "Reads a \"maps\" element.")
        .def("__len__", &Maps::Count)
        .def("__getitem__",
             [](const Maps& m, const py::object& key) {
                 if (py::isinstance<py::str>(key)) {
                     auto map = m.Item(key.cast<std::string>());
                     if (!map) {
                         throw py::key_error(key.cast<std::string>());
                     }
                     return map;
                 }
                 auto index = key.cast<std::int64_t>();
                 if (index < 0) {
                     index += m.Count();
                 }
                 if (index < 0 || index >= m.Count()) {
                     throw py::index_error("index out of range");
                 }
                 return m.ItemAt(static_cast<std::int32_t>(index));
             })
        .def("__contains__",
             [](const Maps& m, const py::object& value) {
                 if (py::isinstance<py::str>(value)) {
                     return m.IndexOfName(value.cast<std::string>()) >= 0;
                 }
                 if (py::isinstance<LessonMap>(value)) {
                     return m.IndexOf(value.cast<std::shared_ptr<LessonMap>>()) >= 0;
                 }
                 return false;
             })
        .def("__iter__", [](const Maps& m) {
            py::list items;
            for (std::int32_t i = 0; i < m.Count(); ++i) {
                items.append(py::cast(m.ItemAt(i)));
            }
            return IterateSnapshot(items);
        });
}

}  // namespace quillbank::python
