#include "reading/read_values.hpp"

#include <array>
#include <utility>

#include "support/ascii_folding.hpp"
#include "support/sort.hpp"

namespace quillbank::detail::reading {

namespace {

struct NamedType {
    std::string_view name;
    PropertyTypes type;
};

constexpr std::array<NamedType, 12> kPlainElements{{
    {"boolprop", ptBoolean},
    {"intprop", ptLong},
    {"floatprop", ptDouble},
    {"stringprop", ptString},
    {"dateprop", ptDate},
    {"colorprop", ptColor},
    {"fontprop", ptFont},
    {"rectprop", ptRectangle},
    {"assetprop", ptAsset},
    {"locationprop", ptLocation},
    {"ppcprop", ptPPC},
    {"cecprop", ptCEC},
}};

// Longer than every name looked for.
constexpr std::size_t kShortName = 16;

bool EqualsAsciiFolded(std::string_view name, std::string_view lowerName) {
    if (name.size() != lowerName.size()) {
        return false;
    }
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (support::ascii::Lower(name[i]) != lowerName[i]) {
            return false;
        }
    }
    return true;
}

// The model's lower-cased form of a name that is not ASCII.
std::string Folded(std::string_view name) {
    std::string folded(name);
    support::FoldToLowerCase(folded);
    return folded;
}

}  // namespace

bool NameIsFolded(std::string_view name, std::string_view lowerName) {
    if (support::ascii::IsAscii(name)) {
        return EqualsAsciiFolded(name, lowerName);
    }
    // A name that is not ASCII may still fold to one that is (the Kelvin sign
    // folds to "k", the dotted capital I to "i").
    return Folded(name) == lowerName;
}

PropertyTypes PropertyTypeOfElement(std::string_view name) {
    if (support::ascii::IsAscii(name)) {
        if (name.size() > kShortName) {
            return ptNone;
        }
        char lower[kShortName];
        for (std::size_t i = 0; i < name.size(); ++i) {
            lower[i] = support::ascii::Lower(name[i]);
        }
        const std::string_view folded(lower, name.size());
        for (const NamedType& entry : kPlainElements) {
            if (entry.name == folded) {
                return entry.type;
            }
        }
        return ptNone;
    }
    const std::string folded = Folded(name);
    for (const NamedType& entry : kPlainElements) {
        if (entry.name == folded) {
            return entry.type;
        }
    }
    return ptNone;
}

std::string FromStoredLines(std::string&& text) {
    std::size_t lineFeed = text.find('\n');
    if (lineFeed == std::string::npos) {
        return std::move(text);
    }
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    out.append(text, 0, lineFeed);
    for (std::size_t i = lineFeed; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) {
            out.push_back('\r');
        }
        out.push_back(text[i]);
    }
    return out;
}

}  // namespace quillbank::detail::reading
