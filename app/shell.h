// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The application shell: what lives for the whole run, the start-up and the frame.
//
// The window has one picture at a time: the character screen, or a panel screen over its panel picture. All
// drawing happens in a canvas of 512 x 512 units, origin at the bottom left, whatever the window's size in
// pixels.
#pragma once

#include <ctime>

#include "engine/ZelvarFX.h"
#include "engine/vector3f.h"

/// The previous frame's duration in seconds, the step of every timer. Written by display() alone.
extern float global_time;

/// Which screen is shown: -1 the character, 0 the events list, 1 the editor, 2 the view of a due event, 3 the
/// quiz.
extern int menu_case_id;

/// Whether sound effects are switched on.
extern bool enable_sfx;

/// From where the effects are watched: the middle of the canvas's plane, as nothing moves it.
extern vector3f cam;

/// The particles of a sleeping owl and of a quiz offer; loaded at start.
extern ZelvarFX sleep_fx, smoke_fx;

/// The local time of this frame, taken once by display().
extern std::tm frame_time;

/// Sets the GL state and loads all assets; called once, before the callbacks are registered.
void init();

/// Draws one frame and asks for the next: the GLUT display callback.
void display();

/// Stores in `dt` the seconds since the previous call. The clock keeps 32 bits of nanoseconds, so it is right
/// for up to about 2.147 seconds; a negative result counts as 0. The first call measures from 0 and yields an
/// arbitrary value.
void GetGlobalTime(float& dt);
