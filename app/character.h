// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl: its poses, its timers and the drawing of its scene.
//
// It breathes, blinks, looks around, changes pose, falls asleep and wakes, laughs, and puts on a hat when it
// offers a quiz. Every timer adds up global_time, so all of it stands still while a panel screen is open. One
// frame of it is Render(), which reads as the list of its steps.
#pragma once

/// The owl's poses; they index the pictures `owl` and `owl_ce`.
enum Pose { kStanding = 0, kPerching = 1, kSleeping = 2 };

/// The pose shown. Written by Render().
extern int anim;

/// A quiz offer is showing: hat, thought bubble, smoke. Written by Render(), the menu and the frame.
extern bool spawn_question;

/// A laugh is wanted. Written by the quiz after a wrong answer, taken by Render().
extern bool spawn_laugh;

/// What the owl remembers from frame to frame; times are seconds of character-screen time.
struct CharacterState {
    float bt = 0;                      ///< animation clock; starts again with a laugh
    float sqt = 0, next_sq = 0;        ///< since the last quiz offer; delay until the next
    bool close_eyes = false;           ///< the eyes are shut this frame
    float cet = 0, next_ce = 0;        ///< since the last blink; delay until the next
    float cst = 0;                     ///< how long the blink has lasted
    float ste = 0, next_st = 0;        ///< stare cycle; delay before the owl looks straight ahead
    float next_std = 0;                ///< length of that look
    float swap_te = 0, next_swap = 0;  ///< time in the pose; time until the next pose
    int sleep_state = 0;               ///< 0 and 1 falling asleep, 2 asleep, 3 waking
    float te = 0;                      ///< time in the sleep stage
    bool laugh = false;                ///< laughing
    float lte = 0;                     ///< for how long
    bool play_sfx = false;             ///< the offer's sound has had its turn
    float sqte = 0;                    ///< how long the quiz offer has been showing
    bool drawn_delays = false;         ///< the five delays have been drawn for the first time
};

/// Written by Render(); the menu and the notices end a laugh through it.
extern CharacterState character;

/// Ends a laugh at once; the animation clock starts again.
void StopLaughing();

/// Draws one frame of the character screen and advances the owl by global_time. The canvas must be set up.
void Render();
