#pragma once

// The MSXML side of the document model: a document handle owns an MSXML 3.0
// DOM document; a node handle points at the NodeImpl the document keeps for
// that node.
//
// Node lifetime: the DocumentImpl keeps exactly one counted reference per
// distinct node it has handed out, found again by the node's COM identity
// (its IUnknown), and releases them all when the DocumentImpl goes, which is
// when the last handle to the document or to one of its nodes goes. So a
// handle stays valid also after its node was removed from the tree, and two
// handles to the same node compare equal when MSXML gives the node one
// identity, as Windows does. Wine's MSXML makes a new wrapper object on every
// navigation; there a walk up still meets the handles of the walk down, and
// the root and the document node keep one handle each (see InternParent,
// InternChild, InternRoot), but two walks down to one node by different
// routes give two handles, each with its own reference.

#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

#include <quillbank/xml.hpp>

#include "xml/msxml/com_support.hpp"

namespace quillbank::xml::detail {

struct NodeImpl {
    msxml::ComPtr<IXMLDOMNode> node;
    // The element interface, asked for once when first needed.
    msxml::ComPtr<IXMLDOMElement> element;
    // The node this one was last reached from (as a child) or placed under:
    // its parent then, and the first guess at its parent when MSXML hands out
    // a new object for the parent (see InternParent).
    NodeImpl* reachedFrom = nullptr;
    // Whether this is the document node itself.
    bool document = false;
};

class DocumentImpl {
public:
    explicit DocumentImpl(msxml::ComPtr<IXMLDOMDocument> document);

    // A new MSXML 3.0 document: synchronous loading, no validation, no
    // external resources, whitespace not preserved.
    static std::shared_ptr<DocumentImpl> New();

    IXMLDOMDocument* Dom() const noexcept { return document_.Get(); }

    // The private document of a parse of this document's (ParseRootElement):
    // a new handle each time, on the MSXML document the previous parse used
    // once no handle to that parse's document or nodes is left (it is then
    // unreachable, and a second MSXML document would cost more than the
    // parse of a small text, as for every encoded property), else on a new
    // one. Its whitespace mode is the one of a new document.
    std::shared_ptr<DocumentImpl> ParseDocument();

    // The one NodeImpl of `node` (null for null).
    NodeImpl* Intern(IXMLDOMNode* node);
    // The NodeImpl of the document element `root`: the handle last placed or
    // read as the root when `root` is still that element, so that the root
    // keeps one handle also where MSXML hands out a new object for it on
    // every read (Wine).
    NodeImpl* InternRoot(IXMLDOMNode* root);
    void RememberRoot(NodeImpl* root) noexcept { root_ = root; }
    // The NodeImpl of the document node itself.
    NodeImpl* DocumentNode();
    // The NodeImpl of `child`, reached below `parent` (null when the parent
    // is not known): an element below the document node is the root.
    NodeImpl* InternChild(IXMLDOMNode* child, NodeImpl* parent);
    // The NodeImpl of `parent`, the parent MSXML gives for `child`: the node
    // `child` was reached from when that is still its parent, the document
    // node for a document, so that a walk up meets the handles of the walk
    // down also where MSXML hands out new objects (Wine).
    NodeImpl* InternParent(IXMLDOMNode* parent, NodeImpl* child);
    static Node MakeNodeOf(const std::shared_ptr<DocumentImpl>& doc, NodeImpl* node) {
        return node == nullptr ? Node() : Node(doc, node);
    }

    static Node MakeNode(const std::shared_ptr<DocumentImpl>& doc, IXMLDOMNode* node);
    // Null unless `node` is an element.
    static Element MakeElement(const std::shared_ptr<DocumentImpl>& doc, IXMLDOMNode* node);
    // The handle of the document element `root` (see InternRoot).
    static Element MakeRoot(const std::shared_ptr<DocumentImpl>& doc, IXMLDOMNode* root) {
        return Element(doc, doc->InternRoot(root));
    }
    static Document MakeDocument(std::shared_ptr<DocumentImpl> doc) { return Document(std::move(doc)); }
    static const std::shared_ptr<DocumentImpl>& ImplOf(const Node& node) { return node.doc_; }
    static const std::shared_ptr<DocumentImpl>& ImplOf(const Document& doc) { return doc.impl_; }
    static NodeImpl* NodeOf(const Node& node) { return node.node_; }

private:
    msxml::ComPtr<IXMLDOMDocument> document_;
    // The NodeImpls, made in blocks (a deque never moves them), and the map
    // from each node's COM identity to its NodeImpl.
    std::deque<NodeImpl> nodeStore_;
    std::unordered_map<IUnknown*, NodeImpl*> nodes_;
    NodeImpl* root_ = nullptr;
    // The MSXML document of the last ParseDocument, and its handle.
    msxml::ComPtr<IXMLDOMDocument> parseDom_;
    std::weak_ptr<DocumentImpl> parseUser_;
    // Finds the NodeImpl of `node` by its COM identity; null when there is none.
    NodeImpl* Find(IXMLDOMNode* node);
};

// Whether two MSXML objects stand for the same node: the same COM identity,
// or (where MSXML gives one node several objects) one element seen through
// both, or two objects of one document.
bool SameNode(IXMLDOMNode* a, IXMLDOMNode* b);

// The MSXML node behind a handle; raises the DOM error "The node is null."
// for a null handle.
IXMLDOMNode* RequireNode(NodeImpl* node);
IXMLDOMElement* RequireElement(NodeImpl* node);

}  // namespace quillbank::xml::detail
