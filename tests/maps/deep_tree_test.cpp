// Maps and trees 100,000 levels deep: every walk is a loop, so nothing
// exhausts the stack.

#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/memory_tree.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <quillbank/persisted_property_collection.hpp>

#include "maps/lesson_map_access.hpp"
#include "maps/map_helpers.hpp"

namespace quillbank {
namespace {

constexpr int kDepth = 100000;

std::string Id(int level) { return "S" + std::to_string(level); }

// A chain S0 > S1 > ... > S99999 below a root node keyed "ROOT".
std::shared_ptr<TreeNode> DeepTree(const std::shared_ptr<MemoryTreeNodes>& nodes) {
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "root");
    std::shared_ptr<TreeNode> parent = root;
    for (int level = 0; level < kDepth; ++level) {
        parent = nodes->Add(parent, tvwChild, Id(level), Id(level));
    }
    return root;
}

std::shared_ptr<LessonMap> DeepMap() {
    auto nodes = MemoryTreeNodes::Create();
    auto map = LessonMap::Create();
    map->FromTreeNode(DeepTree(nodes));
    return map;
}

// The depth of the first chain of elements below `element`, and the
// identifier at its bottom.
std::pair<int, std::string> ChainBottom(const xml::Node& element) {
    int depth = 0;
    xml::Node node = element;
    while (xml::Node child = node.FirstChild()) {
        node = child;
        ++depth;
    }
    return {depth, node.AsElement().GetAttribute("sbid").value_or("")};
}

TEST(LessonMapDeep, FromTreeNodeAndSearchesOnAHundredThousandLevels) {
    auto map = DeepMap();
    EXPECT_EQ(ChainBottom(map->ToXMLElement()), std::make_pair(kDepth, Id(kDepth - 1)));
    EXPECT_TRUE(map->Contains(Id(kDepth - 1)));
    EXPECT_FALSE(map->Contains("absent"));
    map->InsertStoryboard(Id(kDepth - 1), sbitInsertAsChild, "BOTTOM");
    map->InsertStoryboard("absent", sbitInsertAfter, "TOP");
    const xml::Element element = map->ToXMLElement();
    EXPECT_EQ(ChainBottom(element), std::make_pair(kDepth + 1, std::string("BOTTOM")));
    EXPECT_EQ(element.LastChild().AsElement().GetAttribute("sbid"), "TOP");
}

TEST(LessonMapDeep, ToTreeNodeOnAHundredThousandLevels) {
    auto map = DeepMap();
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "r");
    map->ToTreeNode(nodes, root);
    EXPECT_EQ(nodes->Count(), kDepth + 1);
    // Showing it again first removes the deep subtree already there.
    map->ToTreeNode(nodes, root);
    EXPECT_EQ(nodes->Count(), kDepth + 1);
    auto bottom = nodes->Find(Id(kDepth - 1));
    ASSERT_NE(bottom, nullptr);
    EXPECT_EQ(bottom->Text(), Id(kDepth - 1));
    EXPECT_EQ(bottom->Parent()->Key(), Id(kDepth - 2));
}

TEST(LessonMapDeep, PruningAndRemappingOnAHundredThousandLevels) {
    auto map = DeepMap();
    map->RemoveStoryboards(testing::StoryboardsOf({"S0", "S50000"}));
    EXPECT_EQ(ChainBottom(map->ToXMLElement()), std::make_pair(kDepth - 2, Id(kDepth - 1)));
    EXPECT_EQ(map->ToXMLElement().FirstChild().AsElement().GetAttribute("sbid"), "S1");

    map->KeepStoryboards(testing::StoryboardsOf({"S1", "S99999"}));
    EXPECT_EQ(testing::Shape(*map), "S1(S99999)");

    auto deep = DeepMap();
    auto mapping = PersistedPropertyCollection::Create();
    mapping->SetString(Id(kDepth - 1), "LAST");
    detail::LessonMapAccess::RemapStoryboardIDs(*deep, *mapping);
    EXPECT_EQ(ChainBottom(deep->ToXMLElement()), std::make_pair(kDepth, std::string("LAST")));
}

TEST(LessonMapDeep, CopiesOnAHundredThousandLevels) {
    auto map = DeepMap();
    auto clone = map->Clone();
    EXPECT_EQ(ChainBottom(clone->ToXMLElement()), std::make_pair(kDepth, Id(kDepth - 1)));

    auto other = LessonMap::Create();
    other->InsertStoryboard("", sbitInsertAfter, "A");
    other->InsertMap("A", sbitInsertAsChild, map);
    EXPECT_EQ(ChainBottom(other->ToXMLElement()), std::make_pair(kDepth + 1, Id(kDepth - 1)));

    auto maps = LessonMapCollection::Create();
    maps->Append(map);
    maps->Append(clone);
    auto copy = maps->Clone();
    xml::Document document = xml::Document::Create();
    auto read = LessonMapCollection::Create();
    read->FromXMLElement(copy->ToXMLElement(document));
    ASSERT_EQ(read->Count(), 2);
    EXPECT_TRUE(read->ItemAt(1)->Contains(Id(kDepth - 1)));
}

TEST(MemoryTreeDeep, DroppingAHundredThousandLevelTreeAndAWideOne) {
    {
        auto nodes = MemoryTreeNodes::Create();
        DeepTree(nodes);
        EXPECT_EQ(nodes->Count(), kDepth + 1);
    }
    {
        auto nodes = MemoryTreeNodes::Create();
        auto root = nodes->Add(nullptr, tvwChild, "ROOT", "root");
        for (int i = 0; i < kDepth; ++i) {
            nodes->Add(root, tvwChild, Id(i), "");
        }
        EXPECT_EQ(nodes->Count(), kDepth + 1);
        // A removed wide subtree is released when its last holder lets go.
        nodes->Remove(root);
        EXPECT_EQ(nodes->Count(), 0);
        EXPECT_EQ(std::dynamic_pointer_cast<MemoryTreeNode>(root)->Children(), kDepth);
        root.reset();
    }
    SUCCEED();
}

}  // namespace
}  // namespace quillbank
