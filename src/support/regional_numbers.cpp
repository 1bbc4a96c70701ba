// Numbers in the forms of a regional setting.
// (The Windows build reads with the platform's own conversions instead.)

#ifndef _WIN32

#include <charconv>
#include <cmath>

#include "support/regional_forms.hpp"
#include "support/regional_text.hpp"

namespace quillbank::support {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::optional<double> ParseRegionalNumber(std::string_view text, const RegionalForms& forms) {
    RegionalCursor c{text};
    // A space-like grouping separator (a no-break space) also matches the
    // other spaces between digits.
    const bool spaceGrouping = IsSpaceLike(forms.groupingSeparator);
    bool negative = false;
    bool signSeen = false;
    bool currencySeen = false;
    bool parenthesis = false;
    auto takeCurrency = [&] {
        for (const auto& symbol : forms.currencySymbols) {
            if (!currencySeen && c.Take(symbol)) {
                currencySeen = true;
                return true;
            }
        }
        return false;
    };
    auto takeSign = [&] {
        if (signSeen) return false;
        if (c.Take("-")) {
            negative = true;
        } else if (!c.Take("+")) {
            return false;
        }
        signSeen = true;
        return true;
    };
    // Before the digits: a sign, a currency sign and an opening parenthesis, in any order.
    for (;;) {
        c.SkipSpaces();
        if (takeCurrency() || takeSign()) continue;
        if (!parenthesis && c.Take("(")) {
            parenthesis = true;
            continue;
        }
        break;
    }
    std::string number;
    bool anyDigit = false;
    // Digits with the grouping separators between them passed over; in the
    // integer part, where the locale groups with a space, spaces too.
    auto takeDigits = [&](bool spacesGroup) {
        while (!c.AtEnd()) {
            if (IsDigit(c.Peek())) {
                number.push_back(c.Peek());
                c.Advance(1);
                anyDigit = true;
            } else if (anyDigit && !forms.groupingSeparator.empty() && c.Take(forms.groupingSeparator)) {
            } else if (anyDigit && spacesGroup && c.SpaceAhead() && c.DigitAfterSpace()) {
                c.SkipSpaces();
            } else {
                break;
            }
        }
    };
    takeDigits(spaceGrouping);
    // Grouping separators are passed over in the fraction too, as the platform does.
    if (c.Take(forms.decimalSeparator)) {
        number.push_back('.');
        takeDigits(false);
    }
    if (!anyDigit) return std::nullopt;
    if (!c.AtEnd() && (c.Peek() == 'e' || c.Peek() == 'E')) {
        number.push_back('e');
        c.Advance(1);
        if (!c.AtEnd() && (c.Peek() == '-' || c.Peek() == '+')) {
            number.push_back(c.Peek());
            c.Advance(1);
        }
        bool exponentDigit = false;
        while (!c.AtEnd() && IsDigit(c.Peek())) {
            number.push_back(c.Peek());
            c.Advance(1);
            exponentDigit = true;
        }
        if (!exponentDigit) return std::nullopt;
    }
    // After the digits: a sign, a currency sign and the closing parenthesis.
    for (;;) {
        c.SkipSpaces();
        if (takeCurrency() || takeSign()) continue;
        if (parenthesis && c.Take(")")) {
            parenthesis = false;
            negative = true;
            continue;
        }
        break;
    }
    if (!c.AtEnd() || parenthesis) return std::nullopt;
    double value = 0;
    const auto [end, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (ec != std::errc() || end != number.data() + number.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

}  // namespace quillbank::support

#endif
