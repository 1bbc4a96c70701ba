#pragma once

// Tolerant conversions of attribute values (an absent attribute is an empty
// optional) and the text forms of typed values.
//
// Text forms accepted: decimal numbers with "." ("1.5", "-2", "1e3", with
// surrounding spaces), "&H"/"&O" hexadecimal and octal integers, "True"/"False"
// in any letter case and numbers for booleans (nonzero is true), "NaN", "INF"
// and "-INF" exactly as written for doubles that are not finite, dates as
// "YYYY-MM-DD[ hh:mm[:ss]]" and "hh:mm[:ss]". These are read the same in every
// regional setting; any other text is read in the forms of the current
// regional setting (support/regional_settings.hpp), as the host platform
// reads it: "1.000,5" in "de-DE", "15/01/2024" in "en-GB", "1/15/2024 3:00 PM"
// in "en-US". Every conversion that fails gives the default instead of an error.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <quillbank/records.hpp>

namespace quillbank::support {

using AttributeValue = std::optional<std::string>;

std::string VariantToText(const AttributeValue& value, std::string_view defaultValue);
// The same, taking the text over instead of copying it.
std::string VariantToText(AttributeValue&& value, std::string_view defaultValue);
bool VariantToBool(const AttributeValue& value, bool defaultValue);
std::int32_t VariantToLong(const AttributeValue& value, std::int32_t defaultValue);
double VariantToDouble(const AttributeValue& value, double defaultValue);

// The conversions behind them; nothing when the text does not convert.
std::optional<double> TextToDouble(std::string_view text);
// Rounds half to even, as the platform's integer conversion does; nothing on overflow.
std::optional<std::int32_t> TextToLong(std::string_view text);
std::optional<bool> TextToBool(std::string_view text);
// The platform's date test and conversion.
std::optional<Date> TextToDate(std::string_view text);

// The automation date of a calendar day (years 100 to 9999) and the seconds
// of its time of day; nothing when the day does not exist.
std::optional<Date> CalendarDate(std::int64_t year, unsigned month, unsigned day, std::int64_t seconds);
// The automation date of a time of day alone (on the zero date).
Date TimeOfDay(std::int64_t seconds);

// Written forms: decimal integers; the shortest double that reads back the
// same; "YYYY-MM-DD hh:mm:ss" dates (date only at midnight, time only when the
// date part is zero); "true"/"false" for "boolProp"; "-1"/"0" for typed booleans.
std::string LongToText(std::int32_t value);
std::string DoubleToText(double value);
std::string DateToText(Date value);
std::string BoolToText(bool value);
std::string TypedBoolToText(bool value);

}  // namespace quillbank::support
