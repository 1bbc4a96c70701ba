#include <quillbank/child_element_collection.hpp>

#include <utility>

#include "elements/element_writers.hpp"
#include "frame/raise.hpp"
#include "support/conversions.hpp"
#include "support/model_arena.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"

namespace quillbank {

namespace {

constexpr const char* kDefaultName = "children";

}  // namespace

ChildElementCollection::ChildElementCollection() : name_(kDefaultName) {}

std::shared_ptr<ChildElementCollection> ChildElementCollection::Create() {
    // One allocation holds the object and its reference count.
    struct Made : ChildElementCollection {
        Made() {}  // user-provided, so the object is not zero-filled first
    };
    return support::MakeModelObject<Made>();
}

std::string ChildElementCollection::Name() const { return name_; }

void ChildElementCollection::SetName(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "ChildElementCollection.Name (Set)");
    name_ = NewValue;
}

std::int32_t ChildElementCollection::Length() const { return Count() - 1; }

std::int32_t ChildElementCollection::Count() const { return static_cast<std::int32_t>(elements_.size()); }

std::shared_ptr<ChildElement> ChildElementCollection::Item(std::int32_t Index) const {
    if (Index < 0 || Index > Length()) {
        return nullptr;
    }
    return elements_[static_cast<std::size_t>(Index)];
}

std::int32_t ChildElementCollection::IndexOf(const std::shared_ptr<ChildElement>& Element) const {
    if (!Element || elements_.empty()) {
        return -1;
    }
    for (std::size_t i = 0; i < elements_.size(); ++i) {
        if (elements_[i] == Element) {
            return static_cast<std::int32_t>(i);
        }
    }
    // A non-empty list reports an element it does not hold as position 0.
    return 0;
}

void ChildElementCollection::Append(const std::shared_ptr<ChildElement>& Element) {
    if (Element) {
        elements_.push_back(Element);
    }
}

void ChildElementCollection::Insert(const std::shared_ptr<ChildElement>& Element, std::int32_t Index) {
    if (!Element) {
        return;
    }
    if (Index < 0 || Index > Length()) {
        elements_.push_back(Element);
        return;
    }
    elements_.insert(elements_.begin() + Index, Element);
}

void ChildElementCollection::Remove(const std::shared_ptr<ChildElement>& Element) {
    const std::int32_t index = IndexOf(Element);
    if (index > -1) {
        RemoveAt(index);
    }
}

void ChildElementCollection::RemoveAt(std::int32_t Index) {
    if (Index < 0 || Index > Length()) {
        return;
    }
    if (elements_.size() == 1) {
        Clear();
        return;
    }
    elements_.erase(elements_.begin() + Index);
}

void ChildElementCollection::Clear() {
    elements_.clear();
    elements_.shrink_to_fit();
}

void ChildElementCollection::Swap(std::int32_t SourceIndex, std::int32_t DestinationIndex) {
    const std::int32_t length = Length();
    if (SourceIndex < 0 || SourceIndex > length || DestinationIndex < 0 || DestinationIndex > length ||
        SourceIndex == DestinationIndex) {
        return;
    }
    std::swap(elements_[static_cast<std::size_t>(SourceIndex)], elements_[static_cast<std::size_t>(DestinationIndex)]);
}

void ChildElementCollection::MovePrevious(const std::shared_ptr<ChildElement>& Element) {
    const std::int32_t index = IndexOf(Element);
    if (index != -1) {
        Swap(index, index - 1);
    }
}

void ChildElementCollection::MoveNext(const std::shared_ptr<ChildElement>& Element) {
    const std::int32_t index = IndexOf(Element);
    if (index != -1) {
        Swap(index, index + 1);
    }
}

void ChildElementCollection::MoveFirst(const std::shared_ptr<ChildElement>& Element) {
    const std::int32_t index = IndexOf(Element);
    if (index != -1) {
        Swap(index, 0);
    }
}

void ChildElementCollection::MoveLast(const std::shared_ptr<ChildElement>& Element) {
    const std::int32_t index = IndexOf(Element);
    if (index != -1) {
        Swap(index, Length());
    }
}

void ChildElementCollection::MoveTo(const std::shared_ptr<ChildElement>& Element, std::int32_t DestinationIndex) {
    const std::int32_t index = IndexOf(Element);
    if (index != -1) {
        Swap(index, DestinationIndex);
    }
}

std::shared_ptr<ChildElementCollection> ChildElementCollection::Clone() const {
    auto copy = Create();
    copy->name_ = name_;
    copy->elements_.reserve(elements_.size());
    for (const auto& element : elements_) {
        copy->elements_.push_back(element->Clone());
    }
    return copy;
}

xml::Element ChildElementCollection::ToClearXMLElement(const xml::Document& Document) {
    return WriteElement(Document, true, "ChildElementCollection.ToClearXMLElement");
}

xml::Element ChildElementCollection::ToXMLElement(const xml::Document& Document) {
    return WriteElement(Document, false, "ChildElementCollection.ToXMLElement");
}

xml::Element ChildElementCollection::WriteElement(const xml::Document& Document, bool clear, const char* source) const {
    if (!Document) {
        frame::Raise(ErrNullArgument, source, frame::kDocumentCannotBeNull);
    }
    return xml::WriteElementIn(Document, [&](xml::Writer& writer) { elements::WriteChildList(*this, writer, clear); });
}

void ChildElementCollection::FromXMLElement(const xml::Element& Element) {
    const char* source = "ChildElementCollection.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    detail::ModelReader::ReadChildList(*this, detail::reading::ElementCursor(Element));
}

}  // namespace quillbank
