// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A walk through the program's screens for the benchmarks: the same steps lead every program to the same
// pictures.
//
// The program's clock must be in hand, so that what a screen shows stays as it is for as long as it is
// measured. The walk begins at the program's first frames and goes through each screen once, in this order:
// it takes what the events and the clock of the start have in store for it.
#pragma once

#include <functional>
#include <string>

#include "tests/desktop/desktop.h"

namespace bench {

/// The edge of the window on the walk, pixels: as large as the program opens it.
constexpr int kWindowEdge = 300;

/// Returns a start for the walk: the clock in hand, no waiting for refreshes, an appointment that is due and
/// twelve that are not.
desktop::Start StartOfWalk();

/// Leads the program from screen to screen and calls `stop` on each with the screen's name. The program must
/// show that screen again, and no time must have passed for it, when `stop` returns.
void WalkScreens(desktop::Desktop& desk, desktop::Program& program,
                 const std::function<void(const std::string& screen)>& stop);

/// Returns the part of the pixels in which two images of the same size differ, 0 .. 1; 1 where the sizes
/// differ.
double Difference(const desktop::Image& a, const desktop::Image& b);

}  // namespace bench
