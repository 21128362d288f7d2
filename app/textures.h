// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's pictures: one GL texture each, loaded once at start from a raw file in the working directory.
//
// A raw texture file is a width and a height (unsigned 32-bit, little-endian, pixels), then width x height
// pixels of straight R, G, B, A bytes, rows one after another, the bottom row first. It has no extension and
// no magic number. What follows the pixels is not looked at.
#pragma once

#include "app/state.h"
#include "engine/host.h"  // font

// Texture names. Written by LoadTextures(), never deleted; read by whoever draws.
extern unsigned int background, tree, eye_l, eye_r, hat, cloud, circle;
/// The owl's poses, which index its pictures.
enum Pose { kStanding = 0, kPerching = 1, kSleeping = 2, kPoses };

/// The pictures of a tab or an answer.
enum CheckBox { kUnchecked = 0, kChecked = 1, kCheckBoxes };

/// The round icons of the menu and of the notices.
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
    kIcons
};

extern unsigned int owl[kPoses];     ///< the owl with open eyes
extern unsigned int owl_ce[kPoses];  ///< the owl with closed eyes
extern unsigned int button[kCheckBoxes];
extern unsigned int button_close, button_add, button_trash, button_check, button_arrow_u, button_arrow_d;
extern unsigned int icns[kIcons];
extern unsigned int GUI[kPanelScreens];  ///< panels, indexed by Screen; the editor and the view share one
extern unsigned int notify_circle;

/// Sets the window's class and its icon, the raw picture "window_icon". Without that file it has no icon.
void SetWindowClassAndIcon();

/// Loads every picture in the fixed order of the table. A picture that is missing, short, absurd or
/// too large for the memory ends the process with status 1 after one line on standard error that names the
/// file and the reason.
void LoadTextures();
