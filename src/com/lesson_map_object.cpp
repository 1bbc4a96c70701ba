// LessonMap as hosts see it, and the bridge to the host's tree-view control:
// its Node and Nodes objects are called late-bound through IDispatch.

#include <mutex>
#include <unordered_map>

#include <quillbank/error.hpp>
#include <quillbank/lesson_map.hpp>
#include <quillbank/storyboard_collection.hpp>
#include <quillbank/tree_view.hpp>

#include "com/direct_members.hpp"
#include "com/dispatch_object.hpp"
#include "com/errors.hpp"
#include "com/identity_map.hpp"
#include "com/objects.hpp"
#include "com/text.hpp"
#include "xml/msxml/interop.hpp"

namespace quillbank::com {

namespace {

using Map = quillbank::LessonMap;

const IID& kMapIid = IID__LessonMap;

template <class T, class Body>
HRESULT Out(T* result, Body&& body) noexcept {
    return quillbank::com::Out(kMapIid, result, body);
}

// Calls a member of a host object by name; a failure becomes the library's
// error with the host's number, source and description.
void CallByName(IDispatch* object, const wchar_t* name, WORD flags, VARIANT* arguments, UINT count,
                VARIANT* result) {
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) {
        throw Error(static_cast<std::int32_t>(hr), "LessonMap", "The tree view has no member " + Utf8(names[0]));
    }
    DISPPARAMS parameters{arguments, nullptr, count, 0};
    EXCEPINFO exception{};
    UINT argumentError = 0;
    hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, &exception, &argumentError);
    if (FAILED(hr)) {
        if (hr == DISP_E_EXCEPTION && exception.pfnDeferredFillIn != nullptr) {
            exception.pfnDeferredFillIn(&exception);
        }
        const std::int32_t number = hr == DISP_E_EXCEPTION
                                        ? (exception.scode != 0 ? static_cast<std::int32_t>(exception.scode)
                                                                : static_cast<std::int32_t>(exception.wCode))
                                        : static_cast<std::int32_t>(hr);
        std::string source = exception.bstrSource != nullptr ? Utf8(exception.bstrSource) : "LessonMap";
        std::string description = exception.bstrDescription != nullptr ? Utf8(exception.bstrDescription)
                                                                        : "The tree view's call failed.";
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        throw Error(number, std::move(source), std::move(description));
    }
}

// The object a variant result holds: null for Nothing, Empty or Null.
IDispatch* TakeObject(VARIANT* value) {
    IDispatch* object = nullptr;
    if (V_VT(value) == VT_DISPATCH && V_DISPATCH(value) != nullptr) {
        object = V_DISPATCH(value);
        object->AddRef();
    } else if (V_VT(value) == VT_UNKNOWN && V_UNKNOWN(value) != nullptr) {
        V_UNKNOWN(value)->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object));
    }
    VariantClear(value);
    return object;
}

class HostNode final : public TreeNode {
public:
    explicit HostNode(IDispatch* node) : node_(node) { node_->AddRef(); }
    HostNode(const HostNode&) = delete;
    HostNode& operator=(const HostNode&) = delete;
    ~HostNode() override { node_->Release(); }

    IDispatch* Object() const noexcept { return node_; }

    std::string Key() const override {
        VARIANT key;
        VariantInit(&key);
        CallByName(node_, L"Key", DISPATCH_PROPERTYGET, nullptr, 0, &key);
        VARIANT text;
        VariantInit(&text);
        const HRESULT hr = VariantChangeType(&text, &key, 0, VT_BSTR);
        VariantClear(&key);
        if (FAILED(hr)) {
            throw Error(ErrTypeMismatch, "LessonMap", "Type mismatch");
        }
        std::string result = Utf8(V_BSTR(&text));
        VariantClear(&text);
        return result;
    }
    std::shared_ptr<TreeNode> Child() const override { return Related(L"Child"); }
    std::shared_ptr<TreeNode> Next() const override { return Related(L"Next"); }

    static std::shared_ptr<TreeNode> Of(IDispatch* node) {
        if (node == nullptr) {
            return nullptr;
        }
        return std::make_shared<HostNode>(node);
    }

private:
    std::shared_ptr<TreeNode> Related(const wchar_t* name) const {
        VARIANT value;
        VariantInit(&value);
        CallByName(node_, name, DISPATCH_PROPERTYGET, nullptr, 0, &value);
        IDispatch* related = TakeObject(&value);
        std::shared_ptr<TreeNode> result = Of(related);
        if (related != nullptr) {
            related->Release();
        }
        return result;
    }

