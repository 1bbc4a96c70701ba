#include <quillbank/lesson.hpp>

#include <gtest/gtest.h>

#include <quillbank/quillbank.hpp>

#include <string>
#include <vector>

#include "lesson/lesson_helpers.hpp"
#include "storyboards/storyboard_access.hpp"

namespace quillbank {
namespace {

using testing::IsGuidText;
using testing::MapItemIds;
using testing::StoryboardIds;
using testing::WithoutDocumentId;
using Names = std::vector<std::string>;

constexpr const char* kOutside = "OUTSIDE-SBID";

// A lesson of three storyboards A, B, C, two maps (the second the default)
// and location properties at every level that can hold one.
struct Sample {
    std::shared_ptr<Lesson> lesson = Lesson::Create();
    std::shared_ptr<Storyboard> a, b, c;
    std::shared_ptr<LessonMap> first, second;

    Sample() {
        lesson->SetTitle("Sample");
        lesson->SetIdentifier("ID");
        lesson->SetClassification("Class");
        lesson->Properties()->SetString("own", "property");
        a = AddStoryboard("Alpha");
        b = AddStoryboard("Beta");
        c = AddStoryboard("Gamma");

        LocationData toB{b->SBID(), c->SBID(), "Main"};
        a->Properties()->SetLocation("next", toB);
        LocationData outside{kOutside, a->SBID(), "Other"};
        a->Properties()->SetLocation("away", outside);
        LocationData hidden{c->SBID(), "", "Main"};
        a->Properties()->SetLocation("hidden", hidden, etBase64Encoded);

        auto nested = PersistedPropertyCollection::Create();
        LocationData deep{a->SBID(), b->SBID(), ""};
        nested->SetLocation("deep", deep);
        auto nestedList = ChildElementCollection::Create();
        auto listChild = ChildElement::Create();
        LocationData inList{c->SBID(), c->SBID(), ""};
        listChild->SetLocation("inList", inList);
        nestedList->Append(listChild);
        nested->SetCEC("list", nestedList);
        b->Properties()->SetPPC("nested", nested, etBase64Encoded);

        auto child = ChildElement::Create();
        child->SetName("link");
        LocationData onChild{a->SBID(), "", ""};
        child->SetLocation("target", onChild);
        auto childBag = PersistedPropertyCollection::Create();
        LocationData inChildBag{b->SBID(), kOutside, ""};
        childBag->SetLocation("inner", inChildBag);
        child->SetPPC("bag", childBag);
        c->Children()->Append(child);

        first = LessonMap::Create();
        first->SetName("First");
        first->InsertStoryboard("", sbitInsertAfter, a->SBID());
        first->InsertStoryboard(a->SBID(), sbitInsertAsChild, b->SBID());
        first->InsertStoryboard(b->SBID(), sbitInsertAsChild, kOutside);
        first->InsertStoryboard("", sbitInsertAfter, c->SBID());
        second = LessonMap::Create();
        second->SetName("Second");
        second->InsertStoryboard("", sbitInsertAfter, c->SBID());
        second->InsertStoryboard(c->SBID(), sbitInsertAfter, a->SBID());
        lesson->Maps()->Append(first);
        lesson->Maps()->Append(second);
        lesson->Maps()->SetDefaultMap(second);
    }

