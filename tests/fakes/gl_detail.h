// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the sources of the GL and GLU fakes share: checks and arithmetic that many calls make. Tests have no
// use for it.

#pragma once

#include <GL/gl.h>

#include <cstdint>
#include <string_view>
#include <vector>

#include "tests/fakes/gl.h"
#include "tests/fakes/gl_names.h"
#include "tests/fakes/log.h"

namespace fakes {

/// Returns true outside of glBegin/glEnd; inside it counts the call as a mistake.
bool OutsideOfBegin(std::string_view call);

/// Returns the current matrix of the current matrix mode.
Mat4& CurrentMatrix();
/// Returns matrix * (x, y, z, w).
std::array<double, 4> Transform(const Mat4& matrix, const std::array<double, 4>& point);
/// Replaces the current matrix by itself times `matrix`.
void MultiplyCurrent(const Mat4& matrix);
/// Returns where a point in object space lies now: eye space, canvas, and the current attributes.
Vertex Place(const Vec3& object);

/// Returns the texture object that is bound to GL_TEXTURE_2D.
Texture& BoundTexture();
/// Returns the bytes of an image in the program's memory without the row padding of `alignment`.
std::vector<std::uint8_t> ImageBytes(const void* pixels, GLsizei width, GLsizei height, GLenum format,
                                     GLenum type, GLint alignment);
/// Returns the bytes of one pixel, or 0 for formats and types that the fakes do not know.
int PixelSize(GLenum format, GLenum type);

}  // namespace fakes
