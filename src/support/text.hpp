#pragma once

// Text routines shared by every class: control-character clean-up, NUL
// trimming, blank tests and the UTF-8 / UTF-16 conversions behind them.

#include <string>
#include <string_view>

namespace quillbank::support {

// Removes every character U+0000..U+0019 except TAB, LF and CR. U+001A..U+001F
// stay where they are.
std::string StripControlChars(std::string_view text);
// The same for a text that is given away: cleaned in place, without a copy.
std::string StripControlCharsOwned(std::string&& text);
// True when StripControlChars would remove something from `text`.
bool HasStrippedControlChars(std::string_view text);

// The text up to (not including) its first NUL character.
std::string TrimAtNull(std::string_view text);

// True when nothing is left after removing CR, LF and TAB and trimming spaces.
bool IsBlankText(std::string_view text);

// Replaces every occurrence of `from` by `to`.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

bool IsValidUtf8(std::string_view text) noexcept;
// Raises ErrInvalidArgument with `source` when `text` is not valid UTF-8.
void RequireUtf8(std::string_view text, const char* source);

// Conversions between UTF-8 and UTF-16. Invalid UTF-8 sequences become
// U+FFFD; a lone surrogate becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view text);
std::string Utf16ToUtf8(std::u16string_view text);

// Number of UTF-16 code units the UTF-8 text takes.
std::size_t Utf16Length(std::string_view text) noexcept;

}  // namespace quillbank::support
