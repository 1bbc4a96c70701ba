// Node: identity, names, values, text, navigation and tree edits on MSXML.

#include <quillbank/xml.hpp>

#include "xml/dom_error.hpp"
#include "xml/msxml/com_support.hpp"
#include "xml/msxml/document_impl.hpp"
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

void Node::SetText(std::string_view text) {
    IXMLDOMNode* node = RequireNode(node_);
    RequireDocumentText(text);
    const Bstr value(text);
    switch (TypeOf(node)) {
        case NODE_ELEMENT:
            Check(node->put_text(value.Get()), "The text could not be set.");
            return;
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

std::string Node::Xml() const {
    Bstr xml;
    Check(RequireNode(node_)->get_xml(xml.Out()), "The node could not be written.");
    return xml.Utf8();
}

Node Node::Parent() const {
    ComPtr<IXMLDOMNode> parent;
    Check(RequireNode(node_)->get_parentNode(parent.Out()), "The parent could not be read.");
    return DocumentImpl::MakeNode(doc_, parent.Get());
}

Node Node::FirstChild() const {
    ComPtr<IXMLDOMNode> child;
    Check(RequireNode(node_)->get_firstChild(child.Out()), "The first child could not be read.");
    return DocumentImpl::MakeNode(doc_, child.Get());
}

Node Node::LastChild() const {
    ComPtr<IXMLDOMNode> child;
    Check(RequireNode(node_)->get_lastChild(child.Out()), "The last child could not be read.");
    return DocumentImpl::MakeNode(doc_, child.Get());
}

Node Node::NextSibling() const {
    ComPtr<IXMLDOMNode> sibling;
    Check(RequireNode(node_)->get_nextSibling(sibling.Out()), "The next sibling could not be read.");
    return DocumentImpl::MakeNode(doc_, sibling.Get());
}

Node Node::PreviousSibling() const {
    ComPtr<IXMLDOMNode> sibling;
    Check(RequireNode(node_)->get_previousSibling(sibling.Out()), "The previous sibling could not be read.");
    return DocumentImpl::MakeNode(doc_, sibling.Get());
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
    return DocumentImpl::MakeNode(doc_, child.Get());
}

Document Node::OwnerDocument() const {
    if (TypeOf(RequireNode(node_)) == NODE_DOCUMENT) {
        return Document();
    }
    return DocumentImpl::MakeDocument(doc_);
}

Node Node::AppendChild(const Node& child) {
    IXMLDOMNode* parent = RequireNode(node_);
    ComPtr<IXMLDOMNode> placed;
    Check(parent->appendChild(ChildNode(child), placed.Out()), "The node could not be appended.");
    return DocumentImpl::MakeNode(doc_, placed.Get());
}

Node Node::InsertBefore(const Node& child, const Node& reference) {
    IXMLDOMNode* parent = RequireNode(node_);
    IXMLDOMNode* newChild = ChildNode(child);
    VARIANT where;
    VariantInit(&where);
    if (reference) {
        V_VT(&where) = VT_UNKNOWN;
        V_UNKNOWN(&where) = RequireNode(DocumentImpl::NodeOf(reference));
    } else {
        V_VT(&where) = VT_NULL;
    }
    ComPtr<IXMLDOMNode> placed;
    Check(parent->insertBefore(newChild, where, placed.Out()), "The node could not be inserted.");
    return DocumentImpl::MakeNode(doc_, placed.Get());
}

Node Node::RemoveChild(const Node& child) {
    IXMLDOMNode* parent = RequireNode(node_);
    ComPtr<IXMLDOMNode> removed;
    Check(parent->removeChild(ChildNode(child), removed.Out()), "The node could not be removed.");
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
