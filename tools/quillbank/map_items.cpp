#include "map_items.hpp"

#include <quillbank/error.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/xml.hpp>

#include "property_path.hpp"

namespace quillbank::tool {

std::vector<MapItem> MapItems(const LessonMap& map) {
    std::vector<MapItem> items;
    // One entry a level being walked: the next node to look at there, the
    // parent item and how many items that level has had.
    struct Level {
        xml::Node next;
        std::int64_t parent;
        std::int32_t count;
    };
    std::vector<Level> levels;
    levels.push_back({map.ToXMLElement().FirstChild(), -1, 0});
    while (!levels.empty()) {
        Level& level = levels.back();
        xml::Node node = level.next;
        if (!node) {
            levels.pop_back();
            continue;
        }
        level.next = node.NextSibling();
        xml::Element element = node.AsElement();
        if (!element || element.Name() != "item") {
            continue;
        }
        MapItem item;
        auto sbid = element.GetAttribute("sbid");
        item.hasSbid = sbid.has_value();
        item.sbid = sbid.value_or("");
        item.depth = static_cast<std::int64_t>(levels.size()) - 1;
        item.parent = level.parent;
        item.parentSbid = level.parent < 0 ? std::string() : items[static_cast<std::size_t>(level.parent)].sbid;
        item.index = level.count++;
        const auto self = static_cast<std::int64_t>(items.size());
        item.head = item.depth < kPositionHead ? self : items[static_cast<std::size_t>(level.parent)].head;
        items.push_back(std::move(item));
        levels.push_back({element.FirstChild(), self, 0});
    }
    return items;
}

namespace {

// The numbers from `at` up `count` levels, outermost first.
std::string Numbers(const std::vector<MapItem>& items, std::int64_t at, std::int64_t count) {
    std::vector<std::int32_t> numbers;
    for (std::int64_t i = at; i >= 0 && count > 0; i = items[static_cast<std::size_t>(i)].parent, --count) {
        numbers.push_back(items[static_cast<std::size_t>(i)].index + 1);
    }
    std::string text;
    for (auto n = numbers.rbegin(); n != numbers.rend(); ++n) {
        if (!text.empty()) {
            text += '.';
        }
        text += std::to_string(*n);
    }
    return text;
}

}  // namespace

std::string ItemPosition(const std::vector<MapItem>& items, std::size_t at) {
    const MapItem& item = items[at];
    if (item.depth < kPositionHead + kPositionTail) {
        return Numbers(items, static_cast<std::int64_t>(at), item.depth + 1);
    }
    return Numbers(items, item.head, kPositionHead) + ".…." +
           Numbers(items, static_cast<std::int64_t>(at), kPositionTail) + " (level " + std::to_string(item.depth + 1) +
           ")";
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
