#pragma once

// The regional setting that every reading conversion of text to a number, a
// boolean or a date follows. The library's own written forms (a decimal point,
// "YYYY-MM-DD hh:mm:ss") read the same in every setting; other text is read
// in the setting's forms.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <quillbank/records.hpp>

namespace quillbank::support {

// Makes the named setting ("de-DE", "de_DE", any letter case) the current
// one; false, changing nothing, when the name is not a known setting.
bool SelectRegionalSetting(std::string_view name);
// The current setting's name as a language tag; "en-US" until one is selected.
std::string CurrentRegionalSetting();

// Readings of text that is not in one of the library's written forms, in the
// current setting's forms; nothing when the text does not convert.
std::optional<double> RegionalTextToDouble(std::string_view text);
std::optional<Date> RegionalTextToDate(std::string_view text);

}  // namespace quillbank::support
