// Automation dates (days since 1899-12-30, the fraction being the time of
// day) and their text forms.

#include <cmath>
#include <cstdio>

#include "support/conversions.hpp"
#include "support/regional_settings.hpp"

namespace quillbank::support {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// Days from 1970-01-01 back to 1899-12-30.
constexpr std::int64_t kEpochOffset = 25569;
// 0100-01-01 and 9999-12-31.
constexpr double kFirstDay = -657434;
constexpr double kLastDay = 2958465;

// Days since 1970-01-01 of a proleptic Gregorian date.
std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void CivilFromDays(std::int64_t z, std::int64_t& y, unsigned& m, unsigned& d) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    y = static_cast<std::int64_t>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    y += m <= 2;
}

bool IsLeap(std::int64_t y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

unsigned DaysInMonth(std::int64_t y, unsigned m) {
    static constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

// The automation date of a day and a time of day: before 1899-12-30 the time
// is counted away from zero, as the platform does.
Date MakeDate(std::int64_t day, std::int64_t seconds) {
    const double fraction = static_cast<double>(seconds) / kSecondsPerDay;
    return day >= 0 ? static_cast<double>(day) + fraction : static_cast<double>(day) - fraction;
}

// A small reader over the text.
struct Cursor {
    std::string_view text;
    std::size_t pos = 0;

    bool AtEnd() const { return pos >= text.size(); }
    void SkipSpaces() {
        while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t')) ++pos;
    }
    bool Take(char c) {
        if (pos < text.size() && text[pos] == c) {
            ++pos;
            return true;
        }
        return false;
    }
    // 1 to maxDigits decimal digits.
    std::optional<unsigned> Number(int maxDigits, int* digits = nullptr) {
        unsigned value = 0;
        int count = 0;
        while (pos < text.size() && count < maxDigits && text[pos] >= '0' && text[pos] <= '9') {
            value = value * 10 + static_cast<unsigned>(text[pos] - '0');
            ++pos;
            ++count;
        }
        if (digits) *digits = count;
        if (count == 0) return std::nullopt;
        return value;
    }
    bool TakeWord(std::string_view word) {
        if (text.size() - pos < word.size()) return false;
        for (std::size_t i = 0; i < word.size(); ++i) {
            char c = text[pos + i];
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
            if (c != word[i]) return false;
        }
        pos += word.size();
        return true;
    }
};

bool ValidDate(std::int64_t y, unsigned m, unsigned d) {
    return y >= 100 && y <= 9999 && m >= 1 && m <= 12 && d >= 1 && d <= DaysInMonth(y, m);
}

// "h:mm[:ss]" with an optional AM/PM mark; the seconds of the day.
std::optional<std::int64_t> ParseTime(Cursor& c) {
    const auto h = c.Number(2);
    if (!h || !c.Take(':')) return std::nullopt;
    const auto mi = c.Number(2);
    if (!mi || *mi > 59) return std::nullopt;
    unsigned s = 0;
    if (c.Take(':')) {
        const auto sv = c.Number(2);
        if (!sv || *sv > 59) return std::nullopt;
        s = *sv;
    }
    unsigned hour = *h;
    c.SkipSpaces();
    if (c.TakeWord("AM")) {
        if (hour > 12) return std::nullopt;
        if (hour == 12) hour = 0;
    } else if (c.TakeWord("PM")) {
        if (hour > 12) return std::nullopt;
        if (hour != 12) hour += 12;
    } else if (hour > 23) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(hour) * 3600 + *mi * 60 + s;
}

// The forms the library writes: "YYYY-MM-DD[ hh:mm[:ss]]" and "hh:mm[:ss]".
std::optional<Date> InvariantTextToDate(std::string_view text) {
    Cursor c{text};
    c.SkipSpaces();
    const std::size_t start = c.pos;
    std::optional<std::int64_t> day;
    std::int64_t seconds = 0;

    int firstDigits = 0;
    const auto first = c.Number(4, &firstDigits);
    if (!first) return std::nullopt;
    if (c.Take('-')) {
        // YYYY-MM-DD
        const auto m = c.Number(2);
        if (!m || !c.Take('-')) return std::nullopt;
        const auto d = c.Number(2);
        if (!d || firstDigits != 4 || !ValidDate(*first, *m, *d)) return std::nullopt;
        day = DaysFromCivil(*first, *m, *d) + kEpochOffset;
    } else {
        // A time alone.
        c.pos = start;
        const auto t = ParseTime(c);
        if (!t) return std::nullopt;
        seconds = *t;
        c.SkipSpaces();
        if (!c.AtEnd()) return std::nullopt;
        return MakeDate(0, seconds);
    }
    if (!c.Take('T')) {
        c.SkipSpaces();
    }
    if (!c.AtEnd()) {
        const auto t = ParseTime(c);
        if (!t) return std::nullopt;
        seconds = *t;
        c.SkipSpaces();
        if (!c.AtEnd()) return std::nullopt;
    }
    return MakeDate(*day, seconds);
}

}  // namespace

std::optional<Date> CalendarDate(std::int64_t year, unsigned month, unsigned day, std::int64_t seconds) {
    if (!ValidDate(year, month, day)) return std::nullopt;
    return MakeDate(DaysFromCivil(year, month, day) + kEpochOffset, seconds);
}

Date TimeOfDay(std::int64_t seconds) { return MakeDate(0, seconds); }

std::optional<Date> TextToDate(std::string_view text) {
    if (auto date = InvariantTextToDate(text)) {
        return date;
    }
    return RegionalTextToDate(text);
}

std::string DateToText(Date value) {
    // Outside the years 100 to 9999 there is no calendar form.
    if (!std::isfinite(value) || value <= kFirstDay - 1 || value >= kLastDay + 1) {
        return DoubleToText(value);
    }
    // The day is the integer part (towards zero); the time of day is the
    // distance from it, whatever the sign.
    std::int64_t day = static_cast<std::int64_t>(std::trunc(value));
    std::int64_t seconds = std::llround(std::fabs(value - static_cast<double>(day)) * kSecondsPerDay);
    if (seconds >= kSecondsPerDay) {
        seconds -= kSecondsPerDay;
        day += 1;
    }
    char buffer[48];
    const auto h = static_cast<int>(seconds / 3600);
    const auto mi = static_cast<int>(seconds / 60 % 60);
    const auto s = static_cast<int>(seconds % 60);
    if (day == 0) {
        std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", h, mi, s);
        return buffer;
    }
    std::int64_t y;
    unsigned m;
    unsigned d;
    CivilFromDays(day - kEpochOffset, y, m, d);
    if (seconds == 0) {
        std::snprintf(buffer, sizeof buffer, "%04lld-%02u-%02u", static_cast<long long>(y), m, d);
    } else {
        std::snprintf(buffer, sizeof buffer, "%04lld-%02u-%02u %02d:%02d:%02d", static_cast<long long>(y), m, d, h,
                      mi, s);
    }
    return buffer;
}

}  // namespace quillbank::support
