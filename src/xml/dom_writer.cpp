// The writer that builds elements in a document: each element is placed
// under its parent when it ends, complete.

#include <stdexcept>

#include "xml/writer.hpp"

namespace quillbank::xml {

void DomWriter::StartElement(std::string_view name) { open_.push_back(document_.CreateElement(name)); }

void DomWriter::Attribute(std::string_view name, std::string_view value) { open_.back().SetAttribute(name, value); }

void DomWriter::Text(std::string_view text) { open_.back().SetText(text); }

void DomWriter::Comment(std::string_view text) { open_.back().AppendChild(document_.CreateComment(text)); }

void DomWriter::EndElement() {
    Element done = std::move(open_.back());
    open_.pop_back();
    if (open_.empty()) {
        result_ = std::move(done);
    } else {
        open_.back().AppendChild(done);
    }
}

Element* DomWriter::DomParent() { return open_.empty() ? nullptr : &open_.back(); }

void DomWriter::Markup(std::string_view) {
    throw std::logic_error("ready-made XML text has no place in a document being built");
}

Writer::Mark DomWriter::Save() const { return {open_.size(), 0, false}; }

void DomWriter::Restore(const Mark& mark) {
    // Elements not yet ended are not attached anywhere: dropping them is all.
    open_.resize(mark.depth);
}

}  // namespace quillbank::xml
