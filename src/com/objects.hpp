#pragma once

// The creatable classes of the server: each creates a new object and hands
// out the asked-for interface.

#include "com/com_headers.hpp"

namespace quillbank::com {

HRESULT CreateConstants(REFIID iid, void** object);
HRESULT CreateFunctions(REFIID iid, void** object);

}  // namespace quillbank::com
