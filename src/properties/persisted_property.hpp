#pragma once

// One named, typed value and the way it is stored (plain or base64). Private
// to the library: hosts reach property values only through the bags.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/enums.hpp>
#include <quillbank/records.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

namespace detail {
struct ModelReader;
}  // namespace detail

namespace xml {
class Writer;
}

class PersistedPropertyCollection;
class ChildElementCollection;

// A value made on first write; until then it reads as a default-made T.
template <class T>
class LazySlot {
public:
    const T& Get() const noexcept {
        static const T empty{};
        return value_ ? *value_ : empty;
    }
    T& Set() {
        if (!value_) {
            value_ = std::make_unique<T>();
        }
        return *value_;
    }

private:
    std::unique_ptr<T> value_;
};

// There is one slot per type: a setter changes only its own slot and the
// identity (name, type, encoding); the other slots keep what they held. Only
// the slot named by PropertyType() is meaningful, serialised and cloned.
class PersistedProperty {
public:
    // An untyped property: no name, ptNone, etNotEncoded, every slot empty.
    static std::shared_ptr<PersistedProperty> Create();

    // Releases a held bag or list without recursing into it (see the .cpp).
    ~PersistedProperty();

    PersistedProperty(const PersistedProperty&) = delete;
    PersistedProperty& operator=(const PersistedProperty&) = delete;

    std::string Name() const { return name_; }
    const std::string& NameRef() const noexcept { return name_; }
    PropertyTypes PropertyType() const noexcept { return property_type_; }
    EncodingTypes EncodingType() const noexcept { return encoding_type_; }
    // The current slot as a variant; an untyped property gives a null
    // object reference (Nothing), not Empty.
    Variant Value() const;

    // Each slot as it is, whatever the current type.
    bool BooleanValue() const noexcept { return boolean_; }
    std::int32_t LongValue() const noexcept { return long_; }
    double DoubleValue() const noexcept { return double_; }
    std::string StringValue() const { return string_; }
    Date DateValue() const noexcept { return date_; }
    OleColor ColorValue() const noexcept { return color_; }
    FontData FontValue() const { return font_.Get(); }
    Rectangle RectangleValue() const noexcept { return rectangle_.Get(); }
    AssetData AssetValue() const { return asset_.Get(); }
    LocationData LocationValue() const { return location_.Get(); }
    // The held bag or list itself (not a copy), or null.
    std::shared_ptr<PersistedPropertyCollection> PPCValue() const { return ppc_.Get(); }
    std::shared_ptr<ChildElementCollection> CECValue() const { return cec_.Get(); }

    void SetBoolean(std::string_view Name, bool NewValue, EncodingTypes EncodingType);
    void SetLong(std::string_view Name, std::int32_t NewValue, EncodingTypes EncodingType);
    void SetDouble(std::string_view Name, double NewValue, EncodingTypes EncodingType);
    void SetString(std::string_view Name, std::string_view NewValue, EncodingTypes EncodingType);
    void SetDate(std::string_view Name, Date NewValue, EncodingTypes EncodingType);
    void SetColor(std::string_view Name, OleColor NewValue, EncodingTypes EncodingType);
    void SetFontData(std::string_view Name, const FontData& NewValue, EncodingTypes EncodingType);
    void SetRectangleData(std::string_view Name, const Rectangle& NewValue, EncodingTypes EncodingType);
    void SetAssetData(std::string_view Name, const AssetData& NewValue, EncodingTypes EncodingType);
    // A location always has its start filled first: an empty StartPoint with
    // a filled EndPoint is stored as that StartPoint and an empty EndPoint.
    void SetLocationData(std::string_view Name, const LocationData& NewValue, EncodingTypes EncodingType);
    // Stores a deep copy of NewValue, or no bag when it is null.
    void SetPPCData(std::string_view Name, const std::shared_ptr<PersistedPropertyCollection>& NewValue,
                    EncodingTypes EncodingType);
    // Stores a deep copy of NewValue, or no list when it is null.
    void SetCECData(std::string_view Name, const std::shared_ptr<ChildElementCollection>& NewValue,
                    EncodingTypes EncodingType);

    // A new property carrying only the current slot. A bag or list property
    // without a held object clones to an untyped, nameless property.
    std::shared_ptr<PersistedProperty> Clone() const;

    // The plain element whatever the encoding, or null on any failure.
    xml::Element ToClearXMLElement(const xml::Document& Document);
    // The plain element, or "encProp" wrapping it as base64 when encoded; null
    // when untyped, for an unknown encoding, or on any failure. A null
    // Document is replaced by a new one. Never raises.
    xml::Element ToXMLElement(const xml::Document& Document);
    // Writes what ToXMLElement gives (with `clear`, what ToClearXMLElement
    // gives) to `writer`; returns false, having written nothing, when that is
    // no element. Raises only for nesting past the limit.
    bool WriteTo(xml::Writer& writer, bool clear);
    // Reads any element form. Never raises: whatever cannot be read leaves
    // the property untyped (the fields read before the failure stay).
    void FromXMLElement(const xml::Element& Element);

private:
    PersistedProperty() = default;

    void SetIdentity(std::string_view Name, PropertyTypes PropertyType, EncodingTypes EncodingType);
    xml::Element WriteElement(const xml::Document& Document, bool clear);
    // The plain element, whatever the encoding.
    void WritePlain(xml::Writer& writer) const;
    // The "xml" text of the plain element, which travels base64-encoded.
    std::string PlainElementText() const;

    // Ordered so that no padding is left between the fields.
    std::string name_;
    std::string string_;
    PropertyTypes property_type_ = ptNone;
    EncodingTypes encoding_type_ = etNotEncoded;
    std::int32_t long_ = 0;
    OleColor color_ = 0;
    double double_ = 0.0;
    Date date_ = 0.0;
    bool boolean_ = false;
    // The slots of the larger types and of nested bags and lists: most
    // properties never hold one, so each is made on first use.
    LazySlot<Rectangle> rectangle_;
    LazySlot<FontData> font_;
    LazySlot<AssetData> asset_;
    LazySlot<LocationData> location_;
    LazySlot<std::shared_ptr<PersistedPropertyCollection>> ppc_;
    LazySlot<std::shared_ptr<ChildElementCollection>> cec_;

    friend struct detail::ModelReader;
};

// The value of the first child that is a text node ("" when there is none,
// or when the node is not an element). CDATA, comments and elements are
// skipped; only that one text node counts.
std::string FirstTextValue(const xml::Node& Element);

}  // namespace quillbank
