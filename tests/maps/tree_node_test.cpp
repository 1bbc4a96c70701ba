// A map shown in a tree control and taken back from it, with the in-memory
// tree standing in for the control; and the in-memory tree itself.

#include <quillbank/lesson_map.hpp>
#include <quillbank/memory_tree.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <quillbank/error.hpp>

#include "common/raises.hpp"
#include "maps/map_helpers.hpp"

namespace quillbank {
namespace {

using testing::MapFrom;
using testing::Shape;

// The nodes below `parent` as "A(B,C(D)),E" by key.
std::string TreeShape(const std::shared_ptr<MemoryTreeNode>& parent) {
    std::string out;
    for (auto node = parent->FirstChild(); node; node = node->NextSibling()) {
        if (!out.empty()) {
            out += ",";
        }
        out += node->Key();
        const std::string inner = TreeShape(node);
        if (!inner.empty()) {
            out += "(" + inner + ")";
        }
    }
    return out;
}

std::shared_ptr<MemoryTreeNode> Typed(const std::shared_ptr<TreeNode>& node) {
    return std::dynamic_pointer_cast<MemoryTreeNode>(node);
}

// ---- FromTreeNode ----

TEST(LessonMapTree, FromTreeNodeStoresTheDescendantsOfTheRootNodeButNotTheRootItself) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    nodes->Add(root, tvwChild, "A", "Page A");
    auto b = nodes->Add(root, tvwChild, "B", "Page B");
    nodes->Add(b, tvwChild, "C", "Page C");

    auto map = LessonMap::Create();
    map->SetName("From tree");
    map->FromTreeNode(root);
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="From tree"><item sbid="A"/><item sbid="B">)"
                                         R"(<item sbid="C"/></item></map>)");
    EXPECT_FALSE(map->Contains("ROOT"));
}

TEST(LessonMapTree, FromTreeNodeReplacesTheWholeTreeAndDropsForeignContent) {
    auto map = MapFrom(R"(<map name="M" extra="1"><item sbid="OLD" note="n"/><!--c--></map>)");
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "", "");
    nodes->Add(root, tvwChild, "NEW", "New");
    map->FromTreeNode(root);
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="M"><item sbid="NEW"/></map>)");
}

TEST(LessonMapTree, FromTreeNodeReadsOnlyTheKeys) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "R");
    nodes->Add(root, tvwChild, "key-1", "shown text");
    nodes->Add(root, tvwChild, "", "no key");
    auto map = LessonMap::Create();
    map->FromTreeNode(root);
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="New Map"><item sbid="key-1"/><item sbid=""/></map>)");
}

TEST(LessonMapTree, FromTreeNodeOfALeafEmptiesTheMap) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "R");
    auto map = testing::MapOf({"A", "B"});
    map->FromTreeNode(root);
    EXPECT_EQ(map->ToXMLElement().Xml(), R"(<map name="New Map"/>)");
}

TEST(LessonMapTree, FromTreeNodeWithNullChangesNothing) {
    auto map = testing::MapOf({"A", "B"});
    map->FromTreeNode(nullptr);
    EXPECT_EQ(Shape(*map), "A,B");
}

TEST(LessonMapTree, FromTreeNodeOnANamelessMapRaises) {
    auto map = MapFrom(R"(<map><item sbid="A"/></map>)");
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "R");
    nodes->Add(root, tvwChild, "X", "X");
    EXPECT_RAISES(map->FromTreeNode(root), ErrNullArgument, "LessonMap.FromTreeNode", "Invalid use of Null");
    EXPECT_EQ(Shape(*map), "A");
    // A null root node is no error, not even on a map without a name.
    map->FromTreeNode(nullptr);
}

// A host node whose links fail: errors of the tree pass through unchanged.
class FailingNode final : public TreeNode {
public:
    std::string Key() const override { return "K"; }
    std::shared_ptr<TreeNode> Child() const override { throw Error(35600, "Host.Child", "broken"); }
    std::shared_ptr<TreeNode> Next() const override { return nullptr; }
};

TEST(LessonMapTree, FromTreeNodePassesTreeErrorsThrough) {
    auto map = testing::MapOf({"A"});
    EXPECT_RAISES(map->FromTreeNode(std::make_shared<FailingNode>()), 35600, "Host.Child", "broken");
}

