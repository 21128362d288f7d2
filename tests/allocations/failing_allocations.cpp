// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/allocations/failing_allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

AllocationCounts* counts = nullptr;  ///< null while nobody counts
Shortage shortage = Shortage::kOnce;
int first_to_fail = 0;
int in_fakes = 0;  ///< how many functions of the fakes have been entered and not left

/// Counts an allocation; returns whether it must fail.
bool Fails() {
    if (counts == nullptr || in_fakes > 0) return false;
    const int number = ++counts->made;
    const bool fails =
        number == first_to_fail || (shortage == Shortage::kFromThere && number > first_to_fail);
    counts->failed += fails ? 1 : 0;
    return fails;
}

}  // namespace

FailingAllocations::FailingAllocations(int number, Shortage how_many, AllocationCounts& kept_in) {
    kept_in = {};
    first_to_fail = number;
    shortage = how_many;
    counts = &kept_in;
}

FailingAllocations::~FailingAllocations() {
    counts = nullptr;
}

// The names are the compiler's and the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

void __cyg_profile_func_enter(void* /*function*/, void* /*caller*/) {
    ++in_fakes;
}

void __cyg_profile_func_exit(void* /*function*/, void* /*caller*/) {
    --in_fakes;
}

void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void* __real_realloc(void* memory, std::size_t bytes);

void* __wrap_malloc(std::size_t bytes) {
    return Fails() ? nullptr : __real_malloc(bytes);
}

void* __wrap_calloc(std::size_t count, std::size_t bytes) {
    return Fails() ? nullptr : __real_calloc(count, bytes);
}

void* __wrap_realloc(void* memory, std::size_t bytes) {
    return Fails() ? nullptr : __real_realloc(memory, bytes);
}

}  // extern "C"

void* operator new(std::size_t bytes) {
    void* memory = Fails() ? nullptr : __real_malloc(bytes == 0 ? 1 : bytes);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
    std::free(memory);
}
