// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Random numbers, interpolation and geometry of the engine's kit.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <numbers>

#include "engine/MacEngine.h"

namespace {

/// Truncates toward zero. What no int can hold becomes the nearest int, NaN becomes 0.
long long Truncate(float number) {
    if (std::isnan(number)) return 0;
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    return static_cast<long long>(std::clamp(static_cast<double>(number), kLowest, kHighest));
}

/// Returns the distance between two points.
float Distance(const vector3f& a, const vector3f& b) {
    return GetDistanceBetween(a.x, a.y, a.z, b.x, b.y, b.z);
}

/// Returns the area of a triangle with sides x, y and z, by Heron's formula.
float HeronArea(float x, float y, float z) {
    const float s = (x + y + z) / 2.0F;
    return std::sqrt(s * (s - x) * (s - y) * (s - z));
}

/// Returns whether a point of the triangle's plane lies in the triangle: the three triangles that it forms
/// with the sides then cover no more than the whole, with a tolerance of one per cent.
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

float rand_intvf(float min, float max, float precision) {
    static bool instance_seed = false;
    if (!instance_seed) {
        std::srand(static_cast<unsigned int>(std::time(nullptr)));
        instance_seed = true;
    }
    const long long n = Truncate((max - min) * precision) + 1;
    if (n == 0) return min;
    // A negative n is meant to work: the remainder of rand's non-negative number is then 0 .. |n| - 1.
    return min + static_cast<float>(std::rand() % n) / precision;
}

float RateInterpole(float from, float to, float rate) {
    return to / 100.0F * rate + from - from / 100.0F * rate;
}

float GetRate(float value, float total) {
    float rate = value * 100.0F / total;
    if (rate > 100.0F) rate = 100.0F;
    if (rate < 0.0F) rate = 0.0F;
    return rate;
}

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
    // The intermediate values live in static storage and carry nothing from one call to the next.
    static float a, b, c, d;        // the plane: a x + b y + c z + d = 0
    static float e, f, g;           // the direction of the segment
    static float h, i, l;           // the plane's coefficients times the direction
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
