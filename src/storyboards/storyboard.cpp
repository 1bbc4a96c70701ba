#include <quillbank/storyboard.hpp>

#include <optional>
#include <utility>

#include "elements/element_writers.hpp"
#include "frame/raise.hpp"
#include "properties/property_bag.hpp"
#include "storyboards/storyboard_access.hpp"
#include "storyboards/storyboard_memory.hpp"
#include "support/conversions.hpp"
#include "support/guid.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"

namespace quillbank {

namespace {

constexpr const char* kDefaultTitle = "New Storyboard";

}  // namespace

Storyboard::Storyboard() { Initialize(true); }

Storyboard::Storyboard(Unfilled) {}

template <class... Arguments>
std::shared_ptr<Storyboard> Storyboard::Make(Arguments... arguments) {
    // One block of the storyboards' memory holds the object and its
    // reference count.
    struct Made : Storyboard {
        explicit Made(Arguments... made) : Storyboard(made...) {}
    };
    return std::allocate_shared<Made>(std::pmr::polymorphic_allocator<Made>(storyboards::StoryboardMemory()),
                                      arguments...);
}

std::shared_ptr<Storyboard> Storyboard::Create() { return Make(); }

// The creation state. The storyboard type is not part of it: a new object
// holds an empty one, and the reader sets it from the element in any case.
// A reader that finds an identifier in the element passes false, because the
// identifier made here would be replaced at once.
void Storyboard::Initialize(bool withNewSBID) {
    if (withNewSBID) {
        sbid_ = support::NewGUIDString();
    }
    title_ = kDefaultTitle;
    identifier_.clear();
    classification_.clear();
    short_id_ = -1;
    properties_ = PersistedPropertyCollection::Create();
    children_ = ChildElementCollection::Create();
}

std::string Storyboard::SBID() const { return sbid_; }

void Storyboard::SetSBID(std::string_view NewSBID) { sbid_ = NewSBID; }

std::string Storyboard::Title() const { return title_; }

void Storyboard::SetTitle(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Storyboard.Title (Set)");
    title_ = NewValue;
}

std::string Storyboard::Identifier() const { return identifier_; }

void Storyboard::SetIdentifier(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Storyboard.Identifier (Set)");
    identifier_ = NewValue;
}

std::string Storyboard::SBType() const { return sb_type_; }

void Storyboard::SetSBType(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Storyboard.SBType (Set)");
    sb_type_ = NewValue;
}

std::string Storyboard::Classification() const { return classification_; }

void Storyboard::SetClassification(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "Storyboard.Classification (Set)");
    classification_ = NewValue;
}

std::int32_t Storyboard::ShortID() const { return short_id_; }

void Storyboard::SetShortID(std::int32_t NewValue) { short_id_ = NewValue; }

std::shared_ptr<PersistedPropertyCollection> Storyboard::Properties() const { return properties_; }

std::shared_ptr<ChildElementCollection> Storyboard::Children() const { return children_; }

// Everything but the identifier; the bag and the list become new deep copies.
void Storyboard::CopyContentFrom(const Storyboard& SB) {
    std::string title = SB.title_;
    std::string identifier = SB.identifier_;
    std::string sbType = SB.sb_type_;
    std::string classification = SB.classification_;
    const std::int32_t shortId = SB.short_id_;
    auto properties = SB.properties_->Clone();
    auto children = SB.children_->Clone();
    title_ = std::move(title);
    identifier_ = std::move(identifier);
    sb_type_ = std::move(sbType);
    classification_ = std::move(classification);
    short_id_ = shortId;
    properties_ = std::move(properties);
    children_ = std::move(children);
}

Variant Storyboard::CopyFrom(const std::shared_ptr<Storyboard>& SB) {
    if (!SB) {
        frame::Raise(ErrNullArgument, "Storyboard.CopyFrom", "SB cannot be null");
    }
    CopyContentFrom(*SB);
    return Variant();
}

std::shared_ptr<Storyboard> Storyboard::Clone() const {
    auto copy = Create();
    copy->CopyContentFrom(*this);
    copy->sbid_ = sbid_;
    return copy;
}

std::shared_ptr<Storyboard> Storyboard::Duplicate(std::string_view NewTitlePrefix) const {
    support::RequireUtf8(NewTitlePrefix, "Storyboard.Duplicate");
    auto copy = Create();
    copy->CopyContentFrom(*this);
    std::string title(NewTitlePrefix);
    title += copy->title_;
    copy->title_ = std::move(title);
    return copy;
}

void detail::StoryboardAccess::Write(Storyboard& sb, xml::Writer& writer, bool clear) {
    writer.StartElement("storyboard");
    writer.Attribute("sbid", sb.sbid_);
    writer.Attribute("title", sb.title_);
    if (!sb.identifier_.empty()) {
        writer.Attribute("identifier", sb.identifier_);
    }
    writer.Attribute("type", sb.sb_type_);
    if (!sb.classification_.empty()) {
        writer.Attribute("classification", sb.classification_);
    }
    if (sb.short_id_ != -1) {
        writer.Attribute("shortid", support::LongToText(sb.short_id_));
    }
    // The names stay on the owned objects after writing.
    sb.properties_->SetName("properties");
    sb.children_->SetName("children");
    properties::WriteBag(*sb.properties_, writer, clear);
    elements::WriteChildList(*sb.children_, writer, clear);
    writer.EndElement();
}

xml::Element Storyboard::WriteElement(const xml::Document& Document, bool clear, const char* source) {
    if (!Document) {
        frame::Raise(ErrNullArgument, source, frame::kDocumentCannotBeNull);
    }
    return xml::WriteElementIn(Document, [&](xml::Writer& writer) { detail::StoryboardAccess::Write(*this, writer, clear); });
}

xml::Element Storyboard::ToClearXMLElement(const xml::Document& Document) {
    return WriteElement(Document, true, "Storyboard.ToClearXMLElement");
}

xml::Element Storyboard::ToXMLElement(const xml::Document& Document) {
    return WriteElement(Document, false, "Storyboard.ToXMLElement");
}

void Storyboard::FromXMLElement(const xml::Element& Element) {
    const char* source = "Storyboard.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    detail::ModelReader::ReadStoryboard(*this, detail::reading::ElementCursor(Element));
}

namespace detail {

std::shared_ptr<Storyboard> StoryboardAccess::CreateFromElement(const xml::Element& Element) {
    std::shared_ptr<Storyboard> sb = Storyboard::Make(Storyboard::Unfilled{});
    if (!Element) {
        frame::Raise(ErrNullArgument, "Storyboard.FromXMLElement", frame::kElementCannotBeNull);
    }
    ModelReader::ReadStoryboard(*sb, reading::ElementCursor(Element));
    return sb;
}

}  // namespace detail

}  // namespace quillbank
