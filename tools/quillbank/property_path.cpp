#include "property_path.hpp"

#include <cstdio>

namespace quillbank::tool {

namespace {

// The length of a bidirectional control character (U+200E, U+200F,
// U+202A..U+202E, U+2066..U+2069) at `i` of UTF-8 text, or 0.
std::size_t BidiControlAt(std::string_view text, std::size_t i) {
    if (i + 3 > text.size() || static_cast<unsigned char>(text[i]) != 0xE2) {
        return 0;
    }
    auto second = static_cast<unsigned char>(text[i + 1]);
    auto third = static_cast<unsigned char>(text[i + 2]);
    if (second == 0x80 && (third == 0x8E || third == 0x8F || (third >= 0xAA && third <= 0xAE))) {
        return 3;
    }
    if (second == 0x81 && third >= 0xA6 && third <= 0xA9) {
        return 3;
    }
    return 0;
}

std::string EscapeText(std::string_view text, bool quoted) {
    std::string out;
    out.reserve(text.size() + 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (std::size_t length = BidiControlAt(text, i)) {
            // The code point of the three bytes.
            unsigned cp = ((static_cast<unsigned char>(text[i]) & 0x0Fu) << 12) |
                          ((static_cast<unsigned char>(text[i + 1]) & 0x3Fu) << 6) |
                          (static_cast<unsigned char>(text[i + 2]) & 0x3Fu);
            char buffer[8];
            std::snprintf(buffer, sizeof buffer, "\\u%04X", cp);
            out += buffer;
            i += length - 1;
            continue;
        }
        switch (c) {
        case '"':
            out += quoted ? "\\\"" : "\"";
            break;
        case '\\': out += "\\\\"; break;
        case '\r': out += "\\r"; break;
        case '\n': out += "\\n"; break;
        case '\t': out += "\\t"; break;
        default:
            if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
                out += buffer;
            } else {
                out += c;
            }
        }
    }
    return out;
}

}  // namespace

std::string Quoted(std::string_view text) {
    return "\"" + EscapeText(text, true) + "\"";
}

std::string Escaped(std::string_view text) {
    return EscapeText(text, false);
}

std::string PathName(std::string_view name) {
    bool plain = !name.empty() && name.front() != ' ' && name.back() != ' ' &&
                 name.find_first_of("/[]\"\\\r\n\t") == std::string_view::npos;
    return plain ? std::string(name) : Quoted(name);
}

std::string JoinPath(std::string_view base, std::string_view part) {
    std::string out(base);
    out += " / ";
    out += part;
    return out;
}

std::string Indexed(std::string_view base, std::int32_t index) {
    return std::string(base) + "[" + std::to_string(index) + "]";
}

std::string LessonBagPath() {
    return "lesson / properties";
}

std::string StoryboardPlace(std::string_view sbid) {
    return "storyboard " + (sbid.empty() ? std::string("\"\"") : std::string(sbid));
}

std::string StoryboardBagPath(std::string_view sbid) {
    return JoinPath(StoryboardPlace(sbid), "properties");
}

std::string ChildElementPath(std::string_view sbid, std::int32_t index) {
    return JoinPath(StoryboardPlace(sbid), Indexed("children", index));
}

std::string MapPlace(std::string_view name) {
    return "map " + Quoted(name);
}

}  // namespace quillbank::tool
