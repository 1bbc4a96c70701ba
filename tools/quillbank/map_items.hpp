#pragma once

// The items of a lesson map, read through the map's own element.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map.hpp>

namespace quillbank::tool {

struct MapItem {
    std::string sbid;       // "" when the item has no "sbid" attribute
    bool hasSbid = false;
    int depth = 0;          // 0 for top-level items
    std::string position;   // "item 2.1": the second top-level item's first child (one-based)
    std::string parentSbid; // "" at the top level
    std::int32_t index = 0; // zero-based among its parent's items
};

// Every "item" element of the map, in document order (an item before its
// descendants).
std::vector<MapItem> MapItems(const LessonMap& map);

// The map's name, or nothing when its element has no "name" attribute.
std::optional<std::string> MapName(const LessonMap& map);
// The name for people: quoted, or "(no name)".
std::string MapLabel(const LessonMap& map);

// The first map named exactly `name`; null when none is. Unlike the
// collection's own lookup, a map without a name is passed over, not an error.
std::shared_ptr<LessonMap> FindMap(const Lesson& lesson, const std::string& name);

// The map `tree` shows when none is named: the default map, else the first.
std::shared_ptr<LessonMap> DefaultOrFirstMap(const Lesson& lesson);

}  // namespace quillbank::tool
