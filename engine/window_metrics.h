// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The window's size and place, cached.
//
// glutGet() makes a round trip to the window system for each of these numbers, and many callers need them in
// one frame. The size is cached until the reshape callback. The place is cached until the next frame, because
// standard GLUT does not report its changes.
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
