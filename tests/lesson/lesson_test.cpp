#include <quillbank/lesson.hpp>

#include <gtest/gtest.h>

#include <quillbank/quillbank.hpp>

#include <string>
#include <vector>

#include "common/raises.hpp"
#include "lesson/lesson_helpers.hpp"

namespace quillbank {
namespace {

using testing::IsGuidText;
using testing::MapItemIds;
using testing::StoryboardIds;
using testing::WithoutDocumentId;
using Names = std::vector<std::string>;

xml::Element Parse(const std::string& text) {
    xml::Document document = xml::Document::Create();
    EXPECT_TRUE(document.LoadXML(text)) << text;
    return document.DocumentElement();
}

TEST(Lesson, CreationState) {
    auto lesson = Lesson::Create();
    EXPECT_TRUE(IsGuidText(lesson->LessonID()));
    EXPECT_NE(Lesson::Create()->LessonID(), lesson->LessonID());
    EXPECT_EQ(lesson->Title(), "New Lesson");
    EXPECT_EQ(lesson->Identifier(), "");
    EXPECT_EQ(lesson->Classification(), "");
    EXPECT_EQ(lesson->Properties()->Count(), 0);
    EXPECT_EQ(lesson->Maps()->Count(), 0);
    EXPECT_EQ(lesson->Storyboards()->Count(), 0);
}

TEST(Lesson, PartsAreHandedOutAsTheyAre) {
    auto lesson = Lesson::Create();
    EXPECT_EQ(lesson->Properties(), lesson->Properties());
    EXPECT_EQ(lesson->Maps(), lesson->Maps());
    EXPECT_EQ(lesson->Storyboards(), lesson->Storyboards());
}

TEST(Lesson, TextsAreStoredUnchanged) {
    auto lesson = Lesson::Create();
    lesson->SetLessonID("not a guid");
    lesson->SetTitle("");
    lesson->SetIdentifier("\xE5\xAD\xA6\xE7\xBF\x92");
    lesson->SetClassification(" Secret ");
    EXPECT_EQ(lesson->LessonID(), "not a guid");
    EXPECT_EQ(lesson->Title(), "");
    EXPECT_EQ(lesson->Identifier(), "\xE5\xAD\xA6\xE7\xBF\x92");
    EXPECT_EQ(lesson->Classification(), " Secret ");
}

TEST(Lesson, SettersRefuseTextThatIsNotUtf8) {
    auto lesson = Lesson::Create();
    try {
        lesson->SetTitle("\xC3");
        ADD_FAILURE() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrInvalidArgument);
        EXPECT_EQ(error.Source(), "Lesson.Title (Set)");
    }
    try {
        lesson->SetLessonID("\xFF");
        ADD_FAILURE() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrInvalidArgument);
        EXPECT_EQ(error.Source(), "Lesson.LessonID (Set)");
    }
    EXPECT_EQ(lesson->Title(), "New Lesson");
}

// Edge case: a new lesson written with ToXMLString.
TEST(Lesson, NewLessonIsWrittenWithItsThreeAttributesAndThreeParts) {
    auto lesson = Lesson::Create();
    const std::string text = lesson->ToXMLString();
    EXPECT_EQ(WithoutDocumentId(text), "<lesson lessonid=\"" + lesson->LessonID() +
                                           "\" title=\"New Lesson\" documentid=\"*\"><ppc name=\"properties\"/>"
                                           "<maps/><storyboards/></lesson>");
    xml::Element element = Parse(text);
    EXPECT_EQ(element.AttributeCount(), 3);
    EXPECT_FALSE(element.HasAttribute("identifier"));
    EXPECT_FALSE(element.HasAttribute("classification"));
    EXPECT_TRUE(IsGuidText(*element.GetAttribute("documentid")));
    ASSERT_EQ(element.ChildCount(), 3);
    EXPECT_EQ(element.ChildAt(0).Name(), "ppc");
    EXPECT_EQ(element.ChildAt(1).Name(), "maps");
    EXPECT_EQ(element.ChildAt(2).Name(), "storyboards");
}

