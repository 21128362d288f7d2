// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How long a program takes to its first frame.
#pragma once

#include <string>
#include <vector>

namespace bench {

/// Returns how long a program takes from its start to its first swap of buffers, where a preloaded library
/// ends it, milliseconds. It runs in the current folder, on the display in the environment.
double FirstFrameMilliseconds(const std::vector<std::string>& words);

}  // namespace bench
