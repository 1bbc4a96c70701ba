#pragma once

// The reference count of a served object that deletes itself when the last
// reference goes: AddRef and Release of every object of the server.

#include "com/com_headers.hpp"

namespace quillbank::com {

inline ULONG AddReference(LONG& references) { return static_cast<ULONG>(InterlockedIncrement(&references)); }

template <class Object>
ULONG ReleaseReference(LONG& references, Object* object) {
    const LONG left = InterlockedDecrement(&references);
    if (left == 0) {
        delete object;
    }
    return static_cast<ULONG>(left);
}

}  // namespace quillbank::com
