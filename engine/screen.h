// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Shapes on the screen: rectangles, planes, particles, a sky box.
//
// These functions draw with the bound texture, colour and blending of the caller, in the current coordinates;
// the matrix mode is model-view. RenderOnViewport(), for the whole canvas, is in MotionBlur.h. Nothing guards
// against odd numbers: NaN and infinity go to GL as they are.
#pragma once

/// Draws a rectangle of w by h about the origin, its top edge raised by `top_extra`.
///
/// Deliberate: only the top moves, so that a picture stretches upwards from a fixed base.
void DrawRect(float w, float h, float top_extra);

/// Turns the current coordinates to face the viewer: replaces the rotation of the model-view matrix by half
/// a turn about y and keeps its translation.
void glBillboarding();

/// Draws a level square from -size to size in x and z, the texture repeated `repeat` times.
void RenderPlane(float size, float repeat);

/// Draws a square from -size to size that faces the viewer, rolled by a random whole number of degrees if
/// asked.
void RenderParticle(float size, bool random_roll);

/// Draws the inside of the cube from -1 to 1, one texture a side: t0 at -x, t1 at +x, t2 at +z, t3 at -z, t4
/// at +y, t5 at -y. The last texture stays bound.
void RenderSkyBoxMask(unsigned int t0, unsigned int t1, unsigned int t2, unsigned int t3, unsigned int t4,
                      unsigned int t5);
