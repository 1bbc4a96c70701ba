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
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"
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
    return detail::ModelReader::FirstTextValue(detail::reading::ElementCursor(Element));
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
    xml::TextWriter writer;
    WritePlain(writer);
    return writer.TakeText();
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
    detail::ModelReader::ReadProperty(*this, detail::reading::ElementCursor(Element));
}

}  // namespace quillbank
