// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Double clicks: the second press of one is nothing, where the first has opened or closed a screen.
//
// Many users double-click everything. The first press acts; the second one would meet whatever the new screen
// has under the pointer. So a press at the same spot is dropped while the new screen is younger than 0.3
// seconds:
//
//   first press     the screen     second press at the same spot   third press there
//   acts, screen    changes        within 0.3 s of the change:     within 0.3 s of the second:
//   changes                        dropped                         dropped as well, and so on
//                                  later: acts                     -
//   acts, screen    stays          acts                            acts
//   hits nothing    stays          acts                            acts
//
// The time runs from the end of the frame that changed the screen, not from the first press: that frame may
// have waited for the disk, and the press for its turn behind typed characters (stroke_queue.h). Arrows and
// tabs change no screen and so take clicks as fast as they come.
#pragma once

#include <cstdint>

/// What is remembered of the last press that was not dropped.
struct DoubleClickState {
    float x = 0, y = 0;              ///< where it was, window pixels, origin top left
    bool changed_screen = false;     ///< it has opened or closed a screen
    std::uint64_t dropped_from = 0;  ///< a press at its spot is dropped until 0.3 seconds after, nanoseconds
};

/// Written by the functions below; tests set it.
extern DoubleClickState double_click;

/// Takes this frame's press (input.h) away where it is the second one of a double click whose first has
/// changed the screen; called before a screen is drawn. The same spot is at most 4 pixels away in each
/// direction.
void DropSecondPress();

/// Notes that the frame's press has opened or closed a screen; `now` is the monotonic clock, nanoseconds.
void NotePressChangedScreen(std::uint64_t now);
