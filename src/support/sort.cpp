#include "support/sort.hpp"

#if defined(_WIN32)
#include <windows.h>
#else
#include <unicode/uchar.h>
#endif

#include <utility>

#include "support/ascii_folding.hpp"
#include "support/text.hpp"

namespace quillbank::support {

namespace {

char16_t LowerUnit(char16_t unit) {
    if (unit < 0x80) {
        return (unit >= u'A' && unit <= u'Z') ? static_cast<char16_t>(unit + 32) : unit;
    }
    if (unit >= 0xD800 && unit <= 0xDFFF) {
        return unit;  // surrogates are compared as they are
    }
#if defined(_WIN32)
    // The system's own lower-casing, one code unit in, one code unit out.
    WCHAR buffer[1] = {static_cast<WCHAR>(unit)};
    CharLowerBuffW(buffer, 1);
    return static_cast<char16_t>(buffer[0]);
#else
    const UChar32 lower = u_tolower(static_cast<UChar32>(unit));
    // Only mappings that stay in the BMP keep one code unit per code unit.
    return lower <= 0xFFFF ? static_cast<char16_t>(lower) : unit;
#endif
}

}  // namespace

std::u16string LowerCaseKey(std::string_view text) {
    std::u16string key = Utf8ToUtf16(text);
    for (char16_t& unit : key) {
        unit = LowerUnit(unit);
    }
    return key;
}

void AppendLowerCaseKey(std::u16string& out, std::string_view text) {
    if (!ascii::IsAscii(text)) {
        out += LowerCaseKey(text);
        return;
    }
    const std::size_t start = out.size();
    out.resize(start + text.size());
    char16_t* to = out.data() + start;
    for (const char c : text) {
        *to++ = static_cast<char16_t>((c >= 'A' && c <= 'Z') ? c + 32 : c);
    }
}

std::string LowerCase(std::string_view text) {
    if (ascii::IsAscii(text)) {
        std::string out(text.size(), '\0');
        ascii::LowerTo(text, out.data());
        return out;
    }
    return Utf16ToUtf8(LowerCaseKey(text));
}

void FoldToLowerCase(std::string& text) {
    if (ascii::IsAscii(text)) {
        ascii::LowerTo(text, text.data());
    } else {
        text = Utf16ToUtf8(LowerCaseKey(text));
    }
}

void SwapStrings(std::vector<std::string>& array, std::int32_t a, std::int32_t b) {
    std::swap(array[static_cast<std::size_t>(a)], array[static_cast<std::size_t>(b)]);
}

void SortStrings(std::vector<std::string>& array, std::int32_t first, std::int32_t last) {
    if (array.empty()) {
        return;
    }
    if (first == -1) first = 0;
    if (last == -1) last = static_cast<std::int32_t>(array.size()) - 1;
    if (first < 0 || last >= static_cast<std::int32_t>(array.size()) || first >= last) {
        return;
    }
    // The lower-cased keys travel with their entries.
    std::vector<std::u16string> keys(array.size());
    for (std::int32_t k = first; k <= last; ++k) {
        keys[static_cast<std::size_t>(k)] = LowerCaseKey(array[static_cast<std::size_t>(k)]);
    }
    auto key = [&](std::int32_t k) -> const std::u16string& { return keys[static_cast<std::size_t>(k)]; };

    // The ranges left to sort; they never overlap, so the order in which they
    // are taken does not change the result of the recursive algorithm.
    std::vector<std::pair<std::int32_t, std::int32_t>> pending{{first, last}};
    while (!pending.empty()) {
        const auto [lo, hi] = pending.back();
        pending.pop_back();
        const std::u16string pivot = key(static_cast<std::int32_t>((std::int64_t{lo} + hi) / 2));
        std::int32_t i = lo;
        std::int32_t j = hi;
        while (i <= j) {
            while (i < hi && key(i) < pivot) ++i;
            while (j > lo && pivot < key(j)) --j;
            if (i <= j) {
                SwapStrings(array, i, j);
                std::swap(keys[static_cast<std::size_t>(i)], keys[static_cast<std::size_t>(j)]);
                ++i;
                --j;
            }
        }
        if (lo < j) pending.emplace_back(lo, j);
        if (i < hi) pending.emplace_back(i, hi);
    }
}

}  // namespace quillbank::support
