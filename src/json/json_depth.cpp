#include "json/json_depth.hpp"

namespace quillbank::json_form {

std::size_t FindTooDeep(std::string_view text, std::int32_t maxDepth) noexcept {
    std::int64_t depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\') {
                ++i;  // the escaped character cannot end the string
            } else if (c == '"') {
                inString = false;
            }
            continue;
        }
        switch (c) {
            case '"':
                inString = true;
                break;
            case '[':
            case '{':
                if (++depth > maxDepth) {
                    return i;
                }
                break;
            case ']':
            case '}':
                --depth;
                break;
            default:
                break;
        }
    }
    return std::string_view::npos;
}

}  // namespace quillbank::json_form
