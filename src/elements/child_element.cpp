#include <quillbank/child_element.hpp>

#include <quillbank/child_element_collection.hpp>

#include "elements/element_writers.hpp"
#include "frame/raise.hpp"
#include "properties/property_bag.hpp"
#include "support/conversions.hpp"
#include "support/model_arena.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"
#include "reading/parsed_lesson.hpp"
#include "reading/parsed_parts.hpp"

namespace quillbank {

namespace {

// A new element's bag is named "" (not the bag's own "properties").
std::shared_ptr<PersistedPropertyCollection> NewNamelessBag() {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName("");
    return bag;
}

}  // namespace

ChildElement::ChildElement() : properties_(NewNamelessBag()) {}

std::shared_ptr<ChildElement> ChildElement::Create() {
    // One allocation holds the object and its reference count.
    struct Made : ChildElement {
        Made() {}  // user-provided, so the object is not zero-filled first
    };
    return support::MakeModelObject<Made>();
}

ChildElement::ChildElement(Unfilled) {}

std::shared_ptr<ChildElement> ChildElement::CreateUnfilled() {
    struct Made : ChildElement {
        Made() : ChildElement(Unfilled{}) {}
    };
    return support::MakeModelObject<Made>();
}

std::string ChildElement::Name() const { return properties_->Name(); }

void ChildElement::SetName(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "ChildElement.Name (Set)");
    properties_->SetName(NewValue);
}

std::string ChildElement::ElementType() const { return element_type_; }

void ChildElement::SetElementType(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "ChildElement.ElementType (Set)");
    element_type_ = NewValue;
}

std::shared_ptr<PersistedPropertyCollection> ChildElement::PPCObject() const { return properties_; }

void ChildElement::SetPPCObject(std::shared_ptr<PersistedPropertyCollection> PPC) { properties_ = std::move(PPC); }

std::int32_t ChildElement::Count() const { return properties_->Count(); }

bool ChildElement::Exists(std::string_view PropertyName) const { return properties_->Exists(PropertyName); }

void ChildElement::Remove(std::string_view PropertyName) { properties_->Remove(PropertyName); }

void ChildElement::Clear() { properties_->Clear(); }

// The forwarding members check their texts under their own name first, so a
// host sees the member it called as the source of a refusal.

bool ChildElement::GetBoolean(std::string_view PropertyName, bool DefaultValue) const {
    return properties_->GetBoolean(PropertyName, DefaultValue);
}

void ChildElement::SetBoolean(std::string_view PropertyName, bool NewValue, EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetBoolean");
    properties_->SetBoolean(PropertyName, NewValue, EncodingType);
}

std::int32_t ChildElement::GetLong(std::string_view PropertyName, std::int32_t DefaultValue) const {
    return properties_->GetLong(PropertyName, DefaultValue);
}

void ChildElement::SetLong(std::string_view PropertyName, std::int32_t NewValue, EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetLong");
    properties_->SetLong(PropertyName, NewValue, EncodingType);
}

double ChildElement::GetDouble(std::string_view PropertyName, double DefaultValue) const {
    return properties_->GetDouble(PropertyName, DefaultValue);
}

void ChildElement::SetDouble(std::string_view PropertyName, double NewValue, EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetDouble");
    properties_->SetDouble(PropertyName, NewValue, EncodingType);
}

std::string ChildElement::GetString(std::string_view PropertyName, std::string_view DefaultValue) const {
    return properties_->GetString(PropertyName, DefaultValue);
}

void ChildElement::SetString(std::string_view PropertyName, std::string_view NewValue, EncodingTypes EncodingType) {
    const char* source = "ChildElement.SetString";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue, source);
    properties_->SetString(PropertyName, NewValue, EncodingType);
}

OleColor ChildElement::GetColor(std::string_view PropertyName, OleColor DefaultValue) const {
    return properties_->GetColor(PropertyName, DefaultValue);
}

void ChildElement::SetColor(std::string_view PropertyName, OleColor NewValue, EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetColor");
    properties_->SetColor(PropertyName, NewValue, EncodingType);
}

FontData ChildElement::GetFont(std::string_view PropertyName, const FontData& DefaultValue) const {
    return properties_->GetFont(PropertyName, DefaultValue);
}

void ChildElement::SetFont(std::string_view PropertyName, const FontData& NewValue, EncodingTypes EncodingType) {
    const char* source = "ChildElement.SetFont";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue.Name, source);
    properties_->SetFont(PropertyName, NewValue, EncodingType);
}

Rectangle ChildElement::GetRectangle(std::string_view PropertyName, const Rectangle& DefaultValue) const {
    return properties_->GetRectangle(PropertyName, DefaultValue);
}

