// A host that binds early: creates the classes through CoCreateInstance by
// class identifier, calls the vtable, reads errors through ISupportErrorInfo
// and IErrorInfo, checks the type library by its identifier and version and
// the registration, and that the server can unload once everything is
// released. One line per check, then the sentinel line; the exit code is the
// number of failed checks.

#include "test_checks.hpp"

#include <string>
#include <vector>

namespace {

void Check(bool passed, const std::string& name, const std::wstring& detail = L"") {
    quillbank_test::Check(passed, name, detail);
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

// The source of the error object the last failed call left.
std::wstring ErrorSource() {
    IErrorInfo* info = nullptr;
    BSTR source = nullptr;
    if (GetErrorInfo(0, &info) == S_OK && info != nullptr) {
        info->GetSource(&source);
        info->Release();
    }
    return Take(source);
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

    // Size is a double on the stack (x86) or in a floating-point register
    // (x64), as a host compiled against the library passes it.
    BSTR arial = SysAllocString(L"Arial");
    ::FontData font{};
    hr = functions->NewFontData(arial, 10.5, VARIANT_FALSE, VARIANT_TRUE, VARIANT_FALSE, &font);
    SysFreeString(arial);
    Check(hr == S_OK && font.Size == 10.5 && font.Italic == VARIANT_TRUE && font.Bold == VARIANT_FALSE &&
              font.Underline == VARIANT_FALSE && Take(font.Name) == L"Arial",
          "NewFontData takes its size as a double", Hex(hr));

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

void CheckChildElements() {
    _ChildElement* element = nullptr;
    _ChildElementCollection* list = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_ChildElement, nullptr, CLSCTX_INPROC_SERVER, IID__ChildElement,
                                  reinterpret_cast<void**>(&element));
    Check(SUCCEEDED(hr) && element != nullptr, "ChildElement is created by its class identifier", Hex(hr));
    hr = CoCreateInstance(CLSID_ChildElementCollection, nullptr, CLSCTX_INPROC_SERVER, IID__ChildElementCollection,
                          reinterpret_cast<void**>(&list));
    Check(SUCCEEDED(hr) && list != nullptr, "ChildElementCollection is created by its class identifier", Hex(hr));
    if (element == nullptr || list == nullptr) {
        return;
    }
    BSTR box = SysAllocString(L"box");
    BSTR caption = SysAllocString(L"caption");
    BSTR value = SysAllocString(L"Halves");
    BSTR kids = SysAllocString(L"kids");
    element->put_Name(box);
    element->SetString(caption, value, etBase64Encoded);

    _PersistedPropertyCollection* first = nullptr;
    _PersistedPropertyCollection* second = nullptr;
    element->get_PPCObject(&first);
    element->get_PPCObject(&second);
    BSTR bagName = nullptr;
    LONG encoding = 0;
    if (first != nullptr) {
        first->get_Name(&bagName);
        first->GetEncodingType(caption, &encoding);
    }
    Check(first != nullptr && first == second && Take(bagName) == L"box" && encoding == etBase64Encoded,
          "PPCObject is the element's one bag, named as the element");
    for (auto* object : {first, second}) {
        if (object != nullptr) {
            object->Release();
        }
    }

    ::LocationData location{SysAllocString(L"b"), SysAllocString(L"a"), SysAllocString(L"map")};
    BSTR where = SysAllocString(L"where");
    hr = element->SetLocation(where, &location, etNotEncoded);
    ::LocationData fallback{};
    ::LocationData read{};
    const HRESULT readStatus = element->GetLocation(where, &fallback, &read);
    Check(hr == S_OK && readStatus == S_OK && Take(read.MapName) == L"map" &&
              std::wstring(location.MapName) == L"map",
          "SetLocation and GetLocation pass the record by reference", Hex(readStatus));
    Take(read.StartPoint);
    Take(read.EndPoint);
    for (BSTR text : {location.StartPoint, location.EndPoint, location.MapName, where}) {
        SysFreeString(text);
    }

    hr = list->Append(element);
    _ChildElement* item = nullptr;
    list->get_Item(0, &item);
    LONG index = -2;
    list->IndexOf(element, &index);
    LONG count = 0;
    list->get_Count(&count);
    Check(hr == S_OK && item == element && index == 0 && count == 1,
          "Append keeps the caller's object; Item hands the same COM object back", Hex(hr));
    if (item != nullptr) {
        item->Release();
    }
    item = element;
    item->AddRef();
    hr = list->Insert(nullptr, 0);
    list->get_Count(&count);
    Check(hr == S_OK && count == 1, "Insert of a null element changes nothing", Hex(hr));
    item->Release();

    _PersistedPropertyCollection* bag = nullptr;
    CoCreateInstance(CLSID_PersistedPropertyCollection, nullptr, CLSCTX_INPROC_SERVER,
                     IID__PersistedPropertyCollection, reinterpret_cast<void**>(&bag));
    _ChildElementCollection* stored = nullptr;
    _ChildElementCollection* again = nullptr;
    if (bag != nullptr) {
        hr = bag->SetCEC(kids, list, etNotEncoded);
        bag->GetCEC(kids, nullptr, &stored);
        bag->GetCEC(kids, nullptr, &again);
    }
    LONG storedCount = 0;
    if (stored != nullptr) {
        stored->get_Count(&storedCount);
    }
    Check(hr == S_OK && stored != nullptr && stored == again && stored != list && storedCount == 1,
          "the bag stores a copy of a child-element list and hands out one COM object", Hex(hr));
    for (auto* object : {stored, again}) {
        if (object != nullptr) {
            object->Release();
        }
    }
    if (bag != nullptr) {
        hr = bag->SetCEC(kids, reinterpret_cast<_ChildElementCollection*>(bag), etNotEncoded);
        Check(hr == static_cast<HRESULT>(0x800A000D), "SetCEC of a bag fails with the host's error 13", Hex(hr));
        bag->Release();
    }

    IXMLDOMElement* xmlElement = nullptr;
    hr = element->ToClearXMLElement(nullptr, &xmlElement);
    Check(hr == static_cast<HRESULT>(0x800A005E) && xmlElement == nullptr,
          "ChildElement.ToClearXMLElement of a null document fails with the host's error 94", Hex(hr));
    const std::wstring sourceText = ErrorSource();
    Check(sourceText == L"ChildElement.ToXMLElement", "the clear writer's error names ToXMLElement", sourceText);
    hr = list->ToXMLElement(nullptr, &xmlElement);
    Check(hr == static_cast<HRESULT>(0x800A005E) && xmlElement == nullptr,
          "ChildElementCollection.ToXMLElement of a null document fails with the host's error 94", Hex(hr));
    BSTR broken = SysAllocString(L"<ce");
    hr = element->FromXMLString(broken);
    SysFreeString(broken);
    Check(hr == static_cast<HRESULT>(0x800403E9), "ChildElement.FromXMLString of broken text fails with 0x800403E9",
          Hex(hr));

    ISupportErrorInfo* support = nullptr;
    hr = list->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&support));
    Check(hr == S_OK && support != nullptr &&
              support->InterfaceSupportsErrorInfo(IID__ChildElementCollection) == S_OK,
          "ChildElementCollection supports error information");
    if (support != nullptr) {
        support->Release();
    }

