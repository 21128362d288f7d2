// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The notices of due events on the owl's screen: the pass that finds them, the button that opens them, the
// sound and the badge with their count. When an event is due stands in calendar/notices.h.
#pragma once

/// How long ago a notice sounded while nothing is due, seconds: longer than any pause between two sounds.
constexpr float kLongAgo = 999;

/// What the notices remember from frame to frame.
struct NotificationState {
    float play_sfx_te = kLongAgo;  ///< seconds since the sound of a notice was last played
};

/// Written by Notifications(); tests set it.
extern NotificationState notifications;

/// Finds the due events, shows the button that opens the foremost of them or takes the quiz offer, sounds,
/// and shows the badge with their count; part of each frame of the owl's screen, in the owl's frame.
void Notifications();
