#include "property_path.hpp"

#include <cstdio>

namespace quillbank::tool {

std::string Quoted(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
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
    out += '"';
    return out;
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
