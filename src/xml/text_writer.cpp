// The writer that makes XML text directly, byte for byte what the document
// model's serialisation of the same elements gives: double-quoted attributes
// in the order written, "<name/>" for an element without children, the
// escaping of node text and attribute values, no added whitespace.

#include "xml/dom_error.hpp"
#include "xml/escape.hpp"
#include "xml/text_checks.hpp"
#include "xml/writer.hpp"

namespace quillbank::xml {

void TextWriter::StartElement(std::string_view name) {
    CloseStartTag();
    out_.push_back('<');
    out_ += name;
    open_.push_back(name);
    startTagOpen_ = true;
}

void TextWriter::Attribute(std::string_view name, std::string_view value) {
    const std::size_t at = out_.size();
    out_.resize(at + name.size() + 3);
    char* to = out_.data() + at;
    *to++ = ' ';
    name.copy(to, name.size());
    to += name.size();
    to[0] = '=';
    to[1] = '"';
    // The same refusal as the document model's for text it cannot hold.
    AppendCheckedAttribute(out_, value);
    out_.push_back('"');
}

void TextWriter::Text(std::string_view text) {
    if (text.empty()) {
        return;
    }
    CloseStartTag();
    AppendCheckedText(out_, text);
}

void TextWriter::Comment(std::string_view given) {
    // What the document model does to a comment's text: cut at a NUL, "-->"
    // refused, line ends made LF and written CR LF.
    const std::string_view text = DocumentText(given);
    if (!IsCommentText(text)) {
        RaiseDomError(kCommentEndInComment);
    }
    CloseStartTag();
    out_ += "<!--";
    if (text.find('\r') == std::string_view::npos) {
        AppendCommentText(out_, text);
    } else {
        AppendCommentText(out_, NormalizeLineEnds(text));
    }
    out_ += "-->";
}

void TextWriter::EndElement() {
    const std::string_view name = open_.back();
    open_.pop_back();
    if (startTagOpen_) {
        out_ += "/>";
        startTagOpen_ = false;
        return;
    }
    out_ += "</";
    out_ += name;
    out_.push_back('>');
}

void TextWriter::Markup(std::string_view xml) {
    if (xml.empty()) {
        return;
    }
    CloseStartTag();
    out_ += xml;
}

void TextWriter::Restore(const Mark& mark) {
    out_.resize(mark.size);
    open_.resize(mark.depth);
    startTagOpen_ = mark.open;
}

}  // namespace quillbank::xml
