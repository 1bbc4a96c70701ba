#include "xml/search.hpp"

namespace quillbank::xml {

// Walks the subtree through the node handles: MSXML gives no cheaper way.
// The walk counts its depth below `parent` rather than comparing handles,
// since a DOM may hand out a new wrapper for the same node.
Element FindElementWithAttribute(const Node& parent, std::string_view name, std::string_view value) {
    if (!parent) {
        return {};
    }
    Node node = parent.FirstChild();
    int depth = 1;
    while (node) {
        if (node.IsElement()) {
            const Element element = node.AsElement();
            if (const auto found = element.GetAttribute(name); found && *found == value) {
                return element;
            }
            if (Node child = node.FirstChild()) {
                node = child;
                ++depth;
                continue;
            }
        }
        // Next in document order: a sibling, or a sibling of the nearest
        // ancestor still below `parent`.
        for (;;) {
            if (Node next = node.NextSibling()) {
                node = next;
                break;
            }
            if (--depth == 0) {
                return {};
            }
            node = node.Parent();
        }
    }
    return {};
}

}  // namespace quillbank::xml
