// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How soon eyes follow the pointer: it jumps to a corner of the screen, outside the windows, and the eyes'
// part of the window is read again and again until its pixels have changed.
#pragma once

#include <X11/Xlib.h>

#include <optional>

#include "tests/desktop/desktop.h"

namespace bench {

/// A part of a window, pixels.
struct Part {
    Window window = None;
    int x = 0, y = 0;
    unsigned int width = 0, height = 0;
};

/// Returns the owl's eyes: the part of its window that both pupils move in.
Part OwlsEyes(const desktop::Program& program);

/// Puts the pointer in the next of two opposite corners of the screen. Returns how long the eyes take to
/// move, milliseconds; nothing where they have not within half a second, as while they blink.
std::optional<double> TimeToFollow(Display* connection, const Part& eyes);

}  // namespace bench
