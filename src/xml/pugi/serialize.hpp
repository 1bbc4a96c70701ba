#pragma once

// The "xml" text of a node, written the way MSXML writes it.

#include <string>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

// The serialisation of `node` and its descendants. For a document node: each
// top-level node (limbo hidden) followed by CR LF.
std::string NodeXml(pugi::xml_node node);

// All descendant text and CDATA of `node` joined (its own value for a text,
// CDATA, comment or processing instruction node).
std::string NodeText(pugi::xml_node node);

}  // namespace quillbank::xml::detail
