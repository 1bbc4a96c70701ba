// Node: identity, names, values, text, navigation and tree edits on MSXML.

#include <cwchar>
#include <vector>

#include <quillbank/xml.hpp>

#include "xml/dom_error.hpp"
#include "xml/msxml/com_support.hpp"
#include "xml/msxml/document_impl.hpp"
#include "xml/msxml/serialize.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using detail::DocumentImpl;
using detail::RequireNode;
using msxml::Bstr;
using msxml::Check;
using msxml::ComPtr;

namespace {

DOMNodeType TypeOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    Check(node->get_nodeType(&type), "The node type could not be read.");
    return type;
}

// The child as it goes into this node's document.
IXMLDOMNode* ChildNode(const Node& child) {
    if (!child) {
        RaiseDomError("The node is null.");
    }
    return RequireNode(DocumentImpl::NodeOf(child));
}

// A temporary attribute on an element, to tell whether another MSXML object
// stands for the same element: Wine's MSXML gives one node a new object on
// every navigation, so equal identities are not the only answer there.
class ElementMark {
public:
    explicit ElementMark(IXMLDOMNode* node) : name_("quillbank-node-mark") {
        if (TypeOf(node) != NODE_ELEMENT) {
            return;
        }
        element_ = ComPtr<IXMLDOMNode>::Share(node).As<IXMLDOMElement>(IID_IXMLDOMElement);
        if (!element_) {
            return;
        }
        VARIANT on;
        VariantInit(&on);
        V_VT(&on) = VT_BSTR;
        V_BSTR(&on) = name_.Get();
        Check(element_->setAttribute(name_.Get(), on), "The node could not be compared.");
    }
    ElementMark(const ElementMark&) = delete;
    ElementMark& operator=(const ElementMark&) = delete;
    ~ElementMark() {
        if (element_) {
            element_->removeAttribute(name_.Get());
        }
    }

    // Whether `node` is the marked element.
    bool On(IXMLDOMNode* node) const {
        if (!element_ || TypeOf(node) != NODE_ELEMENT) {
            return false;
        }
        const ComPtr<IXMLDOMElement> other = ComPtr<IXMLDOMNode>::Share(node).As<IXMLDOMElement>(IID_IXMLDOMElement);
        if (!other) {
            return false;
        }
        msxml::Variant seen;
        Check(other->getAttribute(name_.Get(), seen.Out()), "The node could not be compared.");
        return V_VT(&seen.Get()) == VT_BSTR;
    }

private:
    Bstr name_;
    ComPtr<IXMLDOMElement> element_;
};

bool SameIdentity(IXMLDOMNode* a, IXMLDOMNode* b) {
    ComPtr<IUnknown> identityA;
    ComPtr<IUnknown> identityB;
    Check(a->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identityA.Out())), "The node has no identity.");
    Check(b->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identityB.Out())), "The node has no identity.");
    return identityA.Get() == identityB.Get();
}

}  // namespace

// For a document, two objects of one document: only elements can be told
// apart by a mark.
bool detail::SameNode(IXMLDOMNode* a, IXMLDOMNode* b) {
    if (SameIdentity(a, b)) {
        return true;
    }
    const DOMNodeType type = TypeOf(a);
    if (type != TypeOf(b)) {
        return false;
    }
    if (type == NODE_DOCUMENT) {
        // Two objects of one document have one root element.
        const auto documentA = ComPtr<IXMLDOMNode>::Share(a).As<IXMLDOMDocument>(IID_IXMLDOMDocument);
        const auto documentB = ComPtr<IXMLDOMNode>::Share(b).As<IXMLDOMDocument>(IID_IXMLDOMDocument);
        ComPtr<IXMLDOMElement> rootA;
        ComPtr<IXMLDOMElement> rootB;
        if (!documentA || !documentB || FAILED(documentA->get_documentElement(rootA.Out())) ||
            FAILED(documentB->get_documentElement(rootB.Out())) || !rootA || !rootB) {
            return false;
        }
        const ElementMark mark(rootA.Get());
        return mark.On(rootB.Get());
    }
    const ElementMark mark(a);
    return mark.On(b);
}

