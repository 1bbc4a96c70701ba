#pragma once

// Failures as hosts see them: every error carries its number, source and
// description through IErrorInfo, set before the failing status is returned.
// A number n between 1 and 65535 is the host's error n, status 0x800A0000 + n
// (so VBScript's Err.Number shows n); any other number is a status of its own
// (0x800403E9 stays as it is; an error of MSXML keeps MSXML's status).

#include <string_view>

#include "com/com_headers.hpp"

namespace quillbank::com {

HRESULT StatusOf(long number);

// Sets the error object of the calling thread and returns the status.
HRESULT RaiseError(REFIID iid, long number, std::string_view source, std::string_view description);

// Turns the exception in flight into an error object and a status: the
// library's errors with their own number, source and description; running
// out of memory as E_OUTOFMEMORY; anything else as E_FAIL.
HRESULT ReportCurrentException(REFIID iid);

// Runs `body`, returning S_OK or the reported failure.
template <class Body>
HRESULT Guard(REFIID iid, Body&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return ReportCurrentException(iid);
    }
}

// For a member with an out-parameter: a null `result` is E_POINTER;
// otherwise the result is cleared before `body` runs under Guard.
template <class T, class Body>
HRESULT Out(REFIID iid, T* result, Body&& body) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = T{};
    return Guard(iid, body);
}

}  // namespace quillbank::com
