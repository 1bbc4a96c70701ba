// The reader parses with simdjson and hands the texts simdjson refuses to
// nlohmann-json: a byte order mark, numbers past 64 bits and objects nested
// just to the depth limit still read, the same document gives the same lesson
// and the same errors whichever parser took it, and of two members of the same
// name the later one counts.

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "common/raises.hpp"

namespace quillbank {
namespace {

constexpr const char* kSource = "Lesson.FromJSON";
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

std::string WrongForm(const std::string& where, const std::string& problem) {
    return "JSON of the wrong form at " + where + ": " + problem + ".";
}

// A lesson whose bag holds one property of this type and value (JSON text).
std::string WithProperty(const std::string& type, const std::string& value) {
    return R"({"version": 1, "properties": {"properties": [{"name": "p", "type": ")" + type + R"(", "value": )" +
           value + "}]}}";
}

const std::string kLesson =
    R"({"version": 1, "lessonid": "L-1", "title": "Fractions", "properties": {"name": "bag", "properties": [)"
    R"({"name": "n", "type": "long", "value": -7}, {"name": "s", "type": "string", "encoding": "base64", "value": "x"},)"
    R"({"name": "c", "type": "cec", "value": {"name": "kids", "elements": [{"type": "t", "properties": [)"
    R"({"name": "d", "type": "double", "value": 0.5}]}]}}]},)"
    R"("maps": {"default": 0, "maps": [{"name": "Main", "items": [{"sbid": "A"}]}]},)"
    R"("storyboards": [{"sbid": "A", "title": "Page", "shortid": 0}]})";

TEST(JsonParsers, ALeadingByteOrderMarkReadsAsTheSameLesson) {
    const auto plain = LessonFromJSON(kLesson);
    const auto marked = LessonFromJSON(kByteOrderMark + kLesson);
    EXPECT_EQ(marked->Title(), "Fractions");
    EXPECT_EQ(marked->Properties()->GetEncodingType("s"), etBase64Encoded);
    EXPECT_EQ(LessonToJSON(*marked), LessonToJSON(*plain));
}

TEST(JsonParsers, ErrorsAreTheSameWhicheverParserTookTheText) {
    for (const std::string& prefix : {std::string(), std::string(kByteOrderMark)}) {
        SCOPED_TRACE(prefix.empty() ? "simdjson" : "nlohmann-json");
        EXPECT_RAISES(LessonFromJSON(prefix + WithProperty("boolean", "1")), ErrJsonForm, kSource,
                      WrongForm("/properties/properties/0/value", "expected true or false"));
        EXPECT_RAISES(LessonFromJSON(prefix + R"({"version": 1, "storyboards": [{"sbid": "A"}, {"sbid": "a"}]})"),
                      ErrJsonForm, kSource,
                      WrongForm("/storyboards/1/sbid",
                                "a storyboard with this identifier comes before (identifiers are matched without "
                                "regard to case)"));
        EXPECT_RAISES(LessonFromJSON(prefix + R"({"version": 1, "maps": {"colour": 1}})"), ErrJsonForm, kSource,
                      WrongForm("/maps/colour", "unknown field"));
    }
}

TEST(JsonParsers, AnIntegerPast64BitsReadsAsADouble) {
    const auto lesson = LessonFromJSON(WithProperty("double", "18446744073709551616"));
    EXPECT_EQ(lesson->Properties()->GetDouble("p", 0.0), 18446744073709551616.0);
    EXPECT_RAISES(LessonFromJSON(WithProperty("long", "18446744073709551616")), ErrJsonForm, kSource,
                  WrongForm("/properties/properties/0/value", "expected an integer from -2147483648 to 2147483647"));
}

TEST(JsonParsers, TheLargestIntegersOfEachSignReadAsDoubles) {
    const auto large = LessonFromJSON(WithProperty("double", "18446744073709551615"));
    EXPECT_EQ(large->Properties()->GetDouble("p", 0.0), 18446744073709551615.0);
    const auto small = LessonFromJSON(WithProperty("date", "-9223372036854775808"));
    EXPECT_EQ(small->Properties()->GetDate("p", 0.0), -9223372036854775808.0);
    EXPECT_RAISES(LessonFromJSON(WithProperty("color", "-1")), ErrJsonForm, kSource,
                  WrongForm("/properties/properties/0/value", "expected an integer from 0 to 4294967295"));
    EXPECT_EQ(LessonFromJSON(WithProperty("color", "4294967295"))->Properties()->GetColor("p", 0), 0xFFFFFFFFu);
}

TEST(JsonParsers, ObjectsNestedToTheLimitReadAndOneLevelMoreIsRefused) {
    // The lesson, its bag, the list of properties, the property and the font: five levels.
    const std::string font = WithProperty(
        "font", R"({"name": "Arial", "size": 9.5, "bold": true, "italic": false, "underline": false})");
    JsonLimits limits;
    limits.MaxDepth = 5;
    const auto lesson = LessonFromJSON(font, limits);
    EXPECT_EQ(lesson->Properties()->GetFont("p", FontData{}).Size, 9.5);
    limits.MaxDepth = 4;
    EXPECT_RAISES(LessonFromJSON(font, limits), ErrJsonForm, kSource,
                  "JSON text nests deeper than the limit of 4 levels at byte " +
                      std::to_string(font.find("{\"name\": \"Arial\"")) + ".");
}

TEST(JsonParsers, OfTwoMembersOfTheSameNameTheLaterCounts) {
    const std::string text = R"({"version": 1, "title": "first", "title": "second"})";
    EXPECT_EQ(LessonFromJSON(text)->Title(), "second");
    EXPECT_EQ(LessonFromJSON(kByteOrderMark + text)->Title(), "second");
}

TEST(JsonParsers, EscapedTextsReadDecoded) {
    const auto lesson = LessonFromJSON(
        R"({"version": 1, "title": "a\"b\\c\/d\n\u00e9\ud83c\udf70", "identifier": "nul\u0000inside"})");
    EXPECT_EQ(lesson->Title(), "a\"b\\c/d\n\xC3\xA9\xF0\x9F\x8D\xB0");
    EXPECT_EQ(lesson->Identifier(), std::string("nul\0inside", 10));
}

// The byte named is where the parser gives up: after a high half, the byte
// where the low half should begin; a low half alone, its own last byte.
TEST(JsonParsers, ALoneSurrogateEscapeIsNotJson) {
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "title": "\ud800"})"), ErrJsonForm, kSource,
                  "JSON text could not be parsed at byte 32.");
    EXPECT_RAISES(LessonFromJSON(R"({"version": 1, "title": "\udc00"})"), ErrJsonForm, kSource,
                  "JSON text could not be parsed at byte 31.");
}

}  // namespace
}  // namespace quillbank
