// The records as small classes with fields, keyword construction, == and repr.

#include <string>

#include <pybind11/operators.h>
#include <pybind11/pybind11.h>

#include "python/python_support.hpp"

namespace quillbank::python {

namespace {

std::string Quoted(const std::string& text) { return py::repr(py::str(text)).cast<std::string>(); }

}  // namespace

void BindRecords(py::module_& module) {
    py::class_<AssetData>(module, "AssetData", "An asset: a file with its description and source.")
        .def(py::init([](std::string filename, std::string description, std::string source) {
                 return AssetData{std::move(filename), std::move(description), std::move(source)};
             }),
             py::arg("filename") = "", py::arg("description") = "", py::arg("source") = "")
        .def_readwrite("filename", &AssetData::Filename, "The file name.")
        .def_readwrite("description", &AssetData::Description, "What the asset shows.")
        .def_readwrite("source", &AssetData::Source, "Where the asset comes from.")
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const AssetData& a) {
            return "AssetData(filename=" + Quoted(a.Filename) + ", description=" + Quoted(a.Description) +
                   ", source=" + Quoted(a.Source) + ")";
        });
    py::class_<FontData>(module, "FontData", "A font: family name, size in points and style.")
        .def(py::init([](std::string name, double size, bool bold, bool italic, bool underline) {
                 return FontData{std::move(name), size, bold, italic, underline};
             }),
             py::arg("name") = "", py::arg("size") = 0.0, py::arg("bold") = false, py::arg("italic") = false,
             py::arg("underline") = false)
        .def_readwrite("name", &FontData::Name, "The family name.")
        .def_readwrite("size", &FontData::Size, "The size in points.")
        .def_readwrite("bold", &FontData::Bold, "Bold.")
        .def_readwrite("italic", &FontData::Italic, "Italic.")
        .def_readwrite("underline", &FontData::Underline, "Underlined.")
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const FontData& f) {
            return "FontData(name=" + Quoted(f.Name) + ", size=" + py::repr(py::float_(f.Size)).cast<std::string>() +
                   ", bold=" + (f.Bold ? "True" : "False") + ", italic=" + (f.Italic ? "True" : "False") +
                   ", underline=" + (f.Underline ? "True" : "False") + ")";
        });
    py::class_<LocationData>(module, "LocationData", "A place in a lesson: two storyboard identifiers and a map name.")
        .def(py::init([](std::string startPoint, std::string endPoint, std::string mapName) {
                 return LocationData{std::move(startPoint), std::move(endPoint), std::move(mapName)};
             }),
             py::arg("start_point") = "", py::arg("end_point") = "", py::arg("map_name") = "")
        .def_readwrite("start_point", &LocationData::StartPoint, "The first storyboard's identifier.")
        .def_readwrite("end_point", &LocationData::EndPoint, "The last storyboard's identifier.")
        .def_readwrite("map_name", &LocationData::MapName, "The name of the map.")
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const LocationData& l) {
            return "LocationData(start_point=" + Quoted(l.StartPoint) + ", end_point=" + Quoted(l.EndPoint) +
                   ", map_name=" + Quoted(l.MapName) + ")";
        });
    py::class_<Rectangle>(module, "Rectangle", "A rectangle: left, top, width and height (32-bit integers).")
        .def(py::init([](std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
                 return Rectangle{left, top, width, height};
             }),
             py::arg("left") = 0, py::arg("top") = 0, py::arg("width") = 0, py::arg("height") = 0)
        .def_readwrite("left", &Rectangle::Left, "The left edge.")
        .def_readwrite("top", &Rectangle::Top, "The top edge.")
        .def_readwrite("width", &Rectangle::Width, "The width.")
        .def_readwrite("height", &Rectangle::Height, "The height.")
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const Rectangle& r) {
            return "Rectangle(left=" + std::to_string(r.Left) + ", top=" + std::to_string(r.Top) +
                   ", width=" + std::to_string(r.Width) + ", height=" + std::to_string(r.Height) + ")";
        });
}

}  // namespace quillbank::python
