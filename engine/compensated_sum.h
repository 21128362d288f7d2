// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Sums of many small steps in a float, with nothing lost.
//
// A float near 10,000 knows no steps finer than a thousandth, so a timer that adds the few milliseconds of a
// frame to it runs fast or slow, and with short steps stands still. Here what rounding loses is kept beside
// the sum and added again with the next step: compensated summation,
// https://en.wikipedia.org/wiki/Kahan_summation_algorithm. What is lost is a double: it holds the difference
// between a double and its nearest float exactly.
#pragma once

#include <cmath>

/// Adds a step to `sum`, which is the nearest float of the exact sum; `lost` is what it lacks. To set the sum
/// to a value, set `lost` to 0. A sum that is not finite has lost nothing.
inline void AddCompensated(float& sum, double& lost, float step) {
    const double exact = static_cast<double>(sum) + lost + static_cast<double>(step);
    sum = static_cast<float>(exact);
    lost = std::isfinite(sum) ? exact - static_cast<double>(sum) : 0;
}
