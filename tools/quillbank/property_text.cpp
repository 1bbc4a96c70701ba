#include "property_text.hpp"

#include <charconv>
#include <cstdio>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/xml.hpp>

#include "property_path.hpp"

namespace quillbank::tool {

namespace {

std::string DoubleText(double value) {
    char buffer[64];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

// The date exactly as a file holds it: the library writes the property and
// the "value" attribute is read back from its element.
std::string DateText(Date value) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetDate("d", value);
    auto document = xml::Document::Create();
    if (document.LoadXML(bag->ToXMLString())) {
        if (auto property = document.DocumentElement().FirstChild().AsElement()) {
            if (auto text = property.GetAttribute("value")) {
                return *text;
            }
        }
    }
    return DoubleText(value);
}

std::string ColorText(OleColor color) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%08X", static_cast<unsigned>(color));
    try {
        std::string html = Functions::OLEColorToHTMLColor(color);
        if ((color & 0x80000000u) != 0) {
            return std::string("system colour ") + hex + " (" + html + ")";
        }
        return html;
    } catch (const Error&) {
        return std::string("invalid colour ") + hex;
    }
}

std::string Plural(std::int32_t count, std::string_view one, std::string_view many) {
    return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

}  // namespace

std::string_view TypeName(PropertyTypes type) {
    switch (type) {
    case ptNone: return "none";
    case ptBoolean: return "boolean";
    case ptLong: return "long";
    case ptDouble: return "double";
    case ptString: return "string";
    case ptDate: return "date";
    case ptColor: return "color";
    case ptFont: return "font";
    case ptRectangle: return "rectangle";
    case ptAsset: return "asset";
    case ptLocation: return "location";
    case ptPPC: return "bag";
    case ptCEC: return "list";
    }
    return "unknown";
}

std::string_view EncodingLabel(std::int32_t encoding) {
    return encoding == etBase64Encoded ? "base64" : "plain";
}

std::string ValueText(const PersistedPropertyCollection& bag, std::string_view name) {
    Variant value = bag.GetValue(name);
    switch (bag.GetPropertyType(name)) {
    case ptBoolean:
        return value.AsBoolean() ? "true" : "false";
    case ptLong:
        return std::to_string(value.AsLong());
    case ptDouble:
        return DoubleText(value.AsDouble());
    case ptString:
        return Quoted(value.AsString());
    case ptDate:
        return DateText(value.AsDate());
    case ptColor:
        return ColorText(bag.GetColor(name, 0));
    case ptFont: {
        const FontData& font = value.AsFont();
        std::string text = Quoted(font.Name) + " " + DoubleText(font.Size) + "pt";
        if (font.Bold) text += " bold";
        if (font.Italic) text += " italic";
        if (font.Underline) text += " underline";
        return text;
    }
    case ptRectangle: {
        const Rectangle& r = value.AsRectangle();
        return "left " + std::to_string(r.Left) + ", top " + std::to_string(r.Top) + ", width " +
               std::to_string(r.Width) + ", height " + std::to_string(r.Height);
    }
    case ptAsset: {
        const AssetData& asset = value.AsAsset();
        std::string text = "file " + Quoted(asset.Filename);
        if (!asset.Description.empty()) text += ", description " + Quoted(asset.Description);
        if (!asset.Source.empty()) text += ", source " + Quoted(asset.Source);
        return text;
    }
    case ptLocation: {
        const LocationData& location = value.AsLocation();
        std::string text = "from " + (location.StartPoint.empty() ? std::string("\"\"") : location.StartPoint);
        if (!location.EndPoint.empty()) text += " to " + location.EndPoint;
        if (!location.MapName.empty()) text += " in map " + Quoted(location.MapName);
        return text;
    }
    case ptPPC: {
        auto nested = value.AsPPC();
        return nested ? Plural(nested->Count(), "property", "properties") : "no bag";
    }
    case ptCEC: {
        auto nested = value.AsCEC();
        return nested ? Plural(nested->Count(), "element", "elements") : "no list";
    }
    case ptNone:
        break;
    }
    return "";
}

}  // namespace quillbank::tool
