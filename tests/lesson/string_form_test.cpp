// The string forms are written as text directly, without building the
// elements first; they must be exactly the "xml" of the elements the element
// writers build (control characters removed), byte for byte, for every
// kind of content, and fail the same way when the elements cannot be built.

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <quillbank/quillbank.hpp>

#include "lesson/lesson_helpers.hpp"
#include "lesson_generator.hpp"

namespace quillbank {
namespace {

using testing::ElementXml;
using testing::WithoutDocumentId;

// A lesson with every awkward kind of value the writers meet.
std::shared_ptr<Lesson> AwkwardLesson() {
    auto lesson = Lesson::Create();
    lesson->SetTitle("Quotes \" and <tags> & ampersands\tand\r\nlines");
    lesson->SetIdentifier("ident\x01with control");
    lesson->SetClassification("Restricted — ünïcödé");
    auto bag = lesson->Properties();
    bag->SetString("plain", "line one\r\nline two\nline three\rend");
    bag->SetString("encoded", "Grüße, 世界 \"quoted\" <b>", etBase64Encoded);
    bag->SetString("ansi encoded", "Café \x02 bar", etBase64Encoded);
    bag->SetString("holds a nul", std::string("before\0after", 12));
    bag->SetString("empty", "");
    bag->SetLong("Zeta", -42);
    bag->SetDouble("alpha", 0.1);
    bag->SetBoolean("flag", true, etBase64Encoded);
    bag->SetFont("font", Functions::NewFontData("Times \"New\" Roman", 10.5, true, false, true));
    bag->SetAsset("asset", Functions::NewAssetData("a&b.png", "  \t\r\n ", "source\r\nsecond line"));
    LocationData location = Functions::NewLocationData("", "END", "");
    bag->SetLocation("loc", location);
    bag->SetRectangle("rect", Functions::NewRectangle(1, -2, 3, 4), etBase64Encoded);
    bag->SetColor("color", 0x00FF8000);
    bag->SetDate("date", 45000.5);

    auto nested = PersistedPropertyCollection::Create();
    nested->SetString("inner", "x > y", etBase64Encoded);
    nested->SetString("", "a nameless property hides its group");
    bag->SetPPC("nested", nested);
    bag->SetPPC("empty bag", PersistedPropertyCollection::Create());

    auto sb = Storyboard::Create();
    sb->SetTitle("Ünïcödé title");
    sb->SetClassification("secret");
    sb->Properties()->SetString("caption", "Hello\x03 world");
    auto child = ChildElement::Create();
    child->SetName("caption\x04");
    child->SetElementType("text");
    child->SetString("text", "In the child", etBase64Encoded);
    auto list = ChildElementCollection::Create();
    list->Append(child->Clone());
    child->SetCEC("list", list);
    sb->Children()->Append(child);
    lesson->Storyboards()->Add(sb);
    lesson->Storyboards()->Add(Storyboard::Create());

    auto map = LessonMap::Create();
    map->SetName("Main & <only>");
    map->InsertStoryboard("", sbitInsertAfter, sb->SBID());
    lesson->Maps()->Append(map);
    lesson->Maps()->SetDefaultMap(map);
    return lesson;
}

TEST(StringForms, TheLessonStringFormsAreTheXmlOfTheElements) {
    for (const auto& lesson : {AwkwardLesson(), bench::GenerateLesson(40, 3), Lesson::Create()}) {
        EXPECT_EQ(WithoutDocumentId(lesson->ToXMLString()),
                  WithoutDocumentId(ElementXml(lesson->ToXMLElement(xml::Document::Create()))));
        EXPECT_EQ(WithoutDocumentId(lesson->ToClearXMLString()),
                  WithoutDocumentId(ElementXml(lesson->ToClearXMLElement(xml::Document::Create()))));
    }
}

// The document model's text ends at a NUL: the property is written with the
// part of its value before the NUL, in both forms, and never left out.
TEST(StringForms, ThePropertyHoldingANulIsWrittenCutAtTheNul) {
    const auto lesson = AwkwardLesson();
    for (const std::string& text : {lesson->ToXMLString(), lesson->ToClearXMLString()}) {
        const std::size_t at = text.find("name=\"holds a nul\"");
        ASSERT_NE(at, std::string::npos) << text;
        const std::string written = "name=\"holds a nul\">before</stringProp>";
        EXPECT_EQ(text.compare(at, written.size(), written), 0) << text.substr(at, 40);
        EXPECT_EQ(text.find("after"), std::string::npos);
        EXPECT_NE(text.find("name=\"plain\""), std::string::npos);
    }
    auto back = Lesson::Create();
    back->FromXMLString(lesson->ToXMLString());
    EXPECT_EQ(back->Properties()->GetString("holds a nul", "absent"), "before");
}

TEST(StringForms, TheBagAndChildElementStringFormsAreTheXmlOfTheElements) {
    const auto lesson = AwkwardLesson();
    const auto bag = lesson->Properties();
    EXPECT_EQ(bag->ToXMLString(), ElementXml(bag->ToXMLElement(xml::Document::Create())));
    EXPECT_EQ(bag->ToClearXMLString(), ElementXml(bag->ToClearXMLElement(xml::Document::Create())));
    const auto child = (*lesson->Storyboards()->begin())->Children()->Item(0);
    EXPECT_EQ(child->ToXMLString(), ElementXml(child->ToXMLElement(xml::Document::Create())));
    EXPECT_EQ(child->ToClearXMLString(), ElementXml(child->ToClearXMLElement(xml::Document::Create())));
}

// Both ways of writing fail alike where the element cannot be built.
void ExpectSameFailure(const std::function<void()>& direct, const std::function<void()>& throughElements) {
    std::int32_t number = 0;
    std::string source;
    std::string description;
    try {
        throughElements();
        ADD_FAILURE() << "writing the elements did not fail";
    } catch (const Error& error) {
        number = error.Number();
        source = error.Source();
        description = error.Description();
    }
    try {
        direct();
        ADD_FAILURE() << "writing the string did not fail";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), number);
        EXPECT_EQ(error.Source(), source);
        EXPECT_EQ(error.Description(), description);
    }
}

