// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Interpolation by percentage, and the rule of three.
//
// Nothing here guards against odd numbers: NaN and infinity go in and out as IEEE 754 has it.
#pragma once

/// Returns the value at `rate` per cent of the way from `from` to `to`. Rates outside 0 .. 100 extrapolate.
float RateInterpole(float from, float to, float rate);

/// Returns how many per cent of `total` the value is, limited to 0 .. 100. A total of 0 gives 100 for a
/// positive value and 0 for a negative one, and NaN for 0.
float GetRate(float value, float total);

/// Returns what is to `b` as `c` is to `a`: b * c / a.
template <typename Number>
Number proportional(Number a, Number b, Number c) {
    return b * c / a;
}
