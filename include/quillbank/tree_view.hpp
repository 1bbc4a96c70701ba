#pragma once

// The few operations of a host's tree control that a lesson map uses to show
// itself in the control and to take a tree back from it. A host implements
// these two classes over its own control (or uses the in-memory tree of
// <quillbank/memory_tree.hpp>).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quillbank {

// Where TreeNodes::Add places a new node, relative to an existing one; the
// values of the common tree-view control.
enum TreeRelationshipConstants : std::int32_t {
    tvwFirst = 0,     // first sibling of the relative node
    tvwLast = 1,      // last sibling of the relative node
    tvwNext = 2,      // sibling right after the relative node
    tvwPrevious = 3,  // sibling right before the relative node
    tvwChild = 4,     // last child of the relative node
};

// One node of the tree.
class TreeNode {
public:
    virtual ~TreeNode() = default;

    // The node's key (a map stores its storyboard identifier here).
    virtual std::string Key() const = 0;
    // The node's first child, or null when it has none.
    virtual std::shared_ptr<TreeNode> Child() const = 0;
    // The node's next sibling, or null when it is the last one.
    virtual std::shared_ptr<TreeNode> Next() const = 0;

protected:
    TreeNode() = default;
    TreeNode(const TreeNode&) = default;
    TreeNode& operator=(const TreeNode&) = default;
};

// The collection of all nodes of the tree.
class TreeNodes {
public:
    virtual ~TreeNodes() = default;

    // Adds a node with the key and text, placed by Relationship relative to
    // Relative (a map always passes tvwChild: as Relative's last child), and
    // returns it.
    virtual std::shared_ptr<TreeNode> Add(const std::shared_ptr<TreeNode>& Relative, std::int32_t Relationship,
                                          std::string_view Key, std::string_view Text) = 0;
    // Removes the node together with all its descendants.
    virtual void Remove(const std::shared_ptr<TreeNode>& Node) = 0;

protected:
    TreeNodes() = default;
    TreeNodes(const TreeNodes&) = default;
    TreeNodes& operator=(const TreeNodes&) = default;
};

}  // namespace quillbank
