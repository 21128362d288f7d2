// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Allocations of the program's own code that fail: operator new, malloc, calloc and realloc, as they are
// called by the objects that this program is linked from. What shared libraries take for themselves does not
// count, nor what the fakes take, which stand for libraries.
#pragma once

/// How many allocations fail.
enum class Shortage {
    kOnce,       ///< one
    kFromThere,  ///< it and all after it
};

/// How many allocations there were, and how many of them failed.
struct AllocationCounts {
    int made = 0;
    int failed = 0;
};

/// Counts the program's allocations while it lives, and lets the one of a number, from 1, fail.
class FailingAllocations {
  public:
    /// The counts are kept where they are wanted: a process that ends cannot be asked any more.
    FailingAllocations(int number, Shortage shortage, AllocationCounts& counts);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
};
