// LessonMap: the map's tree kept as a "map" element, and every operation on it.
//
// Every walk over the tree is a loop with an explicit stack (or follows the
// parent links), never a recursion, so a map of any depth is safe.

#include <quillbank/lesson_map.hpp>

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <quillbank/storyboard_collection.hpp>

#include "frame/raise.hpp"
#include "maps/lesson_map_access.hpp"
#include "support/text.hpp"
#include "xml/search.hpp"

namespace quillbank {

namespace {

constexpr const char* kMapElement = "map";
constexpr const char* kItemElement = "item";
constexpr const char* kNameAttribute = "name";
constexpr const char* kSbidAttribute = "sbid";
constexpr const char* kDefaultName = "New Map";

// A fresh private document and its unattached "map" element.
struct Storage {
    xml::Document document;
    xml::Element map;
};

Storage NewStorage(std::string_view name) {
    Storage storage{xml::Document::Create(), {}};
    storage.map = storage.document.CreateElement(kMapElement);
    storage.map.SetAttribute(kNameAttribute, name);
    return storage;
}

// The map's name; a map without one raises 94 with `source`.
std::string NameOf(const xml::Element& map, const char* source) {
    std::optional<std::string> name = map.GetAttribute(kNameAttribute);
    if (!name) {
        frame::Raise(ErrNullArgument, source, frame::kInvalidUseOfNull);
    }
    return std::move(*name);
}

// An item's identifier as text: "" when it has none.
std::string SbidOf(const xml::Node& item) {
    return item.AsElement().GetAttribute(kSbidAttribute).value_or(std::string());
}

xml::Element NewItem(xml::Document& document, std::string_view sbid) {
    xml::Element item = document.CreateElement(kItemElement);
    item.SetAttribute(kSbidAttribute, sbid);
    return item;
}

// The first element below `parent` (at any depth, `parent` itself excluded)
// whose "sbid" is exactly `sbid`, in document order; null when none is.
// Only elements are looked into: text and comments are passed over.
xml::Element FindItemElement(const xml::Node& parent, std::string_view sbid) {
    // The facade walks the tree without a handle or a string per node: this
    // search runs once per insertion, over the whole map in the worst case.
    return xml::FindElementWithAttribute(parent, kSbidAttribute, sbid);
}

// A deep copy of `source` made in `target`, not attached anywhere.
xml::Element CopyInto(const xml::Element& source, xml::Document target) {
    if (source.OwnerDocument() == target) {
        return source.CloneNode(true).AsElement();
    }
    // Placing a node of another document places a copy of it, but also takes
    // the original from its parent; an attached source is therefore cloned in
    // its own document first. The copy is placed under a holder and taken
    // out again: the document itself when it has no root element (nothing
    // is left behind), else a scratch element.
    const xml::Node unattached = source.Parent() ? source.CloneNode(true) : xml::Node(source);
    xml::Node holder = target.DocumentElement() ? xml::Node(target.CreateElement(kMapElement)) : target.AsNode();
    xml::Node copy = holder.AppendChild(unattached);
    holder.RemoveChild(copy);
    return copy.AsElement();
}

// Where new items go: under `parent`, each right before `reference` (at the
// end when `reference` is null). Inserting every new item before the same
// reference keeps them in their own order.
struct Place {
    xml::Node parent;
    xml::Node reference;
};

// A resume point of a tree walk: after the subtree being visited, go on with
// `next` (a source node) under `target`.
template <class Target>
struct Frame {
    xml::Node next;
    Target target;
};

// Building a tree: a new item is placed under its parent only once its own
// subtree is complete, while the parent is itself still unattached. Placing a
// node costs the DOM time in proportion to the depth of the parent, so
// building top-down would cost O(depth) an item (O(n^2) for a deep chain);
// this way every placement is at depth one and a build costs O(n).
struct BuildFrame {
    xml::Node next;        // the source node to go on with
    xml::Element target;   // where the finished item (and the following items) go
    xml::Element item;     // the item being filled; null for a dropped item
};

// Runs a build from the children of `source` into `target`. For each element
// child, `make(node)` gives the new item (null to drop it) and whether to
// visit its children; the children of a dropped item that are visited go to
// the dropped item's target, so they take its place.
template <class Make>
void BuildItems(const xml::Element& source, const xml::Element& target, Make&& make) {
    std::vector<BuildFrame> stack;
    xml::Node node = source.FirstChild();
    xml::Element parent = target;
    for (;;) {
        while (node) {
            if (node.IsElement()) {
                auto [item, descend] = make(node);
                if (descend) {
                    if (xml::Node child = node.FirstChild()) {
                        stack.push_back({node.NextSibling(), parent, item});
                        if (item) {
                            parent = std::move(item);
                        }
                        node = std::move(child);
                        continue;
                    }
                }
                if (item) {
                    parent.AppendChild(item);
                }
            }
            node = node.NextSibling();
        }
        if (stack.empty()) {
            return;
        }
        BuildFrame& frame = stack.back();
        if (frame.item) {
            frame.target.AppendChild(frame.item);
        }
        node = std::move(frame.next);
        parent = std::move(frame.target);
        stack.pop_back();
    }
}

// The pruned copy: every element child of `source`, at any depth, whose
// identifier is in `storyboards` (keep) or not in it (!keep) is copied as a
// new "item" carrying only its "sbid"; the children of a dropped item are
// visited all the same, so the kept ones take its place.
void CopyItemsPruned(xml::Document& document, const xml::Element& source, const xml::Element& target,
                     const StoryboardCollection& storyboards, bool keep) {
    BuildItems(source, target, [&](const xml::Node& node) {
        const std::string sbid = SbidOf(node);
        xml::Element item;
        if (storyboards.Contains(sbid) == keep) {
            item = NewItem(document, sbid);
        }
        return std::pair{std::move(item), true};
    });
}

// The re-identified copy: every element child of `source`, at any depth,
// becomes a new "item" whose "sbid" is looked up in `mapping`; an item without
// an identifier is dropped with its whole subtree.
void CopyItemsRemapped(xml::Document& document, const xml::Element& source, const xml::Element& target,
                       const PersistedPropertyCollection& mapping) {
    BuildItems(source, target, [&](const xml::Node& node) {
        const std::string sbid = SbidOf(node);
        if (sbid.empty()) {
            return std::pair{xml::Element(), false};
        }
        return std::pair{NewItem(document, mapping.GetString(sbid, sbid)), true};
    });
}

}  // namespace

LessonMap::LessonMap() {
    Storage storage = NewStorage(kDefaultName);
    document_ = std::move(storage.document);
    map_ = std::move(storage.map);
}

// The index of the items by identifier. A search for an identifier that
// stands once in the tree (the usual case) costs a hash lookup instead of a
// walk; one that stands more than once is answered by the walk, so the answer
// is always the first occurrence in document order. The index describes the
// tree of one map element: a map that starts a new tree (Clear, FromXMLElement,
// the pruned and rewritten copies) makes a new element, and the index is made
// again on the next search. InsertStoryboard adds its item to it; InsertMap
// and FromTreeNode, which add items in place, drop it.
struct LessonMap::ItemIndex {
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
    };
    struct Entry {
        xml::Element first;
        std::size_t count = 0;
    };
    xml::Element map;
    std::unordered_map<std::string, Entry, Hash, std::equal_to<>> items;

