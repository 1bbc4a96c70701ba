#include "json_report.hpp"

#include <quillbank/child_element_collection.hpp>

#include "property_text.hpp"

namespace quillbank::tool {

Json ReportHeader(std::string_view command, std::string_view file) {
    Json document;
    document["quillbank"] = kReportVersion;
    document["command"] = command;
    document["file"] = file;
    return document;
}

std::string JsonLine(const Json& document) {
    return document.dump(-1, ' ', false, nlohmann::detail::error_handler_t::replace) + "\n";
}

std::string JsonFailureLine(std::string_view command, const std::string& file, const std::string& message) {
    Json document = ReportHeader(command, file);
    document["error"] = message;
    return JsonLine(document);
}

std::function<std::string(const std::string&, const std::string&)> JsonFailure(std::string command) {
    return [command = std::move(command)](const std::string& file, const std::string& message) {
        return JsonFailureLine(command, file, message);
    };
}

Json ValueJson(const PersistedPropertyCollection& bag, const std::string& name) {
    Variant value = bag.GetValue(name);
    switch (bag.GetPropertyType(name)) {
    case ptBoolean: return value.AsBoolean();
    case ptLong: return value.AsLong();
    case ptDouble: return value.AsDouble();
    case ptString: return value.AsString();
    case ptDate:
    case ptColor: return ValueText(bag, name);
    case ptFont: {
        const FontData& font = value.AsFont();
        return Json{{"name", font.Name}, {"size", font.Size}, {"bold", font.Bold}, {"italic", font.Italic},
                    {"underline", font.Underline}};
    }
    case ptRectangle: {
        const Rectangle& r = value.AsRectangle();
        return Json{{"left", r.Left}, {"top", r.Top}, {"width", r.Width}, {"height", r.Height}};
    }
    case ptAsset: {
        const AssetData& asset = value.AsAsset();
        return Json{{"filename", asset.Filename}, {"description", asset.Description}, {"source", asset.Source}};
    }
    case ptLocation: {
        const LocationData& location = value.AsLocation();
        return Json{{"from", location.StartPoint}, {"to", location.EndPoint}, {"map", location.MapName}};
    }
    case ptPPC: {
        auto nested = value.AsPPC();
        return Json{{"count", nested ? nested->Count() : 0}};
    }
    case ptCEC: {
        auto nested = value.AsCEC();
        return Json{{"count", nested ? nested->Count() : 0}};
    }
    case ptNone: break;
    }
    return nullptr;
}

}  // namespace quillbank::tool
