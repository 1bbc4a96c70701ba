#include "com/records.hpp"

#include <quillbank/error.hpp>

#include <cstddef>

#include "com/text.hpp"

// The records as hosts see them on both platforms: the type library's layout
// (natural alignment, a double on 8 bytes), whatever the pointer size.
static_assert(sizeof(::FontData) == 24 && offsetof(::FontData, Size) == 8 && offsetof(::FontData, Bold) == 16 &&
              offsetof(::FontData, Italic) == 18 && offsetof(::FontData, Underline) == 20);
static_assert(sizeof(::Rectangle) == 16 && offsetof(::Rectangle, Height) == 12);
static_assert(sizeof(::AssetData) == 3 * sizeof(BSTR) && offsetof(::AssetData, Source) == 2 * sizeof(BSTR));
static_assert(sizeof(::LocationData) == 3 * sizeof(BSTR) && offsetof(::LocationData, MapName) == 2 * sizeof(BSTR));
static_assert(sizeof(long) == 4, "a type-library long is 32 bits on both platforms");

namespace quillbank::com {

namespace {

VARIANT_BOOL AsVariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

// {1D9E6DE5-...} and the other records' identifiers in the type library.
const GUID kAssetDataId = {0x1D9E6DE5, 0x8E52, 0x4125, {0xAA, 0x99, 0x5B, 0xEF, 0xEA, 0x93, 0x80, 0xB1}};
const GUID kFontDataId = {0x61FDAC65, 0x89E2, 0x4FF1, {0xB6, 0x26, 0xDC, 0xA3, 0xC3, 0xA8, 0x61, 0x50}};
const GUID kLocationDataId = {0x4B97C82D, 0x987F, 0x41F7, {0xBB, 0x33, 0x84, 0x4A, 0xE8, 0xE4, 0xC3, 0x56}};
const GUID kRectangleId = {0x4C24E635, 0xFF49, 0x4CEC, {0xB0, 0xA8, 0xAB, 0x28, 0x09, 0x5D, 0xA4, 0xC7}};

template <class Record>
void MakeRecordVariant(REFGUID type, const Record& record, VARIANT* out) {
    IRecordInfo* info = nullptr;
    HRESULT hr = GetRecordInfoFromGuids(LIBID_Quillbank, 2, 0, 0x0409, type, &info);
    if (FAILED(hr)) {
        throw Error(static_cast<std::int32_t>(hr), "Quillbank", "The record type could not be described.");
    }
    void* copy = nullptr;
    hr = info->RecordCreateCopy(const_cast<Record*>(&record), &copy);
    if (FAILED(hr) || copy == nullptr) {
        info->Release();
        throw Error(static_cast<std::int32_t>(E_OUTOFMEMORY), "Quillbank", "Out of memory.");
    }
    VariantInit(out);
    V_VT(out) = VT_RECORD;
    V_RECORDINFO(out) = info;  // the variant keeps the reference
    V_RECORD(out) = copy;
}

}  // namespace

quillbank::AssetData FromCom(const ::AssetData& record) {
    return {Utf8(record.Filename), Utf8(record.Description), Utf8(record.Source)};
}

quillbank::FontData FromCom(const ::FontData& record) {
    return {Utf8(record.Name), record.Size, record.Bold != VARIANT_FALSE, record.Italic != VARIANT_FALSE,
            record.Underline != VARIANT_FALSE};
}

quillbank::LocationData FromCom(const ::LocationData& record) {
    return {Utf8(record.StartPoint), Utf8(record.EndPoint), Utf8(record.MapName)};
}

quillbank::Rectangle FromCom(const ::Rectangle& record) {
    return {record.Left, record.Top, record.Width, record.Height};
}

::AssetData ToCom(const quillbank::AssetData& record) {
    ::AssetData out{};
    out.Filename = NewBstr(record.Filename);
    out.Description = NewBstr(record.Description);
    out.Source = NewBstr(record.Source);
    return out;
}

::FontData ToCom(const quillbank::FontData& record) {
    ::FontData out{};
    out.Name = NewBstr(record.Name);
    out.Size = record.Size;
    out.Bold = AsVariantBool(record.Bold);
    out.Italic = AsVariantBool(record.Italic);
    out.Underline = AsVariantBool(record.Underline);
    return out;
}

::LocationData ToCom(const quillbank::LocationData& record) {
    ::LocationData out{};
    out.StartPoint = NewBstr(record.StartPoint);
    out.EndPoint = NewBstr(record.EndPoint);
    out.MapName = NewBstr(record.MapName);
    return out;
}

::Rectangle ToCom(const quillbank::Rectangle& record) {
    return ::Rectangle{record.Left, record.Top, record.Width, record.Height};
}

void FreeTexts(::AssetData& record) {
    SysFreeString(record.Filename);
    SysFreeString(record.Description);
    SysFreeString(record.Source);
    record.Filename = record.Description = record.Source = nullptr;
}

void FreeTexts(::FontData& record) {
    SysFreeString(record.Name);
    record.Name = nullptr;
}

void FreeTexts(::LocationData& record) {
    SysFreeString(record.StartPoint);
    SysFreeString(record.EndPoint);
    SysFreeString(record.MapName);
    record.StartPoint = record.EndPoint = record.MapName = nullptr;
}

void RecordVariant(const quillbank::AssetData& record, VARIANT* out) {
    ::AssetData value = ToCom(record);
    MakeRecordVariant(kAssetDataId, value, out);
    FreeTexts(value);
}

void RecordVariant(const quillbank::FontData& record, VARIANT* out) {
    ::FontData value = ToCom(record);
    MakeRecordVariant(kFontDataId, value, out);
    FreeTexts(value);
}

void RecordVariant(const quillbank::LocationData& record, VARIANT* out) {
    ::LocationData value = ToCom(record);
    MakeRecordVariant(kLocationDataId, value, out);
    FreeTexts(value);
}

void RecordVariant(const quillbank::Rectangle& record, VARIANT* out) {
    const ::Rectangle value = ToCom(record);
    MakeRecordVariant(kRectangleId, value, out);
}

}  // namespace quillbank::com
