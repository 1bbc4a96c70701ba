// Document: creation of nodes, loading, the root element, whitespace mode.

#include <quillbank/xml.hpp>

#include "xml/dom_error.hpp"
#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/parse.hpp"
#include "xml/pugi/serialize.hpp"
#include "xml/pugi/tree_edit.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using detail::DocumentImpl;

namespace {

DocumentImpl& Require(const std::shared_ptr<DocumentImpl>& impl) {
    if (!impl) {
        RaiseDomError("The document is null.");
    }
    return *impl;
}

pugi::xml_node NewLeaf(DocumentImpl& impl, pugi::xml_node_type type, std::string_view given) {
    const std::string_view text = DocumentText(given);
    if (type == pugi::node_comment && !IsCommentText(text)) {
        RaiseDomError(kCommentEndInComment);
    }
    pugi::xml_node node = impl.Limbo().append_child(type);
    if (type != pugi::node_cdata && text.find('\r') != std::string_view::npos) {
        // Text and comments hold LF for every line end, as when loaded.
        const std::string normalized = NormalizeLineEnds(text);
        node.set_value(normalized.data(), normalized.size());
    } else {
        node.set_value(text.data(), text.size());
    }
    return node;
}

}  // namespace

Document Document::Create() { return Document(std::make_shared<DocumentImpl>()); }

Element Document::CreateElement(std::string_view name) {
    DocumentImpl& impl = Require(impl_);
    if (!IsAsciiXmlName(name)) {
        name = DocumentText(name);
        if (!IsXmlName(name)) {
            RaiseDomError("This name is not a valid XML name.");
        }
    }
    pugi::xml_node node = impl.Limbo().append_child(pugi::node_element);
    node.set_name(std::string(name).c_str());
    return DocumentImpl::MakeElement(impl_, node);
}

Node Document::CreateTextNode(std::string_view text) {
    return DocumentImpl::MakeNode(impl_, NewLeaf(Require(impl_), pugi::node_pcdata, text));
}

Node Document::CreateComment(std::string_view text) {
    return DocumentImpl::MakeNode(impl_, NewLeaf(Require(impl_), pugi::node_comment, text));
}

Node Document::CreateCDataSection(std::string_view text) {
    return DocumentImpl::MakeNode(impl_, NewLeaf(Require(impl_), pugi::node_cdata, text));
}

bool Document::LoadXML(std::string_view text) {
    DocumentImpl& impl = Require(impl_);
    auto fresh = std::make_unique<pugi::xml_document>();
    detail::Layout layout;
    const detail::ParseOutcome outcome = detail::ParseXmlText(*fresh, text, impl.preserveWhiteSpace, layout);
    if (!outcome.loaded) {
        fresh->reset();
    } else {
        impl.layout.Merge(std::move(layout));
        impl.mayHaveXmlSpace = impl.mayHaveXmlSpace || outcome.mentionsXmlSpace;
    }
    impl.StartGeneration(std::move(fresh));
    return outcome.loaded;
}

Element Document::ParseRootElement(std::string_view text) {
    Require(impl_);
    // The parse gets a document of its own, which goes with the last handle
    // to the element: a short-lived parse gives its memory back at once
    // instead of growing this document until it goes.
    auto parsed = std::make_unique<pugi::xml_document>();
    detail::Layout layout;
    const detail::ParseOutcome outcome = detail::ParseXmlText(*parsed, text, false, layout);
    if (!outcome.loaded) {
        return Element();
    }
    auto own = std::make_shared<DocumentImpl>(std::move(parsed));
    own->layout.Merge(std::move(layout));
    own->mayHaveXmlSpace = outcome.mentionsXmlSpace;
    for (pugi::xml_node n = detail::VisibleFirstChild(own->Current()); n; n = n.next_sibling()) {
        if (n.type() == pugi::node_element) {
            // Unattached, as the result of a parse that is not a load.
            own->Limbo().append_move(n);
            own->TreeChanged();
            return DocumentImpl::MakeElement(own, n);
        }
    }
    return Element();
}

Element Document::DocumentElement() const {
    DocumentImpl& impl = Require(impl_);
    for (pugi::xml_node n = detail::VisibleFirstChild(impl.Current()); n; n = n.next_sibling()) {
        if (n.type() == pugi::node_element) {
            return DocumentImpl::MakeElement(impl_, n);
        }
    }
    return Element();
}

void Document::SetDocumentElement(const Element& element) {
    DocumentImpl& impl = Require(impl_);
    if (!element) {
        RaiseDomError("The element is null.");
    }
    const Element old = DocumentElement();
    if (old == element) {
        return;
    }
    const pugi::xml_node document = impl.Current();
    const pugi::xml_node oldRoot = detail::ToPugi(old.node_);
    const pugi::xml_node newRoot = detail::ToPugi(element.node_);
    if (oldRoot) {
        // Out of the way first, so that the one-root rule holds; the new root
        // takes the old one's place among the top-level nodes.
        const pugi::xml_node after = oldRoot.next_sibling();
        detail::Detach(impl, oldRoot);
        detail::InsertChild(impl, document, *DocumentImpl::ImplOf(element), newRoot, after);
    } else {
        detail::InsertChild(impl, document, *DocumentImpl::ImplOf(element), newRoot, pugi::xml_node());
    }
}

bool Document::PreserveWhiteSpace() const { return Require(impl_).preserveWhiteSpace; }

void Document::SetPreserveWhiteSpace(bool preserve) { Require(impl_).preserveWhiteSpace = preserve; }

std::string Document::Xml() const {
    DocumentImpl& impl = Require(impl_);
    return detail::NodeXml(impl.Current(), impl.LayoutOrNull());
}

Node Document::AsNode() const { return DocumentImpl::MakeNode(impl_, Require(impl_).Current()); }

}  // namespace quillbank::xml
