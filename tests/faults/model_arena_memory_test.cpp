// The model chunks give their memory back: every chunk goes with its last
// object, and an object kept alone keeps only its own chunk.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "allocation_hooks.hpp"
#include "support/allocation_checks.hpp"
#include "support/model_arena.hpp"

namespace quillbank::faults {
namespace {

using support::ModelArenaScope;
using support::model_arena::kChunkSize;

struct Small {
    explicit Small(int v) : value(v) {}
    int value;
    char padding[60] = {};
};

// Enough objects to fill several chunks.
constexpr std::size_t kObjects = 4 * kChunkSize / sizeof(Small);

std::vector<std::shared_ptr<Small>> MakeMany() {
    std::vector<std::shared_ptr<Small>> made;
    made.reserve(kObjects);
    const ModelArenaScope scope;
    for (std::size_t i = 0; i < kObjects; ++i) {
        made.push_back(support::MakeModelObject<Small>(static_cast<int>(i)));
    }
    return made;
}

TEST(ModelArenaMemory, EveryChunkGoesWithItsLastObject) {
    const std::size_t base = BytesInUse();
    {
        auto made = MakeMany();
        EXPECT_GT(BytesInUse(), base + 3 * kChunkSize);
        // Released in another order than that of making.
        for (std::size_t i = 0; i < made.size(); i += 2) {
            made[i].reset();
        }
    }
    EXPECT_EQ(BytesInUse(), base);
}

TEST(ModelArenaMemory, AnObjectKeptAloneKeepsOnlyItsChunk) {
    if (support::kChecksEveryAllocation) {
        GTEST_SKIP() << "this build makes every object on its own";
    }
    const std::size_t base = BytesInUse();
    std::shared_ptr<Small> kept;
    {
        auto made = MakeMany();
        kept = made[made.size() / 2];
    }
    const std::size_t held = BytesInUse() - base;
    EXPECT_GE(held, kChunkSize);
    EXPECT_LT(held, 2 * kChunkSize);
    EXPECT_EQ(kept->value, static_cast<int>(kObjects / 2));
    kept.reset();
    EXPECT_EQ(BytesInUse(), base);
}

}  // namespace
}  // namespace quillbank::faults
