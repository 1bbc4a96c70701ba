// Element: attributes and the "bin.base64" typed value.

#include <cstring>
#include <string>

#include <quillbank/xml.hpp>

#include "xml/base64.hpp"
#include "xml/dom_error.hpp"
#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/serialize.hpp"
#include "xml/pugi/tree_edit.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

namespace {

constexpr std::size_t kQuotedTextLength = 64;

pugi::xml_node Require(detail::NodeImpl* node) {
    if (node == nullptr) {
        RaiseDomError("The element is null.");
    }
    return detail::ToPugi(node);
}

// Attribute names up to this length are terminated on the stack for
// pugixml's own search.
constexpr std::size_t kShortAttributeName = 64;

pugi::xml_attribute Find(pugi::xml_node element, std::string_view name) {
    // A stored name never holds a NUL, so a name that does is never found.
    if (name.find('\0') != std::string_view::npos) {
        return pugi::xml_attribute();
    }
    if (name.size() < kShortAttributeName) {
        char terminated[kShortAttributeName];
        std::memcpy(terminated, name.data(), name.size());
        terminated[name.size()] = '\0';
        return element.attribute(terminated);
    }
    return element.attribute(std::string(name).c_str());
}

// The first `count` characters (not bytes) of UTF-8 text.
std::string_view LeadingCharacters(std::string_view text, std::size_t count) {
    std::size_t pos = 0;
    for (std::size_t n = 0; n < count && pos < text.size(); ++n) {
        char32_t c = 0;
        if (!DecodeUtf8(text, pos, c)) {
            ++pos;
        }
    }
    return text.substr(0, pos);
}

}  // namespace

std::optional<std::string> Element::GetAttribute(std::string_view name) const {
    const pugi::xml_attribute attribute = Find(Require(node_), name);
    if (!attribute) {
        return std::nullopt;
    }
    return std::string(attribute.value());
}

bool Element::HasAttribute(std::string_view name) const { return static_cast<bool>(Find(Require(node_), name)); }

void Element::SetAttribute(std::string_view name, std::string_view value) {
    pugi::xml_node element = Require(node_);
    // The usual ASCII name needs neither of the name checks.
    const bool asciiName = IsAsciiXmlName(name);
    if (!asciiName) {
        name = DocumentText(name);
    }
    value = DocumentText(value);
    if (!asciiName && !IsXmlName(name)) {
        RaiseDomError("This name is not a valid XML name.");
    }
    pugi::xml_attribute attribute = Find(element, name);
    if (attribute && RebindsOwnPrefix(element.name(), name, attribute.value(), value)) {
        throw Error(ErrDomInvalidArgument, kDomErrorSource, kPrefixRebound);
    }
    if (!attribute) {
        attribute = element.append_attribute(std::string(name).c_str());
        if (name == "xml:space") {
            doc_->mayHaveXmlSpace = true;
        }
    }
    attribute.set_value(value.data(), value.size());
}

void Element::RemoveAttribute(std::string_view name) {
    pugi::xml_node element = Require(node_);
    if (const pugi::xml_attribute attribute = Find(element, name)) {
        element.remove_attribute(attribute);
    }
}

std::int32_t Element::AttributeCount() const {
    std::int32_t count = 0;
    for (pugi::xml_attribute a = Require(node_).first_attribute(); a; a = a.next_attribute()) {
        ++count;
    }
    return count;
}

void Element::SetBase64Value(std::span<const std::uint8_t> bytes) {
    pugi::xml_node element = Require(node_);
    detail::ReplaceChildrenWithText(*doc_, element, EncodeBase64Text(bytes));
}

std::vector<std::uint8_t> Element::GetBase64Value() const {
    const std::string text = detail::ConcatenatedText(Require(node_));
    std::optional<std::vector<std::uint8_t>> bytes = DecodeBase64Text(text);
    if (!bytes) {
        const std::string description =
            "Error parsing '" + std::string(LeadingCharacters(text, kQuotedTextLength)) + "' as bin.base64 datatype.";
        throw Error(ErrXmlDom, kDomErrorSource, description);
    }
    return std::move(*bytes);
}

}  // namespace quillbank::xml
