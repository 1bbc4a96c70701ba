#pragma once

// The root of the document model: a whole lesson, its XML text and its copies.

#include <memory>
#include <string>
#include <string_view>

#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/storyboard_collection.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

namespace detail {
struct ModelReader;
}  // namespace detail

namespace xml {
class Writer;  // the library's own, internal
}

// A lesson is created with a new LessonID (36-character upper-case GUID
// text), the title "New Lesson", empty Identifier and Classification, and
// three new, empty parts: its property bag, its maps and its storyboards.
// The parts are handed out as they are (never copied) and are replaced by
// new ones whenever the lesson is reset (by FromXMLElement, and by
// FromXMLString with an empty text).
class Lesson {
public:
    static std::shared_ptr<Lesson> Create();

    Lesson(const Lesson&) = delete;
    Lesson& operator=(const Lesson&) = delete;

    std::string LessonID() const;
    void SetLessonID(std::string_view NewValue);
    std::string Title() const;
    void SetTitle(std::string_view NewValue);
    std::string Identifier() const;
    void SetIdentifier(std::string_view NewValue);
    // When not empty, the classification is also written as a banner comment
    // before and after the lesson's content.
    std::string Classification() const;
    void SetClassification(std::string_view NewValue);

    std::shared_ptr<PersistedPropertyCollection> Properties() const;
    std::shared_ptr<LessonMapCollection> Maps() const;
    std::shared_ptr<StoryboardCollection> Storyboards() const;

    // A new "lesson" element of Document, not attached anywhere. Each call
    // writes a new "documentid", which identifies that written copy only.
    // Writing numbers the storyboards by their position.
    xml::Element ToClearXMLElement(const xml::Document& Document) const;
    xml::Element ToXMLElement(const xml::Document& Document) const;
    // Resets the lesson, then reads a "lesson" element; its parts may come in
    // any order, and a part that is missing stays empty.
    void FromXMLElement(const xml::Element& Element);

    // The "lesson" element's own text: no declaration, no indentation.
    std::string ToXMLString() const;
    std::string ToClearXMLString() const;
    // "" resets the lesson. Text that does not parse raises 0x800403E9 and
    // leaves the lesson as it was.
    void FromXMLString(std::string_view XMLString);

    // An exact copy through the normal XML form: every identifier is kept.
    std::shared_ptr<Lesson> Clone() const;
    // A copy with a new LessonID and new storyboard identifiers, every
    // reference to the old identifiers (map items, locations in the
    // storyboards' and child elements' properties and in every bag and list
    // nested in them) rewritten to the new ones. The copy's own property bag
    // is left empty, and locations come out unencoded.
    std::shared_ptr<Lesson> Duplicate() const;

private:
    Lesson();
    void Reset();
    xml::Element WriteElement(const xml::Document& Document, bool clear, const char* source) const;
    void WriteTo(xml::Writer& writer, bool clear) const;

    std::string lesson_id_;
    std::string title_;
    std::string identifier_;
    std::string classification_;
    std::shared_ptr<PersistedPropertyCollection> properties_;
    std::shared_ptr<LessonMapCollection> maps_;
    std::shared_ptr<StoryboardCollection> storyboards_;

    friend struct detail::ModelReader;
};

}  // namespace quillbank
