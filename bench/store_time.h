// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How long the store takes, for benchmarks that also talk to the X server: Xlib has a type `Time` of its own,
// so they cannot include the events.
#pragma once

namespace bench {

/// Loads the store of the current folder; ends the benchmark where it has not so many events. Returns the
/// time, milliseconds.
double LoadMilliseconds(int events_expected);

/// Saves what was loaded, in the current folder. Returns the time, milliseconds.
double SaveMilliseconds();

}  // namespace bench
