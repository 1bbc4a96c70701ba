#pragma once

// The small conversions the reading rules apply to what a cursor gives: an
// attribute is an optional text (an owned string through the facade, a view
// into the parse on the fast path), and each conversion takes either.

#include <cstdint>
#include <string>
#include <string_view>

#include <quillbank/enums.hpp>

#include "support/conversions.hpp"

namespace quillbank::detail::reading {

// The attribute's text, or the default when it is absent.
template <class Optional>
std::string TextOr(Optional&& value, std::string_view defaultValue) {
    if (!value) {
        return std::string(defaultValue);
    }
    return std::string(std::forward<Optional>(value).value());
}

template <class Optional>
std::string_view ViewOr(const Optional& value, std::string_view defaultValue) {
    return value ? std::string_view(*value) : defaultValue;
}

template <class Optional>
bool BoolOr(const Optional& value, bool defaultValue) {
    return value ? support::TextToBool(*value).value_or(defaultValue) : defaultValue;
}

template <class Optional>
std::int32_t LongOr(const Optional& value, std::int32_t defaultValue) {
    return value ? support::TextToLong(*value).value_or(defaultValue) : defaultValue;
}

template <class Optional>
double DoubleOr(const Optional& value, double defaultValue) {
    return value ? support::TextToDouble(*value).value_or(defaultValue) : defaultValue;
}

// Whether an element's name, lower-cased as the model lower-cases names
// (UTF-16 folding for names that are not ASCII), is `lowerName`.
bool NameIsFolded(std::string_view name, std::string_view lowerName);

// The property type named by a plain property element's name in any letter
// case ("boolProp", "INTPROP"), or ptNone.
PropertyTypes PropertyTypeOfElement(std::string_view name);

// Multi-line texts are stored with bare line feeds and held with CR LF:
// every LF becomes CR LF, without doubling a CR LF that was there already.
std::string FromStoredLines(std::string&& text);

}  // namespace quillbank::detail::reading
