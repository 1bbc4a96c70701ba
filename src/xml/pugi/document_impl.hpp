#pragma once

// The pugixml side of the document model: what a document handle owns, how a
// node handle maps to a pugixml node, and the hidden "limbo" node that holds
// unattached nodes.
//
// pugixml cannot hold a node outside the tree, so every pugixml document the
// model uses starts with one hidden element, the limbo: created and removed
// nodes are its children. Every view of the tree (parents, siblings, the
// document's children) hides it, so unattached nodes look parentless.
//
// LoadXML parses into a fresh pugixml document (a new generation) so that
// handles to nodes of the earlier content stay valid; the generations live as
// long as the DocumentImpl, which lives as long as any handle to it.

#include <cstdint>
#include <memory>
#include <vector>

#include <pugixml.hpp>

#include <quillbank/xml.hpp>

#include "xml/pugi/layout.hpp"

namespace quillbank::xml::detail {

inline pugi::xml_node ToPugi(NodeImpl* node) noexcept {
    return pugi::xml_node(reinterpret_cast<pugi::xml_node_struct*>(node));
}

inline NodeImpl* ToImpl(pugi::xml_node node) noexcept {
    return reinterpret_cast<NodeImpl*>(node.internal_object());
}

// The limbo of the pugixml document holding `node`: its first child.
inline pugi::xml_node LimboOf(pugi::xml_node node) { return node.root().first_child(); }

inline bool IsLimbo(pugi::xml_node node) {
    const pugi::xml_node parent = node.parent();
    return parent && parent.type() == pugi::node_document && parent.first_child() == node;
}

// Tree navigation as the model sees it: the limbo is invisible.
pugi::xml_node VisibleParent(pugi::xml_node node);
pugi::xml_node VisibleFirstChild(pugi::xml_node node);
pugi::xml_node VisibleLastChild(pugi::xml_node node);
pugi::xml_node VisibleNextSibling(pugi::xml_node node);
pugi::xml_node VisiblePreviousSibling(pugi::xml_node node);

class DocumentImpl {
public:
    DocumentImpl();
    // A document whose content is `parsed`.
    explicit DocumentImpl(std::unique_ptr<pugi::xml_document> parsed);

    // The pugixml document of the current content.
    pugi::xml_document& Current() { return *generations_.back(); }
    pugi::xml_node Limbo() { return Current().first_child(); }

    // Makes `document` the current content, giving it its limbo. The earlier
    // generations stay alive for the handles into them.
    void StartGeneration(std::unique_ptr<pugi::xml_document> document);

    // True when `node` belongs to the current generation of this document.
    bool HoldsInCurrent(pugi::xml_node node) { return node.root() == Current(); }

    bool preserveWhiteSpace = false;
    // Some node of this document may have an xml:space attribute (so that
    // "text" must look for one); false when none ever came in.
    bool mayHaveXmlSpace = false;
    // What loading left out but remembers (layout.hpp), for the nodes of
    // every generation.
    Layout layout;
    // The layout for the serialiser and "text": null when there is none.
    const Layout* LayoutOrNull() const noexcept { return layout.Empty() ? nullptr : &layout; }

    // Forgets the remembered child positions; called on every tree edit.
    void TreeChanged() noexcept {
        indexParent_ = nullptr;
        countParent_ = nullptr;
    }

    // The child at `index` of `parent` (limbo hidden), remembering the last
    // answer so that a walk in index order costs constant time a step.
    pugi::xml_node ChildAt(pugi::xml_node parent, std::int32_t index);
    std::int32_t ChildCount(pugi::xml_node parent);

    // Handle construction for the backend's code.
    static Node MakeNode(const std::shared_ptr<DocumentImpl>& doc, pugi::xml_node node) {
        return node ? Node(doc, ToImpl(node)) : Node();
    }
    static Element MakeElement(const std::shared_ptr<DocumentImpl>& doc, pugi::xml_node node) {
        return node && node.type() == pugi::node_element ? Element(doc, ToImpl(node)) : Element();
    }
    static Document MakeDocument(std::shared_ptr<DocumentImpl> doc) { return Document(std::move(doc)); }
    static const std::shared_ptr<DocumentImpl>& ImplOf(const Node& node) { return node.doc_; }
    static pugi::xml_node PugiOf(const Node& node) { return ToPugi(node.node_); }
    static const std::shared_ptr<DocumentImpl>& ImplOf(const Document& doc) { return doc.impl_; }

private:
    std::vector<std::unique_ptr<pugi::xml_document>> generations_;

    pugi::xml_node_struct* indexParent_ = nullptr;
    pugi::xml_node_struct* indexNode_ = nullptr;
    std::int32_t index_ = 0;
    pugi::xml_node_struct* countParent_ = nullptr;
    std::int32_t count_ = 0;
};

}  // namespace quillbank::xml::detail
