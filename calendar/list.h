// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The events list: the calendar's first screen, from which events are added and opened.
#pragma once

/// Draws the list and does what is clicked; one frame of the screen whose menu_case_id is 0. Sorts `events`.
void EventList();
