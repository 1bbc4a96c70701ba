#pragma once

// Allocation hooks of the faults test program: every allocation through
// operator new and through pugixml is counted, the bytes in use and their
// peak are tracked, and a chosen allocation can be made to fail. The hooks
// are defined in allocation_hooks_test.cpp; they are idle until armed.

#include <cstddef>
#include <cstdint>

namespace quillbank::faults {

// Allocations made so far (operator new and pugixml together).
std::int64_t Allocations();
// Makes the allocation with this number (counted from now, 0 = the next one)
// fail: operator new throws std::bad_alloc, pugixml gets a null pointer.
// -1 disarms.
void FailAllocation(std::int64_t fromNow);
// True while an armed failure has not happened yet.
bool FailureArmed();
// While true, every pugixml allocation fails (operator new is unaffected).
void FailXmlAllocations(bool fail);
// Bytes in use now, and the most in use since ResetPeak().
std::size_t BytesInUse();
std::size_t PeakBytes();
void ResetPeak();

// Disarms every injection when it goes out of scope.
struct Disarm {
    ~Disarm() {
        FailAllocation(-1);
        FailXmlAllocations(false);
    }
};

}  // namespace quillbank::faults
