// Generated lessons survive a write and a read unchanged; Clone equals its
// source; Duplicate keeps every reference consistent.

#include <gtest/gtest.h>

#include <quillbank/quillbank.hpp>

#include <set>
#include <string>
#include <vector>

#include "lesson/lesson_helpers.hpp"
#include "lesson/sample_lessons.hpp"

namespace quillbank {
namespace {

using testing::LessonGenerator;
using testing::MapItemIds;
using testing::StoryboardIds;
using testing::WithoutDocumentId;

constexpr std::uint32_t kSeeds = 25;

// Equal texts, or the place where they part.
::testing::AssertionResult SameText(const std::string& actual, const std::string& expected) {
    if (actual == expected) {
        return ::testing::AssertionSuccess();
    }
    std::size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) {
        ++at;
    }
    const std::size_t from = at < 120 ? 0 : at - 120;
    return ::testing::AssertionFailure() << "texts part at " << at << "\n  actual:   ..." << actual.substr(from, 200)
                                         << "\n  expected: ..." << expected.substr(from, 200);
}

// What a reader must reproduce, compared part by part so that a failure
// names the part.
void ExpectSameLesson(const Lesson& expected, const Lesson& actual) {
    EXPECT_EQ(actual.LessonID(), expected.LessonID());
    EXPECT_EQ(actual.Title(), expected.Title());
    EXPECT_EQ(actual.Identifier(), expected.Identifier());
    EXPECT_EQ(actual.Classification(), expected.Classification());
    EXPECT_EQ(actual.Properties()->ToClearXMLString(), expected.Properties()->ToClearXMLString());
    EXPECT_TRUE(SameText(actual.Properties()->ToXMLString(), expected.Properties()->ToXMLString()));

    ASSERT_EQ(actual.Maps()->Count(), expected.Maps()->Count());
    for (std::int32_t i = 0; i < expected.Maps()->Count(); ++i) {
        EXPECT_EQ(actual.Maps()->ItemAt(i)->Name(), expected.Maps()->ItemAt(i)->Name());
        EXPECT_EQ(actual.Maps()->ItemAt(i)->ToXMLElement().Xml(), expected.Maps()->ItemAt(i)->ToXMLElement().Xml());
    }
    // A single map without a default comes back as the stored default.
    const auto expectedDefault = expected.Maps()->DefaultMap();
    const std::int32_t expectedIndex =
        expectedDefault ? expected.Maps()->IndexOf(expectedDefault) : (expected.Maps()->Count() > 0 ? 0 : -1);
    EXPECT_EQ(actual.Maps()->IndexOf(actual.Maps()->DefaultMap()), expectedIndex);

    ASSERT_EQ(StoryboardIds(actual), StoryboardIds(expected));
    auto e = expected.Storyboards()->begin();
    for (auto& sb : *actual.Storyboards()) {
        const auto& want = *e++;
        EXPECT_EQ(sb->Title(), want->Title());
        EXPECT_EQ(sb->Identifier(), want->Identifier());
        EXPECT_EQ(sb->SBType(), want->SBType());
        EXPECT_EQ(sb->Classification(), want->Classification());
        EXPECT_TRUE(SameText(sb->Properties()->ToXMLString(), want->Properties()->ToXMLString()));
        ASSERT_EQ(sb->Children()->Count(), want->Children()->Count());
        for (std::int32_t i = 0; i < want->Children()->Count(); ++i) {
            EXPECT_TRUE(SameText(sb->Children()->Item(i)->ToXMLString(), want->Children()->Item(i)->ToXMLString()));
        }
    }
}

TEST(LessonRoundTrip, GeneratedLessonsSurviveTheNormalForm) {
    for (std::uint32_t seed = 1; seed <= kSeeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        auto lesson = LessonGenerator(seed).Make();
        const std::string text = lesson->ToXMLString();
        auto read = Lesson::Create();
        read->FromXMLString(text);
        ExpectSameLesson(*lesson, *read);
        EXPECT_TRUE(SameText(WithoutDocumentId(read->ToXMLString()), WithoutDocumentId(text)));
        EXPECT_TRUE(SameText(WithoutDocumentId(read->ToClearXMLString()), WithoutDocumentId(lesson->ToClearXMLString())));
    }
}

TEST(LessonRoundTrip, GeneratedLessonsSurviveTheClearFormExceptForEncodings) {
    for (std::uint32_t seed = 1; seed <= kSeeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        auto lesson = LessonGenerator(seed).Make();
        const std::string clear = lesson->ToClearXMLString();
        auto read = Lesson::Create();
        read->FromXMLString(clear);
        EXPECT_TRUE(SameText(WithoutDocumentId(read->ToClearXMLString()), WithoutDocumentId(clear)));
        EXPECT_EQ(StoryboardIds(*read), StoryboardIds(*lesson));
    }
}

TEST(LessonRoundTrip, CloneEqualsTheSource) {
    for (std::uint32_t seed = 1; seed <= kSeeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        auto lesson = LessonGenerator(seed).Make();
        auto clone = lesson->Clone();
        ExpectSameLesson(*lesson, *clone);
        EXPECT_TRUE(SameText(WithoutDocumentId(clone->ToXMLString()), WithoutDocumentId(lesson->ToXMLString())));
    }
}

// Every location start and end point in a bag and in everything nested in it.
void CollectLocations(const std::shared_ptr<PersistedPropertyCollection>& root, std::vector<LocationData>& out) {
    std::vector<std::shared_ptr<PersistedPropertyCollection>> pending{root};
    while (!pending.empty()) {
        auto bag = pending.back();
        pending.pop_back();
        if (!bag) continue;
        for (const std::string& name : bag->GetPropertyNameArray()) {
            if (name.empty()) continue;
            switch (bag->GetPropertyType(name)) {
                case ptLocation: out.push_back(bag->GetLocation(name, {})); break;
                case ptPPC: pending.push_back(bag->GetPPC(name, nullptr)); break;
                case ptCEC: {
                    auto list = bag->GetCEC(name, nullptr);
                    for (std::int32_t i = 0; list && i < list->Count(); ++i) {
                        pending.push_back(list->Item(i)->PPCObject());
                    }
                    break;
                }
                default: break;
            }
        }
    }
}

std::vector<LocationData> LocationsOfStoryboards(const Lesson& lesson) {
    std::vector<LocationData> out;
    for (auto& sb : *lesson.Storyboards()) {
        CollectLocations(sb->Properties(), out);
        for (std::int32_t i = 0; i < sb->Children()->Count(); ++i) {
            CollectLocations(sb->Children()->Item(i)->PPCObject(), out);
        }
    }
    return out;
}

TEST(LessonRoundTrip, DuplicateKeepsEveryReferenceConsistent) {
    for (std::uint32_t seed = 1; seed <= kSeeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        auto lesson = LessonGenerator(seed).Make();
        auto dup = lesson->Duplicate();
        const auto oldIds = StoryboardIds(*lesson);
        const auto newIds = StoryboardIds(*dup);
        ASSERT_EQ(newIds.size(), oldIds.size());
        const std::set<std::string> oldSet(oldIds.begin(), oldIds.end());
        auto translate = [&](const std::string& id) {
            for (std::size_t i = 0; i < oldIds.size(); ++i) {
                if (oldIds[i] == id) return newIds[i];
            }
            return id;
        };
        for (const std::string& id : newIds) {
            EXPECT_EQ(oldSet.count(id), 0u);
        }

        // Maps: same names and shapes, every item translated.
        ASSERT_EQ(dup->Maps()->Count(), lesson->Maps()->Count());
        for (std::int32_t m = 0; m < lesson->Maps()->Count(); ++m) {
            std::vector<std::string> expected;
            for (const std::string& id : MapItemIds(*lesson->Maps()->ItemAt(m))) {
                expected.push_back(translate(id));
            }
            EXPECT_EQ(MapItemIds(*dup->Maps()->ItemAt(m)), expected);
            EXPECT_EQ(dup->Maps()->ItemAt(m)->Name(), lesson->Maps()->ItemAt(m)->Name());
        }
        EXPECT_EQ(dup->Maps()->IndexOf(dup->Maps()->DefaultMap()),
                  lesson->Maps()->IndexOf(lesson->Maps()->DefaultMap()));

        // Locations: the same ones, in the same places, translated.
        const auto before = LocationsOfStoryboards(*lesson);
        const auto after = LocationsOfStoryboards(*dup);
        ASSERT_EQ(after.size(), before.size());
        std::multiset<std::string> wanted, got;
        for (const auto& l : before) wanted.insert(translate(l.StartPoint) + "|" + translate(l.EndPoint) + "|" + l.MapName);
        for (const auto& l : after) got.insert(l.StartPoint + "|" + l.EndPoint + "|" + l.MapName);
        EXPECT_EQ(got, wanted);
        for (const auto& l : after) {
            EXPECT_TRUE(dup->Storyboards()->Contains(l.StartPoint) || !oldSet.count(l.StartPoint)) << l.StartPoint;
            EXPECT_TRUE(l.EndPoint.empty() || dup->Storyboards()->Contains(l.EndPoint) || !oldSet.count(l.EndPoint));
        }
        EXPECT_EQ(dup->Properties()->Count(), 0);
    }
}

TEST(LessonRoundTrip, ALargeLessonReadsBackWhole) {
    auto lesson = LessonGenerator(99).Make(600);
    auto read = Lesson::Create();
    read->FromXMLString(lesson->ToXMLString());
    ExpectSameLesson(*lesson, *read);
}

}  // namespace
}  // namespace quillbank
