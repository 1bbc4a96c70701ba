#include <quillbank/detail/position_table.hpp>

namespace quillbank::detail {

void PositionTable::Reset(std::size_t entries) {
    // At most half full, so that every search meets a free slot soon.
    std::size_t size = 16;
    while (size < entries * 2) {
        size *= 2;
    }
    slots_.assign(size, Slot{});
}

void PositionTable::Insert(std::uint32_t position, std::size_t hash) noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].position != kFree && slots_[slot].position != kRemoved) {
        slot = (slot + 1) & mask;
    }
    slots_[slot] = Slot{position, TagOf(hash)};
}

void PositionTable::Remove(std::uint32_t position, std::size_t hash) noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].position != position) {
        slot = (slot + 1) & mask;
    }
    slots_[slot].position = kRemoved;
}

}  // namespace quillbank::detail
