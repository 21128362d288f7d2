// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The GLU calls: real mathematics on the model of the GL fake.

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "tests/fakes/gl_detail.h"

namespace fakes {
namespace {

// Returns the inverse by Gauss-Jordan elimination with pivoting, or nothing for a singular matrix.
std::optional<Mat4> Invert(Mat4 matrix) {
    Mat4 inverse = Identity();
    for (std::size_t column = 0; column < 4; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < 4; ++row) {
            if (std::abs(matrix[column * 4 + row]) > std::abs(matrix[column * 4 + pivot])) pivot = row;
        }
        const double divisor = matrix[column * 4 + pivot];
        if (divisor == 0) return std::nullopt;
        for (std::size_t k = 0; k < 4; ++k) {
            std::swap(matrix[k * 4 + column], matrix[k * 4 + pivot]);
            std::swap(inverse[k * 4 + column], inverse[k * 4 + pivot]);
            matrix[k * 4 + column] /= divisor;
            inverse[k * 4 + column] /= divisor;
        }
        for (std::size_t row = 0; row < 4; ++row) {
            if (row == column) continue;
            const double factor = matrix[column * 4 + row];
            for (std::size_t k = 0; k < 4; ++k) {
                matrix[k * 4 + row] -= factor * matrix[k * 4 + column];
                inverse[k * 4 + row] -= factor * inverse[k * 4 + column];
            }
        }
    }
    return inverse;
}

Mat4 FromC(const GLdouble* m) {
    Mat4 matrix{};
    std::copy_n(m, matrix.size(), matrix.begin());
    return matrix;
}

}  // namespace
}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

void gluPerspective(GLdouble fovy, GLdouble aspect, GLdouble zNear, GLdouble zFar) {
    Record("gluPerspective", {fovy, aspect, zNear, zFar});
    if (!OutsideOfBegin("gluPerspective")) return;
    const double half = fovy / 2 * std::numbers::pi / 180;
    if (zFar == zNear || std::sin(half) == 0 || aspect == 0) return;  // GLU leaves the matrix alone as well
    const double cotangent = std::cos(half) / std::sin(half);
    Mat4 matrix{};
    matrix[0] = cotangent / aspect;
    matrix[5] = cotangent;
    matrix[10] = -(zFar + zNear) / (zFar - zNear);
    matrix[11] = -1;
    matrix[14] = -2 * zNear * zFar / (zFar - zNear);
    MultiplyCurrent(matrix);
}

GLint gluProject(GLdouble objX, GLdouble objY, GLdouble objZ, const GLdouble* model, const GLdouble* proj,
                 const GLint* view, GLdouble* winX, GLdouble* winY, GLdouble* winZ) {
    Record("gluProject", {objX, objY, objZ});
    const std::array<double, 4> clip = Transform(FromC(proj), Transform(FromC(model), {objX, objY, objZ, 1}));
    if (clip[3] == 0) return GL_FALSE;
    *winX = view[0] + view[2] * (clip[0] / clip[3] + 1) / 2;
    *winY = view[1] + view[3] * (clip[1] / clip[3] + 1) / 2;
    *winZ = (clip[2] / clip[3] + 1) / 2;
    return GL_TRUE;
}

GLint gluUnProject(GLdouble winX, GLdouble winY, GLdouble winZ, const GLdouble* model, const GLdouble* proj,
                   const GLint* view, GLdouble* objX, GLdouble* objY, GLdouble* objZ) {
    Record("gluUnProject", {winX, winY, winZ});
    const std::optional<Mat4> inverse = Invert(Multiply(FromC(proj), FromC(model)));
    if (!inverse) return GL_FALSE;
    const std::array<double, 4> object = Transform(
        *inverse, {(winX - view[0]) / view[2] * 2 - 1, (winY - view[1]) / view[3] * 2 - 1, winZ * 2 - 1, 1});
    if (object[3] == 0) return GL_FALSE;
    *objX = object[0] / object[3];
    *objY = object[1] / object[3];
    *objZ = object[2] / object[3];
    return GL_TRUE;
}

// Keeps level 0 as it was handed over; the real one scales it to powers of two.
GLint gluBuild2DMipmaps(GLenum target, GLint internalFormat, GLsizei width, GLsizei height, GLenum format,
                        GLenum type, const void* data) {
    std::vector<std::uint8_t> bytes;
    if (width > 0 && height > 0) bytes = ImageBytes(data, width, height, format, type, gl().unpack_alignment);
    Record("gluBuild2DMipmaps",
           {Constant(target), Constant(static_cast<GLenum>(internalFormat)), width, height, Constant(format),
            Constant(type)},
           {}, bytes);
    if (width < 1 || height < 1) return GLU_INVALID_VALUE;
    if (!OutsideOfBegin("gluBuild2DMipmaps")) return GLU_INVALID_OPERATION;
    Texture& texture = BoundTexture();
    texture.width = width;
    texture.height = height;
    texture.internal_format = internalFormat;
    texture.format = format;
    texture.type = type;
    texture.pixels = std::move(bytes);
    texture.mipmaps = true;
    texture.copied_from_frame = false;
    int level = 0;
    for (int size = std::max(width, height); size > 0; size /= 2) texture.levels.insert(level++);
    return 0;
}

}  // extern "C"
