#pragma once

// How deep bags and lists may nest inside properties.
//
// A bag or list held by a property is one level deeper than the bag that
// holds the property; the bag or list a host calls (a lesson's or a
// storyboard's bag, a child element's properties, any bag or list on its own)
// is level 0. Reading, writing and cloning walk the levels recursively, so
// the levels a thread is inside are counted, and a level past kMaxNesting is
// refused instead of exhausting the stack:
//   - the property reader leaves such a property untyped, so the bag drops it
//     (its documented fallback for a property it cannot read);
//   - the writers and Clone raise error 28 "Out of stack space", which is
//     also what a bag or list that contains itself gives.
// The limit is far beyond any authored lesson; the deepest allowed read,
// write or clone needs about 1 MiB of stack in a debug build, and the tests
// run it on half the usual 8 MiB stack in the sanitizer build too (see
// docs/robustness.md for the measurements).

#include <cstdint>

namespace quillbank::properties {

inline constexpr std::int32_t kMaxNesting = 200;

// Counts one level for as long as it lives. Entered() is false when the level
// would be past kMaxNesting; the level is then not counted.
class NestingLevel {
public:
    NestingLevel() noexcept : entered_(depth_ < kMaxNesting) {
        if (entered_) {
            ++depth_;
        }
    }
    ~NestingLevel() {
        if (entered_) {
            --depth_;
        }
    }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;

    bool Entered() const noexcept { return entered_; }

    // Raises error 28 "Out of stack space" with the given source unless entered.
    void Require(const char* source) const;

private:
    static inline thread_local std::int32_t depth_ = 0;
    bool entered_;
};

}  // namespace quillbank::properties
