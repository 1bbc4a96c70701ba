#include "xml/pugi/parse.hpp"

#include <cstring>
#include <string_view>
#include <vector>

#include "xml/prescan.hpp"
#include "xml/text_checks.hpp"
#include "xml/pugi/layout.hpp"
#include "xml/pugi/walk.hpp"
#include "xml/pugi/xml_space.hpp"

namespace quillbank::xml::detail {

namespace {

// Raw TAB, CR and LF in attribute values are kept (CR LF and a lone CR
// becoming LF, as everywhere), as MSXML keeps them: no attribute-value
// normalisation.
constexpr unsigned kParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_comments |
                                 pugi::parse_pi | pugi::parse_declaration;

bool IsWhitespaceOnly(const char* text) {
    for (; *text != '\0'; ++text) {
        if (!IsXmlWhitespace(*text)) {
            return false;
        }
    }
    return true;
}

// Drops the whitespace-only text under `top` that the nearest xml:space does
// not preserve, marking where it was: after the node before it, or at the
// start of its element's content. Whitespace between top-level nodes is not
// marked: the document's "xml" ends each of them with a line end anyway.
void DropUnpreservedWhitespace(pugi::xml_node top, Layout& layout, bool mentionsXmlSpace) {
    std::vector<pugi::xml_node> drop;
    // The elements with an xml:space setting enclosing the current node.
    std::vector<std::pair<pugi::xml_node, bool>> spaces;
    WalkSubtree(
        top,
        [&](pugi::xml_node node) {
            switch (node.type()) {
                case pugi::node_element:
                    if (mentionsXmlSpace) {
                        if (const int space = XmlSpaceOf(node); space != 0) {
                            spaces.emplace_back(node, space > 0);
                        }
                    }
                    return true;
                case pugi::node_pcdata:
                    if ((spaces.empty() || !spaces.back().second) && IsWhitespaceOnly(node.value())) {
                        drop.push_back(node);
                    }
                    return false;
                case pugi::node_document:
                    return true;
                default:
                    return false;
            }
        },
        [&](pugi::xml_node node) {
            if (!spaces.empty() && spaces.back().first == node) {
                spaces.pop_back();
            }
        });
    for (pugi::xml_node node : drop) {
        pugi::xml_node parent = node.parent();
        if (parent.type() == pugi::node_element) {
            if (const pugi::xml_node before = node.previous_sibling()) {
                layout.Add(before, Layout::kSpaceAfter);
            } else {
                layout.Add(parent, Layout::kSpaceInside);
            }
        }
        parent.remove_child(node);
    }
}

// Whether the start tag whose name begins at `at` ends with '>' rather than
// "/>" (attribute values may hold '>' and '/').
bool StartTagHasEndTag(std::string_view text, std::size_t at) {
    char quote = '\0';
    for (std::size_t pos = at; pos < text.size(); ++pos) {
        const char c = text[pos];
        if (quote != '\0') {
            if (c == quote) {
                quote = '\0';
            }
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return text[pos - 1] != '/';
        }
    }
    return false;
}

// Marks every element without content that the text writes "<a></a>".
void MarkEndTags(pugi::xml_node top, std::string_view text, Layout& layout) {
    WalkSubtree(
        top,
        [&](pugi::xml_node node) {
            const pugi::xml_node_type type = node.type();
            if (type == pugi::node_element && !node.first_child()) {
                const std::ptrdiff_t at = node.offset_debug();
                if (at >= 0 && StartTagHasEndTag(text, static_cast<std::size_t>(at))) {
                    layout.Add(node, Layout::kEndTag);
                }
            }
            return type == pugi::node_element || type == pugi::node_document;
        },
        [](pugi::xml_node) {});
}

}  // namespace

ParseOutcome ParseXmlText(pugi::xml_document& document, std::string_view text, bool preserveWhiteSpace,
                          Layout& layout) {
    const PrescanResult scan = PrescanXml(text);
    if (!scan.accepted) {
        return {};
    }
    // Whitespace-only text is kept by the parser only when it may be needed:
    // always when preserving, and otherwise when some text starts with
    // whitespace, to drop it afterwards and remember where it was.
    const bool filterWhitespace = !preserveWhiteSpace && scan.hasSpaceText;
    const bool keepWhitespace = preserveWhiteSpace || filterWhitespace;
    const unsigned flags = kParseFlags | (keepWhitespace ? pugi::parse_ws_pcdata : 0u);
    if (!document.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8)) {
        return {};
    }
    if (filterWhitespace) {
        DropUnpreservedWhitespace(document, layout, scan.mentionsXmlSpace);
    }
    if (scan.hasEmptyEndTag) {
        MarkEndTags(document, text, layout);
    }
    layout.Seal();
    return {true, scan.mentionsXmlSpace};
}

}  // namespace quillbank::xml::detail
