// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The particles about the owl: the z's of its sleep and the smoke from its hat.
#pragma once

#include "engine/ZelvarFX.h"
#include "engine/vector3f.h"

/// From where the particles are watched: the canvas's lower left corner, as nothing moves it.
extern vector3f cam;

/// The particles of a sleeping owl and of a quiz offer. Written by LoadParticles().
extern ZelvarFX sleep_fx, smoke_fx;

/// Loads both effects; called once at start. One whose file cannot be read or is not accepted shows
/// nothing, which a line on standard error says.
void LoadParticles();

/// Draws and advances the z's while the owl is fast asleep, and starts them anew otherwise. In the owl's
/// frame.
void DrawSleep();

/// Draws and advances the smoke while a quiz offer stands, and starts it anew otherwise. In the owl's frame.
void DrawSmoke();
