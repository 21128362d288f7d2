// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How long a program takes to its first frame.
#pragma once

#include <string>
#include <vector>

#include "tests/desktop/desktop.h"

namespace bench {

/// Lets the programs that are timed from now on show their windows on this desktop.
void EnterDesktop(const desktop::Desktop& desk);

/// Returns how long a program takes from its start to its first swap of buffers, where a preloaded library
/// ends it, milliseconds. It runs in the current folder, on the desktop that was entered.
double FirstFrameMilliseconds(const std::vector<std::string>& words);

}  // namespace bench
