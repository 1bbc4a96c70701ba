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
    explicit ElementCursor(xml::Node node) {
        if (node && node.IsElement()) {
            element_ = node.AsElement();
        } else {
            other_ = std::move(node);
        }
    }

    explicit operator bool() const { return static_cast<bool>(Node()); }
    bool IsElement() const { return static_cast<bool>(element_); }
    bool IsText() const { return !element_ && other_ && other_.Type() == xml::NodeType::Text; }
    std::string Name() const { return Node().Name(); }
    std::string Value() const { return Node().Value(); }
    std::optional<std::string> Attribute(const char* name) const { return element_.GetAttribute(name); }
    ElementCursor FirstChild() const { return ElementCursor(Node().FirstChild()); }
    ElementCursor NextSibling() const { return ElementCursor(Node().NextSibling()); }
    std::int32_t ChildCount() const { return Node().ChildCount(); }
    bool HasChildNodes() const { return Node().HasChildNodes(); }
    std::string Text() const { return Node().Text(); }
    // The text parsed as a document of its own; its parse may borrow the
    // storage of this node's document.
    Parsed ParseDocument(std::string_view text) const {
        return Parsed(Node().OwnerDocument().ParseRootElement(text));
    }
    xml::Element Facade() const { return element_; }

private:
    const xml::Node& Node() const { return element_ ? static_cast<const xml::Node&>(element_) : other_; }

    // An element is held as one, so that its attributes need no new handle;
    // any other node as a node.
    xml::Element element_;
    xml::Node other_;
};

}  // namespace quillbank::detail::reading
