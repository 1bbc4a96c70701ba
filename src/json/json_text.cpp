#include "json/json_text.hpp"

#include <charconv>
#include <cstring>

namespace quillbank::json_form {

namespace {

constexpr char kHex[] = "0123456789abcdef";

// The length of the UTF-8 sequence at `at` (1 to 4), or 0 when it is not one.
std::size_t SequenceLength(const unsigned char* at, const unsigned char* end) {
    const unsigned char lead = *at;
    std::size_t length = 0;
    std::uint32_t lowest = 0;
    std::uint32_t code = 0;
    if (lead < 0x80) {
        return 1;
    }
    if ((lead & 0xE0) == 0xC0) {
        length = 2, lowest = 0x80, code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, lowest = 0x800, code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, lowest = 0x10000, code = lead & 0x07;
    } else {
        return 0;
    }
    if (static_cast<std::size_t>(end - at) < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((at[i] & 0xC0) != 0x80) {
            return 0;
        }
        code = (code << 6) | (at[i] & 0x3F);
    }
    if (code < lowest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return 0;
    }
    return length;
}

}  // namespace

void JsonText::NewLine() {
    out_ += '\n';
    out_.append(empty_.size() * static_cast<std::size_t>(indent_), ' ');
}

void JsonText::BeforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (empty_.empty()) {
        return;
    }
    if (!empty_.back()) {
        out_ += ',';
    }
    empty_.back() = false;
    if (indent_ > 0) {
        NewLine();
    }
}

void JsonText::Open(char bracket) {
    BeforeValue();
    out_ += bracket;
    empty_.push_back(true);
}

void JsonText::Close(char bracket) {
    const bool wasEmpty = empty_.back();
    empty_.pop_back();
    if (!wasEmpty && indent_ > 0) {
        NewLine();
    }
    out_ += bracket;
}

void JsonText::BeginObject() { Open('{'); }
void JsonText::EndObject() { Close('}'); }
void JsonText::BeginArray() { Open('['); }
void JsonText::EndArray() { Close(']'); }

void JsonText::Key(std::string_view key) {
    BeforeValue();
    Quoted(key);
    out_ += indent_ > 0 ? ": " : ":";
    afterKey_ = true;
}

void JsonText::String(std::string_view text) {
    BeforeValue();
    Quoted(text);
}

void JsonText::Quoted(std::string_view text) {
    out_ += '"';
    const auto* at = reinterpret_cast<const unsigned char*>(text.data());
    const auto* end = at + text.size();
    const auto* run = at;
    while (at != end) {
        const unsigned char c = *at;
        if (c >= 0x20 && c != '"' && c != '\\' && c < 0x80) {
            ++at;
            continue;
        }
        if (c >= 0x80) {
            const std::size_t length = SequenceLength(at, end);
            if (length == 0) {
                throw NotUtf8();
            }
            at += length;
            continue;
        }
        out_.append(reinterpret_cast<const char*>(run), static_cast<std::size_t>(at - run));
        switch (c) {
            case '"':
                out_ += "\\\"";
                break;
            case '\\':
                out_ += "\\\\";
                break;
            case '\n':
                out_ += "\\n";
                break;
            case '\r':
                out_ += "\\r";
                break;
            case '\t':
                out_ += "\\t";
                break;
            case '\b':
                out_ += "\\b";
                break;
            case '\f':
                out_ += "\\f";
                break;
            default: {
                const char escaped[] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 0xF]};
                out_.append(escaped, sizeof escaped);
                break;
            }
        }
        ++at;
        run = at;
    }
    out_.append(reinterpret_cast<const char*>(run), static_cast<std::size_t>(at - run));
    out_ += '"';
}

void JsonText::Integer(std::int64_t value) {
    BeforeValue();
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out_.append(buffer, result.ptr);
}

void JsonText::Double(double value) {
    BeforeValue();
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out_.append(buffer, result.ptr);
    // "2" would read back as an integer: a double always shows it is one.
    if (std::memchr(buffer, '.', static_cast<std::size_t>(result.ptr - buffer)) == nullptr &&
        std::memchr(buffer, 'e', static_cast<std::size_t>(result.ptr - buffer)) == nullptr) {
        out_ += ".0";
    }
}

void JsonText::Boolean(bool value) {
    BeforeValue();
    out_ += value ? "true" : "false";
}

void JsonText::Null() {
    BeforeValue();
    out_ += "null";
}

}  // namespace quillbank::json_form
