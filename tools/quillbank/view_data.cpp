#include "view_data.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include "bag_walk.hpp"
#include "map_items.hpp"
#include "property_path.hpp"

namespace quillbank::tool {

namespace {

class ViewDataBuilder {
public:
    explicit ViewDataBuilder(const Lesson& lesson) : storyboards_(lesson.Storyboards()) {
        std::int64_t index = 0;
        for (const auto& storyboard : *storyboards_) {
            places_[storyboard.get()] = index++;
        }
    }

    // The storyboard's place, or the identifier as given when the lesson
    // lacks it ("" stays "").
    Json Ref(const std::string& sbid) const {
        if (sbid.empty()) {
            return sbid;
        }
        if (auto place = Place(sbid)) {
            return *place;
        }
        return sbid;
    }

    std::optional<std::int64_t> Place(const std::string& sbid) const {
        auto storyboard = storyboards_->Item(sbid);
        if (!storyboard) {
            return std::nullopt;
        }
        auto found = places_.find(storyboard.get());
        return found == places_.end() ? std::nullopt : std::optional<std::int64_t>(found->second);
    }

    Json Bag(const PersistedPropertyCollection& bag) const {
        Json list = Json::array();
        for (const auto& name : SortedNames(bag)) {
            Json entry = Json::array({name, static_cast<int>(bag.GetPropertyType(name)), Value(bag, name)});
            if (bag.GetEncodingType(name) == etBase64Encoded) {
                entry.push_back(1);
            }
            list.push_back(std::move(entry));
        }
        return list;
    }

    Json Elements(const ChildElementCollection& elements) const {
        Json list = Json::array();
        for (std::int32_t i = 0; i < elements.Count(); ++i) {
            auto element = elements.Item(i);
            auto bag = element->PPCObject();
            list.push_back(Json::array({element->Name(), element->ElementType(), bag ? Bag(*bag) : Json::array()}));
        }
        return list;
    }

private:
    Json Value(const PersistedPropertyCollection& bag, const std::string& name) const {
        Variant value = bag.GetValue(name);
        switch (bag.GetPropertyType(name)) {
        case ptFont: {
            const FontData& font = value.AsFont();
            const int style = (font.Bold ? 1 : 0) | (font.Italic ? 2 : 0) | (font.Underline ? 4 : 0);
            return Json::array({font.Name, font.Size, style});
        }
        case ptRectangle: {
            const Rectangle& r = value.AsRectangle();
            return Json::array({r.Left, r.Top, r.Width, r.Height});
        }
        case ptAsset: {
            const AssetData& asset = value.AsAsset();
            return Json::array({asset.Filename, asset.Description, asset.Source});
        }
        case ptLocation: {
            const LocationData& location = value.AsLocation();
            return Json::array({Ref(location.StartPoint), Ref(location.EndPoint), location.MapName});
        }
        case ptPPC: {
            auto nested = value.AsPPC();
            return nested ? Bag(*nested) : Json::array();
        }
        case ptCEC: {
            auto nested = value.AsCEC();
            return nested ? Elements(*nested) : Json::array();
        }
        default:
            return ValueJson(bag, name);
        }
    }

    std::shared_ptr<StoryboardCollection> storyboards_;
    std::unordered_map<const Storyboard*, std::int64_t> places_;
};

// The part of a place before its first " / ".
std::string_view Head(std::string_view place) {
    auto cut = place.find(" / ");
    return cut == std::string_view::npos ? place : place.substr(0, cut);
}

}  // namespace

Json ViewData(const std::string& file, const Lesson& lesson, const std::map<std::string, std::string>& shortIds,
              const Findings& findings) {
    ViewDataBuilder builder(lesson);
    Json data;
    data["file"] = file;
    auto lessonBag = lesson.Properties();
    data["lesson"] = Json{{"title", lesson.Title()},
                          {"identifier", lesson.Identifier()},
                          {"id", lesson.LessonID()},
                          {"classification", lesson.Classification()},
                          {"props", lessonBag ? builder.Bag(*lessonBag) : Json::array()}};

    auto storyboards = lesson.Storyboards();
    std::vector<int> mapCounts(static_cast<std::size_t>(storyboards->Count()), 0);
    Json maps = Json::array();
    std::vector<std::string> mapHeads;
    auto defaultMap = DefaultOrFirstMap(lesson);
    auto lessonMaps = lesson.Maps();
    for (std::int32_t m = 0; m < lessonMaps->Count(); ++m) {
        auto map = lessonMaps->ItemAt(m);
        auto name = MapName(*map);
        mapHeads.push_back(name ? MapPlace(*name) : "map " + std::to_string(m + 1));
        Json items = Json::array();
        std::vector<bool> seen(mapCounts.size(), false);
        for (const auto& item : MapItems(*map)) {
            items.push_back(item.depth);
            if (!item.hasSbid) {
                items.push_back(nullptr);
                continue;
            }
            Json ref = builder.Ref(item.sbid);
            if (ref.is_number()) {
                auto at = ref.get<std::size_t>();
                if (at < seen.size() && !seen[at]) {
                    seen[at] = true;
                    ++mapCounts[at];
                }
            }
            items.push_back(std::move(ref));
        }
        maps.push_back(Json{{"name", name ? Json(*name) : Json(nullptr)},
                            {"default", map == defaultMap},
                            {"items", std::move(items)}});
    }
    data["maps"] = std::move(maps);

    Json list = Json::array();
    std::size_t at = 0;
    for (const auto& storyboard : *storyboards) {
        const std::string sbid = storyboard->SBID();
        auto shortId = shortIds.find(sbid);
        auto bag = storyboard->Properties();
        auto children = storyboard->Children();
        list.push_back(Json::array({sbid, shortId == shortIds.end() ? Json(nullptr) : Json(shortId->second),
                                    storyboard->SBType(), storyboard->Title(), storyboard->Identifier(),
                                    storyboard->Classification(), bag ? builder.Bag(*bag) : Json::array(),
                                    children ? builder.Elements(*children) : Json::array(),
                                    at < mapCounts.size() ? mapCounts[at] : 0}));
        ++at;
    }
    data["sbs"] = std::move(list);

    Json found = Json::array();
    for (const auto& finding : findings.All()) {
        int kind = 0;
        std::int64_t index = -1;
        const std::string_view head = Head(finding.place);
        constexpr std::string_view kStoryboard = "storyboard ";
        if (head.substr(0, kStoryboard.size()) == kStoryboard) {
            if (auto place = builder.Place(std::string(head.substr(kStoryboard.size())))) {
                kind = 2;
                index = *place;
            }
        } else {
            for (std::size_t m = 0; m < mapHeads.size(); ++m) {
                if (head == mapHeads[m]) {
                    kind = 1;
                    index = static_cast<std::int64_t>(m);
                    break;
                }
            }
        }
        found.push_back(Json::array({finding.kind->severity == Severity::Error ? 0 : 1, finding.kind->code,
                                     finding.place, finding.sentence, kind, index}));
    }
    data["findings"] = std::move(found);
    return data;
}

}  // namespace quillbank::tool
