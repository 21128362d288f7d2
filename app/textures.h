// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's pictures: one GL texture each, loaded once at start from a raw file in the working directory.
//
// A raw texture file is a width and a height (unsigned 32-bit, little-endian, pixels), then width x height
// pixels of straight R, G, B, A bytes, rows one after another, the bottom row first. It has no extension and
// no magic number.
#pragma once

#include "engine/host.h"  // font

// Texture names. Written by LoadTextures(), never deleted; read by whoever draws.
extern unsigned int background, tree, eye_l, eye_r, hat, cloud, circle;
extern unsigned int owl[3];     ///< the owl with open eyes, indexed by pose
extern unsigned int owl_ce[3];  ///< the owl with closed eyes, indexed by pose
extern unsigned int button[2];  ///< unchecked, checked
extern unsigned int button_close, button_add, button_trash, button_check, button_arrow_u, button_arrow_d;
extern unsigned int
    icns[9];  ///< plan, (spare), interact, sound on, sound off, quiz, notice, browser, web site
extern unsigned int GUI[4];  ///< panels, indexed by menu_case_id; the editor and the view share one
extern unsigned int notify_circle;

/// Gives the window its name and its icon, the raw picture "window_icon". Without that file it has no icon.
void DressWindow();

/// Loads every picture in the fixed order of the table. A picture that is missing, short or absurd ends the
/// process with status 1 after one line on standard error that names the file and the reason.
void LoadTextures();
