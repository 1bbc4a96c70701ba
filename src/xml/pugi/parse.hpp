#pragma once

// Loading XML text into a pugixml document with the document model's rules.

#include <string_view>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

class Layout;

struct ParseOutcome {
    bool loaded = false;
    // Some start tag has an xml:space attribute.
    bool mentionsXmlSpace = false;
};

// Parses `text` into the empty `document`. Fails, leaving whatever the parser
// produced, when the text is not conforming XML (see PrescanXml) or does not
// parse.
// When `preserveWhiteSpace` is false, whitespace-only text is dropped except
// inside an element with xml:space="preserve" (the nearest xml:space decides);
// where it was is marked in `layout`, as is every element written "<a></a>".
// Line ends in text and attribute values become LF; raw TAB in attribute
// values stays, and character references keep their character.
ParseOutcome ParseXmlText(pugi::xml_document& document, std::string_view text, bool preserveWhiteSpace,
                          Layout& layout);

}  // namespace quillbank::xml::detail
