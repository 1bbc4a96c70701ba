#pragma once

// What a lesson map offers the library's other classes only.

#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/xml.hpp>

#include "xml/writer.hpp"

namespace quillbank::detail {

struct LessonMapAccess {
    // Rebuilds the map's tree with new identifiers: every item becomes an
    // "item" whose "sbid" is Mapping's string property named after the old
    // identifier (names match without regard to case), or the old identifier
    // when Mapping has no such property. An item without an identifier (or
    // with an empty one) is dropped together with its whole subtree. The
    // rebuilt items carry only "sbid"; the map keeps its name (a map without
    // a name raises 94, source "LessonMap.RemapStoryboardIDs").
    static void RemapStoryboardIDs(LessonMap& Map, const PersistedPropertyCollection& Mapping);

    // Appends a deep copy of the map's element as the last child of Parent
    // and returns it. The copy is made directly in Parent's document: the
    // same result as appending Map.ToXMLElement(document), with one copy.
    static xml::Node AppendCopyTo(const LessonMap& Map, xml::Node Parent);

    // Writes the map's element, a copy of its stored tree, as the next child
    // of the element being written.
    static void Write(const LessonMap& Map, xml::Writer& writer);
};

}  // namespace quillbank::detail

namespace quillbank::maps {

// The "maps" element: "default" (the default map's name) when there is a
// default map, then each map's element in order.
void WriteMaps(const LessonMapCollection& maps, xml::Writer& writer);

}  // namespace quillbank::maps

namespace quillbank::detail {}  // namespace quillbank::detail
