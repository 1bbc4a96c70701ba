#pragma once

// An iterative walk over a pugixml subtree, following the parent and sibling
// links instead of recursing, so that depth never costs stack.

#include <pugixml.hpp>

namespace quillbank::xml::detail {

// Visits `top` and its descendants in document order. `enter(node)` is called
// when a node is reached and returns whether to visit its children;
// `leave(node)` is called after its children (also for a node without any).
template <class Enter, class Leave>
void WalkSubtree(pugi::xml_node top, Enter&& enter, Leave&& leave) {
    pugi::xml_node node = top;
    for (;;) {
        if (enter(node)) {
            if (const pugi::xml_node child = node.first_child()) {
                node = child;
                continue;
            }
        }
        for (;;) {
            leave(node);
            if (node == top) {
                return;
            }
            if (const pugi::xml_node next = node.next_sibling()) {
                node = next;
                break;
            }
            node = node.parent();
        }
    }
}

}  // namespace quillbank::xml::detail
