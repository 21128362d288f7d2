// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The three-component vector: points and offsets on the canvas, places of buttons, corners of meshes. The
// particles have a vector of their own (ZelvarParticlesFX.h), whose normalize() leaves a zero vector alone.
//
// A plain value; everything is inline, single precision and without guards, so that a division by zero gives
// the infinities and NaNs of IEEE 754.
#pragma once

#include <cmath>

struct vector3f {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;

    /// Makes (0, 0, 0).
    vector3f() = default;

    /// Makes (x, y, z).
    vector3f(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}

    /// Assigns the three components and returns the vector itself.
    vector3f& set(float new_x, float new_y, float new_z) {
        x = new_x;
        y = new_y;
        z = new_z;
        return *this;
    }

    /// Returns the Euclidean length. The squares are added in double precision: they neither overflow nor
    /// become 0 where the length itself fits a float.
    float length() const {
        const double dx = x;
        const double dy = y;
        const double dz = z;
        return static_cast<float>(std::sqrt(dx * dx + dy * dy + dz * dz));
    }

    /// Returns the square of the length, in single precision.
    float quadratic_length() const { return x * x + y * y + z * z; }

    /// Divides each component by the length, in place. A zero vector becomes NaN.
    void normalize() {
        const float divisor = length();
        x /= divisor;
        y /= divisor;
        z /= divisor;
    }

    vector3f& operator+=(const vector3f& other) {
        x += other.x;
        y += other.y;
        z += other.z;
        return *this;
    }

    vector3f& operator-=(const vector3f& other) {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        return *this;
    }

    vector3f operator+() const { return *this; }
    vector3f operator-() const { return {-x, -y, -z}; }
};

inline vector3f operator+(const vector3f& a, const vector3f& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline vector3f operator-(const vector3f& a, const vector3f& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

/// Returns the component-wise product: neither the dot nor the cross product.
inline vector3f operator*(const vector3f& a, const vector3f& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline vector3f operator*(const vector3f& v, float scalar) {
    return {v.x * scalar, v.y * scalar, v.z * scalar};
}
inline vector3f operator*(float scalar, const vector3f& v) {
    return v * scalar;
}

/// Returns the component-wise quotient; dividing by zero gives infinities and NaN.
inline vector3f operator/(const vector3f& a, const vector3f& b) {
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}
inline vector3f operator/(const vector3f& v, float scalar) {
    return {v.x / scalar, v.y / scalar, v.z / scalar};
}

/// Returns whether all components are equal as floats: NaN equals nothing, +0 equals -0.
inline bool operator==(const vector3f& a, const vector3f& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
inline bool operator!=(const vector3f& a, const vector3f& b) {
    return !(a == b);
}

/// Returns the cross product, perpendicular to both by the right-hand rule.
inline vector3f crossProduct(const vector3f& a, const vector3f& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Returns the dot product.
inline float dotProduct(const vector3f& a, const vector3f& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
