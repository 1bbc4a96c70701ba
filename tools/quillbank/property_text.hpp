#pragma once

// How the tool shows one property: its type, its encoding and its value.

#include <cstdint>
#include <string>
#include <string_view>

#include <quillbank/persisted_property_collection.hpp>

namespace quillbank::tool {

// "boolean", "long", "double", "string", "date", "color", "font",
// "rectangle", "asset", "location", "bag", "list" ("none" for ptNone).
std::string_view TypeName(PropertyTypes type);
// "plain" or "base64".
std::string_view EncodingLabel(std::int32_t encoding);

// The value of the property, decoded: texts quoted, records spelled out
// ("left 10, top 20, width 300, height 200"), dates and doubles in the form
// the file holds, a nested bag as "3 properties", a list as "2 elements".
std::string ValueText(const PersistedPropertyCollection& bag, std::string_view name);

}  // namespace quillbank::tool
