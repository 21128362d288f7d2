// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What a test tells the library fast_clock.cpp, which makes all clocks of the program that loads it faster:
// the wall's and the monotonic one, for every thread, by a whole factor from the program's start on.
#pragma once

#include <cstdint>

namespace longrun {

/// The environment variable with the factor, read once; 1 where it is missing or out of 1 .. kLargestFactor.
constexpr char kFactorVariable[] = "ULMARO_CLOCK_FACTOR";

/// A day of real time must fit the clock's 64 bits of nanoseconds many times over.
constexpr std::int64_t kLargestFactor = 1000;

}  // namespace longrun
