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

bool NamesUtf8(const std::string& encoding) {
    return encoding == "utf-8" || encoding == "utf8";
}

bool NamesUtf16(const std::string& encoding) {
    return encoding == "utf-16" || encoding == "utf16" || encoding == "utf-16le" || encoding == "utf-16be" ||
           encoding == "ucs-2" || encoding == "unicode";
}

// The length of the valid UTF-8 sequence at `i`, or 0 when the byte there
// does not start one.
std::size_t Utf8SequenceAt(std::string_view bytes, std::size_t i) {
    auto b = static_cast<unsigned char>(bytes[i]);
    if (b < 0x80) {
        return 1;
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
        return 0;
    }
    if (i + length > bytes.size()) {
        return 0;
    }
    for (std::size_t k = 1; k < length; ++k) {
        auto c = static_cast<unsigned char>(bytes[i + k]);
        if ((c & 0xC0) != 0x80) {
            return 0;
        }
        cp = (cp << 6) | (c & 0x3F);
    }
    // Overlong forms, surrogates and code points beyond U+10FFFF.
    if ((length == 3 && cp < 0x800) || (length == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
        (cp >= 0xD800 && cp <= 0xDFFF)) {
        return 0;
    }
    return length;
}

std::string OffsetList(const std::vector<std::size_t>& offsets) {
    constexpr std::size_t kShown = 10;
    std::string text;
    for (std::size_t i = 0; i < offsets.size() && i < kShown; ++i) {
        text += (i == 0 ? "" : ", ") + std::to_string(offsets[i]);
    }
    if (offsets.size() > kShown) {
        text += " and " + std::to_string(offsets.size() - kShown) + " more";
    }
    return text;
}

void NoteDeclaration(DecodedText& decoded, const std::string& declared) {
    if (declared.empty()) {
        return;
    }
    bool agrees = false;
    switch (decoded.encoding) {
    case SourceEncoding::Utf8:
    case SourceEncoding::Utf8WithBom:
        agrees = NamesUtf8(declared);
        break;
    case SourceEncoding::Utf16LittleEndian:
    case SourceEncoding::Utf16BigEndian:
        agrees = NamesUtf16(declared);
        break;
    case SourceEncoding::Windows1252:
        agrees = NamesWindows1252(declared);
        break;
    }
    if (!agrees) {
        decoded.notes.push_back({"E04", "the XML declaration names the encoding \"" + declared +
                                            "\" but the file was read as " +
                                            std::string(EncodingName(decoded.encoding))});
    }
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
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t length = Utf8SequenceAt(bytes, i);
        if (length == 0) {
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

namespace {

// The text of a file that has no byte-order mark and is not valid UTF-8.
DecodedText DecodeMostlyUtf8(std::span<const std::uint8_t> bytes) {
    std::string_view raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::size_t multiByte = 0;
    std::vector<std::size_t> invalid;
    for (std::size_t i = 0; i < raw.size();) {
        std::size_t length = Utf8SequenceAt(raw, i);
        if (length == 0) {
            invalid.push_back(i);
            ++i;
            continue;
        }
        multiByte += length > 1 ? 1 : 0;
        i += length;
    }
    DecodedText decoded;
    if (multiByte <= invalid.size()) {
        decoded.text = Windows1252ToUtf8(bytes);
        decoded.encoding = SourceEncoding::Windows1252;
        decoded.notes.push_back({"E03", "the file is not valid UTF-8; it was read as "
                                        "Windows-1252"});
        return decoded;
    }
    decoded.text.reserve(raw.size() + invalid.size());
    std::size_t from = 0;
    for (std::size_t at : invalid) {
        decoded.text.append(raw.substr(from, at - from));
        decoded.text += Windows1252ToUtf8(bytes.subspan(at, 1));
        from = at + 1;
    }
    decoded.text.append(raw.substr(from));
    decoded.encoding = SourceEncoding::Utf8;
    decoded.notes.push_back({"E01", "the file is UTF-8 but " + std::to_string(invalid.size()) +
                                        (invalid.size() == 1 ? " byte is" : " bytes are") +
                                        " not (at byte offset" + (invalid.size() == 1 ? " " : "s ") +
                                        OffsetList(invalid) + (invalid.size() == 1 ? "); it was" : "); each was") +
                                        " read as its Windows-1252 character"});
    return decoded;
}

}  // namespace

std::optional<DecodedText> DecodeFileBytes(std::span<const std::uint8_t> bytes) {
    if (bytes.size() >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) {
        auto rest = bytes.subspan(3);
        DecodedText decoded{std::string(reinterpret_cast<const char*>(rest.data()), rest.size()),
                            SourceEncoding::Utf8WithBom, {}};
        NoteDeclaration(decoded, DeclaredEncoding(rest));
        return decoded;
    }
    if (bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
        if (auto text = Utf16ToUtf8(bytes.subspan(2), false)) {
            DecodedText decoded{std::move(*text), SourceEncoding::Utf16LittleEndian, {}};
            NoteDeclaration(decoded, DeclaredEncoding(std::span(
                                         reinterpret_cast<const std::uint8_t*>(decoded.text.data()), decoded.text.size())));
            return decoded;
        }
        return std::nullopt;
    }
    if (bytes.size() >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) {
        if (auto text = Utf16ToUtf8(bytes.subspan(2), true)) {
            DecodedText decoded{std::move(*text), SourceEncoding::Utf16BigEndian, {}};
            NoteDeclaration(decoded, DeclaredEncoding(std::span(
                                         reinterpret_cast<const std::uint8_t*>(decoded.text.data()), decoded.text.size())));
            return decoded;
        }
        return std::nullopt;
    }
    // XML text holds no NUL character: a zero among the first two bytes is
    // half of a UTF-16 code unit.
    if (bytes.size() >= 2 && (bytes[0] == 0) != (bytes[1] == 0)) {
        const bool bigEndian = bytes[0] == 0;
        auto text = Utf16ToUtf8(bytes, bigEndian);
        if (!text) {
            return std::nullopt;
        }
        DecodedText decoded{std::move(*text),
                            bigEndian ? SourceEncoding::Utf16BigEndian : SourceEncoding::Utf16LittleEndian, {}};
        decoded.notes.push_back({"E02", std::string("the file has no byte-order mark; it was read as ") +
                                            std::string(EncodingName(decoded.encoding)) +
                                            " because of its zero bytes"});
        NoteDeclaration(decoded, DeclaredEncoding(std::span(
                                     reinterpret_cast<const std::uint8_t*>(decoded.text.data()), decoded.text.size())));
        return decoded;
    }
    std::string_view raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string declared = DeclaredEncoding(bytes);
    DecodedText decoded;
    if (NamesWindows1252(declared)) {
        decoded = DecodedText{Windows1252ToUtf8(bytes), SourceEncoding::Windows1252, {}};
    } else if (IsValidUtf8(raw)) {
        decoded = DecodedText{std::string(raw), SourceEncoding::Utf8, {}};
    } else {
        decoded = DecodeMostlyUtf8(bytes);
    }
    NoteDeclaration(decoded, declared);
    return decoded;
}

}  // namespace quillbank::tool
