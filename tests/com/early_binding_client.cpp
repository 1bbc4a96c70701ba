// A host that binds early: creates the classes through CoCreateInstance by
// class identifier, calls the vtable, reads errors through ISupportErrorInfo
// and IErrorInfo, checks the type library by its identifier and version and
// the registration, and that the server can unload once everything is
// released. One line per check, then the sentinel line; the exit code is the
// number of failed checks.

#include <initguid.h>

#ifndef NOGDI
#define NOGDI
#endif
#include <windows.h>
#include <objbase.h>
#include <oleauto.h>

#include <cstdio>
#include <string>
#include <vector>

#include "quillbank_tlb.h"

namespace {

int failures = 0;

void Check(bool passed, const char* name, const std::wstring& detail = L"") {
    if (passed) {
        std::printf("ok %s\n", name);
    } else {
        ++failures;
        std::printf("not ok %s -- %ls\n", name, detail.c_str());
    }
}

std::wstring Hex(HRESULT hr) {
    wchar_t text[16];
    std::swprintf(text, 16, L"0x%08lX", static_cast<unsigned long>(hr));
    return text;
}

std::wstring Take(BSTR text) {
    std::wstring out = text == nullptr ? L"" : std::wstring(text, SysStringLen(text));
    SysFreeString(text);
    return out;
}

std::wstring RegistryText(const std::wstring& key, const wchar_t* name) {
    wchar_t buffer[512] = {};
    DWORD size = sizeof buffer;
    if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS) {
        return L"(missing)";
    }
    return buffer;
}

void CheckFunctions() {
    _Functions* functions = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_Functions, nullptr, CLSCTX_INPROC_SERVER, IID__Functions,
                                  reinterpret_cast<void**>(&functions));
    Check(SUCCEEDED(hr) && functions != nullptr, "Functions is created by its class identifier", Hex(hr));
    if (functions == nullptr) {
        return;
    }
    BSTR text = nullptr;
    hr = functions->EmptyGUID(&text);
    Check(hr == S_OK && Take(text) == L"00000000-0000-0000-0000-000000000000", "EmptyGUID through the vtable",
          Hex(hr));
    text = nullptr;
    hr = functions->NewGUID(&text);
    Check(hr == S_OK && Take(text).size() == 36, "NewGUID through the vtable", Hex(hr));
    text = nullptr;
    hr = functions->get_OCXVersion(&text);
    const std::wstring version = Take(text);
    Check(hr == S_OK && version.rfind(L"2.0 (Build ", 0) == 0, "OCXVersion names version 2.0", version);

    ::Rectangle rectangle{};
    hr = functions->NewRectangle(1, 2, 3, 4, &rectangle);
    Check(hr == S_OK && rectangle.Left == 1 && rectangle.Top == 2 && rectangle.Width == 3 && rectangle.Height == 4,
          "NewRectangle returns the record", Hex(hr));

    VARIANT missing;
    VariantInit(&missing);
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    BSTR arial = SysAllocString(L"Arial");
    ::FontData font{};
    hr = functions->NewFontData(arial, missing, VARIANT_FALSE, VARIANT_TRUE, VARIANT_FALSE, &font);
    SysFreeString(arial);
    Check(hr == S_OK && font.Size == 8.0 && font.Italic == VARIANT_TRUE && font.Bold == VARIANT_FALSE &&
              Take(font.Name) == L"Arial",
          "NewFontData without a size gives size 8", Hex(hr));

    text = nullptr;
    hr = functions->OLEColorToHTMLColor(0x7F000000, &text);
    SysFreeString(text);
    Check(hr == static_cast<HRESULT>(0x800A0005), "an invalid colour fails with the host's error 5", Hex(hr));

    ISupportErrorInfo* support = nullptr;
    hr = functions->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&support));
    Check(hr == S_OK && support != nullptr && support->InterfaceSupportsErrorInfo(IID__Functions) == S_OK,
          "ISupportErrorInfo names _Functions", Hex(hr));
    if (support != nullptr) {
        support->Release();
    }
    IErrorInfo* info = nullptr;
    hr = GetErrorInfo(0, &info);
    Check(hr == S_OK && info != nullptr, "the failure left an error object", Hex(hr));
    if (info != nullptr) {
        BSTR source = nullptr;
        BSTR description = nullptr;
        info->GetSource(&source);
        info->GetDescription(&description);
        const std::wstring sourceText = Take(source);
        const std::wstring descriptionText = Take(description);
        Check(sourceText == L"Quillbank", "the error's source", sourceText);
        Check(descriptionText == L"Invalid procedure call or argument", "the error's description", descriptionText);
        info->Release();
    }
    functions->Release();
}