    std::shared_ptr<Storyboard> AddStoryboard(const std::string& title) {
        auto sb = lesson->Storyboards()->Add(Storyboard::Create());
        sb->SetTitle(title);
        return sb;
    }
};

// The new identifier of each old one, by storyboard position.
std::string NewIdOf(const Lesson& source, const Lesson& copy, const std::string& oldId) {
    const Names oldIds = StoryboardIds(source);
    const Names newIds = StoryboardIds(copy);
    for (std::size_t i = 0; i < oldIds.size(); ++i) {
        if (oldIds[i] == oldId) {
            return newIds[i];
        }
    }
    return oldId;
}

// Edge case: Clone keeps LessonID and every SBID.
TEST(LessonClone, KeepsTheLessonIdAndEveryStoryboardId) {
    Sample sample;
    auto clone = sample.lesson->Clone();
    EXPECT_NE(clone, sample.lesson);
    EXPECT_EQ(clone->LessonID(), sample.lesson->LessonID());
    EXPECT_EQ(StoryboardIds(*clone), StoryboardIds(*sample.lesson));
    EXPECT_NE(clone->Storyboards()->Item(sample.a->SBID()), sample.a);
}

TEST(LessonClone, WritesExactlyTheSameText) {
    Sample sample;
    auto clone = sample.lesson->Clone();
    EXPECT_EQ(WithoutDocumentId(clone->ToXMLString()), WithoutDocumentId(sample.lesson->ToXMLString()));
    EXPECT_EQ(WithoutDocumentId(clone->ToClearXMLString()), WithoutDocumentId(sample.lesson->ToClearXMLString()));
    EXPECT_EQ(clone->Maps()->DefaultMap()->Name(), "Second");
    EXPECT_EQ(clone->Properties()->GetString("own", ""), "property");
}

TEST(LessonClone, IsIndependentOfTheSource) {
    Sample sample;
    auto clone = sample.lesson->Clone();
    clone->Storyboards()->Item(sample.a->SBID())->SetTitle("changed");
    clone->Properties()->SetString("own", "changed");
    EXPECT_EQ(sample.a->Title(), "Alpha");
    EXPECT_EQ(sample.lesson->Properties()->GetString("own", ""), "property");
}

// Edge case: Duplicate changes LessonID and every SBID.
TEST(LessonDuplicate, ChangesTheLessonIdAndEveryStoryboardId) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    EXPECT_TRUE(IsGuidText(dup->LessonID()));
    EXPECT_NE(dup->LessonID(), sample.lesson->LessonID());
    const Names oldIds = StoryboardIds(*sample.lesson);
    const Names newIds = StoryboardIds(*dup);
    ASSERT_EQ(newIds.size(), oldIds.size());
    for (const std::string& id : newIds) {
        EXPECT_TRUE(IsGuidText(id));
        EXPECT_FALSE(sample.lesson->Storyboards()->Contains(id));
    }
}

// Edge case: Duplicate keeps the titles, the order and the other texts.
TEST(LessonDuplicate, KeepsTitlesTextsAndTheOrderOfStoryboards) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    EXPECT_EQ(dup->Title(), "Sample");
    EXPECT_EQ(dup->Identifier(), "ID");
    EXPECT_EQ(dup->Classification(), "Class");
    Names titles;
    for (auto& sb : *dup->Storyboards()) {
        titles.push_back(sb->Title());
    }
    EXPECT_EQ(titles, (Names{"Alpha", "Beta", "Gamma"}));
    EXPECT_NE(dup->Storyboards()->CurrentSB(), sample.a);
}

// Edge case: the copy's own properties are left empty.
TEST(LessonDuplicate, LeavesTheCopysOwnPropertiesEmpty) {
    Sample sample;
    EXPECT_EQ(sample.lesson->Duplicate()->Properties()->Count(), 0);
}

// Edge case: the default map and the order of maps are kept.
TEST(LessonDuplicate, KeepsTheOrderOfMapsAndTheDefaultMap) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    ASSERT_EQ(dup->Maps()->Count(), 2);
    EXPECT_EQ(dup->Maps()->ItemAt(0)->Name(), "First");
    EXPECT_EQ(dup->Maps()->ItemAt(1)->Name(), "Second");
    EXPECT_EQ(dup->Maps()->DefaultMap(), dup->Maps()->ItemAt(1));
    EXPECT_NE(dup->Maps()->ItemAt(1), sample.second);
}

TEST(LessonDuplicate, TheFallbackDefaultIsCarriedOverAsAStoredDefault) {
    Sample sample;
    sample.lesson->Maps()->SetDefaultMap(nullptr);  // the getter falls back to the first map
    auto dup = sample.lesson->Duplicate();
    EXPECT_EQ(dup->Maps()->DefaultMap(), dup->Maps()->ItemAt(0));
    dup->Maps()->RemoveAt(1);
    EXPECT_EQ(dup->Maps()->DefaultMap(), dup->Maps()->ItemAt(0));
}

