#include "suggestion.hpp"

#include <algorithm>
#include <cctype>

namespace quillbank::tool {

std::size_t EditDistance(std::string_view a, std::string_view b) {
    auto same = [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    };
    // Three rows of the table: two back (for swaps), one back, this one.
    std::vector<std::size_t> before(b.size() + 1), previous(b.size() + 1), current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        previous[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t cost = same(a[i - 1], b[j - 1]) ? 0 : 1;
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1])) {
                current[j] = std::min(current[j], before[j - 2] + 1);
            }
        }
        std::swap(before, previous);
        std::swap(previous, current);
    }
    return previous[b.size()];
}

std::optional<std::string> Nearest(std::string_view word, const std::vector<std::string>& candidates) {
    std::optional<std::string> best;
    std::size_t bestDistance = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const auto& candidate : candidates) {
        std::size_t distance = EditDistance(word, candidate);
        if (word.size() >= 2 && candidate.size() > word.size() &&
            EditDistance(word, std::string_view(candidate).substr(0, word.size())) == 0) {
            distance = std::min<std::size_t>(distance, 1);
        }
        if (distance < bestDistance) {
            bestDistance = distance;
            best = candidate;
        }
    }
    return best;
}

}  // namespace quillbank::tool