namespace {

using detail::SameNode;

ComPtr<IXMLDOMNode> ParentOf(IXMLDOMNode* node) {
    ComPtr<IXMLDOMNode> parent;
    Check(node->get_parentNode(parent.Out()), "The parent could not be read.");
    return parent;
}

void ReadName(IXMLDOMNode* node, Bstr& name) {
    Check(node->get_nodeName(name.Out()), "The node name could not be read.");
}

bool SameText(BSTR a, BSTR b) {
    const UINT length = SysStringLen(a);
    return length == SysStringLen(b) && (length == 0 || std::wmemcmp(a, b, length) == 0);
}

// The checks the document model makes before a node is placed; Wine's MSXML
// leaves some of them out and would fail worse than with an error.
void CheckInsert(IXMLDOMNode* parent, IXMLDOMNode* child, IXMLDOMNode* reference) {
    const DOMNodeType parentType = TypeOf(parent);
    if (parentType != NODE_ELEMENT && parentType != NODE_DOCUMENT) {
        RaiseDomError("This node cannot have children.");
    }
    const DOMNodeType childType = TypeOf(child);
    if (childType == NODE_DOCUMENT) {
        RaiseDomError("A document cannot be inserted as a child.");
    }
    if (reference != nullptr) {
        const ComPtr<IXMLDOMNode> referenceParent = ParentOf(reference);
        if (!referenceParent || !SameNode(referenceParent.Get(), parent)) {
            RaiseDomError("Insert position Node must be a Child of the Node to insert under.");
        }
    }
    if (childType == NODE_ELEMENT) {
        // Only an element of the child's name can be the child itself: the
        // mark, which changes the child for a moment, is looked for only on
        // the parent and ancestors of that name (a new element placed under
        // the one being built, the common case, meets none).
        Bstr childName;
        ReadName(child, childName);
        std::vector<ComPtr<IXMLDOMNode>> alike;
        for (ComPtr<IXMLDOMNode> up = ComPtr<IXMLDOMNode>::Share(parent); up; up = ParentOf(up.Get())) {
            Bstr name;
            ReadName(up.Get(), name);
            if (SameText(name.Get(), childName.Get())) {
                alike.push_back(up);
            }
        }
        if (!alike.empty()) {
            const ElementMark mark(child);
            for (const ComPtr<IXMLDOMNode>& up : alike) {
                if (mark.On(up.Get())) {
                    RaiseDomError("Inserting a node or its ancestor under itself is not allowed.");
                }
            }
        }
    }
    if (parentType == NODE_DOCUMENT) {
        if (childType == NODE_TEXT || childType == NODE_CDATA_SECTION) {
            RaiseDomError("Text cannot be placed at the top level of a document.");
        }
        if (childType == NODE_ELEMENT) {
            const auto document = ComPtr<IXMLDOMNode>::Share(parent).As<IXMLDOMDocument>(IID_IXMLDOMDocument);
            ComPtr<IXMLDOMElement> root;
            if (document) {
                Check(document->get_documentElement(root.Out()), "The root element could not be read.");
            }
            if (root && !SameNode(root.Get(), child)) {
                RaiseDomError("Only one top level element is allowed in an XML document.");
            }
        }
    }
}

bool IsText(IXMLDOMNode* node) { return node != nullptr && TypeOf(node) == NODE_TEXT; }

// Places `child` under `parent` before `reference` (last when null), after
// CheckInsert. A text node that would land beside another text node goes in
// through a placeholder element that it then replaces: Wine's MSXML
// (libxml2) joins a text node placed beside another into that one and frees
// it, where Windows keeps both nodes; a replacement joins nothing.
ComPtr<IXMLDOMNode> Place(IXMLDOMNode* parent, IXMLDOMNode* child, IXMLDOMNode* reference) {
    VARIANT where;
    VariantInit(&where);
    if (reference != nullptr) {
        V_VT(&where) = VT_DISPATCH;
        V_DISPATCH(&where) = reference;
    } else {
        V_VT(&where) = VT_NULL;
    }
    bool besideText = false;
    if (IsText(child)) {
        ComPtr<IXMLDOMNode> before;
        if (reference != nullptr) {
            besideText = IsText(reference);
            if (!besideText) {
                Check(reference->get_previousSibling(before.Out()), "The node could not be inserted.");
            }
        } else {
            Check(parent->get_lastChild(before.Out()), "The node could not be inserted.");
        }
        besideText = besideText || IsText(before.Get());
    }
    ComPtr<IXMLDOMNode> placed;
    if (!besideText) {
        if (reference != nullptr) {
            Check(parent->insertBefore(child, where, placed.Out()), "The node could not be inserted.");
        } else {
            Check(parent->appendChild(child, placed.Out()), "The node could not be appended.");
        }
        return placed;
    }
    // Text is only ever placed under an element, which has a document.
    ComPtr<IXMLDOMDocument> owner;
    Check(parent->get_ownerDocument(owner.Out()), "The node could not be inserted.");
    const Bstr name("quillbank-placeholder");
    ComPtr<IXMLDOMElement> placeholder;
    Check(owner->createElement(name.Get(), placeholder.Out()), "The node could not be inserted.");
    ComPtr<IXMLDOMNode> holder;
    Check(parent->insertBefore(placeholder.Get(), where, holder.Out()), "The node could not be inserted.");
    ComPtr<IXMLDOMNode> replaced;
    const HRESULT hr = parent->replaceChild(child, holder.Get(), replaced.Out());
    if (FAILED(hr)) {
        ComPtr<IXMLDOMNode> removed;
        parent->removeChild(holder.Get(), removed.Out());
        Check(hr, "The node could not be inserted.");
    }
    return ComPtr<IXMLDOMNode>::Share(child);
}

}  // namespace

