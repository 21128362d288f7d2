// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What reaches a user who does not look at the owl: the window asks for attention, and the desktop shows a
// notice.
//
//     while                                                  |
//     -------------------------------------------------------+------------------------------------------
//     something is due and the window has not the focus      | the window asks for attention
//     nobody sees the window, and the number of due events   | a notice of the event that is due last, until
//       has risen since                                      |   nothing is due or somebody sees the window
//     nobody sees the window, and a save has failed          | a notice of that, until a save works or
//                                                            |   somebody sees the window
//
// A window that goes out of sight within a second of a rise was not seen: one that starts minimised is on the
// screen for a moment.
//
// There is one notice at a time: each takes the place of the one before, and a due event goes before a failed
// save. A click on it brings the window up; it has no buttons, because an event is acknowledged by reading
// it.
#pragma once

#include <cstdint>
#include <optional>

#include "app/desktop.h"
#include "calendar/events.h"

/// What the notice on the desktop is about.
enum class NoticeTopic { kNone, kDueEvent, kUnsaved };

/// What is remembered from frame to frame. Written by the functions below; tests set it.
struct AttentionState {
    bool demanded = false;                   ///< the window asks for attention
    std::optional<DesktopNotice> due;        ///< of the event that fell due last
    bool untold = false;                     ///< that has not been given to the desktop
    std::uint64_t risen_at = 0;              ///< the frame's time then, nanoseconds of the monotonic clock
    NoticeTopic topic = NoticeTopic::kNone;  ///< of the notice that the desktop was given last
};

extern AttentionState attention;

/// Notes that the number of due events has risen because this one fell due.
void NoteRise(const Event& event);

/// Does what the table above says; the end of each frame.
void KeepAttention();