// Edge case: two writes differ only in "documentid".
TEST(Lesson, WritingTwiceDiffersOnlyInTheDocumentId) {
    auto lesson = Lesson::Create();
    lesson->Storyboards()->Add(Storyboard::Create());
    const std::string first = lesson->ToXMLString();
    const std::string second = lesson->ToXMLString();
    EXPECT_NE(first, second);
    EXPECT_NE(Parse(first).GetAttribute("documentid"), Parse(second).GetAttribute("documentid"));
    EXPECT_EQ(WithoutDocumentId(first), WithoutDocumentId(second));
    EXPECT_EQ(WithoutDocumentId(lesson->ToClearXMLString()), WithoutDocumentId(lesson->ToClearXMLString()));
}

TEST(Lesson, AttributesAreWrittenInOrder) {
    auto lesson = Lesson::Create();
    lesson->SetLessonID("L1");
    lesson->SetTitle("T");
    lesson->SetIdentifier("I");
    lesson->SetClassification("C");
    const std::string text = WithoutDocumentId(lesson->ToXMLString());
    EXPECT_EQ(text.substr(0, text.find('>') + 1),
              "<lesson lessonid=\"L1\" title=\"T\" identifier=\"I\" documentid=\"*\" classification=\"C\">");
}

// Edge case: a classified lesson has the attribute after "documentid" and the banner first and last.
TEST(Lesson, ClassificationIsWrittenAfterTheDocumentIdAndAsABannerFirstAndLast) {
    auto lesson = Lesson::Create();
    lesson->SetClassification("Confidential");
    xml::Document document = xml::Document::Create();
    xml::Element element = lesson->ToXMLElement(document);
    EXPECT_EQ(element.AttributeCount(), 4);
    const std::string text = element.Xml();
    EXPECT_LT(text.find("documentid="), text.find("classification=\"Confidential\""));
    ASSERT_EQ(element.ChildCount(), 5);
    const std::string banner = " ************ Confidential ************ ";
    EXPECT_EQ(element.FirstChild().Type(), xml::NodeType::Comment);
    EXPECT_EQ(element.FirstChild().Value(), banner);
    EXPECT_EQ(element.LastChild().Type(), xml::NodeType::Comment);
    EXPECT_EQ(element.LastChild().Value(), banner);
    EXPECT_EQ(element.ChildAt(1).Name(), "ppc");
    EXPECT_EQ(element.ChildAt(2).Name(), "maps");
    EXPECT_EQ(element.ChildAt(3).Name(), "storyboards");
    EXPECT_NE(text.find("<!-- ************ Confidential ************ --><ppc"), std::string::npos);
    EXPECT_NE(text.find("<storyboards/><!-- ************ Confidential ************ --></lesson>"),
              std::string::npos);
}

TEST(Lesson, WritingSwitchesOnWhitespacePreservationAndLeavesTheElementUnattached) {
    auto lesson = Lesson::Create();
    for (bool clear : {false, true}) {
        xml::Document document = xml::Document::Create();
        xml::Element element = clear ? lesson->ToClearXMLElement(document) : lesson->ToXMLElement(document);
        EXPECT_TRUE(document.PreserveWhiteSpace());
        EXPECT_TRUE(element.Parent().IsNull());
        EXPECT_TRUE(document.DocumentElement().IsNull());
    }
}

