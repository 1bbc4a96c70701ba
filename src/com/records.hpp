#pragma once

// The four records between their type-library form (BSTR texts, automation
// booleans) and the library's own structs.

#include <quillbank/records.hpp>

#include "com/com_headers.hpp"

namespace quillbank::com {

quillbank::AssetData FromCom(const ::AssetData& record);
quillbank::FontData FromCom(const ::FontData& record);
quillbank::LocationData FromCom(const ::LocationData& record);
quillbank::Rectangle FromCom(const ::Rectangle& record);

// Fill a record for the caller (new BSTRs; the caller frees them).
::AssetData ToCom(const quillbank::AssetData& record);
::FontData ToCom(const quillbank::FontData& record);
::LocationData ToCom(const quillbank::LocationData& record);
::Rectangle ToCom(const quillbank::Rectangle& record);

// Frees the texts of a record the caller handed back in an in/out parameter.
void FreeTexts(::AssetData& record);
void FreeTexts(::FontData& record);
void FreeTexts(::LocationData& record);

// A VT_RECORD variant holding a copy of the record, described by the type
// library; throws the library's error when the description cannot be had.
void RecordVariant(const quillbank::AssetData& record, VARIANT* out);
void RecordVariant(const quillbank::FontData& record, VARIANT* out);
void RecordVariant(const quillbank::LocationData& record, VARIANT* out);
void RecordVariant(const quillbank::Rectangle& record, VARIANT* out);

}  // namespace quillbank::com
