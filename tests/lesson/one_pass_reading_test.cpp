// The string form of a lesson is read straight from the parser's nodes, the
// element form through the document model's handles; both go through the
// same reading rules and must build the same lesson from the same text.

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include <quillbank/quillbank.hpp>

#include "lesson/lesson_helpers.hpp"
#include "lesson_generator.hpp"

namespace quillbank {
namespace {

using testing::WithoutDocumentId;

// The lesson read from `text` by FromXMLElement on a loaded document.
std::shared_ptr<Lesson> ReadThroughElement(const std::string& text) {
    xml::Document document = xml::Document::Create();
    EXPECT_TRUE(document.LoadXML(text));
    auto lesson = Lesson::Create();
    lesson->FromXMLElement(document.DocumentElement());
    return lesson;
}

std::shared_ptr<Lesson> ReadThroughString(const std::string& text) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(text);
    return lesson;
}

void ExpectSameReading(const std::string& text) {
    const auto viaElement = ReadThroughElement(text);
    const auto viaString = ReadThroughString(text);
    EXPECT_EQ(WithoutDocumentId(viaString->ToXMLString()), WithoutDocumentId(viaElement->ToXMLString()));
    EXPECT_EQ(WithoutDocumentId(viaString->ToClearXMLString()), WithoutDocumentId(viaElement->ToClearXMLString()));
    EXPECT_EQ(viaString->Maps()->Count(), viaElement->Maps()->Count());
}

TEST(OnePassReading, GeneratedLessonsReadTheSameBothWays) {
    for (const std::uint64_t seed : {1u, 2u, 3u}) {
        const std::string text = bench::GenerateLesson(12, seed)->ToXMLString();
        ExpectSameReading(text);
        // And the text read back is the text written.
        EXPECT_EQ(WithoutDocumentId(ReadThroughString(text)->ToXMLString()), WithoutDocumentId(text));
    }
}

// Whitespace, comments, CDATA, xml:space, letter case in property element
// names, unknown elements, repeated names and parts, and a blank asset text.
constexpr const char* kAwkwardLesson = R"(<?xml version="1.0"?>
<lesson lessonid="L-1" title="Awkward &amp; odd" identifier="A">
  <!-- a comment -->
  <ppc name="first"><intProp name="gone" value="1"/></ppc>
  <ppc name="lesson">
    <stringProp name="spaced" xml:space="preserve">   </stringProp>
    <stringProp name="mixed">one<![CDATA[ <two> ]]>three<!-- c -->four</stringProp>
    <stringProp name="lines">a&#13;
b</stringProp>
    <INTPROP name="upper" value=" 42 "/>
    <BoolProp name="flag" value="-1"/>
    <floatProp name="half" value="0.5"/>
    <floatProp name="half" value="1.5"/>
    <unknownProp name="skipped" value="1"/>
    <dateProp name="when" value="2024-02-29 13:45:00"/>
    <colorProp name="tint" value="#102030"/>
    <fontProp name="font" emSize="9.5" bold="True" italic="0" underline="-1"/>
    <rectProp name="box" left="1" top="-2" width="3.5" height="&amp;H10"/>
    <assetProp name="picture" filename="a.png">
      <description>  first <b>bold</b>  line
 second  </description>
      <source xml:space="preserve">  kept  </source>
    </assetProp>
    <locationProp name="link" to="S-2" map="Main"/>
    <ppcProp name="nested"><ppc name="inner"><stringProp name="deep">x</stringProp></ppc></ppcProp>
    <cecProp name="list">
      <cec name="items">
        text between
        <ce name="one" type="t"><intProp name="n" value="1"/></ce>
        <!-- c -->
        <ce name="two"><intProp name="n" value="2"/></ce>
        <other/>
      </cec>
    </cecProp>
  </ppc>
  <maps default="Second">
    <map name="Main"><item sbid="S-1"><item sbid="S-2"/></item></map>
    <map name="Second"><item sbid="S-2"/></map>
  </maps>
  <storyboards>
    <storyboard sbid="S-1" title="One" type="quiz" shortid="7">
      <ppc name="ignored name"><stringProp name="s">1</stringProp></ppc>
      <cec name="kids"><ce name="k"><boolProp name="b" value="false"/></ce></cec>
    </storyboard>
    text
    <storyboard sbid="S-2" classification="Secret"/>
    <notAStoryboard sbid="S-3"/>
  </storyboards>
</lesson>
)";

