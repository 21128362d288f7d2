// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The canvas: the square of 512 x 512 units, origin at the bottom left, that all drawing happens in, whatever
// the window's size in pixels.
#pragma once

/// Edge of the canvas, canvas units.
constexpr float kCanvasEdge = 512;

/// Puts the canvas in the place of the current projection and model-view matrices. Leaves the model-view at
/// the identity, two levels deep; the matrix mode is model-view.
void EnterCanvas();

/// Puts back the matrices that EnterCanvas() replaced; the matrix mode is model-view.
void LeaveCanvas();
