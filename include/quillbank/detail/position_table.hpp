#pragma once

// Part of the library's implementation, not of its interface: the hash index
// shared by property bags and storyboard collections.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillbank::detail {

// An open-addressing table of positions in an array its owner keeps, each
// found by the hash of its entry's key. Every position stands beside the high
// half of its hash, so that a search seldom looks at an entry that is not the
// one sought. A removed position leaves a mark that searches step over; the
// owner makes the table again (Reset, then Insert) when it squeezes the gaps
// out of its array.
class PositionTable {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    bool Empty() const noexcept { return slots_.empty(); }
    // Whether the table holds `entries` positions (removed ones included)
    // only when it grows first.
    bool Full(std::size_t entries) const noexcept { return entries * 2 > slots_.size(); }
    // Empty, with room for `entries` positions.
    void Reset(std::size_t entries);
    // Empty, without room.
    void Clear() noexcept { slots_ = {}; }

    void Insert(std::uint32_t position, std::size_t hash) noexcept;
    // `position` must stand in the table under `hash`.
    void Remove(std::uint32_t position, std::size_t hash) noexcept;

    // The first position under `hash` whose entry `matches(position)`
    // accepts, or kNone.
    template <class Matches>
    std::uint32_t Find(std::size_t hash, Matches matches) const {
        if (slots_.empty()) {
            return kNone;
        }
        const std::size_t mask = slots_.size() - 1;
        const std::uint32_t tag = TagOf(hash);
        for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
            const Slot& at = slots_[slot];
            if (at.position == kFree) {
                return kNone;
            }
            if (at.position != kRemoved && at.tag == tag && matches(at.position)) {
                return at.position;
            }
        }
    }

private:
    static constexpr std::uint32_t kFree = kNone;
    static constexpr std::uint32_t kRemoved = 0xFFFFFFFEu;

    struct Slot {
        std::uint32_t position = kFree;
        std::uint32_t tag = 0;
    };

    static std::uint32_t TagOf(std::size_t hash) noexcept {
        return static_cast<std::uint32_t>(static_cast<std::uint64_t>(hash) >> 32);
    }

    std::vector<Slot> slots_;
};

}  // namespace quillbank::detail
