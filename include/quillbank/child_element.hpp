#pragma once

// One named, typed element of a storyboard: a type label and a property bag.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/enums.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/records.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

namespace detail {
struct ModelReader;
}  // namespace detail

class ChildElementCollection;

// A thin class around one owned property bag: the element's name is the bag's
// name ("" for a new element) and the property members forward to the bag.
// Date properties are reached through PPCObject().
class ChildElement {
public:
    static std::shared_ptr<ChildElement> Create();

    ChildElement(const ChildElement&) = delete;
    ChildElement& operator=(const ChildElement&) = delete;

    std::string Name() const;
    void SetName(std::string_view NewValue);
    std::string ElementType() const;
    void SetElementType(std::string_view NewValue);
    // The owned bag itself, not a copy.
    std::shared_ptr<PersistedPropertyCollection> PPCObject() const;

    std::int32_t Count() const;
    bool Exists(std::string_view PropertyName) const;
    void Remove(std::string_view PropertyName);
    // Removes every property; the name and the element type are kept.
    void Clear();

    bool GetBoolean(std::string_view PropertyName, bool DefaultValue) const;
    void SetBoolean(std::string_view PropertyName, bool NewValue, EncodingTypes EncodingType = etNotEncoded);
    std::int32_t GetLong(std::string_view PropertyName, std::int32_t DefaultValue) const;
    void SetLong(std::string_view PropertyName, std::int32_t NewValue, EncodingTypes EncodingType = etNotEncoded);
    double GetDouble(std::string_view PropertyName, double DefaultValue) const;
    void SetDouble(std::string_view PropertyName, double NewValue, EncodingTypes EncodingType = etNotEncoded);
    std::string GetString(std::string_view PropertyName, std::string_view DefaultValue) const;
    void SetString(std::string_view PropertyName, std::string_view NewValue,
                   EncodingTypes EncodingType = etNotEncoded);
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
    // Writes the start-filled location back into the caller's record.
    void SetLocation(std::string_view PropertyName, LocationData& NewValue, EncodingTypes EncodingType = etNotEncoded);
    std::shared_ptr<PersistedPropertyCollection> GetPPC(std::string_view PropertyName,
                                                        std::shared_ptr<PersistedPropertyCollection> DefaultValue) const;
    void SetPPC(std::string_view PropertyName, const std::shared_ptr<PersistedPropertyCollection>& NewValue,
                EncodingTypes EncodingType = etNotEncoded);
    std::shared_ptr<ChildElementCollection> GetCEC(std::string_view PropertyName,
                                                   std::shared_ptr<ChildElementCollection> DefaultValue) const;
    void SetCEC(std::string_view PropertyName, const std::shared_ptr<ChildElementCollection>& NewValue,
                EncodingTypes EncodingType = etNotEncoded);

    // A deep copy: no property is shared with this element.
    std::shared_ptr<ChildElement> Clone() const;
    // The owned bag becomes a copy of PPC (a new bag named "properties" when
    // PPC is null). Always returns an Empty variant.
    Variant FromPPC(const std::shared_ptr<PersistedPropertyCollection>& PPC);

    // A new "ce" element of Document, not attached anywhere, holding the
    // property elements directly.
    xml::Element ToClearXMLElement(const xml::Document& Document);
    xml::Element ToXMLElement(const xml::Document& Document);
    std::string ToClearXMLString();
    std::string ToXMLString();
    void FromXMLElement(const xml::Element& Element);
    // "" gives a new, empty bag named ""; the element type is kept.
    void FromXMLString(std::string_view XMLString);

private:
    struct Unfilled {};

    ChildElement();
    // Without a bag: for an element about to be read, which makes its own.
    explicit ChildElement(Unfilled);
    static std::shared_ptr<ChildElement> CreateUnfilled();
    xml::Element WriteElement(const xml::Document& Document, bool clear) const;
    void SetPPCObject(std::shared_ptr<PersistedPropertyCollection> PPC);

    std::string element_type_;
    std::shared_ptr<PersistedPropertyCollection> properties_;

    friend class ChildElementCollection;
    friend struct detail::ModelReader;
};

}  // namespace quillbank
