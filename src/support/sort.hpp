#pragma once

// Case-insensitive ordering of names: texts are compared by their lower-cased
// UTF-16 code units.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::support {

// The lower-cased UTF-16 form used both for sorting and as the key of names
// matched without regard to case.
std::u16string LowerCaseKey(std::string_view text);
// Appends LowerCaseKey(text) to `out`.
void AppendLowerCaseKey(std::u16string& out, std::string_view text);
// The same folding applied to UTF-8 text (for keys held as UTF-8).
std::string LowerCase(std::string_view text);
// LowerCase applied to `text` itself: without a new string when it is ASCII.
void FoldToLowerCase(std::string& text);

// Quicksort in place into ascending order of the lower-cased texts. -1 for
// `first` or `last` means the array's lower or upper bound.
void SortStrings(std::vector<std::string>& array, std::int32_t first = -1, std::int32_t last = -1);
void SwapStrings(std::vector<std::string>& array, std::int32_t a, std::int32_t b);

}  // namespace quillbank::support
