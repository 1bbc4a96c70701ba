#include <quillbank/lesson.hpp>

#include <unordered_set>
#include <utility>
#include <vector>

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/lesson_map.hpp>

#include "frame/raise.hpp"
#include "maps/lesson_map_access.hpp"
#include "properties/property_bag.hpp"
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"
#include "reading/parsed_lesson.hpp"
#include "storyboards/storyboard_access.hpp"
#include "support/conversions.hpp"
#include "support/guid.hpp"
#include "support/model_arena.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"

namespace quillbank {

namespace {

constexpr const char* kDefaultTitle = "New Lesson";

// The banner that stands before and after the content of a classified lesson.
std::string BannerText(const std::string& classification) {
    return " ************ " + classification + " ************ ";
}

// Rewrites the start and end points of every location property in Bag, and
// in every bag and child-element list nested in it, through Mapping (old
// identifier to new identifier; identifiers it does not hold stay). A
// location is stored back unencoded, whatever its encoding was. Nested bags
// are taken from a work list rather than by recursion, so nesting depth
// costs no stack; a bag reached twice (possible only through a list that
// holds itself) is rewritten once.
void RemapLocationReferences(const std::shared_ptr<PersistedPropertyCollection>& Bag,
                             const PersistedPropertyCollection& Mapping) {
    std::vector<std::shared_ptr<PersistedPropertyCollection>> pending{Bag};
    std::unordered_set<const PersistedPropertyCollection*> done;
    auto queueList = [&pending](const std::shared_ptr<ChildElementCollection>& list) {
        if (!list) {
            return;
        }
        for (std::int32_t i = 0; i <= list->Length(); ++i) {
            pending.push_back(list->Item(i)->PPCObject());
        }
    };
    while (!pending.empty()) {
        std::shared_ptr<PersistedPropertyCollection> bag = std::move(pending.back());
        pending.pop_back();
        if (!bag || !done.insert(bag.get()).second) {
            continue;
        }
        // The plain names first, then the encoded ones; an array whose first
        // name is empty is how a bag reports that it holds none of a kind.
        for (const std::int32_t encoding : {std::int32_t{etNotEncoded}, std::int32_t{etBase64Encoded}}) {
            const std::vector<std::string> names = bag->GetPropertyNameArray(encoding);
            if (names.empty() || names.front().empty()) {
                continue;
            }
            for (const std::string& name : names) {
                switch (bag->GetPropertyType(name)) {
                    case ptLocation: {
                        LocationData location = bag->GetLocation(name, LocationData{});
                        location.StartPoint = Mapping.GetString(location.StartPoint, location.StartPoint);
                        location.EndPoint = Mapping.GetString(location.EndPoint, location.EndPoint);
                        bag->SetLocation(name, location, etNotEncoded);
                        break;
                    }
                    case ptPPC:
                        pending.push_back(bag->GetPPC(name, nullptr));
                        break;
                    case ptCEC:
                        queueList(bag->GetCEC(name, nullptr));
                        break;
                    default:
                        break;
                }
            }
        }
    }
}

}  // namespace

Lesson::Lesson() { Reset(); }

std::shared_ptr<Lesson> Lesson::Create() { return std::shared_ptr<Lesson>(new Lesson()); }

// The creation state; the parts are made in the order bag, maps, storyboards.
void Lesson::Reset() {
    lesson_id_ = support::NewGUIDString();
    title_ = kDefaultTitle;
    identifier_.clear();
    classification_.clear();
    properties_ = PersistedPropertyCollection::Create();
    maps_ = LessonMapCollection::Create();
    storyboards_ = StoryboardCollection::Create();
}

std::string Lesson::LessonID() const { return lesson_id_; }

void Lesson::SetLessonID(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Lesson.LessonID (Set)");
    lesson_id_ = NewValue;
}

std::string Lesson::Title() const { return title_; }

void Lesson::SetTitle(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Lesson.Title (Set)");
    title_ = NewValue;
}

std::string Lesson::Identifier() const { return identifier_; }

void Lesson::SetIdentifier(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Lesson.Identifier (Set)");
    identifier_ = NewValue;
}

std::string Lesson::Classification() const { return classification_; }

void Lesson::SetClassification(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Lesson.Classification (Set)");
    classification_ = NewValue;
}

std::shared_ptr<PersistedPropertyCollection> Lesson::Properties() const { return properties_; }

std::shared_ptr<LessonMapCollection> Lesson::Maps() const { return maps_; }

std::shared_ptr<StoryboardCollection> Lesson::Storyboards() const { return storyboards_; }

void Lesson::WriteTo(xml::Writer& writer, bool clear) const {
    writer.StartElement("lesson");
    writer.Attribute("lessonid", lesson_id_);
    writer.Attribute("title", title_);
    if (!identifier_.empty()) {
        writer.Attribute("identifier", identifier_);
    }
    writer.Attribute("documentid", support::NewGUIDString());
    const bool classified = !classification_.empty();
    if (classified) {
        writer.Attribute("classification", classification_);
        writer.Comment(BannerText(classification_));
    }
    properties::WriteBag(*properties_, writer, clear);
    // The maps have one form only.
    maps::WriteMaps(*maps_, writer);
    storyboards::WriteStoryboards(*storyboards_, writer, clear);
    if (classified) {
        writer.Comment(BannerText(classification_));
    }
    writer.EndElement();
}

xml::Element Lesson::WriteElement(const xml::Document& Document, bool clear, const char* source) const {
    if (!Document) {
        frame::Raise(ErrNullArgument, source, frame::kDocumentCannotBeNull);
    }
    return xml::WriteElementIn(Document, [&](xml::Writer& writer) { WriteTo(writer, clear); });
}

xml::Element Lesson::ToClearXMLElement(const xml::Document& Document) const {
    return WriteElement(Document, true, "Lesson.ToClearXMLElement");
}

xml::Element Lesson::ToXMLElement(const xml::Document& Document) const {
    return WriteElement(Document, false, "Lesson.ToXMLElement");
}

void Lesson::FromXMLElement(const xml::Element& Element) {
    const char* source = "Lesson.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    detail::ModelReader::ReadLesson(*this, detail::reading::ElementCursor(Element));
}

std::string Lesson::ToXMLString() const {
    return xml::WriteStrippedString([this](xml::Writer& writer) { WriteTo(writer, false); });
}

std::string Lesson::ToClearXMLString() const {
    return xml::WriteStrippedString([this](xml::Writer& writer) { WriteTo(writer, true); });
}

void Lesson::FromXMLString(std::string_view XMLString) {
    if (XMLString.empty()) {
        Reset();
        return;
    }
    // Stray control characters are removed so that they do not stop the
    // parse; text that is not UTF-8 does not parse. No XML text holds such a
    // character, so the text as given is loaded first, and it is stripped and
    // loaded again only when that fails and it holds one: lesson texts seldom
    // do, and the common case pays for no extra pass.
    xml::Document document = xml::Document::Create();
    const bool loaded = document.LoadXML(XMLString) || (support::HasStrippedControlChars(XMLString) &&
                                                        document.LoadXML(support::StripControlChars(XMLString)));
    if (!loaded) {
        frame::Raise(ErrXmlForm, "Lesson.FromXMLString", frame::kXmlCouldNotBeParsed);
    }
    detail::reading::ReadLessonFromParse(*this, document);
}

std::shared_ptr<Lesson> Lesson::Clone() const {
    // A clone is what reading the lesson's written element gives. The text
    // of that element, parsed with its whitespace kept, is the same element:
    // every value is escaped so that it reads back as written, and line ends
    // in text are LF in both. So the text is written directly and read,
    // which is cheaper than building the element through the document
    // model; where the parser is pugixml the model is built straight from
    // its nodes, as FromXMLString builds it. Text that cannot stand as XML
    // (a control character, a comment holding "--", a character XML does
    // not allow) does not parse, and a write that fails raises; both take
    // the document's way, which gives what it always gave, its errors
    // included.
    try {
        xml::TextWriter writer;
        WriteTo(writer, false);
        if (!writer.MayHoldControls()) {
            const std::string text = writer.TakeText();
            xml::Document document = xml::Document::Create();
            document.SetPreserveWhiteSpace(true);
            if (document.LoadXML(text)) {
                auto copy = Create();
                // Read with the whitespace rules of this load.
                detail::reading::ReadLessonFromParse(*copy, document);
                return copy;
            }
        }
    } catch (const Error&) {
        // Taken again below, the document's way.
    }
    auto copy = Create();
    xml::Document document = xml::Document::Create();
    copy->FromXMLElement(ToXMLElement(document));
    return copy;
}

std::shared_ptr<Lesson> Lesson::Duplicate() const {
    const support::ModelArenaScope arena;
    auto copy = Create();
    // The LessonID and the lesson's own properties are not carried over.
    copy->title_ = title_;
    copy->identifier_ = identifier_;
    copy->classification_ = classification_;

    // Old storyboard identifier (property name) to new one (string value).
    auto mapping = PersistedPropertyCollection::Create();
    for (const auto& sb : *storyboards_) {
        auto duplicate = sb->Duplicate("");
        copy->storyboards_->Add(duplicate);
        mapping->SetString(sb->SBID(), duplicate->SBID(), etNotEncoded);
    }
    for (const auto& sb : *copy->storyboards_) {
        RemapLocationReferences(sb->Properties(), *mapping);
        auto children = sb->Children();
        for (std::int32_t i = 0; i <= children->Length(); ++i) {
            RemapLocationReferences(children->Item(i)->PPCObject(), *mapping);
        }
    }

    const auto defaultMap = maps_->DefaultMap();
    for (std::int32_t i = 0; i < maps_->Count(); ++i) {
        auto map = maps_->ItemAt(i);
        auto mapCopy = map->Clone();
        detail::LessonMapAccess::RemapStoryboardIDs(*mapCopy, *mapping);
        copy->maps_->Append(mapCopy);
        if (map == defaultMap) {
            copy->maps_->SetDefaultMap(mapCopy);
        }
    }
    return copy;
}

}  // namespace quillbank
