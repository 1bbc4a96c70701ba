#pragma once

// Checks on text that enters the XML document model: UTF-8 validity, the
// characters XML 1.0 allows, and XML names.

#include <cstddef>
#include <cstdint>
#include <string>
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
// passes DocumentText unchanged and IsXmlName, so callers may skip both.
bool IsAsciiXmlName(std::string_view name);

// Text on its way into the document model: raises ErrInvalidArgument when it
// is not valid UTF-8, and otherwise gives the part before the first NUL
// character, where the DOM's strings end (the rest is cut, as the DOM cuts it).
std::string_view DocumentText(std::string_view text);

// Text with every CR LF and every lone CR turned into LF, as the DOM stores
// the text of text nodes and comments that are set or loaded.
std::string NormalizeLineEnds(std::string_view text);

// Whether setting the attribute `name` to `value` on the element named
// `elementName`, which has it already as `existing`, would bind the element's
// own prefix to another namespace: the element is "p:local", the attribute
// its declaration "xmlns:p", and the value differs. The DOM refuses that.
bool RebindsOwnPrefix(std::string_view elementName, std::string_view name, std::string_view existing,
                      std::string_view value);

// The text of a comment must not hold "-->", which would end it early: the
// DOM refuses such text.
inline constexpr const char* kCommentEndInComment = "A comment cannot contain \"-->\".";
inline bool IsCommentText(std::string_view text) { return text.find("-->") == std::string_view::npos; }

}  // namespace quillbank::xml
