#include <quillbank/persisted_property_collection.hpp>

#include <quillbank/child_element_collection.hpp>

#include "frame/raise.hpp"
#include "properties/persisted_property.hpp"
#include "properties/property_bag.hpp"
#include "properties/property_store.hpp"
#include "support/conversions.hpp"
#include "support/model_arena.hpp"
#include "support/sort.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"
#include "reading/parsed_lesson.hpp"
#include "reading/parsed_parts.hpp"

namespace quillbank {

namespace detail {

void PropertyBagAccess::ResetStore(PersistedPropertyCollection& bag) {
    // Emptied in place: the store object itself is kept.
    *bag.store_ = PropertyStore();
}

}  // namespace detail

namespace properties {

namespace {

// Writes the properties of one run in the order of their names (the
// library's name order). A run whose first name is empty is not written at
// all.
void WriteSorted(std::vector<PersistedProperty*>& run, xml::Writer& writer, bool clear) {
    support::SortByLowerCaseName(
        run, [](const PersistedProperty& property) -> const std::string& { return property.NameRef(); });
    if (run.empty() || run.front()->NameRef().empty()) {
        return;
    }
    for (PersistedProperty* property : run) {
        property->WriteTo(writer, clear);
    }
}

}  // namespace

std::shared_ptr<PersistedProperty> FindProperty(const PersistedPropertyCollection& bag,
                                                std::string_view PropertyName) {
    return detail::PropertyBagAccess::Store(bag).Find(PropertyName);
}

void AddProperty(PersistedPropertyCollection& bag, std::shared_ptr<PersistedProperty> Property) {
    detail::PropertyBagAccess::Store(bag).Add(std::move(Property));
}

std::int32_t CountByEncoding(const PersistedPropertyCollection& bag, std::int32_t EncodingType) {
    std::int32_t count = 0;
    for (const auto& property : detail::PropertyBagAccess::Store(bag).Items()) {
        if (property->EncodingType() == EncodingType) {
            ++count;
        }
    }
    return count;
}

void WritePropertyElements(const PersistedPropertyCollection& bag, xml::Writer& writer, bool clear) {
    const auto items = detail::PropertyBagAccess::Store(bag).Items();
    std::vector<PersistedProperty*> run;
    run.reserve(bag.Count());
    if (clear) {
        for (const auto& property : items) {
            run.push_back(property.get());
        }
        WriteSorted(run, writer, true);
        return;
    }
    for (const EncodingTypes encoding : {etNotEncoded, etBase64Encoded}) {
        run.clear();
        for (const auto& property : items) {
            if (property->EncodingType() == encoding) {
                run.push_back(property.get());
            }
        }
        WriteSorted(run, writer, false);
    }
}

void WriteBag(const PersistedPropertyCollection& bag, xml::Writer& writer, bool clear) {
    writer.StartElement("ppc");
    writer.Attribute("name", detail::PropertyBagAccess::NameOf(bag));
    WritePropertyElements(bag, writer, clear);
    writer.EndElement();
}

void ReadPropertyElements(PersistedPropertyCollection& bag, const xml::Element& Element) {
    detail::ModelReader::ReadPropertyElements(bag, detail::reading::ElementCursor(Element));
}

}  // namespace properties

namespace {

constexpr const char* kDefaultName = "properties";

template <typename Set>
void SetProperty(PersistedPropertyCollection& bag, Set set) {
    auto property = PersistedProperty::Create();
    set(*property);
    properties::AddProperty(bag, std::move(property));
}

std::shared_ptr<PersistedProperty> FindTyped(const PersistedPropertyCollection& bag, std::string_view name,
                                             PropertyTypes type) {
    auto property = properties::FindProperty(bag, name);
    return property && property->PropertyType() == type ? property : nullptr;
}

}  // namespace

PersistedPropertyCollection::PersistedPropertyCollection()
    : name_(kDefaultName), store_(std::make_unique<detail::PropertyStore>()) {}

PersistedPropertyCollection::~PersistedPropertyCollection() = default;

std::shared_ptr<PersistedPropertyCollection> PersistedPropertyCollection::Create() {
    // One allocation holds the object and its reference count.
    struct Made : PersistedPropertyCollection {
        Made() {}  // user-provided, so the object is not zero-filled first
    };
    return support::MakeModelObject<Made>();
}

std::string PersistedPropertyCollection::Name() const { return name_; }

void PersistedPropertyCollection::SetName(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "PersistedPropertyCollection.Name (Set)");
    name_ = NewValue;
}

std::int32_t PersistedPropertyCollection::Count() const { return static_cast<std::int32_t>(store_->Size()); }

bool PersistedPropertyCollection::Exists(std::string_view PropertyName) const {
    return store_->Find(PropertyName) != nullptr;
}

