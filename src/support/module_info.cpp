#include "support/module_info.hpp"

#include <cstdio>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#endif

#include "support/ansi.hpp"
#include "support/text.hpp"

namespace quillbank::support {

namespace {

#if !defined(_WIN32)
void Anchor() {}
#endif

}  // namespace

std::string ModuleFileName() {
#if defined(_WIN32)
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCSTR>(&ModuleFileName), &module)) {
        return {};
    }
    std::string buffer(2049, '\0');
    const DWORD length = GetModuleFileNameA(module, buffer.data(), 2048);
    buffer.resize(length);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(buffer.data());
    return TrimAtNull(AnsiToUtf8(std::span<const std::uint8_t>(bytes, buffer.size())));
#else
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&Anchor), &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    // The program's own entry may be given relative to the working folder.
    char resolved[PATH_MAX];
    if (realpath(info.dli_fname, resolved) != nullptr) {
        return resolved;
    }
    if (realpath("/proc/self/exe", resolved) != nullptr) {
        return resolved;
    }
    return info.dli_fname;
#endif
}

#if defined(_WIN32)
bool ModuleVersion(int& major, int& minor, int& revision, std::string& comments) {
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCSTR>(&ModuleFileName), &module)) {
        return false;
    }
    HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16) /* RT_VERSION */);
    HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(module, found);
    const void* data = loaded == nullptr ? nullptr : LockResource(loaded);
    if (data == nullptr) {
        return false;
    }
    // VerQueryValueW works on a writable copy of the resource.
    const DWORD size = SizeofResource(module, found);
    std::string copy(static_cast<const char*>(data), size);
    copy.resize(size * 2);
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(copy.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) || fixed == nullptr) {
        return false;
    }
    major = static_cast<int>(HIWORD(fixed->dwFileVersionMS));
    minor = static_cast<int>(LOWORD(fixed->dwFileVersionMS));
    revision = static_cast<int>(LOWORD(fixed->dwFileVersionLS));
    comments.clear();
    wchar_t* text = nullptr;
    if (VerQueryValueW(copy.data(), L"\\StringFileInfo\\040904b0\\Comments", reinterpret_cast<void**>(&text),
                       &length) &&
        text != nullptr && length > 0) {
        std::u16string units(reinterpret_cast<const char16_t*>(text), length);
        comments = TrimAtNull(Utf16ToUtf8(units));
    }
    return true;
}
#endif

std::string ModuleFolder() {
    const std::string file = ModuleFileName();
    const auto slash = file.find_last_of("/\\");
    if (slash == std::string::npos) {
        return {};
    }
    return slash == 0 ? file.substr(0, 1) : file.substr(0, slash);
}

std::string VersionText(int major, int minor, int revision, const std::string& comments) {
    char head[64];
    std::snprintf(head, sizeof head, "%d.%d (Build %04d)", major, minor, revision);
    std::string text = std::string(head) + "  " + comments;
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

}  // namespace quillbank::support
