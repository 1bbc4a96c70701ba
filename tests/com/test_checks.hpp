#pragma once

// What every Windows test program shares: the Windows headers and the type
// library's header (its identifiers defined here, one program being one
// translation unit), and the check lines: one line per check ("ok ..." or
// "not ok ... -- detail"), then a summary and the sentinel line; the exit
// code is the number of failed checks.

#include <initguid.h>

#ifndef NOGDI
#define NOGDI
#endif
#include <windows.h>
#include <objbase.h>
#include <oleauto.h>
#include <olectl.h>

#include <cstdio>
#include <string>

#include "quillbank_tlb.h"

namespace quillbank_test {

inline int failures = 0;

inline std::string Narrow(const std::wstring& text) {
    std::string out;
    for (wchar_t c : text) {
        out += c < 128 ? static_cast<char>(c) : '?';
    }
    return out;
}

inline void Check(bool passed, const std::string& name, const std::string& detail = "") {
    if (passed) {
        std::printf("ok %s\n", name.c_str());
    } else {
        ++failures;
        std::printf("not ok %s -- %s\n", name.c_str(), detail.c_str());
    }
}
inline void Check(bool passed, const std::string& name, const std::wstring& detail) {
    Check(passed, name, Narrow(detail));
}

inline std::string HexText(unsigned long value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lX", value);
    return text;
}

// Starts COM in a single-threaded apartment, as hosts do; false (with a
// failed check line) when it cannot.
inline bool StartCom() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        std::printf("not ok COM starts\n");
        return false;
    }
    return true;
}

// Stops COM and prints the summary and the sentinel; returns the exit code.
inline int Finish(const std::string& title) {
    CoUninitialize();
    std::printf("# %s: %d failed\n", title.c_str(), failures);
    std::printf("END-OF-SUITE\n");
    return failures;
}

}  // namespace quillbank_test
