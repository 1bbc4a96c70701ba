#pragma once

// The ordered maps of a lesson, with the lesson's default map.

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include <quillbank/lesson_map.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

// A zero-based list of references to maps (not copies). Maps are found by
// object identity (IndexOf, Remove, the default) or by name (Item,
// IndexOfName), names compared exactly, the first match winning. Names need
// not be unique and the same map may stand twice. Bad indexes and null maps
// are ignored, never errors.
class LessonMapCollection {
public:
    // A new, empty collection without a default map.
    static std::shared_ptr<LessonMapCollection> Create();

    LessonMapCollection(const LessonMapCollection&) = delete;
    LessonMapCollection& operator=(const LessonMapCollection&) = delete;

    // The stored default map; without one, the first map, but only when the
    // collection holds two maps or more (one map alone is no default).
    std::shared_ptr<LessonMap> DefaultMap() const;
    // Null clears the stored default; any other map must be in the
    // collection, else error 5 is raised and the default stays as it was.
    void SetDefaultMap(std::shared_ptr<LessonMap> NewValue);

    // The highest index: -1 when the collection is empty.
    std::int32_t Length() const;
    std::int32_t Count() const;
    // The first map named Name; null when none is.
    std::shared_ptr<LessonMap> Item(std::string_view Name) const;
    // The map at Index; null when Index is out of range.
    std::shared_ptr<LessonMap> ItemAt(std::int32_t Index) const;
    // The first index of the very map; -1 for null or when absent.
    std::int32_t IndexOf(const std::shared_ptr<LessonMap>& Map) const;
    // The first index of a map named Name; -1 when none is.
    std::int32_t IndexOfName(std::string_view Name) const;

    void Append(const std::shared_ptr<LessonMap>& Map);
    // Places Map at Index, moving the later maps up; an Index out of range appends.
    void Insert(const std::shared_ptr<LessonMap>& Map, std::int32_t Index);
    // Removes the first occurrence of the very map; absent maps are ignored.
    void Remove(const std::shared_ptr<LessonMap>& Map);
    // Removing the default map clears the stored default.
    void RemoveAt(std::int32_t Index);
    // Removes every map and the default.
    void Clear();

    // A new collection of copies of the maps (new objects, same names and
    // order), with the default chosen as reading the written form chooses it.
    std::shared_ptr<LessonMapCollection> Clone() const;

    // A new "maps" element of Document, not attached anywhere, holding a copy
    // of every map's element; "default" names the default map when there is
    // one (see DefaultMap). The document's whitespace switch is left alone.
    xml::Element ToXMLElement(const xml::Document& Document) const;
    // Replaces the maps by one per "map" child element, in order (other
    // children are skipped). The default becomes the first map named by
    // "default", else the first map.
    void FromXMLElement(const xml::Element& Element);

private:
    LessonMapCollection();

    std::vector<std::shared_ptr<LessonMap>> maps_;
    std::shared_ptr<LessonMap> default_;
};

}  // namespace quillbank
