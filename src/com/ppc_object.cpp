// PersistedPropertyCollection as hosts see it.

#include <mutex>
#include <unordered_map>

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

using Bag = quillbank::PersistedPropertyCollection;

const IID& kIid = IID__PersistedPropertyCollection;

VARIANT_BOOL AsVariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

EncodingTypes Encoding(::EncodingTypes value) { return static_cast<EncodingTypes>(value); }

class PpcObject;

// One COM object per bag: the bags that have one, each to its object. An
// object leaves the map when it goes.
IdentityMap<Bag, PpcObject> gObjects;

class PpcObject final : public DispatchObject<_PersistedPropertyCollection, &IID__PersistedPropertyCollection> {
public:
    explicit PpcObject(std::shared_ptr<Bag> bag) : bag_(std::move(bag)) {}
    ~PpcObject() override {
        gObjects.Forget(bag_.get(), this);
    }

    const std::shared_ptr<Bag>& Core() const noexcept { return bag_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerObjectId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(bag_->Name()); });
    }
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
        return Guard(kIid, [&] { bag_->SetName(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override {
        return Out(result, [&] { *result = bag_->Count(); });
    }
    HRESULT STDMETHODCALLTYPE get_Exists(BSTR name, VARIANT_BOOL* result) override {
        return Out(result, [&] { *result = AsVariantBool(bag_->Exists(Utf8(name))); });
    }
    HRESULT STDMETHODCALLTYPE GetPropertyNameArray(LONG encodingType, SAFEARRAY** result) override {
        return Out(result, [&] {
            const std::vector<std::string> names = bag_->GetPropertyNameArray(encodingType);
            SAFEARRAY* array = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(names.size()));
            if (array == nullptr) {
                throw std::bad_alloc();
            }
            for (LONG i = 0; i < static_cast<LONG>(names.size()); ++i) {
                BSTR name = NewBstr(names[static_cast<std::size_t>(i)]);
                const HRESULT hr = SafeArrayPutElement(array, &i, name);
                SysFreeString(name);
                if (FAILED(hr)) {
                    SafeArrayDestroy(array);
                    throw std::bad_alloc();
                }
            }
            *result = array;
        });
    }
    HRESULT STDMETHODCALLTYPE Remove(BSTR name) override {
        return Guard(kIid, [&] { bag_->Remove(Utf8(name)); });
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        return Guard(kIid, [&] { bag_->Clear(); });
    }
    HRESULT STDMETHODCALLTYPE GetValue(BSTR name, VARIANT* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        VariantInit(result);
        return Guard(kIid, [&] { ToVariant(bag_->GetValue(Utf8(name)), result); });
    }
    HRESULT STDMETHODCALLTYPE GetEncodingType(BSTR name, LONG* result) override {
        return Out(result, [&] { *result = bag_->GetEncodingType(Utf8(name)); });
    }
    HRESULT STDMETHODCALLTYPE GetPropertyType(BSTR name, ::PropertyTypes* result) override {
        return Out(result, [&] { *result = static_cast<::PropertyTypes>(bag_->GetPropertyType(Utf8(name))); });
    }
    HRESULT STDMETHODCALLTYPE GetBoolean(BSTR name, VARIANT_BOOL fallback, VARIANT_BOOL* result) override {
        return Out(result, [&] { *result = AsVariantBool(bag_->GetBoolean(Utf8(name), fallback != VARIANT_FALSE)); });
    }
    HRESULT STDMETHODCALLTYPE SetBoolean(BSTR name, VARIANT_BOOL value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetBoolean(Utf8(name), value != VARIANT_FALSE, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetLong(BSTR name, LONG fallback, LONG* result) override {
        return Out(result, [&] { *result = bag_->GetLong(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetLong(BSTR name, LONG value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetLong(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetDouble(BSTR name, double fallback, double* result) override {
        return Out(result, [&] { *result = bag_->GetDouble(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetDouble(BSTR name, double value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetDouble(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetString(BSTR name, BSTR fallback, BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(bag_->GetString(Utf8(name), Utf8(fallback))); });
    }
    HRESULT STDMETHODCALLTYPE SetString(BSTR name, BSTR value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetString(Utf8(name), Utf8(value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetDate(BSTR name, DATE fallback, DATE* result) override {
        return Out(result, [&] { *result = bag_->GetDate(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetDate(BSTR name, DATE value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetDate(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetColor(BSTR name, OLE_COLOR fallback, OLE_COLOR* result) override {
        return Out(result, [&] { *result = bag_->GetColor(Utf8(name), fallback); });
    }
    HRESULT STDMETHODCALLTYPE SetColor(BSTR name, OLE_COLOR value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetColor(Utf8(name), value, Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetFont(BSTR name, ::FontData* fallback, ::FontData* result) override {
        return GetRecord(name, fallback, result, &Bag::GetFont);
    }
    HRESULT STDMETHODCALLTYPE SetFont(BSTR name, ::FontData* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kIid, [&] { bag_->SetFont(Utf8(name), FromCom(*value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetRectangle(BSTR name, ::Rectangle* fallback, ::Rectangle* result) override {
        return GetRecord(name, fallback, result, &Bag::GetRectangle);
    }
    HRESULT STDMETHODCALLTYPE SetRectangle(BSTR name, ::Rectangle* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kIid, [&] { bag_->SetRectangle(Utf8(name), FromCom(*value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetAsset(BSTR name, ::AssetData* fallback, ::AssetData* result) override {
        return GetRecord(name, fallback, result, &Bag::GetAsset);
    }
    HRESULT STDMETHODCALLTYPE SetAsset(BSTR name, ::AssetData* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kIid, [&] { bag_->SetAsset(Utf8(name), FromCom(*value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetLocation(BSTR name, ::LocationData* fallback, ::LocationData* result) override {
        return GetRecord(name, fallback, result, &Bag::GetLocation);
    }
    HRESULT STDMETHODCALLTYPE SetLocation(BSTR name, ::LocationData* value, ::EncodingTypes encoding) override {
        if (value == nullptr) {
            return E_POINTER;
        }
        return Guard(kIid, [&] {
            // The setter may normalise the record; the host sees what was stored.
            quillbank::LocationData location = FromCom(*value);
            bag_->SetLocation(Utf8(name), location, Encoding(encoding));
            ::LocationData written = ToCom(location);
            FreeTexts(*value);
            *value = written;
        });
    }
    HRESULT STDMETHODCALLTYPE GetPPC(BSTR name, _PersistedPropertyCollection** fallback,
                                     _PersistedPropertyCollection** result) override {
        return Out(result, [&] {
            const std::shared_ptr<Bag> given = fallback == nullptr ? nullptr : UnwrapPPC(*fallback);
            *result = WrapPPC(bag_->GetPPC(Utf8(name), given));
        });
    }
    HRESULT STDMETHODCALLTYPE SetPPC(BSTR name, _PersistedPropertyCollection* value,
                                     ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetPPC(Utf8(name), UnwrapPPC(value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE GetCEC(BSTR name, _ChildElementCollection* fallback,
                                     _ChildElementCollection** result) override {
        return Out(result, [&] { *result = WrapCEC(bag_->GetCEC(Utf8(name), UnwrapCEC(fallback))); });
    }
    HRESULT STDMETHODCALLTYPE SetCEC(BSTR name, _ChildElementCollection* value, ::EncodingTypes encoding) override {
        return Guard(kIid, [&] { bag_->SetCEC(Utf8(name), UnwrapCEC(value), Encoding(encoding)); });
    }
    HRESULT STDMETHODCALLTYPE Clone(_PersistedPropertyCollection** result) override {
        return Out(result, [&] { *result = WrapPPC(bag_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLString(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(bag_->ToClearXMLString()); });
    }
    HRESULT STDMETHODCALLTYPE ToXMLString(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(bag_->ToXMLString()); });
    }
    HRESULT STDMETHODCALLTYPE FromXMLString(BSTR text) override {
        return Guard(kIid, [&] { bag_->FromXMLString(Utf8(text)); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(result, [&] {
            *result = xml::msxml::DomOf(bag_->ToClearXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(result, [&] {
            *result = xml::msxml::DomOf(bag_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kIid, [&] { bag_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }

protected:
    // GetPropertyNameArray (an array result), GetPPC, SetPPC, GetCEC, SetCEC
    // and the XML members (object arguments) are called here: Wine's
    // ITypeInfo::Invoke hands back no arrays and takes no interface arguments.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        using Ppc = _PersistedPropertyCollection;
        using Cec = _ChildElementCollection;
        static constexpr std::array<DirectMember<PpcObject>, 8> kMembers = {{
            {4, "N", {nullptr, nullptr},
             [](PpcObject& self, DirectArguments& arguments, VARIANT* result) {
                 SAFEARRAY* names = nullptr;
                 const HRESULT hr = self.GetPropertyNameArray(arguments.Long(0), &names);
                 Hand(result, VT_ARRAY | VT_BSTR, names);
                 return hr;
             }},
            {30, "SO", {&IID__PersistedPropertyCollection, nullptr},
             &GetObjectValue<PpcObject, Ppc, &PpcObject::GetPPC>},
            {31, "SOE", {&IID__PersistedPropertyCollection, nullptr},
             [](PpcObject& self, DirectArguments& arguments, VARIANT*) {
                 return self.SetPPC(arguments.Text(0), arguments.Object<Ppc>(1),
                                    static_cast<::EncodingTypes>(arguments.Long(2)));
             }},
            {32, "SO", {&IID__ChildElementCollection, nullptr},
             [](PpcObject& self, DirectArguments& arguments, VARIANT* result) {
                 Cec* list = nullptr;
                 const HRESULT hr = self.GetCEC(arguments.Text(0), arguments.Object<Cec>(1), &list);
                 HandObject(result, list);
                 return hr;
             }},
            {33, "SOE", {&IID__ChildElementCollection, nullptr},
             [](PpcObject& self, DirectArguments& arguments, VARIANT*) {
                 return self.SetCEC(arguments.Text(0), arguments.Object<Cec>(1),
                                    static_cast<::EncodingTypes>(arguments.Long(2)));
             }},
            ToClearXMLElementMember<PpcObject>(38),
            ToXMLElementMember<PpcObject>(39),
            FromXMLElementMember<PpcObject>(40),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    template <class T, class Body>
    static HRESULT Out(T* result, Body&& body) {
        if (result == nullptr) {
            return E_POINTER;
        }
        *result = T{};
        return Guard(kIid, body);
    }

    template <class ComRecord, class Getter>
    HRESULT GetRecord(BSTR name, ComRecord* fallback, ComRecord* result, Getter getter) {
        if (fallback == nullptr) {
            return E_POINTER;
        }
        return Out(result, [&] { *result = ToCom(((*bag_).*getter)(Utf8(name), FromCom(*fallback))); });
    }

    // Puts a result into the caller's variant, or frees it when the caller
    // wants none.
    static void Hand(VARIANT* result, VARTYPE type, SAFEARRAY* array) {
        if (result != nullptr) {
            VariantInit(result);
            V_VT(result) = type;
            V_ARRAY(result) = array;
        } else if (array != nullptr) {
            SafeArrayDestroy(array);
        }
    }

    static void ToVariant(const Variant& value, VARIANT* out) {
        switch (value.GetKind()) {
            case Variant::Kind::Empty:
                return;
            case Variant::Kind::Nothing:
                V_VT(out) = VT_DISPATCH;
                V_DISPATCH(out) = nullptr;
                return;
            case Variant::Kind::Boolean:
                V_VT(out) = VT_BOOL;
                V_BOOL(out) = AsVariantBool(value.AsBoolean());
                return;
            case Variant::Kind::Long:
                V_VT(out) = VT_I4;
                V_I4(out) = value.AsLong();
                return;
            case Variant::Kind::Double:
                V_VT(out) = VT_R8;
                V_R8(out) = value.AsDouble();
                return;
            case Variant::Kind::String:
                V_BSTR(out) = NewBstr(value.AsString());
                V_VT(out) = VT_BSTR;
                return;
            case Variant::Kind::Date:
                V_VT(out) = VT_DATE;
                V_DATE(out) = value.AsDate();
                return;
            case Variant::Kind::Font:
                RecordVariant(value.AsFont(), out);
                return;
            case Variant::Kind::Rectangle:
                RecordVariant(value.AsRectangle(), out);
                return;
            case Variant::Kind::Asset:
                RecordVariant(value.AsAsset(), out);
                return;
            case Variant::Kind::Location:
                RecordVariant(value.AsLocation(), out);
                return;
            case Variant::Kind::PPC:
                V_DISPATCH(out) = WrapPPC(value.AsPPC());
                V_VT(out) = VT_DISPATCH;
                return;
            case Variant::Kind::CEC:
                V_DISPATCH(out) = WrapCEC(value.AsCEC());
                V_VT(out) = VT_DISPATCH;
                return;
        }
    }

    std::shared_ptr<Bag> bag_;
};

}  // namespace

_PersistedPropertyCollection* WrapPPC(const std::shared_ptr<Bag>& bag) {
    if (!bag) {
        return nullptr;
    }
    return gObjects.Wrap(bag);
}

std::shared_ptr<Bag> UnwrapPPC(IUnknown* object) {
    if (object == nullptr) {
        return nullptr;
    }
    void* ours = nullptr;
    if (FAILED(object->QueryInterface(kServerObjectId, &ours)) || ours == nullptr) {
        throw Error(ErrTypeMismatch, "PersistedPropertyCollection", "Type mismatch");
    }
    // Only bags answer kServerObjectId.
    auto* bag = static_cast<PpcObject*>(static_cast<_PersistedPropertyCollection*>(ours));
    std::shared_ptr<Bag> core = bag->Core();
    bag->Release();
    return core;
}

HRESULT CreatePersistedPropertyCollection(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        _PersistedPropertyCollection* created = WrapPPC(Bag::Create());
        const HRESULT hr = created->QueryInterface(iid, object);
        created->Release();
        return hr;
    } catch (...) {
        return ReportCurrentException(kIid);
    }
}

}  // namespace quillbank::com
