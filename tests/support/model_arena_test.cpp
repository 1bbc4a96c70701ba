#include "support/model_arena.hpp"

#include <gtest/gtest.h>

#include <quillbank/lesson.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/allocation_checks.hpp"

namespace quillbank::support {
namespace {

struct Probe {
    explicit Probe(int v) : value(v) {}
    int value;
    std::string text = "a text too long for the string's own buffer";
};

bool IsAligned(const void* p) { return reinterpret_cast<std::uintptr_t>(p) % model_arena::kAlignment == 0; }

TEST(ModelArena, NoChunkIsFilledOutsideAScope) { EXPECT_EQ(model_arena::ChunkWithRoom(), nullptr); }

TEST(ModelArena, AScopeFillsChunksUnlessEveryAllocationIsChecked) {
    {
        const ModelArenaScope scope;
        EXPECT_EQ(model_arena::ChunkWithRoom() != nullptr, !kChecksEveryAllocation);
    }
    EXPECT_EQ(model_arena::ChunkWithRoom(), nullptr);
}

TEST(ModelArena, AnInnerScopeGoesOnFillingTheOuterOnesChunk) {
    if (kChecksEveryAllocation) {
        GTEST_SKIP() << "this build makes every object on its own";
    }
    const ModelArenaScope outer;
    model_arena::Chunk* const chunk = model_arena::ChunkWithRoom();
    {
        const ModelArenaScope inner;
        EXPECT_EQ(model_arena::ChunkWithRoom(), chunk);
    }
    EXPECT_EQ(model_arena::ChunkWithRoom(), chunk);
}

TEST(ModelArena, BlocksOfAnySizeAreAlignedForAnyObject) {
    if (kChecksEveryAllocation) {
        GTEST_SKIP() << "this build makes every object on its own";
    }
    const ModelArenaScope scope;
    std::vector<std::pair<void*, std::size_t>> blocks;
    model_arena::Chunk* chunk = nullptr;
    for (std::size_t bytes : {0, 1, 3, 8, 17, 100, 255, 1024}) {
        chunk = model_arena::ChunkWithRoom();
        void* block = model_arena::Allocate(chunk, bytes);
        EXPECT_TRUE(IsAligned(block)) << bytes;
        blocks.emplace_back(block, bytes);
    }
    for (std::size_t i = 1; i < blocks.size(); ++i) {
        EXPECT_GE(static_cast<char*>(blocks[i].first) - static_cast<char*>(blocks[i - 1].first),
                  static_cast<std::ptrdiff_t>(blocks[i - 1].second));
    }
    for (const auto& [block, bytes] : blocks) {
        model_arena::Release(chunk, block, bytes);
    }
}

TEST(ModelArena, ABlockGivenBackWhileItsChunkIsFilledIsUsedAgain) {
    if (kChecksEveryAllocation) {
        GTEST_SKIP() << "this build makes every object on its own";
    }
    const ModelArenaScope scope;
    auto first = MakeModelObject<Probe>(1);
    const void* const place = first.get();
    first.reset();
    auto second = MakeModelObject<Probe>(2);
    EXPECT_EQ(second.get(), place);
    EXPECT_EQ(second->value, 2);
}

TEST(ModelArena, ObjectsMadeInAScopeOutliveIt) {
    std::vector<std::shared_ptr<Probe>> kept;
    {
        const ModelArenaScope scope;
        for (int i = 0; i < 5000; ++i) {
            kept.push_back(MakeModelObject<Probe>(i));
        }
    }
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(kept[static_cast<std::size_t>(i)]->value, i);
    }
    // Released in an order other than that of making.
    for (std::size_t i = 0; i < kept.size(); i += 2) {
        kept[i].reset();
    }
    EXPECT_EQ(kept[1]->text, "a text too long for the string's own buffer");
}

TEST(ModelArena, ALargeBlockComesFromTheHeap) {
    struct Large {
        char bytes[model_arena::kLargestBlock + 1] = {};
    };
    std::shared_ptr<Probe> before;
    std::shared_ptr<Large> large;
    {
        const ModelArenaScope scope;
        before = MakeModelObject<Probe>(6);
        large = MakeModelObject<Large>();
    }
    large->bytes[sizeof(Large) - 1] = 'x';
    EXPECT_EQ(large->bytes[sizeof(Large) - 1], 'x');
    EXPECT_EQ(before->value, 6);
}

TEST(ModelArena, ManyChunksAreFilledAndEachGoesWithItsLastBlock) {
    std::vector<std::shared_ptr<Probe>> kept;
    {
        const ModelArenaScope scope;
        // Several chunks' worth.
        for (std::size_t i = 0; i < 4 * model_arena::kChunkSize / sizeof(Probe); ++i) {
            kept.push_back(MakeModelObject<Probe>(static_cast<int>(i)));
        }
    }
    // One object of the first chunk and one of the last are kept.
    const std::shared_ptr<Probe> first = kept.front();
    const std::shared_ptr<Probe> last = kept.back();
    kept.clear();
    EXPECT_EQ(first->value, 0);
    EXPECT_EQ(last->value, static_cast<int>(4 * model_arena::kChunkSize / sizeof(Probe)) - 1);
    EXPECT_EQ(first->text, last->text);
}

TEST(ModelArena, ObjectsAreMadeOutsideAScopeToo) {
    auto probe = MakeModelObject<Probe>(3);
    EXPECT_EQ(probe->value, 3);
    EXPECT_EQ(probe->text, "a text too long for the string's own buffer");
}

TEST(ModelArena, ObjectsMayBeReleasedOnOtherThreads) {
    std::vector<std::shared_ptr<Probe>> made;
    {
        const ModelArenaScope scope;
        for (int i = 0; i < 1000; ++i) {
            made.push_back(MakeModelObject<Probe>(i));
        }
    }
    std::vector<std::shared_ptr<Probe>> second(made.begin() + 500, made.end());
    made.resize(500);
    std::thread one([held = std::move(made)]() mutable { held.clear(); });
    std::thread two([held = std::move(second)]() mutable { held.clear(); });
    one.join();
    two.join();
    EXPECT_EQ(model_arena::ChunkWithRoom(), nullptr);
}

TEST(ModelArena, AReadLessonsPartsOutliveTheLesson) {
    auto source = Lesson::Create();
    auto sb = source->Storyboards()->Add(Storyboard::Create());
    sb->Properties()->SetString("Caption", "Halves and quarters", etNotEncoded);
    auto lesson = Lesson::Create();
    lesson->FromXMLString(source->ToXMLString());
    auto bag = lesson->Storyboards()->Item(sb->SBID())->Properties();
    lesson.reset();
    EXPECT_EQ(bag->GetString("caption", ""), "Halves and quarters");
    bag->SetString("Second", "made after the read", etNotEncoded);
    EXPECT_EQ(bag->Count(), 2);
}

}  // namespace
}  // namespace quillbank::support