TEST(LessonDuplicate, ASingleMapWithoutDefaultStaysWithoutDefault) {
    auto lesson = Lesson::Create();
    lesson->Maps()->Append(LessonMap::Create());
    auto dup = lesson->Duplicate();
    ASSERT_EQ(dup->Maps()->Count(), 1);
    EXPECT_EQ(dup->Maps()->DefaultMap(), nullptr);
}

TEST(LessonDuplicate, MapItemsNameTheNewStoryboards) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    const Lesson& src = *sample.lesson;
    EXPECT_EQ(MapItemIds(*dup->Maps()->ItemAt(0)),
              (Names{NewIdOf(src, *dup, sample.a->SBID()), NewIdOf(src, *dup, sample.b->SBID()), kOutside,
                     NewIdOf(src, *dup, sample.c->SBID())}));
    EXPECT_EQ(MapItemIds(*dup->Maps()->ItemAt(1)),
              (Names{NewIdOf(src, *dup, sample.c->SBID()), NewIdOf(src, *dup, sample.a->SBID())}));
    // The source maps are untouched.
    EXPECT_EQ(MapItemIds(*sample.second), (Names{sample.c->SBID(), sample.a->SBID()}));
}

// Edge case: locations in storyboard properties name the new storyboards.
TEST(LessonDuplicate, LocationsInStoryboardPropertiesNameTheNewStoryboards) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    const Lesson& src = *sample.lesson;
    auto a = dup->Storyboards()->Item(NewIdOf(src, *dup, sample.a->SBID()));
    ASSERT_NE(a, nullptr);
    const LocationData next = a->Properties()->GetLocation("next", {});
    EXPECT_EQ(next.StartPoint, NewIdOf(src, *dup, sample.b->SBID()));
    EXPECT_EQ(next.EndPoint, NewIdOf(src, *dup, sample.c->SBID()));
    EXPECT_EQ(next.MapName, "Main");
    // The source keeps its own identifiers.
    EXPECT_EQ(sample.a->Properties()->GetLocation("next", {}).StartPoint, sample.b->SBID());
}

// Edge case: a location naming an identifier outside the lesson is kept.
TEST(LessonDuplicate, ALocationNamingAnOutsideIdentifierKeepsIt) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    auto a = dup->Storyboards()->Item(NewIdOf(*sample.lesson, *dup, sample.a->SBID()));
    const LocationData away = a->Properties()->GetLocation("away", {});
    EXPECT_EQ(away.StartPoint, kOutside);
    EXPECT_EQ(away.EndPoint, a->SBID());
    EXPECT_EQ(away.MapName, "Other");
}

// Edge case: locations in child element properties.
TEST(LessonDuplicate, LocationsInChildElementPropertiesNameTheNewStoryboards) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    auto c = dup->Storyboards()->Item(NewIdOf(*sample.lesson, *dup, sample.c->SBID()));
    ASSERT_EQ(c->Children()->Count(), 1);
    const LocationData target = c->Children()->Item(0)->GetLocation("target", {});
    EXPECT_EQ(target.StartPoint, NewIdOf(*sample.lesson, *dup, sample.a->SBID()));
    EXPECT_EQ(target.EndPoint, "");
}

