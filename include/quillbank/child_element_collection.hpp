#pragma once

// The ordered, named list of child elements of a storyboard.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/child_element.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

namespace detail {
struct ModelReader;
}  // namespace detail

// A zero-based list of references to child elements (not copies). The same
// element may stand in it more than once. Bad indexes never raise: they are
// ignored, or an insertion at one appends.
class ChildElementCollection {
public:
    // A new, empty list named "children".
    static std::shared_ptr<ChildElementCollection> Create();

    ChildElementCollection(const ChildElementCollection&) = delete;
    ChildElementCollection& operator=(const ChildElementCollection&) = delete;

    std::string Name() const;
    void SetName(std::string_view NewValue);
    // The index of the last element; -1 when the list is empty.
    std::int32_t Length() const;
    std::int32_t Count() const;
    // Null when Index is out of range.
    std::shared_ptr<ChildElement> Item(std::int32_t Index) const;
    // The first position of the very object; -1 for null or an empty list, and
    // 0 when a non-empty list does not hold it.
    std::int32_t IndexOf(const std::shared_ptr<ChildElement>& Element) const;
    // A null element is ignored.
    void Append(const std::shared_ptr<ChildElement>& Element);
    // An Index out of range appends.
    void Insert(const std::shared_ptr<ChildElement>& Element, std::int32_t Index);
    // Removes the element at IndexOf(Element), so an absent element removes the first.
    void Remove(const std::shared_ptr<ChildElement>& Element);
    void RemoveAt(std::int32_t Index);
    // Drops every element; the name is kept.
    void Clear();
    // Exchanges two elements when both indexes are in range and differ.
    void Swap(std::int32_t SourceIndex, std::int32_t DestinationIndex);
    // Moves are exchanges with the neighbour, the first, the last or the given place.
    void MovePrevious(const std::shared_ptr<ChildElement>& Element);
    void MoveNext(const std::shared_ptr<ChildElement>& Element);
    void MoveFirst(const std::shared_ptr<ChildElement>& Element);
    void MoveLast(const std::shared_ptr<ChildElement>& Element);
    void MoveTo(const std::shared_ptr<ChildElement>& Element, std::int32_t DestinationIndex);

    // A deep copy: every entry is cloned, also one that stands twice.
    std::shared_ptr<ChildElementCollection> Clone() const;

    // A new "cec" element of Document, not attached anywhere, with one "ce" per entry.
    xml::Element ToClearXMLElement(const xml::Document& Document);
    xml::Element ToXMLElement(const xml::Document& Document);
    // Reads a "cec" element. At most 32767 child nodes can be visited: with
    // more, error 6 (overflow) is raised.
    void FromXMLElement(const xml::Element& Element);

private:
    ChildElementCollection();
    xml::Element WriteElement(const xml::Document& Document, bool clear, const char* source) const;

    std::string name_;
    std::vector<std::shared_ptr<ChildElement>> elements_;

    friend struct detail::ModelReader;
};

}  // namespace quillbank
