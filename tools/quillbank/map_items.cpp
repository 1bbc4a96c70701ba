#include "map_items.hpp"

#include <quillbank/error.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/xml.hpp>

#include "property_path.hpp"

namespace quillbank::tool {

namespace {

void Collect(const xml::Node& parent, int depth, const std::string& prefix, const std::string& parentSbid,
             std::vector<MapItem>& items) {
    std::int32_t index = 0;
    for (xml::Node node = parent.FirstChild(); node; node = node.NextSibling()) {
        xml::Element element = node.AsElement();
        if (!element || element.Name() != "item") {
            continue;
        }
        MapItem item;
        auto sbid = element.GetAttribute("sbid");
        item.hasSbid = sbid.has_value();
        item.sbid = sbid.value_or("");
        item.depth = depth;
        item.position = prefix + std::to_string(index + 1);
        item.parentSbid = parentSbid;
        item.index = index;
        items.push_back(item);
        Collect(element, depth + 1, item.position + ".", item.sbid, items);
        ++index;
    }
}

}  // namespace

std::vector<MapItem> MapItems(const LessonMap& map) {
    std::vector<MapItem> items;
    Collect(map.ToXMLElement(), 0, "", "", items);
    return items;
}

std::optional<std::string> MapName(const LessonMap& map) {
    try {
        return map.Name();
    } catch (const Error&) {
        return std::nullopt;
    }
}

std::string MapLabel(const LessonMap& map) {
    auto name = MapName(map);
    return name ? Quoted(*name) : std::string("(no name)");
}

std::shared_ptr<LessonMap> FindMap(const Lesson& lesson, const std::string& name) {
    auto maps = lesson.Maps();
    for (std::int32_t i = 0; i < maps->Count(); ++i) {
        auto map = maps->ItemAt(i);
        if (MapName(*map) == name) {
            return map;
        }
    }
    return nullptr;
}

std::shared_ptr<LessonMap> DefaultOrFirstMap(const Lesson& lesson) {
    auto maps = lesson.Maps();
    if (auto map = maps->DefaultMap()) {
        return map;
    }
    return maps->ItemAt(0);
}

}  // namespace quillbank::tool
