#include "support/folded_keys.hpp"

#include <array>
#include <functional>
#include <string>

#include "support/ascii_folding.hpp"
#include "support/sort.hpp"

namespace quillbank::support {

namespace {

// Names up to this length are folded on the stack.
constexpr std::size_t kShortName = 128;

}  // namespace

std::size_t FoldedHash(std::string_view name) {
    if (name.size() <= kShortName && ascii::IsAscii(name)) {
        std::array<char, kShortName> folded;
        ascii::LowerTo(name, folded.data());
        return std::hash<std::string_view>{}(std::string_view(folded.data(), name.size()));
    }
    return std::hash<std::string_view>{}(LowerCase(name));
}

bool FoldsTo(std::string_view name, std::string_view key) {
    if (ascii::IsAscii(name)) {
        return name.size() == key.size() && ascii::LowersTo(name, key);
    }
    return LowerCase(name) == key;
}

bool SameFolded(std::string_view a, std::string_view b) {
    if (ascii::IsAscii(a) && ascii::IsAscii(b)) {
        return a.size() == b.size() && ascii::EqualLowered(a, b);
    }
    return LowerCase(a) == LowerCase(b);
}

}  // namespace quillbank::support
