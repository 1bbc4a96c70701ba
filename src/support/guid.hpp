#pragma once

#include <string>

namespace quillbank::support {

// A new random GUID as 36 upper-case characters without braces; the empty
// GUID when the system's random source fails.
std::string NewGUIDString();
// "00000000-0000-0000-0000-000000000000".
std::string EmptyGUIDString();

}  // namespace quillbank::support
