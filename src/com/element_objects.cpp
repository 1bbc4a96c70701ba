// ChildElement and ChildElementCollection as hosts see them.

#include <mutex>
#include <unordered_map>

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/error.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "com/direct_members.hpp"
#include "com/dispatch_object.hpp"
#include "com/errors.hpp"
#include "com/identity_map.hpp"
#include "com/objects.hpp"
#include "com/records.hpp"
#include "com/text.hpp"
#include "xml/msxml/interop.hpp"

namespace quillbank::com {

namespace {

using Element = quillbank::ChildElement;
using List = quillbank::ChildElementCollection;

VARIANT_BOOL AsVariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

EncodingTypes Encoding(::EncodingTypes value) { return static_cast<EncodingTypes>(value); }

class CeObject;
class CecObject;

// One COM object per core object, each map from the core object to its COM
// object; an object leaves its map when it goes.
IdentityMap<Element, CeObject> gElements;
IdentityMap<List, CecObject> gLists;

const IID& kCeIid = IID__ChildElement;
const IID& kCecIid = IID__ChildElementCollection;

class CeObject final : public DispatchObject<_ChildElement, &IID__ChildElement> {
public:
    explicit CeObject(std::shared_ptr<Element> element) : element_(std::move(element)) {}
    ~CeObject() override {
        gElements.Forget(element_.get(), this);
    }

