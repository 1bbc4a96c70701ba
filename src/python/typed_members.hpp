#pragma once

// The typed property members that a bag and a child element share (a child
// element has no date members: its dates are reached through ppc_object).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <pybind11/pybind11.h>

#include "python/python_support.hpp"

namespace quillbank::python {

template <class T>
void BindTypedMembers(py::class_<T, std::shared_ptr<T>>& cls) {
    const auto nameArg = py::arg("property_name");
    const auto encodingArg = py::arg("encoding_type") = static_cast<std::int32_t>(etNotEncoded);
    cls.def(
           "get_boolean", [](const T& t, std::string_view name, bool d) { return t.GetBoolean(name, d); }, nameArg,
           py::arg("default_value") = false, "The bool property, or default_value when there is none of that name.")
        .def(
            "set_boolean",
            [](T& t, std::string_view name, bool v, std::int32_t e) { t.SetBoolean(name, v, static_cast<EncodingTypes>(e)); },
            nameArg, py::arg("new_value"), encodingArg, "Sets a boolean property (replacing one of the same name).")
        .def(
            "get_long", [](const T& t, std::string_view name, std::int32_t d) { return t.GetLong(name, d); }, nameArg,
            py::arg("default_value") = 0, "The 32-bit integer property, or default_value.")
        .def(
            "set_long",
            [](T& t, std::string_view name, std::int32_t v, std::int32_t e) { t.SetLong(name, v, static_cast<EncodingTypes>(e)); },
            nameArg, py::arg("new_value"), encodingArg, "Sets a 32-bit integer property.")
        .def(
            "get_double", [](const T& t, std::string_view name, double d) { return t.GetDouble(name, d); }, nameArg,
            py::arg("default_value") = 0.0, "The double property, or default_value.")
        .def(
            "set_double",
            [](T& t, std::string_view name, double v, std::int32_t e) { t.SetDouble(name, v, static_cast<EncodingTypes>(e)); },
            nameArg, py::arg("new_value"), encodingArg, "Sets a double property.")
        .def(
            "get_string", [](const T& t, std::string_view name, std::string_view d) { return t.GetString(name, d); },
            nameArg, py::arg("default_value") = "", "The text property, or default_value.")
        .def(
            "set_string",
            [](T& t, std::string_view name, std::string_view v, std::int32_t e) {
                t.SetString(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg, "Sets a text property.")
        .def(
            "get_color", [](const T& t, std::string_view name, OleColor d) { return t.GetColor(name, d); }, nameArg,
            py::arg("default_value") = 0u, "The colour property (0x00BBGGRR), or default_value.")
        .def(
            "set_color",
            [](T& t, std::string_view name, OleColor v, std::int32_t e) { t.SetColor(name, v, static_cast<EncodingTypes>(e)); },
            nameArg, py::arg("new_value"), encodingArg, "Sets a colour property.")
        .def(
            "get_font", [](const T& t, std::string_view name, const FontData& d) { return t.GetFont(name, d); }, nameArg,
            py::arg("default_value") = FontData{}, "The FontData property, or default_value.")
        .def(
            "set_font",
            [](T& t, std::string_view name, const FontData& v, std::int32_t e) {
                t.SetFont(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg, "Sets a font property.")
        .def(
            "get_rectangle", [](const T& t, std::string_view name, const Rectangle& d) { return t.GetRectangle(name, d); },
            nameArg, py::arg("default_value") = Rectangle{}, "The Rectangle property, or default_value.")
        .def(
            "set_rectangle",
            [](T& t, std::string_view name, const Rectangle& v, std::int32_t e) {
                t.SetRectangle(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg, "Sets a rectangle property.")
        .def(
            "get_asset", [](const T& t, std::string_view name, const AssetData& d) { return t.GetAsset(name, d); },
            nameArg, py::arg("default_value") = AssetData{}, "The AssetData property, or default_value.")
        .def(
            "set_asset",
            [](T& t, std::string_view name, const AssetData& v, std::int32_t e) {
                t.SetAsset(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg, "Sets an asset property.")
        .def(
            "get_location",
            [](const T& t, std::string_view name, const LocationData& d) { return t.GetLocation(name, d); }, nameArg,
            py::arg("default_value") = LocationData{}, "The LocationData property, or default_value.")
        .def(
            "set_location",
            [](T& t, std::string_view name, LocationData& v, std::int32_t e) {
                t.SetLocation(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg,
            "Sets a location property. An empty start_point with a filled end_point is moved over, in new_value too.")
        .def(
            "get_ppc",
            [](const T& t, std::string_view name, std::shared_ptr<PersistedPropertyCollection> d) {
                return t.GetPPC(name, std::move(d));
            },
            nameArg, py::arg("default_value") = py::none(),
            "The bag held by the property itself (not a copy), or default_value.")
        .def(
            "set_ppc",
            [](T& t, std::string_view name, const std::shared_ptr<PersistedPropertyCollection>& v, std::int32_t e) {
                t.SetPPC(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg, "Stores a deep copy of the bag (or no bag for None).")
        .def(
            "get_cec",
            [](const T& t, std::string_view name, std::shared_ptr<ChildElementCollection> d) {
                return t.GetCEC(name, std::move(d));
            },
            nameArg, py::arg("default_value") = py::none(),
            "The child-element list held by the property itself (not a copy), or default_value.")
        .def(
            "set_cec",
            [](T& t, std::string_view name, const std::shared_ptr<ChildElementCollection>& v, std::int32_t e) {
                t.SetCEC(name, v, static_cast<EncodingTypes>(e));
            },
            nameArg, py::arg("new_value"), encodingArg, "Stores a deep copy of the list (or no list for None).")
        .def_property_readonly("count", &T::Count, "The number of properties.")
        .def("exists", &T::Exists, nameArg, "Whether a property of that name (matched without regard to case) exists.")
        .def("remove", &T::Remove, nameArg, "Removes the property; an absent name is ignored.")
        .def("__len__", &T::Count)
        .def("__contains__", [](const T& t, const py::object& name) {
            return py::isinstance<py::str>(name) && t.Exists(name.cast<std::string>());
        });
}

}  // namespace quillbank::python
