// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Angles, distances, and where a segment meets a plane or a triangle.
//
// Nothing here guards against odd numbers: NaN and infinity go in and out as IEEE 754 has it.
#pragma once

#include "engine/vector3f.h"

/// Returns whether one number is negative and the other is not; zero counts as positive.
bool OppositeSign(float a, float b);

/// Returns the angle from direction a to direction b in the xy-plane, counter-clockwise, in degrees 0 .. 360.
float SlopeV3F(vector3f a, vector3f b);

/// Returns the distance between two points.
float GetDistanceBetween(float x1, float y1, float z1, float x2, float y2, float z2);

/// Returns whether the segment s0-s1 crosses or touches the plane through a, b and c. A degenerate triangle
/// spans no plane: false. Changes no argument.
bool SegmentPlaneIntersect(vector3f& s0, vector3f& s1, vector3f& a, vector3f& b, vector3f& c);

/// Returns whether the segment s0-s1 meets the triangle a, b, c, with a tolerance of a hundredth of its area.
///
/// Writes the point where the segment meets the triangle's plane to `hit`, also if it lies outside the
/// triangle. Leaves `hit` alone if the segment misses the plane. Not thread-safe.
bool GetIntersectionBetweenSegmentTriangle(vector3f a, vector3f b, vector3f c, vector3f s0, vector3f s1,
                                           vector3f& hit);
