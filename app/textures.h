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
extern unsigned int button[2];  ///< a tab or an answer, indexed by CheckBox
extern unsigned int button_close, button_add, button_trash, button_check, button_arrow_u, button_arrow_d;
extern unsigned int icns[9];  ///< indexed by Icon
extern unsigned int GUI[4];   ///< panels, indexed by Screen; the editor and the view share one
extern unsigned int notify_circle;

/// The pictures of `button`.
enum CheckBox { kUnchecked = 0, kChecked = 1 };

/// The pictures of `icns`.
enum Icon {
    kPlanIcon = 0,
    kSpareIcon = 1,  ///< loaded and never shown
    kInteractIcon = 2,
    kSoundOnIcon = 3,
    kSoundOffIcon = 4,
    kOfferIcon = 5,
    kNoticeIcon = 6,
    kBrowserIcon = 7,
    kWebSiteIcon = 8,
};

/// Sets the window's class and its icon, the raw picture "window_icon". Without that file it has no icon.
void SetWindowClassAndIcon();

/// Loads every picture in the fixed order of the table. A picture that is missing, short or absurd ends the
/// process with status 1 after one line on standard error that names the file and the reason.
void LoadTextures();