void CheckPersistedPropertyCollection() {
    _PersistedPropertyCollection* bag = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_PersistedPropertyCollection, nullptr, CLSCTX_INPROC_SERVER,
                                  IID__PersistedPropertyCollection, reinterpret_cast<void**>(&bag));
    Check(SUCCEEDED(hr) && bag != nullptr, "PersistedPropertyCollection is created by its class identifier", Hex(hr));
    if (bag == nullptr) {
        return;
    }
    BSTR caption = SysAllocString(L"caption");
    BSTR value = SysAllocString(L"Halves");
    BSTR width = SysAllocString(L"width");
    BSTR font = SysAllocString(L"font");
    BSTR inner = SysAllocString(L"inner");
    bag->SetString(caption, value, etNotEncoded);
    bag->SetLong(width, 640, etBase64Encoded);

    SAFEARRAY* names = nullptr;
    hr = bag->GetPropertyNameArray(-1, &names);
    std::wstring joined;
    VARTYPE type = VT_EMPTY;
    if (names != nullptr) {
        SafeArrayGetVartype(names, &type);
        LONG upper = -1;
        SafeArrayGetUBound(names, 1, &upper);
        for (LONG i = 0; i <= upper; ++i) {
            BSTR name = nullptr;
            SafeArrayGetElement(names, &i, &name);
            joined += Take(name) + L";";
        }
        SafeArrayDestroy(names);
    }
    Check(hr == S_OK && type == VT_BSTR && joined == L"caption;width;",
          "GetPropertyNameArray gives a SAFEARRAY of BSTR in insertion order", joined);

    ::FontData stored{SysAllocString(L"Tahoma"), 12.5, VARIANT_TRUE, VARIANT_FALSE, VARIANT_TRUE};
    hr = bag->SetFont(font, &stored, etNotEncoded);
    SysFreeString(stored.Name);
    ::FontData fallback{SysAllocString(L"Arial"), 8.0, VARIANT_FALSE, VARIANT_FALSE, VARIANT_FALSE};
    ::FontData read{};
    const HRESULT readStatus = bag->GetFont(font, &fallback, &read);
    SysFreeString(fallback.Name);
    Check(hr == S_OK && readStatus == S_OK && Take(read.Name) == L"Tahoma" && read.Size == 12.5 &&
              read.Bold == VARIANT_TRUE && read.Underline == VARIANT_TRUE,
          "SetFont and GetFont pass the record by reference", Hex(readStatus));

    VARIANT got;
    VariantInit(&got);
    hr = bag->GetValue(font, &got);
    bool recordOk = false;
    if (hr == S_OK && V_VT(&got) == VT_RECORD) {
        const auto* record = static_cast<const ::FontData*>(V_RECORD(&got));
        recordOk = record->Size == 12.5 && std::wstring(record->Name) == L"Tahoma";
    }
    VariantClear(&got);
    Check(recordOk, "GetValue of a font gives a VT_RECORD FontData", Hex(hr));

    _PersistedPropertyCollection* nested = nullptr;
    CoCreateInstance(CLSID_PersistedPropertyCollection, nullptr, CLSCTX_INPROC_SERVER,
                     IID__PersistedPropertyCollection, reinterpret_cast<void**>(&nested));
    bag->SetPPC(inner, nested, etNotEncoded);
    _PersistedPropertyCollection* none = nullptr;
    _PersistedPropertyCollection* first = nullptr;
    _PersistedPropertyCollection* second = nullptr;
    bag->GetPPC(inner, &none, &first);
    bag->GetPPC(inner, &none, &second);
    Check(first != nullptr && first == second && first != nested, "a nested bag is one COM object");
    for (auto* object : {nested, first, second}) {
        if (object != nullptr) {
            object->Release();
        }
    }

    IXMLDOMElement* element = nullptr;
    hr = bag->ToXMLElement(nullptr, &element);
    Check(hr == static_cast<HRESULT>(0x800A005E) && element == nullptr,
          "ToXMLElement of a null document fails with the host's error 94", Hex(hr));

    for (BSTR text : {caption, value, width, font, inner}) {
        SysFreeString(text);
    }
    bag->Release();
}