    for (BSTR text : {box, caption, value, kids}) {
        SysFreeString(text);
    }
    list->Release();
    element->Release();
}

void CheckStoryboards() {
    _Storyboard* board = nullptr;
    _StoryboardCollection* boards = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_Storyboard, nullptr, CLSCTX_INPROC_SERVER, IID__Storyboard,
                                  reinterpret_cast<void**>(&board));
    Check(SUCCEEDED(hr) && board != nullptr, "Storyboard is created by its class identifier", Hex(hr));
    hr = CoCreateInstance(CLSID_StoryboardCollection, nullptr, CLSCTX_INPROC_SERVER, IID__StoryboardCollection,
                          reinterpret_cast<void**>(&boards));
    Check(SUCCEEDED(hr) && boards != nullptr, "StoryboardCollection is created by its class identifier", Hex(hr));
    if (board == nullptr || boards == nullptr) {
        return;
    }
    BSTR id = nullptr;
    board->get_SBID(&id);
    _Storyboard* added = nullptr;
    hr = boards->Add(board, &added);
    _Storyboard* item = nullptr;
    boards->get_Item(id, &item);
    Check(hr == S_OK && added == board && item == board, "Add and Item hand back the same COM object", Hex(hr));
    for (auto* object : {added, item}) {
        if (object != nullptr) {
            object->Release();
        }
    }
    hr = boards->putref_CurrentSB(board);
    BSTR currentId = nullptr;
    boards->get_CurrentSBID(&currentId);
    Check(hr == S_OK && Take(currentId) == std::wstring(id), "CurrentSB is set by reference", Hex(hr));

    IUnknown* unknown = nullptr;
    hr = boards->get_NewEnum(&unknown);
    IEnumVARIANT* walk = nullptr;
    if (unknown != nullptr) {
        unknown->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&walk));
        unknown->Release();
    }
    bool walked = false;
    if (walk != nullptr) {
        VARIANT items[2];
        VariantInit(&items[0]);
        VariantInit(&items[1]);
        ULONG fetched = 0;
        const HRESULT next = walk->Next(2, items, &fetched);
        walked = next == S_FALSE && fetched == 1 && V_VT(&items[0]) == VT_DISPATCH &&
                 V_DISPATCH(&items[0]) == static_cast<IDispatch*>(board);
        VariantClear(&items[0]);
        walk->Release();
    }
    Check(hr == S_OK && walked, "NewEnum gives an IEnumVARIANT over the storyboards", Hex(hr));

    _PersistedPropertyCollection* first = nullptr;
    _PersistedPropertyCollection* second = nullptr;
    board->get_Properties(&first);
    board->get_Properties(&second);
    Check(first != nullptr && first == second, "Properties is one COM object");
    for (auto* object : {first, second}) {
        if (object != nullptr) {
            object->Release();
        }
    }

    IXMLDOMElement* element = nullptr;
    hr = boards->ToClearXMLElement(nullptr, &element);
    const std::wstring sourceText = ErrorSource();
    Check(hr == static_cast<HRESULT>(0x800A005E) && sourceText == L"StoryboardtCollection.ToXMLElement",
          "the set's writers fail with error 94 under their own source", sourceText);
    VARIANT empty;
    hr = board->CopyFrom(nullptr, &empty);
    Check(hr == static_cast<HRESULT>(0x800A005E), "CopyFrom of null fails with the host's error 94", Hex(hr));

    SysFreeString(id);
    boards->Release();
    board->Release();
}

