#pragma once

// Where the model's writers put what they write. Every class writes itself
// as a sequence of calls (an element starts, takes its attributes, then its
// text or its children, and ends); a DomWriter turns them into unattached
// elements of a document, a TextWriter straight into the element's "xml"
// text, the same bytes the document's own serialisation gives. The string
// forms take the direct way in every build: the MSXML build serialises its
// documents with the library's own escaping too, so the text is the same
// as the "xml" of the elements MSXML would hold, without the cost of a
// document and a COM call per node.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/xml.hpp>

#include "xml/text_buffer.hpp"

namespace quillbank::xml {

class Writer {
public:
    // A point to come back to: what was written after it is taken back.
    struct Mark {
        std::size_t depth = 0;
        std::size_t size = 0;
        bool open = false;
    };

    virtual ~Writer() = default;

    // A new element, the child of the one being written (or the result).
    // `name` is one of the model's own element names, which are valid.
    virtual void StartElement(std::string_view name) = 0;
    // A new attribute of the element just started (before any child); the
    // value must be text the document model can hold.
    virtual void Attribute(std::string_view name, std::string_view value) = 0;
    // The element's only child: a text node, none for "".
    virtual void Text(std::string_view text) = 0;
    virtual void Comment(std::string_view text) = 0;
    virtual void EndElement() = 0;

    // The element being written, for the few writers that place a copy of a
    // stored element under it; null when the writer makes text.
    virtual Element* DomParent() = 0;
    // Appends ready-made XML text (a stored element's "xml") as children of
    // the element being written; only for a writer that makes text.
    virtual void Markup(std::string_view xml) = 0;

    virtual Mark Save() const = 0;
    virtual void Restore(const Mark& mark) = 0;
};

// Builds unattached elements in a document.
class DomWriter final : public Writer {
public:
    explicit DomWriter(Document document) : document_(std::move(document)) {}

    void StartElement(std::string_view name) override;
    void Attribute(std::string_view name, std::string_view value) override;
    void Text(std::string_view text) override;
    void Comment(std::string_view text) override;
    void EndElement() override;
    Element* DomParent() override;
    void Markup(std::string_view xml) override;
    Mark Save() const override;
    void Restore(const Mark& mark) override;

    // The outermost element written, unattached (null before it ends).
    const Element& Result() const { return result_; }

private:
    Document document_;
    std::vector<Element> open_;
    Element result_;
};

// Writes the "xml" text of the elements directly.
class TextWriter final : public Writer {
public:
    TextWriter() { open_.reserve(16); }

    void StartElement(std::string_view name) override;
    void Attribute(std::string_view name, std::string_view value) override;
    void Text(std::string_view text) override;
    void Comment(std::string_view text) override;
    void EndElement() override;
    Element* DomParent() override { return nullptr; }
    void Markup(std::string_view xml) override;
    Mark Save() const override { return {open_.size(), out_.size(), startTagOpen_}; }
    void Restore(const Mark& mark) override;

    // The text written so far.
    std::string_view Out() const { return out_.View(); }
    // The text written; the writer is done with.
    std::string TakeText() { return out_.Take(); }
    // Whether the text may hold a control character other than TAB, LF and
    // CR: false when none was ever written. The string forms then leave out
    // their pass that removes such characters, and the text is one that
    // XML allows.
    bool MayHoldControls() const { return mayHoldControls_; }

private:
    // Closes the start tag of the element being written, which gets children.
    void CloseStartTag() {
        if (startTagOpen_) {
            out_.push_back('>');
            startTagOpen_ = false;
        }
    }

    TextBuffer out_;
    std::vector<std::string_view> open_;
    // The last start tag written still waits for its '>' (or "/>").
    bool startTagOpen_ = false;
    bool mayHoldControls_ = false;
};

}  // namespace quillbank::xml