// ---- ToTreeNode ----

TEST(LessonMapTree, ToTreeNodeEmptiesTheRootNodeFirstAndSetsKeyAndTextToTheIdentifier) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    auto old = nodes->Add(root, tvwChild, "OLD", "old");
    nodes->Add(old, tvwChild, "OLDER", "older");
    nodes->Add(root, tvwChild, "OLD2", "old 2");
    auto sibling = nodes->Add(nullptr, tvwChild, "OTHER", "other top");

    auto map = MapFrom(R"(<map name="M"><item sbid="A"/><item sbid="B"><item sbid="C"/></item></map>)");
    map->ToTreeNode(nodes, root);

    auto typedRoot = Typed(root);
    EXPECT_EQ(TreeShape(typedRoot), "A,B(C)");
    EXPECT_EQ(nodes->Count(), 5);  // ROOT, A, B, C and the untouched OTHER
    for (auto node : {typedRoot->FirstChild(), typedRoot->LastChild(), typedRoot->LastChild()->FirstChild()}) {
        EXPECT_EQ(node->Text(), node->Key());
    }
    EXPECT_EQ(Typed(root)->Key(), "ROOT");
    EXPECT_EQ(Typed(root)->Text(), "Lesson");
    EXPECT_EQ(Typed(sibling)->Key(), "OTHER");
    EXPECT_EQ(Typed(old)->Parent(), nullptr);
}

TEST(LessonMapTree, ToTreeNodeOfAnEmptyMapLeavesTheRootEmpty) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    nodes->Add(root, tvwChild, "X", "X");
    LessonMap::Create()->ToTreeNode(nodes, root);
    EXPECT_EQ(Typed(root)->Children(), 0);
    EXPECT_EQ(nodes->Count(), 1);
}

TEST(LessonMapTree, ToTreeNodeShowsElementsOnlyAndItemsWithoutIdentifierWithAnEmptyKey) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    auto map = MapFrom(R"(<map name="M">t<!--c--><item sbid="A">x<item/></item><group sbid="G"/></map>)");
    map->ToTreeNode(nodes, root);
    EXPECT_EQ(TreeShape(Typed(root)), "A,G");
    auto a = Typed(root)->FirstChild();
    ASSERT_EQ(a->Children(), 1);
    EXPECT_EQ(a->FirstChild()->Key(), "");
    EXPECT_EQ(a->FirstChild()->Text(), "");
}

TEST(LessonMapTree, ToTreeNodeThenFromTreeNodeGivesTheSameMap) {
    const std::string text = R"(<map name="Round"><item sbid="A"><item sbid="B"/><item sbid="C">)"
                             R"(<item sbid="D"/></item></item><item sbid="E"/><item sbid="A"/></map>)";
    auto map = MapFrom(text);
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "", "");
    map->ToTreeNode(nodes, root);
    auto back = LessonMap::Create();
    back->SetName("Round");
    back->FromTreeNode(root);
    EXPECT_EQ(back->ToXMLElement().Xml(), text);
}

TEST(LessonMapTree, ToTreeNodeMayLeaveTheTreeHalfFilledWhenTheTreeRefusesANode) {
    // Like the common tree-view control, this tree refuses a second node with
    // the same key; the map holds A twice.
    auto nodes = MemoryTreeNodes::Create(true);
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    auto map = MapFrom(R"(<map name="M"><item sbid="A"/><item sbid="B"/><item sbid="A"/><item sbid="C"/></map>)");
    EXPECT_RAISES(map->ToTreeNode(nodes, root), MemoryTreeNodes::ErrKeyNotUnique, "MemoryTreeNodes.Add",
                  "Key is not unique in collection");
    EXPECT_EQ(TreeShape(Typed(root)), "A,B");
}

TEST(LessonMapTree, FailureToTreeNodeWithNullNodeCollection) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    nodes->Add(root, tvwChild, "KEEP", "keep");
    auto map = testing::MapOf({"A"});
    EXPECT_RAISES(map->ToTreeNode(nullptr, root), ErrNullArgument, "LessonMap.ToTreeNode",
                  "NodeCollection cannot be null");
    EXPECT_RAISES(map->ToTreeNode(nullptr, nullptr), 94, "LessonMap.ToTreeNode", "NodeCollection cannot be null");
    EXPECT_EQ(TreeShape(Typed(root)), "KEEP");
}

