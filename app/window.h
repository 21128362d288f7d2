// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The window layer: what the window needs beside GLUT's callbacks so that frames also come while it is
// hidden.
//
// GLUT stops asking for frames while its window is minimised or wholly covered. But reminders count and
// notices sound in every frame, so a slow timer checks whether frames still come, and draws them itself when
// they do not.
#pragma once

/// Lets GLUT say in one Italian line what keeps it from opening its window, and ends the program with status
/// 1 then; called before glutInit().
void ExplainMissingWindow();

/// Starts watching over the frames; `frame` is the display callback. Called once, before the main loop.
void KeepFramesComing(void (*frame)());

/// Ends a frame: flushes, waits until it is drawn, swaps. A shown window swaps at the screen's refresh; a
/// hidden one does not wait for it.
void PresentFrame();
