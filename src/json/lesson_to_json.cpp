// Writing a lesson as JSON: a JSON document is built through the public API
// of the model, then serialised by nlohmann-json.

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "frame/raise.hpp"
#include "json/json_form.hpp"
#include "properties/nesting.hpp"

namespace quillbank {

namespace {

// Objects keep their keys in the order written, so that the text reads in the
// order of the form.
using json = nlohmann::ordered_json;

constexpr const char* kSource = "Lesson.ToJSON";

json Number(double value) {
    if (std::isnan(value)) {
        return json_form::kNotANumber;
    }
    if (std::isinf(value)) {
        return value > 0 ? json_form::kInfinity : json_form::kMinusInfinity;
    }
    return value;
}

json WriteBag(const PersistedPropertyCollection& bag, int level);
json WriteList(const ChildElementCollection& list, int level);

void CheckLevel(int level) {
    // A bag or list that holds itself would nest without end; the writers of
    // XML refuse the same depth with the same error.
    if (level > properties::kMaxNesting) {
        frame::Raise(ErrOutOfStackSpace, kSource, frame::kOutOfStackSpace);
    }
}

json WriteValue(const PersistedPropertyCollection& bag, const std::string& name, PropertyTypes type, int level) {
    switch (type) {
        case ptBoolean:
            return bag.GetBoolean(name, false);
        case ptLong:
            return bag.GetLong(name, 0);
        case ptDouble:
            return Number(bag.GetDouble(name, 0.0));
        case ptString:
            return bag.GetString(name, "");
        case ptDate:
            return Number(bag.GetDate(name, 0.0));
        case ptColor:
            return bag.GetColor(name, 0);
        case ptFont: {
            const FontData font = bag.GetFont(name, FontData{});
            return json{{"name", font.Name},
                        {"size", Number(font.Size)},
                        {"bold", font.Bold},
                        {"italic", font.Italic},
                        {"underline", font.Underline}};
        }
        case ptRectangle: {
            const Rectangle rectangle = bag.GetRectangle(name, Rectangle{});
            return json{{"left", rectangle.Left},
                        {"top", rectangle.Top},
                        {"width", rectangle.Width},
                        {"height", rectangle.Height}};
        }
        case ptAsset: {
            const AssetData asset = bag.GetAsset(name, AssetData{});
            return json{{"filename", asset.Filename}, {"description", asset.Description}, {"source", asset.Source}};
        }
        case ptLocation: {
            const LocationData location = bag.GetLocation(name, LocationData{});
            return json{{"start_point", location.StartPoint},
                        {"end_point", location.EndPoint},
                        {"map_name", location.MapName}};
        }
        case ptPPC: {
            const auto inner = bag.GetPPC(name, nullptr);
            return inner ? WriteBag(*inner, level + 1) : json(nullptr);
        }
        case ptCEC: {
            const auto inner = bag.GetCEC(name, nullptr);
            return inner ? WriteList(*inner, level + 1) : json(nullptr);
        }
        case ptNone:
            break;
    }
    return json(nullptr);
}

// The properties of a bag, in order.
json WriteProperties(const PersistedPropertyCollection& bag, int level) {
    CheckLevel(level);
    json properties = json::array();
    if (bag.Count() > 0) {
        for (const std::string& name : bag.GetPropertyNameArray()) {
            const PropertyTypes type = bag.GetPropertyType(name);
            if (type == ptNone) {
                continue;
            }
            const std::int32_t encoding = bag.GetEncodingType(name);
            json property = json::object();
            property["name"] = name;
            property["type"] = json_form::kTypeNames[static_cast<std::size_t>(type)];
            property["encoding"] = json_form::kEncodingNames[encoding == etBase64Encoded ? 1 : 0];
            property["value"] = WriteValue(bag, name, type, level);
            properties.push_back(std::move(property));
        }
    }
    return properties;
}

json WriteBag(const PersistedPropertyCollection& bag, int level) {
    return json{{"name", bag.Name()}, {"properties", WriteProperties(bag, level)}};
}

json WriteList(const ChildElementCollection& list, int level) {
    CheckLevel(level);
    json elements = json::array();
    const std::int32_t count = list.Count();
    for (std::int32_t i = 0; i < count; ++i) {
        const auto element = list.Item(i);
        const auto bag = element->PPCObject();
        elements.push_back(json{{"name", bag->Name()},
                                {"type", element->ElementType()},
                                {"properties", WriteProperties(*bag, level)}});
    }
    return json{{"name", list.Name()}, {"elements", std::move(elements)}};
}

// Whether the map element holds nothing but "item" elements with an "sbid"
// and nothing else, down to kMaxItemDepth; walked without recursion, since
// trees may be of any depth.
bool IsPlainTree(const xml::Element& map) {
    const std::int32_t own = map.HasAttribute("name") ? 1 : 0;
    if (map.AttributeCount() != own) {
        return false;
    }
    int depth = 0;
    xml::Node node = map.FirstChild();
    while (node) {
        if (node.Type() != xml::NodeType::Element || node.Name() != "item") {
            return false;
        }
        const xml::Element item = node.AsElement();
        if (item.AttributeCount() != 1 || !item.HasAttribute("sbid")) {
            return false;
        }
        if (xml::Node child = node.FirstChild()) {
            if (++depth > json_form::kMaxItemDepth) {
                return false;
            }
            node = child;
            continue;
        }
        while (node && !node.NextSibling()) {
            node = node.Parent();
            if (node == map) {
                return true;
            }
            --depth;
        }
        node = node.NextSibling();
    }
    return true;
}

// The items below `parent`, whose depth IsPlainTree has bounded.
json WriteItems(const xml::Node& parent) {
    json items = json::array();
    for (xml::Node node = parent.FirstChild(); node; node = node.NextSibling()) {
        json item = json::object();
        item["sbid"] = *node.AsElement().GetAttribute("sbid");
        if (node.HasChildNodes()) {
            item["items"] = WriteItems(node);
        }
        items.push_back(std::move(item));
    }
    return items;
}

json WriteMap(const LessonMap& map) {
    const xml::Element element = map.ToXMLElement();
    if (!IsPlainTree(element)) {
        return json{{"xml", element.Xml()}};
    }
    json written = json::object();
    const std::optional<std::string> name = element.GetAttribute("name");
    written["name"] = name ? json(*name) : json(nullptr);
    written["items"] = WriteItems(element);
    return written;
}

json WriteMaps(const LessonMapCollection& maps) {
    json list = json::array();
    const std::int32_t count = maps.Count();
    for (std::int32_t i = 0; i < count; ++i) {
        list.push_back(WriteMap(*maps.ItemAt(i)));
    }
    const auto defaultMap = maps.DefaultMap();
    return json{{"default", defaultMap ? json(maps.IndexOf(defaultMap)) : json(nullptr)}, {"maps", std::move(list)}};
}

json WriteStoryboards(const StoryboardCollection& storyboards) {
    json list = json::array();
    std::int32_t position = 0;
    for (const std::shared_ptr<Storyboard>& sb : storyboards) {
        json written = json::object();
        written["sbid"] = sb->SBID();
        written["title"] = sb->Title();
        written["identifier"] = sb->Identifier();
        written["type"] = sb->SBType();
        written["classification"] = sb->Classification();
        // The number the storyboard carries in the written XML: its position.
        written["shortid"] = position++;
        written["properties"] = WriteBag(*sb->Properties(), 0);
        written["children"] = WriteList(*sb->Children(), 0);
        list.push_back(std::move(written));
    }
    return list;
}

}  // namespace

std::string LessonToJSON(const Lesson& Lesson, std::int32_t Indent) {
    json written = json::object();
    written["version"] = kJsonFormVersion;
    written["lessonid"] = Lesson.LessonID();
    written["title"] = Lesson.Title();
    written["identifier"] = Lesson.Identifier();
    written["classification"] = Lesson.Classification();
    written["properties"] = WriteBag(*Lesson.Properties(), 0);
    written["maps"] = WriteMaps(*Lesson.Maps());
    written["storyboards"] = WriteStoryboards(*Lesson.Storyboards());
    try {
        return written.dump(Indent < 0 ? -1 : Indent);
    } catch (const json::type_error&) {
        // Only text that is not UTF-8 fails to serialise.
        frame::Raise(ErrJsonForm, kSource, "The lesson holds text that is not UTF-8.");
    }
}

}  // namespace quillbank
