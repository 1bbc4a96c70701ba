// The in-process server entry points (the four standard ones and
// DllInstall for per-user registration) and the class factories.

#include <new>
#include <string>

#include "com/module.hpp"
#include "com/objects.hpp"
#include "com/registration.hpp"

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

// The creatable classes as registration writes them.
const RegisteredClass kRegistered[] = {
    {kClasses[0].clsid, kClasses[0].name}, {kClasses[1].clsid, kClasses[1].name},
    {kClasses[2].clsid, kClasses[2].name}, {kClasses[3].clsid, kClasses[3].name},
    {kClasses[4].clsid, kClasses[4].name}, {kClasses[5].clsid, kClasses[5].name},
    {kClasses[6].clsid, kClasses[6].name}, {kClasses[7].clsid, kClasses[7].name},
    {kClasses[8].clsid, kClasses[8].name}, {kClasses[9].clsid, kClasses[9].name},
};
static_assert(sizeof kRegistered / sizeof kRegistered[0] == sizeof kClasses / sizeof kClasses[0]);
constexpr std::size_t kRegisteredCount = sizeof kRegistered / sizeof kRegistered[0];

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
    return RegisterServer(RegistrationScope::Machine, kRegistered, kRegisteredCount);
}

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() {
    return UnregisterServer(RegistrationScope::Machine, kRegistered, kRegisteredCount);
}

// `regsvr32 /n /i:user` (and `/u /n /i:user`) registers (unregisters) for
// the current user only; an empty command line or "machine" per machine.
extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, LPCWSTR commandLine) {
    RegistrationScope scope = RegistrationScope::Machine;
    if (!ScopeOfCommandLine(commandLine, &scope)) {
        return E_INVALIDARG;
    }
    return install ? RegisterServer(scope, kRegistered, kRegisteredCount)
                   : UnregisterServer(scope, kRegistered, kRegisteredCount);
}
