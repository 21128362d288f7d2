// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the panel screens share: the band at the top with three tabs and the button that closes the screen.
#pragma once

#include "engine/Button.h"

/// The place of a button on the canvas: centre, half width and half height in canvas units.
struct ButtonPlace {
    float x, y, w, h;
};

/// The tabs of the band, from left to right.
constexpr ButtonPlace kTabs[3] = {
    {87, 486, 75.5F, 15},
    {243.5F, 486, 70.5F, 15},
    {391.5F, 486, 67.75F, 15},
};

/// The button at the band's right end, which closes the screen.
constexpr ButtonPlace kCloseButton = {485.12F, 486, 15.5F, 15};

/// Returns a button at its place.
inline Button ButtonAt(const ButtonPlace& place, unsigned int texture) {
    return {texture, place.x, place.y, place.w, place.h};
}

/// Draws a button that lights up under the pointer and returns whether it is clicked.
inline bool ShowButton(const ButtonPlace& place, unsigned int texture) {
    const Button shown = ButtonAt(place, texture);
    shown.Display(true);
    return shown.isClicked();
}

/// Draws the tabs as a mere header: all alike, without function.
inline void DrawTabs(unsigned int texture) {
    for (const ButtonPlace& tab : kTabs) ButtonAt(tab, texture).Display(false);
}
