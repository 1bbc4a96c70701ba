#pragma once

// What loading a document that does not preserve whitespace leaves out of
// the tree but MSXML remembers: the whitespace-only text it dropped, and the
// end tag of an element written "<a></a>". Each is a mark on the node next to
// it. "xml" writes dropped whitespace back as a line end and one tab a level,
// and an empty element with its end tag; "text" counts dropped whitespace as
// one space between the texts it separated.
//
// Marks belong to the nodes that were loaded: a copy (CloneNode, or a node
// placed into another document) has none. A document whose text had no such
// whitespace and no "<a></a>" has no marks, and nothing pays for them.

#include <cstdint>
#include <utility>
#include <vector>

#include <pugixml.hpp>

namespace quillbank::xml::detail {

class Layout {
public:
    enum Mark : std::uint8_t {
        // Whitespace was dropped after this node, before its next sibling
        // or its parent's end tag.
        kSpaceAfter = 1,
        // Whitespace was dropped at the start of this element's content.
        kSpaceInside = 2,
        // This element was written with an end tag and had no content.
        kEndTag = 4,
    };

    bool Empty() const noexcept { return marks_.empty(); }

    std::uint8_t Of(pugi::xml_node node) const {
        if (marks_.empty()) {
            return 0;
        }
        const auto found = Find(node.internal_object());
        return found == marks_.end() ? 0 : found->second;
    }

    // Marks added by a load come in document order, which is mostly address
    // order: they are appended, and put in order once by Seal().
    void Add(pugi::xml_node node, Mark mark) { marks_.emplace_back(node.internal_object(), mark); }

    // Orders the marks added and joins those of one node; call after adding.
    void Seal();

    void Remove(pugi::xml_node node, std::uint8_t marks) {
        if (marks_.empty()) {
            return;
        }
        const auto found = Find(node.internal_object());
        if (found != marks_.end()) {
            found->second = static_cast<std::uint8_t>(found->second & ~marks);
        }
    }

    // Takes over the marks of `other` (of nodes that now belong here).
    void Merge(Layout&& other);

private:
    using Entry = std::pair<const pugi::xml_node_struct*, std::uint8_t>;

    std::vector<Entry>::iterator Find(const pugi::xml_node_struct* node);
    std::vector<Entry>::const_iterator Find(const pugi::xml_node_struct* node) const;

    // Sorted by node, one entry a node (after Seal).
    std::vector<Entry> marks_;
};

}  // namespace quillbank::xml::detail
