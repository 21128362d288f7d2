// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A machine of little memory, for tests of what happens when it runs out.
#pragma once

#include <sys/resource.h>

#include <cstdlib>

constexpr rlim_t kGigabyte = 1'000'000'000;

/// Allows the process so many bytes of addresses, for good: call it in a process of its own. Not for the
/// address sanitizer, which needs more for itself and ends the process where memory is short.
inline void LimitMemory(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    if (setrlimit(RLIMIT_AS, &limit) != 0) std::abort();
}
