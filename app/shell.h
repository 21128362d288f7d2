// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The application shell: the start-up and the frame.
//
// The window shows one screen at a time: the owl's, or a panel screen over its panel picture. All
// drawing happens in a canvas of 512 x 512 units, origin at the bottom left, whatever the window's size in
// pixels.
#pragma once

#include "app/state.h"

/// Sets the GL state and loads all assets; called once, before the callbacks are registered.
void init();

/// Draws one frame and asks for the next: the GLUT display callback.
void display();

/// Stores in `dt` the seconds since the previous call. The clock keeps 32 bits of nanoseconds, so it is right
/// for up to about 2.147 seconds; a negative result counts as 0. The first call measures from 0 and yields an
/// arbitrary value.
void GetGlobalTime(float& dt);
