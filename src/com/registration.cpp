#include "com/registration.hpp"

#include <string>
#include <vector>

#include "com/module.hpp"
#include "com/registry_transaction.hpp"

namespace quillbank::com {

namespace {

constexpr const wchar_t* kLibraryName = L"Quillbank";
constexpr const wchar_t* kClasses = L"Software\\Classes\\";
// The automation marshaller, the proxy of every dual interface.
constexpr const wchar_t* kAutomationProxy = L"{00020424-0000-0000-C000-000000000046}";
constexpr WORD kMajor = 2;
constexpr WORD kMinor = 0;
constexpr LCID kLocale = 0x0409;

#ifdef _WIN64
constexpr const wchar_t* kPlatform = L"win64";
constexpr SYSKIND kSysKind = SYS_WIN64;
constexpr REGSAM kOtherView = KEY_WOW64_32KEY;
#else
constexpr const wchar_t* kPlatform = L"win32";
constexpr SYSKIND kSysKind = SYS_WIN32;
constexpr REGSAM kOtherView = KEY_WOW64_64KEY;
#endif

HKEY RootOf(RegistrationScope scope) {
    return scope == RegistrationScope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring GuidText(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

std::wstring ProgIdOf(const RegisteredClass& entry) { return std::wstring(kLibraryName) + L"." + entry.name; }

std::wstring TypeLibKey() { return std::wstring(kClasses) + L"TypeLib\\" + GuidText(LIBID_Quillbank); }
std::wstring TypeLibVersionKey() { return TypeLibKey() + L"\\2.0"; }

std::wstring FolderOf(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L'\\');
    return separator == std::wstring::npos ? path : path.substr(0, separator);
}

bool KeyExists(HKEY root, const std::wstring& key, REGSAM view = 0) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(handle);
    return true;
}

std::vector<std::wstring> SubkeysOf(HKEY root, const std::wstring& key) {
    std::vector<std::wstring> names;
    HKEY handle = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) {
        return names;
    }
    wchar_t name[256];
    for (DWORD i = 0;; ++i) {
        DWORD length = 256;
        if (RegEnumKeyExW(handle, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            break;
        }
        names.emplace_back(name, length);
    }
    RegCloseKey(handle);
    return names;
}

void DeleteIfEmpty(HKEY root, const std::wstring& key) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) {
        return;
    }
    DWORD subkeys = 0;
    DWORD values = 0;
    const LONG status = RegQueryInfoKeyW(handle, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values,
                                         nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(handle);
    if (status == ERROR_SUCCESS && subkeys == 0 && values == 0) {
        RegDeleteKeyW(root, key.c_str());
    }
}

// The dual interfaces of the type library (identifier and name).
std::vector<std::pair<GUID, std::wstring>> InterfacesOf(ITypeLib* library) {
    std::vector<std::pair<GUID, std::wstring>> interfaces;
    const UINT count = library->GetTypeInfoCount();
    for (UINT i = 0; i < count; ++i) {
        TYPEKIND kind = TKIND_MAX;
        if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_DISPATCH) {
            continue;
        }
        ITypeInfo* info = nullptr;
        if (FAILED(library->GetTypeInfo(i, &info))) {
            continue;
        }
        TYPEATTR* attributes = nullptr;
        BSTR name = nullptr;
        if (SUCCEEDED(info->GetTypeAttr(&attributes))) {
            info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
            interfaces.emplace_back(attributes->guid, name == nullptr ? L"" : name);
            SysFreeString(name);
            info->ReleaseTypeAttr(attributes);
        }
        info->Release();
    }
    return interfaces;
}

