#pragma once

// Memory for the objects made while a whole lesson is read or copied.
//
// Reading a lesson makes one property, bag or child element for nearly every
// element of its text: hundreds of thousands of small blocks for a large
// lesson. Taken one by one from the general heap, they cost an allocation
// each, lie between the strings made around them, and on release fill the
// heap's free lists, which it sorts through again when larger blocks come and
// go. While a `ModelArenaScope` is open on a thread, the objects made on that
// thread instead come one after another from large chunks.
//
// Each chunk counts its live blocks and goes when the last one does, so an
// object kept after the rest of its lesson has gone keeps only its own chunk
// (the allocator kept with each object knows which). A block given back
// while its chunk is still being filled, on the thread filling it (an
// element read and then dropped, a property replaced by a later one of the
// same name), is used again for the next block of its size; other blocks
// are not reused. Objects made outside a scope, objects too large for a
// chunk, and every object in builds that check each allocation come from
// the general heap as before.

#include <cstddef>
#include <memory>
#include <utility>

namespace quillbank::support {

namespace model_arena {

// A run of memory that blocks are taken from one after another.
struct Chunk;

// Blocks are aligned for any object of ordinary alignment.
inline constexpr std::size_t kAlignment = alignof(std::max_align_t);
// The size of a chunk.
inline constexpr std::size_t kChunkSize = std::size_t{256} << 10;
// Larger blocks come from the heap, so that little of a chunk goes unused.
inline constexpr std::size_t kLargestBlock = 1024;

// While a scope is open on this thread, the chunk being filled, with room
// for a block of kLargestBlock; null otherwise.
Chunk* ChunkWithRoom();
// A block of `bytes` (at most kLargestBlock) from `chunk`, which is the one
// the last call to ChunkWithRoom gave on this thread.
void* Allocate(Chunk* chunk, std::size_t bytes) noexcept;
// Gives a block of `bytes` back to its chunk.
void Release(Chunk* chunk, void* block, std::size_t bytes) noexcept;

}  // namespace model_arena

// While one is open on a thread, model objects made there come from chunks.
// Scopes nest: an inner one goes on filling the outer one's chunk.
class ModelArenaScope {
public:
    ModelArenaScope() noexcept;
    ~ModelArenaScope();
    ModelArenaScope(const ModelArenaScope&) = delete;
    ModelArenaScope& operator=(const ModelArenaScope&) = delete;
};

// Allocates from a chunk, or from the heap when it has none; a block goes
// back where it came from. Allocators are kept with the objects they made,
// so each knows the chunk of its object.
template <class T>
class ModelAllocator {
public:
    using value_type = T;

    explicit ModelAllocator(model_arena::Chunk* chunk) noexcept : chunk_(chunk) {}
    template <class U>
    ModelAllocator(const ModelAllocator<U>& other) noexcept : chunk_(other.Chunk()) {}

    T* allocate(std::size_t n) {
        if (!Chunked(n)) {
            return std::allocator<T>().allocate(n);
        }
        return static_cast<T*>(model_arena::Allocate(chunk_, n * sizeof(T)));
    }
    void deallocate(T* block, std::size_t n) noexcept {
        if (!Chunked(n)) {
            std::allocator<T>().deallocate(block, n);
        } else {
            model_arena::Release(chunk_, block, n * sizeof(T));
        }
    }

    model_arena::Chunk* Chunk() const noexcept { return chunk_; }

    template <class U>
    friend bool operator==(const ModelAllocator& a, const ModelAllocator<U>& b) noexcept {
        return a.chunk_ == b.Chunk();
    }

private:
    bool Chunked(std::size_t n) const noexcept {
        return chunk_ != nullptr && alignof(T) <= model_arena::kAlignment &&
               n <= model_arena::kLargestBlock / sizeof(T);
    }

    model_arena::Chunk* chunk_;
};

// A model object and its reference count in one block, from the chunk being
// filled while a scope is open on this thread.
template <class T, class... Arguments>
std::shared_ptr<T> MakeModelObject(Arguments&&... arguments) {
    return std::allocate_shared<T>(ModelAllocator<T>(model_arena::ChunkWithRoom()),
                                   std::forward<Arguments>(arguments)...);
}

}  // namespace quillbank::support
