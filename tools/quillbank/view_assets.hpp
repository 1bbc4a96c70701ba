#pragma once

// The files of the page `quillbank view` writes (tools/quillbank/view/),
// carried inside the program; the build makes their definitions.

#include <string_view>

namespace quillbank::tool {

extern const std::string_view kViewPageTemplate;  // view/page.html
extern const std::string_view kViewStyle;         // view/view.css
extern const std::string_view kViewScript;        // view/view.js

}  // namespace quillbank::tool