    IDispatch* node_;
};

class HostNodes final : public TreeNodes {
public:
    explicit HostNodes(IDispatch* nodes) : nodes_(nodes) { nodes_->AddRef(); }
    HostNodes(const HostNodes&) = delete;
    HostNodes& operator=(const HostNodes&) = delete;
    ~HostNodes() override { nodes_->Release(); }

    std::shared_ptr<TreeNode> Add(const std::shared_ptr<TreeNode>& relative, std::int32_t relationship,
                                  std::string_view key, std::string_view text) override {
        // Arguments in reverse order: Relative, Relationship, Key, Text.
        VARIANT arguments[4];
        for (VARIANT& argument : arguments) {
            VariantInit(&argument);
        }
        V_VT(&arguments[3]) = VT_DISPATCH;
        V_DISPATCH(&arguments[3]) = NodeObject(relative);
        V_VT(&arguments[2]) = VT_I4;
        V_I4(&arguments[2]) = relationship;
        V_VT(&arguments[1]) = VT_BSTR;
        V_BSTR(&arguments[1]) = NewBstr(key);
        V_VT(&arguments[0]) = VT_BSTR;
        V_BSTR(&arguments[0]) = NewBstr(text);
        VARIANT added;
        VariantInit(&added);
        try {
            CallByName(nodes_, L"Add", DISPATCH_METHOD, arguments, 4, &added);
        } catch (...) {
            SysFreeString(V_BSTR(&arguments[1]));
            SysFreeString(V_BSTR(&arguments[0]));
            throw;
        }
        SysFreeString(V_BSTR(&arguments[1]));
        SysFreeString(V_BSTR(&arguments[0]));
        IDispatch* node = TakeObject(&added);
        std::shared_ptr<TreeNode> result = HostNode::Of(node);
        if (node != nullptr) {
            node->Release();
        }
        return result;
    }
    void Remove(const std::shared_ptr<TreeNode>& node) override {
        VARIANT argument;
        VariantInit(&argument);
        V_VT(&argument) = VT_DISPATCH;
        V_DISPATCH(&argument) = NodeObject(node);
        CallByName(nodes_, L"Remove", DISPATCH_METHOD, &argument, 1, nullptr);
    }

private:
    static IDispatch* NodeObject(const std::shared_ptr<TreeNode>& node) {
        const auto* host = dynamic_cast<const HostNode*>(node.get());
        return host != nullptr ? host->Object() : nullptr;
    }

    IDispatch* nodes_;
};

class MapObject;

IdentityMap<Map, MapObject> gMaps;

class MapObject final : public DispatchObject<_LessonMap, &IID__LessonMap> {
public:
    explicit MapObject(std::shared_ptr<Map> map) : map_(std::move(map)) {}
    ~MapObject() override {
        gMaps.Forget(map_.get(), this);
    }