void CheckConstants() {
    IDispatch* constants = nullptr;
    const HRESULT hr = CoCreateInstance(CLSID_Constants, nullptr, CLSCTX_INPROC_SERVER, IID__Constants,
                                        reinterpret_cast<void**>(&constants));
    Check(SUCCEEDED(hr) && constants != nullptr, "Constants is created by its class identifier", Hex(hr));
    if (constants != nullptr) {
        constants->Release();
    }
}

struct Member {
    const wchar_t* name;
    INVOKEKIND kind;
};

void CheckTypeLibrary() {
    ITypeLib* library = nullptr;
    HRESULT hr = LoadRegTypeLib(LIBID_Quillbank, 2, 0, 0x0409, &library);
    Check(hr == S_OK && library != nullptr, "the type library loads by identifier, version 2.0", Hex(hr));
    if (library == nullptr) {
        return;
    }
    TLIBATTR* libraryAttributes = nullptr;
    if (SUCCEEDED(library->GetLibAttr(&libraryAttributes))) {
        Check(libraryAttributes->wMajorVerNum == 2 && libraryAttributes->wMinorVerNum == 0 &&
                  libraryAttributes->lcid == 0x0409,
              "the type library is version 2.0, locale 0x409");
        library->ReleaseTLibAttr(libraryAttributes);
    }

    struct Named {
        const GUID* guid;
        const wchar_t* name;
        TYPEKIND kind;
    };
    // {1D9E6DE5-...} and the others: records and enumerations by identifier.
    static const GUID kAssetData = {0x1D9E6DE5, 0x8E52, 0x4125, {0xAA, 0x99, 0x5B, 0xEF, 0xEA, 0x93, 0x80, 0xB1}};
    static const GUID kFontData = {0x61FDAC65, 0x89E2, 0x4FF1, {0xB6, 0x26, 0xDC, 0xA3, 0xC3, 0xA8, 0x61, 0x50}};
    static const GUID kLocationData = {0x4B97C82D, 0x987F, 0x41F7, {0xBB, 0x33, 0x84, 0x4A, 0xE8, 0xE4, 0xC3, 0x56}};
    static const GUID kRectangle = {0x4C24E635, 0xFF49, 0x4CEC, {0xB0, 0xA8, 0xAB, 0x28, 0x09, 0x5D, 0xA4, 0xC7}};
    static const GUID kEncodingTypes = {0xBFFCD779, 0xA52A, 0x4619, {0x8A, 0x49, 0xC2, 0x69, 0xBE, 0x46, 0x5E, 0x21}};
    static const GUID kPropertyTypes = {0xAB2DC03D, 0x46D6, 0x48EA, {0xAE, 0x27, 0x8D, 0x9B, 0x83, 0x7C, 0x8C, 0xD0}};
    static const GUID kStoryboardInsertTypes = {0x79CB7292, 0x6C87, 0x4227,
                                                {0x86, 0xE0, 0xAC, 0xF6, 0x36, 0x03, 0xB5, 0x5B}};
    const Named named[] = {
        {&CLSID_Constants, L"Constants", TKIND_COCLASS},
        {&CLSID_Functions, L"Functions", TKIND_COCLASS},
        {&CLSID_PersistedPropertyCollection, L"PersistedPropertyCollection", TKIND_COCLASS},
        {&IID__PersistedPropertyCollection, L"_PersistedPropertyCollection", TKIND_DISPATCH},
        {&IID__Constants, L"_Constants", TKIND_DISPATCH},
        {&IID__Functions, L"_Functions", TKIND_DISPATCH},
        {&kAssetData, L"AssetData", TKIND_RECORD},
        {&kFontData, L"FontData", TKIND_RECORD},
        {&kLocationData, L"LocationData", TKIND_RECORD},
        {&kRectangle, L"Rectangle", TKIND_RECORD},
        {&kEncodingTypes, L"EncodingTypes", TKIND_ENUM},
        {&kPropertyTypes, L"PropertyTypes", TKIND_ENUM},
        {&kStoryboardInsertTypes, L"StoryboardInsertTypes", TKIND_ENUM},
    };
    for (const Named& entry : named) {
        ITypeInfo* info = nullptr;
        hr = library->GetTypeInfoOfGuid(*entry.guid, &info);
        std::wstring name;
        TYPEKIND kind = TKIND_MAX;
        WORD flags = 0;
        if (info != nullptr) {
            BSTR text = nullptr;
            info->GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr);
            name = Take(text);
            TYPEATTR* attributes = nullptr;
            if (SUCCEEDED(info->GetTypeAttr(&attributes))) {
                kind = attributes->typekind;
                flags = attributes->wTypeFlags;
                info->ReleaseTypeAttr(attributes);
            }
            info->Release();
        }
        const std::string label = "type library holds " + std::string(entry.name, entry.name + wcslen(entry.name));
        Check(hr == S_OK && name == entry.name && kind == entry.kind, label.c_str(), name);
        if (entry.kind == TKIND_DISPATCH) {
            // "oleautomation" belongs to the vtable half, checked below.
            const WORD wanted = TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FDISPATCHABLE;
            const std::string flagLabel = label + " as hidden, dual, non-extensible, dispatchable";
            Check((flags & wanted) == wanted, flagLabel.c_str(), Hex(flags));
        }
        if (entry.kind == TKIND_COCLASS && entry.guid != &CLSID_PersistedPropertyCollection) {
            const std::string flagLabel = label + " as an application object";
            Check((flags & TYPEFLAG_FAPPOBJECT) != 0, flagLabel.c_str(), Hex(flags));
        }
    }

    // The members of _Functions in slot order, on the vtable interface.
    const Member members[] = {
        {L"OCXPath", INVOKE_PROPERTYGET}, {L"OCXVersion", INVOKE_PROPERTYGET}, {L"OCXFilename", INVOKE_PROPERTYGET},
        {L"NewGUID", INVOKE_FUNC}, {L"EmptyGUID", INVOKE_FUNC}, {L"HTMLColorToOLEColor", INVOKE_FUNC},
        {L"OLEColorToHTMLColor", INVOKE_FUNC}, {L"NewAssetData", INVOKE_FUNC}, {L"NewFontData", INVOKE_FUNC},
        {L"NewLocationData", INVOKE_FUNC}, {L"NewRectangle", INVOKE_FUNC}, {L"CleanXMLString", INVOKE_FUNC},
        {L"FormatXMLString", INVOKE_FUNC},
    };
    ITypeInfo* dispatchInfo = nullptr;
    ITypeInfo* vtableInfo = nullptr;
    library->GetTypeInfoOfGuid(IID__Functions, &dispatchInfo);
    if (dispatchInfo != nullptr) {
        HREFTYPE reference = 0;
        if (SUCCEEDED(dispatchInfo->GetRefTypeOfImplType(-1, &reference))) {
            dispatchInfo->GetRefTypeInfo(reference, &vtableInfo);
        }
        dispatchInfo->Release();
    }
    Check(vtableInfo != nullptr, "_Functions has its vtable interface");
    if (vtableInfo != nullptr) {
        TYPEATTR* attributes = nullptr;
        WORD flags = 0;
        if (SUCCEEDED(vtableInfo->GetTypeAttr(&attributes))) {
            flags = attributes->wTypeFlags;
            vtableInfo->ReleaseTypeAttr(attributes);
        }
        const WORD wanted = TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FOLEAUTOMATION;
        Check((flags & wanted) == wanted, "the vtable half of _Functions is hidden, dual, non-extensible, automation",
              Hex(flags));
        bool inOrder = true;
        std::wstring seen;
        for (UINT i = 0; i < sizeof members / sizeof members[0]; ++i) {
            FUNCDESC* description = nullptr;
            if (FAILED(vtableInfo->GetFuncDesc(i, &description))) {
                inOrder = false;
                break;
            }
            BSTR text = nullptr;
            vtableInfo->GetDocumentation(description->memid, &text, nullptr, nullptr, nullptr);
            const std::wstring name = Take(text);
            seen += name + L" ";
            // The slot after IDispatch's seven, in order.
            const bool slot = description->oVft == static_cast<SHORT>((7 + i) * sizeof(void*));
            inOrder = inOrder && name == members[i].name && description->invkind == members[i].kind && slot;
            vtableInfo->ReleaseFuncDesc(description);
        }
        Check(inOrder, "_Functions members are in slot order", seen);
        vtableInfo->Release();
    }
    library->Release();
}

