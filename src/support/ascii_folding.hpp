#pragma once

// Lower-casing of ASCII text eight bytes at a time: the fast path of every
// case-insensitive name routine, since names are nearly always ASCII.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillbank::support::ascii {

inline constexpr std::uint64_t kHighBits = 0x8080808080808080ull;

inline std::uint64_t Load8(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

inline char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

// Eight ASCII bytes with 'A'..'Z' lower-cased. After the additions a byte's
// high bit says whether it is at least 'A', and whether it is above 'Z'; no
// addition carries into the next byte while every byte is below 0x80.
inline std::uint64_t Lower8(std::uint64_t word) {
    const std::uint64_t atLeastA = word + 0x3F3F3F3F3F3F3F3Full;  // 0x80 - 'A' in each byte
    const std::uint64_t aboveZ = word + 0x2525252525252525ull;    // 0x7F - 'Z' in each byte
    const std::uint64_t upper = atLeastA & ~aboveZ & kHighBits;
    return word | (upper >> 2);
}

inline bool IsAscii(std::string_view text) {
    std::size_t i = 0;
    std::uint64_t bits = 0;
    for (; i + 8 <= text.size(); i += 8) {
        bits |= Load8(text.data() + i);
    }
    for (; i < text.size(); ++i) {
        bits |= static_cast<unsigned char>(text[i]);
    }
    return (bits & kHighBits) == 0;
}

// Writes the ASCII `text` lower-cased to `out` (which may be text itself).
inline void LowerTo(std::string_view text, char* out) {
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        const std::uint64_t word = Lower8(Load8(text.data() + i));
        std::memcpy(out + i, &word, sizeof word);
    }
    for (; i < text.size(); ++i) {
        out[i] = Lower(text[i]);
    }
}

// Whether the ASCII `text` lower-cased equals `key`, of the same length.
inline bool LowersTo(std::string_view text, std::string_view key) {
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        if (Lower8(Load8(text.data() + i)) != Load8(key.data() + i)) {
            return false;
        }
    }
    for (; i < text.size(); ++i) {
        if (Lower(text[i]) != key[i]) {
            return false;
        }
    }
    return true;
}

// Whether the ASCII texts `a` and `b`, of one length, are equal lower-cased.
inline bool EqualLowered(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    for (; i + 8 <= a.size(); i += 8) {
        if (Lower8(Load8(a.data() + i)) != Lower8(Load8(b.data() + i))) {
            return false;
        }
    }
    for (; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace quillbank::support::ascii
