// The regional settings on every platform but Windows: the conventions of a
// setting come from ICU's locale data.

#ifndef _WIN32

#include "support/regional_settings.hpp"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

#include <unicode/datefmt.h>
#include <unicode/dcfmtsym.h>
#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include "support/regional_forms.hpp"

namespace quillbank::support {

namespace {

std::string ToUtf8(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

// The locale of a name when ICU has data for it.
std::optional<icu::Locale> KnownLocale(std::string_view name) {
    std::string tag(name);
    std::replace(tag.begin(), tag.end(), '_', '-');
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(tag, status);
    if (U_FAILURE(status) || locale.isBogus() || *locale.getLanguage() == '\0') {
        return std::nullopt;
    }
    std::int32_t count = 0;
    const icu::Locale* available = icu::Locale::getAvailableLocales(count);
    for (std::int32_t i = 0; i < count; ++i) {
        if (std::strcmp(available[i].getBaseName(), locale.getBaseName()) == 0) {
            return locale;
        }
    }
    return std::nullopt;
}

void AddName(std::vector<std::string>& names, const icu::UnicodeString& name) {
    std::string folded = FoldCase(ToUtf8(name));
    if (!folded.empty() && folded.back() == '.') {
        folded.pop_back();
    }
    if (!folded.empty() && std::find(names.begin(), names.end(), folded) == names.end()) {
        names.push_back(std::move(folded));
    }
}

void AddNames(RegionalForms& forms, const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(locale, status);
    if (U_FAILURE(status)) {
        return;
    }
    for (const auto context : {icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::STANDALONE}) {
        for (const auto width : {icu::DateFormatSymbols::WIDE, icu::DateFormatSymbols::ABBREVIATED}) {
            std::int32_t count = 0;
            const icu::UnicodeString* months = symbols.getMonths(count, context, width);
            for (std::int32_t i = 0; i < count && i < 12; ++i) {
                std::vector<std::string> folded;
                AddName(folded, months[i]);
                for (auto& name : folded) {
                    const bool known = std::any_of(forms.monthNames.begin(), forms.monthNames.end(),
                                                   [&](const auto& entry) { return entry.first == name; });
                    if (!known) forms.monthNames.emplace_back(std::move(name), i);
                }
            }
            const icu::UnicodeString* days = symbols.getWeekdays(count, context, width);
            for (std::int32_t i = 0; i < count; ++i) {
                AddName(forms.dayNames, days[i]);
            }
        }
    }
    std::int32_t count = 0;
    const icu::UnicodeString* marks = symbols.getAmPmStrings(count);
    if (count >= 2) {
        AddName(forms.amMarks, marks[0]);
        AddName(forms.pmMarks, marks[1]);
    }
}

void ReadShortDateForm(const icu::Locale& locale, RegionalForms& forms) {
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale));
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
    if (simple == nullptr) {
        return;
    }
    icu::UnicodeString pattern;
    simple->toPattern(pattern);
    const auto year = pattern.indexOf(u'y');
    const auto month = pattern.indexOf(u'M');
    const auto day = pattern.indexOf(u'd');
    if (year >= 0 && month >= 0 && year < month) {
        forms.dateOrder = DateOrder::YearMonthDay;
    } else if (day >= 0 && month >= 0 && day < month) {
        forms.dateOrder = DateOrder::DayMonthYear;
    } else {
        forms.dateOrder = DateOrder::MonthDayYear;
    }
    // The first character after the first field.
    for (std::int32_t i = 0; i < pattern.length(); ++i) {
        const char16_t c = pattern.charAt(i);
        const bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
        if (!letter && i > 0) {
            forms.dateSeparator = ToUtf8(icu::UnicodeString(c));
            break;
        }
    }
}

std::shared_ptr<const RegionalForms> MakeForms(const icu::Locale& locale) {
    auto forms = std::make_shared<RegionalForms>();
    UErrorCode status = U_ZERO_ERROR;
    forms->name = locale.toLanguageTag<std::string>(status);
    status = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols numbers(locale, status);
    if (U_SUCCESS(status)) {
        forms->decimalSeparator = ToUtf8(numbers.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol));
        forms->groupingSeparator = ToUtf8(numbers.getSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol));
        const std::string currency = ToUtf8(numbers.getSymbol(icu::DecimalFormatSymbols::kCurrencySymbol));
        forms->currencySymbols = {currency};
    }
    ReadShortDateForm(locale, *forms);
    AddNames(*forms, locale);
    AddNames(*forms, icu::Locale::getEnglish());
    AddName(forms->amMarks, "AM");
    AddName(forms->pmMarks, "PM");
    return forms;
}

struct Settings {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<const RegionalForms>> known;
    std::shared_ptr<const RegionalForms> current;
};

Settings& TheSettings() {
    static Settings settings;
    return settings;
}

std::shared_ptr<const RegionalForms> Current() {
    Settings& s = TheSettings();
    const std::lock_guard lock(s.mutex);
    if (!s.current) {
        s.current = MakeForms(icu::Locale("en", "US"));
    }
    return s.current;
}

}  // namespace

std::string FoldCase(std::string_view text) {
    icu::UnicodeString unicode =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    return ToUtf8(unicode.foldCase());
}

bool SelectRegionalSetting(std::string_view name) {
    const auto locale = KnownLocale(name);
    if (!locale) {
        return false;
    }
    Settings& s = TheSettings();
    const std::lock_guard lock(s.mutex);
    auto& forms = s.known[locale->getBaseName()];
    if (!forms) {
        forms = MakeForms(*locale);
    }
    s.current = forms;
    return true;
}

std::string CurrentRegionalSetting() { return Current()->name; }

std::optional<double> RegionalTextToDouble(std::string_view text) { return ParseRegionalNumber(text, *Current()); }

std::optional<Date> RegionalTextToDate(std::string_view text) { return ParseRegionalDate(text, *Current()); }

}  // namespace quillbank::support

#endif
