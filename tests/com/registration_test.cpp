// Registration and unregistration of the server named by the first argument
// (a build of this program's bitness), per machine and per user, through the
// entry points a setup program or regsvr32 calls. Meant for a prefix where
// the server is not registered otherwise. Each case compares a snapshot of
// every key of ours (both registry views, machine and user classes) with the
// one expected: registration complete, or the registry as it was.
// One line per check, then the sentinel line; the exit code is the number of
// failed checks. With --list instead, it prints every key of ours there is.

#include "test_checks.hpp"

#include <vector>

namespace {

using quillbank_test::Narrow;

const std::string kBits = std::to_string(sizeof(void*) * 8) + "-bit";

void Check(bool passed, const std::string& name, const std::string& detail = "") {
    quillbank_test::Check(passed, name + " (" + kBits + ")", detail);
}

std::string Hex(HRESULT hr) { return quillbank_test::HexText(static_cast<unsigned long>(hr)); }

std::wstring GuidText(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

const CLSID* const kClassIds[] = {&CLSID_Constants,      &CLSID_Functions,           &CLSID_PersistedPropertyCollection,
                                  &CLSID_ChildElement,   &CLSID_ChildElementCollection, &CLSID_Storyboard,
                                  &CLSID_StoryboardCollection, &CLSID_LessonMap,     &CLSID_LessonMapCollection,
                                  &CLSID_Lesson};
const wchar_t* const kProgIds[] = {L"Quillbank.Constants",      L"Quillbank.Functions",
                                   L"Quillbank.PersistedPropertyCollection", L"Quillbank.ChildElement",
                                   L"Quillbank.ChildElementCollection", L"Quillbank.Storyboard",
                                   L"Quillbank.StoryboardCollection", L"Quillbank.LessonMap",
                                   L"Quillbank.LessonMapCollection", L"Quillbank.Lesson"};
const IID* const kInterfaceIds[] = {&IID__Constants,    &IID__Functions,           &IID__PersistedPropertyCollection,
                                    &IID__ChildElement, &IID__ChildElementCollection, &IID__Storyboard,
                                    &IID__StoryboardCollection, &IID__LessonMap, &IID__LessonMapCollection,
                                    &IID__Lesson};

// Every key of ours and its values, one line each, below `key` of `root`.
void Dump(HKEY root, const std::wstring& key, REGSAM view, const std::string& prefix, std::string& out) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) {
        return;
    }
    out += prefix + Narrow(key) + "\n";
    wchar_t name[512];
    BYTE data[2048];
    for (DWORD i = 0;; ++i) {
        DWORD nameLength = 512;
        DWORD size = sizeof data;
        DWORD type = 0;
        if (RegEnumValueW(handle, i, name, &nameLength, nullptr, &type, data, &size) != ERROR_SUCCESS) {
            break;
        }
        const std::wstring value = type == REG_SZ ? std::wstring(reinterpret_cast<wchar_t*>(data), size / 2) : L"?";
        out += prefix + Narrow(key) + " [" + Narrow(std::wstring(name, nameLength)) + "] = " +
               Narrow(value.c_str()) + "\n";
    }
    std::vector<std::wstring> subkeys;
    for (DWORD i = 0;; ++i) {
        DWORD nameLength = 512;
        if (RegEnumKeyExW(handle, i, name, &nameLength, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            break;
        }
        subkeys.emplace_back(name, nameLength);
    }
    RegCloseKey(handle);
    for (const std::wstring& subkey : subkeys) {
        Dump(root, key + L"\\" + subkey, view, prefix, out);
    }
}

struct Snapshot {
    std::string machine;
    std::string user;
    bool operator==(const Snapshot& other) const { return machine == other.machine && user == other.user; }
};

Snapshot Take() {
    Snapshot snapshot;
    const std::wstring classes = L"Software\\Classes\\";
    std::vector<std::wstring> keys;
    for (const CLSID* clsid : kClassIds) {
        keys.push_back(classes + L"CLSID\\" + GuidText(*clsid));
    }
    for (const wchar_t* progId : kProgIds) {
        keys.push_back(classes + progId);
    }
    for (const IID* iid : kInterfaceIds) {
        keys.push_back(classes + L"Interface\\" + GuidText(*iid));
    }
    keys.push_back(classes + L"TypeLib\\" + GuidText(LIBID_Quillbank));
    for (const auto& [view, name] : {std::pair{KEY_WOW64_64KEY, "64: "}, std::pair{KEY_WOW64_32KEY, "32: "}}) {
        for (const std::wstring& key : keys) {
            Dump(HKEY_LOCAL_MACHINE, key, view, name, snapshot.machine);
            Dump(HKEY_CURRENT_USER, key, view, name, snapshot.user);
        }
    }
    return snapshot;
}

std::string Difference(const Snapshot& want, const Snapshot& got) {
    return "expected machine:\n" + want.machine + "user:\n" + want.user + "got machine:\n" + got.machine +
           "user:\n" + got.user;
}

std::wstring Text(HKEY root, const std::wstring& key, const wchar_t* name) {
    wchar_t buffer[1024] = {};
    DWORD size = sizeof buffer;
    if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS) {
        return L"(missing)";
    }
    return buffer;
}

