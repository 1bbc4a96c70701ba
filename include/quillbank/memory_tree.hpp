#pragma once

// A tree of keyed, labelled nodes held in memory, offering the operations of a
// tree control that a lesson map uses (<quillbank/tree_view.hpp>). Hosts
// without a tree control, and tests, can show maps in it.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include <quillbank/tree_view.hpp>

namespace quillbank {

class MemoryTreeNodes;

// A node of a MemoryTreeNodes tree. A node stays usable after it has been
// removed from its tree, but it no longer belongs to it.
class MemoryTreeNode final : public TreeNode, public std::enable_shared_from_this<MemoryTreeNode> {
public:
    // Releases the node's descendants and following siblings without
    // recursion, so that trees of any depth and width can be dropped.
    ~MemoryTreeNode() override;

    MemoryTreeNode(const MemoryTreeNode&) = delete;
    MemoryTreeNode& operator=(const MemoryTreeNode&) = delete;

    std::string Key() const override;
    std::shared_ptr<TreeNode> Child() const override;
    std::shared_ptr<TreeNode> Next() const override;

    // The label shown for the node.
    std::string Text() const;
    // The same links as Child and Next, typed.
    std::shared_ptr<MemoryTreeNode> FirstChild() const;
    std::shared_ptr<MemoryTreeNode> NextSibling() const;
    std::shared_ptr<MemoryTreeNode> PreviousSibling() const;
    std::shared_ptr<MemoryTreeNode> LastChild() const;
    // The parent node, or null for a top-level node and a removed node.
    std::shared_ptr<MemoryTreeNode> Parent() const;
    // The number of direct children.
    std::int32_t Children() const;

private:
    MemoryTreeNode(std::string key, std::string text);

    std::string key_;
    std::string text_;
    // A node owns its first child and its next sibling; the other links are weak.
    std::shared_ptr<MemoryTreeNode> firstChild_;
    std::shared_ptr<MemoryTreeNode> next_;
    std::weak_ptr<MemoryTreeNode> lastChild_;
    std::weak_ptr<MemoryTreeNode> previous_;
    std::weak_ptr<MemoryTreeNode> parent_;
    std::int32_t children_ = 0;
    // The tree the node is part of; null once it has been removed.
    const MemoryTreeNodes* owner_ = nullptr;

    friend class MemoryTreeNodes;
};

// The nodes of one in-memory tree. Several top-level nodes may exist. Adding
// and removing a node cost constant time, apart from the walk over the
// subtree that a removal releases.
class MemoryTreeNodes final : public TreeNodes {
public:
    // Error numbers and descriptions of the tree, as the common tree-view
    // control gives them.
    static constexpr std::int32_t ErrElementNotFound = 35601;
    static constexpr std::int32_t ErrKeyNotUnique = 35602;

    // A new, empty tree. With UniqueKeys, adding a node with a non-empty key
    // that another node of the tree already has fails with error 35602, as in
    // the common tree-view control; without it, keys may repeat.
    static std::shared_ptr<MemoryTreeNodes> Create(bool UniqueKeys = false);
    ~MemoryTreeNodes() override;

    MemoryTreeNodes(const MemoryTreeNodes&) = delete;
    MemoryTreeNodes& operator=(const MemoryTreeNodes&) = delete;

    // A null Relative adds a last top-level node, whatever the relationship.
    // Otherwise Relationship is one of TreeRelationshipConstants. A Relative
    // that is not a node of this tree raises 35601 ("Element not found"); an
    // unknown relationship raises 5.
    std::shared_ptr<TreeNode> Add(const std::shared_ptr<TreeNode>& Relative, std::int32_t Relationship,
                                  std::string_view Key, std::string_view Text) override;
    // Removes the node with its subtree. A node that is not part of this tree
    // (null, foreign or already removed) raises 35601 ("Element not found").
    void Remove(const std::shared_ptr<TreeNode>& Node) override;

    // The number of nodes in the tree, at every level.
    std::int32_t Count() const;
    // The first top-level node, or null when the tree is empty.
    std::shared_ptr<MemoryTreeNode> FirstRoot() const;
    // The first node in document order (a node before its descendants, a
    // subtree before the following sibling) whose key is Key; null when none.
    std::shared_ptr<MemoryTreeNode> Find(std::string_view Key) const;

private:
    explicit MemoryTreeNodes(bool uniqueKeys);

    // The node as a node of this tree, or raises 35601 with `source`.
    std::shared_ptr<MemoryTreeNode> Member(const std::shared_ptr<TreeNode>& node, const char* source) const;
    // Links `node` into the sibling chain of `parent` (null: the top level)
    // right before `before` (null: at the end).
    void Link(const std::shared_ptr<MemoryTreeNode>& parent, const std::shared_ptr<MemoryTreeNode>& node,
              const std::shared_ptr<MemoryTreeNode>& before);

    bool uniqueKeys_;
    std::shared_ptr<MemoryTreeNode> firstRoot_;
    std::weak_ptr<MemoryTreeNode> lastRoot_;
    std::int32_t count_ = 0;
    std::unordered_map<std::string, MemoryTreeNode*> keys_;
};

}  // namespace quillbank
