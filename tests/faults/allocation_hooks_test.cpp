// The allocation hooks of this test program, and tests of the hooks
// themselves.

#include "faults/allocation_hooks.hpp"

#include <gtest/gtest.h>

#include <malloc.h>

#include <cstdlib>
#include <new>
#include <string>

#include <pugixml.hpp>

namespace quillbank::faults {
namespace {

std::int64_t g_allocations = 0;
std::int64_t g_failAt = -1;
bool g_failXml = false;
std::size_t g_inUse = 0;
std::size_t g_peak = 0;

// Counts one allocation; false when this one is to fail.
bool Admit() {
    const std::int64_t number = g_allocations++;
    if (g_failAt >= 0 && number == g_failAt) {
        g_failAt = -1;
        return false;
    }
    return true;
}

void Track(void* p) {
    if (p != nullptr) {
        g_inUse += malloc_usable_size(p);
        if (g_inUse > g_peak) {
            g_peak = g_inUse;
        }
    }
}

void Untrack(void* p) {
    if (p != nullptr) {
        g_inUse -= malloc_usable_size(p);
    }
}

// Kept out of line: seen inline through the replaced operators, GCC would
// take a free() of memory from operator new for a mismatched pair.
[[gnu::noinline]] void* Allocate(std::size_t size) {
    if (!Admit()) {
        return nullptr;
    }
    void* p = std::malloc(size == 0 ? 1 : size);
    Track(p);
    return p;
}

[[gnu::noinline]] void Release(void* p) {
    Untrack(p);
    std::free(p);
}

void* XmlAllocate(std::size_t size) { return g_failXml ? nullptr : Allocate(size); }

// pugixml allocates through these from the start (both sides use malloc, so
// memory taken before they were set is released correctly too).
const bool g_xmlHooked = [] {
    pugi::set_memory_management_functions(&XmlAllocate, &Release);
    return true;
}();

}  // namespace

std::int64_t Allocations() { return g_allocations; }
void FailAllocation(std::int64_t fromNow) { g_failAt = fromNow < 0 ? -1 : g_allocations + fromNow; }
bool FailureArmed() { return g_failAt >= 0; }
void FailXmlAllocations(bool fail) { g_failXml = fail; }
std::size_t BytesInUse() { return g_inUse; }
std::size_t PeakBytes() { return g_peak; }
void ResetPeak() { g_peak = g_inUse; }

namespace {

TEST(AllocationHooks, AnArmedAllocationFailsOnceAndTheCountersMove) {
    ASSERT_TRUE(g_xmlHooked);
    const std::int64_t before = Allocations();
    ResetPeak();
    {
        std::string big(1 << 20, 'x');
        EXPECT_GE(PeakBytes(), std::size_t{1} << 20);
    }
    EXPECT_GT(Allocations(), before);
    Disarm disarm;
    FailAllocation(0);
    EXPECT_THROW(std::string(100, 'y'), std::bad_alloc);
    EXPECT_NO_THROW(std::string(100, 'y'));
}

}  // namespace
}  // namespace quillbank::faults

// The replaced global allocation functions.
void* operator new(std::size_t size) {
    void* p = quillbank::faults::Allocate(size);
    if (p == nullptr) {
        throw std::bad_alloc();
    }
    return p;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return quillbank::faults::Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return quillbank::faults::Allocate(size); }
void operator delete(void* p) noexcept { quillbank::faults::Release(p); }
void operator delete[](void* p) noexcept { quillbank::faults::Release(p); }
void operator delete(void* p, std::size_t) noexcept { quillbank::faults::Release(p); }
void operator delete[](void* p, std::size_t) noexcept { quillbank::faults::Release(p); }
