// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Drawing over the whole viewport: the full-canvas picture that every screen starts from, and the
// engine's motion blur, which lays the last frames over the new one with it.
//
// The canvas is 512 by 512 units with the origin at the bottom left, whatever the window's size.
#pragma once

/// Draws the bound texture over the whole canvas, with the caller's colour and blending. All matrices are
/// back afterwards and the matrix mode is model-view; GL_TEXTURE_2D stays enabled.
void RenderOnViewport();

/// Does nothing: the window's reshape callback sets the viewport. Kept for callers of the engine.
void ReshapeViewport(int w, int h);

/// Keeps a copy of the frame just drawn and shows the last `frames` copies over each other, at a tenth of
/// their strength each, the newest too. Called once a frame after the scene; width and height are the
/// window's, in pixels, the copy is of its lower left 512 by 512. Lighting is on and blending off afterwards.
void PerformMotionBlur(unsigned int frames, int width, int height);