using EntryPoint = HRESULT(STDAPICALLTYPE*)();
using InstallEntryPoint = HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR);

struct Server {
    EntryPoint registerServer = nullptr;
    EntryPoint unregisterServer = nullptr;
    InstallEntryPoint install = nullptr;
};

// Every class key names this server, in this program's view of `root`.
void CheckRegisteredIn(HKEY root, const std::wstring& path, const std::string& label) {
    bool all = true;
    std::string detail;
    for (std::size_t i = 0; i < 10; ++i) {
        const std::wstring key = L"Software\\Classes\\CLSID\\" + GuidText(*kClassIds[i]);
        const bool fine = Text(root, key + L"\\InprocServer32", nullptr) == path &&
                          Text(root, key + L"\\InprocServer32", L"ThreadingModel") == L"Apartment" &&
                          Text(root, key + L"\\ProgID", nullptr) == kProgIds[i] &&
                          Text(root, L"Software\\Classes\\" + std::wstring(kProgIds[i]) + L"\\CLSID", nullptr) ==
                              GuidText(*kClassIds[i]);
        all = all && fine;
        if (!fine) {
            detail += Narrow(kProgIds[i]) + " ";
        }
    }
    const std::wstring platform = sizeof(void*) == 8 ? L"win64" : L"win32";
    const std::wstring typeLib =
        L"Software\\Classes\\TypeLib\\" + GuidText(LIBID_Quillbank) + L"\\2.0\\409\\" + platform;
    all = all && Text(root, typeLib, nullptr) == path;
    Check(all, label, detail + Narrow(Text(root, typeLib, nullptr)));
}

// A volatile key cannot have a lasting subkey: registering under it fails
// half-way, after the classes before it were written.
bool MakeBlockingKey(HKEY root, const std::wstring& key) {
    HKEY handle = nullptr;
    const LONG status = RegCreateKeyExW(root, key.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                                        &handle, nullptr);
    if (status == ERROR_SUCCESS) {
        RegCloseKey(handle);
    }
    return status == ERROR_SUCCESS;
}

void CheckScope(const Server& server, bool user, const std::wstring& path) {
    const std::string scope = user ? "per user" : "per machine";
    const HKEY root = user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    const auto doRegister = [&] { return user ? server.install(TRUE, L"user") : server.registerServer(); };
    const auto doUnregister = [&] { return user ? server.install(FALSE, L"user") : server.unregisterServer(); };

    const Snapshot clean = Take();
    HRESULT hr = doUnregister();
    Check(hr == S_OK && Take() == clean, "unregistering " + scope + " what was never registered changes nothing",
          Hex(hr));

    hr = doRegister();
    const Snapshot registered = Take();
    Check(hr == S_OK, "registering " + scope + " succeeds", Hex(hr));
    CheckRegisteredIn(root, path, "registering " + scope + " writes every class and the type library there");
    Check(user ? registered.machine == clean.machine : registered.user == clean.user,
          "registering " + scope + " writes nothing in the other scope", Difference(clean, registered));

    hr = doRegister();
    Check(hr == S_OK && Take() == registered, "registering " + scope + " twice gives the same keys", Hex(hr));

    hr = doUnregister();
    Check(hr == S_OK && Take() == clean, "unregistering " + scope + " removes exactly what was written",
          Hex(hr) + "\n" + Difference(clean, Take()));
    hr = doUnregister();
    Check(hr == S_OK && Take() == clean, "unregistering " + scope + " twice changes nothing", Hex(hr));

    // One class key that cannot be written: the last class's ProgID.
    const std::wstring blocked = L"Software\\Classes\\Quillbank.Lesson";
    if (!MakeBlockingKey(root, blocked)) {
        Check(false, "a volatile key can be made " + scope);
        return;
    }
    const Snapshot blockedState = Take();
    hr = doRegister();
    Check(hr == HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE),
          "a registration " + scope + " that fails half-way reports the registry's error", Hex(hr));
    Check(Take() == blockedState, "a registration " + scope + " that fails half-way leaves the registry as it was",
          Difference(blockedState, Take()));
    RegDeleteTreeW(root, blocked.c_str());
    Check(Take() == clean, "the blocking key is gone again " + scope);
}

