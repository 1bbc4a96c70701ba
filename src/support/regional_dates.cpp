// Dates and times in the forms of a regional setting, read as leniently as
// the host platform's own date conversion reads them.
// (The Windows build reads with the platform's own conversions instead.)

#ifndef _WIN32

#include <array>
#include <chrono>
#include <vector>

#include "support/conversions.hpp"
#include "support/regional_forms.hpp"
#include "support/regional_text.hpp"

namespace quillbank::support {

namespace {

enum class TokenKind { Number, Month, Am, Pm, Colon };

struct Token {
    TokenKind kind;
    unsigned value = 0;
    int digits = 0;
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Characters that part the fields of a date: spaces, commas, "/" and "-",
// and "." where the setting's short dates use it (elsewhere "." parts the
// fields of a time, like ":").
std::size_t SeparatorLength(std::string_view rest, const RegionalForms& forms) {
    if (const std::size_t n = SpaceLength(rest)) return n;
    const char c = rest[0];
    if (c == '/' || c == '-' || c == ',' || (c == '.' && forms.dateSeparator == ".")) return 1;
    return 0;
}

bool IsTimeSeparator(char c, const RegionalForms& forms) { return c == ':' || (c == '.' && forms.dateSeparator != "."); }

bool Contains(const std::vector<std::string>& names, const std::string& word) {
    for (const auto& name : names) {
        if (name == word) return true;
    }
    return false;
}

// A word of the text: a month, a half-day mark or a day name (ignored).
bool ReadWord(const std::string& word, const RegionalForms& forms, std::vector<Token>& tokens) {
    for (const auto& [name, month] : forms.monthNames) {
        if (name == word) {
            tokens.push_back({TokenKind::Month, static_cast<unsigned>(month + 1), 0});
            return true;
        }
    }
    if (Contains(forms.amMarks, word)) {
        tokens.push_back({TokenKind::Am});
        return true;
    }
    if (Contains(forms.pmMarks, word)) {
        tokens.push_back({TokenKind::Pm});
        return true;
    }
    return Contains(forms.dayNames, word);
}

bool Tokenize(std::string_view text, const RegionalForms& forms, std::vector<Token>& tokens) {
    RegionalCursor c{text};
    c.SkipSpaces();
    // "/", "-" and "." part two fields: the text neither starts nor ends with one.
    std::string_view trimmed = c.Rest();
    while (!trimmed.empty() && (trimmed.back() == ' ' || trimmed.back() == '\t')) {
        trimmed.remove_suffix(1);
    }
    if (trimmed.empty()) return false;
    for (char edge : {trimmed.front(), trimmed.back()}) {
        if (edge == '/' || edge == '-' || edge == '.') return false;
    }
    while (!c.AtEnd()) {
        if (const std::size_t n = SeparatorLength(c.Rest(), forms)) {
            c.Advance(n);
        } else if (IsTimeSeparator(c.Peek(), forms)) {
            tokens.push_back({TokenKind::Colon});
            c.Advance(1);
        } else if (IsDigit(c.Peek())) {
            unsigned value = 0;
            int digits = 0;
            while (!c.AtEnd() && IsDigit(c.Peek())) {
                if (++digits > 9) return false;
                value = value * 10 + static_cast<unsigned>(c.Peek() - '0');
                c.Advance(1);
            }
            tokens.push_back({TokenKind::Number, value, digits});
        } else if (IsAsciiLetter(c.Peek()) || static_cast<unsigned char>(c.Peek()) >= 0x80) {
            const std::size_t start = c.pos;
            while (!c.AtEnd() && (IsAsciiLetter(c.Peek()) || static_cast<unsigned char>(c.Peek()) >= 0x80) &&
                   SeparatorLength(c.Rest(), forms) == 0) {
                c.Advance(1);
            }
            if (c.pos == start) return false;
            if (!ReadWord(FoldCase(text.substr(start, c.pos - start)), forms, tokens)) return false;
            // The full stop of an abbreviated name belongs to the name.
            c.Take(".");
        } else {
            return false;
        }
    }
    return true;
}

// Years below 100 are two-digit years: 00 to 49 are this century's, 50 to
// 99 the last one's, the window of the platform's default calendar settings.
std::int64_t ExpandYear(const Token& year) {
    if (year.value < 100) {
        return year.value < 50 ? 2000 + year.value : 1900 + year.value;
    }
    return year.value;
}

// A day and month without a year fall in the current year.
std::int64_t CurrentYear() {
    const std::chrono::year_month_day today{std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now())};
    return static_cast<int>(today.year());
}

// The orders of year, month and day tried for three fields: the setting's
// own first, then the others the platform falls back to.
enum class Field { Year, Month, Day };
using FieldOrder = std::array<Field, 3>;

std::array<FieldOrder, 4> OrdersToTry(DateOrder order) {
    constexpr FieldOrder mdy{Field::Month, Field::Day, Field::Year};
    constexpr FieldOrder dmy{Field::Day, Field::Month, Field::Year};
    constexpr FieldOrder ymd{Field::Year, Field::Month, Field::Day};
    constexpr FieldOrder ydm{Field::Year, Field::Day, Field::Month};
    switch (order) {
        case DateOrder::DayMonthYear:
            return {dmy, mdy, ymd, ydm};
        case DateOrder::YearMonthDay:
            return {ymd, mdy, dmy, ydm};
        case DateOrder::MonthDayYear:
        default:
            return {mdy, ymd, dmy, ydm};
    }
}

// The day of three fields in the order of the text; a month given by name
// must stand where the order puts the month.
std::optional<Date> DateOfThree(const std::array<Token, 3>& fields, DateOrder order, std::int64_t seconds) {
    for (const FieldOrder& fieldOrder : OrdersToTry(order)) {
        const Token* year = nullptr;
        const Token* month = nullptr;
        const Token* day = nullptr;
        bool fits = true;
        for (std::size_t i = 0; i < 3; ++i) {
            const Token& t = fields[i];
            switch (fieldOrder[i]) {
                case Field::Year: year = &t; break;
                case Field::Month: month = &t; break;
                case Field::Day: day = &t; break;
            }
            if (t.kind == TokenKind::Month && fieldOrder[i] != Field::Month) fits = false;
        }
        if (!fits) continue;
        if (auto date = CalendarDate(ExpandYear(*year), month->value, day->value, seconds)) return date;
    }
    return std::nullopt;
}

// The day of two fields: day and month of the current year in the setting's
// order or the other, else month and year, else year and month (the first of
// that month).
std::optional<Date> DateOfTwo(const Token& a, const Token& b, DateOrder order, std::int64_t seconds) {
    const std::int64_t year = CurrentYear();
    const bool dayFirst = order == DateOrder::DayMonthYear;
    std::optional<Date> date;
    if (a.kind == TokenKind::Month || b.kind == TokenKind::Month) {
        const Token& month = a.kind == TokenKind::Month ? a : b;
        const Token& other = a.kind == TokenKind::Month ? b : a;
        if (other.kind == TokenKind::Month) return std::nullopt;
        date = CalendarDate(year, month.value, other.value, seconds);
        if (!date) date = CalendarDate(ExpandYear(other), month.value, 1, seconds);
        return date;
    }
    date = dayFirst ? CalendarDate(year, b.value, a.value, seconds) : CalendarDate(year, a.value, b.value, seconds);
    if (!date) {
        date = dayFirst ? CalendarDate(year, a.value, b.value, seconds) : CalendarDate(year, b.value, a.value, seconds);
    }
    if (!date) date = CalendarDate(ExpandYear(b), a.value, 1, seconds);
    if (!date) date = CalendarDate(ExpandYear(a), b.value, 1, seconds);
    return date;
}

}  // namespace

std::optional<Date> ParseRegionalDate(std::string_view text, const RegionalForms& forms) {
    std::vector<Token> tokens;
    if (!Tokenize(text, forms, tokens) || tokens.empty()) return std::nullopt;

    // The time: hours, minutes and seconds parted by colons, or an hour with a
    // half-day mark; the mark may stand before or after it.
    std::optional<std::int64_t> seconds;
    int halfDay = 0;  // 1 morning, 2 afternoon
    std::vector<Token> dateTokens;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        if (t.kind == TokenKind::Am || t.kind == TokenKind::Pm) {
            if (halfDay != 0) return std::nullopt;
            halfDay = t.kind == TokenKind::Am ? 1 : 2;
            continue;
        }
        const bool timeStarts = t.kind == TokenKind::Number && i + 1 < tokens.size() &&
                                (tokens[i + 1].kind == TokenKind::Colon || tokens[i + 1].kind == TokenKind::Am ||
                                 tokens[i + 1].kind == TokenKind::Pm);
        if (timeStarts) {
            if (seconds) return std::nullopt;
            unsigned parts[3] = {t.value, 0, 0};
            std::size_t count = 1;
            while (count < 3 && i + 2 < tokens.size() && tokens[i + 1].kind == TokenKind::Colon &&
                   tokens[i + 2].kind == TokenKind::Number) {
                parts[count++] = tokens[i + 2].value;
                i += 2;
            }
            if (i + 1 < tokens.size() && tokens[i + 1].kind == TokenKind::Colon) return std::nullopt;
            if (parts[1] > 59 || parts[2] > 59) return std::nullopt;
            seconds = static_cast<std::int64_t>(parts[0]) * 3600 + parts[1] * 60 + parts[2];
            continue;
        }
        if (t.kind == TokenKind::Colon) return std::nullopt;
        dateTokens.push_back(t);
    }
    if (halfDay != 0) {
        if (!seconds) return std::nullopt;
        std::int64_t hour = *seconds / 3600;
        if (hour > 12) return std::nullopt;
        if (hour == 12) hour = 0;
        if (halfDay == 2) hour += 12;
        seconds = hour * 3600 + *seconds % 3600;
    } else if (seconds && *seconds / 3600 > 23) {
        return std::nullopt;
    }
    const std::int64_t time = seconds.value_or(0);

    switch (dateTokens.size()) {
        case 0:
            if (!seconds) return std::nullopt;
            return TimeOfDay(time);
        case 1:
            // A month name alone is the first of that month this year; a number alone is no date.
            if (dateTokens[0].kind != TokenKind::Month) return std::nullopt;
            return CalendarDate(CurrentYear(), dateTokens[0].value, 1, time);
        case 2:
            return DateOfTwo(dateTokens[0], dateTokens[1], forms.dateOrder, time);
        case 3: {
            int months = 0;
            for (const Token& t : dateTokens) months += t.kind == TokenKind::Month ? 1 : 0;
            if (months > 1) return std::nullopt;
            return DateOfThree({dateTokens[0], dateTokens[1], dateTokens[2]}, forms.dateOrder, time);
        }
        default:
            return std::nullopt;
    }
}

}  // namespace quillbank::support

#endif
