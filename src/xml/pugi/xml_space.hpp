#pragma once

// The xml:space attribute of an element.

#include <cstring>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

// The xml:space setting `element` makes: +1 "preserve", -1 "default", 0 none
// (or another value, which leaves the inherited setting).
inline int XmlSpaceOf(pugi::xml_node element) {
    const pugi::xml_attribute attribute = element.attribute("xml:space");
    if (!attribute) {
        return 0;
    }
    if (std::strcmp(attribute.value(), "preserve") == 0) {
        return 1;
    }
    if (std::strcmp(attribute.value(), "default") == 0) {
        return -1;
    }
    return 0;
}

}  // namespace quillbank::xml::detail
