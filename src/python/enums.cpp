// The enumerations as enum.IntEnum, their members also at module level as in
// C++ (quillbank.ptString is quillbank.PropertyTypes.ptString).

#include <utility>
#include <vector>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/python_support.hpp"

namespace quillbank::python {

namespace {

using Members = std::vector<std::pair<const char*, std::int32_t>>;

void AddIntEnum(py::module_& module, const char* name, const Members& members, const char* doc,
                bool exportMembers = true) {
    py::list pairs;
    for (const auto& [member, value] : members) {
        pairs.append(py::make_tuple(member, value));
    }
    py::object enumClass = py::module_::import("enum").attr("IntEnum")(name, pairs, py::arg("module") = module.attr("__name__"));
    enumClass.attr("__doc__") = doc;
    module.attr(name) = enumClass;
    if (exportMembers) {
        for (const auto& [member, value] : members) {
            module.attr(member) = enumClass.attr(member);
        }
    }
}

}  // namespace

py::object EnumValue(const char* name, std::int32_t value) {
    py::object enumClass = py::module_::import("quillbank").attr(name);
    try {
        return enumClass(value);
    } catch (const py::error_already_set&) {
        return py::int_(value);
    }
}

void BindEnums(py::module_& module) {
    AddIntEnum(module, "EncodingTypes", {{"etNotEncoded", etNotEncoded}, {"etBase64Encoded", etBase64Encoded}},
               "How a property is stored in XML: plain, or base64-encoded.");
    AddIntEnum(module, "PropertyTypes",
               {{"ptNone", ptNone},
                {"ptBoolean", ptBoolean},
                {"ptLong", ptLong},
                {"ptDouble", ptDouble},
                {"ptString", ptString},
                {"ptDate", ptDate},
                {"ptColor", ptColor},
                {"ptFont", ptFont},
                {"ptRectangle", ptRectangle},
                {"ptAsset", ptAsset},
                {"ptLocation", ptLocation},
                {"ptPPC", ptPPC},
                {"ptCEC", ptCEC}},
               "The type of a property; ptNone for a name the bag does not hold.");
    AddIntEnum(module, "StoryboardInsertTypes",
               {{"sbitInsertBefore", sbitInsertBefore},
                {"sbitInsertAfter", sbitInsertAfter},
                {"sbitInsertAsChild", sbitInsertAsChild}},
               "Where LessonMap.insert_storyboard and insert_map place the new items.");
    AddIntEnum(module, "TreeRelationshipConstants",
               {{"tvwFirst", tvwFirst}, {"tvwLast", tvwLast}, {"tvwNext", tvwNext}, {"tvwPrevious", tvwPrevious},
                {"tvwChild", tvwChild}},
               "Where a tree's add places a new node relative to an existing one.");
}

}  // namespace quillbank::python
