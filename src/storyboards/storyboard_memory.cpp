#include "storyboards/storyboard_memory.hpp"

#include "support/allocation_checks.hpp"

namespace quillbank::storyboards {

std::pmr::memory_resource* StoryboardMemory() {
    if constexpr (support::kChecksEveryAllocation) {
        // The address checker sees a pooled block reused as a new one, so a
        // storyboard used after its release would go unnoticed.
        return std::pmr::new_delete_resource();
    } else {
        // Made once and never destroyed: storyboards held by static objects
        // may outlive every other static.
        static auto* const pool = new std::pmr::synchronized_pool_resource();
        return pool;
    }
}

}  // namespace quillbank::storyboards
