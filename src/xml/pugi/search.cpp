#include "xml/search.hpp"

#include <cstring>

#include "xml/pugi/document_impl.hpp"

namespace quillbank::xml {

namespace {

bool HasAttributeValue(pugi::xml_node element, std::string_view name, std::string_view value) {
    for (pugi::xml_attribute a = element.first_attribute(); a; a = a.next_attribute()) {
        const char* candidate = a.name();
        if (std::strlen(candidate) == name.size() && name.compare(0, name.size(), candidate, name.size()) == 0) {
            // The first attribute of that name decides, as GetAttribute does.
            const char* text = a.value();
            return std::strlen(text) == value.size() && value.compare(0, value.size(), text, value.size()) == 0;
        }
    }
    return false;
}

}  // namespace

Element FindElementWithAttribute(const Node& parent, std::string_view name, std::string_view value) {
    if (!parent) {
        return {};
    }
    const pugi::xml_node top = detail::DocumentImpl::PugiOf(parent);
    // Below the top node the pugixml links are the visible ones: the limbo
    // is only ever the first child of a document node, which this skips.
    pugi::xml_node node = detail::VisibleFirstChild(top);
    while (node) {
        if (node.type() == pugi::node_element) {
            if (HasAttributeValue(node, name, value)) {
                return detail::DocumentImpl::MakeElement(detail::DocumentImpl::ImplOf(parent), node);
            }
            if (pugi::xml_node child = node.first_child()) {
                node = child;
                continue;
            }
        }
        // On to the next sibling of the node or of its nearest ancestor below `top`.
        for (;;) {
            if (pugi::xml_node next = node.next_sibling()) {
                node = next;
                break;
            }
            node = node.parent();
            if (node == top) {
                return {};
            }
        }
    }
    return {};
}

}  // namespace quillbank::xml
