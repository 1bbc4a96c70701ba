#include "xml/pugi/parse.hpp"

#include <cstring>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "xml/prescan.hpp"
#include "xml/text_checks.hpp"
#include "xml/pugi/walk.hpp"

namespace quillbank::xml::detail {

namespace {

constexpr unsigned kParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute |
                                 pugi::parse_eol | pugi::parse_comments | pugi::parse_pi |
                                 pugi::parse_declaration;

constexpr std::size_t kPairwiseAttributeLimit = 8;

bool HasDuplicateAttributes(pugi::xml_node element) {
    const pugi::xml_attribute first = element.first_attribute();
    if (!first || !first.next_attribute()) {
        return false;
    }
    std::size_t count = 0;
    for (pugi::xml_attribute a = first; a; a = a.next_attribute()) {
        ++count;
    }
    if (count <= kPairwiseAttributeLimit) {
        for (pugi::xml_attribute a = first; a; a = a.next_attribute()) {
            for (pugi::xml_attribute b = a.next_attribute(); b; b = b.next_attribute()) {
                if (std::strcmp(a.name(), b.name()) == 0) {
                    return true;
                }
            }
        }
        return false;
    }
    std::unordered_set<std::string_view> names;
    names.reserve(count);
    for (pugi::xml_attribute a = first; a; a = a.next_attribute()) {
        if (!names.insert(a.name()).second) {
            return true;
        }
    }
    return false;
}

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

// Checks every element's attributes and, when `filterWhitespace`, drops the
// whitespace-only text the nearest xml:space does not preserve.
bool CheckAndFilter(pugi::xml_document& document, bool filterWhitespace) {
    bool duplicate = false;
    std::vector<pugi::xml_node> drop;
    // The elements with an xml:space setting enclosing the current node.
    std::vector<std::pair<pugi::xml_node, bool>> spaces;
    const auto preserving = [&] { return !spaces.empty() && spaces.back().second; };
    WalkSubtree(
        document,
        [&](pugi::xml_node node) {
            switch (node.type()) {
                case pugi::node_element: {
                    if (HasDuplicateAttributes(node)) {
                        duplicate = true;
                        return false;
                    }
                    if (filterWhitespace) {
                        if (const int space = XmlSpaceOf(node); space != 0) {
                            spaces.emplace_back(node, space > 0);
                        }
                    }
                    return true;
                }
                case pugi::node_pcdata:
                    if (filterWhitespace && !preserving() && IsWhitespaceOnly(node.value())) {
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
    if (duplicate) {
        return false;
    }
    for (pugi::xml_node node : drop) {
        node.parent().remove_child(node);
    }
    return true;
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
    return CheckAndFilter(document, keepWhitespace && !preserveWhiteSpace);
}

}  // namespace quillbank::xml::detail
