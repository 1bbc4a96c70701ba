#include "support/text.hpp"

#include <cstdint>
#include <cstring>
#include <utility>

#include <quillbank/error.hpp>

#include "frame/raise.hpp"
#include "support/utf8.hpp"

namespace quillbank::support {

namespace {

bool IsStripped(unsigned char c) { return c <= 25 && c != 9 && c != 10 && c != 13; }

// How many bytes at the start of `text` hold nothing to strip. The clean
// start is checked eight bytes at a time: a word without any byte below 26
// holds nothing to strip (tabs and line breaks send a word through the byte
// test below).
std::size_t CleanPrefixLength(std::string_view text) {
    std::size_t i = 0;
    const char* data = text.data();
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, data + i, 8);
        constexpr std::uint64_t ones = 0x0101010101010101ull;
        if (((word - ones * 26) & ~word & (ones * 0x80)) != 0) {
            bool stripped = false;
            for (std::size_t k = 0; k < 8; ++k) {
                stripped = stripped || IsStripped(static_cast<unsigned char>(data[i + k]));
            }
            if (stripped) {
                break;
            }
        }
    }
    while (i < text.size() && !IsStripped(static_cast<unsigned char>(text[i]))) {
        ++i;
    }
    return i;
}

}  // namespace

std::string StripControlCharsOwned(std::string&& text) {
    std::size_t kept = CleanPrefixLength(text);
    for (std::size_t i = kept; i < text.size(); ++i) {
        if (!IsStripped(static_cast<unsigned char>(text[i]))) {
            text[kept++] = text[i];
        }
    }
    text.resize(kept);
    return std::move(text);
}

bool HasStrippedControlChars(std::string_view text) { return CleanPrefixLength(text) != text.size(); }

std::string StripControlChars(std::string_view text) {
    std::size_t i = CleanPrefixLength(text);
    std::string out(text.substr(0, i));
    if (i == text.size()) {
        return out;
    }
    out.reserve(text.size());
    for (; i < text.size(); ++i) {
        if (!IsStripped(static_cast<unsigned char>(text[i]))) {
            out.push_back(text[i]);
        }
    }
    return out;
}

std::string TrimAtNull(std::string_view text) {
    const auto p = text.find('\0');
    return std::string(p == std::string_view::npos ? text : text.substr(0, p));
}

bool IsBlankText(std::string_view text) {
    for (char c : text) {
        if (c != '\r' && c != '\n' && c != '\t' && c != ' ') {
            return false;
        }
    }
    return true;
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    if (from.empty()) {
        return std::string(text);
    }
    out.reserve(text.size());
    std::size_t start = 0;
    for (;;) {
        const auto p = text.find(from, start);
        if (p == std::string_view::npos) {
            out.append(text.substr(start));
            return out;
        }
        out.append(text.substr(start, p - start));
        out.append(to);
        start = p + from.size();
    }
}

bool IsValidUtf8(std::string_view text) noexcept {
    std::size_t i = 0;
    while (i < text.size()) {
        // Runs of ASCII are the common case.
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            ++i;
            continue;
        }
        if (!DecodeUtf8(text, i)) {
            return false;
        }
    }
    return true;
}

void RequireUtf8(std::string_view text, const char* source) {
    if (!IsValidUtf8(text)) {
        frame::Raise(ErrInvalidArgument, source, "Invalid property value: the text is not valid UTF-8.");
    }
}

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            out.push_back(c);
            ++i;
            continue;
        }
        const auto cp = DecodeUtf8(text, i);
        AppendUtf16(out, cp ? *cp : kReplacementCharacter);
        if (!cp) {
            ++i;
        }
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t cp = text[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = kReplacementCharacter;
        }
        AppendUtf8(out, cp);
    }
    return out;
}

std::size_t Utf16Length(std::string_view text) noexcept {
    // ASCII, eight bytes at a time, is one unit a byte.
    std::size_t units = 0;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + i, 8);
        if ((word & 0x8080808080808080ull) != 0) {
            break;
        }
        units += 8;
    }
    for (; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if ((c & 0xC0) != 0x80) {
            // A lead byte: four-byte sequences need a surrogate pair.
            units += c >= 0xF0 ? 2 : 1;
        }
    }
    return units;
}

}  // namespace quillbank::support
