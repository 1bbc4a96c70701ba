// quillbank.Lesson: the root of the document model, with its XML and JSON
// forms. Reading and writing a whole lesson runs without the GIL.

#include <memory>
#include <optional>
#include <string>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <quillbank/json.hpp>

#include "python/python_support.hpp"

namespace quillbank::python {

void BindLesson(py::module_& module) {
    using Release = py::call_guard<py::gil_scoped_release>;
    py::class_<Lesson, std::shared_ptr<Lesson>>(
        module, "Lesson",
        "A whole lesson: identity and texts, a property bag, maps and storyboards. The parts are handed out as "
        "they are (never copied): lesson.properties is lesson.properties while either is alive.")
        .def(py::init(&Lesson::Create),
             "A new lesson: a new lesson_id, the title \"New Lesson\", empty texts and parts.")
        .def_property("lesson_id", &Lesson::LessonID, &Lesson::SetLessonID, "The lesson's identifier.")
        .def_property("title", &Lesson::Title, &Lesson::SetTitle, "The title.")
        .def_property("identifier", &Lesson::Identifier, &Lesson::SetIdentifier, "The host's identifier.")
        .def_property("classification", &Lesson::Classification, &Lesson::SetClassification,
                      "The classification; when not empty also written as a banner comment.")
        .def_property_readonly("properties", &Lesson::Properties, "The lesson's property bag.")
        .def_property_readonly("maps", &Lesson::Maps, "The lesson's maps.")
        .def_property_readonly("storyboards", &Lesson::Storyboards, "The lesson's storyboards.")
        .def("to_clear_xml_element", &Lesson::ToClearXMLElement, py::arg("document"),
             "A new \"lesson\" element of document in the clear form.")
        .def("to_xml_element", &Lesson::ToXMLElement, py::arg("document"), "A new \"lesson\" element of document.")
        .def("from_xml_element", &Lesson::FromXMLElement, py::arg("element"),
             "Resets the lesson, then reads a \"lesson\" element.")
        .def("to_xml_string", &Lesson::ToXMLString, Release(), "The \"lesson\" element's text (the normal form).")
        .def("to_clear_xml_string", &Lesson::ToClearXMLString, Release(), "The clear form's text.")
        .def("from_xml_string", &Lesson::FromXMLString, py::arg("xml_string"), Release(),
             "Reads a lesson's text; \"\" resets. Text that does not parse raises FormError and changes nothing.")
        .def("clone", &Lesson::Clone, Release(), "An exact copy: every identifier is kept.")
        .def("duplicate", &Lesson::Duplicate, Release(),
             "A copy with new identifiers, every reference to the old ones rewritten.")
        .def(
            "to_json",
            [](const Lesson& l, std::optional<std::int32_t> indent) {
                py::gil_scoped_release release;
                return LessonToJSON(l, indent.value_or(-1));
            },
            py::arg("indent") = py::none(),
            "The lossless JSON form (docs/lesson.schema.json): compact, or indented by indent spaces.")
        .def_static(
            "from_json",
            [](std::string_view text) {
                py::gil_scoped_release release;
                return LessonFromJSON(text);
            },
            py::arg("json_text"),
            "A new lesson read from its JSON form. JSON of the wrong form raises FormError naming the place of the "
            "bad value, and no lesson is made.");
}

}  // namespace quillbank::python
