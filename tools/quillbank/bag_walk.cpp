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
    // Each name folded once, not at every comparison.
    std::vector<std::pair<std::string, std::size_t>> keys;
    keys.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        keys.emplace_back(Folded(names[i]), i);
    }
    std::stable_sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> sorted;
    sorted.reserve(names.size());
    for (const auto& key : keys) {
        sorted.push_back(std::move(names[key.second]));
    }
    return sorted;
}

void WalkBag(const PersistedPropertyCollection& bag, const std::string& bagPath, int depth,
             const BagVisitor& visitor) {
    // One frame a bag or list being walked, on a stack of our own rather
    // than the call stack. A frame holds its bag or list alive.
    struct Frame {
        const PersistedPropertyCollection* bag = nullptr;
        std::shared_ptr<PersistedPropertyCollection> heldBag;
        std::vector<std::string> names;
        std::shared_ptr<ChildElementCollection> list;
        std::int32_t next = 0;
        std::string path;
        int depth = 0;
    };
    std::vector<Frame> frames;
    frames.push_back({&bag, nullptr, SortedNames(bag), nullptr, 0, bagPath, depth});
    while (!frames.empty()) {
        Frame& frame = frames.back();
        if (frame.list) {
            if (frame.next >= frame.list->Count()) {
                frames.pop_back();
                continue;
            }
            const std::int32_t i = frame.next++;
            auto element = frame.list->Item(i);
            if (!element) {
                continue;
            }
            std::string elementPath = Indexed(frame.path, i);
            const int elementDepth = frame.depth;
            if (visitor.element) {
                visitor.element(ElementVisit{*element, i, elementPath, elementDepth});
            }
            auto properties = element->PPCObject();
            auto names = SortedNames(*properties);
            frames.push_back({properties.get(), properties, std::move(names), nullptr, 0, std::move(elementPath),
                              elementDepth + 1});
            continue;
        }
        if (frame.next >= static_cast<std::int32_t>(frame.names.size())) {
            frames.pop_back();
            continue;
        }
        const PersistedPropertyCollection& current = *frame.bag;
        const std::string& name = frame.names[static_cast<std::size_t>(frame.next++)];
        const PropertyVisit visit{current, name, frame.path, current.GetPropertyType(name),
                                  current.GetEncodingType(name), frame.depth};
        visitor.property(visit);
        // `frame` may move once a frame is pushed: everything needed is copied first.
        const int nestedDepth = frame.depth + 1;
        const PropertyTypes type = visit.type;
        if (type == ptPPC) {
            if (auto nested = current.GetPPC(name, nullptr)) {
                auto names = SortedNames(*nested);
                std::string path = visit.Path();
                frames.push_back({nested.get(), nested, std::move(names), nullptr, 0, std::move(path), nestedDepth});
            }
        } else if (type == ptCEC) {
            if (auto list = current.GetCEC(name, nullptr)) {
                std::string path = visit.Path();
                frames.push_back({nullptr, nullptr, {}, list, 0, std::move(path), nestedDepth});
            }
        }
    }
}

std::string PropertyVisit::Path() const {
    return JoinPath(bagPath, PathName(name));
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
