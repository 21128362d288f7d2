// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/gl_names.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace fakes {
namespace {

struct Name {
    GLenum value;
    std::string_view name;
};

#define NAMED(constant) \
    { constant, #constant }

constexpr Name kConstants[] = {
    NAMED(GL_MODELVIEW),
    NAMED(GL_PROJECTION),
    NAMED(GL_TEXTURE),
    NAMED(GL_MODELVIEW_MATRIX),
    NAMED(GL_PROJECTION_MATRIX),
    NAMED(GL_MODELVIEW_STACK_DEPTH),
    NAMED(GL_PROJECTION_STACK_DEPTH),
    NAMED(GL_MATRIX_MODE),
    NAMED(GL_VIEWPORT),
    NAMED(GL_MAX_TEXTURE_SIZE),
    NAMED(GL_CURRENT_COLOR),
    NAMED(GL_DEPTH_WRITEMASK),
    NAMED(GL_DEPTH_BITS),
    NAMED(GL_TEXTURE_BINDING_2D),
    NAMED(GL_TEXTURE_2D),
    NAMED(GL_BLEND),
    NAMED(GL_DEPTH_TEST),
    NAMED(GL_LIGHTING),
    NAMED(GL_LIGHT0),
    NAMED(GL_CULL_FACE),
    NAMED(GL_ALPHA_TEST),
    NAMED(GL_SCISSOR_TEST),
    NAMED(GL_COLOR_MATERIAL),
    NAMED(GL_NORMALIZE),
    NAMED(GL_FOG),
    NAMED(GL_LINE_SMOOTH),
    NAMED(GL_VERTEX_ARRAY),
    NAMED(GL_TEXTURE_COORD_ARRAY),
    NAMED(GL_NORMAL_ARRAY),
    NAMED(GL_COLOR_ARRAY),
    NAMED(GL_TEXTURE_MIN_FILTER),
    NAMED(GL_TEXTURE_MAG_FILTER),
    NAMED(GL_TEXTURE_WRAP_S),
    NAMED(GL_TEXTURE_WRAP_T),
    NAMED(GL_NEAREST),
    NAMED(GL_LINEAR),
    NAMED(GL_NEAREST_MIPMAP_NEAREST),
    NAMED(GL_LINEAR_MIPMAP_NEAREST),
    NAMED(GL_NEAREST_MIPMAP_LINEAR),
    NAMED(GL_LINEAR_MIPMAP_LINEAR),
    NAMED(GL_REPEAT),
    NAMED(GL_CLAMP),
    NAMED(GL_CLAMP_TO_EDGE),
    NAMED(GL_RGB),
    NAMED(GL_RGBA),
    NAMED(GL_BGR),
    NAMED(GL_BGRA),
    NAMED(GL_ALPHA),
    NAMED(GL_LUMINANCE),
    NAMED(GL_LUMINANCE_ALPHA),
    NAMED(GL_DEPTH_COMPONENT),
    NAMED(GL_UNSIGNED_BYTE),
    NAMED(GL_UNSIGNED_SHORT),
    NAMED(GL_UNSIGNED_INT),
    NAMED(GL_FLOAT),
    NAMED(GL_DOUBLE),
    NAMED(GL_INT),
    NAMED(GL_SHORT),
    NAMED(GL_SMOOTH),
    NAMED(GL_FLAT),
    NAMED(GL_NEVER),
    NAMED(GL_LESS),
    NAMED(GL_EQUAL),
    NAMED(GL_LEQUAL),
    NAMED(GL_GREATER),
    NAMED(GL_GEQUAL),
    NAMED(GL_ALWAYS),
    NAMED(GL_NICEST),
    NAMED(GL_FASTEST),
    NAMED(GL_DONT_CARE),
    NAMED(GL_PERSPECTIVE_CORRECTION_HINT),
    NAMED(GL_LINE_SMOOTH_HINT),
    NAMED(GL_PACK_ALIGNMENT),
    NAMED(GL_UNPACK_ALIGNMENT),
    NAMED(GL_TEXTURE_ENV),
    NAMED(GL_TEXTURE_ENV_MODE),
    NAMED(GL_MODULATE),
    NAMED(GL_REPLACE),
    NAMED(GL_FRONT),
    NAMED(GL_BACK),
    NAMED(GL_FRONT_AND_BACK),
    NAMED(GL_TEXTURE_WIDTH),
    NAMED(GL_TEXTURE_HEIGHT),
    NAMED(GL_VENDOR),
    NAMED(GL_RENDERER),
    NAMED(GL_VERSION),
    NAMED(GL_EXTENSIONS),
};

constexpr Name kShapes[] = {
    NAMED(GL_POINTS),     NAMED(GL_LINES),          NAMED(GL_LINE_LOOP),    NAMED(GL_LINE_STRIP),
    NAMED(GL_TRIANGLES),  NAMED(GL_TRIANGLE_STRIP), NAMED(GL_TRIANGLE_FAN), NAMED(GL_QUADS),
    NAMED(GL_QUAD_STRIP), NAMED(GL_POLYGON),
};

constexpr Name kFactors[] = {
    NAMED(GL_ZERO),      NAMED(GL_ONE),
    NAMED(GL_SRC_COLOR), NAMED(GL_ONE_MINUS_SRC_COLOR),
    NAMED(GL_SRC_ALPHA), NAMED(GL_ONE_MINUS_SRC_ALPHA),
    NAMED(GL_DST_ALPHA), NAMED(GL_ONE_MINUS_DST_ALPHA),
    NAMED(GL_DST_COLOR), NAMED(GL_ONE_MINUS_DST_COLOR),
};

#undef NAMED

template <std::size_t kSize>
Arg Named(const Name (&names)[kSize], GLenum value) {
    const auto* found = std::find_if(std::begin(names), std::end(names),
                                     [value](const Name& name) { return name.value == value; });
    if (found == std::end(names)) return {value};
    return {static_cast<double>(value), found->name};
}

}  // namespace

Arg Constant(GLenum value) {
    return Named(kConstants, value);
}
Arg Shape(GLenum value) {
    return Named(kShapes, value);
}
Arg Factor(GLenum value) {
    return Named(kFactors, value);
}
Arg Truth(GLboolean value) {
    return {static_cast<double>(value), value != GL_FALSE ? "GL_TRUE" : "GL_FALSE"};
}

}  // namespace fakes
