#pragma once

// The reading rules of the model, written once over a node cursor.
//
// A cursor is a small value that stands on one node of a parsed tree and
// offers what the rules ask of it (see reading/element_cursor.hpp for the one
// over the XML facade's handles, and xml/pugi/node_cursor.hpp for the one over
// the parser's own nodes, which reads lesson text in one pass):
//
//   explicit operator bool()          false for no node
//   bool IsElement(), bool IsText()   the node's kind (IsText: a text node,
//                                     not CDATA)
//   Name()                            an element's name (compares with ==)
//   Value()                           a text node's value
//   Attribute(name)                   an optional text: the attribute's value
//   FirstChild(), NextSibling()       cursors of the same kind
//   std::int32_t ChildCount()         every child node, of any kind
//   bool HasChildNodes()
//   std::string Text()                the element's text as the DOM gives it
//   ParseDocument(text)               the text parsed as a document of its
//                                     own; .Root() is the cursor of its root
//                                     element, null when it does not parse.
//                                     The result keeps the parse alive.
//   xml::Element Facade()             a facade handle of the element (the
//                                     maps keep a DOM of their own)
//
// The cursor is a template parameter, so the rules cost no virtual call per
// node; each public FromXMLElement reads through the facade's cursor, and
// the string form of a lesson through the parser's.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "frame/raise.hpp"
#include "properties/nesting.hpp"
#include "properties/persisted_property.hpp"
#include "properties/property_bag.hpp"
#include "properties/property_store.hpp"
#include "reading/read_values.hpp"
#include "support/ascii_folding.hpp"
#include "support/base64_coders.hpp"
#include "support/color.hpp"
#include "support/conversions.hpp"
#include "support/model_arena.hpp"

namespace quillbank::detail {

struct ModelReader {
    // ---- Properties -----------------------------------------------------------

    // Reads any element form of a property. Never raises: whatever cannot be
    // read leaves the property untyped (the fields read before the failure
    // stay).
    template <class Cursor>
    static void ReadProperty(PersistedProperty& property, const Cursor& element) {
        try {
            ReadPropertyElement(property, element);
        } catch (...) {
            property.property_type_ = ptNone;
        }
    }

    // Replaces the bag's properties by those read from the element children
    // of `element`; children that do not read as a property are dropped, and
    // of two children with the same name the later one wins.
    template <class Cursor>
    static void ReadPropertyElements(PersistedPropertyCollection& bag, const Cursor& element) {
        PropertyBagAccess::ResetStore(bag);
        auto& store = PropertyBagAccess::Store(bag);
        // Room for every child, so that the bag's array grows once.
        store.Reserve(static_cast<std::size_t>(element.ChildCount()));
        for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
            if (!child.IsElement()) {
                continue;
            }
            auto property = PersistedProperty::Create();
            ReadProperty(*property, child);
            if (property->PropertyType() != ptNone) {
                store.Add(std::move(property));
            }
        }
    }

    // A "ppc" element: the bag's name and its properties.
    template <class Cursor>
    static void ReadBag(PersistedPropertyCollection& bag, const Cursor& element) {
        if (element.Name() != "ppc") {
            // This bag reports a wrong element as an invalid call (5), unlike the other classes.
            frame::Raise(ErrInvalidCall, "PersistedPropertyCollection.FromXMLElement",
                         frame::NotAnElementDescription("ppc"));
        }
        bag.name_ = reading::TextOr(element.Attribute("name"), "properties");
        ReadPropertyElements(bag, element);
    }

    // ---- Child elements -------------------------------------------------------

    // A "ce" element: a new bag named by it, its properties, its type.
    template <class Cursor>
    static void ReadChildElement(ChildElement& entry, const Cursor& element) {
        if (element.Name() != "ce") {
            frame::Raise(ErrXmlForm, "ChildElement.FromXMLElement", frame::NotAnElementDescription("ce"));
        }
        entry.properties_ = PersistedPropertyCollection::Create();
        entry.properties_->SetName(reading::TextOr(element.Attribute("name"), ""));
        ReadPropertyElements(*entry.properties_, element);
        entry.element_type_ = reading::TextOr(element.Attribute("type"), "");
    }

