#pragma once

// The named bag of typed properties that every document object carries.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/enums.hpp>
#include <quillbank/records.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

class ChildElementCollection;

namespace detail {
struct ModelReader;
class PropertyStore;
struct PropertyBagAccess;
}  // namespace detail

// A bag of named, typed values. Names are matched without regard to case;
// the bag keeps its properties in the order they were last set. Typed getters
// fall back to the caller's default; typed setters replace a property of the
// same name (whatever its type) and move it to the end.
class PersistedPropertyCollection {
public:
    // A new bag named "properties", with no properties.
    static std::shared_ptr<PersistedPropertyCollection> Create();
    ~PersistedPropertyCollection();

    PersistedPropertyCollection(const PersistedPropertyCollection&) = delete;
    PersistedPropertyCollection& operator=(const PersistedPropertyCollection&) = delete;

    std::string Name() const;
    void SetName(std::string_view NewValue);

    std::int32_t Count() const;
    bool Exists(std::string_view PropertyName) const;
    // The names in the order they were set; with EncodingType 0 or 1 only the
    // properties of that encoding. An empty result is one empty string.
    std::vector<std::string> GetPropertyNameArray(std::int32_t EncodingType = -1) const;
    // An absent name is ignored.
    void Remove(std::string_view PropertyName);
    // Removes every property; the name is kept.
    void Clear();

    // The property's value; an absent name gives an Empty variant.
    Variant GetValue(std::string_view PropertyName) const;
    // -1 when the name is absent.
    std::int32_t GetEncodingType(std::string_view PropertyName) const;
    // ptNone when the name is absent.
    PropertyTypes GetPropertyType(std::string_view PropertyName) const;

    bool GetBoolean(std::string_view PropertyName, bool DefaultValue) const;
    void SetBoolean(std::string_view PropertyName, bool NewValue, EncodingTypes EncodingType = etNotEncoded);
    std::int32_t GetLong(std::string_view PropertyName, std::int32_t DefaultValue) const;
    void SetLong(std::string_view PropertyName, std::int32_t NewValue, EncodingTypes EncodingType = etNotEncoded);
    double GetDouble(std::string_view PropertyName, double DefaultValue) const;
    void SetDouble(std::string_view PropertyName, double NewValue, EncodingTypes EncodingType = etNotEncoded);
    std::string GetString(std::string_view PropertyName, std::string_view DefaultValue) const;
    void SetString(std::string_view PropertyName, std::string_view NewValue,
                   EncodingTypes EncodingType = etNotEncoded);
    Date GetDate(std::string_view PropertyName, Date DefaultValue) const;
    void SetDate(std::string_view PropertyName, Date NewValue, EncodingTypes EncodingType = etNotEncoded);
    OleColor GetColor(std::string_view PropertyName, OleColor DefaultValue) const;
    void SetColor(std::string_view PropertyName, OleColor NewValue, EncodingTypes EncodingType = etNotEncoded);
    FontData GetFont(std::string_view PropertyName, const FontData& DefaultValue) const;
    void SetFont(std::string_view PropertyName, const FontData& NewValue, EncodingTypes EncodingType = etNotEncoded);
    Rectangle GetRectangle(std::string_view PropertyName, const Rectangle& DefaultValue) const;
    void SetRectangle(std::string_view PropertyName, const Rectangle& NewValue,
                      EncodingTypes EncodingType = etNotEncoded);
    AssetData GetAsset(std::string_view PropertyName, const AssetData& DefaultValue) const;
    void SetAsset(std::string_view PropertyName, const AssetData& NewValue, EncodingTypes EncodingType = etNotEncoded);
    LocationData GetLocation(std::string_view PropertyName, const LocationData& DefaultValue) const;
    // A location always has its start filled first: an empty StartPoint with
    // a filled EndPoint is moved over, in the caller's record too.
    void SetLocation(std::string_view PropertyName, LocationData& NewValue, EncodingTypes EncodingType = etNotEncoded);
    // The bag held by the property itself (a live reference), not a copy.
    std::shared_ptr<PersistedPropertyCollection> GetPPC(std::string_view PropertyName,
                                                        std::shared_ptr<PersistedPropertyCollection> DefaultValue) const;
    // Stores a deep copy of NewPPC (or no bag when it is null).
    void SetPPC(std::string_view PropertyName, const std::shared_ptr<PersistedPropertyCollection>& NewPPC,
                EncodingTypes EncodingType = etNotEncoded);
    // The list held by the property itself (a live reference), not a copy.
    std::shared_ptr<ChildElementCollection> GetCEC(std::string_view PropertyName,
                                                   std::shared_ptr<ChildElementCollection> DefaultValue) const;
    // Stores a deep copy of NewCEC (or no list when it is null).
    void SetCEC(std::string_view PropertyName, const std::shared_ptr<ChildElementCollection>& NewCEC,
                EncodingTypes EncodingType = etNotEncoded);

    // A deep copy with the same name and order.
    std::shared_ptr<PersistedPropertyCollection> Clone() const;

    // The "ppc" element as text, through a fresh document.
    std::string ToClearXMLString();
    std::string ToXMLString();
    // "" resets the bag to its creation state.
    void FromXMLString(std::string_view XMLString);

    // A new "ppc" element of Document, not attached anywhere. The clear form
    // writes every property plain, sorted by name; the normal form writes the
    // plain properties sorted, then the encoded ones sorted.
    xml::Element ToClearXMLElement(const xml::Document& Document);
    xml::Element ToXMLElement(const xml::Document& Document);
    void FromXMLElement(const xml::Element& Element);

private:
    PersistedPropertyCollection();
    xml::Element WriteElement(const xml::Document& Document, bool clear, const char* source) const;

    std::string name_;
    std::unique_ptr<detail::PropertyStore> store_;

    friend struct detail::PropertyBagAccess;
    friend struct detail::ModelReader;
};

}  // namespace quillbank
