#pragma once

// The "xml" text of a node, written by the library from the MSXML tree.
//
// MSXML on Windows writes a node without adding whitespace; Wine's MSXML
// indents nested elements. Lesson files must come out byte for byte the
// same wherever the library runs, so the text is written here, walking the
// MSXML tree, with the escaping rules the pugixml backend shares.

#include <string>

#include "xml/msxml/com_support.hpp"

namespace quillbank::xml::msxml {

// The serialisation of `node` and its descendants. For a document node: each
// top-level node followed by CR LF.
std::string NodeXml(IXMLDOMNode* node);

}  // namespace quillbank::xml::msxml