std::vector<std::string> PersistedPropertyCollection::GetPropertyNameArray(std::int32_t EncodingType) const {
    if (store_->Size() == 0) {
        return {std::string()};
    }
    const bool filtered = EncodingType == etNotEncoded || EncodingType == etBase64Encoded;
    const std::int32_t size = filtered ? properties::CountByEncoding(*this, EncodingType) : Count();
    if (size == 0) {
        return {std::string()};
    }
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(size));
    for (const auto& property : store_->Items()) {
        if (!filtered || property->EncodingType() == EncodingType) {
            names.push_back(property->Name());
        }
    }
    return names;
}

void PersistedPropertyCollection::Remove(std::string_view PropertyName) { store_->Remove(PropertyName); }

void PersistedPropertyCollection::Clear() { store_ = std::make_unique<detail::PropertyStore>(); }

Variant PersistedPropertyCollection::GetValue(std::string_view PropertyName) const {
    auto property = store_->Find(PropertyName);
    return property ? property->Value() : Variant();
}

std::int32_t PersistedPropertyCollection::GetEncodingType(std::string_view PropertyName) const {
    auto property = store_->Find(PropertyName);
    return property ? static_cast<std::int32_t>(property->EncodingType()) : -1;
}

PropertyTypes PersistedPropertyCollection::GetPropertyType(std::string_view PropertyName) const {
    auto property = store_->Find(PropertyName);
    return property ? property->PropertyType() : ptNone;
}

bool PersistedPropertyCollection::GetBoolean(std::string_view PropertyName, bool DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptBoolean);
    return property ? property->BooleanValue() : DefaultValue;
}

void PersistedPropertyCollection::SetBoolean(std::string_view PropertyName, bool NewValue,
                                             EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetBoolean");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetBoolean(PropertyName, NewValue, EncodingType); });
}

std::int32_t PersistedPropertyCollection::GetLong(std::string_view PropertyName, std::int32_t DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptLong);
    return property ? property->LongValue() : DefaultValue;
}

void PersistedPropertyCollection::SetLong(std::string_view PropertyName, std::int32_t NewValue,
                                          EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetLong");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetLong(PropertyName, NewValue, EncodingType); });
}

double PersistedPropertyCollection::GetDouble(std::string_view PropertyName, double DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptDouble);
    return property ? property->DoubleValue() : DefaultValue;
}

void PersistedPropertyCollection::SetDouble(std::string_view PropertyName, double NewValue,
                                            EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetDouble");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetDouble(PropertyName, NewValue, EncodingType); });
}

std::string PersistedPropertyCollection::GetString(std::string_view PropertyName,
                                                   std::string_view DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptString);
    return property ? property->StringValue() : std::string(DefaultValue);
}

void PersistedPropertyCollection::SetString(std::string_view PropertyName, std::string_view NewValue,
                                            EncodingTypes EncodingType) {
    const char* source = "PersistedPropertyCollection.SetString";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue, source);
    SetProperty(*this, [&](PersistedProperty& p) { p.SetString(PropertyName, NewValue, EncodingType); });
}

Date PersistedPropertyCollection::GetDate(std::string_view PropertyName, Date DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptDate);
    return property ? property->DateValue() : DefaultValue;
}

void PersistedPropertyCollection::SetDate(std::string_view PropertyName, Date NewValue, EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetDate");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetDate(PropertyName, NewValue, EncodingType); });
}

OleColor PersistedPropertyCollection::GetColor(std::string_view PropertyName, OleColor DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptColor);
    return property ? property->ColorValue() : DefaultValue;
}

void PersistedPropertyCollection::SetColor(std::string_view PropertyName, OleColor NewValue,
                                           EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetColor");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetColor(PropertyName, NewValue, EncodingType); });
}

FontData PersistedPropertyCollection::GetFont(std::string_view PropertyName, const FontData& DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptFont);
    return property ? property->FontValue() : DefaultValue;
}

void PersistedPropertyCollection::SetFont(std::string_view PropertyName, const FontData& NewValue,
                                          EncodingTypes EncodingType) {
    const char* source = "PersistedPropertyCollection.SetFont";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue.Name, source);
    SetProperty(*this, [&](PersistedProperty& p) { p.SetFontData(PropertyName, NewValue, EncodingType); });
}

Rectangle PersistedPropertyCollection::GetRectangle(std::string_view PropertyName,
                                                    const Rectangle& DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptRectangle);
    return property ? property->RectangleValue() : DefaultValue;
}

void PersistedPropertyCollection::SetRectangle(std::string_view PropertyName, const Rectangle& NewValue,
                                               EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetRectangle");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetRectangleData(PropertyName, NewValue, EncodingType); });
}

AssetData PersistedPropertyCollection::GetAsset(std::string_view PropertyName, const AssetData& DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptAsset);
    return property ? property->AssetValue() : DefaultValue;
}