NodeType Node::Type() const { return static_cast<NodeType>(TypeOf(RequireNode(node_))); }

std::string Node::Name() const {
    Bstr name;
    Check(RequireNode(node_)->get_nodeName(name.Out()), "The node name could not be read.");
    return name.Utf8();
}

std::string Node::Value() const {
    IXMLDOMNode* node = RequireNode(node_);
    switch (TypeOf(node)) {
        case NODE_TEXT:
        case NODE_CDATA_SECTION:
        case NODE_COMMENT:
        case NODE_PROCESSING_INSTRUCTION: {
            msxml::Variant value;
            Check(node->get_nodeValue(value.Out()), "The node value could not be read.");
            return V_VT(&value.Get()) == VT_BSTR ? msxml::ToUtf8(V_BSTR(&value.Get())) : std::string();
        }
        default:
            return std::string();
    }
}

std::string Node::Text() const {
    Bstr text;
    Check(RequireNode(node_)->get_text(text.Out()), "The node text could not be read.");
    return text.Utf8();
}

void Node::SetText(std::string_view given) {
    IXMLDOMNode* node = RequireNode(node_);
    const std::string_view text = DocumentText(given);
    const DOMNodeType type = TypeOf(node);
    // The DOM keeps LF for CR LF and a lone CR in text and comments.
    const bool lineEnds = type == NODE_ELEMENT || type == NODE_TEXT || type == NODE_COMMENT;
    if (type == NODE_COMMENT && !IsCommentText(text)) {
        RaiseDomError(kCommentEndInComment);
    }
    const Bstr value(lineEnds ? std::string_view(NormalizeLineEnds(text)) : text);
    switch (type) {
        case NODE_ELEMENT: {
            // The children are taken out first, so that handles to them stay
            // valid and unattached: Wine's MSXML frees the children that
            // "text" replaces under the objects still standing for them.
            ComPtr<IXMLDOMNode> child;
            Check(node->get_firstChild(child.Out()), "The text could not be set.");
            while (child) {
                ComPtr<IXMLDOMNode> removed;
                Check(node->removeChild(child.Get(), removed.Out()), "The text could not be set.");
                Check(node->get_firstChild(child.Out()), "The text could not be set.");
            }
            Check(node->put_text(value.Get()), "The text could not be set.");
            return;
        }
        case NODE_TEXT:
        case NODE_CDATA_SECTION:
        case NODE_COMMENT:
        case NODE_PROCESSING_INSTRUCTION: {
            VARIANT v;
            VariantInit(&v);
            V_VT(&v) = VT_BSTR;
            V_BSTR(&v) = value.Get();
            Check(node->put_nodeValue(v), "The text could not be set.");
            return;
        }
        default:
            RaiseDomError("The text of this node cannot be set.");
    }
}

std::string Node::Xml() const { return msxml::NodeXml(RequireNode(node_)); }

Node Node::Parent() const {
    ComPtr<IXMLDOMNode> parent;
    Check(RequireNode(node_)->get_parentNode(parent.Out()), "The parent could not be read.");
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternParent(parent.Get(), node_));
}

Node Node::FirstChild() const {
    ComPtr<IXMLDOMNode> child;
    Check(RequireNode(node_)->get_firstChild(child.Out()), "The first child could not be read.");
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(child.Get(), node_));
}

