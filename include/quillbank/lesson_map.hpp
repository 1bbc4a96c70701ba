#pragma once

// A named tree of references to storyboards: the navigation structure of a lesson.

#include <memory>
#include <string>
#include <string_view>

#include <quillbank/enums.hpp>
#include <quillbank/tree_view.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

class StoryboardCollection;

namespace detail {
struct LessonMapAccess;
}  // namespace detail

// The map is kept as a "map" element (attribute "name") of a private XML
// document; every node of the tree is an "item" element whose attribute
// "sbid" names a storyboard, its children nested inside it. That element is
// at the same time the map's written form.
//
// The same identifier may stand in the map more than once. Every search
// finds the first occurrence in document order: an item before its
// descendants, a subtree before the following sibling. Identifiers are
// compared exactly, letter case included.
class LessonMap {
public:
    // A new map named "New Map", without items.
    static std::shared_ptr<LessonMap> Create();
    ~LessonMap();

    LessonMap(const LessonMap&) = delete;
    LessonMap& operator=(const LessonMap&) = delete;

    // The "name" attribute. A map read from an element without one has no
    // name: reading it raises 94 ("Invalid use of Null"), and so does every
    // operation that carries the name over to a rebuilt tree.
    std::string Name() const;
    void SetName(std::string_view NewValue);

    // Drops every item; the name is kept.
    void Clear();
    // Whether any item at any depth names SBID.
    bool Contains(std::string_view SBID) const;

    // Rebuilds the tree from the descendants of RootNode (not RootNode
    // itself), reading only their keys. A null RootNode changes nothing.
    void FromTreeNode(const std::shared_ptr<TreeNode>& RootNode);
    // Empties RootNode, then adds one node beneath it per item, as last
    // child, with the identifier as both key and text. Errors of the tree
    // pass through and may leave it half filled.
    void ToTreeNode(const std::shared_ptr<TreeNodes>& NodeCollection, const std::shared_ptr<TreeNode>& RootNode) const;

    // A deep copy of the "map" element, not attached anywhere; later changes
    // to the map do not reach it, nor changes to it the map. Without a
    // Document the copy belongs to the map's own private document; with one,
    // it is made in Document, ready to be appended there.
    xml::Element ToXMLElement(const xml::Document& Document = {}) const;
    // The map becomes a deep copy of Element, which must be a "map" element;
    // anything else it holds (other attributes, other children) is kept.
    void FromXMLElement(const xml::Element& Element);
    // An independent deep copy, name included.
    std::shared_ptr<LessonMap> Clone() const;

    // Adds one item naming NewSBID, placed relative to the first item naming
    // RootSBID: before it (sbitInsertBefore), right after it
    // (sbitInsertAfter), as its first child (sbitInsertAsChild), or as its
    // last child (any other value). Without a root ("" or an identifier the
    // map does not hold) the item goes to the end of the top level for
    // sbitInsertAfter and to its start for every other value. An empty
    // NewSBID raises 380.
    //
    // Cost: an insertion with a non-empty RootSBID searches the tree for it,
    // O(n) in a map of n items (also when the identifier is not there), so
    // building a map of n items by relative insertions costs O(n^2) in all.
    // With an empty RootSBID nothing is searched and an insertion costs O(1),
    // so a map built from top-level insertions costs O(n).
    void InsertStoryboard(std::string_view RootSBID, StoryboardInsertTypes Relation, std::string_view NewSBID);
    // Adds copies of the top-level items of NewMap, with their subtrees and
    // in their order, relative to the first item naming RootSBID: right
    // after it (sbitInsertAfter), as its first children (sbitInsertAsChild),
    // or before it (sbitInsertBefore and every other value). Without a root
    // the copies go to the end of the top level for sbitInsertAfter and to
    // its start for every other value. NewMap (which may be this map) is left
    // as it was; its name is not used. A null NewMap raises 380.
    void InsertMap(std::string_view RootSBID, StoryboardInsertTypes Relation, const std::shared_ptr<LessonMap>& NewMap);
    // Drops every item whose storyboard is in Storyboards; the descendants of
    // a dropped item take its place, in order. Null or an empty set changes
    // nothing. The rebuilt items carry only their identifier.
    void RemoveStoryboards(const std::shared_ptr<StoryboardCollection>& Storyboards);
    // Drops every item whose storyboard is not in Storyboards; the kept
    // descendants of a dropped item take its place, in order. Null or an
    // empty set changes nothing (the map is not emptied). The rebuilt items
    // carry only their identifier.
    void KeepStoryboards(const std::shared_ptr<StoryboardCollection>& Storyboards);

private:
    LessonMap();

    // The storage: a "map" element of document_, never attached to the
    // document itself (so that copying it into another document leaves it
    // where it is).
    xml::Document document_;
    xml::Element map_;

    // Where each identifier first stands in map_, made on the first search
    // and kept up to date by InsertStoryboard (see lesson_map.cpp).
    struct ItemIndex;
    mutable std::unique_ptr<ItemIndex> index_;

    xml::Element FindItem(std::string_view SBID) const;

    friend struct detail::LessonMapAccess;
};

}  // namespace quillbank
