// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The window's size and place, asked of the window system as seldom as possible.
//
// Every question to GLUT about its window is a round trip to the window system, and many callers need the
// same four numbers in one frame. The size is kept until the window is reshaped, which GLUT tells; the place,
// which it does not tell, is kept to the end of the frame.
#pragma once

/// Returns the window's width in pixels, at least 1.
int WindowWidth();

/// Returns the window's height in pixels, at least 1.
int WindowHeight();

/// Returns the screen column of the window's left edge, in pixels.
int WindowX();

/// Returns the screen row of the window's top edge, in pixels.
int WindowY();

/// Forgets the window's place; the frame calls it once, before anything else.
void ForgetWindowPlace();

/// Forgets the window's size and place; the window's reshaping calls it.
void ForgetWindowMetrics();
