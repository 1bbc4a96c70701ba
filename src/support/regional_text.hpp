#pragma once

// A reader over UTF-8 text for the regional readings: spaces include the
// no-break spaces that some settings group digits with.

#include <cstddef>
#include <string_view>

namespace quillbank::support {

// The length of the space at the start of text (space, tab, U+00A0, U+202F), or 0.
inline std::size_t SpaceLength(std::string_view text) {
    if (text.empty()) return 0;
    if (text[0] == ' ' || text[0] == '\t') return 1;
    if (text.substr(0, 2) == "\xC2\xA0") return 2;
    if (text.substr(0, 3) == "\xE2\x80\xAF") return 3;
    return 0;
}

inline bool IsSpaceLike(std::string_view text) { return !text.empty() && SpaceLength(text) == text.size(); }

struct RegionalCursor {
    std::string_view text;
    std::size_t pos = 0;

    bool AtEnd() const { return pos >= text.size(); }
    char Peek() const { return text[pos]; }
    void Advance(std::size_t n) { pos += n; }
    std::string_view Rest() const { return text.substr(pos); }
    bool Take(std::string_view part) {
        if (part.empty() || Rest().substr(0, part.size()) != part) return false;
        pos += part.size();
        return true;
    }
    bool SpaceAhead() const { return SpaceLength(Rest()) > 0; }
    void SkipSpaces() {
        while (std::size_t n = SpaceLength(Rest())) pos += n;
    }
    // Whether a digit follows the spaces ahead.
    bool DigitAfterSpace() const {
        RegionalCursor copy = *this;
        copy.SkipSpaces();
        return !copy.AtEnd() && copy.Peek() >= '0' && copy.Peek() <= '9';
    }
};

}  // namespace quillbank::support
