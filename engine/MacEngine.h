// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The engine's kit of free helpers, chief header of the layer:
//
//   1. Geometry records    the triangle that mesh code fills
//   2. Random numbers      a random value on a grid
//   3. Interpolation       percentages and the rule of three
//   4. Geometry            angles, distances, intersections          (2 to 4: geometry.cpp)
//   5. Screen              rectangles, planes, particles, a sky box  (screen.cpp)
//   6. Text                lines and boxes in the bitmap font        (text.cpp)
//   7. Time                a date and time as one number             (screen.cpp)
//   8. Textures            from bitmap files                         (texture.cpp)
//
// Nothing in sections 3 to 5 guards against odd numbers: NaN and infinity go in and out as IEEE 754 has it.
#pragma once

#include "engine/vector3f.h"

// ---- 1. Geometry records --------------------------------------------------------------------------

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

/// What vertex shader callbacks receive (GLES_VERTEX_ARRAY.h); nothing in this program fills it.
struct POLYGONPOINTER {};

// ---- 2. Random numbers ----------------------------------------------------------------------------

/// Returns a random value in [min, max] on a grid of 1 / precision from min on: rand_intvf(0, 1, 10) is one
/// of 0, 0.1 ... 1. Takes one number of rand.
///
/// The first call in the process seeds the generator with the time although start-up has done so too; that
/// restarts the sequence and is meant. With max below min the result is still at or above min. Where the
/// grid has no value (max a step or so below min) the result is min and rand is left alone.
float rand_intvf(float min, float max, float precision);

// ---- 3. Interpolation -----------------------------------------------------------------------------

/// Returns the value at `rate` per cent of the way from `from` to `to`. Rates outside 0 .. 100 extrapolate.
float RateInterpole(float from, float to, float rate);

/// Returns how many per cent of `total` the value is, limited to 0 .. 100. A total of 0 gives 100 for a
/// positive value and 0 for a negative one, and NaN for 0.
float GetRate(float value, float total);

/// Returns what is to `b` as `c` is to `a`: b * c / a.
template <typename Number>
Number proportional(Number a, Number b, Number c) {
    return b * c / a;
}

// ---- 4. Geometry ----------------------------------------------------------------------------------

/// Returns whether one number is negative and the other is not; zero counts as positive.
bool OppositeSign(float a, float b);

/// Returns the angle from direction a to direction b in the xy-plane, counter-clockwise, in degrees 0 .. 360.
float SlopeV3F(vector3f a, vector3f b);

/// Returns the distance between two points.
float GetDistanceBetween(float x1, float y1, float z1, float x2, float y2, float z2);

/// Returns whether the segment s0-s1 crosses or touches the plane through a, b and c. A degenerate triangle
/// spans no plane: false. The arguments are left alone.
bool SegmentPlaneIntersect(vector3f& s0, vector3f& s1, vector3f& a, vector3f& b, vector3f& c);

/// Returns whether the segment s0-s1 meets the triangle a, b, c, give or take a hundredth of its area.
///
/// Where the segment meets the triangle's plane, the point goes into `hit`, in the triangle or not; where it
/// does not, `hit` is left alone. Not for more than one thread.
bool GetIntersectionBetweenSegmentTriangle(vector3f a, vector3f b, vector3f c, vector3f s0, vector3f s1,
                                           vector3f& hit);

// ---- 5. Screen ------------------------------------------------------------------------------------
//
// These draw with the bound texture, colour and blending of the caller, in the current coordinates; the
// matrix mode is model-view. RenderOnViewport, for the whole canvas, is in MotionBlur.h.

/// Draws a rectangle of w by h about the origin, its top edge raised by `top_extra`. Only the top moves, so
/// that a picture stretches upwards from a fixed base; that is meant.
void DrawRect(float w, float h, float top_extra);

/// Turns the current coordinates to face the viewer: replaces the rotation of the model-view matrix by half
/// a turn about y and keeps its translation.
void glBillboarding();

/// Draws a level square from -size to size in x and z, the texture repeated `repeat` times.
void RenderPlane(float size, float repeat);

/// Draws a square from -size to size that faces the viewer, rolled by a random whole number of degrees if
/// asked.
void RenderParticle(float size, bool random_roll);

/// Draws the inside of the cube from -1 to 1, one texture a side: t0 at -x, t1 at +x, t2 at +z, t3 at -z, t4
/// at +y, t5 at -y. The last texture stays bound.
void RenderSkyBoxMask(unsigned int t0, unsigned int t1, unsigned int t2, unsigned int t3, unsigned int t4,
                      unsigned int t5);

// ---- 6. Text --------------------------------------------------------------------------------------
//
// Positions and sizes are canvas units; (x, y) is the bottom left corner of the first glyph's square, `size`
// half its edge. The glyphs come from the texture `font`, tinted by the current colour; each advances
// by 1.025 * size. A text that is too long for the printer's buffer is cut. Afterwards the matrix mode is
// model-view, blending is off, depth is written, and the texture and the vertex array stay enabled, which is
// meant.

/// Returns the font's cell of a character: its value less 32, row by row from the top left. Characters before
/// the blank, and those beyond ASCII because a character is signed, give a negative number and are drawn as
/// the blank.
int ConvertCharToGlASCII(char c);

/// Prints a line of at most 255 bytes; `centered` puts its middle on x. Does nothing without a format.
void glPrintText(float x, float y, float size, bool centered, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/// Prints a text of at most 511 bytes that goes on one line further down after `width` characters, or `width`
/// + 1 in the first line. Only the count breaks a line: words may be split, and a newline is a blank. Does
/// nothing without a format.
void glPrintTextBox(float x, float y, float size, int width, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/// Prints a line in GLUT's 24-point Times Roman at (x, y, -10) of the projection's space. The program never
/// calls it.
void glPrint(float x, float y, const char* text);

// ---- 7. Time --------------------------------------------------------------------------------------

/// Returns a date and time as minutes since the start of 1900 in a calendar whose months all have 31 days.
///
/// Orders any two moments, and is no elapsed time. The year is the full year, earlier ones than 1900 give
/// negative keys; day and month are taken as given.
double ConvertDAM(int day, int month, int year, int hour, int minute);

// ---- 8. Textures ----------------------------------------------------------------------------------
//
// Both make a new texture, write its name to `texture` and leave it bound. They return false, make none and
// leave `texture` alone where a bitmap cannot be loaded (BMP_Loader.h) or there is no memory for it, and for
// the sizes named below. Up to those a texture costs memory by the sizes that its file says, however short
// the file.

/// Makes an opaque texture with all its mipmaps, also where `mipmap_filter` does not ask for them to be used.
/// Texels are not smoothed. Returns false for an image of more than 2^31 - 1 bytes, at 3 a pixel. An image of
/// no pixels, or of two negative sizes, makes a texture without a picture.
bool LoadTexture(unsigned int* texture, const char* file, bool mipmap_filter);

/// Makes a texture of the colours of one bitmap and the red of another as their alpha, pixel by pixel
/// whatever the shapes. Smoothed, without mipmaps. Returns false where the second has fewer pixels than the
/// first, and where a size of the first is negative or more than GL takes.
bool LoadTextureAlpha(unsigned int* texture, const char* color_file, const char* alpha_file);
