#pragma once

// Case-insensitive ordering of names: texts are compared by their lower-cased
// UTF-16 code units.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/ascii_folding.hpp"

namespace quillbank::support {

// Whether ASCII `a` comes before ASCII `b` in the order of their lower-cased
// UTF-16 keys: for ASCII each byte is its own code unit, so the lower-cased
// bytes compare the same way.
inline bool AsciiLessLowered(std::string_view a, std::string_view b) {
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        const char x = ascii::Lower(a[i]);
        const char y = ascii::Lower(b[i]);
        if (x != y) {
            return static_cast<unsigned char>(x) < static_cast<unsigned char>(y);
        }
    }
    return a.size() < b.size();
}

// The lower-cased UTF-16 form used both for sorting and as the key of names
// matched without regard to case.
std::u16string LowerCaseKey(std::string_view text);
// Appends LowerCaseKey(text) to `out`.
void AppendLowerCaseKey(std::u16string& out, std::string_view text);
// The same folding applied to UTF-8 text (for keys held as UTF-8).
std::string LowerCase(std::string_view text);
// LowerCase applied to `text` itself: without a new string when it is ASCII.
void FoldToLowerCase(std::string& text);

// Sorts `items` into ascending order of their names' lower-cased UTF-16
// keys, where `nameOf(item)` gives an item's UTF-8 name. This is the order
// of SortStrings whenever no two names are equal without regard to case (as
// in a bag, whose names differ that way), since any two sorts of distinct
// keys agree.
template <class T, class NameOf>
void SortByLowerCaseName(std::vector<T*>& items, NameOf nameOf) {
    // Names that are all ASCII (nearly always) are compared lower-cased in
    // place, without keys.
    bool allAscii = true;
    for (const T* item : items) {
        if (!ascii::IsAscii(nameOf(*item))) {
            allAscii = false;
            break;
        }
    }
    if (allAscii) {
        std::sort(items.begin(), items.end(),
                  [&nameOf](const T* a, const T* b) { return AsciiLessLowered(nameOf(*a), nameOf(*b)); });
        return;
    }
    // The keys stand in one buffer; each entry holds the end of its own.
    std::u16string keyText;
    std::vector<std::pair<std::size_t, T*>> ends;
    ends.reserve(items.size());
    for (T* item : items) {
        AppendLowerCaseKey(keyText, nameOf(*item));
        ends.emplace_back(keyText.size(), item);
    }
    std::vector<std::pair<std::u16string_view, T*>> keyed;
    keyed.reserve(items.size());
    std::size_t start = 0;
    for (const auto& [end, item] : ends) {
        keyed.emplace_back(std::u16string_view(keyText).substr(start, end - start), item);
        start = end;
    }
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < keyed.size(); ++i) {
        items[i] = keyed[i].second;
    }
}

// Quicksort in place into ascending order of the lower-cased texts. -1 for
// `first` or `last` means the array's lower or upper bound.
void SortStrings(std::vector<std::string>& array, std::int32_t first = -1, std::int32_t last = -1);
void SwapStrings(std::vector<std::string>& array, std::int32_t a, std::int32_t b);

}  // namespace quillbank::support
