#pragma once

// The "text" of a node, as the DOM gives it.

#include <string>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

class Layout;

struct TextRules {
    // The document's whitespace setting as it is now.
    bool preserveWhiteSpace = false;
    // Whether an xml:space attribute may stand on the node or around it.
    bool mayHaveXmlSpace = false;
    // What loading left out but remembers, or null.
    const Layout* layout = nullptr;
};

// The value of a text, CDATA, comment or processing instruction node (a text
// node trimmed when whitespace is not preserved); the declaration's
// attributes. For an element or the document: its descendant text and CDATA
// in order, where whitespace that is not preserved (dropped at loading, or
// whitespace-only text now that the setting is off) stands as one space
// between two texts; then, when whitespace is not preserved, trimmed at both
// ends, but not into a CDATA section. Whitespace is preserved where the
// document preserves it or the nearest xml:space says "preserve".
std::string NodeText(pugi::xml_node node, const TextRules& rules);

}  // namespace quillbank::xml::detail
