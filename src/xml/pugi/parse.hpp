#pragma once

// Loading XML text into a pugixml document with the document model's rules.

#include <string_view>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

// Parses `text` into the empty `document`. Returns false, leaving whatever the
// parser produced, when the text is not conforming XML (see PrescanXml), does
// not parse.
// When `preserveWhiteSpace` is false, whitespace-only text is dropped except
// inside an element with xml:space="preserve" (the nearest xml:space decides).
// Line ends in text become LF; raw TAB, CR and LF in attribute values become
// spaces while character references keep their character.
bool ParseXmlText(pugi::xml_document& document, std::string_view text, bool preserveWhiteSpace);

// Parses `text` as a document of its own, by the rules of ParseXmlText
// without preserving whitespace, and appends its top-level nodes to the empty
// element `holder`. Returns false when the text does not load that way;
// `holder` may then hold part of the parse. Text with a document type
// declaration must go through ParseXmlText instead: the parser reads none
// inside an element.
bool ParseXmlTextInto(pugi::xml_node holder, std::string_view text);

}  // namespace quillbank::xml::detail