TEST(LessonMapTree, FailureToTreeNodeWithNullRootNode) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "ROOT", "Lesson");
    auto map = testing::MapOf({"A"});
    EXPECT_RAISES(map->ToTreeNode(nodes, nullptr), ErrNullArgument, "LessonMap.ToTreeNode",
                  "RootNode cannot be null");
    EXPECT_EQ(nodes->Count(), 1);
}

// ---- The in-memory tree ----

TEST(MemoryTree, NewTreeIsEmpty) {
    auto nodes = MemoryTreeNodes::Create();
    EXPECT_EQ(nodes->Count(), 0);
    EXPECT_EQ(nodes->FirstRoot(), nullptr);
    EXPECT_EQ(nodes->Find(""), nullptr);
}

TEST(MemoryTree, AddPlacesNodesByRelationship) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "root");
    auto b = nodes->Add(root, tvwChild, "B", "b");
    nodes->Add(b, tvwFirst, "A", "a");
    nodes->Add(b, tvwLast, "D", "d");
    nodes->Add(b, tvwNext, "C", "c");
    nodes->Add(b, tvwPrevious, "AB", "ab");
    nodes->Add(root, tvwChild, "E", "e");
    EXPECT_EQ(TreeShape(Typed(root)), "A,AB,B,C,D,E");
    EXPECT_EQ(Typed(root)->Children(), 6);
    nodes->Add(root, tvwNext, "R2", "second root");
    nodes->Add(root, tvwFirst, "R0", "first root");
    EXPECT_EQ(nodes->FirstRoot()->Key(), "R0");
    EXPECT_EQ(nodes->FirstRoot()->NextSibling()->Key(), "R");
    EXPECT_EQ(nodes->FirstRoot()->NextSibling()->NextSibling()->Key(), "R2");
    EXPECT_EQ(nodes->FirstRoot()->Parent(), nullptr);
    EXPECT_EQ(Typed(b)->Parent(), Typed(root));
    EXPECT_EQ(Typed(b)->PreviousSibling()->Key(), "AB");
    EXPECT_EQ(nodes->Count(), 9);
}

TEST(MemoryTree, AddWithoutRelativeAddsALastTopLevelNode) {
    auto nodes = MemoryTreeNodes::Create();
    nodes->Add(nullptr, tvwChild, "A", "a");
    nodes->Add(nullptr, tvwFirst, "B", "b");
    nodes->Add(nullptr, 99, "C", "c");
    std::string keys;
    for (auto node = nodes->FirstRoot(); node; node = node->NextSibling()) {
        keys += node->Key();
    }
    EXPECT_EQ(keys, "ABC");
}

TEST(MemoryTree, AddRefusesAnUnknownRelationship) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "r");
    EXPECT_RAISES(nodes->Add(root, 5, "X", "x"), ErrInvalidCall, "MemoryTreeNodes.Add",
                  "Invalid procedure call or argument");
    EXPECT_RAISES(nodes->Add(root, -1, "X", "x"), ErrInvalidCall, "MemoryTreeNodes.Add",
                  "Invalid procedure call or argument");
    EXPECT_EQ(nodes->Count(), 1);
}

TEST(MemoryTree, KeysMayRepeatUnlessUniqueKeysAreAsked) {
    auto nodes = MemoryTreeNodes::Create();
    auto first = nodes->Add(nullptr, tvwChild, "K", "1");
    nodes->Add(first, tvwChild, "K", "2");
    EXPECT_EQ(nodes->Count(), 2);
    EXPECT_EQ(nodes->Find("K"), Typed(first));

    auto unique = MemoryTreeNodes::Create(true);
    auto k = unique->Add(nullptr, tvwChild, "K", "1");
    EXPECT_RAISES(unique->Add(k, tvwChild, "K", "2"), 35602, "MemoryTreeNodes.Add",
                  "Key is not unique in collection");
    // Empty keys are no keys and may repeat; a removed node's key is free again.
    unique->Add(k, tvwChild, "", "a");
    unique->Add(k, tvwChild, "", "b");
    unique->Remove(k);
    unique->Add(nullptr, tvwChild, "K", "again");
    EXPECT_EQ(unique->Count(), 1);
}