Node Node::LastChild() const {
    ComPtr<IXMLDOMNode> child;
    Check(RequireNode(node_)->get_lastChild(child.Out()), "The last child could not be read.");
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(child.Get(), node_));
}

Node Node::NextSibling() const {
    ComPtr<IXMLDOMNode> sibling;
    Check(RequireNode(node_)->get_nextSibling(sibling.Out()), "The next sibling could not be read.");
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(sibling.Get(), node_->reachedFrom));
}

Node Node::PreviousSibling() const {
    ComPtr<IXMLDOMNode> sibling;
    Check(RequireNode(node_)->get_previousSibling(sibling.Out()), "The previous sibling could not be read.");
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(sibling.Get(), node_->reachedFrom));
}

bool Node::HasChildNodes() const {
    VARIANT_BOOL has = VARIANT_FALSE;
    Check(RequireNode(node_)->hasChildNodes(&has), "The children could not be read.");
    return has != VARIANT_FALSE;
}

std::int32_t Node::ChildCount() const {
    ComPtr<IXMLDOMNodeList> children;
    Check(RequireNode(node_)->get_childNodes(children.Out()), "The children could not be read.");
    long length = 0;
    Check(children->get_length(&length), "The children could not be counted.");
    return static_cast<std::int32_t>(length);
}

Node Node::ChildAt(std::int32_t index) const {
    ComPtr<IXMLDOMNodeList> children;
    Check(RequireNode(node_)->get_childNodes(children.Out()), "The children could not be read.");
    if (index < 0) {
        return Node();
    }
    ComPtr<IXMLDOMNode> child;
    const HRESULT hr = children->get_item(index, child.Out());
    if (hr != S_OK) {
        Check(hr, "The child could not be read.");
        return Node();
    }
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(child.Get(), node_));
}

Document Node::OwnerDocument() const {
    if (TypeOf(RequireNode(node_)) == NODE_DOCUMENT) {
        return Document();
    }
    return DocumentImpl::MakeDocument(doc_);
}

Node Node::AppendChild(const Node& child) {
    IXMLDOMNode* parent = RequireNode(node_);
    CheckInsert(parent, ChildNode(child), nullptr);
    const ComPtr<IXMLDOMNode> placed = Place(parent, ChildNode(child), nullptr);
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(placed.Get(), node_));
}

Node Node::InsertBefore(const Node& child, const Node& reference) {
    IXMLDOMNode* parent = RequireNode(node_);
    IXMLDOMNode* newChild = ChildNode(child);
    IXMLDOMNode* referenceNode = nullptr;
    if (reference) {
        referenceNode = RequireNode(DocumentImpl::NodeOf(reference));
        CheckInsert(parent, newChild, referenceNode);
        if (SameNode(newChild, referenceNode)) {
            return DocumentImpl::MakeNode(doc_, newChild);  // before itself: it stays
        }
    } else {
        CheckInsert(parent, newChild, nullptr);
    }
    const ComPtr<IXMLDOMNode> placed = Place(parent, newChild, referenceNode);
    return DocumentImpl::MakeNodeOf(doc_, doc_->InternChild(placed.Get(), node_));
}

Node Node::RemoveChild(const Node& child) {
    IXMLDOMNode* parent = RequireNode(node_);
    IXMLDOMNode* oldChild = ChildNode(child);
    const ComPtr<IXMLDOMNode> itsParent = ParentOf(oldChild);
    if (!itsParent || !SameNode(itsParent.Get(), parent)) {
        RaiseDomError("The parameter Node is not a child of this node.");
    }
    ComPtr<IXMLDOMNode> removed;
    Check(parent->removeChild(oldChild, removed.Out()), "The node could not be removed.");
    return DocumentImpl::MakeNode(doc_, removed.Get());
}

Node Node::CloneNode(bool deep) const {
    ComPtr<IXMLDOMNode> copy;
    Check(RequireNode(node_)->cloneNode(deep ? VARIANT_TRUE : VARIANT_FALSE, copy.Out()),
          "The node could not be copied.");
    return DocumentImpl::MakeNode(doc_, copy.Get());
}

bool Node::IsElement() const { return TypeOf(RequireNode(node_)) == NODE_ELEMENT; }

Element Node::AsElement() const {
    if (node_ == nullptr) {
        return Element();
    }
    return DocumentImpl::MakeElement(doc_, node_->node.Get());
}

}  // namespace quillbank::xml
