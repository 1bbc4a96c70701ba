#include "properties/persisted_property.hpp"

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include <utility>
#include <vector>

#include "frame/raise.hpp"
#include "properties/nesting.hpp"
#include "support/model_arena.hpp"

namespace quillbank {

namespace properties {

void NestingLevel::Require(const char* source) const {
    if (!entered_) {
        frame::Raise(ErrOutOfStackSpace, source, frame::kOutOfStackSpace);
    }
}

}  // namespace properties

namespace {

// The bags and lists let go by properties that are being destroyed inside the
// outermost such destructor of this thread. They are released one after
// another from there rather than inside each other, so a deep nest costs no
// stack when it is dropped. A plain pointer, so that nothing here is destroyed
// at thread exit.
thread_local std::vector<std::shared_ptr<void>>* t_pendingReleases = nullptr;

}  // namespace

PersistedProperty::~PersistedProperty() {
    if (!ppc_.Get() && !cec_.Get()) {
        return;
    }
    auto defer = [this](std::vector<std::shared_ptr<void>>& pending) {
        try {
            if (ppc_.Get()) {
                pending.push_back(std::move(ppc_.Set()));
            }
            if (cec_.Get()) {
                pending.push_back(std::move(cec_.Set()));
            }
        } catch (...) {
            // Out of memory: what is left is released the ordinary way.
        }
    };
    if (t_pendingReleases != nullptr) {
        defer(*t_pendingReleases);
        return;
    }
    std::vector<std::shared_ptr<void>> pending;
    t_pendingReleases = &pending;
    defer(pending);
    while (!pending.empty()) {
        std::shared_ptr<void> next = std::move(pending.back());
        pending.pop_back();
        next.reset();
    }
    t_pendingReleases = nullptr;
}

std::shared_ptr<PersistedProperty> PersistedProperty::Create() {
    // One allocation holds the object and its reference count.
    struct Made : PersistedProperty {
        Made() {}  // user-provided, so the object is not zero-filled first
    };
    return support::MakeModelObject<Made>();
}

Variant PersistedProperty::Value() const {
    switch (property_type_) {
        case ptBoolean:
            return Variant(boolean_);
        case ptLong:
            return Variant(long_);
        case ptDouble:
            return Variant(double_);
        case ptString:
            return Variant(string_);
        case ptDate:
            return Variant::FromDate(date_);
        case ptColor:
            return Variant(static_cast<std::int32_t>(color_));
        case ptFont:
            return Variant(font_.Get());
        case ptRectangle:
            return Variant(rectangle_.Get());
        case ptAsset:
            return Variant(asset_.Get());
        case ptLocation:
            return Variant(location_.Get());
        case ptPPC:
            return Variant(ppc_.Get());
        case ptCEC:
            return Variant(cec_.Get());
        default:
            return Variant::Nothing();
    }
}

void PersistedProperty::SetIdentity(std::string_view Name, PropertyTypes PropertyType, EncodingTypes EncodingType) {
    name_ = Name;
    property_type_ = PropertyType;
    encoding_type_ = EncodingType;
}

void PersistedProperty::SetBoolean(std::string_view Name, bool NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptBoolean, EncodingType);
    boolean_ = NewValue;
}

void PersistedProperty::SetLong(std::string_view Name, std::int32_t NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptLong, EncodingType);
    long_ = NewValue;
}

void PersistedProperty::SetDouble(std::string_view Name, double NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptDouble, EncodingType);
    double_ = NewValue;
}

void PersistedProperty::SetString(std::string_view Name, std::string_view NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptString, EncodingType);
    string_ = NewValue;
}

void PersistedProperty::SetDate(std::string_view Name, Date NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptDate, EncodingType);
    date_ = NewValue;
}

void PersistedProperty::SetColor(std::string_view Name, OleColor NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptColor, EncodingType);
    color_ = NewValue;
}