void CheckLessonMap() {
    _LessonMap* map = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_LessonMap, nullptr, CLSCTX_INPROC_SERVER, IID__LessonMap,
                                  reinterpret_cast<void**>(&map));
    Check(SUCCEEDED(hr) && map != nullptr, "LessonMap is created by its class identifier", Hex(hr));
    if (map == nullptr) {
        return;
    }
    BSTR none = SysAllocString(L"");
    BSTR a = SysAllocString(L"A");
    hr = map->InsertStoryboard(none, sbitInsertAfter, a);
    VARIANT_BOOL contains = VARIANT_FALSE;
    map->Contains(a, &contains);
    Check(hr == S_OK && contains == VARIANT_TRUE, "InsertStoryboard and Contains through the vtable", Hex(hr));
    hr = map->InsertStoryboard(a, sbitInsertBefore, none);
    Check(hr == static_cast<HRESULT>(0x800A017C), "an empty identifier fails with the host's error 380", Hex(hr));
    VARIANT missing;
    VariantInit(&missing);
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    IXMLDOMElement* element = nullptr;
    hr = map->ToXMLElement(missing, &element);
    BSTR name = nullptr;
    if (element != nullptr) {
        element->get_nodeName(&name);
        element->Release();
    }
    Check(hr == S_OK && Take(name) == L"map", "ToXMLElement without a document gives the map element", Hex(hr));
    hr = map->ToTreeNode(nullptr, nullptr);
    Check(hr == static_cast<HRESULT>(0x800A005E), "ToTreeNode without a node collection fails with error 94",
          Hex(hr));
    _LessonMap* clone = nullptr;
    map->Clone(&clone);
    Check(clone != nullptr && clone != map, "Clone gives a new map");
    _LessonMapCollection* maps = nullptr;
    hr = CoCreateInstance(CLSID_LessonMapCollection, nullptr, CLSCTX_INPROC_SERVER, IID__LessonMapCollection,
                          reinterpret_cast<void**>(&maps));
    Check(SUCCEEDED(hr) && maps != nullptr, "LessonMapCollection is created by its class identifier", Hex(hr));
    if (maps != nullptr) {
        maps->Append(map);
        hr = maps->putref_DefaultMap(map);
        _LessonMap* chosen = nullptr;
        maps->get_DefaultMap(&chosen);
        Check(hr == S_OK && chosen == map, "DefaultMap is set by reference and handed back as the same object",
              Hex(hr));
        if (chosen != nullptr) {
            chosen->Release();
        }
        hr = maps->putref_DefaultMap(clone);
        Check(hr == static_cast<HRESULT>(0x800A0005), "a default map that is not a member fails with error 5",
              Hex(hr));
        maps->Release();
    }
    if (clone != nullptr) {
        clone->Release();
    }
    SysFreeString(none);
    SysFreeString(a);
    map->Release();
}

