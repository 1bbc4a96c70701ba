#pragma once

// The names and limits that the JSON writer and reader of a lesson share.

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

#include <quillbank/enums.hpp>

namespace quillbank::json_form {

// The "type" of a property, indexed by PropertyTypes (ptNone has none).
inline constexpr std::array<std::string_view, 13> kTypeNames = {
    "",     "boolean", "long",     "double", "string", "date", "color",
    "font", "rectangle", "asset", "location", "ppc",    "cec",
};

// The "encoding" of a property, indexed by EncodingTypes.
inline constexpr std::array<std::string_view, 2> kEncodingNames = {"none", "base64"};

// Doubles that JSON numbers cannot hold are written as these texts.
inline constexpr std::string_view kNotANumber = "NaN";
inline constexpr std::string_view kInfinity = "Infinity";
inline constexpr std::string_view kMinusInfinity = "-Infinity";

// A map's tree is written as nested items down to this depth; a deeper tree
// is written as the map element's XML text, so that the JSON stays shallow.
inline constexpr int kMaxItemDepth = 100;

}  // namespace quillbank::json_form
