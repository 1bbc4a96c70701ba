#pragma once

// The reading rules' cursor over pugixml's own nodes: a node and the rules of
// the document it belongs to, two pointers copied by value. Attributes and
// names are views into the parse; nothing is allocated while walking.
//
// Below the root element a parsed document's nodes are what the facade shows
// (the hidden limbo is a child of the document node only), and "text" is the
// facade's own routine, so reading through this cursor gives what reading
// through the facade's handles gives.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include <quillbank/xml.hpp>

#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/layout.hpp"
#include "xml/pugi/node_text.hpp"

namespace quillbank::xml::detail {

// What a cursor knows of its document.
struct CursorSource {
    TextRules rules;
    // The facade's document of the nodes, for handles to them; null for a
    // scratch parse.
    const std::shared_ptr<DocumentImpl>* owner = nullptr;
};

struct ParseScratch;

class NodeCursor {
public:
    class Parsed;

    NodeCursor() = default;
    NodeCursor(pugi::xml_node node, const CursorSource* source) : node_(node), source_(source) {}

    explicit operator bool() const { return static_cast<bool>(node_); }
    bool IsElement() const { return node_.type() == pugi::node_element; }
    bool IsText() const { return node_.type() == pugi::node_pcdata; }
    std::string_view Name() const { return node_.name(); }
    std::string_view Value() const { return node_.value(); }
    std::optional<std::string_view> Attribute(const char* name) const {
        const pugi::xml_attribute attribute = node_.attribute(name);
        if (!attribute) {
            return std::nullopt;
        }
        return std::string_view(attribute.value());
    }
    NodeCursor FirstChild() const { return NodeCursor(node_.first_child(), source_); }
    NodeCursor NextSibling() const { return NodeCursor(node_.next_sibling(), source_); }
    std::int32_t ChildCount() const {
        std::int32_t count = 0;
        for (pugi::xml_node child = node_.first_child(); child; child = child.next_sibling()) {
            ++count;
        }
        return count;
    }
    bool HasChildNodes() const { return static_cast<bool>(node_.first_child()); }
    std::string Text() const { return NodeText(node_, source_->rules); }
    // The text parsed as a document of its own, in a scratch document of
    // this thread that the result holds until it goes.
    Parsed ParseDocument(std::string_view text) const;
    Element Facade() const;

private:
    pugi::xml_node node_;
    const CursorSource* source_ = nullptr;
};

// A parse in one of the thread's scratch documents, one per level of
// encoded text inside encoded text; the document is emptied when this goes.
class NodeCursor::Parsed {
public:
    explicit Parsed(std::string_view text);
    ~Parsed();
    Parsed(const Parsed&) = delete;
    Parsed& operator=(const Parsed&) = delete;

    // Whether the text parsed; a text that parsed may still have no root.
    bool Loaded() const { return loaded_; }
    NodeCursor Root() const { return root_; }

private:
    ParseScratch* scratch_;
    NodeCursor root_;
    bool loaded_ = false;
};

inline NodeCursor::Parsed NodeCursor::ParseDocument(std::string_view text) const { return Parsed(text); }

}  // namespace quillbank::xml::detail
