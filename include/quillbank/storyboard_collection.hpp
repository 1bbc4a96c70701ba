#pragma once

// The set of a lesson's storyboards, keyed by identifier, with a current storyboard.

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include <quillbank/storyboard.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

// Storyboards in the order they were added, each under the identifier it had
// when it was added; identifiers are matched without regard to letter case.
// Entries are references: one storyboard may sit in several collections. The
// current storyboard need not be a member. Lookups of unknown identifiers
// give null, never an error.
class StoryboardCollection {
public:
    using Storage = std::list<std::shared_ptr<Storyboard>>;
    // Iterates the storyboards in order. Adding or removing entries while
    // iterating invalidates the iterators.
    using const_iterator = Storage::const_iterator;
    using iterator = const_iterator;

    static std::shared_ptr<StoryboardCollection> Create();

    StoryboardCollection(const StoryboardCollection&) = delete;
    StoryboardCollection& operator=(const StoryboardCollection&) = delete;

    std::shared_ptr<Storyboard> CurrentSB() const;
    // Stored as given, unchecked.
    void SetCurrentSB(std::shared_ptr<Storyboard> NewValue);
    // The current storyboard's identifier, or "" when there is none.
    std::string CurrentSBID() const;
    // "" clears the current storyboard; other text makes Item(text) current
    // (null when absent).
    void SetCurrentSBID(std::string_view NewValue);

    // Appends SB under its identifier, first removing (as Remove does) an
    // entry with the same identifier. Null is ignored and gives null.
    std::shared_ptr<Storyboard> Add(const std::shared_ptr<Storyboard>& SB);
    bool Contains(std::string_view SBID) const;
    std::int32_t Count() const;
    // The storyboard under SBID, or null.
    std::shared_ptr<Storyboard> Item(std::string_view SBID) const;

    const_iterator begin() const noexcept { return entries_.begin(); }
    const_iterator end() const noexcept { return entries_.end(); }

    // Removes the entry under SBID (unknown identifiers are ignored); when
    // the current storyboard's identifier is exactly SBID it is cleared first.
    void Remove(std::string_view SBID);
    // Empties the set and clears the current storyboard. Always returns an
    // Empty variant.
    Variant Clear();
    // Removes the entries of every storyboard of Storyboards; the current
    // storyboard stays as it is, even when it is removed. Null is ignored.
    void RemoveCollection(const std::shared_ptr<StoryboardCollection>& Storyboards);
    // Adds every storyboard of Storyboards (shared, not copied). With
    // OverwriteExisting an existing entry is replaced and the new one goes to
    // the end; without it the existing entry stays. The current storyboard
    // is left alone. Null is ignored.
    void AddCollection(const std::shared_ptr<StoryboardCollection>& Storyboards, bool OverwriteExisting = true);
    // A new collection with clones of the storyboards (or the same
    // storyboards when CloneStoryboards is false) and the current storyboard
    // chosen by identifier among its own entries.
    std::shared_ptr<StoryboardCollection> Clone(bool CloneStoryboards = true) const;

    // A new "storyboards" element of Document, not attached anywhere. Each
    // storyboard is numbered with its position as it is written, and keeps
    // that number.
    xml::Element ToClearXMLElement(const xml::Document& Document);
    xml::Element ToXMLElement(const xml::Document& Document);
    // Empties the set, then adds a storyboard for every "storyboard" element.
    // At most 32767 child nodes can be visited: with more, error 6 (overflow)
    // is raised.
    void FromXMLElement(const xml::Element& Element);

private:
    StoryboardCollection();
    xml::Element WriteElement(const xml::Document& Document, bool clear);
    void Append(std::string key, const std::shared_ptr<Storyboard>& SB);
    bool EraseKey(const std::string& key);

    Storage entries_;
    std::unordered_map<std::string, Storage::iterator> index_;
    std::shared_ptr<Storyboard> current_;
};

}  // namespace quillbank