TEST(MemoryTree, RemoveTakesTheSubtreeAway) {
    auto nodes = MemoryTreeNodes::Create();
    auto root = nodes->Add(nullptr, tvwChild, "R", "r");
    auto a = nodes->Add(root, tvwChild, "A", "a");
    nodes->Add(a, tvwChild, "A1", "a1");
    nodes->Add(a, tvwChild, "A2", "a2");
    auto b = nodes->Add(root, tvwChild, "B", "b");
    auto c = nodes->Add(root, tvwChild, "C", "c");
    nodes->Remove(a);
    EXPECT_EQ(TreeShape(Typed(root)), "B,C");
    EXPECT_EQ(nodes->Count(), 3);
    EXPECT_EQ(Typed(b)->PreviousSibling(), nullptr);
    nodes->Remove(c);
    EXPECT_EQ(Typed(root)->LastChild(), Typed(b));
    nodes->Add(root, tvwChild, "D", "d");
    EXPECT_EQ(TreeShape(Typed(root)), "B,D");
    // The removed node stays usable with its subtree, outside the tree.
    EXPECT_EQ(TreeShape(Typed(a)), "A1,A2");
    EXPECT_EQ(Typed(a)->Parent(), nullptr);
    EXPECT_EQ(nodes->Find("A1"), nullptr);
    nodes->Remove(root);
    EXPECT_EQ(nodes->Count(), 0);
    EXPECT_EQ(nodes->FirstRoot(), nullptr);
}

TEST(MemoryTree, NodesOfAnotherTreeOrRemovedNodesAreNotFound) {
    auto nodes = MemoryTreeNodes::Create();
    auto other = MemoryTreeNodes::Create();
    auto foreign = other->Add(nullptr, tvwChild, "F", "f");
    auto mine = nodes->Add(nullptr, tvwChild, "M", "m");
    EXPECT_RAISES(nodes->Add(foreign, tvwChild, "X", "x"), 35601, "MemoryTreeNodes.Add", "Element not found");
    EXPECT_RAISES(nodes->Remove(foreign), 35601, "MemoryTreeNodes.Remove", "Element not found");
    EXPECT_RAISES(nodes->Remove(nullptr), 35601, "MemoryTreeNodes.Remove", "Element not found");
    nodes->Remove(mine);
    EXPECT_RAISES(nodes->Remove(mine), 35601, "MemoryTreeNodes.Remove", "Element not found");
    EXPECT_RAISES(nodes->Add(std::make_shared<FailingNode>(), tvwChild, "X", "x"), 35601, "MemoryTreeNodes.Add",
                  "Element not found");
    EXPECT_EQ(other->Count(), 1);
}

TEST(MemoryTree, NodesOutliveTheirTree) {
    std::shared_ptr<MemoryTreeNode> kept;
    {
        auto nodes = MemoryTreeNodes::Create();
        auto root = nodes->Add(nullptr, tvwChild, "R", "r");
        nodes->Add(root, tvwChild, "A", "a");
        kept = Typed(root);
    }
    EXPECT_EQ(kept->Key(), "R");
    EXPECT_EQ(TreeShape(kept), "A");
    auto nodes = MemoryTreeNodes::Create();
    EXPECT_RAISES(nodes->Add(kept, tvwChild, "X", "x"), 35601, "MemoryTreeNodes.Add", "Element not found");
}

TEST(MemoryTree, FindSearchesInDocumentOrder) {
    auto nodes = MemoryTreeNodes::Create();
    auto r1 = nodes->Add(nullptr, tvwChild, "R1", "");
    auto a = nodes->Add(r1, tvwChild, "A", "");
    auto deep = nodes->Add(a, tvwChild, "X", "deep");
    nodes->Add(r1, tvwChild, "X", "later sibling");
    nodes->Add(nullptr, tvwChild, "X", "later root");
    EXPECT_EQ(nodes->Find("X"), Typed(deep));
    EXPECT_EQ(nodes->Find("A"), Typed(a));
    EXPECT_EQ(nodes->Find("none"), nullptr);
}

}  // namespace
}  // namespace quillbank
