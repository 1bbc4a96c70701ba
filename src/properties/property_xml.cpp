// The element forms of one property: one element per property whose name
// says the type, optionally wrapped as base64 inside an "encProp" element.

#include <string>
#include <string_view>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "frame/raise.hpp"
#include "properties/nesting.hpp"
#include "properties/persisted_property.hpp"
#include "support/ansi.hpp"
#include "support/base64_coders.hpp"
#include "support/color.hpp"
#include "support/conversions.hpp"
#include "support/sort.hpp"
#include "support/text.hpp"

namespace quillbank {

namespace {

// The element name of each property type's plain form; null for ptNone and
// anything out of range.
const char* PlainElementName(PropertyTypes type) {
    switch (type) {
        case ptBoolean: return "boolProp";
        case ptLong: return "intProp";
        case ptDouble: return "floatProp";
        case ptString: return "stringProp";
        case ptDate: return "dateProp";
        case ptColor: return "colorProp";
        case ptFont: return "fontProp";
        case ptRectangle: return "rectProp";
        case ptAsset: return "assetProp";
        case ptLocation: return "locationProp";
        case ptPPC: return "ppcProp";
        case ptCEC: return "cecProp";
        default: return nullptr;
    }
}

// Multi-line texts are stored with bare line feeds and held with CR LF.
std::string ToStoredLines(std::string_view text) { return support::ReplaceAll(text, "\r\n", "\n"); }

// Every LF becomes CR LF, without doubling a CR LF that was there already.
std::string FromStoredLines(std::string&& text) {
    std::size_t lineFeed = text.find('\n');
    if (lineFeed == std::string::npos) {
        return std::move(text);
    }
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    out.append(text, 0, lineFeed);
    for (std::size_t i = lineFeed; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) {
            out.push_back('\r');
        }
        out.push_back(text[i]);
    }
    return out;
}

// The first child element with exactly this name (letter case included), or null.
xml::Element FirstChildElementNamed(const xml::Element& parent, std::string_view name) {
    for (xml::Node child = parent.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsElement() && child.Name() == name) {
            return child.AsElement();
        }
    }
    return {};
}

void AppendTextChild(xml::Element& parent, const char* name, std::string_view text) {
    xml::Document document = parent.OwnerDocument();
    xml::Element child = document.CreateElement(name);
    child.SetText(ToStoredLines(text));
    parent.AppendChild(child);
}

}  // namespace

std::string FirstTextValue(const xml::Node& Element) {
    if (!Element || !Element.IsElement()) {
        return {};
    }
    for (xml::Node child = Element.FirstChild(); child; child = child.NextSibling()) {
        if (child.Type() == xml::NodeType::Text) {
            return child.Value();
        }
    }
    return {};
}

xml::Element PersistedProperty::CreatePropertyElement(xml::Document& Document, const char* ElementName) const {
    xml::Element element = Document.CreateElement(ElementName);
    element.SetAttribute("name", name_);
    return element;
}

