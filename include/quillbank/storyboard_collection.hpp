#pragma once

// The set of a lesson's storyboards, keyed by identifier, with a current storyboard.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/detail/position_table.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

namespace detail {
struct ModelReader;
}  // namespace detail

// Storyboards in the order they were added, each under the identifier it had
// when it was added; identifiers are matched without regard to letter case.
// Entries are references: one storyboard may sit in several collections. The
// current storyboard need not be a member. Lookups of unknown identifiers
// give null, never an error.
class StoryboardCollection {
    struct Entry {
        std::shared_ptr<Storyboard> storyboard;  // null for a removed entry
        std::size_t hash = 0;                    // of the key
        std::size_t keyStart = 0;                // where the key stands in keys_
        std::size_t keyLength = 0;
    };

public:
    // Iterates the storyboards in order. Adding or removing entries while
    // iterating invalidates the iterators.
    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = std::shared_ptr<Storyboard>;
        using difference_type = std::ptrdiff_t;
        using pointer = const value_type*;
        using reference = const value_type&;

        const_iterator() = default;
        reference operator*() const { return at_->storyboard; }
        pointer operator->() const { return &at_->storyboard; }
        const_iterator& operator++() {
            ++at_;
            SkipRemoved();
            return *this;
        }
        const_iterator operator++(int) {
            const_iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const const_iterator& a, const const_iterator& b) { return a.at_ == b.at_; }

    private:
        friend class StoryboardCollection;
        const_iterator(const Entry* at, const Entry* end) : at_(at), end_(end) { SkipRemoved(); }
        void SkipRemoved() {
            while (at_ != end_ && !at_->storyboard) {
                ++at_;
            }
        }
        const Entry* at_ = nullptr;
        const Entry* end_ = nullptr;
    };
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

    const_iterator begin() const noexcept { return const_iterator(entries_.data(), entries_.data() + entries_.size()); }
    const_iterator end() const noexcept {
        return const_iterator(entries_.data() + entries_.size(), entries_.data() + entries_.size());
    }

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

    static constexpr std::uint32_t kFree = detail::PositionTable::kNone;

    // The position in entries_ of the entry under the key of SBID (hashed to
    // `hash`), or kFree when there is none.
    std::uint32_t Locate(std::string_view SBID, std::size_t hash) const;
    // Appends SB under the key of SBID; no entry may have that key yet.
    void Append(std::string_view SBID, std::size_t hash, const std::shared_ptr<Storyboard>& SB);
    // Removes the entry at `position`, leaving a gap in entries_.
    void Erase(std::uint32_t position);
    void EraseKey(std::string_view SBID);
    // Closes the gaps and makes a table with room for `room` entries.
    void Rebuild(std::size_t room);

    // The entries in order, with gaps where entries were removed, and an
    // open-addressing table of their positions. The keys (identifiers folded
    // to lower case) stand one after another in one string, so that a lookup
    // touches the table, the entry and the key, and nothing else.
    std::vector<Entry> entries_;
    detail::PositionTable table_;
    std::string keys_;
    std::size_t live_ = 0;
    std::shared_ptr<Storyboard> current_;

    friend struct detail::ModelReader;
};

}  // namespace quillbank
