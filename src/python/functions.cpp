// quillbank.Functions: the library's static utility members.

#include <pybind11/pybind11.h>

#include "python/python_support.hpp"

namespace quillbank::python {

void BindFunctions(py::module_& module) {
    py::class_<Functions>(module, "Functions",
                          "The library's utility members, all static: where and in which version it is installed, "
                          "GUID texts, colour conversion, records with defaults, XML text clean-up.")
        .def_static("ocx_path", &Functions::OCXPath, "The folder of the loaded library file.")
        .def_static("ocx_version", &Functions::OCXVersion, "\"Major.Minor (Build rrrr)\" and any version comments.")
        .def_static("set_regional_settings", &Functions::SetRegionalSettings, py::arg("name"),
                    "Chooses the regional setting (\"de-DE\") in which numbers, booleans and dates that are not in "
                    "the library's own written forms are read; raises Error 380 for an unknown name.")
        .def_static("regional_settings", &Functions::RegionalSettings,
                    "The regional setting reading conversions use now (\"en-US\" unless one was chosen).")
        .def_static("ocx_filename", &Functions::OCXFilename, "The full path of the loaded library file.")
        .def_static("new_guid", &Functions::NewGUID, "A new GUID: 36 upper-case characters, no braces.")
        .def_static("empty_guid", &Functions::EmptyGUID, "\"00000000-0000-0000-0000-000000000000\".")
        .def_static("html_color_to_ole_color", &Functions::HTMLColorToOLEColor, py::arg("color"),
                    "\"#RRGGBB\" (the hash optional) to 0x00BBGGRR; anything else gives 0.")
        .def_static("ole_color_to_html_color", &Functions::OLEColorToHTMLColor, py::arg("color"),
                    "\"#RRGGBB\" in upper case; system colours resolved first. An invalid colour raises error 5.")
        .def_static("new_asset_data", &Functions::NewAssetData, py::arg("filename") = "", py::arg("description") = "",
                    py::arg("source") = "", "An AssetData.")
        .def_static("new_font_data", &Functions::NewFontData, py::arg("name") = "Arial", py::arg("size") = 8.0,
                    py::arg("bold") = false, py::arg("italic") = false, py::arg("underline") = false, "A FontData.")
        .def_static("new_location_data", &Functions::NewLocationData, py::arg("start_point") = "",
                    py::arg("end_point") = "", py::arg("map_name") = "", "A LocationData.")
        .def_static("new_rectangle", &Functions::NewRectangle, py::arg("left") = 0, py::arg("top") = 0,
                    py::arg("width") = 0, py::arg("height") = 0, "A Rectangle.")
        .def_static("clean_xml_string", &Functions::CleanXMLString, py::arg("xml_string"),
                    "Removes the control characters U+0000..U+0019 other than TAB, LF and CR.")
        .def_static("format_xml_string", &Functions::FormatXMLString, py::arg("xml_string"),
                    "Indented, with a US-ASCII declaration; the input unchanged when it does not parse.");
}

}  // namespace quillbank::python
