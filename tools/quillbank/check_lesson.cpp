// The part of `check` that looks at the lesson as the library reads it.

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string>

#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "bag_walk.hpp"
#include "check_findings.hpp"
#include "map_items.hpp"
#include "property_path.hpp"

namespace quillbank::tool {

namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

void CheckMaps(const Lesson& lesson, Findings& findings) {
    auto maps = lesson.Maps();
    auto storyboards = lesson.Storyboards();
    std::set<std::string> names;
    for (std::int32_t i = 0; i < maps->Count(); ++i) {
        auto map = maps->ItemAt(i);
        auto name = MapName(*map);
        std::string place = name ? MapPlace(*name) : "map " + std::to_string(i + 1);
        if (!name || name->empty()) {
            findings.Add("M04", place, name ? "the map's name is empty" : "the map element has no \"name\"");
        } else if (!names.insert(*name).second) {
            findings.Add("M05", place, "another map before it has the same name; lookups by name find only that one");
        }
        auto items = MapItems(*map);
        if (items.empty()) {
            findings.Add("M07", place, "the map has no items");
        }
        std::set<std::string> seen;
        for (std::size_t at = 0; at < items.size(); ++at) {
            const MapItem& item = items[at];
            std::string itemPlace = place + " / item " + ItemPosition(items, at);
            if (item.sbid.empty()) {
                findings.Add("M02", itemPlace, "the item names no storyboard");
                continue;
            }
            if (!seen.insert(item.sbid).second) {
                findings.Add("M03", itemPlace, "the storyboard " + item.sbid + " stands in this map before");
            }
            auto storyboard = storyboards->Item(item.sbid);
            if (!storyboard) {
                findings.Add("M01", itemPlace, "the item names the storyboard " + item.sbid + ", which the lesson lacks");
            } else if (storyboard->SBID() != item.sbid) {
                findings.Add("M08", itemPlace,
                             "the item names " + item.sbid + " but the storyboard is " + storyboard->SBID() +
                                 "; maps compare identifiers with letter case");
            }
        }
    }
}

void CheckStoryboards(const Lesson& lesson, const std::set<std::string>& fileSbids, Findings& findings) {
    auto maps = lesson.Maps();
    auto storyboards = lesson.Storyboards();
    if (storyboards->Count() > 0 && maps->Count() == 0) {
        findings.Add("M09", "maps",
                     "the lesson has " + std::to_string(storyboards->Count()) +
                         (storyboards->Count() == 1 ? " storyboard" : " storyboards") + " but no map to reach them");
    }
    std::map<std::string, std::string> identifiers;  // host identifier -> first storyboard
    for (const auto& storyboard : *storyboards) {
        const std::string sbid = storyboard->SBID();
        const std::string place = StoryboardPlace(sbid);
        if (fileSbids.count(Lower(sbid)) == 0) {
            continue;
        }
        if (storyboard->Title().empty()) {
            findings.Add("S03", place, "the storyboard's title is empty");
        }
        if (!storyboard->Identifier().empty()) {
            auto [first, added] = identifiers.emplace(storyboard->Identifier(), sbid);
            if (!added) {
                findings.Add("S05", place,
                             "the identifier " + Quoted(storyboard->Identifier()) + " is also the storyboard " +
                                 first->second + "'s");
            }
        }
        if (maps->Count() == 0) {
            continue;
        }
        bool inMap = false;
        for (std::int32_t i = 0; i < maps->Count() && !inMap; ++i) {
            inMap = maps->ItemAt(i)->Contains(sbid);
        }
        if (!inMap) {
            findings.Add("S01", place, "the storyboard " + Quoted(storyboard->Title()) + " is in no map");
        }
    }
}

void CheckProperties(const Lesson& lesson, Findings& findings) {
    auto storyboards = lesson.Storyboards();
    auto maps = lesson.Maps();
    for (const auto& placed : LessonBags(lesson)) {
        WalkBag(*placed.bag, placed.path, 0, {[&](const PropertyVisit& visit) {
                    if (visit.type == ptAsset) {
                        if (visit.bag.GetAsset(visit.name, {}).Filename.empty()) {
                            findings.Add("P06", visit.Path(), "the asset names no file");
                        }
                        return;
                    }
                    if (visit.type != ptLocation) {
                        return;
                    }
                    LocationData location = visit.bag.GetLocation(visit.name, {});
                    for (const auto* point : {&location.StartPoint, &location.EndPoint}) {
                        if (!point->empty() && !storyboards->Contains(*point)) {
                            findings.Add("P01", visit.Path(),
                                         std::string(point == &location.StartPoint ? "the start" : "the end") +
                                             " names the storyboard " + *point + ", which the lesson lacks");
                        }
                    }
                    if (!location.MapName.empty() && !FindMap(lesson, location.MapName)) {
                        findings.Add("P02", visit.Path(),
                                     "the location names the map " + Quoted(location.MapName) + ", which the lesson lacks");
                    }
                },
                {}});
    }
}

}  // namespace

void CheckLesson(const Lesson& lesson, const std::set<std::string>& fileSbids, Findings& findings) {
    if (lesson.Title().empty()) {
        findings.Add("L01", "lesson", "the lesson's title is empty");
    }
    CheckMaps(lesson, findings);
    CheckStoryboards(lesson, fileSbids, findings);
    CheckProperties(lesson, findings);
}

}  // namespace quillbank::tool