TEST(Lesson, TheClearFormWritesEncodedPropertiesPlainAndTheMapsAlike) {
    auto lesson = Lesson::Create();
    lesson->Properties()->SetString("hidden", "h", etBase64Encoded);
    auto sb = lesson->Storyboards()->Add(Storyboard::Create());
    sb->Properties()->SetLong("n", 3, etBase64Encoded);
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, sb->SBID());
    lesson->Maps()->Append(map);
    const std::string normal = lesson->ToXMLString();
    const std::string clear = lesson->ToClearXMLString();
    EXPECT_NE(normal.find("<encProp>"), std::string::npos);
    EXPECT_EQ(clear.find("<encProp"), std::string::npos);
    EXPECT_NE(clear.find("<stringProp name=\"hidden\">h</stringProp>"), std::string::npos);
    const auto mapsOf = [](const std::string& text) {
        return text.substr(text.find("<maps"), text.find("</maps>") - text.find("<maps"));
    };
    EXPECT_EQ(mapsOf(normal), mapsOf(clear));
}

TEST(Lesson, TheStringFormsStripControlCharacters) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("a\x01" "b\tc");
    lesson->Properties()->SetString("s", "x\x02y");
    const std::string text = lesson->ToXMLString();
    EXPECT_NE(text.find("title=\"ab&#9;c\""), std::string::npos) << text;
    EXPECT_NE(text.find(">xy<"), std::string::npos) << text;
    EXPECT_EQ(lesson->Title(), "a\x01" "b\tc");
}

TEST(Lesson, WritingNumbersTheStoryboards) {
    auto lesson = Lesson::Create();
    for (int i = 0; i < 3; ++i) {
        lesson->Storyboards()->Add(Storyboard::Create());
    }
    xml::Element element = Parse(lesson->ToXMLString());
    xml::Node storyboards = element.ChildAt(2);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(storyboards.ChildAt(i).AsElement().GetAttribute("shortid"), std::to_string(i));
    }
}

// Edge case: a lesson element without attributes or children.
TEST(Lesson, ReadingABareLessonElementGivesANewIdentityAndEmptyParts) {
    auto lesson = Lesson::Create();
    const std::string before = lesson->LessonID();
    lesson->SetTitle("Old");
    lesson->SetIdentifier("old");
    lesson->SetClassification("old");
    lesson->Properties()->SetString("k", "v");
    lesson->Storyboards()->Add(Storyboard::Create());
    lesson->Maps()->Append(LessonMap::Create());
    lesson->FromXMLElement(Parse("<lesson/>"));
    EXPECT_TRUE(IsGuidText(lesson->LessonID()));
    EXPECT_NE(lesson->LessonID(), before);
    EXPECT_EQ(lesson->Title(), "New Lesson");
    EXPECT_EQ(lesson->Identifier(), "");
    EXPECT_EQ(lesson->Classification(), "");
    EXPECT_EQ(lesson->Properties()->Count(), 0);
    EXPECT_EQ(lesson->Maps()->Count(), 0);
    EXPECT_EQ(lesson->Storyboards()->Count(), 0);
}

TEST(Lesson, ReadingReplacesThePartsAndIgnoresTheDocumentId) {
    auto lesson = Lesson::Create();
    auto oldProperties = lesson->Properties();
    auto oldMaps = lesson->Maps();
    auto oldStoryboards = lesson->Storyboards();
    lesson->FromXMLElement(Parse("<lesson lessonid=\"L\" title=\"T\" identifier=\"I\" documentid=\"D\" "
                                 "classification=\"C\"/>"));
    EXPECT_NE(lesson->Properties(), oldProperties);
    EXPECT_NE(lesson->Maps(), oldMaps);
    EXPECT_NE(lesson->Storyboards(), oldStoryboards);
    EXPECT_EQ(lesson->LessonID(), "L");
    EXPECT_EQ(lesson->Title(), "T");
    EXPECT_EQ(lesson->Identifier(), "I");
    EXPECT_EQ(lesson->Classification(), "C");
    EXPECT_EQ(Parse(lesson->ToXMLString()).GetAttribute("documentid") == std::optional<std::string>("D"), false);
}

