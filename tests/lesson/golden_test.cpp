// The written bytes of a complete lesson are pinned by files under
// tests/data; the only part that varies between writes, "documentid", is
// replaced by the empty GUID before comparing. A deliberate change to the
// written form is recorded by running this test with QUILLBANK_UPDATE_GOLDEN=1
// and reviewing the changed files.

#include <gtest/gtest.h>

#include <quillbank/quillbank.hpp>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>

#include "lesson/lesson_helpers.hpp"
#include "lesson/sample_lessons.hpp"

namespace quillbank {
namespace {

const std::string kDataDir = QUILLBANK_TEST_DATA_DIR;

std::string PinDocumentId(const std::string& text) {
    static const std::regex documentId("documentid=\"[0-9A-F-]{36}\"");
    return std::regex_replace(text, documentId, "documentid=\"00000000-0000-0000-0000-000000000000\"",
                              std::regex_constants::format_first_only);
}

std::string ReadFile(const std::string& name) {
    std::ifstream in(kDataDir + "/" + name, std::ios::binary);
    EXPECT_TRUE(in.good()) << "missing " << name;
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void CheckGolden(const std::string& name, const std::string& written) {
    const std::string pinned = PinDocumentId(written);
    if (std::getenv("QUILLBANK_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(kDataDir + "/" + name, std::ios::binary) << pinned;
    }
    EXPECT_EQ(pinned, ReadFile(name)) << name;
}

TEST(LessonGolden, NormalFormIsPinnedByteForByte) {
    CheckGolden("lesson_normal.xml", testing::MakeFixedLesson()->ToXMLString());
}

TEST(LessonGolden, ClearFormIsPinnedByteForByte) {
    CheckGolden("lesson_clear.xml", testing::MakeFixedLesson()->ToClearXMLString());
}

TEST(LessonGolden, OnlyTheDocumentIdVaries) {
    auto lesson = testing::MakeFixedLesson();
    const std::string first = lesson->ToXMLString();
    const std::string second = lesson->ToXMLString();
    EXPECT_NE(first, second);
    EXPECT_EQ(PinDocumentId(first), PinDocumentId(second));
    EXPECT_EQ(PinDocumentId(lesson->ToXMLString()), PinDocumentId(testing::MakeFixedLesson()->ToXMLString()));
}

TEST(LessonGolden, TheNormalFileReadsBackToTheSameBytesInBothForms) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(ReadFile("lesson_normal.xml"));
    EXPECT_EQ(PinDocumentId(lesson->ToXMLString()), ReadFile("lesson_normal.xml"));
    EXPECT_EQ(PinDocumentId(lesson->ToClearXMLString()), ReadFile("lesson_clear.xml"));
}

TEST(LessonGolden, TheClearFileReadsBackWithEveryPropertyPlain) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(ReadFile("lesson_clear.xml"));
    EXPECT_EQ(PinDocumentId(lesson->ToClearXMLString()), ReadFile("lesson_clear.xml"));
    EXPECT_EQ(lesson->Properties()->GetEncodingType("notes"), etNotEncoded);
    EXPECT_EQ(lesson->Properties()->GetString("notes", ""),
              "\xE5\x88\x86\xE6\x95\xB0\xE3\x81\xAE\xE7\xB7\xB4\xE7\xBF\x92 \xE2\x82\xAC");
}

TEST(LessonGolden, TheNormalFileReadsBackEveryPart) {
    auto lesson = Lesson::Create();
    lesson->FromXMLString(ReadFile("lesson_normal.xml"));
    EXPECT_EQ(lesson->LessonID(), "6F1C2A4E-0B7D-4C3A-9E21-5D8B7F0A1C33");
    EXPECT_EQ(lesson->Title(), "Fractions \xE2\x80\x94 halves & quarters");
    EXPECT_EQ(lesson->Classification(), "Internal Use");
    EXPECT_EQ(lesson->Properties()->GetEncodingType("notes"), etBase64Encoded);
    EXPECT_EQ(lesson->Properties()->GetLong("\xE6\x95\xB0", 0), 7);
    EXPECT_EQ(lesson->Maps()->Count(), 3);
    EXPECT_EQ(lesson->Maps()->DefaultMap()->Name(), "Review");
    EXPECT_EQ(testing::MapItemIds(*lesson->Maps()->Item("Main")),
              (std::vector<std::string>{"A1B2C3D4-0000-4000-8000-000000000001", "A1B2C3D4-0000-4000-8000-000000000002",
                                        "A1B2C3D4-0000-4000-8000-000000000003", "A1B2C3D4-0000-4000-8000-000000000003"}));
    ASSERT_EQ(lesson->Storyboards()->Count(), 3);
    auto page = lesson->Storyboards()->Item("a1b2c3d4-0000-4000-8000-000000000002");
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->Children()->Count(), 2);
    auto members = page->Children()->Item(1)->GetCEC("hiddenMembers", nullptr);
    ASSERT_NE(members, nullptr);
    EXPECT_EQ(members->Item(0)->GetRectangle("bounds", {}), (Rectangle{1, 2, 3, 4}));
    auto style = page->Properties()->GetPPC("hiddenStyle", nullptr);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->GetCEC("steps", nullptr)->Item(0)->GetString("body", ""), "Fold the paper once.");
}

}  // namespace
}  // namespace quillbank
