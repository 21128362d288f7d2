// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Whether the program waits for the screen's refreshes while it is measured.
#pragma once

#include "tests/desktop/desktop.h"

namespace bench {

/// Lets a program that is about to start draw as fast as it can, instead of at the screen's refreshes: by the
/// switch that Mesa has too.
inline void SwitchWaitingOff(desktop::Start& start) {
    start.environment["vblank_mode"] = "0";
}

}  // namespace bench
