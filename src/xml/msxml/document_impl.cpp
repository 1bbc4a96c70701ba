#include "xml/msxml/document_impl.hpp"

#include "xml/dom_error.hpp"
#include "xml/msxml/interop.hpp"

namespace quillbank::xml::detail {

DocumentImpl::DocumentImpl(msxml::ComPtr<IXMLDOMDocument> document) : document_(std::move(document)) {}

std::shared_ptr<DocumentImpl> DocumentImpl::New() {
    msxml::ComPtr<IXMLDOMDocument> document;
    msxml::Check(msxml::CreateMsxmlObject(CLSID_DOMDocument30, IID_IXMLDOMDocument,
                                          reinterpret_cast<void**>(document.Out())),
                 "MSXML 3.0 could not be created.");
    msxml::Check(document->put_async(VARIANT_FALSE), "The document could not be set up.");
    msxml::Check(document->put_validateOnParse(VARIANT_FALSE), "The document could not be set up.");
    msxml::Check(document->put_resolveExternals(VARIANT_FALSE), "The document could not be set up.");
    msxml::Check(document->put_preserveWhiteSpace(VARIANT_FALSE), "The document could not be set up.");
    return std::make_shared<DocumentImpl>(std::move(document));
}

std::shared_ptr<DocumentImpl> DocumentImpl::ParseDocument() {
    if (parseDom_ && parseUser_.expired()) {
        // Nothing outside can reach the document: only the whitespace mode,
        // which a handle could have changed, differs from a new document's.
        msxml::Check(parseDom_->put_preserveWhiteSpace(VARIANT_FALSE), "The document could not be set up.");
        auto reused = std::make_shared<DocumentImpl>(parseDom_);
        parseUser_ = reused;
        return reused;
    }
    auto made = New();
    parseDom_ = made->document_;
    parseUser_ = made;
    return made;
}

NodeImpl* DocumentImpl::Intern(IXMLDOMNode* node) {
    if (node == nullptr) {
        return nullptr;
    }
    msxml::ComPtr<IUnknown> identity;
    msxml::Check(node->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Out())),
                 "The node has no identity.");
    auto found = nodes_.find(identity.Get());
    if (found != nodes_.end()) {
        return found->second;
    }
    NodeImpl& impl = nodeStore_.emplace_back();
    impl.node = msxml::ComPtr<IXMLDOMNode>::Share(node);
    // The map's key stays valid: the NodeImpl holds a reference to the node.
    nodes_.emplace(identity.Get(), &impl);
    return &impl;
}

namespace {

DOMNodeType TypeOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    msxml::Check(node->get_nodeType(&type), "The node type could not be read.");
    return type;
}

}  // namespace

NodeImpl* DocumentImpl::Find(IXMLDOMNode* node) {
    msxml::ComPtr<IUnknown> identity;
    msxml::Check(node->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Out())),
                 "The node has no identity.");
    const auto found = nodes_.find(identity.Get());
    return found != nodes_.end() ? found->second : nullptr;
}

NodeImpl* DocumentImpl::DocumentNode() {
    NodeImpl* impl = Intern(document_.Get());
    impl->document = true;
    return impl;
}

NodeImpl* DocumentImpl::InternChild(IXMLDOMNode* child, NodeImpl* parent) {
    if (child == nullptr) {
        return nullptr;
    }
    NodeImpl* impl = parent != nullptr && parent->document && TypeOf(child) == NODE_ELEMENT ? InternRoot(child)
                                                                                            : Intern(child);
    impl->reachedFrom = parent;
    return impl;
}

NodeImpl* DocumentImpl::InternParent(IXMLDOMNode* parent, NodeImpl* child) {
    if (parent == nullptr) {
        return nullptr;
    }
    if (NodeImpl* known = Find(parent)) {
        return known;
    }
    NodeImpl* guess = child != nullptr ? child->reachedFrom : nullptr;
    if (guess != nullptr && SameNode(guess->node.Get(), parent)) {
        return guess;
    }
    if (TypeOf(parent) == NODE_DOCUMENT && SameNode(document_.Get(), parent)) {
        return DocumentNode();
    }
    return Intern(parent);
}

