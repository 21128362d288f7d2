// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fake of fixed-function OpenGL and GLU: every call is logged (log.h) and carried out on a model
// of GL's state that tests read and set through gl().
//
// How to use it:
//
//     glLoadIdentity();                                   // tests may call GL themselves
//     RenderOnViewport();
//     const fakes::Primitive& quad = fakes::gl().primitives.at(0);
//     EXPECT_EQ(quad.texture, 7U);
//     EXPECT_EQ(fakes::Bounds(quad), (fakes::Rect{0, 0, 512, 512}));   // on the canvas
//     EXPECT_EQ(quad.vertices[2].object, (fakes::Vec3{256, 256, 0}));   // as handed to glVertex
//     EXPECT_EQ(quad.vertices[2].texcoord, (fakes::Vec2{1, 1}));
//     EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
//     EXPECT_EQ(fakes::gl().modelview.size(), 1U);        // stacks are balanced
//     fakes::gl().max_texture_size = 256;                 // the limit that glGet reports
//     fakes::gl().depth = 0.25F;                          // glReadPixels of depth now works
//
// Mistakes (a stack popped when only one matrix is left, glEnd without glBegin, a call that is not
// allowed between the two, a bad enum ...) set the flag that glGetError returns and add a sentence to
// `misuse`; the fixture in fakes.h fails a test that leaves any, so a test that provokes one clears it.
//
// Space: "canvas" is normalised device coordinates * 256 + 256, which are the canvas units while an
// orthographic projection of 0..512 is current, whatever the viewport.

#pragma once

#include <GL/gl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace fakes {

using Vec2 = std::array<float, 2>;
using Vec3 = std::array<float, 3>;
using Rgba = std::array<float, 4>;
using Mat4 = std::array<double, 16>;  ///< column by column, as GL keeps it

/// A rectangle on the canvas, in canvas units.
struct Rect {
    double left = 0, bottom = 0, right = 0, top = 0;

    double Width() const { return right - left; }
    double Height() const { return top - bottom; }
    double CentreX() const { return (left + right) / 2; }
    double CentreY() const { return (bottom + top) / 2; }
    /// Says whether all four sides agree to a thousandth of a canvas unit.
    bool operator==(const Rect& other) const;
};
std::ostream& operator<<(std::ostream& out, const Rect& rect);

/// A corner of a drawn primitive.
struct Vertex {
    Vec3 object{};    ///< as handed to glVertex or read from the vertex array
    Vec3 eye{};       ///< after the model-view matrix
    double x = 0;     ///< on the canvas
    double y = 0;     ///< on the canvas
    double z = 0;     ///< normalised device depth, -1 near to 1 far
    Vec2 texcoord{};  ///< current when the corner was given
    Vec3 normal{};    ///< current when the corner was given
    Rgba color{};     ///< current when the corner was given
};

/// What one glBegin/glEnd pair or one glDrawArrays/glDrawElements call drew, with the state of then.
struct Primitive {
    GLenum mode = 0;               ///< GL_QUADS, GL_TRIANGLES ...
    GLuint texture = 0;            ///< bound to GL_TEXTURE_2D
    bool textured = false;         ///< GL_TEXTURE_2D is enabled
    Rgba color{};                  ///< colour of the first corner
    bool blend = false;            ///< GL_BLEND is enabled
    GLenum blend_source = 0;       ///< GL_SRC_ALPHA ...
    GLenum blend_destination = 0;  ///< GL_ONE_MINUS_SRC_ALPHA ...
    bool depth_test = false;       ///< GL_DEPTH_TEST is enabled
    bool depth_mask = true;        ///< depth is written
    bool lighting = false;         ///< GL_LIGHTING is enabled
    GLenum matrix_mode = 0;        ///< GL_MODELVIEW ...
    Mat4 modelview{};              ///< at the end of the primitive
    Mat4 projection{};             ///< at the end of the primitive
    std::vector<Vertex> vertices;  ///< in drawing order
    std::size_t log_index = 0;     ///< place of glEnd/glDrawArrays/glDrawElements in the log
    bool from_arrays = false;      ///< drawn by glDrawArrays or glDrawElements
};
std::ostream& operator<<(std::ostream& out, const Primitive& primitive);

