// Counts the heap memory the benchmark process holds, for the peak-memory
// counters: every global operator new and delete, and every block pugixml
// and libxml2 allocate (their own allocation functions are replaced for the
// purpose).
// Sizes are the usable sizes malloc reports, so the figures are what the heap
// really holds, not what was asked for.

#include "memory_counter.hpp"

#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include <libxml/xmlmemory.h>
#include <pugixml.hpp>

namespace quillbank::bench {

namespace {

std::size_t current = 0;
std::size_t peak = 0;

void* Take(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) {
        current += malloc_usable_size(block);
        if (current > peak) {
            peak = current;
        }
    }
    return block;
}

void Give(void* block) {
    if (block != nullptr) {
        current -= malloc_usable_size(block);
        std::free(block);
    }
}

void* PugiAllocate(std::size_t size) { return Take(size); }
void PugiDeallocate(void* block) { Give(block); }

void* LibxmlRealloc(void* block, std::size_t size) {
    const std::size_t before = block != nullptr ? malloc_usable_size(block) : 0;
    void* moved = std::realloc(block, size == 0 ? 1 : size);
    if (moved != nullptr) {
        current = current - before + malloc_usable_size(moved);
        if (current > peak) {
            peak = current;
        }
    }
    return moved;
}

char* LibxmlStrdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* copy = Take(size);
    if (copy != nullptr) {
        std::memcpy(copy, text, size);
    }
    return static_cast<char*>(copy);
}

}  // namespace

void InstallMemoryCounter() {
    pugi::set_memory_management_functions(PugiAllocate, PugiDeallocate);
    xmlMemSetup(Give, Take, LibxmlRealloc, LibxmlStrdup);
}

std::size_t HeapInUse() { return current; }

void ResetPeak() { peak = current; }

std::size_t PeakHeap() { return peak; }

}  // namespace quillbank::bench

void* operator new(std::size_t size) {
    void* block = quillbank::bench::Take(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return quillbank::bench::Take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return quillbank::bench::Take(size); }
void operator delete(void* block) noexcept { quillbank::bench::Give(block); }
void operator delete[](void* block) noexcept { quillbank::bench::Give(block); }
void operator delete(void* block, std::size_t) noexcept { quillbank::bench::Give(block); }
void operator delete[](void* block, std::size_t) noexcept { quillbank::bench::Give(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { quillbank::bench::Give(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { quillbank::bench::Give(block); }
