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

// The text of an XML declaration: its attributes as written in it, each
// name="value", separated by one space.
std::string DeclarationText(pugi::xml_node declaration);

}  // namespace quillbank::xml::detail
