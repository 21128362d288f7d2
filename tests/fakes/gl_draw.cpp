// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The drawing calls of the GL fake: glBegin to glEnd, client arrays, current attributes.

#include <cstring>

#include "tests/fakes/gl_detail.h"

namespace fakes {
namespace {

// The corners since glBegin.
std::vector<Vertex>& Pending() {
    static std::vector<Vertex> corners;
    return corners;
}

// Adds a primitive with the state of now; its call is the newest in the log.
void Draw(GLenum mode, std::vector<Vertex> vertices, bool from_arrays) {
    const Gl& state = gl();
    Primitive primitive;
    primitive.mode = mode;
    primitive.texture = state.bound_texture;
    primitive.textured = state.Enabled(GL_TEXTURE_2D);
    primitive.color = vertices.empty() ? state.color : vertices[0].color;
    primitive.blend = state.Enabled(GL_BLEND);
    primitive.blend_source = state.blend_source;
    primitive.blend_destination = state.blend_destination;
    primitive.depth_test = state.Enabled(GL_DEPTH_TEST);
    primitive.depth_mask = state.depth_mask;
    primitive.lighting = state.Enabled(GL_LIGHTING);
    primitive.matrix_mode = state.matrix_mode;
    primitive.modelview = state.modelview.back();
    primitive.projection = state.projection.back();
    primitive.vertices = std::move(vertices);
    primitive.log_index = Log().size() - 1;
    primitive.from_arrays = from_arrays;
    gl().primitives.push_back(std::move(primitive));
}

std::size_t TypeSize(GLenum type) {
    switch (type) {
        case GL_BYTE:
        case GL_UNSIGNED_BYTE:
            return 1;
        case GL_SHORT:
        case GL_UNSIGNED_SHORT:
            return 2;
        case GL_DOUBLE:
            return 8;
        default:
            return 4;
    }
}

template <typename Number>
double Fetch(const std::uint8_t* from) {
    Number number{};
    std::memcpy(&number, from, sizeof number);
    return static_cast<double>(number);
}

// Reads one number of a client array. Colours of whole-number types are fractions of their largest value.
double Component(const ClientArray& array, std::size_t element, std::size_t component, bool is_color) {
    const std::size_t packed = static_cast<std::size_t>(array.size) * TypeSize(array.type);
    const std::size_t stride = array.stride != 0 ? static_cast<std::size_t>(array.stride) : packed;
    const auto* from =
        static_cast<const std::uint8_t*>(array.pointer) + element * stride + component * TypeSize(array.type);
    switch (array.type) {
        case GL_FLOAT:
            return Fetch<float>(from);
        case GL_DOUBLE:
            return Fetch<double>(from);
        case GL_UNSIGNED_BYTE:
            return Fetch<std::uint8_t>(from) / (is_color ? 255.0 : 1.0);
        case GL_SHORT:
            return Fetch<std::int16_t>(from);
        default:
            return Fetch<std::int32_t>(from);
    }
}

template <std::size_t kSize>
std::array<float, kSize> Element(const ClientArray& array, std::size_t element,
                                 std::array<float, kSize> missing, bool is_color = false) {
    for (std::size_t i = 0; i < kSize && i < static_cast<std::size_t>(array.size); ++i)
        missing[i] = static_cast<float>(Component(array, element, i, is_color));
    return missing;
}

// Returns the corner that the enabled client arrays hold at an index. The current attributes stay.
Vertex FromArrays(std::size_t index) {
    Vertex vertex = Place(Element<3>(gl().vertex_array, index, {0, 0, 0}));
    if (gl().texcoord_array.enabled) vertex.texcoord = Element<2>(gl().texcoord_array, index, {0, 0});
    if (gl().normal_array.enabled) vertex.normal = Element<3>(gl().normal_array, index, {0, 0, 0});
    if (gl().color_array.enabled) vertex.color = Element<4>(gl().color_array, index, {0, 0, 0, 1}, true);
    return vertex;
}

// Returns whether drawing from arrays may go on; without a vertex array GL draws nothing and is content.
bool MayDrawArrays(std::string_view call, GLsizei count) {
    if (!OutsideOfBegin(call)) return false;
    if (count < 0) {
        Misuse(GL_INVALID_VALUE, std::string(call) + " of a negative count");
        return false;
    }
    if (!gl().vertex_array.enabled) return false;
    if (gl().vertex_array.pointer == nullptr) {
        Misuse(GL_INVALID_OPERATION, std::string(call) + " with a null vertex array");
        return false;
    }
    return true;
}

ClientArray* FindArray(GLenum array) {
    switch (array) {
        case GL_VERTEX_ARRAY:
            return &gl().vertex_array;
        case GL_TEXTURE_COORD_ARRAY:
            return &gl().texcoord_array;
        case GL_NORMAL_ARRAY:
            return &gl().normal_array;
        case GL_COLOR_ARRAY:
            return &gl().color_array;
        default:
            return nullptr;
    }
}

void SetArray(ClientArray& array, GLint size, GLenum type, GLsizei stride, const void* pointer) {
    array.size = size;
    array.type = type;
    array.stride = stride;
    array.pointer = pointer;
}

void SwitchArray(std::string_view call, GLenum array, bool enabled) {
    Record(call, {Constant(array)});
    if (!OutsideOfBegin(call)) return;
    ClientArray* found = FindArray(array);
    if (found == nullptr) return Misuse(GL_INVALID_ENUM, std::string(call) + " of an unknown array");
    found->enabled = enabled;
}

void Corner(float x, float y, float z) {
    if (!gl().begun) return Misuse(GL_INVALID_OPERATION, "glVertex without glBegin");
    Pending().push_back(Place({x, y, z}));
}

void Raster(float x, float y, float z) {
    if (!OutsideOfBegin("glRasterPos")) return;
    const Vertex placed = Place({x, y, z});
    gl().raster = {placed.object, placed.x, placed.y, placed.z};
}

float Byte(GLubyte value) {
    return static_cast<float>(value) / 255.0F;
}

}  // namespace

bool OutsideOfBegin(std::string_view call) {
    if (!gl().begun) return true;
    Misuse(GL_INVALID_OPERATION, std::string(call) + " between glBegin and glEnd");
    return false;
}

}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

