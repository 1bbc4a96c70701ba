#include "xml/pugi/parse.hpp"

#include <cstring>
#include <string_view>
#include <vector>

#include "xml/prescan.hpp"
#include "xml/text_checks.hpp"
#include "xml/pugi/walk.hpp"

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

// The xml:space setting an element makes: +1 preserve, -1 default, 0 none.
int XmlSpaceOf(pugi::xml_node element) {
    const pugi::xml_attribute attribute = element.attribute("xml:space");
    if (!attribute) {
        return 0;
    }
    if (std::strcmp(attribute.value(), "preserve") == 0) {
        return 1;
    }
    if (std::strcmp(attribute.value(), "default") == 0) {
        return -1;
    }
    return 0;
}

// Drops the whitespace-only text under `top` that the nearest xml:space does
// not preserve.
void DropUnpreservedWhitespace(pugi::xml_node top) {
    std::vector<pugi::xml_node> drop;
    // The elements with an xml:space setting enclosing the current node.
    std::vector<std::pair<pugi::xml_node, bool>> spaces;
    WalkSubtree(
        top,
        [&](pugi::xml_node node) {
            switch (node.type()) {
                case pugi::node_element:
                    if (const int space = XmlSpaceOf(node); space != 0) {
                        spaces.emplace_back(node, space > 0);
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
        node.parent().remove_child(node);
    }
}

}  // namespace

bool ParseXmlText(pugi::xml_document& document, std::string_view text, bool preserveWhiteSpace) {
    const PrescanResult scan = PrescanXml(text);
    if (!scan.accepted) {
        return false;
    }
    // Whitespace-only text is kept by the parser only when it may be needed:
    // always when preserving, and when an xml:space attribute may ask for it.
    const bool keepWhitespace = preserveWhiteSpace || scan.mentionsXmlSpace;
    const unsigned flags = kParseFlags | (keepWhitespace ? pugi::parse_ws_pcdata : 0u);
    if (!document.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8)) {
        return false;
    }
    if (keepWhitespace && !preserveWhiteSpace) {
        DropUnpreservedWhitespace(document);
    }
    return true;
}

}  // namespace quillbank::xml::detail
