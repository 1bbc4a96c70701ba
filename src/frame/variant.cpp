#include <quillbank/variant.hpp>

#include "frame/raise.hpp"

namespace quillbank {

namespace {

template <typename T, typename V>
const T& Expect(const V& value) {
    if (const T* p = std::get_if<T>(&value)) {
        return *p;
    }
    frame::Raise(ErrTypeMismatch, frame::kLibraryName, frame::kTypeMismatch);
}

}  // namespace

Variant::Variant(std::shared_ptr<PersistedPropertyCollection> value) {
    if (value) {
        value_ = std::move(value);
    } else {
        value_ = NothingTag{};
    }
}

Variant::Variant(std::shared_ptr<ChildElementCollection> value) {
    if (value) {
        value_ = std::move(value);
    } else {
        value_ = NothingTag{};
    }
}

bool Variant::AsBoolean() const { return Expect<bool>(value_); }
std::int32_t Variant::AsLong() const { return Expect<std::int32_t>(value_); }
double Variant::AsDouble() const { return Expect<double>(value_); }
const std::string& Variant::AsString() const { return Expect<std::string>(value_); }
Date Variant::AsDate() const { return Expect<DateTag>(value_).value; }
const FontData& Variant::AsFont() const { return Expect<FontData>(value_); }
const Rectangle& Variant::AsRectangle() const { return Expect<Rectangle>(value_); }
const AssetData& Variant::AsAsset() const { return Expect<AssetData>(value_); }
const LocationData& Variant::AsLocation() const { return Expect<LocationData>(value_); }

std::shared_ptr<PersistedPropertyCollection> Variant::AsPPC() const {
    if (IsNothing()) {
        return nullptr;
    }
    return Expect<std::shared_ptr<PersistedPropertyCollection>>(value_);
}

std::shared_ptr<ChildElementCollection> Variant::AsCEC() const {
    if (IsNothing()) {
        return nullptr;
    }
    return Expect<std::shared_ptr<ChildElementCollection>>(value_);
}

}  // namespace quillbank
