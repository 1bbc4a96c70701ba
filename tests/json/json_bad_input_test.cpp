// JSON that is not of the form raises 0x800403E9 from "Lesson.FromJSON",
// naming where the bad value is, and gives no lesson.

#include <string>

#include <gtest/gtest.h>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "common/raises.hpp"

namespace quillbank {
namespace {

constexpr const char* kSource = "Lesson.FromJSON";

std::string WrongForm(const std::string& where, const std::string& problem) {
    return "JSON of the wrong form at " + where + ": " + problem + ".";
}

TEST(JsonBadInput, MalformedJsonNamesTheByte) {
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1,)"), ErrJsonForm, kSource,
                  "JSON text could not be parsed at byte 15.");
    EXPECT_RAISES(LessonFromJSON(R"({"version": tru})"), ErrJsonForm, kSource,
                  "JSON text could not be parsed at byte 16.");
    EXPECT_RAISES(LessonFromJSON(""), ErrJsonForm, kSource, "JSON text could not be parsed at byte 1.");
    EXPECT_RAISES(LessonFromJSON("{\"title\": \"\xC3\x28\"}"), ErrJsonForm, kSource,
                  "JSON text could not be parsed at byte 13.");
}

TEST(JsonBadInput, TheTopLevelMustBeAnObjectOfThisVersion) {
    EXPECT_RAISES(LessonFromJSON("[]"), ErrJsonForm, kSource, WrongForm("the top level", "expected an object"));
    EXPECT_RAISES(LessonFromJSON("{}"), ErrJsonForm, kSource, WrongForm("/version", "missing"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 2})"), ErrJsonForm, kSource,
                  WrongForm("/version", "version 1 is the one read"));
}

TEST(JsonBadInput, UnknownFieldsAreRefused) {
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "titel": "x"})"), ErrJsonForm, kSource,
                  WrongForm("/titel", "unknown field"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "storyboards": [{"sbid": "A", "colour": 1}]})"), ErrJsonForm,
                  kSource, WrongForm("/storyboards/0/colour", "unknown field"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "properties": {"properties": [)"
                                 R"({"name": "f", "type": "font", "value": {"name": "A", "size": 1, "bold": true,)"
                                 R"( "italic": false, "underline": false, "a/b~": 1}}]}})"),
                  ErrJsonForm, kSource, WrongForm("/properties/properties/0/value/a~1b~0", "unknown field"));
}

TEST(JsonBadInput, ValuesOfTheWrongTypeNameTheirPlace) {
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "title": 5})"), ErrJsonForm, kSource,
                  WrongForm("/title", "expected a string"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "storyboards": {}})"), ErrJsonForm, kSource,
                  WrongForm("/storyboards", "expected an array"));
    EXPECT_RAISES(
        LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "b", "type": "boolean", "value": 1}]}})"),
        ErrJsonForm, kSource, WrongForm("/properties/properties/0/value", "expected true or false"));
    EXPECT_RAISES(
        LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "n", "type": "long", "value": 2147483648}]}})"),
        ErrJsonForm, kSource,
        WrongForm("/properties/properties/0/value", "expected an integer from -2147483648 to 2147483647"));
    EXPECT_RAISES(
        LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "n", "type": "long", "value": 1.5}]}})"),
        ErrJsonForm, kSource,
        WrongForm("/properties/properties/0/value", "expected an integer from -2147483648 to 2147483647"));
    EXPECT_RAISES(
        LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "c", "type": "color", "value": -1}]}})"),
        ErrJsonForm, kSource, WrongForm("/properties/properties/0/value", "expected an integer from 0 to 4294967295"));
    EXPECT_RAISES(
        LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "d", "type": "double", "value": "1"}]}})"),
        ErrJsonForm, kSource,
        WrongForm("/properties/properties/0/value", "expected a number, \"NaN\", \"Infinity\" or \"-Infinity\""));
    EXPECT_RAISES(
        LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "x", "type": "complex", "value": 1}]}})"),
        ErrJsonForm, kSource, WrongForm("/properties/properties/0/type", "unknown property type \"complex\""));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "properties": {"properties": [)"
                                 R"({"name": "x", "type": "long", "encoding": "rot13", "value": 1}]}})"),
                  ErrJsonForm, kSource, WrongForm("/properties/properties/0/encoding", "unknown encoding \"rot13\""));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "properties": {"properties": [)"
                                 R"({"name": "r", "type": "rectangle", "value": {"left": 1, "top": 2, "width": 3}}]}})"),
                  ErrJsonForm, kSource, WrongForm("/properties/properties/0/value/height", "missing"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "properties": {"properties": [{"name": "r", "type": "long"}]}})"),
                  ErrJsonForm, kSource, WrongForm("/properties/properties/0/value", "missing"));
}

