#pragma once

// The two pairs of base64 coders of encoded properties.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::support {

// The ANSI coder: the text's ANSI bytes in a buffer one byte longer than the
// text has UTF-16 code units, so the data always ends in a zero byte. ""
// encodes the single zero byte ("AA==").
std::string EncodeBase64(std::string_view text);
// Decodes through the ANSI code page and cuts at the first NUL. Malformed
// base64 raises the XML document model's error.
std::string DecodeBase64(std::string_view b64);

// The UTF-8 coder: "" gives ""; no trailing zero byte. A failed conversion
// gives the marker "#error#" or "#error (2)#", itself encoded with the ANSI coder.
std::string EncodeBase64Utf8(std::string_view text);
// "" gives ""; byte sequences that are not UTF-8 become U+FFFD, as the
// platform's conversion without flags does, then the text is cut at its first NUL.
std::string DecodeBase64Utf8(std::string_view b64);

// The upper index of the buffer; -1 when it is empty.
std::int32_t SafeUpperBound(const std::vector<std::uint8_t>& buffer) noexcept;

}  // namespace quillbank::support
