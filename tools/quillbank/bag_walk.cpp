#include "bag_walk.hpp"

#include <algorithm>
#include <cctype>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/storyboard.hpp>

#include "property_path.hpp"

namespace quillbank::tool {

namespace {

std::string Folded(const std::string& text) {
    std::string out = text;
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

}  // namespace

std::vector<std::string> SortedNames(const PersistedPropertyCollection& bag) {
    if (bag.Count() == 0) {
        return {};
    }
    auto names = bag.GetPropertyNameArray();
    std::stable_sort(names.begin(), names.end(),
                     [](const std::string& a, const std::string& b) { return Folded(a) < Folded(b); });
    return names;
}

void WalkBag(const PersistedPropertyCollection& bag, const std::string& bagPath, int depth,
             const BagVisitor& visitor) {
    for (const auto& name : SortedNames(bag)) {
        PropertyVisit visit{bag, name, JoinPath(bagPath, PathName(name)), bag.GetPropertyType(name),
                            bag.GetEncodingType(name), depth};
        visitor.property(visit);
        if (visit.type == ptPPC) {
            if (auto nested = bag.GetPPC(name, nullptr)) {
                WalkBag(*nested, visit.path, depth + 1, visitor);
            }
        } else if (visit.type == ptCEC) {
            if (auto list = bag.GetCEC(name, nullptr)) {
                for (std::int32_t i = 0; i < list->Count(); ++i) {
                    auto element = list->Item(i);
                    if (!element) {
                        continue;
                    }
                    std::string elementPath = Indexed(visit.path, i);
                    if (visitor.element) {
                        visitor.element(ElementVisit{*element, i, elementPath, depth + 1});
                    }
                    WalkBag(*element->PPCObject(), elementPath, depth + 2, visitor);
                }
            }
        }
    }
}

std::vector<PlacedBag> LessonBags(const Lesson& lesson) {
    std::vector<PlacedBag> bags;
    bags.push_back({lesson.Properties(), LessonBagPath()});
    for (const auto& storyboard : *lesson.Storyboards()) {
        const std::string sbid = storyboard->SBID();
        bags.push_back({storyboard->Properties(), StoryboardBagPath(sbid)});
        auto children = storyboard->Children();
        for (std::int32_t i = 0; i < children->Count(); ++i) {
            if (auto element = children->Item(i)) {
                bags.push_back({element->PPCObject(), ChildElementPath(sbid, i)});
            }
        }
    }
    return bags;
}

}  // namespace quillbank::tool