void PersistedPropertyCollection::SetAsset(std::string_view PropertyName, const AssetData& NewValue,
                                           EncodingTypes EncodingType) {
    const char* source = "PersistedPropertyCollection.SetAsset";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue.Filename, source);
    support::RequireUtf8(NewValue.Description, source);
    support::RequireUtf8(NewValue.Source, source);
    SetProperty(*this, [&](PersistedProperty& p) { p.SetAssetData(PropertyName, NewValue, EncodingType); });
}

LocationData PersistedPropertyCollection::GetLocation(std::string_view PropertyName,
                                                      const LocationData& DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptLocation);
    return property ? property->LocationValue() : DefaultValue;
}

void PersistedPropertyCollection::SetLocation(std::string_view PropertyName, LocationData& NewValue,
                                              EncodingTypes EncodingType) {
    const char* source = "PersistedPropertyCollection.SetLocation";
    support::RequireUtf8(PropertyName, source);
    support::RequireUtf8(NewValue.StartPoint, source);
    support::RequireUtf8(NewValue.EndPoint, source);
    support::RequireUtf8(NewValue.MapName, source);
    // A location always has its start filled first, in the caller's record too.
    if (NewValue.StartPoint.empty() && !NewValue.EndPoint.empty()) {
        NewValue.StartPoint = std::move(NewValue.EndPoint);
        NewValue.EndPoint.clear();
    }
    SetProperty(*this, [&](PersistedProperty& p) { p.SetLocationData(PropertyName, NewValue, EncodingType); });
}

std::shared_ptr<PersistedPropertyCollection> PersistedPropertyCollection::GetPPC(
    std::string_view PropertyName, std::shared_ptr<PersistedPropertyCollection> DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptPPC);
    return property ? property->PPCValue() : DefaultValue;
}

void PersistedPropertyCollection::SetPPC(std::string_view PropertyName,
                                         const std::shared_ptr<PersistedPropertyCollection>& NewPPC,
                                         EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetPPC");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetPPCData(PropertyName, NewPPC, EncodingType); });
}

std::shared_ptr<ChildElementCollection> PersistedPropertyCollection::GetCEC(
    std::string_view PropertyName, std::shared_ptr<ChildElementCollection> DefaultValue) const {
    auto property = FindTyped(*this, PropertyName, ptCEC);
    return property ? property->CECValue() : DefaultValue;
}

void PersistedPropertyCollection::SetCEC(std::string_view PropertyName,
                                         const std::shared_ptr<ChildElementCollection>& NewCEC,
                                         EncodingTypes EncodingType) {
    support::RequireUtf8(PropertyName, "PersistedPropertyCollection.SetCEC");
    SetProperty(*this, [&](PersistedProperty& p) { p.SetCECData(PropertyName, NewCEC, EncodingType); });
}

std::shared_ptr<PersistedPropertyCollection> PersistedPropertyCollection::Clone() const {
    auto copy = Create();
    copy->name_ = name_;
    for (const auto& property : store_->Items()) {
        copy->store_->Add(property->Clone());
    }
    return copy;
}

std::string PersistedPropertyCollection::ToClearXMLString() {
    return xml::WriteStrippedString(
        [this](xml::Writer& writer) { properties::WriteBag(*this, writer, true); });
}

std::string PersistedPropertyCollection::ToXMLString() {
    return xml::WriteStrippedString(
        [this](xml::Writer& writer) { properties::WriteBag(*this, writer, false); });
}

void PersistedPropertyCollection::FromXMLString(std::string_view XMLString) {
    if (XMLString.empty()) {
        name_ = kDefaultName;
        store_ = std::make_unique<detail::PropertyStore>();
        return;
    }
    const std::string text = support::StripControlChars(XMLString);
    if (!detail::reading::ReadBagFromText(*this, text)) {
        frame::Raise(ErrXmlForm, "PersistedPropertyCollection.FromXMLString", frame::kXmlCouldNotBeParsed);
    }
}

xml::Element PersistedPropertyCollection::ToClearXMLElement(const xml::Document& Document) {
    return WriteElement(Document, true, "PersistedPropertyCollection.ToClearXMLElement");
}

xml::Element PersistedPropertyCollection::ToXMLElement(const xml::Document& Document) {
    return WriteElement(Document, false, "PersistedPropertyCollection.ToXMLElement");
}

xml::Element PersistedPropertyCollection::WriteElement(const xml::Document& Document, bool clear,
                                                       const char* source) const {
    if (!Document) {
        frame::Raise(ErrNullArgument, source, frame::kDocumentCannotBeNull);
    }
    return xml::WriteElementIn(Document, [&](xml::Writer& writer) { properties::WriteBag(*this, writer, clear); });
}

void PersistedPropertyCollection::FromXMLElement(const xml::Element& Element) {
    const char* source = "PersistedPropertyCollection.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    detail::ModelReader::ReadBag(*this, detail::reading::ElementCursor(Element));
}

}  // namespace quillbank
