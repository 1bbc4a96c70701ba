#include "xml/text_checks.hpp"

#include <array>
#include <cstdint>
#include <cstring>

#include "xml/dom_error.hpp"

namespace quillbank::xml {

namespace {

constexpr const char* kDomSource = kDomErrorSource;

constexpr bool InRange(char32_t c, char32_t low, char32_t high) { return c >= low && c <= high; }

constexpr bool IsNameStartChar(char32_t c) {
    if (c < 0x80) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':';
    }
    return InRange(c, 0xC0, 0xD6) || InRange(c, 0xD8, 0xF6) || InRange(c, 0xF8, 0x2FF) ||
           InRange(c, 0x370, 0x37D) || InRange(c, 0x37F, 0x1FFF) || InRange(c, 0x200C, 0x200D) ||
           InRange(c, 0x2070, 0x218F) || InRange(c, 0x2C00, 0x2FEF) || InRange(c, 0x3001, 0xD7FF) ||
           InRange(c, 0xF900, 0xFDCF) || InRange(c, 0xFDF0, 0xFFFD) || InRange(c, 0x10000, 0xEFFFF);
}

constexpr bool IsNameChar(char32_t c) {
    return IsNameStartChar(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == 0xB7 ||
           InRange(c, 0x300, 0x36F) || InRange(c, 0x203F, 0x2040);
}

// ASCII name characters: 1 may start a name, 2 may follow in one.
constexpr std::array<std::uint8_t, 128> MakeAsciiNameTable() {
    std::array<std::uint8_t, 128> table{};
    for (char32_t c = 0; c < 128; ++c) {
        table[c] = static_cast<std::uint8_t>((IsNameStartChar(c) ? 1 : 0) | (IsNameChar(c) ? 2 : 0));
    }
    return table;
}
constexpr std::array<std::uint8_t, 128> kAsciiName = MakeAsciiNameTable();

// The length of the run of ASCII bytes at the start of `text`, eight bytes
// at a time.
std::size_t AsciiPrefix(std::string_view text) {
    const char* data = text.data();
    const std::size_t size = text.size();
    std::size_t pos = 0;
    for (; pos + 8 <= size; pos += 8) {
        std::uint64_t word;
        std::memcpy(&word, data + pos, 8);
        if ((word & 0x8080808080808080ull) != 0) {
            break;
        }
    }
    while (pos < size && static_cast<unsigned char>(data[pos]) < 0x80) {
        ++pos;
    }
    return pos;
}

}  // namespace

bool DecodeUtf8(std::string_view text, std::size_t& pos, char32_t& codePoint) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(pos);
    if (lead < 0x80) {
        codePoint = lead;
        ++pos;
        return true;
    }
    std::size_t length = 0;
    char32_t value = 0;
    char32_t minimum = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1Fu;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0Fu;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07u;
        minimum = 0x10000;
    } else {
        return false;
    }
    if (text.size() - pos < length) {
        return false;
    }
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = byteAt(pos + i);
        if ((next & 0xC0u) != 0x80u) {
            return false;
        }
        value = (value << 6) | (next & 0x3Fu);
    }
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        return false;
    }
    codePoint = value;
    pos += length;
    return true;
}

bool IsValidUtf8(std::string_view text) {
    std::size_t pos = 0;
    while (pos < text.size()) {
        // Runs of ASCII need no decoding.
        if (static_cast<unsigned char>(text[pos]) < 0x80) {
            pos += AsciiPrefix(text.substr(pos));
            continue;
        }
        char32_t c = 0;
        if (!DecodeUtf8(text, pos, c)) {
            return false;
        }
    }
    return true;
}

bool IsXmlChar(char32_t c) {
    if (c < 0x20) {
        return c == 0x9 || c == 0xA || c == 0xD;
    }
    return c <= 0xD7FF || InRange(c, 0xE000, 0xFFFD) || InRange(c, 0x10000, 0x10FFFF);
}

bool IsAsciiXmlName(std::string_view name) {
    if (name.empty()) {
        return false;
    }
    for (std::size_t pos = 0; pos < name.size(); ++pos) {
        const unsigned char b = static_cast<unsigned char>(name[pos]);
        if (b >= 0x80 || (kAsciiName[b] & (pos == 0 ? 1 : 2)) == 0) {
            return false;
        }
    }
    return true;
}

bool IsXmlName(std::string_view name) {
    // Names of ASCII characters only, the usual case, by table.
    std::size_t pos = 0;
    for (; pos < name.size(); ++pos) {
        const unsigned char b = static_cast<unsigned char>(name[pos]);
        if (b >= 0x80) {
            break;
        }
        if ((kAsciiName[b] & (pos == 0 ? 1 : 2)) == 0) {
            return false;
        }
    }
    if (pos == name.size()) {
        return pos > 0;
    }
    bool first = pos == 0;
    while (pos < name.size()) {
        char32_t c = 0;
        if (!DecodeUtf8(name, pos, c)) {
            return false;
        }
        if (first ? !IsNameStartChar(c) : !IsNameChar(c)) {
            return false;
        }
        first = false;
    }
    return !first;
}

std::string_view DocumentText(std::string_view text) {
    if (!IsValidUtf8(text)) {
        throw Error(ErrInvalidArgument, kDomSource, "The text is not valid UTF-8.");
    }
    return text.substr(0, text.find('\0'));
}

std::string NormalizeLineEnds(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size(); ++pos) {
        if (text[pos] != '\r') {
            out.push_back(text[pos]);
            continue;
        }
        out.push_back('\n');
        if (pos + 1 < text.size() && text[pos + 1] == '\n') {
            ++pos;
        }
    }
    return out;
}

bool RebindsOwnPrefix(std::string_view elementName, std::string_view name, std::string_view existing,
                      std::string_view value) {
    constexpr std::string_view kXmlns = "xmlns:";
    if (name.substr(0, kXmlns.size()) != kXmlns || existing == value) {
        return false;
    }
    const std::string_view prefix = name.substr(kXmlns.size());
    return elementName.size() > prefix.size() && elementName.substr(0, prefix.size()) == prefix &&
           elementName[prefix.size()] == ':';
}

}  // namespace quillbank::xml
