#pragma once

// Helpers of the map tests: a map's tree in a short text form, maps and
// storyboard sets built from identifiers, and parsed elements.

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillbank/lesson_map.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>
#include <quillbank/xml.hpp>

#include "storyboards/storyboard_access.hpp"

namespace quillbank::testing {

// The items under `parent` as "A(B,C(D)),E": each item's "sbid" ("-" when it
// has none), its item children in brackets. Other nodes are not shown.
inline std::string Shape(const xml::Node& parent) {
    std::string out;
    bool first = true;
    for (xml::Node node = parent.FirstChild(); node; node = node.NextSibling()) {
        if (!node.IsElement()) {
            continue;
        }
        if (!first) {
            out += ",";
        }
        first = false;
        out += node.AsElement().GetAttribute("sbid").value_or("-");
        const std::string inner = Shape(node);
        if (!inner.empty()) {
            out += "(" + inner + ")";
        }
    }
    return out;
}

inline std::string Shape(const LessonMap& map) { return Shape(map.ToXMLElement()); }

inline xml::Element Parse(const std::string& text, xml::Document document = xml::Document::Create()) {
    EXPECT_TRUE(document.LoadXML(text)) << text;
    return document.DocumentElement();
}

// A map read from "<map ...>...</map>" text.
inline std::shared_ptr<LessonMap> MapFrom(const std::string& text) {
    auto map = LessonMap::Create();
    map->FromXMLElement(Parse(text));
    return map;
}

// A map of the given top-level identifiers, in order.
inline std::shared_ptr<LessonMap> MapOf(std::initializer_list<const char*> sbids) {
    auto map = LessonMap::Create();
    for (const char* sbid : sbids) {
        map->InsertStoryboard("", sbitInsertAfter, sbid);
    }
    return map;
}

// A storyboard set holding storyboards with the given identifiers.
inline std::shared_ptr<StoryboardCollection> StoryboardsOf(std::initializer_list<const char*> sbids) {
    auto set = StoryboardCollection::Create();
    for (const char* sbid : sbids) {
        auto sb = Storyboard::Create();
        detail::StoryboardAccess::SetSBID(*sb, sbid);
        set->Add(sb);
    }
    return set;
}

}  // namespace quillbank::testing
