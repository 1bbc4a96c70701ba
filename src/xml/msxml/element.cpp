// Element: attributes and the "bin.base64" typed value on MSXML.
//
// The base64 value is written as the element's text, rendered by the
// library's own coder (lines of 72 characters), and read back from the text:
// setting MSXML's data type would add a "dt:dt" attribute that lesson files
// never carry.

#include <quillbank/xml.hpp>

#include "xml/base64.hpp"
#include "xml/dom_error.hpp"
#include "xml/msxml/com_support.hpp"
#include "xml/msxml/document_impl.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using detail::RequireElement;
using msxml::Bstr;
using msxml::Check;
using msxml::ComPtr;

namespace {

constexpr std::size_t kQuotedTextLength = 64;

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
    IXMLDOMElement* element = RequireElement(node_);
    const Bstr attributeName(name);
    msxml::Variant value;
    Check(element->getAttribute(attributeName.Get(), value.Out()), "The attribute could not be read.");
    if (V_VT(&value.Get()) != VT_BSTR) {
        return std::nullopt;
    }
    return msxml::ToUtf8(V_BSTR(&value.Get()));
}

bool Element::HasAttribute(std::string_view name) const { return GetAttribute(name).has_value(); }

void Element::SetAttribute(std::string_view name, std::string_view value) {
    IXMLDOMElement* element = RequireElement(node_);
    name = DocumentText(name);
    value = DocumentText(value);
    if (!IsXmlName(name)) {
        RaiseDomError("This name is not a valid XML name.");
    }
    // Checked here, before MSXML sees it, so that every MSXML refuses it
    // alike (Wine's accepts it).
    if (name.substr(0, 6) == "xmlns:") {
        const std::optional<std::string> existing = GetAttribute(name);
        if (existing && RebindsOwnPrefix(Name(), name, *existing, value)) {
            throw Error(ErrDomInvalidArgument, kDomErrorSource, kPrefixRebound);
        }
    }
    const Bstr attributeName(name);
    const Bstr text(value);
    VARIANT v;
    VariantInit(&v);
    V_VT(&v) = VT_BSTR;
    V_BSTR(&v) = text.Get();
    Check(element->setAttribute(attributeName.Get(), v), "The attribute could not be set.");
}

void Element::RemoveAttribute(std::string_view name) {
    IXMLDOMElement* element = RequireElement(node_);
    const Bstr attributeName(name);
    Check(element->removeAttribute(attributeName.Get()), "The attribute could not be removed.");
}

std::int32_t Element::AttributeCount() const {
    IXMLDOMElement* element = RequireElement(node_);
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    Check(element->get_attributes(attributes.Out()), "The attributes could not be read.");
    long length = 0;
    Check(attributes->get_length(&length), "The attributes could not be counted.");
    return static_cast<std::int32_t>(length);
}

void Element::SetBase64Value(std::span<const std::uint8_t> bytes) {
    IXMLDOMElement* element = RequireElement(node_);
    const Bstr text(EncodeBase64Text(bytes));
    Check(element->put_text(text.Get()), "The value could not be set.");
}

std::vector<std::uint8_t> Element::GetBase64Value() const {
    IXMLDOMElement* element = RequireElement(node_);
    Bstr textValue;
    Check(element->get_text(textValue.Out()), "The value could not be read.");
    const std::string text = textValue.Utf8();
    std::optional<std::vector<std::uint8_t>> bytes = DecodeBase64Text(text);
    if (!bytes) {
        const std::string description =
            "Error parsing '" + std::string(LeadingCharacters(text, kQuotedTextLength)) + "' as bin.base64 datatype.";
        throw Error(ErrXmlDom, kDomErrorSource, description);
    }
    return std::move(*bytes);
}

}  // namespace quillbank::xml