    // A "cec" element. Every child node counts (text and whitespace too). The
    // last position must fit the counter before the first child is read; a
    // list of exactly 32768 nodes is read whole and then fails on the step
    // past the last one.
    template <class Cursor>
    static void ReadChildList(ChildElementCollection& list, const Cursor& element) {
        const char* source = "ChildElementCollection.FromXMLElement";
        if (element.Name() != "cec") {
            frame::Raise(ErrXmlForm, source, frame::NotAnElementDescription("cec"));
        }
        list.name_ = reading::TextOr(element.Attribute("name"), "children");
        list.Clear();
        const std::int32_t nodeCount = element.ChildCount();
        if (nodeCount - 1 > kLastVisitablePosition) {
            frame::Raise(ErrOverflow, source, frame::kOverflow);
        }
        list.elements_.reserve(static_cast<std::size_t>(nodeCount));
        for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsElement() && child.Name() == "ce") {
                // Its bag comes from the element it reads.
                auto entry = ChildElement::CreateUnfilled();
                ReadChildElement(*entry, child);
                list.elements_.push_back(std::move(entry));
            }
        }
        if (nodeCount - 1 == kLastVisitablePosition) {
            frame::Raise(ErrOverflow, source, frame::kOverflow);
        }
    }

    // ---- Storyboards ------------------------------------------------------------

    // A "storyboard" element, over a storyboard reset as at creation.
    template <class Cursor>
    static void ReadStoryboard(Storyboard& sb, const Cursor& element) {
        if (element.Name() != "storyboard") {
            frame::Raise(ErrXmlForm, "Storyboard.FromXMLElement", frame::NotAnElementDescription("storyboard"));
        }
        // The reset makes a new identifier; it is kept only when the element
        // names none, so it is made only then.
        const auto sbid = element.Attribute("sbid");
        sb.Initialize(!sbid.has_value());
        if (sbid) {
            sb.sbid_ = *sbid;
        }
        // A text attribute is its own text; an absent one gives the default.
        sb.title_ = reading::TextOr(element.Attribute("title"), "New Storyboard");
        sb.identifier_ = reading::TextOr(element.Attribute("identifier"), "");
        sb.sb_type_ = reading::TextOr(element.Attribute("type"), "");
        sb.classification_ = reading::TextOr(element.Attribute("classification"), "");
        sb.short_id_ = reading::LongOr(element.Attribute("shortid"), -1);

        for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
            if (!child.IsElement()) {
                continue;
            }
            const auto name = child.Name();
            if (name == "ppc") {
                ReadBag(*sb.properties_, child);
            } else if (name == "cec") {
                ReadChildList(*sb.children_, child);
            }
        }
    }

    // A "storyboards" element. Every child node counts (comments and text
    // too). The last position must fit the 16-bit counter before the first
    // child is read, so with 32769 or more nodes nothing is read; with
    // exactly 32768 every node is read and the step past the last one
    // overflows, leaving the entries in place.
    template <class Cursor>
    static void ReadStoryboards(StoryboardCollection& collection, const Cursor& element) {
        // The overflow of the node counter is reported under this member's name too.
        const char* source = "StoryboardCollection.FromXMLElement";
        if (element.Name() != "storyboards") {
            frame::Raise(ErrXmlForm, source, frame::NotAnElementDescription("storyboards"));
        }
        collection.Clear();
        const std::int32_t nodeCount = element.ChildCount();
        if (nodeCount - 1 > kLastVisitablePosition) {
            frame::Raise(ErrOverflow, source, frame::kOverflow);
        }
        collection.Rebuild(static_cast<std::size_t>(nodeCount));
        collection.entries_.reserve(static_cast<std::size_t>(nodeCount));
        for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsElement() && child.Name() == "storyboard") {
                std::shared_ptr<Storyboard> sb = Storyboard::Make(Storyboard::Unfilled{});
                ReadStoryboard(*sb, child);
                collection.Add(sb);
            }
        }
        if (nodeCount - 1 == kLastVisitablePosition) {
            frame::Raise(ErrOverflow, source, frame::kOverflow);
        }
    }

    // ---- The lesson ---------------------------------------------------------------

    // A "lesson" element, over a lesson reset as at creation.
    template <class Cursor>
    static void ReadLesson(Lesson& lesson, const Cursor& element) {
        if (element.Name() != "lesson") {
            frame::Raise(ErrXmlForm, "Lesson.FromXMLElement", frame::NotAnElementDescription("lesson"));
        }
        // The objects read come from the model's chunks (support/model_arena.hpp).
        const support::ModelArenaScope arena;
        lesson.Reset();
        // "documentid" names one written copy, not the lesson: it is not read.
        if (auto id = element.Attribute("lessonid")) {
            lesson.lesson_id_ = *id;
        }
        lesson.title_ = reading::TextOr(element.Attribute("title"), "New Lesson");
        lesson.identifier_ = reading::TextOr(element.Attribute("identifier"), "");
        lesson.classification_ = reading::TextOr(element.Attribute("classification"), "");

        // Each part clears itself before reading, so of two parts of the same
        // name the later one wins.
        for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
            if (!child.IsElement()) {
                continue;
            }
            const auto name = child.Name();
            if (name == "ppc") {
                ReadBag(*lesson.properties_, child);
            } else if (name == "maps") {
                lesson.maps_->FromXMLElement(child.Facade());
            } else if (name == "storyboards") {
                ReadStoryboards(*lesson.storyboards_, child);
            }
        }
    }

    // The value of the first child that is a text node ("" when there is
    // none). CDATA, comments and elements are skipped.
    template <class Cursor>
    static std::string FirstTextValue(const Cursor& element) {
        for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsText()) {
                return std::string(child.Value());
            }
        }
        return {};
    }

