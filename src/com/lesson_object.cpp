// Lesson as hosts see it.

#include <quillbank/error.hpp>
#include <quillbank/lesson.hpp>

#include "com/direct_members.hpp"
#include "com/dispatch_object.hpp"
#include "com/errors.hpp"
#include "com/objects.hpp"
#include "com/text.hpp"
#include "xml/msxml/interop.hpp"

namespace quillbank::com {

namespace {

using Document = quillbank::Lesson;

const IID& kLessonIid = IID__Lesson;

template <class T, class Body>
HRESULT Out(T* result, Body&& body) noexcept {
    return quillbank::com::Out(kLessonIid, result, body);
}

// A lesson is the root of its document: nothing else hands it out, so each
// lesson made by a host or by Clone and Duplicate is its own COM object.
class LessonObject final : public DispatchObject<_Lesson, &IID__Lesson> {
public:
    explicit LessonObject(std::shared_ptr<Document> lesson) : lesson_(std::move(lesson)) {}

    HRESULT STDMETHODCALLTYPE get_LessonID(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(lesson_->LessonID()); });
    }
    HRESULT STDMETHODCALLTYPE put_LessonID(BSTR value) override {
        return Guard(kLessonIid, [&] { lesson_->SetLessonID(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Title(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(lesson_->Title()); });
    }
    HRESULT STDMETHODCALLTYPE put_Title(BSTR value) override {
        return Guard(kLessonIid, [&] { lesson_->SetTitle(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Identifier(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(lesson_->Identifier()); });
    }
    HRESULT STDMETHODCALLTYPE put_Identifier(BSTR value) override {
        return Guard(kLessonIid, [&] { lesson_->SetIdentifier(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Classification(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(lesson_->Classification()); });
    }
    HRESULT STDMETHODCALLTYPE put_Classification(BSTR value) override {
        return Guard(kLessonIid, [&] { lesson_->SetClassification(Utf8(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_Properties(_PersistedPropertyCollection** result) override {
        return Out(result, [&] { *result = WrapPPC(lesson_->Properties()); });
    }
    HRESULT STDMETHODCALLTYPE get_Maps(_LessonMapCollection** result) override {
        return Out(result, [&] { *result = WrapMaps(lesson_->Maps()); });
    }
    HRESULT STDMETHODCALLTYPE get_Storyboards(_StoryboardCollection** result) override {
        return Out(result, [&] { *result = WrapSBC(lesson_->Storyboards()); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(result, [&] {
            *result = xml::msxml::DomOf(lesson_->ToClearXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE ToXMLElement(IXMLDOMDocument* document, IXMLDOMElement** result) override {
        return Out(result, [&] {
            *result = xml::msxml::DomOf(lesson_->ToXMLElement(xml::msxml::WrapDocument(document))).Detach();
        });
    }
    HRESULT STDMETHODCALLTYPE FromXMLElement(IXMLDOMElement* element) override {
        return Guard(kLessonIid, [&] { lesson_->FromXMLElement(xml::msxml::WrapElement(element)); });
    }
    HRESULT STDMETHODCALLTYPE ToXMLString(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(lesson_->ToXMLString()); });
    }
    HRESULT STDMETHODCALLTYPE ToClearXMLString(BSTR* result) override {
        return Out(result, [&] { *result = NewBstr(lesson_->ToClearXMLString()); });
    }
    HRESULT STDMETHODCALLTYPE FromXMLString(BSTR text) override {
        return Guard(kLessonIid, [&] { lesson_->FromXMLString(Utf8(text)); });
    }
    HRESULT STDMETHODCALLTYPE Clone(_Lesson** result) override {
        return Out(result, [&] { *result = new LessonObject(lesson_->Clone()); });
    }
    HRESULT STDMETHODCALLTYPE Duplicate(_Lesson** result) override {
        return Out(result, [&] { *result = new LessonObject(lesson_->Duplicate()); });
    }

protected:
    // The XML members take objects: Wine's ITypeInfo::Invoke takes no
    // interface arguments.
    bool InvokeDirect(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, HRESULT* status) override {
        static constexpr std::array<DirectMember<LessonObject>, 3> kMembers = {{
            ToClearXMLElementMember<LessonObject>(8),
            ToXMLElementMember<LessonObject>(9),
            FromXMLElementMember<LessonObject>(10),
        }};
        return InvokeMember(*this, kMembers, id, flags, parameters, result, status);
    }

private:
    std::shared_ptr<Document> lesson_;
};

}  // namespace

HRESULT CreateLesson(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    try {
        _Lesson* created = new LessonObject(Document::Create());
        const HRESULT hr = created->QueryInterface(iid, object);
        created->Release();
        return hr;
    } catch (...) {
        return ReportCurrentException(kLessonIid);
    }
}

}  // namespace quillbank::com
