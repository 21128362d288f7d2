// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the engine's text and widgets need of the program that hosts them. The program defines and keeps
// these; the engine only reads them, so that it depends on nothing above it.
#pragma once

/// The font's texture name: 16 x 16 cells, the blank at the top left.
extern unsigned int font;

/// Where the pointer last was inside the window, in window pixels, origin top left.
extern float touch_coord_x;
extern float touch_coord_y;

/// A left press since the last frame.
extern bool single_touch;
