// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A random value on a grid, from the C library's generator.
#pragma once

/// Returns a random value in [min, max] on a grid of 1 / precision from min on: rand_intvf(0, 1, 10) is one
/// of 0, 0.1 ... 1. Takes one number of rand.
///
/// With max below min the result is still at or above min. Where the grid has no value (max a step or so
/// below min) the result is min and rand is not called. NaN as `max` gives min; NaN elsewhere, or a precision
/// of 0, gives NaN.
///
/// Deliberate: the first call in the process seeds the generator with the time once more.
float rand_intvf(float min, float max, float precision);
