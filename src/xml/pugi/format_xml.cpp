// FormatXml: re-serialising XML text in the indented, ASCII-only form.

#include <quillbank/xml.hpp>

#include "xml/escape.hpp"
#include "xml/pugi/layout.hpp"
#include "xml/pugi/parse.hpp"
#include "xml/pugi/walk.hpp"

namespace quillbank::xml {

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"US-ASCII\" standalone=\"yes\"?>";

bool HoldsOnlyText(pugi::xml_node element) {
    for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
        if (child.type() != pugi::node_pcdata && child.type() != pugi::node_cdata) {
            return false;
        }
    }
    return true;
}

// Writes the indented form. Each element start tag, comment and processing
// instruction begins a line at its depth; an element holding only text is
// one line; text among elements is written where it stands; a comment ends
// its line. Nothing follows the root element's end tag.
class IndentedWriter {
public:
    explicit IndentedWriter(std::string& out) : out_(out) {}

    void Declaration() {
        out_ += kDeclaration;
        out_ += "\r\n";
        atLineStart_ = true;
    }

    bool Enter(pugi::xml_node node) {
        switch (node.type()) {
            case pugi::node_element:
                return StartElement(node);
            case pugi::node_pcdata:
                AppendAsciiText(out_, node.value());
                atLineStart_ = false;
                return false;
            case pugi::node_cdata:
                CData(node.value());
                atLineStart_ = false;
                return false;
            case pugi::node_comment:
                NewLine();
                // A comment passes through as it is: references mean nothing in it.
                out_ += "<!--";
                out_ += node.value();
                out_ += "-->\r\n";
                atLineStart_ = true;
                return false;
            case pugi::node_pi:
                NewLine();
                out_ += "<?";
                out_ += node.name();
                if (*node.value() != '\0') {
                    out_.push_back(' ');
                    AppendAsciiText(out_, node.value());
                }
                out_ += "?>";
                atLineStart_ = false;
                return false;
            default:
                return false;  // the source's own declaration gives way to ours
        }
    }

    void Leave(pugi::xml_node node) {
        if (node.type() != pugi::node_element || !node.first_child() || HoldsOnlyText(node)) {
            return;
        }
        --depth_;
        NewLine();
        EndTag(node);
        atLineStart_ = false;
    }

private:
    bool StartElement(pugi::xml_node node) {
        NewLine();
        out_.push_back('<');
        out_ += node.name();
        for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
            out_.push_back(' ');
            out_ += a.name();
            out_ += "=\"";
            AppendAsciiAttribute(out_, a.value());
            out_.push_back('"');
        }
        atLineStart_ = false;
        if (!node.first_child()) {
            out_ += "/>";
            return false;
        }
        out_.push_back('>');
        if (HoldsOnlyText(node)) {
            for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
                if (child.type() == pugi::node_cdata) {
                    CData(child.value());
                } else {
                    AppendAsciiText(out_, child.value());
                }
            }
            EndTag(node);
            return false;
        }
        ++depth_;
        return true;
    }

    void EndTag(pugi::xml_node node) {
        out_ += "</";
        out_ += node.name();
        out_.push_back('>');
    }

    // A CDATA section passes through; a character above U+007F, which a
    // section cannot spell in ASCII, closes it, stands as a character
    // reference, and a new section goes on. "]]>" is split the same way.
    void CData(std::string_view value) {
        out_ += "<![CDATA[";
        std::size_t pos = 0;
        while (pos < value.size()) {
            const unsigned char b = static_cast<unsigned char>(value[pos]);
            if (b < 0x80) {
                if (b == '>' && pos >= 2 && value.compare(pos - 2, 2, "]]") == 0) {
                    out_ += "]]><![CDATA[";
                }
                out_.push_back(static_cast<char>(b));
                ++pos;
                continue;
            }
            std::size_t end = pos + 1;
            while (end < value.size() && (static_cast<unsigned char>(value[end]) & 0xC0u) == 0x80u) {
                ++end;
            }
            out_ += "]]>";
            AppendAsciiText(out_, value.substr(pos, end - pos));
            out_ += "<![CDATA[";
            pos = end;
        }
        out_ += "]]>";
    }

    // Starts a line at the current depth unless one was just started.
    void NewLine() {
        if (!atLineStart_) {
            out_ += "\r\n";
        }
        out_.append(depth_, '\t');
        atLineStart_ = false;
    }

    std::string& out_;
    std::size_t depth_ = 0;
    bool atLineStart_ = true;
};

}  // namespace

std::optional<std::string> FormatXml(std::string_view text) {
    pugi::xml_document document;
    // The writer indents on its own: what loading remembers is not needed.
    detail::Layout layout;
    if (!detail::ParseXmlText(document, text, false, layout).loaded) {
        return std::nullopt;
    }
    std::string out;
    out.reserve(text.size() + text.size() / 4 + 64);
    IndentedWriter writer(out);
    writer.Declaration();
    for (pugi::xml_node node = document.first_child(); node; node = node.next_sibling()) {
        detail::WalkSubtree(
            node, [&](pugi::xml_node n) { return writer.Enter(n); }, [&](pugi::xml_node n) { writer.Leave(n); });
    }
    return out;
}

}  // namespace quillbank::xml
