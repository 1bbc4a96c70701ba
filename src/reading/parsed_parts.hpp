#pragma once

// Reading a bag's or a child element's text in one pass: the text is parsed
// into a scratch document of the thread and the part is built straight from
// the parser's nodes by the reading rules (reading/model_reader.hpp), as
// loading it into a document of the facade (whitespace not kept) and reading
// that document's root element would build it. The Windows build, whose
// parser is MSXML, loads such a document and reads it through the facade
// (reading/facade_reading.cpp).

#include <string_view>

#include <quillbank/child_element.hpp>
#include <quillbank/persisted_property_collection.hpp>

namespace quillbank::detail::reading {

// Reads `bag` from `text`. Returns false, leaving `bag` as it was, when the
// text does not parse; raises what reading the root element raises, and the
// missing element's error of FromXMLElement when the text has no element.
bool ReadBagFromText(PersistedPropertyCollection& bag, std::string_view text);

// The same for a child element.
bool ReadChildElementFromText(ChildElement& entry, std::string_view text);

}  // namespace quillbank::detail::reading
