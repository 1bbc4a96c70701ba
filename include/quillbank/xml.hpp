#pragma once

// The XML document model the library writes into and reads from: handles to a
// document and its nodes, with the behaviour of the MSXML 3.0 DOM that lesson
// files were always written with. A default-constructed handle is null.
// Handles share ownership of their document: a node stays valid for as long
// as any handle to it (or to its document) exists, also after it has been
// removed from its parent.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::xml {

namespace detail {
class DocumentImpl;
struct NodeImpl;
}  // namespace detail

enum class NodeType : std::int32_t {
    Element = 1,
    Attribute = 2,
    Text = 3,
    CData = 4,
    ProcessingInstruction = 7,
    Comment = 8,
    Document = 9,
    DocumentType = 10,
};

class Document;
class Element;

class Node {
public:
    Node() = default;

    explicit operator bool() const noexcept { return node_ != nullptr; }
    bool IsNull() const noexcept { return node_ == nullptr; }
    // Identity: two handles are equal when they refer to the same node.
    friend bool operator==(const Node& a, const Node& b) noexcept { return a.node_ == b.node_; }

    NodeType Type() const;
    // "nodeName": an element's name, "#text", "#comment", "#cdata-section".
    std::string Name() const;
    // "nodeValue": the text of a text, CDATA or comment node; "" for an element.
    std::string Value() const;
    // "text": all descendant text and CDATA joined; trimmed at both ends when
    // the owning document does not preserve whitespace (but not into a CDATA
    // section), whitespace it does not preserve standing as one space between
    // two texts. The text of a comment, CDATA section or processing
    // instruction is its value.
    std::string Text() const;
    // Replaces the node's children by one text node holding `text` (for an
    // element); sets the value of a text, CDATA or comment node. Text and
    // comments keep LF for CR LF and a lone CR; text ends at a NUL; a comment
    // holding "-->" is refused.
    void SetText(std::string_view text);
    // "xml": the serialisation of this node alone.
    std::string Xml() const;

    Node Parent() const;
    Node FirstChild() const;
    Node LastChild() const;
    Node NextSibling() const;
    Node PreviousSibling() const;
    bool HasChildNodes() const;
    std::int32_t ChildCount() const;
    // The child at a zero-based index, or null. Walking the children in index
    // order costs constant time a step.
    Node ChildAt(std::int32_t index) const;
    Document OwnerDocument() const;

    // Tree edits. The child is taken from where it was (another parent, or
    // unattached); a node of another document is copied into this one. Each
    // returns the node now in place.
    Node AppendChild(const Node& child);
    // A null `reference` appends.
    Node InsertBefore(const Node& child, const Node& reference);
    // The removed node stays usable, unattached.
    Node RemoveChild(const Node& child);
    // A copy in the same document, unattached.
    Node CloneNode(bool deep) const;

    bool IsElement() const;
    // This node as an element handle, or null when it is not an element.
    Element AsElement() const;

protected:
    Node(std::shared_ptr<detail::DocumentImpl> doc, detail::NodeImpl* node) noexcept
        : doc_(std::move(doc)), node_(node) {}

    std::shared_ptr<detail::DocumentImpl> doc_;
    detail::NodeImpl* node_ = nullptr;

    friend class Document;
    friend class detail::DocumentImpl;
};

class Element : public Node {
public:
    Element() = default;

    // The attribute's value, or nothing when the element has no such attribute.
    std::optional<std::string> GetAttribute(std::string_view name) const;
    bool HasAttribute(std::string_view name) const;
    // A new attribute goes after the existing ones; an existing one keeps its place.
    void SetAttribute(std::string_view name, std::string_view value);
    void RemoveAttribute(std::string_view name);
    std::int32_t AttributeCount() const;

    // The "bin.base64" typed value: the element's text becomes the base64 of
    // the bytes, in lines of 72 characters separated by a line feed.
    void SetBase64Value(std::span<const std::uint8_t> bytes);
    // Decodes the element's text as base64 (whitespace anywhere is ignored);
    // raises ErrXmlDom when the text is not base64.
    std::vector<std::uint8_t> GetBase64Value() const;

private:
    using Node::Node;
    friend class Node;
    friend class Document;
    friend class detail::DocumentImpl;
};

class Document {
public:
    Document() = default;
    // A new, empty document that does not preserve whitespace.
    static Document Create();

    explicit operator bool() const noexcept { return impl_ != nullptr; }
    bool IsNull() const noexcept { return impl_ == nullptr; }
    friend bool operator==(const Document& a, const Document& b) noexcept { return a.impl_ == b.impl_; }

    // New unattached nodes of this document.
    Element CreateElement(std::string_view name);
    Node CreateTextNode(std::string_view text);
    Node CreateComment(std::string_view text);
    Node CreateCDataSection(std::string_view text);

    // Replaces the document's content with the parsed text. On failure the
    // document is left empty and false is returned. Text that is not UTF-8 or
    // not well-formed fails; only the predefined entities and character
    // references are expanded; a document type declaration is skipped and
    // nothing outside the text is read.
    bool LoadXML(std::string_view text);

    // Parses `text` as a document of its own (the rules of LoadXML, for a
    // new document that does not preserve whitespace) and returns its root
    // element, unattached, or null when the text does not load. This
    // document's content does not change: the element belongs to a private
    // document of its own, which lives as long as any handle to the element
    // or its nodes, so that a short-lived parse gives its memory back as soon
    // as it is no longer used.
    Element ParseRootElement(std::string_view text);

    // The root element, or null.
    Element DocumentElement() const;
    // Makes `element` the root element (replacing any other).
    void SetDocumentElement(const Element& element);

    bool PreserveWhiteSpace() const;
    void SetPreserveWhiteSpace(bool preserve);

    // The document's top-level nodes, each followed by CR LF.
    std::string Xml() const;

    // The document as a node (type Document, name "#document").
    Node AsNode() const;

private:
    explicit Document(std::shared_ptr<detail::DocumentImpl> impl) noexcept : impl_(std::move(impl)) {}
    std::shared_ptr<detail::DocumentImpl> impl_;

    friend class Node;
    friend class detail::DocumentImpl;
};

// Re-serialises XML text with an XML declaration naming US-ASCII and
// standalone, one tab of indentation a level with CR LF line ends, and every
// character outside ASCII as a character reference. Comments and CDATA
// sections pass through. Returns nothing when the text does not parse.
std::optional<std::string> FormatXml(std::string_view text);

}  // namespace quillbank::xml