    const std::shared_ptr<Map>& Core() const noexcept { return map_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerLessonMapId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(map_->Name()); });
    }
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
        return Guard(kMapIid, [&] { map_->SetName(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE Clear() override {
        return Guard(kMapIid, [&] { map_->Clear(); });
    }
    HRESULT STDMETHODCALLTYPE Contains(BSTR id, VARIANT_BOOL* result) override {
        return Out(result, [&] { *result = map_->Contains(Utf8(id)) ? VARIANT_TRUE : VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE FromTreeNode(IDispatch* root) override {
        return Guard(kMapIid, [&] { map_->FromTreeNode(HostNode::Of(root)); });
    }
    HRESULT STDMETHODCALLTYPE ToTreeNode(IDispatch* nodes, IDispatch* root) override {
        return Guard(kMapIid, [&] {
            std::shared_ptr<TreeNodes> collection;
            if (nodes != nullptr) {
                collection = std::make_shared<HostNodes>(nodes);
            }
            map_->ToTreeNode(collection, HostNode::Of(root));
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(VARIANT, IXMLDOMElement** result) override {
        return Out(result, [&] { *result = xml::msxml::DomOf(map_->ToXMLElement()).Detach(); });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kMapIid, [&] { map_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }
    HRESULT STDMETHODCALLTYPE Clone(_LessonMap** result) override {
        return Out(result, [&] { *result = WrapMap(map_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE InsertStoryboard(BSTR root, ::StoryboardInsertTypes relation, BSTR id) override {
        return Guard(kMapIid, [&] {
            map_->InsertStoryboard(Utf8(root), static_cast<quillbank::StoryboardInsertTypes>(relation), Utf8(id));
        });
    }
    HRESULT STDMETHODCALLTYPE InsertMap(BSTR root, ::StoryboardInsertTypes relation, _LessonMap* other) override {
        return Guard(kMapIid, [&] {
            map_->InsertMap(Utf8(root), static_cast<quillbank::StoryboardInsertTypes>(relation), UnwrapMap(other));
        });
    }
    HRESULT STDMETHODCALLTYPE RemoveStoryboards(_StoryboardCollection* boards) override {
        return Guard(kMapIid, [&] { map_->RemoveStoryboards(UnwrapSBC(boards)); });
    }
    HRESULT STDMETHODCALLTYPE KeepStoryboards(_StoryboardCollection* boards) override {
        return Guard(kMapIid, [&] { map_->KeepStoryboards(UnwrapSBC(boards)); });
    }

protected:
    // The members with object arguments: Wine's ITypeInfo::Invoke takes no
    // interface arguments; ToXMLElement's document is optional and ignored.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        if (id == 6 && IsCall(flags)) {
            // ToXMLElement: the document may be given or not; it is not used.
            if (parameters != nullptr && (parameters->cArgs > 1 || parameters->cNamedArgs != 0)) {
                *status = parameters->cNamedArgs != 0 ? DISP_E_NONAMEDARGS : DISP_E_BADPARAMCOUNT;
                return true;
            }
            VARIANT missing;
            VariantInit(&missing);
            IXMLDOMElement* element = nullptr;
            *status = ToXMLElement(missing, &element);
            HandObject(result, element);
            return true;
        }
        using Boards = _StoryboardCollection;
        static constexpr std::array<DirectMember<MapObject>, 6> kMembers = {{
            {4, "O", {&IID_IDispatch, nullptr}, &PassObject<MapObject, IDispatch, &MapObject::FromTreeNode>},
            {5, "OO", {&IID_IDispatch, &IID_IDispatch},
             [](MapObject& self, DirectArguments& arguments, VARIANT*) {
                 return self.ToTreeNode(arguments.Object<IDispatch>(0), arguments.Object<IDispatch>(1));
             }},
            FromXMLElementMember<MapObject>(7),
            {10, "SLO", {&IID__LessonMap, nullptr},
             [](MapObject& self, DirectArguments& arguments, VARIANT*) {
                 return self.InsertMap(arguments.Text(0), static_cast<::StoryboardInsertTypes>(arguments.Long(1)),
                                       arguments.Object<_LessonMap>(2));
             }},
            {11, "O", {&IID__StoryboardCollection, nullptr},
             &PassObject<MapObject, Boards, &MapObject::RemoveStoryboards>},
            {12, "O", {&IID__StoryboardCollection, nullptr},
             &PassObject<MapObject, Boards, &MapObject::KeepStoryboards>},
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    std::shared_ptr<Map> map_;
};

}  // namespace

_LessonMap* WrapMap(const std::shared_ptr<Map>& map) {
    if (!map) {
        return nullptr;
    }
    return gMaps.Wrap(map);
}

std::shared_ptr<Map> UnwrapMap(IUnknown* object) {
    if (object == nullptr) {
        return nullptr;
    }
    void* ours = nullptr;
    if (FAILED(object->QueryInterface(kServerLessonMapId, &ours)) || ours == nullptr) {
        throw Error(ErrTypeMismatch, "LessonMap", "Type mismatch");
    }
    auto* map = static_cast<MapObject*>(static_cast<_LessonMap*>(ours));
    std::shared_ptr<Map> core = map->Core();
    map->Release();
    return core;
}

HRESULT CreateLessonMap(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        _LessonMap* created = WrapMap(Map::Create());
        const HRESULT hr = created->QueryInterface(iid, object);
        created->Release();
        return hr;
    } catch (...) {
        return ReportCurrentException(kMapIid);
    }
}

}  // namespace quillbank::com
