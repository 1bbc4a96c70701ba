#pragma once

// What the files of the Python module share: the binding functions of each
// part, the conversion of the library's values to Python's, and the
// enumerations as enum.IntEnum.

#include <cstdint>
#include <string>

#include <pybind11/pybind11.h>

#include <quillbank/quillbank.hpp>

namespace quillbank::python {

namespace py = pybind11;

void BindErrors(py::module_& module);
void BindEnums(py::module_& module);
void BindRecords(py::module_& module);
void BindXml(py::module_& module);
void BindFunctions(py::module_& module);
void BindProperties(py::module_& module);
void BindElements(py::module_& module);
void BindStoryboards(py::module_& module);
void BindTree(py::module_& module);
void BindMaps(py::module_& module);
void BindLesson(py::module_& module);

// The member `value` of the IntEnum `name` of the module (made by
// BindEnums), or the plain int when the enumeration has no such member.
py::object EnumValue(const char* name, std::int32_t value);

// A Variant as the natural Python value: None for Empty and Nothing, bool,
// int, float, str, datetime.datetime, a record, a bag or a list.
py::object ToPython(const Variant& value);

// An automation date (days since 1899-12-30, the fraction the time of day,
// counted away from the epoch for days before it) and datetime.datetime.
py::object DateToPython(Date value);
// A datetime.datetime (its own fields; any time zone is not looked at), or
// a number taken as the automation date itself.
Date DateFromPython(const py::handle& value);

// Sets the property `name` of `bag` from a natural Python value, by its type.
void SetFromPython(PersistedPropertyCollection& bag, std::string_view name, const py::handle& value,
                   std::int32_t encodingType);

// A snapshot iterator over `items`: changing the collection while iterating
// changes neither the iteration nor the memory it walks.
py::iterator IterateSnapshot(const py::list& items);

}  // namespace quillbank::python
