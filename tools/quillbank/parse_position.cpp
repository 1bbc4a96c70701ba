#include "parse_position.hpp"

#include <cctype>

#include <pugixml.hpp>

namespace quillbank::tool {

std::optional<std::string> ParseErrorPlace(std::string_view text) {
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (result) {
        return std::nullopt;
    }
    const auto offset = static_cast<std::size_t>(result.offset < 0 ? 0 : result.offset);
    std::size_t line = 1;
    std::size_t column = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte == '\n') {
            ++line;
            column = 1;
        } else if ((byte & 0xC0) != 0x80) {  // continuation bytes are part of the character before
            ++column;
        }
    }
    std::string description = result.description();
    if (!description.empty()) {
        description[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(description[0])));
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + description;
}

}  // namespace quillbank::tool
