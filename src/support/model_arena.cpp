#include "support/model_arena.hpp"

#include <array>
#include <atomic>
#include <new>

#include "support/allocation_checks.hpp"

namespace quillbank::support {

namespace model_arena {

// The start of every chunk; its blocks follow.
struct alignas(kAlignment) Chunk {
    // Live blocks (given-back blocks kept for reuse count as live), plus one
    // while the chunk is being filled.
    std::atomic<std::size_t> live{1};
};

namespace {

// Blocks of one size given back to the chunk being filled, linked through
// their first bytes.
struct Spare {
    std::size_t bytes = 0;
    void* first = nullptr;
    std::size_t count = 0;
};

// A read makes objects of a handful of sizes.
constexpr std::size_t kSpareSizes = 8;

// What a thread is filling.
struct Fill {
    int depth = 0;  // open scopes
    Chunk* chunk = nullptr;
    char* next = nullptr;
    char* end = nullptr;
    std::array<Spare, kSpareSizes> spares{};
};

thread_local Fill fill;

// This thread's fill. Thread-local storage in a shared library is reached
// through a call, which the compiler repeats at every use of the variable
// (even inside loops); reached through this function, it is reached once.
[[gnu::noinline]] Fill& ThisThreadsFill() noexcept { return fill; }

constexpr std::size_t RoundUp(std::size_t bytes) {
    return bytes == 0 ? kAlignment : (bytes + kAlignment - 1) & ~(kAlignment - 1);
}

void Drop(Chunk* chunk, std::size_t blocks) noexcept {
    if (chunk->live.fetch_sub(blocks, std::memory_order_acq_rel) == blocks) {
        chunk->~Chunk();
        ::operator delete(chunk);
    }
}

// Stops filling the current chunk, with its spare blocks; it goes when its
// other blocks have.
void LetGo(Fill& f) noexcept {
    if (f.chunk != nullptr) {
        std::size_t blocks = 1;
        for (Spare& spare : f.spares) {
            blocks += spare.count;
            spare = Spare();
        }
        Drop(f.chunk, blocks);
        f.chunk = nullptr;
        f.next = nullptr;
        f.end = nullptr;
    }
}

}  // namespace

Chunk* ChunkWithRoom() {
    Fill& f = ThisThreadsFill();
    if (f.depth == 0) {
        return nullptr;
    }
    if (static_cast<std::size_t>(f.end - f.next) < kLargestBlock) {
        void* memory = ::operator new(kChunkSize);
        LetGo(f);
        f.chunk = new (memory) Chunk();
        f.next = static_cast<char*>(memory) + sizeof(Chunk);
        f.end = static_cast<char*>(memory) + kChunkSize;
    }
    return f.chunk;
}

void* Allocate(Chunk* chunk, std::size_t bytes) noexcept {
    Fill& f = ThisThreadsFill();
    bytes = RoundUp(bytes);
    for (Spare& spare : f.spares) {
        if (spare.bytes == bytes && spare.first != nullptr) {
            void* block = spare.first;
            spare.first = *static_cast<void**>(block);
            --spare.count;
            return block;
        }
    }
    void* block = f.next;
    f.next += bytes;
    chunk->live.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void Release(Chunk* chunk, void* block, std::size_t bytes) noexcept {
    Fill& f = ThisThreadsFill();
    if (chunk == f.chunk) {
        // Only the thread filling a chunk sees it as its own.
        bytes = RoundUp(bytes);
        for (Spare& spare : f.spares) {
            if (spare.bytes == bytes || spare.bytes == 0) {
                spare.bytes = bytes;
                *static_cast<void**>(block) = spare.first;
                spare.first = block;
                ++spare.count;
                return;
            }
        }
    }
    Drop(chunk, 1);
}

}  // namespace model_arena

ModelArenaScope::ModelArenaScope() noexcept {
    if constexpr (!kChecksEveryAllocation) {
        ++model_arena::ThisThreadsFill().depth;
    }
}

ModelArenaScope::~ModelArenaScope() {
    if constexpr (!kChecksEveryAllocation) {
        model_arena::Fill& current = model_arena::ThisThreadsFill();
        if (--current.depth == 0) {
            model_arena::LetGo(current);
        }
    }
}

}  // namespace quillbank::support
