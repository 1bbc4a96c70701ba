#pragma once

// Keeping a lesson file's "documentid" through a rewrite. The library gives
// every written copy a new one; `normalize --keep-documentid` and `clear
// --keep-documentid` put the file's own back, so that rewriting an unchanged
// file gives the same bytes.

#include <optional>
#include <string>
#include <string_view>

namespace quillbank::tool {

// The "documentid" attribute of the start tag of the text's "lesson"
// element (the text is well-formed: the reader took it), or nothing.
std::optional<std::string> DocumentIdOf(std::string_view text);

// The written text with the "documentid" of its "lesson" start tag set to
// `documentId` (escaped as an attribute value).
std::string WithDocumentId(std::string text, std::string_view documentId);

}  // namespace quillbank::tool
