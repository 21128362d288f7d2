// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/random.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace {

/// Truncates toward zero. Numbers outside the range of int become the nearest int, NaN becomes 0.
long long Truncate(float number) {
    if (std::isnan(number)) return 0;
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    return static_cast<long long>(std::clamp(static_cast<double>(number), kLowest, kHighest));
}

}  // namespace

float rand_intvf(float min, float max, float precision) {
    static bool instance_seed = false;
    if (!instance_seed) {
        std::srand(static_cast<unsigned int>(std::time(nullptr)));
        instance_seed = true;
    }
    const long long n = Truncate((max - min) * precision) + 1;
    if (n == 0) return min;
    // Deliberate: n may be negative. The remainder of rand's non-negative number is then 0 .. |n| - 1.
    return min + static_cast<float>(std::rand() % n) / precision;
}
