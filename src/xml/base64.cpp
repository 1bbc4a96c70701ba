#include "xml/base64.hpp"

#include <algorithm>
#include <array>

#include <quillbank/error.hpp>

namespace quillbank::xml {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kLineLength = 72;

constexpr std::array<std::int8_t, 256> MakeDecodeTable() {
    std::array<std::int8_t, 256> table{};
    for (auto& entry : table) {
        entry = -1;
    }
    for (int i = 0; i < 64; ++i) {
        table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
    }
    return table;
}

constexpr auto kDecodeTable = MakeDecodeTable();

bool IsXmlWhitespace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

std::string EncodeBase64Text(std::span<const std::uint8_t> bytes) {
    const std::size_t chars = (bytes.size() + 2) / 3 * 4;
    const std::size_t breaks = chars == 0 ? 0 : (chars - 1) / kLineLength;
    std::string out(chars + breaks, '\0');
    char* to = out.data();
    const std::uint8_t* from = bytes.data();
    std::size_t left = bytes.size();
    // Whole lines of 72 characters (54 bytes), each but the last followed by
    // a line feed; then the last, shorter line with its padding.
    constexpr std::size_t kLineBytes = kLineLength / 4 * 3;
    while (left >= 3) {
        const std::size_t groups = std::min(left, kLineBytes) / 3;
        for (std::size_t g = 0; g < groups; ++g, from += 3) {
            const std::uint32_t v = (std::uint32_t{from[0]} << 16) | (std::uint32_t{from[1]} << 8) | from[2];
            to[0] = kAlphabet[(v >> 18) & 63];
            to[1] = kAlphabet[(v >> 12) & 63];
            to[2] = kAlphabet[(v >> 6) & 63];
            to[3] = kAlphabet[v & 63];
            to += 4;
        }
        left -= groups * 3;
        if (groups * 4 == kLineLength && left > 0) {
            *to++ = '\n';
        }
    }
    if (left == 1) {
        const std::uint32_t v = std::uint32_t{from[0]} << 16;
        to[0] = kAlphabet[(v >> 18) & 63];
        to[1] = kAlphabet[(v >> 12) & 63];
        to[2] = '=';
        to[3] = '=';
    } else if (left == 2) {
        const std::uint32_t v = (std::uint32_t{from[0]} << 16) | (std::uint32_t{from[1]} << 8);
        to[0] = kAlphabet[(v >> 18) & 63];
        to[1] = kAlphabet[(v >> 12) & 63];
        to[2] = kAlphabet[(v >> 6) & 63];
        to[3] = '=';
    }
    return out;
}

std::optional<std::vector<std::uint8_t>> DecodeBase64Text(std::string_view text) {
    // Every four characters give at most three bytes: the room is made once
    // and the bytes written straight into it.
    std::vector<std::uint8_t> out(text.size() / 4 * 3 + 3);
    std::size_t written = 0;
    auto put = [&out, &written](std::uint32_t byte) { out[written++] = static_cast<std::uint8_t>(byte); };
    std::uint32_t group = 0;
    int inGroup = 0;
    int padding = 0;
    const char* data = text.data();
    const std::size_t size = text.size();
    std::size_t pos = 0;
    while (pos < size) {
        // Four alphabet characters at a group boundary, the usual case,
        // decode at once; anything else goes the careful way below.
        if (inGroup == 0 && padding == 0 && pos + 4 <= size) {
            const std::int8_t a = kDecodeTable[static_cast<unsigned char>(data[pos])];
            const std::int8_t b = kDecodeTable[static_cast<unsigned char>(data[pos + 1])];
            const std::int8_t c = kDecodeTable[static_cast<unsigned char>(data[pos + 2])];
            const std::int8_t d = kDecodeTable[static_cast<unsigned char>(data[pos + 3])];
            if ((a | b | c | d) >= 0) {
                const std::uint32_t quad = (static_cast<std::uint32_t>(a) << 18) | (static_cast<std::uint32_t>(b) << 12) |
                                           (static_cast<std::uint32_t>(c) << 6) | static_cast<std::uint32_t>(d);
                put(quad >> 16);
                put(quad >> 8);
                put(quad);
                pos += 4;
                continue;
            }
        }
        const char c = data[pos++];
        if (IsXmlWhitespace(c)) {
            continue;
        }
        if (c == '=') {
            // Padding may only complete the last group: "xx==" or "xxx=".
            if (inGroup < 2 || padding + inGroup >= 4) {
                return std::nullopt;
            }
            ++padding;
            if (inGroup + padding == 4) {
                if (padding == 2) {
                    put(group >> 4);
                } else {
                    put(group >> 10);
                    put(group >> 2);
                }
                inGroup = 4;  // closed: nothing may follow
            }
            continue;
        }
        if (padding > 0 || inGroup == 4) {
            return std::nullopt;
        }
        const std::int8_t v = kDecodeTable[static_cast<unsigned char>(c)];
        if (v < 0) {
            return std::nullopt;
        }
        group = (group << 6) | static_cast<std::uint32_t>(v);
        if (++inGroup == 4) {
            put(group >> 16);
            put(group >> 8);
            put(group);
            group = 0;
            inGroup = 0;
        }
    }
    out.resize(written);
    if (padding > 0) {
        // Padding started but did not complete the group ("xx=").
        if (inGroup != 4) {
            return std::nullopt;
        }
    } else if (inGroup != 0) {
        return std::nullopt;
    }
    return out;
}

}  // namespace quillbank::xml

namespace quillbank::xml {

std::vector<std::uint8_t> DecodeBase64TextOrRaise(std::string_view text) {
    if (auto bytes = DecodeBase64Text(text)) {
        return std::move(*bytes);
    }
    // At most 64 bytes of the text, never cutting a UTF-8 sequence in half.
    std::size_t cut = std::min<std::size_t>(text.size(), 64);
    while (cut > 0 && cut < text.size() && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) {
        --cut;
    }
    const std::string shown(text.substr(0, cut));
    throw Error(ErrXmlDom, "msxml3.dll", "Error parsing '" + shown + "' as bin.base64 datatype.");
}

}  // namespace quillbank::xml
