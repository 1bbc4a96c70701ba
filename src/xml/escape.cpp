#include "xml/escape.hpp"

#include <array>
#include <cstdint>

#include "xml/text_checks.hpp"

namespace quillbank::xml {

namespace {

enum class Mode { Text, Attribute, AsciiText, AsciiAttribute };

constexpr std::array<bool, 256> MakeTable(Mode mode) {
    std::array<bool, 256> table{};
    table['&'] = true;
    table['<'] = true;
    table['>'] = true;
    table['\r'] = true;
    if (mode == Mode::Text) {
        table['\n'] = true;
    }
    if (mode == Mode::Attribute || mode == Mode::AsciiAttribute) {
        table['"'] = true;
        table['\t'] = true;
        table['\n'] = true;
    }
    if (mode == Mode::AsciiText || mode == Mode::AsciiAttribute) {
        for (std::size_t b = 0x80; b < 256; ++b) {
            table[b] = true;
        }
    }
    return table;
}

constexpr auto kTextTable = MakeTable(Mode::Text);
constexpr auto kAttributeTable = MakeTable(Mode::Attribute);
constexpr auto kAsciiTextTable = MakeTable(Mode::AsciiText);
constexpr auto kAsciiAttributeTable = MakeTable(Mode::AsciiAttribute);

void AppendDecimalReference(std::string& out, std::uint32_t value) {
    char digits[12];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    out += "&#";
    while (count > 0) {
        out.push_back(digits[--count]);
    }
    out.push_back(';');
}

template <Mode mode>
void Append(std::string& out, std::string_view text, const std::array<bool, 256>& table) {
    std::size_t runStart = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
        const unsigned char b = static_cast<unsigned char>(text[pos]);
        if (!table[b]) {
            ++pos;
            continue;
        }
        out.append(text.data() + runStart, pos - runStart);
        std::size_t next = pos + 1;
        switch (b) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            case '\t': out += "&#9;"; break;
            case '\r': out += "&#13;"; break;
            case '\n':
                if constexpr (mode == Mode::Text) {
                    out += "\r\n";
                } else {
                    out += "&#10;";
                }
                break;
            default: {
                // A character above U+007F in an ASCII form. Text in the
                // document model is valid UTF-8; should a byte not decode,
                // it is written as the reference of the byte itself.
                char32_t c = 0;
                std::size_t at = pos;
                if (DecodeUtf8(text, at, c)) {
                    next = at;
                } else {
                    c = b;
                }
                AppendDecimalReference(out, static_cast<std::uint32_t>(c));
                break;
            }
        }
        pos = next;
        runStart = pos;
    }
    out.append(text.data() + runStart, text.size() - runStart);
}

}  // namespace

void AppendEscapedText(std::string& out, std::string_view text) { Append<Mode::Text>(out, text, kTextTable); }

void AppendEscapedAttribute(std::string& out, std::string_view value) {
    Append<Mode::Attribute>(out, value, kAttributeTable);
}

void AppendAsciiText(std::string& out, std::string_view text) {
    Append<Mode::AsciiText>(out, text, kAsciiTextTable);
}

void AppendAsciiAttribute(std::string& out, std::string_view value) {
    Append<Mode::AsciiAttribute>(out, value, kAsciiAttributeTable);
}

}  // namespace quillbank::xml
