// What the Windows DOM's handling of text means for written lessons: the
// sample lessons and the benchmark generator's lessons read and write back
// to the same bytes, and the few kinds of content whose bytes follow the
// DOM's rules (a lone CR, a NUL, line ends in the classification comment,
// raw whitespace in attribute values of a file) change exactly as listed in
// docs/msxml-behaviour.md.

#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <quillbank/quillbank.hpp>

#include "lesson/lesson_helpers.hpp"
#include "lesson_generator.hpp"

namespace quillbank {
namespace {

using testing::WithoutDocumentId;

std::string ReadSample(const std::string& name) {
    std::ifstream in(std::string(QUILLBANK_TEST_DATA_DIR) + "/../../examples/" + name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string WrittenBack(const std::string& text) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(text);
    return lesson->ToXMLString();
}

TEST(LessonBytes, SampleLessonsWriteBackUnchanged) {
    const std::string water = ReadSample("water-cycle.lesson.xml");
    ASSERT_FALSE(water.empty());
    EXPECT_EQ(WithoutDocumentId(WrittenBack(water)), WithoutDocumentId(water));

    // The one difference in the other sample is the model's, not the DOM's:
    // the map collection read names its single map as the default.
    std::string fractions = ReadSample("fractions.lesson.xml");
    ASSERT_FALSE(fractions.empty());
    const std::size_t maps = fractions.find("<maps>");
    ASSERT_NE(maps, std::string::npos);
    const std::string written = WrittenBack(fractions);
    fractions.replace(maps, 6, "<maps default=\"Main\">");
    EXPECT_EQ(WithoutDocumentId(written), WithoutDocumentId(fractions));
    EXPECT_EQ(WithoutDocumentId(WrittenBack(written)), WithoutDocumentId(written));
}

TEST(LessonBytes, GeneratedLessonsWriteBackUnchanged) {
    for (const std::uint64_t seed : {1u, 2u}) {
        const std::string text = bench::GenerateLesson(30, seed)->ToXMLString();
        EXPECT_EQ(WithoutDocumentId(WrittenBack(text)), WithoutDocumentId(text)) << seed;
        const std::string clear = bench::GenerateLesson(30, seed)->ToClearXMLString();
        auto read = Lesson::Create();
        read->FromXMLString(clear);
        EXPECT_EQ(WithoutDocumentId(read->ToClearXMLString()), WithoutDocumentId(clear)) << seed;
    }
}

// A lone CR in a string is a line end to the DOM: it is written CR LF (it was
// "&#13;") and reads back as CR LF.
TEST(LessonBytes, ALoneCarriageReturnInAStringIsWrittenAsALineEnd) {
    auto lesson = Lesson::Create();
    lesson->Properties()->SetString("s", "a\rb");
    const std::string text = lesson->ToXMLString();
    EXPECT_NE(text.find("<stringProp name=\"s\">a\r\nb</stringProp>"), std::string::npos) << text;
    auto back = Lesson::Create();
    back->FromXMLString(text);
    EXPECT_EQ(back->Properties()->GetString("s", ""), "a\r\nb");
}

// The classification comment is written with CR LF line ends.
TEST(LessonBytes, LineEndsInTheClassificationCommentAreCrLf) {
    auto lesson = Lesson::Create();
    lesson->SetClassification("one\ntwo");
    const std::string text = lesson->ToXMLString();
    EXPECT_NE(text.find("classification=\"one&#10;two\"><!-- ************ one\r\ntwo ************ -->"),
              std::string::npos)
        << text;
    auto back = Lesson::Create();
    back->FromXMLString(text);
    EXPECT_EQ(back->Classification(), "one\ntwo");
}

// Raw TAB and line ends in an attribute value of a file are kept (they were
// read as spaces); CR LF reads as LF.
TEST(LessonBytes, RawWhitespaceInAttributeValuesOfAFileIsKept) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson lessonid=\"L\" title=\"a\tb\r\nc\"><ppc name=\"properties\">"
                          "<intProp name=\"n\r\nm\" value=\"1\"/></ppc></lesson>");
    EXPECT_EQ(lesson->Title(), "a\tb\nc");
    EXPECT_EQ(lesson->Properties()->GetLong("n\nm", 0), 1);
    EXPECT_NE(lesson->ToXMLString().find("title=\"a&#9;b&#10;c\""), std::string::npos);
}

// An indented file (the DOM remembers its indentation while the text is
// loaded) is written compact: the maps are kept as copies, which carry none
// of it, and everything else is written anew. An empty item written with an
// end tag is written "<item .../>".
TEST(LessonBytes, AnIndentedFileIsWrittenCompact) {
    const std::string indented =
        "<lesson lessonid=\"L\" title=\"T\">\n"
        "  <ppc name=\"properties\">\n    <intProp name=\"n\" value=\"1\"/>\n  </ppc>\n"
        "  <maps default=\"Main\">\n    <map name=\"Main\">\n"
        "      <item sbid=\"A\">\n        <item sbid=\"B\"></item>\n      </item>\n"
        "    </map>\n  </maps>\n"
        "  <storyboards>\n  </storyboards>\n"
        "</lesson>\n";
    EXPECT_EQ(WithoutDocumentId(WrittenBack(indented)),
              "<lesson lessonid=\"L\" title=\"T\" documentid=\"*\"><ppc name=\"properties\">"
              "<intProp name=\"n\" value=\"1\"/></ppc><maps default=\"Main\"><map name=\"Main\">"
              "<item sbid=\"A\"><item sbid=\"B\"/></item></map></maps><storyboards/></lesson>");
}

}  // namespace
}  // namespace quillbank
