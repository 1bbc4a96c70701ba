#pragma once

// The "bin.base64" data type of the XML document model: the text form of a
// byte buffer and back. Every backend renders bytes the same way.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::xml {

// Standard base64 with padding, in lines of 72 characters separated by a line
// feed; no line feed after the last line.
std::string EncodeBase64Text(std::span<const std::uint8_t> bytes);

// Decodes base64 text, ignoring whitespace anywhere in it. Nothing when the
// text holds any other character outside the alphabet, when padding stands
// anywhere but at the end, or when the length is not a whole number of groups.
std::optional<std::vector<std::uint8_t>> DecodeBase64Text(std::string_view text);

}  // namespace quillbank::xml

namespace quillbank::xml {

// DecodeBase64Text, raising the document model's error when the text is not
// base64: ErrXmlDom, source "msxml3.dll",
// "Error parsing '<the text, at most 64 characters>' as bin.base64 datatype."
std::vector<std::uint8_t> DecodeBase64TextOrRaise(std::string_view text);

}  // namespace quillbank::xml
