#pragma once

// The storage of a property bag: properties in insertion order, found by their
// name folded to lower case. Lookup, replacement and removal take constant
// time on average, whatever the size of the bag.
//
// The properties stand in one array in insertion order, each with the hash
// of its folded name (the name itself is compared only when the hashes match). Removal leaves a gap that the walk skips; gaps
// are squeezed out once they outnumber the properties. A small bag is
// searched along the array (the hash is compared first); a larger one keeps
// an open-addressing table of array positions beside it.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillbank/detail/position_table.hpp>

#include "properties/persisted_property.hpp"

namespace quillbank::detail {

class PropertyStore {
    struct Entry {
        std::shared_ptr<PersistedProperty> property;  // null for a gap
        std::size_t hash = 0;                         // of the name folded to lower case
    };

public:
    // The properties in insertion order (gaps skipped), each as a
    // const std::shared_ptr<PersistedProperty>&.
    class Range {
    public:
        class Iterator {
        public:
            using iterator_category = std::forward_iterator_tag;
            using value_type = std::shared_ptr<PersistedProperty>;
            using difference_type = std::ptrdiff_t;
            using pointer = const value_type*;
            using reference = const value_type&;

            Iterator() = default;
            Iterator(const Entry* at, const Entry* end) : at_(at), end_(end) { SkipGaps(); }
            reference operator*() const { return at_->property; }
            pointer operator->() const { return &at_->property; }
            Iterator& operator++() {
                ++at_;
                SkipGaps();
                return *this;
            }
            Iterator operator++(int) {
                Iterator before = *this;
                ++*this;
                return before;
            }
            friend bool operator==(const Iterator& a, const Iterator& b) { return a.at_ == b.at_; }

        private:
            void SkipGaps() {
                while (at_ != end_ && !at_->property) {
                    ++at_;
                }
            }
            const Entry* at_ = nullptr;
            const Entry* end_ = nullptr;
        };

        Range(const Entry* begin, const Entry* end) : begin_(begin), end_(end) {}
        Iterator begin() const { return Iterator(begin_, end_); }
        Iterator end() const { return Iterator(end_, end_); }

    private:
        const Entry* begin_;
        const Entry* end_;
    };

    std::size_t Size() const noexcept { return live_; }
    Range Items() const noexcept { return Range(entries_.data(), entries_.data() + entries_.size()); }

    // Room for this many properties without growing.
    void Reserve(std::size_t count);
    // The property stored under the name (ignoring case), or null.
    std::shared_ptr<PersistedProperty> Find(std::string_view name) const;
    // Removes any property of the same name, then appends this one under its own name.
    void Add(std::shared_ptr<PersistedProperty> property);
    // Nothing happens when the name is absent.
    void Remove(std::string_view name);

private:
    static constexpr std::uint32_t kFree = PositionTable::kNone;
    // Up to this many entries the array is searched without a table.
    static constexpr std::size_t kLinearLimit = 8;

    // The array position of the property whose name has the key of `name`
    // (hashed to `hash`), or kFree when there is none.
    std::uint32_t Locate(std::string_view name, std::size_t hash) const;
    void Erase(std::uint32_t position);
    // Squeezes out the gaps and rebuilds the table for at least `room` entries.
    void Rebuild(std::size_t room);

    std::vector<Entry> entries_;
    PositionTable table_;  // empty while the bag is small
    std::size_t live_ = 0;
};

}  // namespace quillbank::detail
