#include "storyboards/storyboard_memory.hpp"

namespace quillbank::storyboards {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kChecksEveryAllocation = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kChecksEveryAllocation = true;
#else
constexpr bool kChecksEveryAllocation = false;
#endif
#else
constexpr bool kChecksEveryAllocation = false;
#endif

}  // namespace

std::pmr::memory_resource* StoryboardMemory() {
    if constexpr (kChecksEveryAllocation) {
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
