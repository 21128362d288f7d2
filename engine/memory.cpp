// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/memory.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdlib>
#include <limits>
#include <memory>

namespace {

/// Sets from which size on a buffer is the system's own, and how much free memory may lie at the heap's end.
/// Naming them stops the allocator from adapting them. Bytes.
void SetThresholds(int own_mapping, int free_at_end) {
    mallopt(M_MMAP_THRESHOLD, own_mapping);
    mallopt(M_TRIM_THRESHOLD, free_at_end);
}

}  // namespace

void ReturnFreedMemory() {
    SetThresholds(128 * 1024, 512 * 1024);
}

void KeepFreedMemory() {
    SetThresholds(std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
}

void PrepareLargePages(std::size_t bytes) {
    constexpr std::size_t kLargePage = std::size_t{2} << 20;
    if (bytes < 2 * kLargePage) return;
    KeepFreedMemory();  // so that the room below, once freed, is where the next allocations come from
    void* room = std::malloc(bytes);
    void* start = room;
    std::size_t space = bytes;
    if (std::align(kLargePage, kLargePage, start, space) != nullptr) madvise(start, space, MADV_HUGEPAGE);
    std::free(room);
}
