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

}  // namespace quillbank::xml::detail