    void Add(std::string_view sbid, const xml::Element& item) {
        auto found = items.find(sbid);
        if (found == items.end()) {
            found = items.emplace(std::string(sbid), Entry{}).first;
        }
        if (found->second.count++ == 0) {
            found->second.first = item;
        }
    }
};

LessonMap::~LessonMap() = default;

xml::Element LessonMap::FindItem(std::string_view SBID) const {
    if (!index_ || !(index_->map == map_)) {
        // Every element below the map with an "sbid", in document order.
        auto index = std::make_unique<ItemIndex>();
        index->map = map_;
        // The walk counts its depth below the map instead of comparing the
        // nodes it climbs back to: a DOM may hand out a new wrapper object on
        // every navigation, so the map reached again need not equal `map_`.
        xml::Node node = map_.FirstChild();
        int depth = 1;
        while (node) {
            if (node.IsElement()) {
                const xml::Element element = node.AsElement();
                if (const std::optional<std::string> value = element.GetAttribute(kSbidAttribute)) {
                    index->Add(*value, element);
                }
                if (xml::Node child = node.FirstChild()) {
                    node = std::move(child);
                    ++depth;
                    continue;
                }
            }
            for (;;) {
                if (xml::Node next = node.NextSibling()) {
                    node = std::move(next);
                    break;
                }
                if (--depth == 0) {
                    node = xml::Node();
                    break;
                }
                node = node.Parent();
            }
        }
        index_ = std::move(index);
    }
    const auto found = index_->items.find(SBID);
    if (found == index_->items.end()) {
        return {};
    }
    if (found->second.count == 1) {
        return found->second.first;
    }
    return FindItemElement(map_, SBID);
}

