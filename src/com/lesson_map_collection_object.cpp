// LessonMapCollection as hosts see it.

#include <mutex>
#include <unordered_map>

#include <quillbank/error.hpp>
#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>

#include "com/direct_arguments.hpp"
#include "com/dispatch_object.hpp"
#include "com/errors.hpp"
#include "com/identity_map.hpp"
#include "com/objects.hpp"
#include "com/text.hpp"
#include "xml/msxml/interop.hpp"

namespace quillbank::com {

namespace {

using Maps = quillbank::LessonMapCollection;

const IID& kMapsIid = IID__LessonMapCollection;

template <class T, class Body>
HRESULT Out(T* result, Body&& body) noexcept {
    return quillbank::com::Out(kMapsIid, result, body);
}

class MapsObject;

IdentityMap<Maps, MapsObject> gLists;

class MapsObject final : public DispatchObject<_LessonMapCollection, &IID__LessonMapCollection> {
public:
    explicit MapsObject(std::shared_ptr<Maps> maps) : maps_(std::move(maps)) {}
    ~MapsObject() override {
        gLists.Forget(maps_.get(), this);
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerLessonMapListId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_DefaultMap(_LessonMap** result) override {
        return Out(result, [&] { *result = WrapMap(maps_->DefaultMap()); });
    }
    HRESULT STDMETHODCALLTYPE putref_DefaultMap(_LessonMap* value) override {
        return Guard(kMapsIid, [&] { maps_->SetDefaultMap(UnwrapMap(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Length(LONG* result) override {
        return Out(result, [&] { *result = maps_->Length(); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override {
        return Out(result, [&] { *result = maps_->Count(); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(BSTR name, _LessonMap** result) override {
        return Out(result, [&] { *result = WrapMap(maps_->Item(Utf8(name))); });
    }
    HRESULT STDMETHODCALLTYPE get_ItemAt(LONG index, _LessonMap** result) override {
        return Out(result, [&] { *result = WrapMap(maps_->ItemAt(index)); });
    }
    HRESULT STDMETHODCALLTYPE IndexOf(_LessonMap* map, LONG* result) override {
        return Out(result, [&] { *result = maps_->IndexOf(UnwrapMap(map)); });
    }
    HRESULT STDMETHODCALLTYPE IndexOfName(BSTR name, LONG* result) override {
        return Out(result, [&] { *result = maps_->IndexOfName(Utf8(name)); });
    }
    HRESULT STDMETHODCALLTYPE Append(_LessonMap* map) override {
        return Guard(kMapsIid, [&] { maps_->Append(UnwrapMap(map)); });
    }
    HRESULT STDMETHODCALLTYPE Insert(_LessonMap* map, LONG index) override {
        return Guard(kMapsIid, [&] { maps_->Insert(UnwrapMap(map), index); });
    }
    HRESULT STDMETHODCALLTYPE Remove(_LessonMap* map) override {
        return Guard(kMapsIid, [&] { maps_->Remove(UnwrapMap(map)); });
    }
    HRESULT STDMETHODCALLTYPE RemoveAt(LONG index) override {
        return Guard(kMapsIid, [&] { maps_->RemoveAt(index); });
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        return Guard(kMapsIid, [&] { maps_->Clear(); });
    }
    HRESULT STDMETHODCALLTYPE Clone(_LessonMapCollection** result) override {
        return Out(result, [&] { *result = WrapMaps(maps_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(result, [&] {
            *result = xml::msxml::DomOf(maps_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kMapsIid, [&] { maps_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }

protected:
    // The members with object arguments: Wine's ITypeInfo::Invoke takes no
    // interface arguments. DefaultMap is set by reference (Set in VBScript)
    // or by a plain property put (JScript).
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        if (id == 1 && (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
            if (parameters == nullptr || parameters->cArgs != 1) {
                *status = DISP_E_BADPARAMCOUNT;
                return true;
            }
            DISPPARAMS value = *parameters;
            value.cNamedArgs = 0;
            value.rgdispidNamedArgs = nullptr;
            DirectArguments arguments(&value, "O", {&IID__LessonMap});
            if ((*status = arguments.Status()) == S_OK) {
                *status = putref_DefaultMap(arguments.Object<_LessonMap>(0));
            }
            return true;
        }
        if (!IsCall(flags)) {
            return false;
        }
        switch (id) {
            case 6: {
                DirectArguments arguments(parameters, "O", {&IID__LessonMap});
                if ((*status = arguments.Status()) == S_OK) {
                    LONG index = -1;
                    *status = IndexOf(arguments.Object<_LessonMap>(0), &index);
                    HandLong(result, index);
                }
                return true;
            }
            case 8:
            case 10: {
                DirectArguments arguments(parameters, "O", {&IID__LessonMap});
                if ((*status = arguments.Status()) == S_OK) {
                    _LessonMap* map = arguments.Object<_LessonMap>(0);
                    *status = id == 8 ? Append(map) : Remove(map);
                }
                return true;
            }
            case 9: {
                DirectArguments arguments(parameters, "OL", {&IID__LessonMap});
                if ((*status = arguments.Status()) == S_OK) {
                    *status = Insert(arguments.Object<_LessonMap>(0), arguments.Long(1));
                }
                return true;
            }
            case 14: {
                DirectArguments arguments(parameters, "O", {&IID_IXMLDOMDocument});
                if ((*status = arguments.Status()) == S_OK) {
                    IXMLDOMElement* element = nullptr;
                    *status = ToXMLElement(arguments.Object<IXMLDOMDocument>(0), &element);
                    HandObject(result, element);
                }
                return true;
            }
            case 15: {
                DirectArguments arguments(parameters, "O", {&IID_IXMLDOMElement});
                if ((*status = arguments.Status()) == S_OK) {
                    *status = FromXMLElement(arguments.Object<IXMLDOMElement>(0));
                }
                return true;
            }
            default:
                return false;
        }
    }

private:
    std::shared_ptr<Maps> maps_;
};

}  // namespace

_LessonMapCollection* WrapMaps(const std::shared_ptr<Maps>& maps) {
    if (!maps) {
        return nullptr;
    }
    return gLists.Wrap(maps);
}

HRESULT CreateLessonMapCollection(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        _LessonMapCollection* created = WrapMaps(Maps::Create());
        const HRESULT hr = created->QueryInterface(iid, object);
        created->Release();
        return hr;
    } catch (...) {
        return ReportCurrentException(kMapsIid);
    }
}

}  // namespace quillbank::com