// A name holding a NUL is cut there by both ways of writing alike.
TEST(StringForms, ANameHoldingANulIsCutAlikeBothWays) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetName(std::string("with\0nul", 8));
    bag->SetLong("n", 1);
    EXPECT_EQ(bag->ToXMLString(), ElementXml(bag->ToXMLElement(xml::Document::Create())));
    EXPECT_EQ(bag->ToXMLString().rfind("<ppc name=\"with\">", 0), 0u) << bag->ToXMLString();

    auto lesson = Lesson::Create();
    lesson->SetTitle(std::string("\0", 1));
    EXPECT_EQ(WithoutDocumentId(lesson->ToClearXMLString()),
              WithoutDocumentId(ElementXml(lesson->ToClearXMLElement(xml::Document::Create()))));
    EXPECT_NE(lesson->ToClearXMLString().find(" title=\"\" "), std::string::npos);
}

// A classification holding "-->" would end the classification comment early:
// the document model refuses the comment, and both ways of writing fail with
// its error.
TEST(StringForms, AClassificationHoldingACommentEndFailsBothWaysAlike) {
    auto lesson = Lesson::Create();
    lesson->SetClassification("secret --> open");
    ExpectSameFailure([&] { (void)lesson->ToXMLString(); },
                      [&] { (void)lesson->ToXMLElement(xml::Document::Create()); });
    ExpectSameFailure([&] { (void)lesson->ToClearXMLString(); },
                      [&] { (void)lesson->ToClearXMLElement(xml::Document::Create()); });
    try {
        (void)lesson->ToXMLString();
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), ErrXmlDom);
        EXPECT_EQ(error.Source(), "msxml3.dll");
        EXPECT_EQ(error.Description(), "A comment cannot contain \"-->\".");
    }
}

}  // namespace
}  // namespace quillbank
