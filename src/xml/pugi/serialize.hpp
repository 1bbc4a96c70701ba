#pragma once

// The "xml" text of a node, written the way MSXML writes it.

#include <string>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

class Layout;

// The serialisation of `node` and its descendants. For a document node: each
// top-level node (limbo hidden) followed by CR LF. `layout`, when not null,
// holds what loading left out but remembers (layout.hpp).
std::string NodeXml(pugi::xml_node node, const Layout* layout);

// All descendant text and CDATA of `node` joined as they stand (its own value
// for a text, CDATA, comment or processing instruction node), for typed
// values; the DOM's "text" is NodeText (node_text.hpp).
std::string ConcatenatedText(pugi::xml_node node);

// The text of an XML declaration: its attributes as written in it, each
// name="value", separated by one space.
std::string DeclarationText(pugi::xml_node declaration);

}  // namespace quillbank::xml::detail
