// Storyboard and StoryboardCollection as hosts see them, with the
// collection's enumerator (IEnumVARIANT) for VBScript's For Each and
// JScript's Enumerator.

#include <mutex>
#include <new>
#include <unordered_map>
#include <vector>

#include <quillbank/error.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "com/direct_members.hpp"
#include "com/dispatch_object.hpp"
#include "com/errors.hpp"
#include "com/identity_map.hpp"
#include "com/objects.hpp"
#include "com/text.hpp"
#include "xml/msxml/interop.hpp"

namespace quillbank::com {

namespace {

using Board = quillbank::Storyboard;
using Boards = quillbank::StoryboardCollection;

const IID& kSbIid = IID__Storyboard;
const IID& kSbcIid = IID__StoryboardCollection;

class SbObject;
class SbcObject;

// One COM object per core object; an object leaves its map when it goes.
IdentityMap<Board, SbObject> gBoards;
IdentityMap<Boards, SbcObject> gSets;

class SbObject final : public DispatchObject<_Storyboard, &IID__Storyboard> {
public:
    explicit SbObject(std::shared_ptr<Board> board) : board_(std::move(board)) {}
    ~SbObject() override {
        gBoards.Forget(board_.get(), this);
    }

    const std::shared_ptr<Board>& Core() const noexcept { return board_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerStoryboardId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_SBID(BSTR* result) override {
        return Out(kSbIid, result, [&] { *result = NewBstr(board_->SBID()); });
    }
    HRESULT STDMETHODCALLTYPE get_Title(BSTR* result) override {
        return Out(kSbIid, result, [&] { *result = NewBstr(board_->Title()); });
    }
    HRESULT STDMETHODCALLTYPE put_Title(BSTR value) override {
        return Guard(kSbIid, [&] { board_->SetTitle(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Identifier(BSTR* result) override {
        return Out(kSbIid, result, [&] { *result = NewBstr(board_->Identifier()); });
    }
    HRESULT STDMETHODCALLTYPE put_Identifier(BSTR value) override {
        return Guard(kSbIid, [&] { board_->SetIdentifier(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_SBType(BSTR* result) override {
        return Out(kSbIid, result, [&] { *result = NewBstr(board_->SBType()); });
    }
    HRESULT STDMETHODCALLTYPE put_SBType(BSTR value) override {
        return Guard(kSbIid, [&] { board_->SetSBType(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Classification(BSTR* result) override {
        return Out(kSbIid, result, [&] { *result = NewBstr(board_->Classification()); });
    }
    HRESULT STDMETHODCALLTYPE put_Classification(BSTR value) override {
        return Guard(kSbIid, [&] { board_->SetClassification(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Properties(_PersistedPropertyCollection** result) override {
        return Out(kSbIid, result, [&] { *result = WrapPPC(board_->Properties()); });
    }
    HRESULT STDMETHODCALLTYPE get_Children(_ChildElementCollection** result) override {
        return Out(kSbIid, result, [&] { *result = WrapCEC(board_->Children()); });
    }
    HRESULT STDMETHODCALLTYPE Clone(_Storyboard** result) override {
        return Out(kSbIid, result, [&] { *result = WrapSB(board_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE Duplicate(BSTR prefix, _Storyboard** result) override {
        return Out(kSbIid, result, [&] { *result = WrapSB(board_->Duplicate(Utf8(prefix))); });
    }
    HRESULT STDMETHODCALLTYPE CopyFrom(_Storyboard* source, VARIANT* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        VariantInit(result);
        return Guard(kSbIid, [&] { board_->CopyFrom(UnwrapSB(source)); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kSbIid, result, [&] {
            *result = xml::msxml::DomOf(board_->ToClearXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kSbIid, result, [&] {
            *result = xml::msxml::DomOf(board_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kSbIid, [&] { board_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }

protected:
    // The members with object arguments: Wine's ITypeInfo::Invoke takes no
    // interface arguments.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        static constexpr std::array<DirectMember<SbObject>, 4> kMembers = {{
            {10, "O", {&IID__Storyboard, nullptr}, &PassObjectGiveEmpty<SbObject, _Storyboard, &SbObject::CopyFrom>},
            ToClearXMLElementMember<SbObject>(11),
            ToXMLElementMember<SbObject>(12),
            FromXMLElementMember<SbObject>(13),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    std::shared_ptr<Board> board_;
};

// The enumerator of a collection: the storyboards as they were when it was
// made, each handed out as its one COM object.
class StoryboardEnumerator final : public IEnumVARIANT {
public:
    explicit StoryboardEnumerator(std::vector<std::shared_ptr<Board>> boards, std::size_t next = 0)
        : boards_(std::move(boards)), next_(next) {
        ObjectCreated();
    }
    StoryboardEnumerator(const StoryboardEnumerator&) = delete;
    StoryboardEnumerator& operator=(const StoryboardEnumerator&) = delete;
    ~StoryboardEnumerator() { ObjectDestroyed(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IEnumVARIANT)) {
            *object = static_cast<IEnumVARIANT*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return AddReference(references_); }
    ULONG STDMETHODCALLTYPE Release() override { return ReleaseReference(references_, this); }

    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* items, ULONG* fetched) override {
        if (items == nullptr || (wanted > 1 && fetched == nullptr)) {
            return E_POINTER;
        }
        ULONG given = 0;
        while (given < wanted && next_ < boards_.size()) {
            VariantInit(&items[given]);
            V_VT(&items[given]) = VT_DISPATCH;
            V_DISPATCH(&items[given]) = WrapSB(boards_[next_]);
            ++given;
            ++next_;
        }
        if (fetched != nullptr) {
            *fetched = given;
        }
        return given == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = boards_.size() - next_;
        if (count > left) {
            next_ = boards_.size();
            return S_FALSE;
        }
        next_ += count;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        if (copy == nullptr) {
            return E_POINTER;
        }
        *copy = new (std::nothrow) StoryboardEnumerator(boards_, next_);
        return *copy != nullptr ? S_OK : E_OUTOFMEMORY;
    }

private:
    std::vector<std::shared_ptr<Board>> boards_;
    std::size_t next_;
    LONG references_ = 1;
};

class SbcObject final : public DispatchObject<_StoryboardCollection, &IID__StoryboardCollection> {
public:
    explicit SbcObject(std::shared_ptr<Boards> boards) : boards_(std::move(boards)) {}
    ~SbcObject() override {
        gSets.Forget(boards_.get(), this);
    }

    const std::shared_ptr<Boards>& Core() const noexcept { return boards_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && IsEqualIID(iid, kServerStoryboardSetId)) {
            AddRef();
            *object = this;
            return S_OK;
        }
        return DispatchObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_CurrentSB(_Storyboard** result) override {
        return Out(kSbcIid, result, [&] { *result = WrapSB(boards_->CurrentSB()); });
    }
    HRESULT STDMETHODCALLTYPE putref_CurrentSB(_Storyboard* value) override {
        return Guard(kSbcIid, [&] { boards_->SetCurrentSB(UnwrapSB(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_CurrentSBID(BSTR* result) override {
        return Out(kSbcIid, result, [&] { *result = NewBstr(boards_->CurrentSBID()); });
    }
    HRESULT STDMETHODCALLTYPE put_CurrentSBID(BSTR value) override {
        return Guard(kSbcIid, [&] { boards_->SetCurrentSBID(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE Add(_Storyboard* board, _Storyboard** result) override {
        return Out(kSbcIid, result, [&] { *result = WrapSB(boards_->Add(UnwrapSB(board))); });
    }
    HRESULT STDMETHODCALLTYPE Contains(BSTR id, VARIANT_BOOL* result) override {
        return Out(kSbcIid, result, [&] { *result = boards_->Contains(Utf8(id)) ? VARIANT_TRUE : VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override {
        return Out(kSbcIid, result, [&] { *result = boards_->Count(); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(BSTR id, _Storyboard** result) override {
        return Out(kSbcIid, result, [&] { *result = WrapSB(boards_->Item(Utf8(id))); });
    }
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** result) override {
        return Out(kSbcIid, result, [&] {
            std::vector<std::shared_ptr<Board>> snapshot(boards_->begin(), boards_->end());
            *result = new StoryboardEnumerator(std::move(snapshot));
        });
    }
    HRESULT STDMETHODCALLTYPE Remove(BSTR id) override {
        return Guard(kSbcIid, [&] { boards_->Remove(Utf8(id)); });
    }
    HRESULT STDMETHODCALLTYPE Clear(VARIANT* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        VariantInit(result);
        return Guard(kSbcIid, [&] { boards_->Clear(); });
    }
    HRESULT STDMETHODCALLTYPE RemoveCollection(_StoryboardCollection* others) override {
        return Guard(kSbcIid, [&] { boards_->RemoveCollection(UnwrapSBC(others)); });
    }
    HRESULT STDMETHODCALLTYPE AddCollection(_StoryboardCollection* others, VARIANT_BOOL overwrite) override {
        return Guard(kSbcIid, [&] { boards_->AddCollection(UnwrapSBC(others), overwrite != VARIANT_FALSE); });
    }
    HRESULT STDMETHODCALLTYPE Clone(VARIANT_BOOL cloneStoryboards, _StoryboardCollection** result) override {
        return Out(kSbcIid, result, [&] { *result = WrapSBC(boards_->Clone(cloneStoryboards != VARIANT_FALSE)); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kSbcIid, result, [&] {
            *result = xml::msxml::DomOf(boards_->ToClearXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(kSbcIid, result, [&] {
            *result = xml::msxml::DomOf(boards_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kSbcIid, [&] { boards_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }

protected:
    // The members with object arguments or an object result Wine's
    // ITypeInfo::Invoke cannot pass, and the enumerator, which JScript may
    // ask for as a method.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        // CurrentSB is set by reference.
        if (InvokeObjectPut<SbcObject, _Storyboard, &SbcObject::putref_CurrentSB>(*this, 1, IID__Storyboard, id, flags,
                                                                                  parameters, status)) {
            return true;
        }
        using Set = _StoryboardCollection;
        static constexpr std::array<DirectMember<SbcObject>, 7> kMembers = {{
            {DISPID_NEWENUM, "", {nullptr, nullptr},
             [](SbcObject& self, DirectArguments&, VARIANT* result) {
                 IUnknown* enumerator = nullptr;
                 const HRESULT hr = self.get_NewEnum(&enumerator);
                 if (result != nullptr) {
                     VariantInit(result);
                     V_VT(result) = VT_UNKNOWN;
                     V_UNKNOWN(result) = enumerator;
                 } else if (enumerator != nullptr) {
                     enumerator->Release();
                 }
                 return hr;
             }},
            {3, "O", {&IID__Storyboard, nullptr},
             [](SbcObject& self, DirectArguments& arguments, VARIANT* result) {
                 _Storyboard* added = nullptr;
                 const HRESULT hr = self.Add(arguments.Object<_Storyboard>(0), &added);
                 HandObject(result, added);
                 return hr;
             }},
            {8, "O", {&IID__StoryboardCollection, nullptr}, &PassObject<SbcObject, Set, &SbcObject::RemoveCollection>},
            {9, "OT", {&IID__StoryboardCollection, nullptr},
             [](SbcObject& self, DirectArguments& arguments, VARIANT*) {
                 return self.AddCollection(arguments.Object<Set>(0),
                                           arguments.Long(1) != 0 ? VARIANT_TRUE : VARIANT_FALSE);
             }},
            ToClearXMLElementMember<SbcObject>(11),
            ToXMLElementMember<SbcObject>(12),
            FromXMLElementMember<SbcObject>(13),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    std::shared_ptr<Boards> boards_;
};

}  // namespace

_Storyboard* WrapSB(const std::shared_ptr<Board>& board) {
    if (!board) {
        return nullptr;
    }
    return gBoards.Wrap(board);
}

_StoryboardCollection* WrapSBC(const std::shared_ptr<Boards>& boards) {
    if (!boards) {
        return nullptr;
    }
    return gSets.Wrap(boards);
}

std::shared_ptr<Board> UnwrapSB(IUnknown* object) {
    if (object == nullptr) {
        return nullptr;
    }
    void* ours = nullptr;
    if (FAILED(object->QueryInterface(kServerStoryboardId, &ours)) || ours == nullptr) {
        throw Error(ErrTypeMismatch, "Storyboard", "Type mismatch");
    }
    auto* board = static_cast<SbObject*>(static_cast<_Storyboard*>(ours));
    std::shared_ptr<Board> core = board->Core();
    board->Release();
    return core;
}

std::shared_ptr<Boards> UnwrapSBC(IUnknown* object) {
    if (object == nullptr) {
        return nullptr;
    }
    void* ours = nullptr;
    if (FAILED(object->QueryInterface(kServerStoryboardSetId, &ours)) || ours == nullptr) {
        throw Error(ErrTypeMismatch, "StoryboardCollection", "Type mismatch");
    }
    auto* boards = static_cast<SbcObject*>(static_cast<_StoryboardCollection*>(ours));
    std::shared_ptr<Boards> core = boards->Core();
    boards->Release();
    return core;
}

HRESULT CreateStoryboard(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        return CreateAs(WrapSB(Board::Create()), iid, object);
    } catch (...) {
        return ReportCurrentException(kSbIid);
    }
}

HRESULT CreateStoryboardCollection(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        return CreateAs(WrapSBC(Boards::Create()), iid, object);
    } catch (...) {
        return ReportCurrentException(kSbcIid);
    }
}

}  // namespace quillbank::com
