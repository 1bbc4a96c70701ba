// Searches that InsertStoryboard answers from the map's index of identifiers
// give what a walk in document order gives, whatever changed the tree since
// the index was made.

#include <quillbank/lesson_map.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <quillbank/memory_tree.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "maps/lesson_map_access.hpp"
#include "maps/map_helpers.hpp"

namespace quillbank {
namespace {

using testing::MapFrom;
using testing::Shape;
using testing::StoryboardsOf;

TEST(ItemIndex, ANewFirstOccurrenceBeforeTheIndexedOneIsFound) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    map->InsertStoryboard("A", sbitInsertAsChild, "B");
    // "A" again, now earlier in document order than the first one.
    map->InsertStoryboard("", sbitInsertBefore, "A");
    map->InsertStoryboard("A", sbitInsertAsChild, "C");
    EXPECT_EQ(Shape(*map), "A(C),A(B)");
    map->InsertStoryboard("B", sbitInsertBefore, "A");
    map->InsertStoryboard("A", sbitInsertAfter, "D");
    EXPECT_EQ(Shape(*map), "A(C),D,A(A,B)");
}

TEST(ItemIndex, AnItemPlacedUnderADuplicateStaysBehindTheFirstOccurrence) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    map->InsertStoryboard("", sbitInsertAfter, "B");
    map->InsertStoryboard("B", sbitInsertAsChild, "A");
    map->InsertStoryboard("A", sbitInsertAsChild, "X");
    EXPECT_EQ(Shape(*map), "A(X),B(A)");
}

TEST(ItemIndex, InsertMapItemsAreFound) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    EXPECT_FALSE(map->Contains("M"));
    map->InsertMap("A", sbitInsertAsChild, MapFrom(R"(<map name="x"><item sbid="M"/><item sbid="A"/></map>)"));
    EXPECT_TRUE(map->Contains("M"));
    map->InsertStoryboard("M", sbitInsertAsChild, "N");
    map->InsertStoryboard("A", sbitInsertAsChild, "O");
    EXPECT_EQ(Shape(*map), "A(O,M(N),A)");
    // The map inserted into itself: every identifier now stands twice.
    map->InsertMap("", sbitInsertBefore, map);
    map->InsertStoryboard("N", sbitInsertAfter, "P");
    EXPECT_EQ(Shape(*map), "A(O,M(N,P),A),A(O,M(N),A)");
}

TEST(ItemIndex, EveryRebuildOfTheTreeIsSeen) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    map->InsertStoryboard("A", sbitInsertAsChild, "B");
    ASSERT_TRUE(map->Contains("B"));

    map->Clear();
    EXPECT_FALSE(map->Contains("A"));
    map->InsertStoryboard("A", sbitInsertAsChild, "C");
    EXPECT_EQ(Shape(*map), "C");

    map->FromXMLElement(testing::Parse(R"(<map name="m"><item sbid="B"><item sbid="A"/></item></map>)"));
    EXPECT_TRUE(map->Contains("A"));
    EXPECT_FALSE(map->Contains("C"));
    map->InsertStoryboard("A", sbitInsertAfter, "C");
    EXPECT_EQ(Shape(*map), "B(A,C)");

    map->RemoveStoryboards(StoryboardsOf({"A"}));
    EXPECT_FALSE(map->Contains("A"));
    map->KeepStoryboards(StoryboardsOf({"C"}));
    EXPECT_FALSE(map->Contains("B"));
    EXPECT_TRUE(map->Contains("C"));

    auto renames = PersistedPropertyCollection::Create();
    renames->SetString("C", "R");
    detail::LessonMapAccess::RemapStoryboardIDs(*map, *renames);
    EXPECT_FALSE(map->Contains("C"));
    EXPECT_TRUE(map->Contains("R"));

    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwLast, "root", "root");
    nodes->Add(root, tvwChild, "T", "T");
    map->FromTreeNode(root);
    EXPECT_FALSE(map->Contains("R"));
    EXPECT_TRUE(map->Contains("T"));
    map->InsertStoryboard("T", sbitInsertAsChild, "U");
    EXPECT_EQ(Shape(*map), "T(U)");
}

TEST(ItemIndex, ACloneSearchesItsOwnTree) {
    auto map = LessonMap::Create();
    map->InsertStoryboard("", sbitInsertAfter, "A");
    ASSERT_TRUE(map->Contains("A"));
    auto copy = map->Clone();
    copy->InsertStoryboard("A", sbitInsertAsChild, "B");
    EXPECT_FALSE(map->Contains("B"));
    EXPECT_TRUE(copy->Contains("B"));
    EXPECT_EQ(Shape(*map), "A");
    EXPECT_EQ(Shape(*copy), "A(B)");
}

}  // namespace
}  // namespace quillbank