void glBegin(GLenum mode) {
    Record("glBegin", {Shape(mode)});
    if (!OutsideOfBegin("glBegin")) return;
    if (mode > GL_POLYGON) return Misuse(GL_INVALID_ENUM, "glBegin of an unknown mode");
    Pending().clear();
    gl().begun = mode;
}

void glEnd() {
    Record("glEnd");
    if (!gl().begun) return Misuse(GL_INVALID_OPERATION, "glEnd without glBegin");
    const GLenum mode = *gl().begun;
    gl().begun.reset();
    Draw(mode, Pending(), false);
}

void glVertex2f(GLfloat x, GLfloat y) {
    Record("glVertex2f", {x, y});
    Corner(x, y, 0);
}

void glVertex2i(GLint x, GLint y) {
    Record("glVertex2i", {x, y});
    Corner(static_cast<float>(x), static_cast<float>(y), 0);
}

void glVertex3f(GLfloat x, GLfloat y, GLfloat z) {
    Record("glVertex3f", {x, y, z});
    Corner(x, y, z);
}

void glVertex3fv(const GLfloat* v) {
    Record("glVertex3fv", {v[0], v[1], v[2]});
    Corner(v[0], v[1], v[2]);
}

void glTexCoord2f(GLfloat s, GLfloat t) {
    Record("glTexCoord2f", {s, t});
    gl().texcoord = {s, t};
}

void glTexCoord2i(GLint s, GLint t) {
    Record("glTexCoord2i", {s, t});
    gl().texcoord = {static_cast<float>(s), static_cast<float>(t)};
}

void glNormal3f(GLfloat nx, GLfloat ny, GLfloat nz) {
    Record("glNormal3f", {nx, ny, nz});
    gl().normal = {nx, ny, nz};
}

void glNormal3fv(const GLfloat* v) {
    Record("glNormal3fv", {v[0], v[1], v[2]});
    gl().normal = {v[0], v[1], v[2]};
}

void glColor4f(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    Record("glColor4f", {red, green, blue, alpha});
    gl().color = {red, green, blue, alpha};
}

void glColor4ub(GLubyte red, GLubyte green, GLubyte blue, GLubyte alpha) {
    Record("glColor4ub", {red, green, blue, alpha});
    gl().color = {Byte(red), Byte(green), Byte(blue), Byte(alpha)};
}

void glRasterPos3f(GLfloat x, GLfloat y, GLfloat z) {
    Record("glRasterPos3f", {x, y, z});
    Raster(x, y, z);
}

void glEnableClientState(GLenum array) {
    SwitchArray("glEnableClientState", array, true);
}
void glDisableClientState(GLenum array) {
    SwitchArray("glDisableClientState", array, false);
}

void glVertexPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* pointer) {
    Record("glVertexPointer", {size, Constant(type), stride});
    if (OutsideOfBegin("glVertexPointer")) SetArray(gl().vertex_array, size, type, stride, pointer);
}

void glTexCoordPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* pointer) {
    Record("glTexCoordPointer", {size, Constant(type), stride});
    if (OutsideOfBegin("glTexCoordPointer")) SetArray(gl().texcoord_array, size, type, stride, pointer);
}

void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    Record("glDrawArrays", {Shape(mode), first, count});
    if (!MayDrawArrays("glDrawArrays", count)) return;
    std::vector<Vertex> vertices;
    for (GLint i = first; i < first + count; ++i) vertices.push_back(FromArrays(static_cast<std::size_t>(i)));
    Draw(mode, std::move(vertices), true);
}

}  // extern "C"