// Edge case: parts in another order, among unknown elements.
TEST(Lesson, PartsInAnyOrderAmongUnknownElementsAreReadAlike) {
    const std::string parts[3] = {
        "<ppc name=\"properties\"><stringProp name=\"k\">v</stringProp></ppc>",
        "<maps default=\"M\"><map name=\"M\"><item sbid=\"S\"/></map></maps>",
        "<storyboards><storyboard sbid=\"S\" title=\"Page\"/></storyboards>",
    };
    auto usual = Lesson::Create();
    usual->FromXMLString("<lesson lessonid=\"L\" title=\"T\">" + parts[0] + parts[1] + parts[2] + "</lesson>");
    auto shuffled = Lesson::Create();
    shuffled->FromXMLString("<lesson lessonid=\"L\" title=\"T\"><x/>" + parts[2] + "<!-- c -->text<Maps/>" +
                            parts[1] + "<unknown><ppc name=\"other\"/></unknown>" + parts[0] + "<y/></lesson>");
    EXPECT_EQ(WithoutDocumentId(shuffled->ToXMLString()), WithoutDocumentId(usual->ToXMLString()));
    EXPECT_EQ(shuffled->Properties()->GetString("k", ""), "v");
    EXPECT_EQ(shuffled->Storyboards()->Item("S")->Title(), "Page");
    ASSERT_EQ(shuffled->Maps()->Count(), 1);
    EXPECT_EQ(MapItemIds(*shuffled->Maps()->ItemAt(0)), (Names{"S"}));
}

TEST(Lesson, OfTwoPartsOfTheSameNameTheLaterWins) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson><storyboards><storyboard sbid=\"A\"/></storyboards>"
                          "<ppc name=\"one\"><stringProp name=\"a\">1</stringProp></ppc>"
                          "<storyboards><storyboard sbid=\"B\"/></storyboards>"
                          "<ppc name=\"two\"><stringProp name=\"b\">2</stringProp></ppc></lesson>");
    EXPECT_EQ(StoryboardIds(*lesson), (Names{"B"}));
    EXPECT_FALSE(lesson->Properties()->Exists("a"));
    EXPECT_EQ(lesson->Properties()->GetString("b", ""), "2");
}

TEST(Lesson, AMissingPartLeavesItsCollectionEmpty) {
    auto lesson = Lesson::Create();
    lesson->Storyboards()->Add(Storyboard::Create());
    lesson->FromXMLString("<lesson title=\"x\"><ppc name=\"properties\"/></lesson>");
    EXPECT_EQ(lesson->Storyboards()->Count(), 0);
    EXPECT_EQ(lesson->Maps()->Count(), 0);
}

// Edge case: FromXMLString("") resets without an error.
TEST(Lesson, FromXMLStringOfEmptyTextResetsTheLesson) {
    auto lesson = Lesson::Create();
    const std::string before = lesson->LessonID();
    auto oldStoryboards = lesson->Storyboards();
    lesson->SetTitle("Old");
    oldStoryboards->Add(Storyboard::Create());
    EXPECT_NO_THROW(lesson->FromXMLString(""));
    EXPECT_NE(lesson->LessonID(), before);
    EXPECT_EQ(lesson->Title(), "New Lesson");
    EXPECT_NE(lesson->Storyboards(), oldStoryboards);
    EXPECT_EQ(lesson->Storyboards()->Count(), 0);
}

// Edge case: text that is not XML raises and changes nothing.
TEST(Lesson, FromXMLStringOfTextThatIsNotXmlRaisesAndChangesNothing) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("Kept");
    lesson->Storyboards()->Add(Storyboard::Create());
    const std::string before = WithoutDocumentId(lesson->ToXMLString());
    auto storyboards = lesson->Storyboards();
    for (const std::string text : {"not xml", "<lesson>", "<lesson/><lesson/>", "\x01\x02", "<lesson title=\"\xFF\"/>"}) {
        EXPECT_RAISES(lesson->FromXMLString(text), ErrXmlForm, "Lesson.FromXMLString",
                      "XML string could not be parsed.");
    }
    EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()), before);
    EXPECT_EQ(lesson->Storyboards(), storyboards);
}

