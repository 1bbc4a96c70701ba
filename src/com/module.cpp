#include "com/module.hpp"

#include <atomic>

namespace quillbank::com {

namespace {

HINSTANCE gModule = nullptr;
std::atomic<long> gObjects{0};
std::atomic<long> gLocks{0};
ITypeLib* gTypeLib = nullptr;

}  // namespace

HINSTANCE ModuleHandle() { return gModule; }

void SetModuleHandle(HINSTANCE module) { gModule = module; }

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        const DWORD length = GetModuleFileNameW(gModule, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            return {};
        }
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

void ObjectCreated() { ++gObjects; }

void ObjectDestroyed() { --gObjects; }

void LockServer(bool lock) {
    if (lock) {
        ++gLocks;
    } else {
        --gLocks;
    }
}

bool CanUnload() { return gObjects.load() == 0 && gLocks.load() == 0; }

ITypeInfo* TypeInfoOf(REFIID iid) {
    if (gTypeLib == nullptr) {
        const std::wstring path = ModulePath();
        if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &gTypeLib))) {
            gTypeLib = nullptr;
            return nullptr;
        }
    }
    ITypeInfo* info = nullptr;
    if (FAILED(gTypeLib->GetTypeInfoOfGuid(iid, &info))) {
        return nullptr;
    }
    return info;
}

void ReleaseTypeLibrary() {
    if (gTypeLib != nullptr) {
        gTypeLib->Release();
        gTypeLib = nullptr;
    }
}

}  // namespace quillbank::com
