#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include <quillbank/records.hpp>

namespace quillbank {

class PersistedPropertyCollection;
class ChildElementCollection;

// The value handed back by the members that return a variant (GetValue,
// FromPPC, CopyFrom, Clear). It tells apart Empty (no value at all), a null
// object reference (Nothing), the scalar types, each record and a reference
// to a property bag or child-element list.
class Variant {
public:
    enum class Kind {
        Empty,
        Nothing,
        Boolean,
        Long,
        Double,
        String,
        Date,
        Font,
        Rectangle,
        Asset,
        Location,
        PPC,
        CEC,
    };

    Variant() = default;  // Empty
    explicit Variant(bool value) : value_(value) {}
    explicit Variant(std::int32_t value) : value_(value) {}
    explicit Variant(double value) : value_(value) {}
    explicit Variant(std::string value) : value_(std::move(value)) {}
    explicit Variant(const char* value) : value_(std::string(value)) {}
    explicit Variant(FontData value) : value_(std::move(value)) {}
    explicit Variant(Rectangle value) : value_(value) {}
    explicit Variant(AssetData value) : value_(std::move(value)) {}
    explicit Variant(LocationData value) : value_(std::move(value)) {}
    // A null reference makes a Nothing variant, as an automation object variant would.
    explicit Variant(std::shared_ptr<PersistedPropertyCollection> value);
    explicit Variant(std::shared_ptr<ChildElementCollection> value);

    static Variant Nothing() { Variant v; v.value_ = NothingTag{}; return v; }
    static Variant FromDate(Date value) { Variant v; v.value_ = DateTag{value}; return v; }

    Kind GetKind() const noexcept { return static_cast<Kind>(value_.index()); }
    bool IsEmpty() const noexcept { return GetKind() == Kind::Empty; }
    bool IsNothing() const noexcept { return GetKind() == Kind::Nothing; }

    // Each accessor raises ErrTypeMismatch when the variant holds another kind.
    bool AsBoolean() const;
    std::int32_t AsLong() const;
    double AsDouble() const;
    const std::string& AsString() const;
    Date AsDate() const;
    const FontData& AsFont() const;
    const Rectangle& AsRectangle() const;
    const AssetData& AsAsset() const;
    const LocationData& AsLocation() const;
    // Nothing gives an empty reference.
    std::shared_ptr<PersistedPropertyCollection> AsPPC() const;
    std::shared_ptr<ChildElementCollection> AsCEC() const;

    bool operator==(const Variant&) const = default;

private:
    struct NothingTag {
        bool operator==(const NothingTag&) const = default;
    };
    struct DateTag {
        Date value;
        bool operator==(const DateTag&) const = default;
    };

    std::variant<std::monostate, NothingTag, bool, std::int32_t, double, std::string, DateTag,
                 FontData, Rectangle, AssetData, LocationData,
                 std::shared_ptr<PersistedPropertyCollection>, std::shared_ptr<ChildElementCollection>>
        value_;
};

}  // namespace quillbank
