// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Drawing over the whole viewport: the picture over the whole canvas (canvas.h) that every screen starts
// from, and motion blur, which draws copies of the last frames over the new one.
#pragma once

/// Draws the bound texture over the whole canvas, with the caller's colour and blending. All matrices are
/// back afterwards and the matrix mode is model-view; GL_TEXTURE_2D stays enabled.
void RenderOnViewport();

/// Deliberate: does nothing, as the window's reshape callback sets the viewport.
void ReshapeViewport(int w, int h);

/// Copies the frame just drawn, clears the window and draws the last `frames` copies over each other, the new
/// one included, each with an alpha of 0.1. Call it once a frame, after the scene. `width` and `height` are
/// the window's, in pixels; a copy holds the 512 x 512 pixels at its lower left. Afterwards lighting is on
/// and blending is off.
void PerformMotionBlur(unsigned int frames, int width, int height);
