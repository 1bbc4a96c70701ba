#pragma once

// The reading rules' cursor over the XML facade's handles: what every public
// FromXMLElement reads through, on any backend (a host's element on Windows
// is an MSXML node).

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <quillbank/xml.hpp>

namespace quillbank::detail::reading {

class ElementCursor {
public:
    // The element parsed from a text of its own; its handle keeps the parse.
    class Parsed {
    public:
        explicit Parsed(xml::Element root) : root_(std::move(root)) {}
        ElementCursor Root() const { return ElementCursor(root_); }

    private:
        xml::Element root_;
    };

    ElementCursor() = default;
    explicit ElementCursor(xml::Node node) : node_(std::move(node)) {}

    explicit operator bool() const { return static_cast<bool>(node_); }
    bool IsElement() const { return node_.IsElement(); }
    bool IsText() const { return node_.Type() == xml::NodeType::Text; }
    std::string Name() const { return node_.Name(); }
    std::string Value() const { return node_.Value(); }
    std::optional<std::string> Attribute(const char* name) const { return node_.AsElement().GetAttribute(name); }
    ElementCursor FirstChild() const { return ElementCursor(node_.FirstChild()); }
    ElementCursor NextSibling() const { return ElementCursor(node_.NextSibling()); }
    std::int32_t ChildCount() const { return node_.ChildCount(); }
    bool HasChildNodes() const { return node_.HasChildNodes(); }
    std::string Text() const { return node_.Text(); }
    // The text parsed as a document of its own; its parse may borrow the
    // storage of this node's document.
    Parsed ParseDocument(std::string_view text) const {
        return Parsed(node_.OwnerDocument().ParseRootElement(text));
    }
    xml::Element Facade() const { return node_.AsElement(); }

private:
    xml::Node node_;
};

}  // namespace quillbank::detail::reading