void CheckBothScopes(const Server& server, const std::wstring& path) {
    const Snapshot clean = Take();
    HRESULT machine = server.registerServer();
    const Snapshot machineOnly = Take();
    HRESULT user = server.install(TRUE, L"user");
    Check(machine == S_OK && user == S_OK, "registering per user after per machine succeeds", Hex(user));
    CheckRegisteredIn(HKEY_LOCAL_MACHINE, path, "after both, the machine registration is complete");
    CheckRegisteredIn(HKEY_CURRENT_USER, path, "after both, the user registration is complete");
    user = server.install(FALSE, L"user");
    Check(user == S_OK && Take() == machineOnly, "unregistering per user leaves the machine registration",
          Difference(machineOnly, Take()));
    machine = server.unregisterServer();
    Check(machine == S_OK && Take() == clean, "then unregistering per machine leaves nothing");

    user = server.install(TRUE, L"user");
    const Snapshot userOnly = Take();
    machine = server.registerServer();
    Check(machine == S_OK && user == S_OK, "registering per machine after per user succeeds", Hex(machine));
    CheckRegisteredIn(HKEY_LOCAL_MACHINE, path, "after both in reverse, the machine registration is complete");
    CheckRegisteredIn(HKEY_CURRENT_USER, path, "after both in reverse, the user registration is complete");
    machine = server.unregisterServer();
    Check(machine == S_OK && Take() == userOnly, "unregistering per machine leaves the user registration",
          Difference(userOnly, Take()));
    user = server.install(FALSE, L"user");
    Check(user == S_OK && Take() == clean, "then unregistering per user leaves nothing");

    const HRESULT wrong = server.install(TRUE, L"everyone");
    Check(wrong == E_INVALIDARG && Take() == clean, "DllInstall refuses a scope it does not know", Hex(wrong));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::printf("usage: registration_test SERVER.dll | --list\n");
        return 1;
    }
    const std::string pathText = argv[1];
    // The keys of ours that exist now, in both views and both scopes, for
    // the scripts that check that nothing of ours is left.
    if (pathText == "--list") {
        const Snapshot now = Take();
        std::printf("%s%s", now.machine.c_str(), now.user.c_str());
        return 0;
    }
    const std::wstring path(pathText.begin(), pathText.end());
    if (!quillbank_test::StartCom()) {
        return 1;
    }
    HMODULE module = LoadLibraryW(path.c_str());
    Check(module != nullptr, "the server loads");
    if (module != nullptr) {
        Server server;
        server.registerServer =
            reinterpret_cast<EntryPoint>(reinterpret_cast<void*>(GetProcAddress(module, "DllRegisterServer")));
        server.unregisterServer =
            reinterpret_cast<EntryPoint>(reinterpret_cast<void*>(GetProcAddress(module, "DllUnregisterServer")));
        server.install =
            reinterpret_cast<InstallEntryPoint>(reinterpret_cast<void*>(GetProcAddress(module, "DllInstall")));
        Check(server.registerServer != nullptr && server.unregisterServer != nullptr && server.install != nullptr,
              "the server exports DllRegisterServer, DllUnregisterServer and DllInstall undecorated");
        if (server.registerServer != nullptr && server.unregisterServer != nullptr && server.install != nullptr) {
            // Start from nothing of ours.
            server.unregisterServer();
            server.install(FALSE, L"user");
            CheckScope(server, false, path);
            CheckScope(server, true, path);
            CheckBothScopes(server, path);
        }
    }
    return quillbank_test::Finish("registration (" + kBits + ")");
}
