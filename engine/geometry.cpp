// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/geometry.h"

#include <cmath>
#include <numbers>

namespace {

/// Returns the distance between two points.
float Distance(const vector3f& a, const vector3f& b) {
    return GetDistanceBetween(a.x, a.y, a.z, b.x, b.y, b.z);
}

/// Returns the area of a triangle with sides x, y and z, by Heron's formula
/// (https://en.wikipedia.org/wiki/Heron%27s_formula).
float HeronArea(float x, float y, float z) {
    const float s = (x + y + z) / 2.0F;
    return std::sqrt(s * (s - x) * (s - y) * (s - z));
}

/// Returns whether a point of the triangle's plane lies in the triangle.
///
/// The point forms a triangle with each side. For a point inside, these three areas add up to the whole; for
/// one outside, to more. The comparison allows one per cent more, because single precision rounds each area.
bool IsInTriangle(const vector3f& point, const vector3f& a, const vector3f& b, const vector3f& c) {
    const float ab = Distance(a, b);
    const float bc = Distance(b, c);
    const float ac = Distance(a, c);
    const float ap = Distance(a, point);
    const float pb = Distance(point, b);
    const float pc = Distance(point, c);
    const float whole = HeronArea(ab, bc, ac);
    const float with_ab = HeronArea(ab, ap, pb);
    const float with_ac = HeronArea(ac, ap, pc);
    const float with_bc = HeronArea(bc, pb, pc);
    return whole + whole / 100.0F >= with_ab + with_ac + with_bc;
}

}  // namespace

bool OppositeSign(float a, float b) {
    return (a < 0.0F && b >= 0.0F) || (b < 0.0F && a >= 0.0F);
}

float SlopeV3F(vector3f a, vector3f b) {
    const double from = std::atan2(static_cast<double>(a.y), static_cast<double>(a.x));
    const double to = std::atan2(static_cast<double>(b.y), static_cast<double>(b.x));
    auto slope = static_cast<float>((to - from) * 180.0 / std::numbers::pi);
    while (slope > 360.0F) slope -= 360.0F;
    while (slope < 0.0F) slope += 360.0F;
    return slope;
}

float GetDistanceBetween(float x1, float y1, float z1, float x2, float y2, float z2) {
    const float dx = x2 - x1;
    const float dy = y2 - y1;
    const float dz = z2 - z1;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

bool SegmentPlaneIntersect(vector3f& s0, vector3f& s1, vector3f& a, vector3f& b, vector3f& c) {
    vector3f normal = crossProduct(a - c, b - c);
    normal.normalize();
    const float d0 = dotProduct(s0 - c, normal);
    const float d1 = dotProduct(s1 - c, normal);
    if (d0 == 0.0F || d1 == 0.0F) return true;
    return OppositeSign(d0, d1);
}

bool GetIntersectionBetweenSegmentTriangle(vector3f ta, vector3f tb, vector3f tc, vector3f s0, vector3f s1,
                                           vector3f& hit) {
    // Where a line meets a plane: https://en.wikipedia.org/wiki/Line%E2%80%93plane_intersection
    //
    //   plane        a x + b y + c z + d = 0, its normal (a, b, c) the cross product of two sides
    //   line         s0 + t (e, f, g)
    //   hit at       t = -(a s0.x + b s0.y + c s0.z + d) / k with k = a e + b f + c g
    //
    // Each coordinate below is s0 + t (e, f, g) over the common denominator k, which is 0 for a line parallel
    // to the plane: the hit is then NaN or infinite, and in no triangle.
    //
    // Deliberate: these are static; nothing is carried from one call to the next.
    static float a, b, c, d;        // the plane: a x + b y + c z + d = 0
    static float e, f, g;           // the direction of the segment
    static float h, i, l;           // the terms of k
    static float m, n, o, p, q, r;  // two sides of the triangle

    if (!SegmentPlaneIntersect(s0, s1, ta, tb, tc)) return false;

    m = tb.y - ta.y;
    n = tc.z - ta.z;
    o = tb.z - ta.z;
    p = tc.y - ta.y;
    q = tb.x - ta.x;
    r = tc.x - ta.x;
    a = m * n - o * p;
    b = o * r - q * n;
    c = q * p - m * r;
    d = -a * ta.x - b * ta.y - c * ta.z;

    e = s1.x - s0.x;
    f = s1.y - s0.y;
    g = s1.z - s0.z;
    h = b * f;
    i = a * e;
    l = c * g;
    const float k = i + h + l;

    hit.x = ((h + l) * s0.x - b * e * s0.y - c * e * s0.z - d * e) / k;
    hit.y = ((i + l) * s0.y - a * f * s0.x - c * f * s0.z - d * f) / k;
    hit.z = (-a * g * s0.x - b * g * s0.y + (i + h) * s0.z - d * g) / k;
    return IsInTriangle(hit, ta, tb, tc);
}