void WriteClass(RegistryTransaction& registry, const RegisteredClass& entry, const std::wstring& path) {
    const std::wstring clsid = GuidText(*entry.clsid);
    const std::wstring progId = ProgIdOf(entry);
    const std::wstring classKey = std::wstring(kClasses) + L"CLSID\\" + clsid;
    registry.SetText(classKey, nullptr, progId);
    registry.SetText(classKey + L"\\InprocServer32", nullptr, path);
    registry.SetText(classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    registry.SetText(classKey + L"\\ProgID", nullptr, progId);
    registry.SetText(classKey + L"\\VersionIndependentProgID", nullptr, progId);
    registry.SetText(classKey + L"\\TypeLib", nullptr, GuidText(LIBID_Quillbank));
    registry.SetText(classKey + L"\\Version", nullptr, L"2.0");
    registry.SetText(std::wstring(kClasses) + progId, nullptr, progId);
    registry.SetText(std::wstring(kClasses) + progId + L"\\CLSID", nullptr, clsid);
}

// The type library's keys under the user's classes, as the platform writes
// them under the machine's: the library version with its platform entry,
// and each dual interface with the automation marshaller.
void WriteUserTypeLibrary(RegistryTransaction& registry, ITypeLib* library, const std::wstring& path) {
    const std::wstring version = TypeLibVersionKey();
    registry.SetText(version, nullptr, kLibraryName);
    registry.SetText(version + L"\\FLAGS", nullptr, L"0");
    registry.SetText(version + L"\\HELPDIR", nullptr, FolderOf(path));
    registry.SetText(version + L"\\409\\" + kPlatform, nullptr, path);
    for (const auto& [iid, name] : InterfacesOf(library)) {
        const std::wstring key = std::wstring(kClasses) + L"Interface\\" + GuidText(iid);
        registry.SetText(key, nullptr, name);
        registry.SetText(key + L"\\ProxyStubClsid", nullptr, kAutomationProxy);
        registry.SetText(key + L"\\ProxyStubClsid32", nullptr, kAutomationProxy);
        registry.SetText(key + L"\\TypeLib", nullptr, GuidText(LIBID_Quillbank));
        registry.SetText(key + L"\\TypeLib", L"Version", L"2.0");
    }
}

void RemoveUserTypeLibrary(HKEY root, ITypeLib* library) {
    const std::wstring version = TypeLibVersionKey();
    const std::wstring locale = version + L"\\409";
    RegDeleteKeyW(root, (locale + L"\\" + kPlatform).c_str());
    DeleteIfEmpty(root, locale);
    // The other build's entry keeps the version and the interfaces.
    for (const std::wstring& subkey : SubkeysOf(root, version)) {
        if (subkey != L"FLAGS" && subkey != L"HELPDIR") {
            return;
        }
    }
    RegDeleteTreeW(root, version.c_str());
    DeleteIfEmpty(root, TypeLibKey());
    if (library != nullptr) {
        for (const auto& interfaceEntry : InterfacesOf(library)) {
            RegDeleteTreeW(root, (std::wstring(kClasses) + L"Interface\\" + GuidText(interfaceEntry.first)).c_str());
        }
    }
}

}  // namespace

bool ScopeOfCommandLine(const wchar_t* commandLine, RegistrationScope* scope) {
    if (commandLine == nullptr || *commandLine == L'\0' || lstrcmpiW(commandLine, L"machine") == 0) {
        *scope = RegistrationScope::Machine;
        return true;
    }
    if (lstrcmpiW(commandLine, L"user") == 0) {
        *scope = RegistrationScope::User;
        return true;
    }
    return false;
}

HRESULT RegisterServer(RegistrationScope scope, const RegisteredClass* classes, std::size_t count) {
    const std::wstring path = ModulePath();
    if (path.empty()) {
        return SELFREG_E_CLASS;
    }
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library))) {
        return SELFREG_E_TYPELIB;
    }
    const HKEY root = RootOf(scope);
    RegistryTransaction registry(root);
    for (std::size_t i = 0; i < count; ++i) {
        WriteClass(registry, classes[i], path);
    }
    if (scope == RegistrationScope::User) {
        WriteUserTypeLibrary(registry, library, path);
    }
    HRESULT hr = registry.Status() == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(registry.Status());
    if (SUCCEEDED(hr) && scope == RegistrationScope::Machine &&
        FAILED(RegisterTypeLib(library, const_cast<LPOLESTR>(path.c_str()), nullptr))) {
        hr = SELFREG_E_TYPELIB;
    }
    if (FAILED(hr)) {
        registry.Rollback();
    }
    library->Release();
    return hr;
}

HRESULT UnregisterServer(RegistrationScope scope, const RegisteredClass* classes, std::size_t count) {
    const HKEY root = RootOf(scope);
    for (std::size_t i = 0; i < count; ++i) {
        const std::wstring classKey = std::wstring(kClasses) + L"CLSID\\" + GuidText(*classes[i].clsid);
        RegDeleteTreeW(root, classKey.c_str());
        // The ProgID is one key for both views: it stays while the other
        // build still has the class.
        if (!KeyExists(root, classKey, kOtherView)) {
            RegDeleteTreeW(root, (std::wstring(kClasses) + ProgIdOf(classes[i])).c_str());
        }
    }
    if (scope == RegistrationScope::Machine) {
        if (KeyExists(root, TypeLibVersionKey() + L"\\409\\" + kPlatform)) {
            UnRegisterTypeLib(LIBID_Quillbank, kMajor, kMinor, kLocale, kSysKind);
        }
        return S_OK;
    }
    ITypeLib* library = nullptr;
    const std::wstring path = ModulePath();
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library))) {
        library = nullptr;
    }
    RemoveUserTypeLibrary(root, library);
    if (library != nullptr) {
        library->Release();
    }
    return S_OK;
}

}  // namespace quillbank::com