std::shared_ptr<LessonMap> LessonMap::Create() { return std::shared_ptr<LessonMap>(new LessonMap()); }

std::string LessonMap::Name() const { return NameOf(map_, "LessonMap.Name"); }

void LessonMap::SetName(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "LessonMap.Name (Set)");
    map_.SetAttribute(kNameAttribute, NewValue);
}

void LessonMap::Clear() {
    Storage storage = NewStorage(NameOf(map_, "LessonMap.Clear"));
    document_ = std::move(storage.document);
    map_ = std::move(storage.map);
}

bool LessonMap::Contains(std::string_view SBID) const { return static_cast<bool>(FindItem(SBID)); }

void LessonMap::FromTreeNode(const std::shared_ptr<TreeNode>& RootNode) {
    if (!RootNode) {
        return;
    }
    // The new tree is the storage from the start: when the host's tree fails
    // during the walk, the map keeps the items whose subtrees were complete.
    Storage storage = NewStorage(NameOf(map_, "LessonMap.FromTreeNode"));
    document_ = std::move(storage.document);
    map_ = std::move(storage.map);
    // Items are placed in the new tree in place, and the host's tree may
    // search this map on the way: the index is dropped however the walk ends.
    struct DropIndex {
        std::unique_ptr<ItemIndex>& index;
        ~DropIndex() { index.reset(); }
    } dropIndex{index_};

    // Each stacked node's next sibling is asked for once its subtree is done;
    // its item is placed then too (see BuildFrame).
    struct Pending {
        std::shared_ptr<TreeNode> node;
        xml::Element parent;
        xml::Element item;
    };
    std::vector<Pending> stack;
    std::shared_ptr<TreeNode> node = RootNode->Child();
    xml::Element parent = map_;
    for (;;) {
        while (node) {
            xml::Element item = NewItem(document_, node->Key());
            if (std::shared_ptr<TreeNode> child = node->Child()) {
                stack.push_back({std::move(node), parent, item});
                parent = std::move(item);
                node = std::move(child);
                continue;
            }
            parent.AppendChild(item);
            node = node->Next();
        }
        if (stack.empty()) {
            return;
        }
        Pending& pending = stack.back();
        pending.parent.AppendChild(pending.item);
        node = pending.node->Next();
        parent = std::move(pending.parent);
        stack.pop_back();
    }
}

