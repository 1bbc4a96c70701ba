// The string forms leave out their pass that removes control characters
// when none was written; with or without it they are the "xml" of the
// elements the element writers build, control characters removed, for every
// control character in every place a value is written.

#include <gtest/gtest.h>

#include <string>

#include <quillbank/quillbank.hpp>

#include "lesson/lesson_helpers.hpp"
#include "lesson/sample_lessons.hpp"

namespace quillbank {
namespace {

using testing::ElementXml;
using testing::WithoutDocumentId;

void ExpectLessonFormsAreTheElements(const Lesson& lesson) {
    EXPECT_EQ(WithoutDocumentId(lesson.ToXMLString()),
              WithoutDocumentId(ElementXml(lesson.ToXMLElement(xml::Document::Create()))));
    EXPECT_EQ(WithoutDocumentId(lesson.ToClearXMLString()),
              WithoutDocumentId(ElementXml(lesson.ToClearXMLElement(xml::Document::Create()))));
}

TEST(StringFormControls, GeneratedLessonsAreTheXmlOfTheirElements) {
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        ExpectLessonFormsAreTheElements(*testing::LessonGenerator(seed).Make());
    }
    ExpectLessonFormsAreTheElements(*testing::MakeFixedLesson());
}

// Every control character but NUL in an attribute, in node text, in an
// encoded property, in a comment and in a map's stored element.
TEST(StringFormControls, EveryControlCharacterInEveryPlace) {
    for (int code = 1; code < 0x20; ++code) {
        const std::string c(1, static_cast<char>(code));
        SCOPED_TRACE("character " + std::to_string(code));
        for (int place = 0; place < 5; ++place) {
            auto lesson = Lesson::Create();
            auto sb = Storyboard::Create();
            lesson->Storyboards()->Add(sb);
            auto bag = sb->Properties();
            bag->SetString("plain", "text");
            switch (place) {
                case 0: sb->SetTitle("a" + c + "b"); break;
                case 1: bag->SetString("value", "a" + c + "b"); break;
                case 2: bag->SetString("value", "a" + c + "b", etBase64Encoded); break;
                case 3: lesson->SetClassification("level" + c); break;
                case 4: {
                    auto map = LessonMap::Create();
                    map->SetName("map" + c);
                    map->InsertStoryboard("", sbitInsertAfter, sb->SBID());
                    lesson->Maps()->Append(map);
                    break;
                }
            }
            SCOPED_TRACE("place " + std::to_string(place));
            ExpectLessonFormsAreTheElements(*lesson);
            EXPECT_EQ(bag->ToXMLString(), ElementXml(bag->ToXMLElement(xml::Document::Create())));
            EXPECT_EQ(bag->ToClearXMLString(), ElementXml(bag->ToClearXMLElement(xml::Document::Create())));

            auto child = ChildElement::Create();
            child->SetName(place == 0 ? "n" + c : "n");
            child->SetElementType("t");
            child->SetString("value", "a" + c + "b", place == 2 ? etBase64Encoded : etNotEncoded);
            EXPECT_EQ(child->ToXMLString(), ElementXml(child->ToXMLElement(xml::Document::Create())));
            EXPECT_EQ(child->ToClearXMLString(), ElementXml(child->ToClearXMLElement(xml::Document::Create())));
        }
    }
}

// A character from U+001A to U+001F is not removed: it stays in the string
// forms as the element holds it.
TEST(StringFormControls, TheCharactersFrom1AOnAreKept) {
    auto bag = PersistedPropertyCollection::Create();
    bag->SetString("value", "a\x1A\x1F" "b");
    const std::string text = bag->ToXMLString();
    EXPECT_NE(text.find("a\x1A\x1F" "b"), std::string::npos) << text;
    bag->SetString("value", "a\x01\x1A" "b");
    EXPECT_NE(bag->ToXMLString().find(">a\x1A" "b<"), std::string::npos) << bag->ToXMLString();
}

}  // namespace
}  // namespace quillbank
