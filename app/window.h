// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The window layer: when a frame is drawn and shown, and what the window needs beside GLUT's callbacks.
//
// A shown frame waits for the screen's refresh and is swapped then, so that the owl runs at the refresh rate
// everywhere, also where GL does not wait by itself. The refresh is asked for before the frame is drawn:
// asked for after it, drawing and waiting would add up. It is drawn as late as it can be, so that the eyes
// look where the pointer is. A frame is never held longer than a tenth of a second.
//
// A frame that nobody sees does all its steps, so that reminders count and notices sound, but it touches no
// pixel, asks the window system nothing and is not swapped. Ten of them a second are drawn
//
//   - while nobody sees the window (IsWindowSeen),
//   - while the refresh that was asked for does not come, as with hidden windows of some desktops and with
//     screens that are off, until it comes,
//   - for a while after a swap that took longer than a tenth of a second, because frames that long advance no
//     timer: 128 times as long as the swap took, or until somebody may see the window again or touches it,
//   - while GLUT draws no frame itself; then GLUT's idle callback does.
//
// An owl at rest, with a pointer that has not moved and no key or button for a second, waits for every second
// refresh where a frame costs more processor time than a third of a refresh, as it does without a graphics
// card.
//
//                    BeginFrame             drawing    PresentFrame
//   shown            asks for a refresh,    all        flush, finish, wait for the refresh, swap
//                    waits until it is
//                    time to draw
//   shown, at rest   the same               all        flush, finish, wait for it and one more, swap
//   hidden           -                      no pixel   flush, finish, wait until 0.1 s has passed
//
// Where the desktop tells of no refreshes, a swap waits for one if the driver can. With vblank_mode=0 in the
// environment, the switch that Mesa has too, nothing waits: that is for measuring.
#pragma once

#include <cstdint>

/// The window's title.
constexpr char kWindowTitle[] = "Ulmaro Assistant";

/// What the window layer remembers from frame to frame. Times are those of the monotonic clock, nanoseconds.
struct WindowState {
    void (*frame)() = nullptr;  ///< the display callback; set by SetFrame
    bool watching = false;      ///< set by WatchFrames
    bool waits = true;          ///< false: for measuring, nothing waits; set by WatchFrames

    bool drawn = false;             ///< a frame has come since GLUT was last idle
    bool glut_draws = true;         ///< the frame being drawn is GLUT's and not the idle callback's
    bool seen = true;               ///< somebody may see the window
    bool hidden = false;            ///< the frame being drawn is one that nobody sees
    bool told = false;              ///< the desktop tells of the refresh after the frame being drawn
    bool paced = false;             ///< the frame being drawn waits for it
    bool refresh_late = false;      ///< the refresh that was asked for did not come in time
    std::uint64_t frame_begin = 0;  ///< of the frame being drawn or, between frames, of the last one
    std::uint64_t last_frame = 0;   ///< the last frame's end
    std::uint64_t swap_again = 0;   ///< no swap before this time: the last one took too long
    int swap_interval = -1;         ///< what the driver was last told; -1 before the first swap

    bool active = false;              ///< the user has done something since the last frame began
    std::uint64_t last_activity = 0;  ///< when the frame after that began
    std::uint64_t processor = 0;      ///< the process's processor time at the end of the last frame
    bool unsaved = false;             ///< the title says that something is unsaved; written by ShowUnsaved
    double frame_cost = 0;            ///< processor time of a shown frame, a running mean, nanoseconds
};

/// Written by the functions below; tests set it.
extern WindowState window;

// ---- Start ----

/// Reads GLUT's options before glutInit() does: takes "-iconic" out, because GLUT would wait for ever for a
/// window that is not shown, and lets MinimiseAtStart() do it. A "-geometry" that GLUT cannot take ends the
/// program with status 1 and one line on standard error.
void ReadOptions(int* argc, char** argv);

/// Lets GLUT say in one Italian line what keeps it from opening its window, and ends the program with status
/// 1 then; called before glutInit().
void ExplainMissingWindow();

/// Minimises the window if the options ask for it; called when the window is there.
void MinimiseAtStart();

/// Notes which function draws a frame and presents it.
void SetFrame(void (*frame)());

/// Starts watching over the frames, unless it has been started; called by the first frame and the first
/// reshape, because a window that is covered from its start has no frame yet.
void WatchFrames();

// ---- A frame ----

/// Begins a frame: decides whether anybody sees it, and asks for the refresh to show it at.
void BeginFrame();

/// Returns whether nobody sees the frame that is being drawn.
bool IsFrameHidden();

/// Ends a frame: flushes, waits until it is drawn, and swaps at the refresh if it is seen.
void PresentFrame();

/// Notes that the user has moved the pointer, clicked or pressed a key.
void NoteActivity();

/// Shows by an asterisk in the window's title whether something is unsaved, as editors do.
void ShowUnsaved(bool unsaved);