void CheckRegistration() {
    const std::wstring functionsClass = L"CLSID\\{B2917C1B-10DC-4491-904D-CE3C9EE9110A}";
    Check(RegistryText(L"Quillbank.Functions\\CLSID", nullptr) == L"{B2917C1B-10DC-4491-904D-CE3C9EE9110A}",
          "Quillbank.Functions names its class", RegistryText(L"Quillbank.Functions\\CLSID", nullptr));
    Check(RegistryText(functionsClass + L"\\InprocServer32", L"ThreadingModel") == L"Apartment",
          "the server registers the apartment threading model");
    Check(RegistryText(functionsClass + L"\\ProgID", nullptr) == L"Quillbank.Functions", "the class names its ProgID");
    Check(RegistryText(functionsClass + L"\\VersionIndependentProgID", nullptr) == L"Quillbank.Functions",
          "the class names its version-independent ProgID");
    Check(RegistryText(functionsClass + L"\\TypeLib", nullptr) == L"{51C4E8EB-6B81-4B68-A432-03B5FDD7975E}",
          "the class names its type library");
    std::wstring path = RegistryText(functionsClass + L"\\InprocServer32", nullptr);
    Check(path.size() > 14 && path.compare(path.size() - 14, 14, L"\\Quillbank.dll") == 0,
          "the class names the server's file", path);
    CLSID clsid{};
    const HRESULT hr = CLSIDFromProgID(L"Quillbank.PersistedProperty", &clsid);
    Check(FAILED(hr), "PersistedProperty has no programmatic identifier", Hex(hr));
}

