#pragma once

#include <malloc.h>

namespace host {

/// Keeps the memory of a server that runs for months near what it uses. By default each thread allocates in a
/// heap of its own, and freed blocks stay in all of them. Requires: no thread was started.
inline void limitUnusedMemory() {
    constexpr int kHeaps = 2;
    constexpr int kReturnedBytes = 256 * 1024;
    mallopt(M_ARENA_MAX, kHeaps);
    // Buffers of this size are returned when they are freed; by default the limit grows with the largest.
    mallopt(M_MMAP_THRESHOLD, kReturnedBytes);
    mallopt(M_TRIM_THRESHOLD, kReturnedBytes);
}

}  // namespace host
