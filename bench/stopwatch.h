// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How the benchmarks of parts of the program take the time.
#pragma once

#include <chrono>

namespace bench {

/// Returns how long a step takes, milliseconds.
template <typename Step>
double Milliseconds(const Step& step) {
    using Milli = std::chrono::duration<double, std::milli>;
    const auto start = std::chrono::steady_clock::now();
    step();
    return Milli(std::chrono::steady_clock::now() - start).count();
}

}  // namespace bench
