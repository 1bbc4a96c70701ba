// The writer that makes XML text directly, byte for byte what the document
// model's serialisation of the same elements gives: double-quoted attributes
// in the order written, "<name/>" for an element without children, the
// escaping of node text and attribute values, no added whitespace.

#include "xml/dom_error.hpp"
#include "xml/escape.hpp"
#include "xml/text_checks.hpp"
#include "xml/writer.hpp"

namespace quillbank::xml {

namespace {

// Whether `text` holds a control character other than TAB, LF and CR.
bool HasControls(std::string_view text) {
    for (const char c : text) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x20 && b != '\t' && b != '\n' && b != '\r') {
            return true;
        }
    }
    return false;
}

}  // namespace

void TextWriter::StartElement(std::string_view name) {
    CloseStartTag();
    out_.push_back('<');
    out_ += name;
    open_.push_back(name);
    startTagOpen_ = true;
}

void TextWriter::Attribute(std::string_view name, std::string_view value) {
    // ' name="' in one append: the model's attribute names are short.
    char head[40];
    if (name.size() + 3 <= sizeof head) {
        head[0] = ' ';
        name.copy(head + 1, name.size());
        head[name.size() + 1] = '=';
        head[name.size() + 2] = '"';
        out_.append(head, name.size() + 3);
    } else {
        out_.push_back(' ');
        out_ += name;
        out_ += "=\"";
    }
    // The same refusal as the document model's for text it cannot hold.
    if (AppendCheckedAttribute(out_, value)) {
        mayHoldControls_ = true;
    }
    out_.push_back('"');
}

void TextWriter::Text(std::string_view text) {
    if (text.empty()) {
        return;
    }
    CloseStartTag();
    if (AppendCheckedText(out_, text)) {
        mayHoldControls_ = true;
    }
}

void TextWriter::Comment(std::string_view given) {
    // What the document model does to a comment's text: cut at a NUL, "-->"
    // refused, line ends made LF and written CR LF.
    const std::string_view text = DocumentText(given);
    if (!IsCommentText(text)) {
        RaiseDomError(kCommentEndInComment);
    }
    CloseStartTag();
    mayHoldControls_ = mayHoldControls_ || HasControls(text);
    out_ += "<!--";
    std::string written;
    if (text.find('\r') == std::string_view::npos) {
        AppendCommentText(written, text);
    } else {
        AppendCommentText(written, NormalizeLineEnds(text));
    }
    out_ += written;
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
    mayHoldControls_ = mayHoldControls_ || HasControls(xml);
    out_ += xml;
}

void TextWriter::Restore(const Mark& mark) {
    out_.Truncate(mark.size);
    open_.resize(mark.depth);
    startTagOpen_ = mark.open;
}

}  // namespace quillbank::xml
