// The in-memory tree: nodes linked to their first child and next sibling,
// with weak links back, and a tree object that places and removes them.

#include <quillbank/memory_tree.hpp>

#include <utility>
#include <vector>

#include "frame/raise.hpp"

namespace quillbank {

namespace {

constexpr const char* kElementNotFound = "Element not found";
constexpr const char* kKeyNotUnique = "Key is not unique in collection";

}  // namespace

MemoryTreeNode::MemoryTreeNode(std::string key, std::string text) : key_(std::move(key)), text_(std::move(text)) {}

MemoryTreeNode::~MemoryTreeNode() {
    // Dropping the links one by one would release a chain of nodes
    // recursively, one stack frame per node. Instead every node that only
    // this walk still holds gives up its links first, so each release below
    // ends at once.
    std::vector<std::shared_ptr<MemoryTreeNode>> pending;
    if (firstChild_) {
        pending.push_back(std::move(firstChild_));
    }
    if (next_) {
        pending.push_back(std::move(next_));
    }
    while (!pending.empty()) {
        std::shared_ptr<MemoryTreeNode> node = std::move(pending.back());
        pending.pop_back();
        if (node.use_count() == 1) {
            if (node->firstChild_) {
                pending.push_back(std::move(node->firstChild_));
            }
            if (node->next_) {
                pending.push_back(std::move(node->next_));
            }
        }
    }
}

std::string MemoryTreeNode::Key() const { return key_; }

std::shared_ptr<TreeNode> MemoryTreeNode::Child() const { return firstChild_; }

std::shared_ptr<TreeNode> MemoryTreeNode::Next() const { return next_; }

std::string MemoryTreeNode::Text() const { return text_; }

std::shared_ptr<MemoryTreeNode> MemoryTreeNode::FirstChild() const { return firstChild_; }

std::shared_ptr<MemoryTreeNode> MemoryTreeNode::NextSibling() const { return next_; }

std::shared_ptr<MemoryTreeNode> MemoryTreeNode::PreviousSibling() const { return previous_.lock(); }

std::shared_ptr<MemoryTreeNode> MemoryTreeNode::LastChild() const { return lastChild_.lock(); }

std::shared_ptr<MemoryTreeNode> MemoryTreeNode::Parent() const { return parent_.lock(); }

std::int32_t MemoryTreeNode::Children() const { return children_; }

MemoryTreeNodes::MemoryTreeNodes(bool uniqueKeys) : uniqueKeys_(uniqueKeys) {}

std::shared_ptr<MemoryTreeNodes> MemoryTreeNodes::Create(bool UniqueKeys) {
    return std::shared_ptr<MemoryTreeNodes>(new MemoryTreeNodes(UniqueKeys));
}

MemoryTreeNodes::~MemoryTreeNodes() {
    // Nodes a host still holds must not claim to belong to a tree that is gone.
    std::vector<MemoryTreeNode*> pending;
    for (MemoryTreeNode* root = firstRoot_.get(); root != nullptr; root = root->next_.get()) {
        pending.push_back(root);
    }
    while (!pending.empty()) {
        MemoryTreeNode* node = pending.back();
        pending.pop_back();
        node->owner_ = nullptr;
        for (MemoryTreeNode* child = node->firstChild_.get(); child != nullptr; child = child->next_.get()) {
            pending.push_back(child);
        }
    }
    // The first root's own destructor releases the rest without recursion.
}

std::shared_ptr<MemoryTreeNode> MemoryTreeNodes::Member(const std::shared_ptr<TreeNode>& node,
                                                        const char* source) const {
    std::shared_ptr<MemoryTreeNode> member = std::dynamic_pointer_cast<MemoryTreeNode>(node);
    if (!member || member->owner_ != this) {
        frame::Raise(ErrElementNotFound, source, kElementNotFound);
    }
    return member;
}

void MemoryTreeNodes::Link(const std::shared_ptr<MemoryTreeNode>& parent, const std::shared_ptr<MemoryTreeNode>& node,
                           const std::shared_ptr<MemoryTreeNode>& before) {
    std::shared_ptr<MemoryTreeNode>& first = parent ? parent->firstChild_ : firstRoot_;
    std::weak_ptr<MemoryTreeNode>& last = parent ? parent->lastChild_ : lastRoot_;
    node->parent_ = parent;
    node->owner_ = this;
    if (before) {
        std::shared_ptr<MemoryTreeNode> previous = before->previous_.lock();
        node->next_ = before;
        node->previous_ = previous;
        before->previous_ = node;
        if (previous) {
            previous->next_ = node;
        } else {
            first = node;
        }
    } else {
        std::shared_ptr<MemoryTreeNode> previous = last.lock();
        node->previous_ = previous;
        if (previous) {
            previous->next_ = node;
        } else {
            first = node;
        }
        last = node;
    }
    if (parent) {
        ++parent->children_;
    }
    ++count_;
    if (uniqueKeys_ && !node->key_.empty()) {
        keys_.emplace(node->key_, node.get());
    }
}

std::shared_ptr<TreeNode> MemoryTreeNodes::Add(const std::shared_ptr<TreeNode>& Relative, std::int32_t Relationship,
                                               std::string_view Key, std::string_view Text) {
    constexpr const char* source = "MemoryTreeNodes.Add";
    std::shared_ptr<MemoryTreeNode> parent;
    std::shared_ptr<MemoryTreeNode> before;
    if (Relative) {
        const std::shared_ptr<MemoryTreeNode> relative = Member(Relative, source);
        switch (Relationship) {
            case tvwChild:
                parent = relative;
                break;
            case tvwFirst:
                parent = relative->parent_.lock();
                before = parent ? parent->firstChild_ : firstRoot_;
                break;
            case tvwLast:
                parent = relative->parent_.lock();
                break;
            case tvwNext:
                parent = relative->parent_.lock();
                before = relative->next_;
                break;
            case tvwPrevious:
                parent = relative->parent_.lock();
                before = relative;
                break;
            default:
                frame::Raise(ErrInvalidCall, source, frame::kInvalidProcedureCall);
        }
    }
    if (uniqueKeys_ && !Key.empty() && keys_.contains(std::string(Key))) {
        frame::Raise(ErrKeyNotUnique, source, kKeyNotUnique);
    }
    std::shared_ptr<MemoryTreeNode> node(new MemoryTreeNode(std::string(Key), std::string(Text)));
    Link(parent, node, before);
    return node;
}

void MemoryTreeNodes::Remove(const std::shared_ptr<TreeNode>& Node) {
    const std::shared_ptr<MemoryTreeNode> node = Member(Node, "MemoryTreeNodes.Remove");
    const std::shared_ptr<MemoryTreeNode> parent = node->parent_.lock();
    const std::shared_ptr<MemoryTreeNode> previous = node->previous_.lock();
    std::shared_ptr<MemoryTreeNode>& first = parent ? parent->firstChild_ : firstRoot_;
    std::weak_ptr<MemoryTreeNode>& last = parent ? parent->lastChild_ : lastRoot_;
    std::shared_ptr<MemoryTreeNode> next = std::move(node->next_);
    if (next) {
        next->previous_ = previous;
    } else {
        last = previous;
    }
    if (previous) {
        previous->next_ = std::move(next);
    } else {
        first = std::move(next);
    }
    node->previous_.reset();
    node->parent_.reset();
    if (parent) {
        --parent->children_;
    }
    // The subtree leaves the tree: its nodes no longer count or hold keys.
    std::vector<MemoryTreeNode*> pending{node.get()};
    while (!pending.empty()) {
        MemoryTreeNode* gone = pending.back();
        pending.pop_back();
        gone->owner_ = nullptr;
        --count_;
        if (uniqueKeys_ && !gone->key_.empty()) {
            const auto it = keys_.find(gone->key_);
            if (it != keys_.end() && it->second == gone) {
                keys_.erase(it);
            }
        }
        for (MemoryTreeNode* child = gone->firstChild_.get(); child != nullptr; child = child->next_.get()) {
            pending.push_back(child);
        }
    }
}

std::int32_t MemoryTreeNodes::Count() const { return count_; }

std::shared_ptr<MemoryTreeNode> MemoryTreeNodes::FirstRoot() const { return firstRoot_; }

std::shared_ptr<MemoryTreeNode> MemoryTreeNodes::Find(std::string_view Key) const {
    // Pre-order over the links: down to the first child, else on to the next
    // sibling of the node or of its nearest ancestor that has one.
    const MemoryTreeNode* node = firstRoot_.get();
    while (node != nullptr) {
        if (node->key_ == Key) {
            return std::const_pointer_cast<MemoryTreeNode>(node->shared_from_this());
        }
        if (node->firstChild_) {
            node = node->firstChild_.get();
            continue;
        }
        while (node != nullptr && !node->next_) {
            node = node->parent_.lock().get();
        }
        if (node != nullptr) {
            node = node->next_.get();
        }
    }
    return nullptr;
}

}  // namespace quillbank
