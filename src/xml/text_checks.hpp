#pragma once

// Checks on text that enters the XML document model: UTF-8 validity, the
// characters XML 1.0 allows, and XML names.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillbank::xml {

// Decodes the UTF-8 sequence starting at text[pos]. On success stores the code
// point, advances pos past the sequence and returns true. Overlong forms,
// surrogates and values above U+10FFFF are refused.
bool DecodeUtf8(std::string_view text, std::size_t& pos, char32_t& codePoint);

bool IsValidUtf8(std::string_view text);

// A character XML 1.0 documents may contain: TAB, LF, CR, U+0020..U+D7FF,
// U+E000..U+FFFD, U+10000..U+10FFFF.
bool IsXmlChar(char32_t c);

inline bool IsXmlWhitespace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// An XML 1.0 Name (letters, digits, '_', ':', '-', '.', and the other name
// characters); the empty string is not a name.
bool IsXmlName(std::string_view name);

// True when `name` is an XML Name made of ASCII characters only: such a name
// passes RequireDocumentText and IsXmlName, so callers may skip both.
bool IsAsciiXmlName(std::string_view name);

// Raises ErrInvalidArgument when `text` is not valid UTF-8 or holds a NUL
// character, which the document model cannot hold.
void RequireDocumentText(std::string_view text);

}  // namespace quillbank::xml
