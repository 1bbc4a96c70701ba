#include "json/json_path.hpp"

#include <vector>

namespace quillbank::json_form {

std::string JsonPath::Pointer() const {
    std::vector<const JsonPath*> steps;
    for (const JsonPath* step = this; step->parent_ != nullptr; step = step->parent_) {
        steps.push_back(step);
    }
    std::string pointer;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        pointer += '/';
        if ((*step)->isIndex_) {
            pointer += std::to_string((*step)->index_);
            continue;
        }
        for (const char c : (*step)->key_) {
            if (c == '~') {
                pointer += "~0";
            } else if (c == '/') {
                pointer += "~1";
            } else {
                pointer += c;
            }
        }
    }
    return pointer;
}

}  // namespace quillbank::json_form
