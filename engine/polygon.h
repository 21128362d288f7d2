// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The triangle that mesh code fills, and the records it is made of. Records only: all numbers are plain
// floats in the order that GL takes them.
#pragma once

/// A corner.
struct VERTEX3D {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
};

/// A normal.
struct VECTOR3D {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
};

/// A colour, 0 .. 1 each; white unless set.
struct RGBCOLOR {
    float r = 1.0F;
    float g = 1.0F;
    float b = 1.0F;
};

/// A texture coordinate, 0 .. 1 across the picture.
struct TXTCOORD {
    float u = 0.0F;
    float v = 0.0F;
};

/// A triangle; each array in the order of its corners.
struct POLYGON3D {
    VERTEX3D vertex[3];
    VECTOR3D normal[3];
    RGBCOLOR color[3];
    TXTCOORD txtcoord[3];
};

/// What vertex shader callbacks receive (GLES_VERTEX_ARRAY.h). It has no fields yet.
struct POLYGONPOINTER {};
