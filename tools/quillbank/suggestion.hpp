#pragma once

// "Did you mean ...?": the nearest of some names to a word typed wrong.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::tool {

// The number of single-character insertions, deletions, substitutions and
// swaps of neighbours that turn `a` into `b`, letter case ignored.
std::size_t EditDistance(std::string_view a, std::string_view b);

// The candidate nearest to `word`, when it is near enough to be what was
// meant (at most a third of the word's length wrong, and at least one
// character; a candidate that starts with the word counts as near).
std::optional<std::string> Nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace quillbank::tool
