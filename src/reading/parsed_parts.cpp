// Built with the pugixml backend only.

#include "reading/parsed_parts.hpp"

#include "frame/raise.hpp"
#include "reading/model_reader.hpp"
#include "xml/pugi/node_cursor.hpp"

namespace quillbank::detail::reading {

namespace {

// Parses `text` and gives its root element to `read`; `source` names the
// element form that a text without an element fails as.
template <class Read>
bool ReadRootOfText(std::string_view text, const char* source, Read read) {
    const xml::detail::NodeCursor::Parsed parsed(text);
    if (!parsed.Loaded()) {
        return false;
    }
    if (!parsed.Root()) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    read(parsed.Root());
    return true;
}

}  // namespace

bool ReadBagFromText(PersistedPropertyCollection& bag, std::string_view text) {
    return ReadRootOfText(text, "PersistedPropertyCollection.FromXMLElement",
                          [&bag](const xml::detail::NodeCursor& root) { ModelReader::ReadBag(bag, root); });
}

bool ReadChildElementFromText(ChildElement& entry, std::string_view text) {
    return ReadRootOfText(text, "ChildElement.FromXMLElement",
                          [&entry](const xml::detail::NodeCursor& root) { ModelReader::ReadChildElement(entry, root); });
}

}  // namespace quillbank::detail::reading
