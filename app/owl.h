// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl: its poses, its timers and the drawing of it.
//
// It breathes, blinks, looks around, changes pose, falls asleep and wakes, laughs, and puts on a hat when it
// offers a quiz. Every timer adds up global_time, so all of it stands still while a panel screen is open. How
// often and for how long it does something stands in the tables at the head of owl.cpp.
#pragma once

#include "app/textures.h"  // Pose
#include "engine/vector3f.h"

/// The stages of a sleep, the values of CharacterState::sleep_state.
enum SleepStage { kDozing = 0, kNodding = 1, kAsleep = 2, kWaking = 3 };

/// The pose shown, one of Pose. Written by AdvanceOwl().
extern int anim;

/// A quiz offer is showing: hat, thought bubble, smoke. Written by the owl, the menu and the frame.
extern bool spawn_question;

/// A laugh is wanted. Written by the quiz after a wrong answer, taken by AdvanceOwl().
extern bool spawn_laugh;

/// What the owl remembers from frame to frame; times are seconds of the owl's screen.
struct CharacterState {
    float bt = 0;                      ///< animation clock; starts again with a laugh
    float sqt = 0, next_sq = 0;        ///< since the last quiz offer; delay until the next
    double sqt_lost = 0;               ///< what sqt lacks of the exact sum (engine/compensated_sum.h)
    bool close_eyes = false;           ///< the eyes are shut this frame
    float cet = 0, next_ce = 0;        ///< since the last blink; delay until the next
    float cst = 0;                     ///< how long the blink has lasted
    float ste = 0, next_st = 0;        ///< stare cycle; delay before the owl looks straight ahead
    float next_std = 0;                ///< length of that look
    float swap_te = 0, next_swap = 0;  ///< time in the pose; time until the next pose
    int sleep_state = kDozing;         ///< one of SleepStage
    float te = 0;                      ///< time in the sleep stage
    bool laugh = false;                ///< laughing
    float lte = 0;                     ///< for how long
    bool play_sfx = false;             ///< the offer's sound has had its turn
    float sqte = 0;                    ///< how long the quiz offer has been showing
    bool has_delays = false;           ///< the five delays have been chosen for the first time
};

/// Written by the functions below; tests set it.
extern CharacterState character;

/// What one frame of the owl works out for itself.
struct OwlFrame {
    vector3f pointer;           ///< the pointer, canvas units, also outside the canvas
    float bob = 0;              ///< how far breathing raises the owl's head, canvas units
    vector3f left, right;       ///< the pupils' offsets from rest, canvas units
    bool eyes_centred = false;  ///< the owl looks straight ahead
};

/// The origin of the owl's frame: the middle of its pictures, canvas units.
constexpr float kOwlX = 271;
constexpr float kOwlY = 265;

/// Enters the owl's frame.
void EnterOwlFrame();

/// Leaves the owl's frame.
void LeaveOwlFrame();

/// Advances all timers of the owl by global_time and returns what this frame shows of it. The owl's frame
/// must be the current one.
OwlFrame AdvanceOwl();

/// Draws the owl with its hat and thought bubble, in the owl's frame.
void DrawOwl(const OwlFrame& frame);

/// Returns how far everything that belongs to the thought bubble has bobbed up, canvas units: the bubble
/// itself, the button of a notice and its badge.
float ThoughtBob();

/// Sounds a quiz offer, once.
void SoundOffer();

/// Ends a quiz offer that was not taken in time.
void EndOffer();

/// Ends a laugh at once; the animation clock starts again.
void StopLaughing();
