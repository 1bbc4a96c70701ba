// P08: a number or date property whose text is not empty but reads as 0 or
// the zero date in the regional setting in use: most likely it was written on
// a host with other regional settings ("1,5" read in en-US, "15/01/2024" read
// in ja-JP), and the reader has lost its value in silence.

#include <algorithm>
#include <cctype>
#include <charconv>

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "check_findings.hpp"

namespace quillbank::tool {

namespace {

// Text that means zero whatever the setting: digits that are all "0"
// ("0", "-0.00", "00:00:00"), or the zero date written as a day.
bool MeansZero(const std::string& text, bool date) {
    if (date && text.rfind("1899-12-30", 0) == 0) {
        return std::all_of(text.begin() + 10, text.end(), [](char c) { return !(c >= '1' && c <= '9'); });
    }
    const bool anyDigit = std::any_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    return anyDigit && std::none_of(text.begin(), text.end(), [](char c) { return c >= '1' && c <= '9'; });
}

// The forms the library itself writes read the same in every setting, so a
// value in one of them is left alone without reading it again: a plain
// decimal number, or a date "YYYY-MM-DD", "hh:mm:ss" or both.
bool WrittenForm(const std::string& text, bool date) {
    if (!date) {
        double value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        return error == std::errc() && end == text.data() + text.size();
    }
    auto digitsAt = [&](std::size_t at, std::size_t count) {
        return at + count <= text.size() &&
               std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at),
                           text.begin() + static_cast<std::ptrdiff_t>(at + count),
                           [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; });
    };
    auto dayAt = [&](std::size_t at) {
        return digitsAt(at, 4) && text[at + 4] == '-' && digitsAt(at + 5, 2) && text[at + 7] == '-' &&
               digitsAt(at + 8, 2);
    };
    auto timeAt = [&](std::size_t at) {
        return digitsAt(at, 2) && text[at + 2] == ':' && digitsAt(at + 3, 2) && text[at + 5] == ':' &&
               digitsAt(at + 6, 2);
    };
    return (text.size() == 10 && dayAt(0)) || (text.size() == 8 && timeAt(0)) ||
           (text.size() == 19 && dayAt(0) && text[10] == ' ' && timeAt(11));
}

std::string Lower(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

}  // namespace

void CheckZeroReading(const xml::Element& property, const std::function<std::string()>& placeOf,
                      Findings& findings) {
    const std::string element = Lower(property.Name());
    const bool date = element == "dateprop";
    if (element != "intprop" && element != "floatprop" && !date) {
        return;
    }
    const std::string text = property.GetAttribute("value").value_or("");
    if (text.find_first_not_of(" \t") == std::string::npos || MeansZero(text, date) || WrittenForm(text, date)) {
        return;
    }
    const std::string name = property.GetAttribute("name").value_or("");
    auto bag = PersistedPropertyCollection::Create();
    try {
        bag->FromXMLString("<ppc>" + property.Xml() + "</ppc>");
    } catch (const Error&) {
        return;
    }
    const double read = element == "intprop" ? bag->GetLong(name, 1)
                        : date                ? bag->GetDate(name, 1)
                                              : bag->GetDouble(name, 1);
    if (read != 0) {
        return;
    }
    findings.Add("P08", placeOf(),
                 "the value \"" + text + "\" reads as " + (date ? "the zero date" : "0") + " in the regional setting " +
                     Functions::RegionalSettings() + "; it may have been written in another one (see --locale)");
}

}  // namespace quillbank::tool
