// The four in-process server entry points, the class factories and the
// registration of the creatable classes.

#include <new>
#include <string>

#include "com/module.hpp"
#include "com/objects.hpp"

namespace quillbank::com {

namespace {

using CreateFunction = HRESULT (*)(REFIID, void**);

struct ClassEntry {
    const CLSID* clsid;
    const wchar_t* name;
    CreateFunction create;
};

// The creatable classes. PersistedProperty has no entry: hosts cannot create it.
const ClassEntry kClasses[] = {
    {&CLSID_Constants, L"Constants", &CreateConstants},
    {&CLSID_Functions, L"Functions", &CreateFunctions},
    {&CLSID_PersistedPropertyCollection, L"PersistedPropertyCollection", &CreatePersistedPropertyCollection},
    {&CLSID_ChildElement, L"ChildElement", &CreateChildElement},
    {&CLSID_ChildElementCollection, L"ChildElementCollection", &CreateChildElementCollection},
    {&CLSID_Storyboard, L"Storyboard", &CreateStoryboard},
    {&CLSID_StoryboardCollection, L"StoryboardCollection", &CreateStoryboardCollection},
    {&CLSID_LessonMap, L"LessonMap", &CreateLessonMap},
    {&CLSID_LessonMapCollection, L"LessonMapCollection", &CreateLessonMapCollection},
    {&CLSID_Lesson, L"Lesson", &CreateLesson},
};

constexpr const wchar_t* kLibraryName = L"Quillbank";

class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(CreateFunction create) : create_(create) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory)) {
            *object = static_cast<IClassFactory*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    // The factories live as long as the module; holding one counts as a lock.
    ULONG STDMETHODCALLTYPE AddRef() override {
        LockServer(true);
        return 2;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        LockServer(false);
        return 1;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        return create_(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        com::LockServer(lock != FALSE);
        return S_OK;
    }

private:
    CreateFunction create_;
};

std::wstring GuidText(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

bool SetValue(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    HKEY handle = nullptr;
    if (RegCreateKeyExW(root, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr) != ERROR_SUCCESS) {
        return false;
    }
    const LONG status = RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                                       static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(handle);
    return status == ERROR_SUCCESS;
}

HRESULT RegisterClass(const ClassEntry& entry, const std::wstring& path) {
    const std::wstring clsid = GuidText(*entry.clsid);
    const std::wstring progId = std::wstring(kLibraryName) + L"." + entry.name;
    const std::wstring classKey = L"CLSID\\" + clsid;
    const bool written =
        SetValue(HKEY_CLASSES_ROOT, classKey, nullptr, progId) &&
        SetValue(HKEY_CLASSES_ROOT, classKey + L"\\InprocServer32", nullptr, path) &&
        SetValue(HKEY_CLASSES_ROOT, classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment") &&
        SetValue(HKEY_CLASSES_ROOT, classKey + L"\\ProgID", nullptr, progId) &&
        SetValue(HKEY_CLASSES_ROOT, classKey + L"\\VersionIndependentProgID", nullptr, progId) &&
        SetValue(HKEY_CLASSES_ROOT, classKey + L"\\TypeLib", nullptr, GuidText(LIBID_Quillbank)) &&
        SetValue(HKEY_CLASSES_ROOT, classKey + L"\\Version", nullptr, L"2.0") &&
        SetValue(HKEY_CLASSES_ROOT, progId, nullptr, progId) &&
        SetValue(HKEY_CLASSES_ROOT, progId + L"\\CLSID", nullptr, clsid);
    return written ? S_OK : SELFREG_E_CLASS;
}

void UnregisterClass(const ClassEntry& entry) {
    const std::wstring progId = std::wstring(kLibraryName) + L"." + entry.name;
    RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + GuidText(*entry.clsid)).c_str());
    RegDeleteTreeW(HKEY_CLASSES_ROOT, progId.c_str());
}

}  // namespace

}  // namespace quillbank::com

using namespace quillbank::com;

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        SetModuleHandle(module);
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    static ClassFactory factories[] = {ClassFactory(kClasses[0].create), ClassFactory(kClasses[1].create),
                                       ClassFactory(kClasses[2].create), ClassFactory(kClasses[3].create),
                                       ClassFactory(kClasses[4].create), ClassFactory(kClasses[5].create),
                                       ClassFactory(kClasses[6].create), ClassFactory(kClasses[7].create),
                                       ClassFactory(kClasses[8].create), ClassFactory(kClasses[9].create)};
    static_assert(sizeof factories / sizeof factories[0] == sizeof kClasses / sizeof kClasses[0]);
    for (std::size_t i = 0; i < sizeof kClasses / sizeof kClasses[0]; ++i) {
        if (IsEqualCLSID(clsid, *kClasses[i].clsid)) {
            return factories[i].QueryInterface(iid, object);
        }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    if (!CanUnload()) {
        return S_FALSE;
    }
    ReleaseTypeLibrary();
    return S_OK;
}

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() {
    const std::wstring path = ModulePath();
    if (path.empty()) {
        return SELFREG_E_CLASS;
    }
    for (const ClassEntry& entry : kClasses) {
        const HRESULT hr = RegisterClass(entry, path);
        if (FAILED(hr)) {
            return hr;
        }
    }
    ITypeLib* library = nullptr;
    HRESULT hr = LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library);
    if (FAILED(hr)) {
        return SELFREG_E_TYPELIB;
    }
    hr = RegisterTypeLib(library, const_cast<LPOLESTR>(path.c_str()), nullptr);
    library->Release();
    return FAILED(hr) ? SELFREG_E_TYPELIB : S_OK;
}

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() {
    for (const ClassEntry& entry : kClasses) {
        UnregisterClass(entry);
    }
#ifdef _WIN64
    UnRegisterTypeLib(LIBID_Quillbank, 2, 0, 0x0409, SYS_WIN64);
#else
    UnRegisterTypeLib(LIBID_Quillbank, 2, 0, 0x0409, SYS_WIN32);
#endif
    return S_OK;
}
