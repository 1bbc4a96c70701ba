#pragma once

// Heap accounting for the benchmark binary (see memory_counter.cpp). The
// process is single-threaded while it measures, so the counts are plain.

#include <cstddef>

namespace quillbank::bench {

// Routes pugixml's and libxml2's allocations through the counter; call
// before any pugixml or libxml2 document exists.
void InstallMemoryCounter();

// Bytes of heap held now.
std::size_t HeapInUse();

// Starts a new peak at the current use.
void ResetPeak();

// The most heap held since the last ResetPeak.
std::size_t PeakHeap();

}  // namespace quillbank::bench