void PersistedProperty::SetFontData(std::string_view Name, const FontData& NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptFont, EncodingType);
    font_.Set() = NewValue;
}

void PersistedProperty::SetRectangleData(std::string_view Name, const Rectangle& NewValue,
                                         EncodingTypes EncodingType) {
    SetIdentity(Name, ptRectangle, EncodingType);
    rectangle_.Set() = NewValue;
}

void PersistedProperty::SetAssetData(std::string_view Name, const AssetData& NewValue, EncodingTypes EncodingType) {
    SetIdentity(Name, ptAsset, EncodingType);
    asset_.Set() = NewValue;
}

void PersistedProperty::SetLocationData(std::string_view Name, const LocationData& NewValue,
                                        EncodingTypes EncodingType) {
    SetIdentity(Name, ptLocation, EncodingType);
    if (NewValue.StartPoint.empty() && !NewValue.EndPoint.empty()) {
        location_.Set().StartPoint = NewValue.EndPoint;
        location_.Set().EndPoint.clear();
    } else {
        location_.Set().StartPoint = NewValue.StartPoint;
        location_.Set().EndPoint = NewValue.EndPoint;
    }
    location_.Set().MapName = NewValue.MapName;
}

void PersistedProperty::SetPPCData(std::string_view Name, const std::shared_ptr<PersistedPropertyCollection>& NewValue,
                                   EncodingTypes EncodingType) {
    SetIdentity(Name, ptPPC, EncodingType);
    ppc_.Set() = NewValue ? NewValue->Clone() : nullptr;
}

void PersistedProperty::SetCECData(std::string_view Name, const std::shared_ptr<ChildElementCollection>& NewValue,
                                   EncodingTypes EncodingType) {
    SetIdentity(Name, ptCEC, EncodingType);
    cec_.Set() = NewValue ? NewValue->Clone() : nullptr;
}

std::shared_ptr<PersistedProperty> PersistedProperty::Clone() const {
    auto copy = Create();
    switch (property_type_) {
        case ptBoolean:
            copy->SetBoolean(name_, boolean_, encoding_type_);
            break;
        case ptLong:
            copy->SetLong(name_, long_, encoding_type_);
            break;
        case ptDouble:
            copy->SetDouble(name_, double_, encoding_type_);
            break;
        case ptString:
            copy->SetString(name_, string_, encoding_type_);
            break;
        case ptDate:
            copy->SetDate(name_, date_, encoding_type_);
            break;
        case ptColor:
            copy->SetColor(name_, color_, encoding_type_);
            break;
        case ptFont:
            copy->SetFontData(name_, font_.Get(), encoding_type_);
            break;
        case ptRectangle:
            copy->SetRectangleData(name_, rectangle_.Get(), encoding_type_);
            break;
        case ptAsset:
            copy->SetAssetData(name_, asset_.Get(), encoding_type_);
            break;
        case ptLocation:
            copy->SetLocationData(name_, location_.Get(), encoding_type_);
            break;
        case ptPPC:
            // Without a held bag nothing is set at all: the copy stays nameless
            // and untyped. The copy takes one deep copy of the bag (copying it
            // twice would give the same result at twice the cost a level).
            if (ppc_.Get()) {
                const properties::NestingLevel level;
                level.Require("PersistedPropertyCollection.Clone");
                copy->SetIdentity(name_, ptPPC, encoding_type_);
                copy->ppc_.Set() = ppc_.Get()->Clone();
            }
            break;
        case ptCEC:
            if (cec_.Get()) {
                const properties::NestingLevel level;
                level.Require("ChildElementCollection.Clone");
                copy->SetIdentity(name_, ptCEC, encoding_type_);
                copy->cec_.Set() = cec_.Get()->Clone();
            }
            break;
        default:
            copy->SetIdentity(name_, property_type_, encoding_type_);
            break;
    }
    return copy;
}

}  // namespace quillbank
