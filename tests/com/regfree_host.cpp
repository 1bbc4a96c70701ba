// A host that uses the server without registration: its own manifest names
// the server's side-by-side assembly (Quillbank.manifest and Quillbank.dll
// in this program's folder), so every class is created by its class
// identifier and by its ProgID with no key of ours in the registry.
// One line per check, then the sentinel line; the exit code is the number of
// failed checks.

#include "test_checks.hpp"

namespace {

void Check(bool passed, const std::string& name, HRESULT hr = S_OK) {
    quillbank_test::Check(passed, name, quillbank_test::HexText(static_cast<unsigned long>(hr)));
}

struct Class {
    const CLSID* clsid;
    const IID* iid;
    const wchar_t* progId;
    const char* name;
};

const Class kClasses[] = {
    {&CLSID_Constants, &IID__Constants, L"Quillbank.Constants", "Constants"},
    {&CLSID_Functions, &IID__Functions, L"Quillbank.Functions", "Functions"},
    {&CLSID_PersistedPropertyCollection, &IID__PersistedPropertyCollection, L"Quillbank.PersistedPropertyCollection", "PersistedPropertyCollection"},
    {&CLSID_ChildElement, &IID__ChildElement, L"Quillbank.ChildElement", "ChildElement"},
    {&CLSID_ChildElementCollection, &IID__ChildElementCollection, L"Quillbank.ChildElementCollection", "ChildElementCollection"},
    {&CLSID_Storyboard, &IID__Storyboard, L"Quillbank.Storyboard", "Storyboard"},
    {&CLSID_StoryboardCollection, &IID__StoryboardCollection, L"Quillbank.StoryboardCollection", "StoryboardCollection"},
    {&CLSID_LessonMap, &IID__LessonMap, L"Quillbank.LessonMap", "LessonMap"},
    {&CLSID_LessonMapCollection, &IID__LessonMapCollection, L"Quillbank.LessonMapCollection", "LessonMapCollection"},
    {&CLSID_Lesson, &IID__Lesson, L"Quillbank.Lesson", "Lesson"},
};

// IDispatch's reserved interface argument (IID_NULL).
const IID kNoInterface = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

bool Registered(const CLSID& clsid) {
    wchar_t text[40] = {};
    StringFromGUID2(clsid, text, 40);
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, (std::wstring(L"CLSID\\") + text).c_str(), 0, KEY_READ, &key) !=
        ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(key);
    return true;
}

}  // namespace

int main() {
    if (!quillbank_test::StartCom()) {
        return 1;
    }
    for (const Class& entry : kClasses) {
        const std::string name = entry.name;
        Check(!Registered(*entry.clsid), name + " is not registered");
        IDispatch* object = nullptr;
        HRESULT hr = CoCreateInstance(*entry.clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                      reinterpret_cast<void**>(&object));
        Check(hr == S_OK && object != nullptr, name + " is created by its class identifier", hr);
        if (object != nullptr) {
            object->Release();
        }
        CLSID found{};
        hr = CLSIDFromProgID(entry.progId, &found);
        // Inside an activation context the ProgID may name an alias of the
        // class identifier that the context maps back: what counts is that
        // it creates an object of the class.
        IUnknown* byProgId = nullptr;
        if (SUCCEEDED(hr)) {
            hr = CoCreateInstance(found, nullptr, CLSCTX_INPROC_SERVER, *entry.iid,
                                  reinterpret_cast<void**>(&byProgId));
        }
        Check(hr == S_OK && byProgId != nullptr, name + " is created by its ProgID", hr);
        if (byProgId != nullptr) {
            byProgId->Release();
        }
    }

    _Functions* functions = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_Functions, nullptr, CLSCTX_INPROC_SERVER, IID__Functions,
                                  reinterpret_cast<void**>(&functions));
    if (functions != nullptr) {
        BSTR text = nullptr;
        hr = functions->EmptyGUID(&text);
        Check(hr == S_OK && text != nullptr && std::wstring(text) == L"00000000-0000-0000-0000-000000000000",
              "Functions.EmptyGUID answers through the vtable", hr);
        SysFreeString(text);
        functions->Release();
    }
    _Lesson* lesson = nullptr;
    hr = CoCreateInstance(CLSID_Lesson, nullptr, CLSCTX_INPROC_SERVER, IID__Lesson, reinterpret_cast<void**>(&lesson));
    if (lesson != nullptr) {
        BSTR title = SysAllocString(L"Unregistered");
        hr = lesson->put_Title(title);
        SysFreeString(title);
        BSTR xml = nullptr;
        if (SUCCEEDED(hr)) {
            hr = lesson->ToXMLString(&xml);
        }
        Check(hr == S_OK && xml != nullptr && std::wstring(xml).find(L"Unregistered") != std::wstring::npos,
              "a Lesson writes its title to XML", hr);
        SysFreeString(xml);
        // Late-bound as a script host would call it: through the server's
        // own type information, loaded from its file.
        DISPID id = 0;
        LPOLESTR member = const_cast<LPOLESTR>(L"Title");
        hr = lesson->GetIDsOfNames(kNoInterface, &member, 1, 0x0409, &id);
        VARIANT result;
        VariantInit(&result);
        DISPPARAMS none = {nullptr, nullptr, 0, 0};
        if (SUCCEEDED(hr)) {
            hr = lesson->Invoke(id, kNoInterface, 0x0409, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr);
        }
        Check(hr == S_OK && V_VT(&result) == VT_BSTR && std::wstring(V_BSTR(&result)) == L"Unregistered",
              "a Lesson answers IDispatch", hr);
        VariantClear(&result);
        lesson->Release();
    }
    return quillbank_test::Finish("registration-free host (" + std::to_string(sizeof(void*) * 8) + "-bit)");
}