/// Returns the smallest canvas rectangle that holds the primitive.
Rect Bounds(const Primitive& primitive);

/// Returns the smallest rectangle that holds the primitive's texture coordinates.
Rect TexBounds(const Primitive& primitive);

/// A texture object; the defaults are GL's.
struct Texture {
    bool bound_once = false;  ///< glIsTexture is true from the first glBindTexture on
    int width = 0;            ///< texels of level 0; 0 before an upload
    int height = 0;
    GLint internal_format = 0;
    GLenum format = 0;
    GLenum type = 0;
    GLint min_filter = GL_NEAREST_MIPMAP_LINEAR;
    GLint mag_filter = GL_LINEAR;
    GLint wrap_s = GL_REPEAT;
    GLint wrap_t = GL_REPEAT;
    std::vector<std::uint8_t> pixels;  ///< level 0 without row padding; empty when none were given
    std::set<int> levels;              ///< uploaded levels
    bool mipmaps = false;              ///< uploaded by gluBuild2DMipmaps
    bool copied_from_frame = false;    ///< (partly) filled from the frame buffer
};

/// A client array as the last gl*Pointer call set it.
struct ClientArray {
    bool enabled = false;
    GLint size = 4;
    GLenum type = GL_FLOAT;
    GLsizei stride = 0;
    const void* pointer = nullptr;
};

/// The current raster position, where bitmap characters are drawn.
struct RasterPosition {
    Vec3 object{};
    double x = 0;  ///< on the canvas
    double y = 0;  ///< on the canvas
    double z = 0;  ///< normalised device depth
};

struct Gl {
    // What tests read.
    std::vector<Primitive> primitives;
    std::map<GLuint, Texture> textures;    ///< live names only
    Texture default_texture;               ///< the one with the name 0
    std::vector<GLuint> deleted_textures;  ///< names that were alive when they were deleted
    std::vector<std::string> misuse;

    GLenum matrix_mode = GL_MODELVIEW;
    std::vector<Mat4> modelview;  ///< back() is current; 1 matrix when balanced
    std::vector<Mat4> projection;
    std::vector<Mat4> texture_matrix;

    Rgba color{1, 1, 1, 1};
    Vec2 texcoord{0, 0};
    Vec3 normal{0, 0, 1};
    RasterPosition raster;
    std::set<GLenum> enabled;
    bool depth_mask = true;
    GLenum depth_func = GL_LESS;
    GLenum blend_source = GL_ONE;
    GLenum blend_destination = GL_ZERO;
    GLenum shade_model = GL_SMOOTH;
    Rgba clear_color{0, 0, 0, 0};
    double clear_depth = 1;
    std::map<GLenum, GLenum> hints;
    GLuint bound_texture = 0;
    std::array<GLint, 4> viewport{0, 0, 300, 300};
    ClientArray vertex_array, texcoord_array, normal_array, color_array;
    GLint unpack_alignment = 4;
    GLint pack_alignment = 4;
    std::optional<GLenum> begun;  ///< the mode between glBegin and glEnd

    // What tests set.
    GLint max_texture_size = 16384;
    std::size_t max_stack_depth = 32;  ///< of model-view and projection; drivers offer 32, GL promises 2
    std::optional<float> depth;        ///< depth under every pixel; nothing: there is no depth buffer
    GLenum error = GL_NO_ERROR;        ///< what glGetError returns next
    GLuint next_texture = 1;           ///< the name that glGenTextures gives next

    /// Says whether a capability (GL_BLEND ...) is enabled.
    bool Enabled(GLenum capability) const { return enabled.contains(capability); }
    /// Returns copies of the primitives drawn with a texture, in order; hold an element by value, not by
    /// reference.
    std::vector<Primitive> DrawnWith(GLuint name) const;
};

/// Returns the model that the GL fakes work on.
Gl& gl();

/// Puts the model back to a fresh context. Reset() in fakes.h calls it.
void ResetGl();

/// Returns a matrix product a * b, both column by column.
Mat4 Multiply(const Mat4& a, const Mat4& b);

/// Returns the identity.
Mat4 Identity();

/// Adds a mistake: a sentence for the test, and the flag for glGetError.
void Misuse(GLenum flag, std::string sentence);

}  // namespace fakes
