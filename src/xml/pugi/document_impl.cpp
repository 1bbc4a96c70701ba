#include "xml/pugi/document_impl.hpp"

namespace quillbank::xml::detail {

pugi::xml_node VisibleParent(pugi::xml_node node) {
    const pugi::xml_node parent = node.parent();
    return parent && !IsLimbo(parent) ? parent : pugi::xml_node();
}

pugi::xml_node VisibleFirstChild(pugi::xml_node node) {
    const pugi::xml_node child = node.first_child();
    if (child && node.type() == pugi::node_document) {
        return child.next_sibling();  // the first child of a document is its limbo
    }
    return child;
}

pugi::xml_node VisibleLastChild(pugi::xml_node node) {
    const pugi::xml_node child = node.last_child();
    return child && !IsLimbo(child) ? child : pugi::xml_node();
}

pugi::xml_node VisibleNextSibling(pugi::xml_node node) {
    const pugi::xml_node parent = node.parent();
    if (!parent || IsLimbo(parent) || IsLimbo(node)) {
        return pugi::xml_node();
    }
    return node.next_sibling();
}

pugi::xml_node VisiblePreviousSibling(pugi::xml_node node) {
    const pugi::xml_node parent = node.parent();
    if (!parent || IsLimbo(parent)) {
        return pugi::xml_node();
    }
    const pugi::xml_node previous = node.previous_sibling();
    return previous && !IsLimbo(previous) ? previous : pugi::xml_node();
}

DocumentImpl::DocumentImpl() { StartGeneration(std::make_unique<pugi::xml_document>()); }

DocumentImpl::DocumentImpl(std::unique_ptr<pugi::xml_document> parsed) { StartGeneration(std::move(parsed)); }

void DocumentImpl::StartGeneration(std::unique_ptr<pugi::xml_document> document) {
    document->prepend_child(pugi::node_element);
    generations_.push_back(std::move(document));
    TreeChanged();
}

pugi::xml_node DocumentImpl::ChildAt(pugi::xml_node parent, std::int32_t index) {
    if (index < 0) {
        return pugi::xml_node();
    }
    pugi::xml_node node;
    std::int32_t at = 0;
    if (indexParent_ == parent.internal_object() && index_ <= index) {
        node = pugi::xml_node(indexNode_);
        at = index_;
    } else {
        node = VisibleFirstChild(parent);
    }
    for (; node && at < index; ++at) {
        node = node.next_sibling();
    }
    if (!node) {
        return pugi::xml_node();
    }
    indexParent_ = parent.internal_object();
    indexNode_ = node.internal_object();
    index_ = index;
    return node;
}

std::int32_t DocumentImpl::ChildCount(pugi::xml_node parent) {
    if (countParent_ != parent.internal_object()) {
        std::int32_t count = 0;
        for (pugi::xml_node child = VisibleFirstChild(parent); child; child = child.next_sibling()) {
            ++count;
        }
        countParent_ = parent.internal_object();
        count_ = count;
    }
    return count_;
}

}  // namespace quillbank::xml::detail
