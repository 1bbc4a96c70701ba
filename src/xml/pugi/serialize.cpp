#include "xml/pugi/serialize.hpp"

#include <cstring>
#include <string_view>

#include "xml/declaration.hpp"
#include "xml/escape.hpp"
#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/layout.hpp"
#include "xml/pugi/walk.hpp"

namespace quillbank::xml::detail {

namespace {

std::string_view ValueOf(pugi::xml_node node) { return node.value(); }

void AppendCData(std::string& out, std::string_view value) {
    // "]]>" cannot stand inside one section: it is split over two, so the
    // text reads back unchanged.
    out += "<![CDATA[";
    std::size_t start = 0;
    for (std::size_t at = value.find("]]>"); at != std::string_view::npos; at = value.find("]]>", at + 1)) {
        out.append(value.substr(start, at + 2 - start));
        out += "]]><![CDATA[";
        start = at + 2;
    }
    out.append(value.substr(start));
    out += "]]>";
}

void AppendAttribute(std::string& out, pugi::xml_attribute attribute) {
    out.push_back(' ');
    out += attribute.name();
    out += "=\"";
    AppendEscapedAttribute(out, attribute.value());
    out.push_back('"');
}

void AppendAttributes(std::string& out, pugi::xml_node node) {
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute()) {
        AppendAttribute(out, attribute);
    }
}

// The XML declaration as the DOM writes it (declaration.hpp).
void AppendDeclaration(std::string& out, pugi::xml_node declaration) {
    std::string values[3];
    const std::string* present[3] = {nullptr, nullptr, nullptr};
    const char* names[3] = {"version", "encoding", "standalone"};
    for (int i = 0; i < 3; ++i) {
        if (const pugi::xml_attribute a = declaration.attribute(names[i])) {
            values[i] = a.value();
            present[i] = &values[i];
        }
    }
    xml::AppendDeclaration(out, present[0], present[1], present[2]);
}

// Writes the part of `node` before its children; returns whether children follow.
bool Enter(std::string& out, pugi::xml_node node) {
    switch (node.type()) {
        case pugi::node_element:
            out.push_back('<');
            out += node.name();
            AppendAttributes(out, node);
            if (node.first_child()) {
                out.push_back('>');
                return true;
            }
            out += "/>";
            return false;
        case pugi::node_pcdata:
            AppendEscapedText(out, ValueOf(node));
            return false;
        case pugi::node_cdata:
            AppendCData(out, ValueOf(node));
            return false;
        case pugi::node_comment:
            out += "<!--";
            AppendCommentText(out, node.value());
            out += "-->";
            return false;
        case pugi::node_pi:
            out += "<?";
            out += node.name();
            if (*node.value() != '\0') {
                out.push_back(' ');
                out += node.value();
            }
            out += "?>";
            return false;
        case pugi::node_declaration:
            AppendDeclaration(out, node);
            return false;
        default:
            return false;
    }
}

void Leave(std::string& out, pugi::xml_node node) {
    if (node.type() == pugi::node_element && node.first_child()) {
        out += "</";
        out += node.name();
        out.push_back('>');
    }
}

// A generous guess at the written size, so that the text is built in one buffer.
std::size_t EstimateSize(pugi::xml_node node) {
    std::size_t size = 0;
    WalkSubtree(
        node,
        [&](pugi::xml_node n) {
            size += 2 * std::strlen(n.name()) + std::strlen(n.value()) + 8;
            for (pugi::xml_attribute a = n.first_attribute(); a; a = a.next_attribute()) {
                size += std::strlen(a.name()) + std::strlen(a.value()) + 4;
            }
            return true;
        },
        [](pugi::xml_node) {});
    return size + size / 8;
}

void AppendLineEnd(std::string& out, std::size_t tabs) {
    out += "\r\n";
    out.append(tabs, '\t');
}

void AppendSubtree(std::string& out, pugi::xml_node top, const Layout* layout) {
    if (layout == nullptr) {
        WalkSubtree(
            top, [&](pugi::xml_node n) { return Enter(out, n); }, [&](pugi::xml_node n) { Leave(out, n); });
        return;
    }
    // With remembered layout: dropped whitespace comes back as a line end and
    // one tab for each level below `top` of what follows it, and an empty
    // element keeps the end tag it was written with.
    std::size_t depth = 0;  // of the node being entered or left, below `top`
    WalkSubtree(
        top,
        [&](pugi::xml_node n) {
            const std::uint8_t marks = layout->Of(n);
            if (n.type() != pugi::node_element || (marks & (Layout::kSpaceInside | Layout::kEndTag)) == 0) {
                const bool children = Enter(out, n);
                if (children) {
                    if (marks & Layout::kSpaceInside) {
                        AppendLineEnd(out, depth + 1);
                    }
                    ++depth;
                }
                return children;
            }
            out.push_back('<');
            out += n.name();
            AppendAttributes(out, n);
            out.push_back('>');
            if (n.first_child()) {
                if (marks & Layout::kSpaceInside) {
                    AppendLineEnd(out, depth + 1);
                }
                ++depth;
                return true;
            }
            if (marks & Layout::kSpaceInside) {
                AppendLineEnd(out, depth);
            }
            out += "</";
            out += n.name();
            out.push_back('>');
            return false;
        },
        [&](pugi::xml_node n) {
            if (n.type() == pugi::node_element && n.first_child()) {
                --depth;
                Leave(out, n);
            }
            if (n != top && (layout->Of(n) & Layout::kSpaceAfter) != 0) {
                // Before the next sibling, or before the parent's end tag.
                AppendLineEnd(out, n.next_sibling() ? depth : depth - 1);
            }
        });
}

}  // namespace

std::string NodeXml(pugi::xml_node node, const Layout* layout) {
    std::string out;
    if (node.type() == pugi::node_document) {
        std::size_t estimate = 0;
        for (pugi::xml_node child = VisibleFirstChild(node); child; child = child.next_sibling()) {
            estimate += EstimateSize(child) + 2;
        }
        out.reserve(estimate);
        for (pugi::xml_node child = VisibleFirstChild(node); child; child = child.next_sibling()) {
            AppendSubtree(out, child, layout);
            out += "\r\n";
        }
        return out;
    }
    out.reserve(EstimateSize(node));
    AppendSubtree(out, node, layout);
    return out;
}

std::string DeclarationText(pugi::xml_node declaration) {
    std::string out;
    for (pugi::xml_attribute a = declaration.first_attribute(); a; a = a.next_attribute()) {
        AppendAttribute(out, a);
    }
    return out.empty() ? out : out.substr(1);
}

std::string ConcatenatedText(pugi::xml_node node) {
    switch (node.type()) {
        case pugi::node_declaration:
            return DeclarationText(node);
        case pugi::node_pcdata:
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi:
            return node.value();
        default:
            break;
    }
    std::string out;
    const auto collect = [&](pugi::xml_node n) {
        const pugi::xml_node_type type = n.type();
        if (type == pugi::node_pcdata || type == pugi::node_cdata) {
            out += n.value();
        }
        return type == pugi::node_element;
    };
    if (node.type() == pugi::node_document) {
        for (pugi::xml_node child = VisibleFirstChild(node); child; child = child.next_sibling()) {
            WalkSubtree(child, collect, [](pugi::xml_node) {});
        }
    } else {
        WalkSubtree(node, collect, [](pugi::xml_node) {});
    }
    return out;
}

}  // namespace quillbank::xml::detail