    const std::shared_ptr<Element>& Core() const noexcept { return element_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerChildElementId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) override {
        return Out(kCeIid, result, [&] { *result = NewBstr(element_->Name()); });
    }
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
        return Guard(kCeIid, [&] { element_->SetName(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_ElementType(BSTR* result) override {
        return Out(kCeIid, result, [&] { *result = NewBstr(element_->ElementType()); });
    }
    HRESULT STDMETHODCALLTYPE put_ElementType(BSTR value) override {
        return Guard(kCeIid, [&] { element_->SetElementType(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_PPCObject(_PersistedPropertyCollection** result) override {
        return Out(kCeIid, result, [&] { *result = WrapPPC(element_->PPCObject()); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override {
        return Out(kCeIid, result, [&] { *result = element_->Count(); });
    }
    HRESULT STDMETHODCALLTYPE get_Exists(BSTR name, VARIANT_BOOL* result) override {
        return Out(kCeIid, result, [&] { *result = AsVariantBool(element_->Exists(Utf8(name))); });
    }
    HRESULT STDMETHODCALLTYPE Remove(BSTR name) override {
        return Guard(kCeIid, [&] { element_->Remove(Utf8(name)); });
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        return Guard(kCeIid, [&] { element_->Clear(); });
    }
    HRESULT STDMETHODCALLTYPE GetBoolean(BSTR name, VARIANT_BOOL fallback, VARIANT_BOOL* result) override {
        return Out(kCeIid, result,
                   [&] { *result = AsVariantBool(element_->GetBoolean(Utf8(name), fallback != VARIANT_FALSE)); });
    }
    HRESULT STDMETHODCALLTYPE SetBoolean(BSTR name, VARIANT_BOOL value, ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] { element_->SetBoolean(Utf8(name), value != VARIANT_FALSE, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetLong(BSTR name, LONG fallback, LONG* result) override {
        return Out(kCeIid, result, [&] { *result = element_->GetLong(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetLong(BSTR name, LONG value, ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] { element_->SetLong(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetDouble(BSTR name, double fallback, double* result) override {
        return Out(kCeIid, result, [&] { *result = element_->GetDouble(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetDouble(BSTR name, double value, ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] { element_->SetDouble(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetString(BSTR name, BSTR fallback, BSTR* result) override {
        return Out(kCeIid, result, [&] { *result = NewBstr(element_->GetString(Utf8(name), Utf8(fallback))); });
    }
    HRESULT STDMETHODCALLTYPE SetString(BSTR name, BSTR value, ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] { element_->SetString(Utf8(name), Utf8(value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetColor(BSTR name, OLE_COLOR fallback, OLE_COLOR* result) override {
        return Out(kCeIid, result, [&] { *result = element_->GetColor(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetColor(BSTR name, OLE_COLOR value, ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] { element_->SetColor(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetFont(BSTR name, ::FontData* fallback, ::FontData* result) override {
        return GetRecord(name, fallback, result, &Element::GetFont);
    }
    HRESULT STDMETHODCALLTYPE SetFont(BSTR name, ::FontData* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kCeIid, [&] { element_->SetFont(Utf8(name), FromCom(*value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetRectangle(BSTR name, ::Rectangle* fallback, ::Rectangle* result) override {
        return GetRecord(name, fallback, result, &Element::GetRectangle);
    }
    HRESULT STDMETHODCALLTYPE SetRectangle(BSTR name, ::Rectangle* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kCeIid, [&] { element_->SetRectangle(Utf8(name), FromCom(*value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetAsset(BSTR name, ::AssetData* fallback, ::AssetData* result) override {
        return GetRecord(name, fallback, result, &Element::GetAsset);
    }
    HRESULT STDMETHODCALLTYPE SetAsset(BSTR name, ::AssetData* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kCeIid, [&] { element_->SetAsset(Utf8(name), FromCom(*value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetLocation(BSTR name, ::LocationData* fallback, ::LocationData* result) override {
        return GetRecord(name, fallback, result, &Element::GetLocation);
    }
    HRESULT STDMETHODCALLTYPE SetLocation(BSTR name, ::LocationData* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kCeIid, [&] {
            // The setter may normalise the record; the host sees what was stored.
            quillbank::LocationData location = FromCom(*value);
            element_->SetLocation(Utf8(name), location, Encoding(encoding));
            ::LocationData written = ToCom(location);
            FreeTexts(*value);
            *value = written;
        });
    }
    HRESULT STDMETHODCALLTYPE GetPPC(BSTR name, _PersistedPropertyCollection** fallback,
                                     _PersistedPropertyCollection** result) override {
        return Out(kCeIid, result, [&] {
            *result = WrapPPC(element_->GetPPC(Utf8(name), fallback == nullptr ? nullptr : UnwrapPPC(*fallback)));
        });
    }
    HRESULT STDMETHODCALLTYPE SetPPC(BSTR name, _PersistedPropertyCollection** value,
                                     ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] {
            element_->SetPPC(Utf8(name), value == nullptr ? nullptr : UnwrapPPC(*value), Encoding(encoding));
        });
    }
    HRESULT STDMETHODCALLTYPE GetCEC(BSTR name, _ChildElementCollection** fallback,
                                     _ChildElementCollection** result) override {
        return Out(kCeIid, result, [&] {
            *result = WrapCEC(element_->GetCEC(Utf8(name), fallback == nullptr ? nullptr : UnwrapCEC(*fallback)));
        });
    }
    HRESULT STDMETHODCALLTYPE SetCEC(BSTR name, _ChildElementCollection** value, ::EncodingTypes encoding) override {
        return Guard(kCeIid, [&] {
            element_->SetCEC(Utf8(name), value == nullptr ? nullptr : UnwrapCEC(*value), Encoding(encoding));
        });
    }
    HRESULT STDMETHODCALLTYPE Clone(_ChildElement** result) override {
        return Out(kCeIid, result, [&] { *result = WrapCE(element_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE FromPPC(_PersistedPropertyCollection* bag, VARIANT* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        VariantInit(result);
        return Guard(kCeIid, [&] { element_->FromPPC(UnwrapPPC(bag)); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kCeIid, result, [&] {
            *result = xml::msxml::DomOf(element_->ToClearXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kCeIid, result, [&] {
            *result = xml::msxml::DomOf(element_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLString(BSTR* result) override {
        return Out(kCeIid, result, [&] { *result = NewBstr(element_->ToClearXMLString()); });
    }
    HRESULT STDMETHODCALLTYPE ToXMLString(BSTR* result) override {
        return Out(kCeIid, result, [&] { *result = NewBstr(element_->ToXMLString()); });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kCeIid, [&] { element_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }
    HRESULT STDMETHODCALLTYPE FromXMLString(BSTR text) override {
        return Guard(kCeIid, [&] { element_->FromXMLString(Utf8(text)); });
    }

protected:
    // The members with object arguments: Wine's ITypeInfo::Invoke takes no
    // interface arguments.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        using Ppc = _PersistedPropertyCollection;
        using Cec = _ChildElementCollection;
        static constexpr std::array<DirectMember<CeObject>, 8> kMembers = {{
            {26, "SO", {&IID__PersistedPropertyCollection, nullptr}, &GetObjectValue<CeObject, Ppc, &CeObject::GetPPC>},
            {27, "SOE", {&IID__PersistedPropertyCollection, nullptr}, &SetObjectValue<CeObject, Ppc, &CeObject::SetPPC>},
            {28, "SO", {&IID__ChildElementCollection, nullptr}, &GetObjectValue<CeObject, Cec, &CeObject::GetCEC>},
            {29, "SOE", {&IID__ChildElementCollection, nullptr}, &SetObjectValue<CeObject, Cec, &CeObject::SetCEC>},
            {31, "O", {&IID__PersistedPropertyCollection, nullptr},
             &PassObjectGiveEmpty<CeObject, Ppc, &CeObject::FromPPC>},
            ToClearXMLElementMember<CeObject>(32),
            ToXMLElementMember<CeObject>(33),
            FromXMLElementMember<CeObject>(36),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    template <class ComRecord, class Getter>
    HRESULT GetRecord(BSTR name, ComRecord* fallback, ComRecord* result, Getter getter) {
        if (fallback == nullptr) {
            return E_POINTER;
        }
        return Out(kCeIid, result,
                   [&] { *result = ToCom(((*element_).*getter)(Utf8(name), FromCom(*fallback))); });
    }

    std::shared_ptr<Element> element_;
};

class CecObject final : public DispatchObject<_ChildElementCollection, &IID__ChildElementCollection> {
public:
    explicit CecObject(std::shared_ptr<List> list) : list_(std::move(list)) {}
    ~CecObject() override {
        gLists.Forget(list_.get(), this);
    }

    const std::shared_ptr<List>& Core() const noexcept { return list_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerChildElementListId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) override {
        return Out(kCecIid, result, [&] { *result = NewBstr(list_->Name()); });
    }
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
        return Guard(kCecIid, [&] { list_->SetName(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Length(LONG* result) override {
        return Out(kCecIid, result, [&] { *result = list_->Length(); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override {
        return Out(kCecIid, result, [&] { *result = list_->Count(); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(LONG index, _ChildElement** result) override {
        return Out(kCecIid, result, [&] { *result = WrapCE(list_->Item(index)); });
    }
    HRESULT STDMETHODCALLTYPE IndexOf(_ChildElement* element, LONG* result) override {
        return Out(kCecIid, result, [&] { *result = list_->IndexOf(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE Append(_ChildElement* element) override {
        return Guard(kCecIid, [&] { list_->Append(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE Insert(_ChildElement* element, LONG index) override {
        return Guard(kCecIid, [&] { list_->Insert(UnwrapCE(element), index); });
    }
    HRESULT STDMETHODCALLTYPE Remove(_ChildElement* element) override {
        return Guard(kCecIid, [&] { list_->Remove(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE RemoveAt(LONG index) override {
        return Guard(kCecIid, [&] { list_->RemoveAt(index); });
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        return Guard(kCecIid, [&] { list_->Clear(); });
    }
    HRESULT STDMETHODCALLTYPE Swap(LONG source, LONG destination) override {
        return Guard(kCecIid, [&] { list_->Swap(source, destination); });
    }
    HRESULT STDMETHODCALLTYPE MovePrevious(_ChildElement* element) override {
        return Guard(kCecIid, [&] { list_->MovePrevious(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE MoveNext(_ChildElement* element) override {
        return Guard(kCecIid, [&] { list_->MoveNext(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE MoveFirst(_ChildElement* element) override {
        return Guard(kCecIid, [&] { list_->MoveFirst(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE MoveLast(_ChildElement* element) override {
        return Guard(kCecIid, [&] { list_->MoveLast(UnwrapCE(element)); });
    }
    HRESULT STDMETHODCALLTYPE MoveTo(_ChildElement* element, LONG destination) override {
        return Guard(kCecIid, [&] { list_->MoveTo(UnwrapCE(element), destination); });
    }
    HRESULT STDMETHODCALLTYPE Clone(_ChildElementCollection** result) override {
        return Out(kCecIid, result, [&] { *result = WrapCEC(list_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kCecIid, result, [&] {
            *result = xml::msxml::DomOf(list_->ToClearXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kCecIid, result, [&] {
            *result = xml::msxml::DomOf(list_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kCecIid, [&] { list_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }

protected:
    // The members with object arguments: Wine's ITypeInfo::Invoke takes no
    // interface arguments.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        using Ce = _ChildElement;
        static constexpr std::array<const IID*, 2> kElement = {&IID__ChildElement, nullptr};
        static constexpr std::array<DirectMember<CecObject>, 12> kMembers = {{
            {5, "O", kElement, &FindObject<CecObject, Ce, &CecObject::IndexOf, 0>},
            {6, "O", kElement, &PassObject<CecObject, Ce, &CecObject::Append>},
            {7, "OL", kElement, &PassObjectAndLong<CecObject, Ce, &CecObject::Insert>},
            {8, "O", kElement, &PassObject<CecObject, Ce, &CecObject::Remove>},
            {12, "O", kElement, &PassObject<CecObject, Ce, &CecObject::MovePrevious>},
            {13, "O", kElement, &PassObject<CecObject, Ce, &CecObject::MoveNext>},
            {14, "O", kElement, &PassObject<CecObject, Ce, &CecObject::MoveFirst>},
            {15, "O", kElement, &PassObject<CecObject, Ce, &CecObject::MoveLast>},
            {16, "OL", kElement, &PassObjectAndLong<CecObject, Ce, &CecObject::MoveTo>},
            ToClearXMLElementMember<CecObject>(18),
            ToXMLElementMember<CecObject>(19),
            FromXMLElementMember<CecObject>(20),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    std::shared_ptr<List> list_;
};

}  // namespace

_ChildElement* WrapCE(const std::shared_ptr<Element>& element) {
    if (!element) {
        return nullptr;
    }
    return gElements.Wrap(element);
}

_ChildElementCollection* WrapCEC(const std::shared_ptr<List>& list) {
    if (!list) {
        return nullptr;
    }
    return gLists.Wrap(list);
}

std::shared_ptr<Element> UnwrapCE(IUnknown* object) {
    if (object == nullptr) {
        return nullptr;
    }
    void* ours = nullptr;
    if (FAILED(object->QueryInterface(kServerChildElementId, &ours)) || ours == nullptr) {
        throw Error(ErrTypeMismatch, "ChildElement", "Type mismatch");
    }
    auto* element = static_cast<CeObject*>(static_cast<_ChildElement*>(ours));
    std::shared_ptr<Element> core = element->Core();
    element->Release();
    return core;
}

std::shared_ptr<List> UnwrapCEC(IUnknown* object) {
    if (object == nullptr) {
        return nullptr;
    }
    void* ours = nullptr;
    if (FAILED(object->QueryInterface(kServerChildElementListId, &ours)) || ours == nullptr) {
        throw Error(ErrTypeMismatch, "ChildElementCollection", "Type mismatch");
    }
    auto* list = static_cast<CecObject*>(static_cast<_ChildElementCollection*>(ours));
    std::shared_ptr<List> core = list->Core();
    list->Release();
    return core;
}

HRESULT CreateChildElement(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        return CreateAs(WrapCE(Element::Create()), iid, object);
    } catch (...) {
        return ReportCurrentException(kCeIid);
    }
}

HRESULT CreateChildElementCollection(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        return CreateAs(WrapCEC(List::Create()), iid, object);
    } catch (...) {
        return ReportCurrentException(kCecIid);
    }
}

}  // namespace quillbank::com