TEST(OnePassReading, AnAwkwardLessonReadsTheSameBothWays) {
    ExpectSameReading(kAwkwardLesson);
    const auto lesson = ReadThroughString(kAwkwardLesson);
    const auto bag = lesson->Properties();
    EXPECT_EQ(bag->Name(), "lesson");
    EXPECT_EQ(bag->GetString("spaced", "?"), "   ");
    EXPECT_EQ(bag->GetLong("upper", 0), 42);
    EXPECT_DOUBLE_EQ(bag->GetDouble("half", 0.0), 1.5);
    EXPECT_FALSE(bag->Exists("skipped"));
    EXPECT_FALSE(bag->Exists("gone"));
    EXPECT_EQ(lesson->Storyboards()->Count(), 2);
    EXPECT_EQ(lesson->Maps()->DefaultMap()->Name(), "Second");
}

// Encoded properties inside encoded properties: each level is parsed on its
// own while the level around it is still being read.
TEST(OnePassReading, EncodedPropertiesNestedInEncodedOnesReadTheSameBothWays) {
    auto lesson = Lesson::Create();
    auto inner = PersistedPropertyCollection::Create();
    inner->SetString("deepest", "\xE6\x97\xA5\xE6\x9C\xAC and text", etBase64Encoded);
    inner->SetLong("count", 12, etBase64Encoded);
    auto middle = PersistedPropertyCollection::Create();
    middle->SetPPC("inner", inner, etBase64Encoded);
    middle->SetDouble("ratio", 0.25, etBase64Encoded);
    lesson->Properties()->SetPPC("middle", middle, etBase64Encoded);
    lesson->Properties()->SetString("plain", "text", etNotEncoded);
    const std::string text = lesson->ToXMLString();

    ExpectSameReading(text);
    const auto read = ReadThroughString(text);
    const auto readMiddle = read->Properties()->GetPPC("middle", nullptr);
    ASSERT_NE(readMiddle, nullptr);
    const auto readInner = readMiddle->GetPPC("inner", nullptr);
    ASSERT_NE(readInner, nullptr);
    EXPECT_EQ(readInner->GetString("deepest", ""), "\xE6\x97\xA5\xE6\x9C\xAC and text");
    EXPECT_EQ(readInner->GetLong("count", 0), 12);
    EXPECT_EQ(readInner->GetEncodingType("count"), etBase64Encoded);
    EXPECT_DOUBLE_EQ(readMiddle->GetDouble("ratio", 0.0), 0.25);
}

// An encoded property whose text is not a document is dropped; the rest of
// the bag is read.
TEST(OnePassReading, ACorruptEncodedPropertyIsDroppedBothWays) {
    const std::string text =
        "<lesson lessonid=\"L\"><ppc name=\"p\"><encProp>PGludFByb3AgbmFtZT0iYSIgdmFsdWU9IjEiPg==</encProp>"
        "<intProp name=\"b\" value=\"2\"/></ppc></lesson>";
    ExpectSameReading(text);
    const auto lesson = ReadThroughString(text);
    EXPECT_FALSE(lesson->Properties()->Exists("a"));
    EXPECT_EQ(lesson->Properties()->GetLong("b", 0), 2);
}

// Each thread parses encoded properties in scratch documents of its own.
TEST(OnePassReading, ThreadsReadEncodedPropertiesAtOnce) {
    const std::string text = bench::GenerateLesson(6, 4)->ToXMLString();
    const std::string expected = WithoutDocumentId(ReadThroughElement(text)->ToXMLString());
    std::string results[4];
    std::thread threads[4];
    for (int i = 0; i < 4; ++i) {
        threads[i] = std::thread([&, i] {
            for (int round = 0; round < 3; ++round) {
                results[i] = WithoutDocumentId(ReadThroughString(text)->ToXMLString());
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const auto& result : results) {
        EXPECT_EQ(result, expected);
    }
}

TEST(OnePassReading, AWrongRootElementRaisesAsTheElementFormDoes) {
    auto lesson = Lesson::Create();
    try {
        lesson->FromXMLString("<lessons/>");
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrXmlForm);
        EXPECT_EQ(error.Source(), "Lesson.FromXMLElement");
        EXPECT_EQ(error.Description(), "Element is not a <lesson> element");
    }
}

}  // namespace
}  // namespace quillbank
