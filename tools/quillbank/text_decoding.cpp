#include "text_decoding.hpp"

#include <algorithm>
#include <array>
#include <cctype>

namespace quillbank::tool {

namespace {

// Windows-1252 bytes 0x80..0x9F; every other byte is the code point of the
// same number.
constexpr std::array<char16_t, 32> kWindows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

std::optional<std::string> Utf16ToUtf8(std::span<const std::uint8_t> bytes, bool bigEndian) {
    if (bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    auto unit = [&](std::size_t i) -> char16_t {
        std::uint8_t first = bytes[2 * i];
        std::uint8_t second = bytes[2 * i + 1];
        return bigEndian ? static_cast<char16_t>((first << 8) | second)
                         : static_cast<char16_t>((second << 8) | first);
    };
    std::string out;
    out.reserve(bytes.size());
    const std::size_t units = bytes.size() / 2;
    for (std::size_t i = 0; i < units; ++i) {
        char16_t u = unit(i);
        if (u >= 0xD800 && u <= 0xDBFF) {
            if (i + 1 >= units) {
                return std::nullopt;
            }
            char16_t low = unit(i + 1);
            if (low < 0xDC00 || low > 0xDFFF) {
                return std::nullopt;
            }
            ++i;
            AppendUtf8(out, 0x10000 + ((static_cast<char32_t>(u) - 0xD800) << 10) + (low - 0xDC00));
        } else if (u >= 0xDC00 && u <= 0xDFFF) {
            return std::nullopt;
        } else {
            AppendUtf8(out, u);
        }
    }
    return out;
}

std::string Lower(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

// The encoding named by an XML declaration at the very start of the bytes,
// lower-cased; "" when there is no declaration or it names none.
std::string DeclaredEncoding(std::span<const std::uint8_t> bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!text.starts_with("<?xml")) {
        return "";
    }
    std::size_t end = text.find("?>");
    if (end == std::string_view::npos) {
        return "";
    }
    std::string_view declaration = text.substr(0, end);
    std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) {
        return "";
    }
    std::size_t eq = declaration.find('=', at);
    if (eq == std::string_view::npos) {
        return "";
    }
    std::size_t open = declaration.find_first_of("\"'", eq);
    if (open == std::string_view::npos) {
        return "";
    }
    std::size_t close = declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos) {
        return "";
    }
    return Lower(declaration.substr(open + 1, close - open - 1));
}

bool NamesWindows1252(const std::string& encoding) {
    return encoding == "windows-1252" || encoding == "cp1252" || encoding == "iso-8859-1" ||
           encoding == "latin1" || encoding == "latin-1" || encoding == "iso_8859-1";
}

}  // namespace

std::string_view EncodingName(SourceEncoding encoding) {
    switch (encoding) {
    case SourceEncoding::Utf8: return "UTF-8";
    case SourceEncoding::Utf8WithBom: return "UTF-8 with byte-order mark";
    case SourceEncoding::Utf16LittleEndian: return "UTF-16LE";
    case SourceEncoding::Utf16BigEndian: return "UTF-16BE";
    case SourceEncoding::Windows1252: return "Windows-1252";
    }
    return "";
}

bool IsValidUtf8(std::string_view bytes) {
    std::size_t i = 0;
    const std::size_t n = bytes.size();
    while (i < n) {
        auto b = static_cast<unsigned char>(bytes[i]);
        if (b < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        char32_t cp = 0;
        if (b >= 0xC2 && b <= 0xDF) {
            length = 2;
            cp = b & 0x1F;
        } else if (b >= 0xE0 && b <= 0xEF) {
            length = 3;
            cp = b & 0x0F;
        } else if (b >= 0xF0 && b <= 0xF4) {
            length = 4;
            cp = b & 0x07;
        } else {
            return false;
        }
        if (i + length > n) {
            return false;
        }
        for (std::size_t k = 1; k < length; ++k) {
            auto c = static_cast<unsigned char>(bytes[i + k]);
            if ((c & 0xC0) != 0x80) {
                return false;
            }
            cp = (cp << 6) | (c & 0x3F);
        }
        // Overlong forms, surrogates and code points beyond U+10FFFF.
        if ((length == 3 && cp < 0x800) || (length == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
            (cp >= 0xD800 && cp <= 0xDFFF)) {
            return false;
        }
        i += length;
    }
    return true;
}

std::string Windows1252ToUtf8(std::span<const std::uint8_t> bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (std::uint8_t b : bytes) {
        if (b >= 0x80 && b <= 0x9F) {
            AppendUtf8(out, kWindows1252High[b - 0x80]);
        } else {
            AppendUtf8(out, b);
        }
    }
    return out;
}

std::optional<DecodedText> DecodeFileBytes(std::span<const std::uint8_t> bytes) {
    if (bytes.size() >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) {
        auto rest = bytes.subspan(3);
        return DecodedText{std::string(reinterpret_cast<const char*>(rest.data()), rest.size()),
                           SourceEncoding::Utf8WithBom};
    }
    if (bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
        if (auto text = Utf16ToUtf8(bytes.subspan(2), false)) {
            return DecodedText{std::move(*text), SourceEncoding::Utf16LittleEndian};
        }
        return std::nullopt;
    }
    if (bytes.size() >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) {
        if (auto text = Utf16ToUtf8(bytes.subspan(2), true)) {
            return DecodedText{std::move(*text), SourceEncoding::Utf16BigEndian};
        }
        return std::nullopt;
    }
    std::string_view raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!NamesWindows1252(DeclaredEncoding(bytes)) && IsValidUtf8(raw)) {
        return DecodedText{std::string(raw), SourceEncoding::Utf8};
    }
    return DecodedText{Windows1252ToUtf8(bytes), SourceEncoding::Windows1252};
}

}  // namespace quillbank::tool