NodeImpl* DocumentImpl::InternRoot(IXMLDOMNode* root) {
    if (root == nullptr) {
        return nullptr;
    }
    msxml::ComPtr<IUnknown> identity;
    msxml::Check(root->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Out())),
                 "The node has no identity.");
    const auto found = nodes_.find(identity.Get());
    if (found != nodes_.end()) {
        root_ = found->second;
    } else if (root_ == nullptr || !SameNode(root_->node.Get(), root)) {
        root_ = Intern(root);
    }
    return root_;
}

Node DocumentImpl::MakeNode(const std::shared_ptr<DocumentImpl>& doc, IXMLDOMNode* node) {
    if (node == nullptr) {
        return Node();
    }
    return Node(doc, doc->Intern(node));
}

Element DocumentImpl::MakeElement(const std::shared_ptr<DocumentImpl>& doc, IXMLDOMNode* node) {
    if (node == nullptr) {
        return Element();
    }
    DOMNodeType type = NODE_INVALID;
    if (FAILED(node->get_nodeType(&type)) || type != NODE_ELEMENT) {
        return Element();
    }
    return Element(doc, doc->Intern(node));
}

IXMLDOMNode* RequireNode(NodeImpl* node) {
    if (node == nullptr) {
        RaiseDomError("The node is null.");
    }
    return node->node.Get();
}

IXMLDOMElement* RequireElement(NodeImpl* node) {
    if (node == nullptr) {
        RaiseDomError("The element is null.");
    }
    if (!node->element) {
        node->element = node->node.As<IXMLDOMElement>(IID_IXMLDOMElement);
        if (!node->element) {
            RaiseDomError("The node is not an element.");
        }
    }
    return node->element.Get();
}

}  // namespace quillbank::xml::detail

namespace quillbank::xml::msxml {

using detail::DocumentImpl;

namespace {

// The host's object as the interface it was declared as, asked for through
// QueryInterface: a host binding early may hand over another DOM node (a
// comment, a document) in its place, which is a type mismatch rather than a
// call into the wrong table of functions.
template <class T>
ComPtr<T> AsDeclared(T* given, REFIID iid) {
    ComPtr<T> object;
    if (FAILED(given->QueryInterface(iid, reinterpret_cast<void**>(object.Out()))) || !object) {
        throw Error(ErrTypeMismatch, "Quillbank", "Type mismatch");
    }
    return object;
}

}  // namespace

Document WrapDocument(IXMLDOMDocument* document) {
    if (document == nullptr) {
        return Document();
    }
    return DocumentImpl::MakeDocument(std::make_shared<DocumentImpl>(AsDeclared(document, IID_IXMLDOMDocument)));
}

Element WrapElement(IXMLDOMElement* element) {
    if (element == nullptr) {
        return Element();
    }
    const ComPtr<IXMLDOMElement> declared = AsDeclared(element, IID_IXMLDOMElement);
    ComPtr<IXMLDOMDocument> owner;
    Check(declared->get_ownerDocument(owner.Out()), "The element has no document.");
    auto impl = std::make_shared<DocumentImpl>(owner);
    return DocumentImpl::MakeElement(impl, declared.Get());
}

ComPtr<IXMLDOMDocument> DomOf(const Document& document) {
    const auto& impl = DocumentImpl::ImplOf(document);
    return impl ? ComPtr<IXMLDOMDocument>::Share(impl->Dom()) : ComPtr<IXMLDOMDocument>();
}

ComPtr<IXMLDOMElement> DomOf(const Element& element) {
    detail::NodeImpl* node = DocumentImpl::NodeOf(element);
    if (node == nullptr) {
        return {};
    }
    return ComPtr<IXMLDOMElement>::Share(detail::RequireElement(node));
}

}  // namespace quillbank::xml::msxml
