// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The model of GL: its start values and its helpers.

#include "tests/fakes/gl.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

#include "tests/fakes/gl_names.h"

namespace fakes {

Gl& gl() {
    static Gl model = [] {
        Gl fresh;
        fresh.modelview = fresh.projection = fresh.texture_matrix = {Identity()};
        return fresh;
    }();
    return model;
}

void ResetGl() {
    Gl fresh;
    fresh.modelview = fresh.projection = fresh.texture_matrix = {Identity()};
    gl() = std::move(fresh);
}

std::vector<Primitive> Gl::DrawnWith(GLuint name) const {
    std::vector<Primitive> drawn;
    for (const Primitive& primitive : primitives) {
        if (primitive.textured && primitive.texture == name) drawn.push_back(primitive);
    }
    return drawn;
}

bool Rect::operator==(const Rect& other) const {
    constexpr double kTolerance = 1e-3;
    return std::abs(left - other.left) < kTolerance && std::abs(bottom - other.bottom) < kTolerance &&
           std::abs(right - other.right) < kTolerance && std::abs(top - other.top) < kTolerance;
}

std::ostream& operator<<(std::ostream& out, const Rect& rect) {
    return out << "x " << rect.left << " .. " << rect.right << ", y " << rect.bottom << " .. " << rect.top;
}

std::ostream& operator<<(std::ostream& out, const Primitive& primitive) {
    out << Shape(primitive.mode).name << " texture " << primitive.texture << " colour";
    for (const float channel : primitive.color) out << ' ' << channel;
    out << (primitive.blend ? " blended" : " opaque") << " at";
    for (const Vertex& vertex : primitive.vertices) out << " (" << vertex.x << ", " << vertex.y << ')';
    return out;
}

Rect Bounds(const Primitive& primitive) {
    if (primitive.vertices.empty()) return {};
    Rect bounds{primitive.vertices[0].x, primitive.vertices[0].y, primitive.vertices[0].x,
                primitive.vertices[0].y};
    for (const Vertex& vertex : primitive.vertices) {
        bounds.left = std::min(bounds.left, vertex.x);
        bounds.right = std::max(bounds.right, vertex.x);
        bounds.bottom = std::min(bounds.bottom, vertex.y);
        bounds.top = std::max(bounds.top, vertex.y);
    }
    return bounds;
}

Rect TexBounds(const Primitive& primitive) {
    if (primitive.vertices.empty()) return {};
    const Vec2 first = primitive.vertices[0].texcoord;
    Rect bounds{first[0], first[1], first[0], first[1]};
    for (const Vertex& vertex : primitive.vertices) {
        bounds.left = std::min<double>(bounds.left, vertex.texcoord[0]);
        bounds.right = std::max<double>(bounds.right, vertex.texcoord[0]);
        bounds.bottom = std::min<double>(bounds.bottom, vertex.texcoord[1]);
        bounds.top = std::max<double>(bounds.top, vertex.texcoord[1]);
    }
    return bounds;
}

void Misuse(GLenum flag, std::string sentence) {
    if (gl().error == GL_NO_ERROR) gl().error = flag;
    gl().misuse.push_back(std::move(sentence));
}

}  // namespace fakes
