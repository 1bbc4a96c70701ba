#pragma once

// Text at the COM boundary: BSTR (UTF-16) outside, UTF-8 inside.

#include <string>
#include <string_view>

#include "com/com_headers.hpp"

namespace quillbank::com {

std::wstring Wide(std::string_view utf8);
// A null BSTR is the empty text.
std::string Utf8(BSTR text);
// A new BSTR for the caller; throws std::bad_alloc when none can be made.
BSTR NewBstr(std::string_view utf8);

}  // namespace quillbank::com
