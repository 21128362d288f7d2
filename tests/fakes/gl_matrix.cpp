// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The matrix calls of the GL fake.

#include <cmath>
#include <numbers>

#include "tests/fakes/gl_detail.h"

namespace fakes {
namespace {

std::vector<Mat4>& CurrentStack() {
    switch (gl().matrix_mode) {
        case GL_PROJECTION:
            return gl().projection;
        case GL_TEXTURE:
            return gl().texture_matrix;
        default:
            return gl().modelview;
    }
}

template <typename Number>
Mat4 Read(const Number* m) {
    Mat4 matrix{};
    for (std::size_t i = 0; i < matrix.size(); ++i) matrix[i] = static_cast<double>(m[i]);
    return matrix;
}

void Translate(double x, double y, double z) {
    Mat4 matrix = Identity();
    matrix[12] = x;
    matrix[13] = y;
    matrix[14] = z;
    MultiplyCurrent(matrix);
}

void Scale(double x, double y, double z) {
    Mat4 matrix = Identity();
    matrix[0] = x;
    matrix[5] = y;
    matrix[10] = z;
    MultiplyCurrent(matrix);
}

// The matrix is that of the OpenGL 1.5 document, section 2.11.2.
void Rotate(double degrees, double x, double y, double z) {
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0) return;
    x /= length;
    y /= length;
    z /= length;
    const double s = std::sin(degrees * std::numbers::pi / 180);
    const double c = std::cos(degrees * std::numbers::pi / 180);
    const double t = 1 - c;
    MultiplyCurrent({x * x * t + c, y * x * t + z * s, z * x * t - y * s, 0,  //
                     x * y * t - z * s, y * y * t + c, z * y * t + x * s, 0,  //
                     x * z * t + y * s, y * z * t - x * s, z * z * t + c, 0,  //
                     0, 0, 0, 1});
}

}  // namespace

Mat4 Identity() {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Mat4 Multiply(const Mat4& a, const Mat4& b) {
    Mat4 product{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t k = 0; k < 4; ++k)
                product[column * 4 + row] += a[k * 4 + row] * b[column * 4 + k];
        }
    }
    return product;
}

std::array<double, 4> Transform(const Mat4& matrix, const std::array<double, 4>& point) {
    std::array<double, 4> result{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column)
            result[row] += matrix[column * 4 + row] * point[column];
    }
    return result;
}

Mat4& CurrentMatrix() {
    return CurrentStack().back();
}

void MultiplyCurrent(const Mat4& matrix) {
    CurrentMatrix() = Multiply(CurrentMatrix(), matrix);
}

Vertex Place(const Vec3& object) {
    const std::array<double, 4> eye = Transform(gl().modelview.back(), {object[0], object[1], object[2], 1});
    const std::array<double, 4> clip = Transform(gl().projection.back(), eye);
    Vertex vertex;
    vertex.object = object;
    vertex.eye = {static_cast<float>(eye[0]), static_cast<float>(eye[1]), static_cast<float>(eye[2])};
    vertex.x = clip[0] / clip[3] * 256 + 256;
    vertex.y = clip[1] / clip[3] * 256 + 256;
    vertex.z = clip[2] / clip[3];
    vertex.texcoord = gl().texcoord;
    vertex.normal = gl().normal;
    vertex.color = gl().color;
    return vertex;
}

}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

void glMatrixMode(GLenum mode) {
    Record("glMatrixMode", {Constant(mode)});
    if (!OutsideOfBegin("glMatrixMode")) return;
    if (mode != GL_MODELVIEW && mode != GL_PROJECTION && mode != GL_TEXTURE)
        return Misuse(GL_INVALID_ENUM, "glMatrixMode of an unknown mode");
    gl().matrix_mode = mode;
}

void glPushMatrix() {
    Record("glPushMatrix");
    if (!OutsideOfBegin("glPushMatrix")) return;
    std::vector<Mat4>& stack = CurrentStack();
    if (stack.size() >= gl().max_stack_depth)
        return Misuse(GL_STACK_OVERFLOW, "glPushMatrix on a full stack, " + Constant(gl().matrix_mode).name);
    const Mat4 top = stack.back();
    stack.push_back(top);
}

void glPopMatrix() {
    Record("glPopMatrix");
    if (!OutsideOfBegin("glPopMatrix")) return;
    std::vector<Mat4>& stack = CurrentStack();
    if (stack.size() == 1)
        return Misuse(GL_STACK_UNDERFLOW,
                      "glPopMatrix of the last matrix, " + Constant(gl().matrix_mode).name);
    stack.pop_back();
}

void glLoadIdentity() {
    Record("glLoadIdentity");
    if (OutsideOfBegin("glLoadIdentity")) CurrentMatrix() = Identity();
}

void glLoadMatrixf(const GLfloat* m) {
    Record("glLoadMatrixf", {m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9], m[10], m[11], m[12],
                             m[13], m[14], m[15]});
    if (OutsideOfBegin("glLoadMatrixf")) CurrentMatrix() = Read(m);
}

void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
    Record("glTranslatef", {x, y, z});
    if (OutsideOfBegin("glTranslatef")) Translate(x, y, z);
}

void glScalef(GLfloat x, GLfloat y, GLfloat z) {
    Record("glScalef", {x, y, z});
    if (OutsideOfBegin("glScalef")) Scale(x, y, z);
}

void glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) {
    Record("glRotatef", {angle, x, y, z});
    if (OutsideOfBegin("glRotatef")) Rotate(angle, x, y, z);
}

void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near_val,
             GLdouble far_val) {
    Record("glOrtho", {left, right, bottom, top, near_val, far_val});
    if (!OutsideOfBegin("glOrtho")) return;
    if (left == right || bottom == top || near_val == far_val)
        return Misuse(GL_INVALID_VALUE, "glOrtho of an empty box");
    Mat4 matrix = Identity();
    matrix[0] = 2 / (right - left);
    matrix[5] = 2 / (top - bottom);
    matrix[10] = -2 / (far_val - near_val);
    matrix[12] = -(right + left) / (right - left);
    matrix[13] = -(top + bottom) / (top - bottom);
    matrix[14] = -(far_val + near_val) / (far_val - near_val);
    MultiplyCurrent(matrix);
}

void glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    Record("glViewport", {x, y, width, height});
    if (!OutsideOfBegin("glViewport")) return;
    if (width < 0 || height < 0) return Misuse(GL_INVALID_VALUE, "glViewport of a negative size");
    gl().viewport = {x, y, width, height};
}

}  // extern "C"