void LessonMap::ToTreeNode(const std::shared_ptr<TreeNodes>& NodeCollection,
                           const std::shared_ptr<TreeNode>& RootNode) const {
    constexpr const char* source = "LessonMap.ToTreeNode";
    if (!NodeCollection) {
        frame::Raise(ErrNullArgument, source, "NodeCollection cannot be null");
    }
    if (!RootNode) {
        frame::Raise(ErrNullArgument, source, "RootNode cannot be null");
    }
    while (std::shared_ptr<TreeNode> child = RootNode->Child()) {
        NodeCollection->Remove(child);
    }
    std::vector<Frame<std::shared_ptr<TreeNode>>> stack;
    xml::Node node = map_.FirstChild();
    std::shared_ptr<TreeNode> parent = RootNode;
    for (;;) {
        while (node) {
            if (node.IsElement()) {
                const std::string sbid = SbidOf(node);
                std::shared_ptr<TreeNode> added = NodeCollection->Add(parent, tvwChild, sbid, sbid);
                if (xml::Node child = node.FirstChild()) {
                    stack.push_back({node.NextSibling(), std::move(parent)});
                    parent = std::move(added);
                    node = std::move(child);
                    continue;
                }
            }
            node = node.NextSibling();
        }
        if (stack.empty()) {
            return;
        }
        node = std::move(stack.back().next);
        parent = std::move(stack.back().target);
        stack.pop_back();
    }
}

xml::Element LessonMap::ToXMLElement(const xml::Document& Document) const {
    // Without a Document the copy is made in the map's private document. With
    // one, it is made in Document itself, where the caller is about to append
    // it: one copy, and no copy left behind in the private document (whose
    // unattached nodes live as long as the map keeps it).
    if (!Document) {
        return map_.CloneNode(true).AsElement();
    }
    return CopyInto(map_, Document);
}

void LessonMap::FromXMLElement(const xml::Element& Element) {
    constexpr const char* source = "LessonMap.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    if (Element.Name() != kMapElement) {
        frame::Raise(ErrXmlForm, source, frame::NotAnElementDescription(kMapElement));
    }
    xml::Document document = xml::Document::Create();
    xml::Element map = CopyInto(Element, document);
    document_ = std::move(document);
    map_ = std::move(map);
}

std::shared_ptr<LessonMap> LessonMap::Clone() const {
    // The same as giving a new map this map's ToXMLElement(), without the
    // intermediate copy.
    std::shared_ptr<LessonMap> copy(new LessonMap());
    copy->document_ = xml::Document::Create();
    // The copy is cloned in this map's document before it moves to the new
    // one: under Wine, MSXML moves the storage element itself when it is
    // placed in another document, and the two maps would share their items.
    copy->map_ = CopyInto(map_.CloneNode(true).AsElement(), copy->document_);
    return copy;
}

void LessonMap::InsertStoryboard(std::string_view RootSBID, StoryboardInsertTypes Relation, std::string_view NewSBID) {
    constexpr const char* source = "LessonMap.InsertStoryboard";
    // An identifier that is not in the map counts as no root.
    const xml::Element root = RootSBID.empty() ? xml::Element() : FindItem(RootSBID);
    if (NewSBID.empty()) {
        frame::Raise(ErrInvalidArgument, source, "NewSBID cannot be ''.");
    }
    support::RequireUtf8(NewSBID, source);
    // The item is made in the map's own document, so placing it copies nothing.
    const xml::Element item = NewItem(document_, NewSBID);

    Place place;
    if (root) {
        switch (Relation) {
            case sbitInsertAfter:
                place = {root.Parent(), root.NextSibling()};
                break;
            case sbitInsertAsChild:
                place = {root, root.FirstChild()};
                break;
            case sbitInsertBefore:
                place = {root.Parent(), root};
                break;
            default:
                // Any other value: the last child of the root item.
                place = {root, {}};
                break;
        }
    } else if (Relation == sbitInsertAfter) {
        place = {map_, {}};
    } else {
        place = {map_, map_.FirstChild()};
    }
    place.parent.InsertBefore(item, place.reference);
    if (index_ && index_->map == map_) {
        index_->Add(NewSBID, item);
    }
}