// Edge case: locations in nested bags and lists.
TEST(LessonDuplicate, LocationsInNestedBagsAndListsNameTheNewStoryboards) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    const Lesson& src = *sample.lesson;
    auto b = dup->Storyboards()->Item(NewIdOf(src, *dup, sample.b->SBID()));
    auto nested = b->Properties()->GetPPC("nested", nullptr);
    ASSERT_NE(nested, nullptr);
    const LocationData deep = nested->GetLocation("deep", {});
    EXPECT_EQ(deep.StartPoint, NewIdOf(src, *dup, sample.a->SBID()));
    EXPECT_EQ(deep.EndPoint, NewIdOf(src, *dup, sample.b->SBID()));
    auto list = nested->GetCEC("list", nullptr);
    ASSERT_NE(list, nullptr);
    const LocationData inList = list->Item(0)->GetLocation("inList", {});
    EXPECT_EQ(inList.StartPoint, NewIdOf(src, *dup, sample.c->SBID()));
    EXPECT_EQ(inList.EndPoint, NewIdOf(src, *dup, sample.c->SBID()));

    auto c = dup->Storyboards()->Item(NewIdOf(src, *dup, sample.c->SBID()));
    auto childBag = c->Children()->Item(0)->GetPPC("bag", nullptr);
    ASSERT_NE(childBag, nullptr);
    const LocationData inner = childBag->GetLocation("inner", {});
    EXPECT_EQ(inner.StartPoint, NewIdOf(src, *dup, sample.b->SBID()));
    EXPECT_EQ(inner.EndPoint, kOutside);
    // The nested bag keeps its own encoding: only locations change theirs.
    EXPECT_EQ(b->Properties()->GetEncodingType("nested"), etBase64Encoded);
}

// Edge case: a base64-encoded location comes out unencoded.
TEST(LessonDuplicate, AnEncodedLocationIsUnencodedInTheCopy) {
    Sample sample;
    ASSERT_EQ(sample.a->Properties()->GetEncodingType("hidden"), etBase64Encoded);
    auto dup = sample.lesson->Duplicate();
    auto a = dup->Storyboards()->Item(NewIdOf(*sample.lesson, *dup, sample.a->SBID()));
    EXPECT_EQ(a->Properties()->GetEncodingType("hidden"), etNotEncoded);
    EXPECT_EQ(a->Properties()->GetLocation("hidden", {}).StartPoint,
              NewIdOf(*sample.lesson, *dup, sample.c->SBID()));
    EXPECT_EQ(sample.a->Properties()->GetEncodingType("hidden"), etBase64Encoded);
}

TEST(LessonDuplicate, AnEmptyStartPointIsFilledFromTheEndPointWhenStoredBack) {
    auto lesson = Lesson::Create();
    auto a = lesson->Storyboards()->Add(Storyboard::Create());
    auto b = lesson->Storyboards()->Add(Storyboard::Create());
    // Stored through the library's own reading, which keeps an empty start.
    a->Properties()->FromXMLString("<ppc name=\"properties\"><locationProp name=\"loc\" from=\"\" to=\"" + b->SBID() +
                                   "\"/></ppc>");
    ASSERT_EQ(a->Properties()->GetLocation("loc", {}).StartPoint, "");
    auto dup = lesson->Duplicate();
    auto newA = dup->Storyboards()->Item(NewIdOf(*lesson, *dup, a->SBID()));
    const LocationData loc = newA->Properties()->GetLocation("loc", {});
    EXPECT_EQ(loc.StartPoint, NewIdOf(*lesson, *dup, b->SBID()));
    EXPECT_EQ(loc.EndPoint, "");
}

TEST(LessonDuplicate, OfAnEmptyLessonIsAnEmptyLessonWithTheSameTexts) {
    auto lesson = Lesson::Create();
    lesson->SetTitle("Empty");
    auto dup = lesson->Duplicate();
    EXPECT_EQ(dup->Title(), "Empty");
    EXPECT_EQ(dup->Storyboards()->Count(), 0);
    EXPECT_EQ(dup->Maps()->Count(), 0);
}

TEST(LessonDuplicate, TheCopyIsConsistentAfterAWriteAndARead) {
    Sample sample;
    auto dup = sample.lesson->Duplicate();
    auto reread = Lesson::Create();
    reread->FromXMLString(dup->ToXMLString());
    EXPECT_EQ(WithoutDocumentId(reread->ToXMLString()), WithoutDocumentId(dup->ToXMLString()));
    for (std::int32_t i = 0; i < reread->Maps()->Count(); ++i) {
        for (const std::string& id : MapItemIds(*reread->Maps()->ItemAt(i))) {
            EXPECT_TRUE(id == kOutside || reread->Storyboards()->Contains(id)) << id;
        }
    }
}

}  // namespace
}  // namespace quillbank