void ChildElement::SetRectangle(std::string_view PropertyName, const Rectangle& NewValue,
                                EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetRectangle");
    properties_->SetRectangle(PropertyName, NewValue, EncodingType);
}

AssetData ChildElement::GetAsset(std::string_view PropertyName, const AssetData& DefaultValue) const {
    return properties_->GetAsset(PropertyName, DefaultValue);
}

void ChildElement::SetAsset(std::string_view PropertyName, const AssetData& NewValue, EncodingTypes EncodingType) {
    const char* source = "ChildElement.SetAsset";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue.Filename, source);
    support::RequireUtf8(NewValue.Description, source);
    support::RequireUtf8(NewValue.Source, source);
    properties_->SetAsset(PropertyName, NewValue, EncodingType);
}

LocationData ChildElement::GetLocation(std::string_view PropertyName, const LocationData& DefaultValue) const {
    return properties_->GetLocation(PropertyName, DefaultValue);
}

void ChildElement::SetLocation(std::string_view PropertyName, LocationData& NewValue, EncodingTypes EncodingType) {
    const char* source = "ChildElement.SetLocation";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue.StartPoint, source);
    support::RequireUtf8(NewValue.EndPoint, source);
    support::RequireUtf8(NewValue.MapName, source);
    properties_->SetLocation(PropertyName, NewValue, EncodingType);
}

std::shared_ptr<PersistedPropertyCollection> ChildElement::GetPPC(
    std::string_view PropertyName, std::shared_ptr<PersistedPropertyCollection> DefaultValue) const {
    return properties_->GetPPC(PropertyName, std::move(DefaultValue));
}

void ChildElement::SetPPC(std::string_view PropertyName, const std::shared_ptr<PersistedPropertyCollection>& NewValue,
                          EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetPPC");
    properties_->SetPPC(PropertyName, NewValue, EncodingType);
}

std::shared_ptr<ChildElementCollection> ChildElement::GetCEC(
    std::string_view PropertyName, std::shared_ptr<ChildElementCollection> DefaultValue) const {
    return properties_->GetCEC(PropertyName, std::move(DefaultValue));
}

void ChildElement::SetCEC(std::string_view PropertyName, const std::shared_ptr<ChildElementCollection>& NewValue,
                          EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "ChildElement.SetCEC");
    properties_->SetCEC(PropertyName, NewValue, EncodingType);
}

std::shared_ptr<ChildElement> ChildElement::Clone() const {
    auto copy = Create();
    copy->element_type_ = element_type_;
    // The name travels with the bag.
    copy->SetPPCObject(properties_->Clone());
    return copy;
}

Variant ChildElement::FromPPC(const std::shared_ptr<PersistedPropertyCollection>& PPC) {
    // A null bag gives a bag in its creation state, named "properties".
    properties_ = PPC ? PPC->Clone() : PersistedPropertyCollection::Create();
    return Variant();
}

namespace {

// Both writers report a null document under the plain writer's name.
constexpr const char* kWriterSource = "ChildElement.ToXMLElement";

}  // namespace

xml::Element ChildElement::ToClearXMLElement(const xml::Document& Document) { return WriteElement(Document, true); }

xml::Element ChildElement::ToXMLElement(const xml::Document& Document) { return WriteElement(Document, false); }

xml::Element ChildElement::WriteElement(const xml::Document& Document, bool clear) const {
    if (!Document) {
        frame::Raise(ErrNullArgument, kWriterSource, frame::kDocumentCannotBeNull);
    }
    return xml::WriteElementIn(Document, [&](xml::Writer& writer) { elements::WriteChildElement(*this, writer, clear); });
}

std::string ChildElement::ToClearXMLString() {
    return xml::WriteStrippedString(
        [this](xml::Writer& writer) { elements::WriteChildElement(*this, writer, true); });
}

std::string ChildElement::ToXMLString() {
    return xml::WriteStrippedString(
        [this](xml::Writer& writer) { elements::WriteChildElement(*this, writer, false); });
}

void ChildElement::FromXMLElement(const xml::Element& Element) {
    const char* source = "ChildElement.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    detail::ModelReader::ReadChildElement(*this, detail::reading::ElementCursor(Element));
}

void ChildElement::FromXMLString(std::string_view XMLString) {
    if (XMLString.empty()) {
        // As on creation; the element type is left as it was.
        properties_ = NewNamelessBag();
        return;
    }
    const std::string text = support::StripControlChars(XMLString);
    if (!detail::reading::ReadChildElementFromText(*this, text)) {
        frame::Raise(ErrXmlForm, "ChildElement.FromXMLString", frame::kXmlCouldNotBeParsed);
    }
}

}  // namespace quillbank
