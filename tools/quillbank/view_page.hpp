#pragma once

// The one HTML file `quillbank view` writes: the page template with its style
// sheet, its script and the lesson's data put in.

#include <string>
#include <string_view>

#include "json_report.hpp"

namespace quillbank::tool {

// Text for HTML element content and attribute values: & < > " ' as
// character references.
std::string HtmlEscaped(std::string_view text);

// The JSON text, safe inside a <script> element: "<", ">", "&", U+2028 and
// U+2029 written as \u escapes, so that no text from the lesson can end the
// element or start markup; bytes that are not UTF-8 become U+FFFD.
std::string ScriptSafeJson(const Json& data);

// The page: the template's {{TITLE}} gets the escaped title, its
// /*{{STYLE}}*/ and /*{{SCRIPT}}*/ the style sheet and the script, and
// {{DATA}} the data. The template is read once from the start; nothing put
// in is read again for markers.
std::string ViewPage(std::string_view title, const Json& data);

}  // namespace quillbank::tool