void CheckUnload() {
    HMODULE server = GetModuleHandleW(L"Quillbank.dll");
    Check(server != nullptr, "the server is loaded in this process");
    if (server == nullptr) {
        return;
    }
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    auto canUnload = reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow")));
    Check(canUnload != nullptr, "the server exports DllCanUnloadNow");
    if (canUnload == nullptr) {
        return;
    }
    IUnknown* held = nullptr;
    CoCreateInstance(CLSID_Functions, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, reinterpret_cast<void**>(&held));
    Check(canUnload() == S_FALSE, "DllCanUnloadNow is false while an object lives");
    if (held != nullptr) {
        held->Release();
    }
    IClassFactory* factory = nullptr;
    CoGetClassObject(CLSID_Functions, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                     reinterpret_cast<void**>(&factory));
    if (factory != nullptr) {
        factory->LockServer(TRUE);
        factory->Release();
        Check(canUnload() == S_FALSE, "DllCanUnloadNow is false while the server is locked");
        CoGetClassObject(CLSID_Functions, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                         reinterpret_cast<void**>(&factory));
        factory->LockServer(FALSE);
        factory->Release();
    }
    Check(canUnload() == S_OK, "DllCanUnloadNow is true once everything is released");
}

}  // namespace

int main() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        std::printf("not ok COM starts\n");
        return 1;
    }
    CheckFunctions();
    CheckPersistedPropertyCollection();
    CheckConstants();
    CheckTypeLibrary();
    CheckRegistration();
    CheckUnload();
    CoUninitialize();
    std::printf("# early-binding client: %d failed\n", failures);
    std::printf("END-OF-SUITE\n");
    return failures;
}