TEST(JsonBadInput, WhatWouldBeLostIsRefused) {
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "properties": {"properties": [)"
                                 R"({"name": "Caption", "type": "long", "value": 1},)"
                                 R"({"name": "caption", "type": "long", "value": 2}]}})"),
                  ErrJsonForm, kSource,
                  WrongForm("/properties/properties/1/name",
                            "the bag has a property of this name already (names are matched without regard to case)"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "storyboards": [{"sbid": "ab"}, {"sbid": "AB"}]})"), ErrJsonForm,
                  kSource,
                  WrongForm("/storyboards/1/sbid", "a storyboard with this identifier comes before (identifiers are "
                                                   "matched without regard to case)"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "maps": {"default": 1, "maps": [{"name": "M"}]}})"), ErrJsonForm,
                  kSource, WrongForm("/maps/default", "expected an integer from 0 to 0"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "maps": {"default": 0}})"), ErrJsonForm, kSource,
                  WrongForm("/maps/default", "expected null, since there are no maps"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "maps": {"maps": [{"xml": "<map"}]}})"), ErrJsonForm, kSource,
                  WrongForm("/maps/maps/0/xml", "the XML text could not be parsed"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "maps": {"maps": [{"xml": "<item/>"}]}})"), ErrJsonForm, kSource,
                  WrongForm("/maps/maps/0/xml", "expected a <map> element"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "maps": {"maps": [{"xml": "<map/>", "name": "M"}]}})"),
                  ErrJsonForm, kSource, WrongForm("/maps/maps/0", "a map given as \"xml\" has no other field"));
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "maps": {"maps": [{"items": [{"items": []}]}]}})"), ErrJsonForm,
                  kSource, WrongForm("/maps/maps/0/items/0/sbid", "missing"));
}

TEST(JsonBadInput, HugeTextIsRefusedBeforeParsing) {
    JsonLimits limits;
    limits.MaxBytes = 16;
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "title": "x"})", limits), ErrJsonForm, kSource,
                  "JSON text is longer than the limit of 16 bytes.");
    EXPECT_EQ(LessonFromJSON(R"({"version": 1})", limits)->Title(), "New Lesson");
}

TEST(JsonBadInput, DeepNestingIsRefusedBeforeParsing) {
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    EXPECT_RAISES(LessonFromJSON(deep), ErrJsonForm, kSource,
                  "JSON text nests deeper than the limit of 1100 levels at byte 1100.");
    // Brackets inside strings do not count.
    const std::string text = R"({"version": 1, "title": ")" + std::string(5000, '[') + R"("})";
    EXPECT_EQ(LessonFromJSON(text)->Title(), std::string(5000, '['));
}

// Bags nested deeper than the library holds them: refused with the place of
// the first bag past the limit, not dropped.
TEST(JsonBadInput, BagsNestedPastTheLibrarysLimitAreRefused) {
    std::string text = R"({"version": 1, "properties": )";
    std::string closing;
    std::string place = "/properties";
    for (int level = 1; level <= 201; ++level) {
        text += R"({"properties": [{"name": "p", "type": "ppc", "value": )";
        closing = "}]}" + closing;
        place += "/properties/0/value";
    }
    text += "{}" + closing + "}";
    EXPECT_RAISES(LessonFromJSON(text), ErrJsonForm, kSource,
                  WrongForm(place, "bags and lists nest deeper than 200 levels"));
}

TEST(JsonBadInput, TheDeepestNestThatTheLibraryHoldsReads) {
    std::string text = R"({"version": 1, "properties": )";
    std::string closing;
    for (int level = 1; level <= 200; ++level) {
        text += R"({"properties": [{"name": "p", "type": "cec", "value": {"elements": [)";
        closing = "]}}]}" + closing;
    }
    text += R"({"name": "last"})" + closing + "}";
    const auto lesson = LessonFromJSON(text);
    auto bag = lesson->Properties();
    int depth = 0;
    while (auto list = bag->GetCEC("p", nullptr)) {
        bag = list->Item(0)->PPCObject();
        ++depth;
    }
    EXPECT_EQ(depth, 200);
    EXPECT_EQ(bag->Name(), "last");
    EXPECT_EQ(LessonToJSON(*LessonFromJSON(LessonToJSON(*lesson))), LessonToJSON(*lesson));
}

}  // namespace
}  // namespace quillbank