xml::Element PersistedProperty::WritePlainElement(xml::Document& Document) const {
    const char* elementName = PlainElementName(property_type_);
    if (elementName == nullptr) {
        return {};
    }
    xml::Element element = CreatePropertyElement(Document, elementName);
    switch (property_type_) {
        case ptBoolean:
            element.SetAttribute("value", support::BoolToText(boolean_));
            break;
        case ptLong:
            element.SetAttribute("value", support::LongToText(long_));
            break;
        case ptDouble:
            element.SetAttribute("value", support::DoubleToText(double_));
            break;
        case ptString:
            // An empty string leaves the element without children.
            if (!string_.empty()) {
                element.SetText(ToStoredLines(string_));
            }
            break;
        case ptDate:
            element.SetAttribute("value", support::DateToText(date_));
            break;
        case ptColor:
            element.SetAttribute("value", support::OLEColorToHTML(color_));
            break;
        case ptFont:
            element.SetAttribute("familyName", font_.Get().Name);
            element.SetAttribute("emSize", support::DoubleToText(font_.Get().Size));
            element.SetAttribute("bold", support::TypedBoolToText(font_.Get().Bold));
            element.SetAttribute("italic", support::TypedBoolToText(font_.Get().Italic));
            element.SetAttribute("underline", support::TypedBoolToText(font_.Get().Underline));
            break;
        case ptRectangle:
            element.SetAttribute("left", support::LongToText(rectangle_.Left));
            element.SetAttribute("top", support::LongToText(rectangle_.Top));
            element.SetAttribute("width", support::LongToText(rectangle_.Width));
            element.SetAttribute("height", support::LongToText(rectangle_.Height));
            break;
        case ptAsset:
            element.SetAttribute("filename", asset_.Get().Filename);
            // A blank description or source (spaces, tabs, line breaks) is not written.
            if (!support::IsBlankText(asset_.Get().Description)) {
                AppendTextChild(element, "description", asset_.Get().Description);
            }
            if (!support::IsBlankText(asset_.Get().Source)) {
                AppendTextChild(element, "source", asset_.Get().Source);
            }
            break;
        case ptLocation:
            element.SetAttribute("from", location_.Get().StartPoint);
            if (!location_.Get().EndPoint.empty()) {
                element.SetAttribute("to", location_.Get().EndPoint);
            }
            if (!location_.Get().MapName.empty()) {
                element.SetAttribute("map", location_.Get().MapName);
            }
            break;
        case ptPPC: {
            const properties::NestingLevel level;
            level.Require("PersistedPropertyCollection.ToXMLElement");
            if (const auto& ppc = ppc_.Get(); ppc && ppc->Count() > 0) {
                element.AppendChild(ppc->ToXMLElement(Document));
            }
            break;
        }
        case ptCEC: {
            const properties::NestingLevel level;
            level.Require("ChildElementCollection.ToXMLElement");
            if (const auto& cec = cec_.Get(); cec && cec->Count() > 0) {
                element.AppendChild(cec->ToXMLElement(Document));
            }
            break;
        }
        default:
            break;
    }
    return element;
}

xml::Element PersistedProperty::ToXMLElement(const xml::Document& Document) {
    try {
        xml::Document document = Document ? Document : xml::Document::Create();
        document.SetPreserveWhiteSpace(true);
        if (property_type_ == ptNone) {
            return {};
        }
        if (encoding_type_ == etNotEncoded) {
            return WritePlainElement(document);
        }
        if (encoding_type_ != etBase64Encoded) {
            return {};
        }
        xml::Element encoded = document.CreateElement("encProp");
        // The plain element is written into a document of its own, and only
        // its text travels inside the wrapper.
        xml::Document scratch = xml::Document::Create();
        xml::Element plain = WritePlainElement(scratch);
        if (!plain) {
            return {};
        }
        const std::string plainText = plain.Xml();
        // Only strings take the UTF-8 path, judged on the whole element text
        // (name included). Every other type goes through the ANSI code page,
        // where characters it cannot hold are lost on purpose.
        if (property_type_ == ptString && support::IsUnicodeString(plainText)) {
            encoded.SetText(support::EncodeBase64Utf8(plainText));
            encoded.SetAttribute("enctype", "utf8");
        } else {
            encoded.SetText(support::EncodeBase64(plainText));
        }
        return encoded;
    } catch (const Error& error) {
        // Nesting past the limit (or a bag that contains itself) is not
        // trapped: it fails the whole write instead of silently leaving out
        // what lies deeper.
        if (error.Number() == ErrOutOfStackSpace) {
            throw;
        }
        return {};
    } catch (...) {
        // Any other failure means this property has no element.
        return {};
    }
}

xml::Element PersistedProperty::ToClearXMLElement(const xml::Document& Document) {
    // The encoding is put back also when the write raises.
    struct Restore {
        PersistedProperty& property;
        EncodingTypes remembered;
        ~Restore() { property.encoding_type_ = remembered; }
    } restore{*this, encoding_type_};
    encoding_type_ = etNotEncoded;
    return ToXMLElement(Document);
}

void PersistedProperty::FromXMLElement(const xml::Element& Element) {
    try {
        ReadElement(Element);
    } catch (...) {
        // Whatever could not be read leaves the property untyped; the fields
        // read before the failure keep their values.
        property_type_ = ptNone;
    }
}

