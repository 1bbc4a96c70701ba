#include "support/utf8.hpp"

namespace quillbank::support {

std::optional<char32_t> DecodeUtf8(std::string_view text, std::size_t& i) noexcept {
    const std::size_t n = text.size();
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char c = byte(i);
    if (c < 0x80) {
        ++i;
        return c;
    }
    int length;
    char32_t cp;
    char32_t minimum;
    if ((c & 0xE0) == 0xC0) {
        length = 2;
        cp = c & 0x1F;
        minimum = 0x80;
    } else if ((c & 0xF0) == 0xE0) {
        length = 3;
        cp = c & 0x0F;
        minimum = 0x800;
    } else if ((c & 0xF8) == 0xF0) {
        length = 4;
        cp = c & 0x07;
        minimum = 0x10000;
    } else {
        return std::nullopt;
    }
    if (i + static_cast<std::size_t>(length) > n) {
        return std::nullopt;
    }
    for (int k = 1; k < length; ++k) {
        const unsigned char cc = byte(i + static_cast<std::size_t>(k));
        if ((cc & 0xC0) != 0x80) {
            return std::nullopt;
        }
        cp = (cp << 6) | (cc & 0x3F);
    }
    if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        return std::nullopt;
    }
    i += static_cast<std::size_t>(length);
    return cp;
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

void AppendUtf16(std::u16string& out, char32_t cp) {
    if (cp < 0x10000) {
        out.push_back(static_cast<char16_t>(cp));
    } else {
        cp -= 0x10000;
        out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    }
}

}  // namespace quillbank::support
