// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The one widget of the interface: a textured rectangle on the canvas that lights up under the pointer and
// reports clicks.
//
// A screen makes its buttons anew in every frame, draws them and asks them for clicks in the same frame. A
// button owns nothing; its texture is the caller's.
#pragma once

#include "engine/vector3f.h"

/// A button; the numbers are canvas units.
class Button {
  public:
    /// Makes a button from its texture's name, its centre and half its width and height.
    Button(unsigned int picture, float x, float y, float w, float h);

    /// Moves the centre.
    void Repos(float x, float y);

    /// Sets half the width and half the height.
    void Reshape(float w, float h);

    /// Draws the button. With `highlight` it is white, or yellow under the pointer, and leaves the colour
    /// white; without, it keeps the caller's colour.
    void Display(bool highlight) const;

    /// Returns whether the pointer, in whole canvas units, is strictly inside.
    bool isSelected() const;

    /// Returns whether a click happened this frame and the pointer is inside. Where buttons overlap, all that
    /// are under the pointer return true.
    bool isClicked() const;

    unsigned int texture;  ///< belongs to the caller
    vector3f position;     ///< centre; z is 0
    float width;           ///< half the width
    float height;          ///< half the height
    float offset_y = 0;    ///< added to position.y in drawing and in hit tests
    float phase;           ///< random whole degrees, 0 .. 179, so that moving buttons differ in phase
};
