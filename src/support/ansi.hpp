#pragma once

// The ANSI code page of the platform. On this platform it is Windows-1252:
// the euro sign is the single byte 0x80, and characters it cannot represent
// become "?".

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::support {

// One byte per character; characters outside the code page give '?'.
std::vector<std::uint8_t> Utf8ToAnsi(std::string_view text);
// Every byte is a character (the five bytes the code page leaves undefined
// map to the control characters of the same number).
std::string AnsiToUtf8(std::span<const std::uint8_t> bytes);

// Whether the first character converts to an ANSI code of at most 127. A
// character the code page cannot represent converts to '?' (63) and so counts;
// one that becomes a high single byte (the euro sign) does not. "" gives false.
bool IsLowAnsiValue(std::string_view character);

// Whether the text holds a character in U+0100..U+FFFF (per UTF-16 code unit,
// so characters beyond the BMP count through their surrogates) for which
// IsLowAnsiValue is true: such a text cannot be stored through the ANSI code
// page and is stored as UTF-8.
bool IsUnicodeString(std::string_view text);

}  // namespace quillbank::support
