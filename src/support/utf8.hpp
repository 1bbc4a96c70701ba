#pragma once

// Decoding and encoding single UTF-8 / UTF-16 sequences.

#include <optional>
#include <string>
#include <string_view>

namespace quillbank::support {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// Decodes the sequence at `i` and advances `i` past it; nothing (and `i`
// unchanged) when the bytes there are not a valid, shortest-form sequence of
// a scalar value.
std::optional<char32_t> DecodeUtf8(std::string_view text, std::size_t& i) noexcept;

void AppendUtf8(std::string& out, char32_t cp);
void AppendUtf16(std::u16string& out, char32_t cp);

}  // namespace quillbank::support