void CheckLesson() {
    _Lesson* lesson = nullptr;
    HRESULT hr = CoCreateInstance(CLSID_Lesson, nullptr, CLSCTX_INPROC_SERVER, IID__Lesson,
                                  reinterpret_cast<void**>(&lesson));
    Check(SUCCEEDED(hr) && lesson != nullptr, "Lesson is created by its class identifier", Hex(hr));
    if (lesson == nullptr) {
        return;
    }
    _StoryboardCollection* first = nullptr;
    _StoryboardCollection* second = nullptr;
    lesson->get_Storyboards(&first);
    lesson->get_Storyboards(&second);
    Check(first != nullptr && first == second, "Storyboards is the lesson's one set");
    for (auto* object : {first, second}) {
        if (object != nullptr) {
            object->Release();
        }
    }
    BSTR text = nullptr;
    hr = lesson->ToXMLString(&text);
    const std::wstring written = Take(text);
    Check(hr == S_OK && written.find(L"<lesson") != std::wstring::npos, "ToXMLString through the vtable", written);
    IXMLDOMElement* element = nullptr;
    hr = lesson->ToClearXMLElement(nullptr, &element);
    Check(hr == static_cast<HRESULT>(0x800A005E), "ToClearXMLElement of a null document fails with error 94",
          Hex(hr));
    lesson->Release();
}

