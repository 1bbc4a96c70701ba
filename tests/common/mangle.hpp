#pragma once

// Damaged texts for the tests of bad input: a few bytes of a good text
// deleted, duplicated or replaced.

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace quillbank::testing {

// Makes one to `maxEdits` edits: deletes up to 8 bytes, duplicates up to 16,
// or replaces one byte with one of `replacements`.
inline std::string Mangle(std::string text, std::mt19937& rng, std::string_view replacements, int maxEdits) {
    const int edits = std::uniform_int_distribution<int>(1, maxEdits)(rng);
    for (int i = 0; i < edits && !text.empty(); ++i) {
        const std::size_t at = std::uniform_int_distribution<std::size_t>(0, text.size() - 1)(rng);
        switch (rng() % 3) {
            case 0:
                text.erase(at, 1 + rng() % 8);
                break;
            case 1:
                text.insert(at, text.substr(at, 1 + rng() % 16));
                break;
            default:
                text[at] = replacements[rng() % replacements.size()];
                break;
        }
    }
    return text;
}

}  // namespace quillbank::testing
