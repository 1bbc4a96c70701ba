#include "support/folded_keys.hpp"

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>

#include "support/sort.hpp"

namespace quillbank::support {

namespace {

// Names up to this length are folded on the stack.
constexpr std::size_t kShortName = 128;

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

constexpr std::uint64_t kHighBits = 0x8080808080808080ull;

std::uint64_t Load8(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

// Eight ASCII bytes at once with 'A'..'Z' lower-cased: a byte's high bit,
// after adding, says whether it is at least 'A' and whether it is above 'Z'.
std::uint64_t LowerAscii8(std::uint64_t word) {
    const std::uint64_t atLeastA = word + 0x3F3F3F3F3F3F3F3Full;  // 0x80 - 'A' in each byte
    const std::uint64_t aboveZ = word + 0x2525252525252525ull;    // 0x7F - 'Z' in each byte
    const std::uint64_t upper = atLeastA & ~aboveZ & kHighBits;
    return word | (upper >> 2);
}

bool IsAscii(std::string_view text) {
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

// Whether the ASCII `name` lower-cased equals `key`, of the same length.
bool AsciiFoldsTo(std::string_view name, std::string_view key) {
    std::size_t i = 0;
    for (; i + 8 <= name.size(); i += 8) {
        if (LowerAscii8(Load8(name.data() + i)) != Load8(key.data() + i)) {
            return false;
        }
    }
    for (; i < name.size(); ++i) {
        if (LowerAscii(name[i]) != key[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::size_t FoldedHash(std::string_view name) {
    if (name.size() <= kShortName && IsAscii(name)) {
        std::array<char, kShortName> folded;
        std::size_t i = 0;
        for (; i + 8 <= name.size(); i += 8) {
            const std::uint64_t word = LowerAscii8(Load8(name.data() + i));
            std::memcpy(folded.data() + i, &word, sizeof word);
        }
        for (; i < name.size(); ++i) {
            folded[i] = LowerAscii(name[i]);
        }
        return std::hash<std::string_view>{}(std::string_view(folded.data(), name.size()));
    }
    return std::hash<std::string_view>{}(LowerCase(name));
}

bool FoldsTo(std::string_view name, std::string_view key) {
    if (IsAscii(name)) {
        return name.size() == key.size() && AsciiFoldsTo(name, key);
    }
    return LowerCase(name) == key;
}

bool SameFolded(std::string_view a, std::string_view b) {
    if (IsAscii(a) && IsAscii(b)) {
        if (a.size() != b.size()) {
            return false;
        }
        std::size_t i = 0;
        for (; i + 8 <= a.size(); i += 8) {
            if (LowerAscii8(Load8(a.data() + i)) != LowerAscii8(Load8(b.data() + i))) {
                return false;
            }
        }
        for (; i < a.size(); ++i) {
            if (LowerAscii(a[i]) != LowerAscii(b[i])) {
                return false;
            }
        }
        return true;
    }
    return LowerCase(a) == LowerCase(b);
}

}  // namespace quillbank::support