// Edge case: text whose root is another element.
TEST(Lesson, FromXMLStringWithAnotherRootRaisesNotALessonElement) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("Kept");
    EXPECT_RAISES(lesson->FromXMLString("<storyboard/>"), ErrXmlForm, "Lesson.FromXMLElement",
                  "Element is not a <lesson> element");
    EXPECT_RAISES(lesson->FromXMLString("<Lesson/>"), ErrXmlForm, "Lesson.FromXMLElement",
                  "Element is not a <lesson> element");
    EXPECT_EQ(lesson->Title(), "Kept");
}

TEST(Lesson, FromXMLStringRemovesStrayControlCharactersBeforeParsing) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson\x01 title=\"a\x02" "b\"><ppc\x03 name=\"properties\"/></lesson>");
    EXPECT_EQ(lesson->Title(), "ab");
}

TEST(Lesson, FromXMLStringAcceptsADeclarationAndWhitespace) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<?xml version=\"1.0\"?>\r\n<lesson title=\"x\">\r\n\t<storyboards>\r\n\t\t"
                          "<storyboard sbid=\"A\"/>\r\n\t</storyboards>\r\n</lesson>\r\n");
    EXPECT_EQ(lesson->Title(), "x");
    EXPECT_EQ(StoryboardIds(*lesson), (Names{"A"}));
}

TEST(Lesson, AFailingPartLeavesTheLessonResetAndPartlyFilled) {
    auto lesson = Lesson::Create();
    lesson->Storyboards()->Add(Storyboard::Create());
    std::string text = "<lesson lessonid=\"L\"><ppc name=\"properties\"><stringProp name=\"k\">v</stringProp></ppc>"
                       "<storyboards>";
    for (int i = 0; i < 32769; ++i) {
        text += "<x/>";
    }
    text += "</storyboards></lesson>";
    EXPECT_RAISES(lesson->FromXMLString(text), ErrOverflow, "StoryboardCollection.FromXMLElement", "Overflow");
    EXPECT_EQ(lesson->LessonID(), "L");
    EXPECT_EQ(lesson->Properties()->GetString("k", ""), "v");
    EXPECT_EQ(lesson->Storyboards()->Count(), 0);
}

TEST(Lesson, TheDesignExampleWorks) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("Fractions");
    auto page = lesson->Storyboards()->Add(Storyboard::Create());
    page->Properties()->SetString("caption", "Halves and quarters");
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, page->SBID());
    lesson->Maps()->Append(map);
    std::string text = lesson->ToXMLString();

    auto copy = Lesson::Create();
    copy->FromXMLString(text);
    EXPECT_EQ(copy->Title(), "Fractions");
    EXPECT_EQ(copy->LessonID(), lesson->LessonID());
    ASSERT_EQ(copy->Storyboards()->Count(), 1);
    EXPECT_EQ(copy->Storyboards()->Item(page->SBID())->Properties()->GetString("caption", ""),
              "Halves and quarters");
    ASSERT_EQ(copy->Maps()->Count(), 1);
    EXPECT_EQ(MapItemIds(*copy->Maps()->ItemAt(0)), (Names{page->SBID()}));
    int visited = 0;
    for (auto& sb : *copy->Storyboards()) {
        EXPECT_EQ(sb->SBID(), page->SBID());
        ++visited;
    }
    EXPECT_EQ(visited, 1);
}

// Failure table.
TEST(LessonFailures, ToXMLElementNullDocument) {
    EXPECT_RAISES(Lesson::Create()->ToXMLElement(xml::Document()), 94, "Lesson.ToXMLElement",
                  "Document cannot be null");
}

