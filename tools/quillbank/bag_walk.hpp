#pragma once

// Visiting every property of a bag, and of the bags and lists nested in it,
// with the path of each (see property_path.hpp).

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <quillbank/child_element.hpp>
#include <quillbank/lesson.hpp>
#include <quillbank/persisted_property_collection.hpp>

namespace quillbank::tool {

// The bag's property names, sorted as the clear form sorts them (letter case
// ignored); an empty bag gives no names.
std::vector<std::string> SortedNames(const PersistedPropertyCollection& bag);

struct PropertyVisit {
    const PersistedPropertyCollection& bag;
    const std::string& name;
    const std::string& bagPath;
    PropertyTypes type;
    std::int32_t encoding;
    int depth;  // 0 for the properties of the bag walked

    // The bag's path, " / ", the name: made when asked for, since most
    // visits need none.
    std::string Path() const;
};

struct ElementVisit {
    const ChildElement& element;
    std::int32_t index;
    std::string path;  // the list property's path with "[index]"
    int depth;         // the depth of the element's own properties
};

struct BagVisitor {
    std::function<void(const PropertyVisit&)> property;
    std::function<void(const ElementVisit&)> element;  // may be empty
};

// Visits the properties in name order, each before what is nested in it: a
// bag's properties, a list's elements (each followed by its properties).
void WalkBag(const PersistedPropertyCollection& bag, const std::string& bagPath, int depth,
             const BagVisitor& visitor);

// Every bag of a lesson with its path, in order: the lesson's own, then for
// each storyboard its bag and the bags of its child elements.
struct PlacedBag {
    std::shared_ptr<PersistedPropertyCollection> bag;
    std::string path;
};
std::vector<PlacedBag> LessonBags(const Lesson& lesson);

}  // namespace quillbank::tool
