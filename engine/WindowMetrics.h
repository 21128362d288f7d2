// The window's size and place, asked of the window system at most once a frame.
//
// Every question to GLUT about its window is a round trip to the window system, and many callers need the same
// four numbers in one frame. They are kept here from the first question to the end of the frame.
#pragma once

/// Returns the window's width in pixels.
int WindowWidth();

/// Returns the window's height in pixels.
int WindowHeight();

/// Returns the screen column of the window's left edge, in pixels.
int WindowX();

/// Returns the screen row of the window's top edge, in pixels.
int WindowY();

/// Forgets what was asked; the frame calls it once, before anything else.
void ForgetWindowMetrics();