TEST(LessonFailures, ToClearXMLElementNullDocument) {
    EXPECT_RAISES(Lesson::Create()->ToClearXMLElement(xml::Document()), 94, "Lesson.ToClearXMLElement",
                  "Document cannot be null");
}

TEST(LessonFailures, FromXMLElementNullElement) {
    auto lesson = Lesson::Create();
    const std::string id = lesson->LessonID();
    EXPECT_RAISES(lesson->FromXMLElement(xml::Element()), 94, "Lesson.FromXMLElement", "Element cannot be null");
    EXPECT_EQ(lesson->LessonID(), id);
}

TEST(LessonFailures, FromXMLElementNameIsNotLesson) {
    auto lesson = Lesson::Create();
    const std::string id = lesson->LessonID();
    auto storyboards = lesson->Storyboards();
    EXPECT_RAISES(lesson->FromXMLElement(Parse("<ppc/>")), -2147220503, "Lesson.FromXMLElement",
                  "Element is not a <lesson> element");
    EXPECT_EQ(lesson->LessonID(), id);
    EXPECT_EQ(lesson->Storyboards(), storyboards);
}

TEST(LessonFailures, FromXMLStringTextDoesNotParse) {
    EXPECT_RAISES(Lesson::Create()->FromXMLString("<lesson"), -2147220503, "Lesson.FromXMLString",
                  "XML string could not be parsed.");
}

}  // namespace
}  // namespace quillbank

namespace quillbank {
namespace {

std::string Nest(const std::string& open, const std::string& close, int depth, const std::string& inner = "") {
    std::string text;
    text.reserve(static_cast<std::size_t>(depth) * (open.size() + close.size()) + inner.size());
    for (int i = 0; i < depth; ++i) text += open;
    text += inner;
    for (int i = 0; i < depth; ++i) text += close;
    return text;
}

TEST(LessonBadInput, DeeplyNestedUnknownElementsAreSkipped) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson title=\"deep\">" + Nest("<x>", "</x>", 20000, "<storyboards/>") +
                          "<storyboards>" + Nest("<y>", "</y>", 20000) +
                          "<storyboard sbid=\"A\">" + Nest("<z>", "</z>", 20000) + "</storyboard></storyboards></lesson>");
    EXPECT_EQ(lesson->Title(), "deep");
    EXPECT_EQ(StoryboardIds(*lesson), (Names{"A"}));
}

TEST(LessonBadInput, DeeplyNestedMapItemsAreReadAndWritten) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson><maps><map name=\"M\">" + Nest("<item sbid=\"A\">", "</item>", 5000) +
                          "</map></maps><storyboards><storyboard sbid=\"A\"/></storyboards></lesson>");
    ASSERT_EQ(lesson->Maps()->Count(), 1);
    EXPECT_EQ(MapItemIds(*lesson->Maps()->ItemAt(0)).size(), 5000u);
    auto dup = lesson->Duplicate();
    const auto ids = MapItemIds(*dup->Maps()->ItemAt(0));
    ASSERT_EQ(ids.size(), 5000u);
    EXPECT_EQ(ids.back(), dup->Storyboards()->begin()->get()->SBID());
    EXPECT_NE(lesson->ToXMLString().find("<item sbid=\"A\"><item sbid=\"A\">"), std::string::npos);
}

TEST(LessonBadInput, WrongNamesAtEveryLevelAreSkippedOrRefused) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString("<lesson><PPC/><Maps/><Storyboards/><storyboards><Storyboard sbid=\"X\"/>"
                          "<storyboard sbid=\"A\"><PPC/><CEC/></storyboard></storyboards></lesson>");
    EXPECT_EQ(StoryboardIds(*lesson), (Names{"A"}));
    EXPECT_RAISES(lesson->FromXMLString("<LESSON/>"), ErrXmlForm, "Lesson.FromXMLElement",
                  "Element is not a <lesson> element");
}

}  // namespace
}  // namespace quillbank
