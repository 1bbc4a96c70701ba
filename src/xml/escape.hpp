#pragma once

// Escaping of text and attribute values when XML is written. Each routine
// appends to `out`, copying runs of characters that need no escape in one go.

#include <string>
#include <string_view>

#include "xml/text_buffer.hpp"

namespace quillbank::xml {

// Text content of a node's "xml": '&', '<', '>' escaped, quotes kept, every LF
// written as CR LF, a CR as "&#13;" (read back, a raw CR would become LF).
// Characters outside ASCII are copied as UTF-8.
void AppendEscapedText(std::string& out, std::string_view text);

// An attribute value of a node's "xml", without the quotes: '&', '<', '>',
// '"' escaped, TAB, LF, CR as "&#9;", "&#10;", "&#13;" (read back, raw ones
// would become spaces). Characters outside ASCII are copied as UTF-8.
void AppendEscapedAttribute(std::string& out, std::string_view value);

// The text of a comment in a node's "xml": unescaped, every LF written as
// CR LF.
void AppendCommentText(std::string& out, std::string_view text);

// AppendEscapedText and AppendEscapedAttribute for text on its way into the
// written form without passing through a document, with what the document
// model does to text it is given: text that is not UTF-8 raises its error
// (part of the text may have been appended by then), the text ends at a NUL,
// and in node text CR LF and a lone CR are a line end (written CR LF).
// Both say whether they kept a control character other than TAB, LF and CR
// (the document model holds them; the string forms remove them at the end).
bool AppendCheckedText(TextBuffer& out, std::string_view text);
bool AppendCheckedAttribute(TextBuffer& out, std::string_view value);

// The pretty-printed form: text with '<', '>', '&' escaped, LF kept, CR as
// "&#13;", and every character above U+007F as a decimal character reference.
void AppendAsciiText(std::string& out, std::string_view text);

// The pretty-printed form of an attribute value: '<', '>', '&', '"' escaped,
// TAB, LF, CR as character references, and every character above U+007F as a
// decimal character reference.
void AppendAsciiAttribute(std::string& out, std::string_view value);

}  // namespace quillbank::xml
