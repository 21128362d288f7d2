// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The events list: the calendar's first screen, from which events are added and opened.
#pragma once

/// What the list remembers from frame to frame.
struct ListState {
    int swap = 0;  ///< index of the first event shown
};

/// Written by the list; tests set it.
extern ListState event_list;

/// Draws the list and does what is clicked; one frame of kListScreen. Sorts `events`.
void EventList();
