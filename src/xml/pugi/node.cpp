// Node: identity, names, values, text and navigation.

#include <quillbank/xml.hpp>

#include "xml/dom_error.hpp"
#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/node_text.hpp"
#include "xml/pugi/serialize.hpp"
#include "xml/pugi/tree_edit.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using detail::DocumentImpl;
using detail::ToPugi;

namespace {

pugi::xml_node Require(detail::NodeImpl* node) {
    if (node == nullptr) {
        RaiseDomError("The node is null.");
    }
    return ToPugi(node);
}

}  // namespace

NodeType Node::Type() const {
    switch (Require(node_).type()) {
        case pugi::node_element: return NodeType::Element;
        case pugi::node_pcdata: return NodeType::Text;
        case pugi::node_cdata: return NodeType::CData;
        case pugi::node_comment: return NodeType::Comment;
        case pugi::node_pi:
        case pugi::node_declaration: return NodeType::ProcessingInstruction;
        case pugi::node_doctype: return NodeType::DocumentType;
        default: return NodeType::Document;
    }
}

std::string Node::Name() const {
    const pugi::xml_node node = Require(node_);
    switch (node.type()) {
        case pugi::node_pcdata: return "#text";
        case pugi::node_cdata: return "#cdata-section";
        case pugi::node_comment: return "#comment";
        case pugi::node_document: return "#document";
        case pugi::node_declaration: return "xml";
        default: return node.name();
    }
}

std::string Node::Value() const {
    const pugi::xml_node node = Require(node_);
    switch (node.type()) {
        case pugi::node_pcdata:
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi:
            return node.value();
        case pugi::node_declaration:
            return detail::DeclarationText(node);
        default:
            return std::string();
    }
}

std::string Node::Text() const {
    const pugi::xml_node node = Require(node_);
    return detail::NodeText(node, {doc_->preserveWhiteSpace, doc_->mayHaveXmlSpace, doc_->LayoutOrNull()});
}

void Node::SetText(std::string_view given) {
    pugi::xml_node node = Require(node_);
    const std::string_view text = DocumentText(given);
    // Text and comments hold LF for every line end, as when loaded.
    std::string normalized;
    const auto lineEnds = [&]() -> std::string_view {
        if (text.find('\r') == std::string_view::npos) {
            return text;
        }
        normalized = NormalizeLineEnds(text);
        return normalized;
    };
    switch (node.type()) {
        case pugi::node_element:
            detail::ReplaceChildrenWithText(*doc_, node, lineEnds());
            return;
        case pugi::node_comment:
            if (!IsCommentText(text)) {
                RaiseDomError(kCommentEndInComment);
            }
            [[fallthrough]];
        case pugi::node_pcdata: {
            const std::string_view value = lineEnds();
            node.set_value(value.data(), value.size());
            return;
        }
        case pugi::node_cdata:
        case pugi::node_pi:
            node.set_value(text.data(), text.size());
            return;
        default:
            RaiseDomError("The text of this node cannot be set.");
    }
}

std::string Node::Xml() const { return detail::NodeXml(Require(node_), doc_->LayoutOrNull()); }

Node Node::Parent() const { return DocumentImpl::MakeNode(doc_, detail::VisibleParent(Require(node_))); }

Node Node::FirstChild() const { return DocumentImpl::MakeNode(doc_, detail::VisibleFirstChild(Require(node_))); }

Node Node::LastChild() const { return DocumentImpl::MakeNode(doc_, detail::VisibleLastChild(Require(node_))); }

Node Node::NextSibling() const {
    return DocumentImpl::MakeNode(doc_, detail::VisibleNextSibling(Require(node_)));
}

Node Node::PreviousSibling() const {
    return DocumentImpl::MakeNode(doc_, detail::VisiblePreviousSibling(Require(node_)));
}

bool Node::HasChildNodes() const { return static_cast<bool>(detail::VisibleFirstChild(Require(node_))); }

std::int32_t Node::ChildCount() const { return doc_->ChildCount(Require(node_)); }

Node Node::ChildAt(std::int32_t index) const {
    return DocumentImpl::MakeNode(doc_, doc_->ChildAt(Require(node_), index));
}

Document Node::OwnerDocument() const {
    if (Require(node_).type() == pugi::node_document) {
        return Document();
    }
    return DocumentImpl::MakeDocument(doc_);
}

bool Node::IsElement() const { return Require(node_).type() == pugi::node_element; }

Element Node::AsElement() const {
    if (node_ == nullptr) {
        return Element();
    }
    return DocumentImpl::MakeElement(doc_, ToPugi(node_));
}

}  // namespace quillbank::xml
