// The lesson generator of the benchmarks: the same size and seed give the
// same lesson, the lesson has the promised shape, and it survives a write
// and a read unchanged.

#include <gtest/gtest.h>

#include <set>
#include <string>

#include <quillbank/quillbank.hpp>

#include "lesson/lesson_helpers.hpp"
#include "lesson_generator.hpp"

namespace quillbank {
namespace {

using testing::WithoutDocumentId;

TEST(GeneratedLesson, TheSameSizeAndSeedGiveTheSameLesson) {
    const std::string first = WithoutDocumentId(bench::GenerateLesson(30, 4)->ToXMLString());
    EXPECT_EQ(WithoutDocumentId(bench::GenerateLesson(30, 4)->ToXMLString()), first);
    EXPECT_NE(WithoutDocumentId(bench::GenerateLesson(30, 5)->ToXMLString()), first);
    EXPECT_EQ(bench::GeneratedSBIDs(3, 4), bench::GeneratedSBIDs(3, 4));
    EXPECT_NE(bench::GeneratedSBID(4, 0), bench::GeneratedSBID(5, 0));
}

TEST(GeneratedLesson, HasTheStoryboardsPropertiesAndMapsItPromises) {
    constexpr int kCount = 50;
    auto lesson = bench::GenerateLesson(kCount, 9);
    ASSERT_EQ(lesson->Storyboards()->Count(), kCount);
    const auto ids = bench::GeneratedSBIDs(kCount, 9);
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), ids.size());
    int encoded = 0;
    int total = 0;
    std::set<PropertyTypes> types;
    int index = 0;
    for (auto& sb : *lesson->Storyboards()) {
        EXPECT_EQ(sb->SBID(), ids[static_cast<std::size_t>(index++)]);
        EXPECT_TRUE(testing::IsGuidText(sb->SBID()));
        const auto bag = sb->Properties();
        EXPECT_GE(bag->Count(), 12);
        for (const auto& name : bag->GetPropertyNameArray()) {
            types.insert(bag->GetPropertyType(name));
            encoded += bag->GetEncodingType(name) == etBase64Encoded ? 1 : 0;
            ++total;
        }
        EXPECT_GE(sb->Children()->Count(), 3);
    }
    EXPECT_EQ(types.size(), 12u);
    // About a fifth encoded.
    EXPECT_GT(encoded * 10, total);
    EXPECT_LT(encoded * 10, total * 3);
    ASSERT_EQ(lesson->Maps()->Count(), 3);
    EXPECT_EQ(lesson->Maps()->DefaultMap()->Name(), "Review");
    for (std::int32_t m = 0; m < 3; ++m) {
        for (const auto& id : ids) {
            EXPECT_TRUE(lesson->Maps()->ItemAt(m)->Contains(id));
        }
    }
}

TEST(GeneratedLesson, SurvivesAWriteAndARead) {
    auto lesson = bench::GenerateLesson(40, 2);
    const std::string text = lesson->ToXMLString();
    auto read = Lesson::Create();
    read->FromXMLString(text);
    EXPECT_EQ(WithoutDocumentId(read->ToXMLString()), WithoutDocumentId(text));
    EXPECT_EQ(WithoutDocumentId(read->ToClearXMLString()), WithoutDocumentId(lesson->ToClearXMLString()));
}

}  // namespace
}  // namespace quillbank
