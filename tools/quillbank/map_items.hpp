#pragma once

// The items of a lesson map, read through the map's own element.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map.hpp>

namespace quillbank::tool {

struct MapItem {
    std::string sbid;        // "" when the item has no "sbid" attribute
    bool hasSbid = false;
    std::int64_t depth = 0;  // 0 for top-level items
    std::string parentSbid;  // "" at the top level
    std::int32_t index = 0;  // zero-based among its parent's items
    std::int64_t parent = -1;  // the parent's place in the list, -1 at the top level
    std::int64_t head = -1;    // the ancestor (or the item) kPositionHead - 1 levels down from the top
};

// Every "item" element of the map, in document order (an item before its
// descendants). The walk is iterative and each item costs the same memory
// at any depth.
std::vector<MapItem> MapItems(const LessonMap& map);

// How many leading and trailing numbers a deep item's position shows.
inline constexpr std::int64_t kPositionHead = 4;
inline constexpr std::int64_t kPositionTail = 4;

// The item's position for people, one-based numbers joined by points: "2.1"
// is the first child of the second top-level item. An item deeper than
// kPositionHead + kPositionTail levels shows the first and last numbers
// only, with its level: "1.2.1.1.….3.1.1.1 (level 20000)". The cost does not
// grow with the depth.
std::string ItemPosition(const std::vector<MapItem>& items, std::size_t at);

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