private:
    // The reader visits child nodes with a signed 16-bit position, so 32767
    // is the last position it can reach.
    static constexpr std::int32_t kLastVisitablePosition = 32767;

    // The first child element with exactly this name (letter case included), or null.
    template <class Cursor>
    static Cursor FirstChildElementNamed(const Cursor& parent, std::string_view name) {
        for (Cursor child = parent.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsElement() && child.Name() == name) {
                return child;
            }
        }
        return Cursor();
    }

    template <class Cursor>
    static void ReadPropertyElement(PersistedProperty& property, const Cursor& given) {
        if (!given) {
            property.property_type_ = ptNone;
            return;
        }
        if (reading::NameIsFolded(given.Name(), "encprop")) {
            property.encoding_type_ = etBase64Encoded;
            const auto encType = given.Attribute("enctype");
            const bool utf8 = encType && *encType == "utf8";
            const std::string encodedText = given.Text();
            const std::string decoded =
                utf8 ? support::DecodeBase64Utf8(encodedText) : support::DecodeBase64(encodedText);
            // The decoded text is a document of its own.
            const auto parsed = given.ParseDocument(decoded);
            const Cursor element = parsed.Root();
            if (!element) {
                frame::Raise(ErrXmlForm, frame::kLibraryName, frame::kCorruptEncodedProperty);
            }
            ReadPlainProperty(property, element);
        } else {
            property.encoding_type_ = etNotEncoded;
            ReadPlainProperty(property, given);
        }
    }

    // The plain element of a property: the element name gives the type (in
    // any letter case), its attributes and children the value.
    template <class Cursor>
    static void ReadPlainProperty(PersistedProperty& property, const Cursor& element) {
        property.name_ = reading::TextOr(element.Attribute("name"), "");
        const PropertyTypes type = reading::PropertyTypeOfElement(element.Name());
        switch (type) {
            case ptBoolean:
                property.property_type_ = ptBoolean;
                property.boolean_ = reading::BoolOr(element.Attribute("value"), false);
                break;
            case ptLong:
                property.property_type_ = ptLong;
                property.long_ = reading::LongOr(element.Attribute("value"), 0);
                break;
            case ptDouble:
                property.property_type_ = ptDouble;
                property.double_ = reading::DoubleOr(element.Attribute("value"), 0.0);
                break;
            case ptString:
                property.property_type_ = ptString;
                property.string_ = reading::FromStoredLines(FirstTextValue(element));
                break;
            case ptDate: {
                property.property_type_ = ptDate;
                const auto value = element.Attribute("value");
                const auto date = value ? support::TextToDate(*value) : std::nullopt;
                property.date_ = date.value_or(0.0);
                break;
            }
            case ptColor:
                property.property_type_ = ptColor;
                property.color_ = support::HTMLToOLEColor(reading::ViewOr(element.Attribute("value"), ""));
                break;
            case ptFont: {
                property.property_type_ = ptFont;
                FontData& font = property.font_.Set();
                // A missing face name reads as "Courier New".
                font.Name = reading::TextOr(element.Attribute("familyName"), "Courier New");
                font.Size = reading::DoubleOr(element.Attribute("emSize"), 0.0);
                font.Bold = reading::BoolOr(element.Attribute("bold"), false);
                font.Italic = reading::BoolOr(element.Attribute("italic"), false);
                font.Underline = reading::BoolOr(element.Attribute("underline"), false);
                break;
            }
            case ptRectangle: {
                property.property_type_ = ptRectangle;
                Rectangle& rectangle = property.rectangle_.Set();
                rectangle.Left = reading::LongOr(element.Attribute("left"), 0);
                rectangle.Top = reading::LongOr(element.Attribute("top"), 0);
                rectangle.Width = reading::LongOr(element.Attribute("width"), 0);
                rectangle.Height = reading::LongOr(element.Attribute("height"), 0);
                break;
            }
            case ptAsset: {
                property.property_type_ = ptAsset;
                AssetData& asset = property.asset_.Set();
                asset.Filename = reading::TextOr(element.Attribute("filename"), "");
                // A text whose child is absent keeps the value it had.
                if (element.HasChildNodes()) {
                    if (const Cursor source = FirstChildElementNamed(element, "source")) {
                        asset.Source = reading::FromStoredLines(source.Text());
                    }
                    if (const Cursor description = FirstChildElementNamed(element, "description")) {
                        asset.Description = reading::FromStoredLines(description.Text());
                    }
                }
                break;
            }
            case ptLocation: {
                property.property_type_ = ptLocation;
                LocationData& location = property.location_.Set();
                // Read as written: the start-filling of the setter does not apply here.
                location.StartPoint = reading::TextOr(element.Attribute("from"), "");
                location.EndPoint = reading::TextOr(element.Attribute("to"), "");
                location.MapName = reading::TextOr(element.Attribute("map"), "");
                break;
            }
            case ptPPC: {
                // A bag nested past the limit is not read: the property stays untyped.
                const properties::NestingLevel level;
                if (!level.Entered()) {
                    property.property_type_ = ptNone;
                    return;
                }
                property.property_type_ = ptPPC;
                // Without a "ppc" child the value is an empty bag, not null.
                auto& ppc = property.ppc_.Set();
                ppc = PersistedPropertyCollection::Create();
                for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
                    if (child.IsElement() && child.Name() == "ppc") {
                        ReadBag(*ppc, child);
                    }
                }
                break;
            }
            case ptCEC: {
                const properties::NestingLevel level;
                if (!level.Entered()) {
                    property.property_type_ = ptNone;
                    return;
                }
                property.property_type_ = ptCEC;
                auto& cec = property.cec_.Set();
                cec = ChildElementCollection::Create();
                for (Cursor child = element.FirstChild(); child; child = child.NextSibling()) {
                    if (child.IsElement() && child.Name() == "cec") {
                        ReadChildList(*cec, child);
                    }
                }
                break;
            }
            default:
                property.property_type_ = ptNone;
                break;
        }
    }
};

}  // namespace quillbank::detail
