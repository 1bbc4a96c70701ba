#pragma once

// The conventions of one regional setting that the reading conversions of
// text follow: the number symbols, the order of day, month and year in a
// short date, and the names of months, days and the half-day marks.
//
// Every text is UTF-8; names are kept case-folded so that comparisons ignore
// letter case in every script.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/records.hpp>

namespace quillbank::support {

enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

struct RegionalForms {
    // The setting's name as a language tag, e.g. "de-DE".
    std::string name;
    std::string decimalSeparator = ".";
    std::string groupingSeparator = ",";
    // The currency signs a number may carry before or after its digits.
    std::vector<std::string> currencySymbols{"$"};
    DateOrder dateOrder = DateOrder::MonthDayYear;
    // The separator of the fields of a short date ("/", "." or "-").
    std::string dateSeparator = "/";
    // Case-folded month names with their month (0 is January), the setting's
    // own language first, then English; wide and abbreviated forms, kept
    // without a closing full stop (the reader takes one after any name).
    std::vector<std::pair<std::string, int>> monthNames;
    // Case-folded names of the days of the week, which a date may carry and
    // which are otherwise ignored.
    std::vector<std::string> dayNames;
    // Case-folded morning and afternoon marks, the setting's own and "am"/"pm".
    std::vector<std::string> amMarks;
    std::vector<std::string> pmMarks;
};

// Folds the letter case of UTF-8 text.
std::string FoldCase(std::string_view text);

// The readings of text in a setting's forms, with the leniency of the host
// platform's own conversions: grouping separators, a currency sign before or
// after the number, a sign before or after it, parentheses for a negative
// value; dates in the setting's order of day and month (the other order when
// the first is impossible), with month names in the setting's language or in
// English, two-digit years, times with or without seconds and with a
// morning/afternoon mark.
std::optional<double> ParseRegionalNumber(std::string_view text, const RegionalForms& forms);
std::optional<Date> ParseRegionalDate(std::string_view text, const RegionalForms& forms);

}  // namespace quillbank::support
