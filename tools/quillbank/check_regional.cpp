// P08: a number or date property whose text is not empty but reads as 0 or
// the zero date in the regional setting in use: most likely it was written on
// a host with other regional settings ("1,5" read in en-US, "15/01/2024" read
// in ja-JP), and the reader has lost its value in silence.

#include <algorithm>

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

}  // namespace

void CheckZeroReading(const xml::Element& property, const std::string& place, Findings& findings) {
    const std::string element = property.Name();
    const bool date = element == "dateProp";
    if (element != "intProp" && element != "floatProp" && !date) {
        return;
    }
    const std::string text = property.GetAttribute("value").value_or("");
    if (text.find_first_not_of(" \t") == std::string::npos || MeansZero(text, date)) {
        return;
    }
    const std::string name = property.GetAttribute("name").value_or("");
    auto bag = PersistedPropertyCollection::Create();
    try {
        bag->FromXMLString("<ppc>" + property.Xml() + "</ppc>");
    } catch (const Error&) {
        return;
    }
    const double read = element == "intProp" ? bag->GetLong(name, 1)
                        : date                ? bag->GetDate(name, 1)
                                              : bag->GetDouble(name, 1);
    if (read != 0) {
        return;
    }
    findings.Add("P08", place,
                 "the value \"" + text + "\" reads as " + (date ? "the zero date" : "0") + " in the regional setting " +
                     Functions::RegionalSettings() + "; it may have been written in another one (see --locale)");
}

}  // namespace quillbank::tool