void PersistedProperty::ReadElement(const xml::Element& Element) {
    if (!Element) {
        property_type_ = ptNone;
        return;
    }
    xml::Element element = Element;
    std::string elementName = element.Name();
    support::FoldToLowerCase(elementName);
    if (elementName == "encprop") {
        encoding_type_ = etBase64Encoded;
        const std::string encType = support::VariantToText(element.GetAttribute("enctype"), "");
        const std::string encodedText = element.Text();
        const std::string decoded =
            encType == "utf8" ? support::DecodeBase64Utf8(encodedText) : support::DecodeBase64(encodedText);
        // The decoded text is a document of its own; its parse may borrow the
        // storage of the element's document.
        element = element.OwnerDocument().ParseRootElement(decoded);
        if (!element) {
            frame::Raise(ErrXmlForm, frame::kLibraryName, frame::kCorruptEncodedProperty);
        }
        elementName = element.Name();
        support::FoldToLowerCase(elementName);
    } else {
        encoding_type_ = etNotEncoded;
    }

    name_ = support::VariantToText(element.GetAttribute("name"), "");

    if (elementName == "boolprop") {
        property_type_ = ptBoolean;
        boolean_ = support::VariantToBool(element.GetAttribute("value"), false);
    } else if (elementName == "intprop") {
        property_type_ = ptLong;
        long_ = support::VariantToLong(element.GetAttribute("value"), 0);
    } else if (elementName == "floatprop") {
        property_type_ = ptDouble;
        double_ = support::VariantToDouble(element.GetAttribute("value"), 0.0);
    } else if (elementName == "stringprop") {
        property_type_ = ptString;
        string_ = FromStoredLines(FirstTextValue(element));
    } else if (elementName == "dateprop") {
        property_type_ = ptDate;
        const auto value = element.GetAttribute("value");
        const auto date = value ? support::TextToDate(*value) : std::nullopt;
        date_ = date.value_or(0.0);
    } else if (elementName == "colorprop") {
        property_type_ = ptColor;
        color_ = support::HTMLToOLEColor(support::VariantToText(element.GetAttribute("value"), ""));
    } else if (elementName == "fontprop") {
        property_type_ = ptFont;
        FontData& font = font_.Set();
        // A missing face name reads as "Courier New".
        font.Name = support::VariantToText(element.GetAttribute("familyName"), "Courier New");
        font.Size = support::VariantToDouble(element.GetAttribute("emSize"), 0.0);
        font.Bold = support::VariantToBool(element.GetAttribute("bold"), false);
        font.Italic = support::VariantToBool(element.GetAttribute("italic"), false);
        font.Underline = support::VariantToBool(element.GetAttribute("underline"), false);
    } else if (elementName == "rectprop") {
        property_type_ = ptRectangle;
        rectangle_.Left = support::VariantToLong(element.GetAttribute("left"), 0);
        rectangle_.Top = support::VariantToLong(element.GetAttribute("top"), 0);
        rectangle_.Width = support::VariantToLong(element.GetAttribute("width"), 0);
        rectangle_.Height = support::VariantToLong(element.GetAttribute("height"), 0);
    } else if (elementName == "assetprop") {
        property_type_ = ptAsset;
        AssetData& asset = asset_.Set();
        asset.Filename = support::VariantToText(element.GetAttribute("filename"), "");
        // A text whose child is absent keeps the value it had.
        if (element.HasChildNodes()) {
            if (xml::Element source = FirstChildElementNamed(element, "source")) {
                asset.Source = FromStoredLines(source.Text());
            }
            if (xml::Element description = FirstChildElementNamed(element, "description")) {
                asset.Description = FromStoredLines(description.Text());
            }
        }
    } else if (elementName == "locationprop") {
        property_type_ = ptLocation;
        LocationData& location = location_.Set();
        // Read as written: the start-filling of the setter does not apply here.
        location.StartPoint = support::VariantToText(element.GetAttribute("from"), "");
        location.EndPoint = support::VariantToText(element.GetAttribute("to"), "");
        location.MapName = support::VariantToText(element.GetAttribute("map"), "");
    } else if (elementName == "ppcprop") {
        // A bag nested past the limit is not read: the property stays untyped.
        const properties::NestingLevel level;
        if (!level.Entered()) {
            property_type_ = ptNone;
            return;
        }
        property_type_ = ptPPC;
        // Without a "ppc" child the value is an empty bag, not null.
        auto& ppc = ppc_.Set();
        ppc = PersistedPropertyCollection::Create();
        for (xml::Node child = element.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsElement() && child.Name() == "ppc") {
                ppc->FromXMLElement(child.AsElement());
            }
        }
    } else if (elementName == "cecprop") {
        const properties::NestingLevel level;
        if (!level.Entered()) {
            property_type_ = ptNone;
            return;
        }
        property_type_ = ptCEC;
        auto& cec = cec_.Set();
        cec = ChildElementCollection::Create();
        for (xml::Node child = element.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsElement() && child.Name() == "cec") {
                cec->FromXMLElement(child.AsElement());
            }
        }
    } else {
        property_type_ = ptNone;
    }
}

}  // namespace quillbank
