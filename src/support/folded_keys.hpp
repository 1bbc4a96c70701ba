#pragma once

// Names matched without regard to case. A name's key is its lower-cased form
// (LowerCase); these routines hash a name's key and compare a name with a key
// without building the key when the name is ASCII, which names almost always
// are.

#include <cstddef>
#include <string_view>

namespace quillbank::support {

// The hash of LowerCase(name), as std::hash<std::string_view> gives it.
std::size_t FoldedHash(std::string_view name);

// Whether LowerCase(name) equals `key`.
bool FoldsTo(std::string_view name, std::string_view key);

// Whether two names have the same key.
bool SameFolded(std::string_view a, std::string_view b);

}  // namespace quillbank::support
