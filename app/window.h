// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The window layer: what the window needs beside GLUT's callbacks so that reminders count and notices sound
// although nobody sees it.
//
// GLUT stops asking for frames while its window is minimised or wholly covered. So when GLUT is idle and no
// frame has come since the last time, this layer draws frames itself, ten a second. It goes by the monotonic
// clock; GLUT's timers would go by the time of day, and stand still for an hour when that is set back by one.
//
//   GLUT's loop          shown                       hidden
//   events               are handled                 are handled
//   display callback     draws and presents a frame  is not called
//   idle callback        sees that a frame came      waits for an event or the next frame's time, then draws
//   it
#pragma once

#include <cstdint>

/// The window's title.
constexpr char kWindowTitle[] = "Ulmaro Assistant";

/// What the window layer remembers from frame to frame.
struct WindowState {
    void (*frame)() = nullptr;     ///< the display callback; set by SetFrame
    bool watching = false;         ///< set by WatchFrames
    bool presented = false;        ///< a frame has come since GLUT was last idle; set by PresentFrame
    std::uint64_t last_frame = 0;  ///< when GLUT was last idle after a frame, monotonic clock, nanoseconds
    bool drawing_hidden = false;   ///< the frame being drawn is one of a hidden window
    int swap_interval = -1;        ///< what the driver was last told; -1 before the first frame
    bool unsaved = false;          ///< the title says that something is unsaved; written by ShowUnsaved
};

/// Written by the functions below; tests set it.
extern WindowState window;

/// Lets GLUT say in one Italian line what keeps it from opening its window, and ends the program with status
/// 1 then; called before glutInit().
void ExplainMissingWindow();

/// Notes which function draws a frame and presents it.
void SetFrame(void (*frame)());

/// Starts watching over the frames, unless it has been started; called by the first frame and the first
/// reshape, because a window that is covered from its start has no frame yet.
void WatchFrames();

/// Ends a frame: flushes, waits until it is drawn, swaps. A shown window swaps at the screen's refresh; a
/// hidden one does not wait for it.
void PresentFrame();

/// Shows by an asterisk in the window's title whether something is unsaved, as editors do.
void ShowUnsaved(bool unsaved);
