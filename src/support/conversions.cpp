#include "support/conversions.hpp"

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "support/regional_settings.hpp"

namespace quillbank::support {

namespace {

bool IsSpace(char c) { return c == ' ' || c == '\t'; }

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        char x = a[i];
        char y = b[i];
        if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
        if (x != y) {
            return false;
        }
    }
    return true;
}

// "&H" hexadecimal or "&O" octal: up to 32 bits, taken as a signed 32-bit value.
std::optional<std::int32_t> RadixToLong(std::string_view text) {
    if (text.size() < 3 || text[0] != '&') {
        return std::nullopt;
    }
    const char kind = text[1];
    const int base = (kind == 'H' || kind == 'h') ? 16 : (kind == 'O' || kind == 'o') ? 8 : 0;
    if (base == 0) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (char c : text.substr(2)) {
        int digit;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        } else {
            return std::nullopt;
        }
        if (digit >= base) {
            return std::nullopt;
        }
        value = value * static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(digit);
        if (value > 0xFFFFFFFFull) {
            return std::nullopt;
        }
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

std::optional<double> InvariantTextToDouble(std::string_view text) {
    text = Trim(text);
    if (text.empty()) {
        return std::nullopt;
    }
    if (text[0] == '&') {
        if (auto v = RadixToLong(text)) {
            return static_cast<double>(*v);
        }
        return std::nullopt;
    }
    // The forms written for values that are not finite numbers.
    if (text == "NaN") {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (text == "INF") {
        return std::numeric_limits<double>::infinity();
    }
    if (text == "-INF") {
        return -std::numeric_limits<double>::infinity();
    }
    std::string_view body = text;
    bool negative = false;
    if (body[0] == '+' || body[0] == '-') {
        negative = body[0] == '-';
        body.remove_prefix(1);
    }
    // Only digits, one point and an exponent: no "inf", "nan" or hexadecimal here.
    if (body.empty() || !((body[0] >= '0' && body[0] <= '9') || body[0] == '.')) {
        return std::nullopt;
    }
    double value = 0;
    const auto [end, ec] = std::from_chars(body.data(), body.data() + body.size(), value, std::chars_format::general);
    if (ec != std::errc() || end != body.data() + body.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

}  // namespace

std::optional<double> TextToDouble(std::string_view text) {
    if (auto value = InvariantTextToDouble(text)) {
        return value;
    }
    // Hexadecimal and octal forms are the same in every setting.
    if (const auto trimmed = Trim(text); !trimmed.empty() && trimmed[0] == '&') {
        return std::nullopt;
    }
    return RegionalTextToDouble(text);
}

namespace {

// The value of an integer in the form the library writes ("0", or an
// optional '-' and up to nine digits without a leading zero), which every
// regional setting reads as itself; nothing for any other text.
std::optional<std::int32_t> WrittenLong(std::string_view text) {
    const bool negative = !text.empty() && text[0] == '-';
    const std::string_view digits = negative ? text.substr(1) : text;
    if (digits.empty() || digits.size() > 9 || (digits[0] == '0' && (digits.size() > 1 || negative))) {
        return std::nullopt;
    }
    std::int32_t value = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + (c - '0');
    }
    return negative ? -value : value;
}

}  // namespace

std::optional<std::int32_t> TextToLong(std::string_view text) {
    if (const auto written = WrittenLong(text)) {
        return written;
    }
    text = Trim(text);
    if (!text.empty() && text[0] == '&') {
        return RadixToLong(text);
    }
    const auto value = TextToDouble(text);
    if (!value || std::isnan(*value)) {
        return std::nullopt;
    }
    // Half-way values go to the even neighbour.
    const double rounded = std::nearbyint(*value);
    if (rounded < -2147483648.0 || rounded > 2147483647.0) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(rounded);
}

std::optional<bool> TextToBool(std::string_view text) {
    text = Trim(text);
    if (EqualsIgnoringCase(text, "true")) {
        return true;
    }
    if (EqualsIgnoringCase(text, "false")) {
        return false;
    }
    const auto value = TextToDouble(text);
    if (!value || std::isnan(*value)) {
        return std::nullopt;
    }
    return *value != 0;
}

std::string VariantToText(const AttributeValue& value, std::string_view defaultValue) {
    return value ? *value : std::string(defaultValue);
}

std::string VariantToText(AttributeValue&& value, std::string_view defaultValue) {
    return value ? std::move(*value) : std::string(defaultValue);
}

bool VariantToBool(const AttributeValue& value, bool defaultValue) {
    if (!value) {
        return defaultValue;
    }
    return TextToBool(*value).value_or(defaultValue);
}

std::int32_t VariantToLong(const AttributeValue& value, std::int32_t defaultValue) {
    if (!value) {
        return defaultValue;
    }
    return TextToLong(*value).value_or(defaultValue);
}

double VariantToDouble(const AttributeValue& value, double defaultValue) {
    if (!value) {
        return defaultValue;
    }
    return TextToDouble(*value).value_or(defaultValue);
}

std::string LongToText(std::int32_t value) { return std::to_string(value); }

std::string DoubleToText(double value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value > 0 ? "INF" : "-INF";
    }
    char buffer[64];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, ec == std::errc() ? end : buffer);
}

std::string BoolToText(bool value) { return value ? "true" : "false"; }

std::string TypedBoolToText(bool value) { return value ? "-1" : "0"; }

}  // namespace quillbank::support
