#include "support/ansi.hpp"

#include <array>

#include "support/utf8.hpp"

namespace quillbank::support {

namespace {

// Windows-1252 bytes 0x80..0x9F. The five bytes the code page leaves
// undefined map to the control character of the same number, as the
// platform's conversion does.
constexpr std::array<char16_t, 32> kHighControlRange = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

constexpr std::uint8_t kUnrepresentable = '?';

std::uint8_t ToAnsiByte(char32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
        return static_cast<std::uint8_t>(cp);
    }
    for (std::size_t i = 0; i < kHighControlRange.size(); ++i) {
        if (kHighControlRange[i] == cp) {
            return static_cast<std::uint8_t>(0x80 + i);
        }
    }
    return kUnrepresentable;
}

// The next character of the text; an invalid byte counts as one
// unrepresentable character.
char32_t NextCharacter(std::string_view text, std::size_t& i) {
    if (auto cp = DecodeUtf8(text, i)) {
        return *cp;
    }
    ++i;
    return kReplacementCharacter;
}

}  // namespace

std::vector<std::uint8_t> Utf8ToAnsi(std::string_view text) {
    std::vector<std::uint8_t> out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        // A run of ASCII is copied as it is.
        std::size_t run = i;
        while (run < text.size() && static_cast<unsigned char>(text[run]) < 0x80) {
            ++run;
        }
        out.insert(out.end(), reinterpret_cast<const std::uint8_t*>(text.data()) + i,
                   reinterpret_cast<const std::uint8_t*>(text.data()) + run);
        i = run;
        if (i < text.size()) {
            out.push_back(ToAnsiByte(NextCharacter(text, i)));
        }
    }
    return out;
}

std::string AnsiToUtf8(std::span<const std::uint8_t> bytes) {
    std::string out;
    out.reserve(bytes.size());
    std::size_t i = 0;
    while (i < bytes.size()) {
        // A run of ASCII is copied as it is.
        std::size_t run = i;
        while (run < bytes.size() && bytes[run] < 0x80) {
            ++run;
        }
        out.append(reinterpret_cast<const char*>(bytes.data()) + i, run - i);
        if (run == bytes.size()) {
            break;
        }
        const std::uint8_t b = bytes[run];
        i = run + 1;
        if (b < 0xA0) {
            AppendUtf8(out, kHighControlRange[b - 0x80]);
        } else {
            AppendUtf8(out, b);
        }
    }
    return out;
}

bool IsLowAnsiValue(std::string_view character) {
    if (character.empty()) {
        return false;
    }
    std::size_t i = 0;
    const char32_t cp = NextCharacter(character, i);
    // A character beyond the BMP is a surrogate pair; either half alone
    // converts to the unrepresentable '?'.
    const std::uint8_t code = cp > 0xFFFF ? kUnrepresentable : ToAnsiByte(cp);
    return code <= 127;
}

bool IsUnicodeString(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            ++i;  // ASCII is below U+0100
            continue;
        }
        const std::size_t start = i;
        const char32_t cp = NextCharacter(text, i);
        if (cp >= 0x100 && IsLowAnsiValue(text.substr(start, i - start))) {
            return true;
        }
    }
    return false;
}

}  // namespace quillbank::support
