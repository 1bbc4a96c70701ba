// Placing, removing and copying nodes: Node::AppendChild, InsertBefore,
// RemoveChild, CloneNode and the shared edit routines.

#include "xml/pugi/tree_edit.hpp"

#include <quillbank/xml.hpp>

#include "xml/dom_error.hpp"

namespace quillbank::xml {

namespace detail {

namespace {

bool CanHoldChildren(pugi::xml_node node) {
    return node.type() == pugi::node_element || node.type() == pugi::node_document;
}

void CheckTopLevelChild(pugi::xml_node document, pugi::xml_node child) {
    switch (child.type()) {
        case pugi::node_element:
            for (pugi::xml_node n = VisibleFirstChild(document); n; n = n.next_sibling()) {
                if (n.type() == pugi::node_element && n != child) {
                    RaiseDomError("Only one top level element is allowed in an XML document.");
                }
            }
            return;
        case pugi::node_pcdata:
        case pugi::node_cdata:
            RaiseDomError("Text cannot be placed at the top level of a document.");
        default:
            return;
    }
}

}  // namespace

pugi::xml_node InsertChild(DocumentImpl& parentDoc, pugi::xml_node parent, DocumentImpl& childDoc,
                           pugi::xml_node child, pugi::xml_node reference) {
    if (!CanHoldChildren(parent)) {
        RaiseDomError("This node cannot have children.");
    }
    if (child.type() == pugi::node_document) {
        RaiseDomError("A document cannot be inserted as a child.");
    }
    if (reference && reference.parent() != parent) {
        RaiseDomError("Insert position Node must be a Child of the Node to insert under.");
    }
    const bool sameTree = parent.root() == child.root();
    if (sameTree) {
        for (pugi::xml_node up = parent; up; up = up.parent()) {
            if (up == child) {
                RaiseDomError("Inserting a node or its ancestor under itself is not allowed.");
            }
        }
    }
    if (parent.type() == pugi::node_document) {
        CheckTopLevelChild(parent, child);
    }
    if (reference == child) {
        return child;
    }
    pugi::xml_node placed = child;
    if (!sameTree) {
        placed = LimboOf(parent).append_copy(child);
        if (!placed) {
            RaiseDomError("This node cannot be inserted here.");
        }
        parentDoc.mayHaveXmlSpace = parentDoc.mayHaveXmlSpace || childDoc.mayHaveXmlSpace;
        if (!IsLimbo(child.parent())) {
            LimboOf(child).append_move(child);
            childDoc.TreeChanged();
        }
    }
    const pugi::xml_node result = reference ? parent.insert_move_before(placed, reference) : parent.append_move(placed);
    if (!result) {
        RaiseDomError("This node cannot be inserted here.");
    }
    parentDoc.TreeChanged();
    return result;
}

void Detach(DocumentImpl& doc, pugi::xml_node node) {
    if (!LimboOf(node).append_move(node)) {
        RaiseDomError("This node cannot be removed.");
    }
    doc.TreeChanged();
}

void ReplaceChildrenWithText(DocumentImpl& doc, pugi::xml_node element, std::string_view text) {
    pugi::xml_node limbo = LimboOf(element);
    while (const pugi::xml_node child = element.first_child()) {
        limbo.append_move(child);
    }
    if (!text.empty()) {
        element.append_child(pugi::node_pcdata).set_value(text.data(), text.size());
    }
    // What was remembered of the content it had goes with it.
    doc.layout.Remove(element, Layout::kSpaceInside | Layout::kEndTag);
    doc.TreeChanged();
}

}  // namespace detail

namespace {

pugi::xml_node RequireNode(detail::NodeImpl* node, const char* description) {
    if (node == nullptr) {
        RaiseDomError(description);
    }
    return detail::ToPugi(node);
}

}  // namespace

Node Node::AppendChild(const Node& child) { return InsertBefore(child, Node()); }

Node Node::InsertBefore(const Node& child, const Node& reference) {
    const pugi::xml_node parent = RequireNode(node_, "The node is null.");
    const pugi::xml_node moved = RequireNode(child.node_, "The node to insert is null.");
    const pugi::xml_node before = detail::ToPugi(reference.node_);
    const pugi::xml_node placed = detail::InsertChild(*doc_, parent, *child.doc_, moved, before);
    return detail::DocumentImpl::MakeNode(doc_, placed);
}

Node Node::RemoveChild(const Node& child) {
    const pugi::xml_node parent = RequireNode(node_, "The node is null.");
    const pugi::xml_node removed = RequireNode(child.node_, "The node to remove is null.");
    if (removed.parent() != parent || detail::IsLimbo(removed)) {
        RaiseDomError("The parameter Node is not a child of this node.");
    }
    detail::Detach(*doc_, removed);
    return child;
}

Node Node::CloneNode(bool deep) const {
    const pugi::xml_node node = RequireNode(node_, "The node is null.");
    if (node.type() == pugi::node_document) {
        auto copy = std::make_shared<detail::DocumentImpl>();
        copy->preserveWhiteSpace = doc_->preserveWhiteSpace;
        copy->mayHaveXmlSpace = doc_->mayHaveXmlSpace;
        if (deep) {
            for (pugi::xml_node n = detail::VisibleFirstChild(node); n; n = n.next_sibling()) {
                copy->Current().append_copy(n);
            }
        }
        return detail::DocumentImpl::MakeNode(copy, copy->Current());
    }
    pugi::xml_node limbo = detail::LimboOf(node);
    pugi::xml_node copy;
    if (deep || node.type() != pugi::node_element) {
        copy = limbo.append_copy(node);
    } else {
        copy = limbo.append_child(pugi::node_element);
        copy.set_name(node.name());
        for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
            copy.append_copy(a);
        }
    }
    if (!copy) {
        RaiseDomError("This node cannot be copied.");
    }
    return detail::DocumentImpl::MakeNode(doc_, copy);
}

}  // namespace quillbank::xml
