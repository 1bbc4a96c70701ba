// Built with the MSXML backend only: MSXML's nodes are read through the
// facade, by the same reading rules over its handles.

#include <quillbank/xml.hpp>

#include "reading/parsed_lesson.hpp"
#include "reading/parsed_parts.hpp"

namespace quillbank::detail::reading {

namespace {

// Loads `text` into a document of the facade and reads its root element
// into `part`; false when the text does not load.
template <class Part>
bool ReadRootOfText(Part& part, std::string_view text) {
    xml::Document document = xml::Document::Create();
    if (!document.LoadXML(text)) {
        return false;
    }
    part.FromXMLElement(document.DocumentElement());
    return true;
}

}  // namespace

void ReadLessonFromParse(Lesson& lesson, const xml::Document& document) {
    lesson.FromXMLElement(document.DocumentElement());
}

bool ReadBagFromText(PersistedPropertyCollection& bag, std::string_view text) { return ReadRootOfText(bag, text); }

bool ReadChildElementFromText(ChildElement& entry, std::string_view text) { return ReadRootOfText(entry, text); }

}  // namespace quillbank::detail::reading
