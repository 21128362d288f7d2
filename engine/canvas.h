// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The canvas: the square of 512 x 512 units, origin at the bottom left, that all drawing happens in, whatever
// the window's size in pixels.
#pragma once

/// Edge of the canvas, canvas units.
constexpr float kCanvasEdge = 512;

/// Replaces the current projection and model-view matrices by those of the canvas. The model-view is then the
/// identity, pushed twice, and the matrix mode is model-view.
void EnterCanvas();

/// Restores the matrices that EnterCanvas() replaced; the matrix mode is then model-view.
void LeaveCanvas();
