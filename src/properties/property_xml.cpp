// The element forms of one property: one element per property whose name
// says the type, optionally wrapped as base64 inside an "encProp" element.

#include <string>
#include <string_view>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "elements/element_writers.hpp"
#include "frame/raise.hpp"
#include "properties/nesting.hpp"
#include "properties/persisted_property.hpp"
#include "properties/property_bag.hpp"
#include "support/ansi.hpp"
#include "support/base64_coders.hpp"
#include "support/color.hpp"
#include "support/conversions.hpp"
#include "support/sort.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"

namespace quillbank {

namespace {

// The element name of each property type's plain form; empty for ptNone and
// anything out of range.
std::string_view PlainElementName(PropertyTypes type) {
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
        default: return {};
    }
}

// Multi-line texts are stored with bare line feeds and held with CR LF.
// Most texts hold no CR at all and are written as they are.
class StoredLines {
public:
    explicit StoredLines(std::string_view text) : view_(text) {
        if (text.find('\r') != std::string_view::npos) {
            copy_ = support::ReplaceAll(text, "\r\n", "\n");
            view_ = copy_;
        }
    }
    std::string_view View() const { return view_; }

private:
    std::string_view view_;
    std::string copy_;
};

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

void WriteTextChild(xml::Writer& writer, std::string_view name, std::string_view text) {
    writer.StartElement(name);
    writer.Text(StoredLines(text).View());
    writer.EndElement();
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

void PersistedProperty::WritePlain(xml::Writer& writer) const {
    writer.StartElement(PlainElementName(property_type_));
    writer.Attribute("name", name_);
    switch (property_type_) {
        case ptBoolean:
            writer.Attribute("value", support::BoolToText(boolean_));
            break;
        case ptLong:
            writer.Attribute("value", support::LongToText(long_));
            break;
        case ptDouble:
            writer.Attribute("value", support::DoubleToText(double_));
            break;
        case ptString:
            // An empty string leaves the element without children.
            writer.Text(StoredLines(string_).View());
            break;
        case ptDate:
            writer.Attribute("value", support::DateToText(date_));
            break;
        case ptColor:
            writer.Attribute("value", support::OLEColorToHTML(color_));
            break;
        case ptFont: {
            const FontData& font = font_.Get();
            writer.Attribute("familyName", font.Name);
            writer.Attribute("emSize", support::DoubleToText(font.Size));
            writer.Attribute("bold", support::TypedBoolToText(font.Bold));
            writer.Attribute("italic", support::TypedBoolToText(font.Italic));
            writer.Attribute("underline", support::TypedBoolToText(font.Underline));
            break;
        }
        case ptRectangle: {
            const Rectangle& rectangle = rectangle_.Get();
            writer.Attribute("left", support::LongToText(rectangle.Left));
            writer.Attribute("top", support::LongToText(rectangle.Top));
            writer.Attribute("width", support::LongToText(rectangle.Width));
            writer.Attribute("height", support::LongToText(rectangle.Height));
            break;
        }
        case ptAsset: {
            const AssetData& asset = asset_.Get();
            writer.Attribute("filename", asset.Filename);
            // A blank description or source (spaces, tabs, line breaks) is not written.
            if (!support::IsBlankText(asset.Description)) {
                WriteTextChild(writer, "description", asset.Description);
            }
            if (!support::IsBlankText(asset.Source)) {
                WriteTextChild(writer, "source", asset.Source);
            }
            break;
        }
        case ptLocation: {
            const LocationData& location = location_.Get();
            writer.Attribute("from", location.StartPoint);
            if (!location.EndPoint.empty()) {
                writer.Attribute("to", location.EndPoint);
            }
            if (!location.MapName.empty()) {
                writer.Attribute("map", location.MapName);
            }
            break;
        }
        case ptPPC: {
            const properties::NestingLevel level;
            level.Require("PersistedPropertyCollection.ToXMLElement");
            // A nested bag is written in its normal form, also in the clear form.
            if (const auto& ppc = ppc_.Get(); ppc && ppc->Count() > 0) {
                properties::WriteBag(*ppc, writer, false);
            }
            break;
        }
        case ptCEC: {
            const properties::NestingLevel level;
            level.Require("ChildElementCollection.ToXMLElement");
            if (const auto& cec = cec_.Get(); cec && cec->Count() > 0) {
                elements::WriteChildList(*cec, writer, false);
            }
            break;
        }
        default:
            break;
    }
    writer.EndElement();
}

std::string PersistedProperty::PlainElementText() const {
    // The plain element is written on its own, and only its text travels
    // inside the wrapper.
    if constexpr (xml::kWritesTextDirectly) {
        xml::TextWriter writer;
        WritePlain(writer);
        return writer.TakeText();
    } else {
        xml::DomWriter writer(xml::Document::Create());
        WritePlain(writer);
        return writer.Result().Xml();
    }
}

bool PersistedProperty::WriteTo(xml::Writer& writer, bool clear) {
    const EncodingTypes encoding = clear ? etNotEncoded : encoding_type_;
    if (PlainElementName(property_type_).empty() || (encoding != etNotEncoded && encoding != etBase64Encoded)) {
        return false;
    }
    const xml::Writer::Mark mark = writer.Save();
    try {
        if (encoding == etNotEncoded) {
            WritePlain(writer);
            return true;
        }
        const std::string plainText = PlainElementText();
        // Only strings take the UTF-8 path, judged on the whole element text
        // (name included). Every other type goes through the ANSI code page,
        // where characters it cannot hold are lost on purpose.
        const bool utf8 = property_type_ == ptString && support::IsUnicodeString(plainText);
        const std::string encoded = utf8 ? support::EncodeBase64Utf8(plainText) : support::EncodeBase64(plainText);
        writer.StartElement("encProp");
        if (utf8) {
            writer.Attribute("enctype", "utf8");
        }
        writer.Text(encoded);
        writer.EndElement();
        return true;
    } catch (const Error& error) {
        // Nesting past the limit (or a bag that contains itself) is not
        // trapped: it fails the whole write instead of silently leaving out
        // what lies deeper.
        if (error.Number() == ErrOutOfStackSpace) {
            throw;
        }
    } catch (...) {
        // Any other failure means this property has no element.
    }
    writer.Restore(mark);
    return false;
}

xml::Element PersistedProperty::ToXMLElement(const xml::Document& Document) { return WriteElement(Document, false); }

xml::Element PersistedProperty::ToClearXMLElement(const xml::Document& Document) {
    return WriteElement(Document, true);
}

xml::Element PersistedProperty::WriteElement(const xml::Document& Document, bool clear) {
    try {
        // Nothing written leaves the writer without a result: a null element.
        return xml::WriteElementIn(Document ? Document : xml::Document::Create(),
                                   [&](xml::Writer& writer) { WriteTo(writer, clear); });
    } catch (const Error& error) {
        // Only nesting past the limit gets out of WriteTo, and it is not
        // trapped here either; a document that cannot be used means no element.
        if (error.Number() == ErrOutOfStackSpace) {
            throw;
        }
        return {};
    } catch (...) {
        return {};
    }
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
        Rectangle& rectangle = rectangle_.Set();
        rectangle.Left = support::VariantToLong(element.GetAttribute("left"), 0);
        rectangle.Top = support::VariantToLong(element.GetAttribute("top"), 0);
        rectangle.Width = support::VariantToLong(element.GetAttribute("width"), 0);
        rectangle.Height = support::VariantToLong(element.GetAttribute("height"), 0);
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