// DOM nodes of the wrong kind handed over through the vtable, as a host that
// casts carelessly would: a comment or a document where an element is
// declared, an element where a document is declared. Each is a type mismatch
// (the host's error 13), never a call into the wrong table of functions.
void CheckWrongDomNodes() {
    CLSID documentClass{};
    HRESULT hr = CLSIDFromProgID(L"Msxml2.DOMDocument.3.0", &documentClass);
    IXMLDOMDocument* document = nullptr;
    if (SUCCEEDED(hr)) {
        hr = CoCreateInstance(documentClass, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                              reinterpret_cast<void**>(&document));
    }
    Check(SUCCEEDED(hr) && document != nullptr, "MSXML's DOM document is created", Hex(hr));
    _Lesson* lesson = nullptr;
    _LessonMap* map = nullptr;
    _PersistedPropertyCollection* bag = nullptr;
    CoCreateInstance(CLSID_Lesson, nullptr, CLSCTX_INPROC_SERVER, IID__Lesson, reinterpret_cast<void**>(&lesson));
    CoCreateInstance(CLSID_LessonMap, nullptr, CLSCTX_INPROC_SERVER, IID__LessonMap, reinterpret_cast<void**>(&map));
    CoCreateInstance(CLSID_PersistedPropertyCollection, nullptr, CLSCTX_INPROC_SERVER,
                     IID__PersistedPropertyCollection, reinterpret_cast<void**>(&bag));
    if (document == nullptr || lesson == nullptr || map == nullptr || bag == nullptr) {
        Check(false, "the objects for the wrong DOM nodes are at hand");
        return;
    }
    BSTR text = SysAllocString(L"note");
    IXMLDOMComment* comment = nullptr;
    document->createComment(text, &comment);
    SysFreeString(text);
    BSTR name = SysAllocString(L"lesson");
    IXMLDOMElement* element = nullptr;
    document->createElement(name, &element);
    SysFreeString(name);
    if (comment == nullptr || element == nullptr) {
        Check(false, "a comment and an element are made in the document");
        return;
    }

    hr = lesson->FromXMLElement(reinterpret_cast<IXMLDOMElement*>(comment));
    Check(hr == static_cast<HRESULT>(0x800A000D), "Lesson.FromXMLElement of a comment posing as an element fails "
          "with error 13", Hex(hr));
    hr = map->FromXMLElement(reinterpret_cast<IXMLDOMElement*>(document));
    Check(hr == static_cast<HRESULT>(0x800A000D), "LessonMap.FromXMLElement of a document posing as an element "
          "fails with error 13", Hex(hr));
    IXMLDOMElement* written = nullptr;
    hr = lesson->ToXMLElement(reinterpret_cast<IXMLDOMDocument*>(element), &written);
    Check(hr == static_cast<HRESULT>(0x800A000D) && written == nullptr, "Lesson.ToXMLElement of an element posing "
          "as a document fails with error 13", Hex(hr));
    hr = bag->ToClearXMLElement(reinterpret_cast<IXMLDOMDocument*>(comment), &written);
    Check(hr == static_cast<HRESULT>(0x800A000D) && written == nullptr, "PersistedPropertyCollection."
          "ToClearXMLElement of a comment posing as a document fails with error 13", Hex(hr));

    // The same nodes as what they are still work.
    hr = lesson->FromXMLElement(element);
    Check(hr == S_OK, "Lesson.FromXMLElement of the element itself", Hex(hr));
    hr = lesson->ToXMLElement(document, &written);
    Check(hr == S_OK && written != nullptr, "Lesson.ToXMLElement into the document itself", Hex(hr));
    if (written != nullptr) {
        written->Release();
    }
    comment->Release();
    element->Release();
    bag->Release();
    map->Release();
    lesson->Release();
    document->Release();
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

// The members of one dual interface in slot order, on its vtable half, and
// the vtable half hidden, dual, non-extensible and automation-compatible.
void CheckSlotOrder(ITypeLib* library, REFIID iid, const char* interfaceName, const Member* members,
                    std::size_t count) {
    const std::string label(interfaceName);
    ITypeInfo* dispatchInfo = nullptr;
    ITypeInfo* vtableInfo = nullptr;
    library->GetTypeInfoOfGuid(iid, &dispatchInfo);
    if (dispatchInfo != nullptr) {
        HREFTYPE reference = 0;
        if (SUCCEEDED(dispatchInfo->GetRefTypeOfImplType(-1, &reference))) {
            dispatchInfo->GetRefTypeInfo(reference, &vtableInfo);
        }
        dispatchInfo->Release();
    }
    Check(vtableInfo != nullptr, (label + " has its vtable interface").c_str());
    if (vtableInfo == nullptr) {
        return;
    }
    TYPEATTR* attributes = nullptr;
    WORD flags = 0;
    if (SUCCEEDED(vtableInfo->GetTypeAttr(&attributes))) {
        flags = attributes->wTypeFlags;
        vtableInfo->ReleaseTypeAttr(attributes);
    }
    const WORD wanted = TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FOLEAUTOMATION;
    Check((flags & wanted) == wanted,
          ("the vtable half of " + label + " is hidden, dual, non-extensible, automation").c_str(), Hex(flags));
    bool inOrder = true;
    std::wstring seen;
    for (UINT i = 0; i < count; ++i) {
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
    FUNCDESC* extra = nullptr;
    if (SUCCEEDED(vtableInfo->GetFuncDesc(static_cast<UINT>(count), &extra))) {
        inOrder = false;
        vtableInfo->ReleaseFuncDesc(extra);
    }
    Check(inOrder, (label + " members are in slot order").c_str(), seen);
    vtableInfo->Release();
}

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
        {&CLSID_ChildElement, L"ChildElement", TKIND_COCLASS},
        {&IID__ChildElement, L"_ChildElement", TKIND_DISPATCH},
        {&CLSID_ChildElementCollection, L"ChildElementCollection", TKIND_COCLASS},
        {&IID__ChildElementCollection, L"_ChildElementCollection", TKIND_DISPATCH},
        {&CLSID_Storyboard, L"Storyboard", TKIND_COCLASS},
        {&IID__Storyboard, L"_Storyboard", TKIND_DISPATCH},
        {&CLSID_StoryboardCollection, L"StoryboardCollection", TKIND_COCLASS},
        {&IID__StoryboardCollection, L"_StoryboardCollection", TKIND_DISPATCH},
        {&CLSID_LessonMap, L"LessonMap", TKIND_COCLASS},
        {&IID__LessonMap, L"_LessonMap", TKIND_DISPATCH},
        {&CLSID_LessonMapCollection, L"LessonMapCollection", TKIND_COCLASS},
        {&IID__LessonMapCollection, L"_LessonMapCollection", TKIND_DISPATCH},
        {&CLSID_Lesson, L"Lesson", TKIND_COCLASS},
        {&IID__Lesson, L"_Lesson", TKIND_DISPATCH},
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
        if (entry.guid == &CLSID_Constants || entry.guid == &CLSID_Functions) {
            const std::string flagLabel = label + " as an application object";
            Check((flags & TYPEFLAG_FAPPOBJECT) != 0, flagLabel.c_str(), Hex(flags));
        }
    }

    // The members of each interface in slot order, on the vtable interface.
    constexpr INVOKEKIND get = INVOKE_PROPERTYGET;
    constexpr INVOKEKIND put = INVOKE_PROPERTYPUT;
    constexpr INVOKEKIND call = INVOKE_FUNC;
    const Member functions[] = {
        {L"OCXPath", get}, {L"OCXVersion", get}, {L"OCXFilename", get},
        {L"NewGUID", call}, {L"EmptyGUID", call}, {L"HTMLColorToOLEColor", call},
        {L"OLEColorToHTMLColor", call}, {L"NewAssetData", call}, {L"NewFontData", call},
        {L"NewLocationData", call}, {L"NewRectangle", call}, {L"CleanXMLString", call},
        {L"FormatXMLString", call},
    };
    CheckSlotOrder(library, IID__Functions, "_Functions", functions, sizeof functions / sizeof functions[0]);
    const Member childElement[] = {
        {L"Name", get}, {L"Name", put}, {L"ElementType", get}, {L"ElementType", put}, {L"PPCObject", get},
        {L"Count", get}, {L"Exists", get}, {L"Remove", call}, {L"Clear", call}, {L"GetBoolean", call},
        {L"SetBoolean", call}, {L"GetLong", call}, {L"SetLong", call}, {L"GetDouble", call}, {L"SetDouble", call},
        {L"GetString", call}, {L"SetString", call}, {L"GetColor", call}, {L"SetColor", call}, {L"GetFont", call},
        {L"SetFont", call}, {L"GetRectangle", call}, {L"SetRectangle", call}, {L"GetAsset", call},
        {L"SetAsset", call}, {L"GetLocation", call}, {L"SetLocation", call}, {L"GetPPC", call}, {L"SetPPC", call},
        {L"GetCEC", call}, {L"SetCEC", call}, {L"Clone", call}, {L"FromPPC", call}, {L"ToClearXMLElement", call},
        {L"ToXMLElement", call}, {L"ToClearXMLString", call}, {L"ToXMLString", call}, {L"FromXMLElement", call},
        {L"FromXMLString", call},
    };
    CheckSlotOrder(library, IID__ChildElement, "_ChildElement", childElement,
                   sizeof childElement / sizeof childElement[0]);
    const Member childElementCollection[] = {
        {L"Name", get}, {L"Name", put}, {L"Length", get}, {L"Count", get}, {L"Item", get}, {L"IndexOf", call},
        {L"Append", call}, {L"Insert", call}, {L"Remove", call}, {L"RemoveAt", call}, {L"Clear", call},
        {L"Swap", call}, {L"MovePrevious", call}, {L"MoveNext", call}, {L"MoveFirst", call}, {L"MoveLast", call},
        {L"MoveTo", call}, {L"Clone", call}, {L"ToClearXMLElement", call}, {L"ToXMLElement", call},
        {L"FromXMLElement", call},
    };
    CheckSlotOrder(library, IID__ChildElementCollection, "_ChildElementCollection", childElementCollection,
                   sizeof childElementCollection / sizeof childElementCollection[0]);
    const Member storyboard[] = {
        {L"SBID", get}, {L"Title", get}, {L"Title", put}, {L"Identifier", get}, {L"Identifier", put},
        {L"SBType", get}, {L"SBType", put}, {L"Classification", get}, {L"Classification", put},
        {L"Properties", get}, {L"Children", get}, {L"Clone", call}, {L"Duplicate", call}, {L"CopyFrom", call},
        {L"ToClearXMLElement", call}, {L"ToXMLElement", call}, {L"FromXMLElement", call},
    };
    CheckSlotOrder(library, IID__Storyboard, "_Storyboard", storyboard, sizeof storyboard / sizeof storyboard[0]);
    const Member storyboardCollection[] = {
        {L"CurrentSB", get}, {L"CurrentSB", INVOKE_PROPERTYPUTREF}, {L"CurrentSBID", get}, {L"CurrentSBID", put},
        {L"Add", call}, {L"Contains", call}, {L"Count", get}, {L"Item", get}, {L"NewEnum", get},
        {L"Remove", call}, {L"Clear", call}, {L"RemoveCollection", call}, {L"AddCollection", call},
        {L"Clone", call}, {L"ToClearXMLElement", call}, {L"ToXMLElement", call}, {L"FromXMLElement", call},
    };
    CheckSlotOrder(library, IID__StoryboardCollection, "_StoryboardCollection", storyboardCollection,
                   sizeof storyboardCollection / sizeof storyboardCollection[0]);
    const Member lessonMap[] = {
        {L"Name", get}, {L"Name", put}, {L"Clear", call}, {L"Contains", call}, {L"FromTreeNode", call},
        {L"ToTreeNode", call}, {L"ToXMLElement", call}, {L"FromXMLElement", call}, {L"Clone", call},
        {L"InsertStoryboard", call}, {L"InsertMap", call}, {L"RemoveStoryboards", call},
        {L"KeepStoryboards", call},
    };
    CheckSlotOrder(library, IID__LessonMap, "_LessonMap", lessonMap, sizeof lessonMap / sizeof lessonMap[0]);
    const Member lessonMapCollection[] = {
        {L"DefaultMap", get}, {L"DefaultMap", INVOKE_PROPERTYPUTREF}, {L"Length", get}, {L"Count", get},
        {L"Item", get}, {L"ItemAt", get}, {L"IndexOf", call}, {L"IndexOfName", call}, {L"Append", call},
        {L"Insert", call}, {L"Remove", call}, {L"RemoveAt", call}, {L"Clear", call}, {L"Clone", call},
        {L"ToXMLElement", call}, {L"FromXMLElement", call},
    };
    CheckSlotOrder(library, IID__LessonMapCollection, "_LessonMapCollection", lessonMapCollection,
                   sizeof lessonMapCollection / sizeof lessonMapCollection[0]);
    const Member lesson[] = {
        {L"LessonID", get}, {L"LessonID", put}, {L"Title", get}, {L"Title", put}, {L"Identifier", get},
        {L"Identifier", put}, {L"Classification", get}, {L"Classification", put}, {L"Properties", get},
        {L"Maps", get}, {L"Storyboards", get}, {L"ToClearXMLElement", call}, {L"ToXMLElement", call},
        {L"FromXMLElement", call}, {L"ToXMLString", call}, {L"ToClearXMLString", call},
        {L"FromXMLString", call}, {L"Clone", call}, {L"Duplicate", call},
    };
    CheckSlotOrder(library, IID__Lesson, "_Lesson", lesson, sizeof lesson / sizeof lesson[0]);
    ITypeInfo* setInfo = nullptr;
    library->GetTypeInfoOfGuid(IID__StoryboardCollection, &setInfo);
    if (setInfo != nullptr) {
        MEMBERID ids[2] = {1, 1};
        LPOLESTR names[2] = {const_cast<LPOLESTR>(L"Item"), const_cast<LPOLESTR>(L"NewEnum")};
        setInfo->GetIDsOfNames(&names[0], 1, &ids[0]);
        setInfo->GetIDsOfNames(&names[1], 1, &ids[1]);
        Check(ids[0] == DISPID_VALUE, "Item is the default member of _StoryboardCollection");
        Check(ids[1] == DISPID_NEWENUM, "NewEnum is the enumerator member of _StoryboardCollection");
        setInfo->Release();
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
    if (!quillbank_test::StartCom()) {
        return 1;
    }
    CheckFunctions();
    CheckPersistedPropertyCollection();
    CheckChildElements();
    CheckStoryboards();
    CheckLessonMap();
    CheckLesson();
    CheckWrongDomNodes();
    CheckConstants();
    CheckTypeLibrary();
    CheckRegistration();
    CheckUnload();
    return quillbank_test::Finish("early-binding client");
}
