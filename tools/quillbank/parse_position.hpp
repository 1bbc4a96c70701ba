#pragma once

// Where a text that is not well-formed XML goes wrong, for the message
// that says the file could not be parsed. The library reports only that
// it failed; the tool asks pugixml, the XML parser the library is built on,
// for the place.

#include <optional>
#include <string>
#include <string_view>

namespace quillbank::tool {

// "line 3, column 14: start-end tags mismatch", or nothing when the text
// parses. Lines and columns count from 1; columns count characters.
std::optional<std::string> ParseErrorPlace(std::string_view text);

}  // namespace quillbank::tool
