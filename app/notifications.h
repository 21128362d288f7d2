// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The notices of due events: the pass that finds them, the button that opens them, the count.
#pragma once

/// How many events are due, as the last frame of the character screen counted them.
extern int n_notify;

/// At least one event is due. Read one frame later by the owl.
extern bool new_notify;

/// Looks which events are due, shows the button that opens the foremost of them or takes the quiz offer, and
/// the badge with their count; part of each frame of the character screen, in the owl's frame.
void Notifications();
