// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The four-by-four matrix of the engine, laid out as OpenGL expects it: column by column, so that
// (row r, column c) is m[c * 4 + r] and the translation stands at m[12], m[13], m[14]. A plain value;
// everything is inline and single precision. Angles are degrees.
//
// The setters (identity, translate*, rotate_*, scale) overwrite the whole matrix and return it; they do not
// multiply it. rotate(), about an arbitrary axis, writes only a part of it.
#pragma once

#include <cmath>
#include <cstddef>

#include "engine/vector3f.h"

struct matrix4x4f {
    float m[16];

    /// Makes the identity.
    matrix4x4f() { identity(); }

    /// Makes a matrix from its elements given row by row: the first four are row 0.
    matrix4x4f(float m0, float m1, float m2, float m3, float m4, float m5, float m6, float m7, float m8,
               float m9, float m10, float m11, float m12, float m13, float m14, float m15)
        : m{m0, m4, m8, m12, m1, m5, m9, m13, m2, m6, m10, m14, m3, m7, m11, m15} {}

    /// Sets the identity.
    matrix4x4f& identity() {
        for (std::size_t i = 0; i < kSize; ++i) m[i] = i % kDiagonalStep == 0 ? 1.0F : 0.0F;
        return *this;
    }

    /// Sets a translation.
    matrix4x4f& translate(const vector3f& v) {
        identity();
        m[12] = v.x;
        m[13] = v.y;
        m[14] = v.z;
        return *this;
    }

    /// Sets a translation along x.
    matrix4x4f& translate_x(const float& d) { return translate({d, 0.0F, 0.0F}); }
    /// Sets a translation along y.
    matrix4x4f& translate_y(const float& d) { return translate({0.0F, d, 0.0F}); }
    /// Sets a translation along z.
    matrix4x4f& translate_z(const float& d) { return translate({0.0F, 0.0F, d}); }

    /// Sets a rotation about the x axis, in degrees.
    matrix4x4f& rotate_x(const float& a) {
        const float s = std::sin(a * kRadians);
        const float c = std::cos(a * kRadians);
        identity();
        m[5] = c;
        m[6] = s;
        m[9] = -s;
        m[10] = c;
        return *this;
    }

    /// Sets a rotation about the y axis, in degrees.
    matrix4x4f& rotate_y(const float& a) {
        const float s = std::sin(a * kRadians);
        const float c = std::cos(a * kRadians);
        identity();
        m[0] = c;
        m[2] = -s;
        m[8] = s;
        m[10] = c;
        return *this;
    }

    /// Sets a rotation about the z axis, in degrees.
    matrix4x4f& rotate_z(const float& a) {
        const float s = std::sin(a * kRadians);
        const float c = std::cos(a * kRadians);
        identity();
        m[0] = c;
        m[1] = s;
        m[4] = -s;
        m[5] = c;
        return *this;
    }

    /// Writes a rotation by `a` degrees about an axis. An axis of length 0 gives NaN. For a pure rotation
    /// start from the identity.
    ///
    /// Deliberate: the caller's axis is normalised in place.
    /// Deliberate: m[3], m[7], m[11] and the translation keep what they held.
    matrix4x4f& rotate(const float& a, vector3f& axis) {
        const float s = std::sin(a * kRadians);
        const float c = std::cos(a * kRadians);
        const float t = 1.0F - c;
        axis.normalize();
        const float x = axis.x;
        const float y = axis.y;
        const float z = axis.z;
        m[0] = 1.0F + t * (x * x - 1.0F);
        m[1] = z * s + t * x * y;
        m[2] = -y * s + t * x * z;
        m[4] = -z * s + t * x * y;
        m[5] = 1.0F + t * (y * y - 1.0F);
        m[6] = x * s + t * y * z;
        m[8] = y * s + t * x * z;
        m[9] = -x * s + t * y * z;
        m[10] = 1.0F + t * (z * z - 1.0F);
        m[15] = 1.0F;
        return *this;
    }

    /// Sets a scaling.
    matrix4x4f& scale(const vector3f& v) {
        identity();
        m[0] = v.x;
        m[5] = v.y;
        m[10] = v.z;
        return *this;
    }

    /// Transforms a point in place, with the translation and without a division by w; returns `p`.
    vector3f* transformPoint(vector3f* p) const {
        transformVector(p);
        p->x += m[12];
        p->y += m[13];
        p->z += m[14];
        return p;
    }

    /// Transforms a direction in place, without the translation; returns `p`.
    vector3f* transformVector(vector3f* p) const {
        const vector3f v = *p;
        p->x = m[0] * v.x + m[4] * v.y + m[8] * v.z;
        p->y = m[1] * v.x + m[5] * v.y + m[9] * v.z;
        p->z = m[2] * v.x + m[6] * v.y + m[10] * v.z;
        return p;
    }

    matrix4x4f operator+(const matrix4x4f& other) const {
        matrix4x4f sum;
        for (std::size_t i = 0; i < kSize; ++i) sum.m[i] = m[i] + other.m[i];
        return sum;
    }

    matrix4x4f operator-(const matrix4x4f& other) const {
        matrix4x4f difference;
        for (std::size_t i = 0; i < kSize; ++i) difference.m[i] = m[i] - other.m[i];
        return difference;
    }

    /// Returns this matrix times the other. Applied to a point, the other matrix acts first.
    matrix4x4f operator*(const matrix4x4f& other) const {
        matrix4x4f product;
        for (std::size_t column = 0; column < 4; ++column) {
            for (std::size_t row = 0; row < 4; ++row) {
                float sum = 0.0F;
                for (std::size_t k = 0; k < 4; ++k) sum += m[k * 4 + row] * other.m[column * 4 + k];
                product.m[column * 4 + row] = sum;
            }
        }
        return product;
    }

    matrix4x4f operator*(float scalar) const {
        matrix4x4f scaled;
        for (std::size_t i = 0; i < kSize; ++i) scaled.m[i] = m[i] * scalar;
        return scaled;
    }

  private:
    static constexpr std::size_t kSize = 16;
    static constexpr std::size_t kDiagonalStep = 5;
    /// Degrees to radians.
    static constexpr float kRadians = 0.017453292F;
};
