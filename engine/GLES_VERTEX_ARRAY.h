// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The stack of vertex shader callbacks: functions that code which draws models may call for each polygon.
#pragma once

#include <vector>

struct POLYGONPOINTER;

/// A callback that receives a polygon.
using VertexShader = void (*)(POLYGONPOINTER* polygon);

/// The engaged callbacks in the order of their engagement; written by the functions below. Empty at start.
extern std::vector<VertexShader> VertexShaderStack;

/// Disengages every callback.
void glFlushShaderPipeline();

/// Engages a callback on top of the others, once more if it is already engaged. Returns true.
bool glEnableVertexShader(VertexShader callback);

/// Disengages the callback engaged last. Returns false when there is none.
bool glDisableVertexShader();

/// Returns whether a callback is engaged, at any place of the stack.
bool glIsShaderEngaged(VertexShader callback);
