// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The state of the run that all screens share: which of them is shown, the time of the frame, the sound
// switch, and how many events are due.
//
// This header declares no function, so that a screen can read the clock or go to another screen without
// depending on whoever draws them all.
#pragma once

#include <ctime>

/// The values of menu_case_id. The panel screens are counted from 0: they index the panel pictures `GUI`.
enum Screen {
    kOwlScreen = -1,    ///< the owl
    kListScreen = 0,    ///< the list of events
    kEditorScreen = 1,  ///< the editor of an event
    kViewScreen = 2,    ///< the read-only view of a due event
    kQuizScreen = 3,    ///< a question of the quiz
    kPanelScreens       ///< how many panel screens there are
};

/// Which screen is shown, one of Screen. Written by the menu, the notices and the panel screens.
extern int menu_case_id;

/// The previous frame's duration in seconds, the step of every timer. Written by display() alone.
extern float global_time;

/// The local time of this frame. Written by display() alone.
extern std::tm frame_time;

/// Whether sound effects are switched on. Written by the menu.
extern bool enable_sfx;

/// How many events are due, as the last frame of the owl's screen counted them. Written by the notices; the
/// menu reads it one frame later.
extern int n_notify;

/// At least one event is due. Written by the notices; the owl reads it one frame later.
extern bool new_notify;
