// LessonMapCollection as hosts see it.

#include <mutex>
#include <unordered_map>

#include <quillbank/error.hpp>
#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>

#include "com/direct_members.hpp"
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
        if (InvokeObjectPut<MapsObject, _LessonMap, &MapsObject::putref_DefaultMap>(*this, 1, IID__LessonMap, id, flags,
                                                                                    parameters, status)) {
            return true;
        }
        using Map = _LessonMap;
        static constexpr std::array<const IID*, 2> kMap = {&IID__LessonMap, nullptr};
        static constexpr std::array<DirectMember<MapsObject>, 6> kMembers = {{
            {6, "O", kMap, &FindObject<MapsObject, Map, &MapsObject::IndexOf, -1>},
            {8, "O", kMap, &PassObject<MapsObject, Map, &MapsObject::Append>},
            {9, "OL", kMap, &PassObjectAndLong<MapsObject, Map, &MapsObject::Insert>},
            {10, "O", kMap, &PassObject<MapsObject, Map, &MapsObject::Remove>},
            ToXMLElementMember<MapsObject>(14),
            FromXMLElementMember<MapsObject>(15),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
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