void LessonMap::InsertMap(std::string_view RootSBID, StoryboardInsertTypes Relation,
                          const std::shared_ptr<LessonMap>& NewMap) {
    const xml::Element root = RootSBID.empty() ? xml::Element() : FindItem(RootSBID);
    if (!NewMap) {
        frame::Raise(ErrInvalidArgument, "LessonMap.InsertMap", "NewMap cannot be null.");
    }
    // Items come in from elsewhere: the index is made again when next needed.
    index_.reset();
    // One copy of the other map (which may be this very map) in this map's
    // document, taken before anything moves; its items are then moved into place.
    // (Cloned in its own document first, as in Clone.)
    const xml::Element copy = CopyInto(NewMap->map_.CloneNode(true).AsElement(), document_);

    Place place;
    if (root) {
        switch (Relation) {
            case sbitInsertAfter:
                // Before the root's next sibling; after the last one, at the
                // end of the root's parent. A root without a parent takes nothing.
                place = {root.Parent(), root.NextSibling()};
                if (!place.parent) {
                    return;
                }
                break;
            case sbitInsertAsChild:
                place = {root, root.FirstChild()};
                break;
            default:
                // sbitInsertBefore, and unlike InsertStoryboard every other value too.
                place = {root.Parent(), root};
                break;
        }
    } else if (Relation == sbitInsertAfter) {
        place = {map_, {}};
    } else {
        place = {map_, map_.FirstChild()};
    }
    // Only the element children of the other map are taken, in order.
    xml::Node node = copy.FirstChild();
    while (node) {
        xml::Node next = node.NextSibling();
        if (node.IsElement()) {
            place.parent.InsertBefore(node, place.reference);
        }
        node = std::move(next);
    }
}

void LessonMap::RemoveStoryboards(const std::shared_ptr<StoryboardCollection>& Storyboards) {
    if (!Storyboards || Storyboards->Count() == 0) {
        return;
    }
    Storage storage = NewStorage(NameOf(map_, "LessonMap.RemoveStoryboards"));
    CopyItemsPruned(storage.document, map_, storage.map, *Storyboards, false);
    document_ = std::move(storage.document);
    map_ = std::move(storage.map);
}

void LessonMap::KeepStoryboards(const std::shared_ptr<StoryboardCollection>& Storyboards) {
    if (!Storyboards || Storyboards->Count() == 0) {
        return;
    }
    Storage storage = NewStorage(NameOf(map_, "LessonMap.KeepStoryboards"));
    CopyItemsPruned(storage.document, map_, storage.map, *Storyboards, true);
    document_ = std::move(storage.document);
    map_ = std::move(storage.map);
}

namespace detail {

void LessonMapAccess::RemapStoryboardIDs(LessonMap& Map, const PersistedPropertyCollection& Mapping) {
    Storage storage = NewStorage(NameOf(Map.map_, "LessonMap.RemapStoryboardIDs"));
    CopyItemsRemapped(storage.document, Map.map_, storage.map, Mapping);
    Map.document_ = std::move(storage.document);
    Map.map_ = std::move(storage.map);
}

xml::Node LessonMapAccess::AppendCopyTo(const LessonMap& Map, xml::Node Parent) {
    // Always a copy made in the map's own document first: the storage element
    // is its document's root, and Wine's MSXML, asked to place a node whose
    // parent is a document, calls that document as if it were an element and
    // crashes (on Windows the node of another document is copied).
    return Parent.AppendChild(Map.map_.CloneNode(true));
}

void LessonMapAccess::Write(const LessonMap& Map, xml::Writer& writer) {
    if (xml::Element* parent = writer.DomParent()) {
        AppendCopyTo(Map, *parent);
    } else {
        writer.Markup(Map.map_.Xml());
    }
}

}  // namespace detail

}  // namespace quillbank
