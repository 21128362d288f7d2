// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The state calls of the GL fake: switches, modes, questions.

#include <cmath>

#include "tests/fakes/gl_detail.h"

namespace fakes {
namespace {

Arg Buffers(GLbitfield mask) {
    std::string name;
    if ((mask & GL_COLOR_BUFFER_BIT) != 0) name += "GL_COLOR_BUFFER_BIT";
    if ((mask & GL_DEPTH_BUFFER_BIT) != 0)
        name += std::string(name.empty() ? "" : " | ") + "GL_DEPTH_BUFFER_BIT";
    if ((mask & GL_STENCIL_BUFFER_BIT) != 0)
        name += std::string(name.empty() ? "" : " | ") + "GL_STENCIL_BUFFER_BIT";
    return {static_cast<double>(mask), name};
}

std::vector<double> Numbers(const Mat4& matrix) {
    return {matrix.begin(), matrix.end()};
}

// Returns the answer to a glGet, or nothing for a question that the model does not know.
std::vector<double> Answer(GLenum question) {
    const Gl& state = gl();
    switch (question) {
        case GL_MODELVIEW_MATRIX:
            return Numbers(state.modelview.back());
        case GL_PROJECTION_MATRIX:
            return Numbers(state.projection.back());
        case GL_TEXTURE_MATRIX:
            return Numbers(state.texture_matrix.back());
        case GL_MODELVIEW_STACK_DEPTH:
            return {static_cast<double>(state.modelview.size())};
        case GL_PROJECTION_STACK_DEPTH:
            return {static_cast<double>(state.projection.size())};
        case GL_MAX_MODELVIEW_STACK_DEPTH:
        case GL_MAX_PROJECTION_STACK_DEPTH:
            return {static_cast<double>(state.max_stack_depth)};
        case GL_MATRIX_MODE:
            return {static_cast<double>(state.matrix_mode)};
        case GL_VIEWPORT:
            return {state.viewport.begin(), state.viewport.end()};
        case GL_MAX_TEXTURE_SIZE:
            return {static_cast<double>(state.max_texture_size)};
        case GL_CURRENT_COLOR:
            return {state.color.begin(), state.color.end()};
        case GL_CURRENT_TEXTURE_COORDS:
            return {state.texcoord[0], state.texcoord[1], 0, 1};
        case GL_CURRENT_NORMAL:
            return {state.normal.begin(), state.normal.end()};
        case GL_CURRENT_RASTER_POSITION:
            return {state.raster.x, state.raster.y, state.raster.z, 1};
        case GL_COLOR_CLEAR_VALUE:
            return {state.clear_color.begin(), state.clear_color.end()};
        case GL_DEPTH_CLEAR_VALUE:
            return {state.clear_depth};
        case GL_DEPTH_WRITEMASK:
            return {state.depth_mask ? 1.0 : 0.0};
        case GL_DEPTH_FUNC:
            return {static_cast<double>(state.depth_func)};
        case GL_DEPTH_BITS:
            return {state.depth ? 24.0 : 0.0};
        case GL_BLEND_SRC:
            return {static_cast<double>(state.blend_source)};
        case GL_BLEND_DST:
            return {static_cast<double>(state.blend_destination)};
        case GL_SHADE_MODEL:
            return {static_cast<double>(state.shade_model)};
        case GL_TEXTURE_BINDING_2D:
            return {static_cast<double>(state.bound_texture)};
        case GL_UNPACK_ALIGNMENT:
            return {static_cast<double>(state.unpack_alignment)};
        case GL_PACK_ALIGNMENT:
            return {static_cast<double>(state.pack_alignment)};
        case GL_TEXTURE_2D:
        case GL_BLEND:
        case GL_DEPTH_TEST:
        case GL_LIGHTING:
        case GL_CULL_FACE:
            return {state.Enabled(question) ? 1.0 : 0.0};
        default:
            return {};
    }
}

template <typename Number, typename Convert>
void Get(std::string_view call, GLenum question, Number* to, Convert convert) {
    Record(call, {Constant(question)});
    if (!OutsideOfBegin(call)) return;
    const std::vector<double> answer = Answer(question);
    if (answer.empty())
        return Misuse(GL_INVALID_ENUM, std::string(call) + " of a value that the fake does not know");
    for (const double number : answer) *to++ = convert(number);
}

void Switch(std::string_view call, GLenum capability, bool enabled) {
    Record(call, {Constant(capability)});
    if (!OutsideOfBegin(call)) return;
    if (enabled)
        gl().enabled.insert(capability);
    else
        gl().enabled.erase(capability);
}

// Logs a call that changes nothing of the model.
void JustRecord(std::string_view call, std::initializer_list<Arg> args = {}) {
    Record(call, args);
    OutsideOfBegin(call);
}

}  // namespace
}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

void glEnable(GLenum cap) {
    Switch("glEnable", cap, true);
}
void glDisable(GLenum cap) {
    Switch("glDisable", cap, false);
}

void glDepthMask(GLboolean flag) {
    Record("glDepthMask", {Truth(flag)});
    if (OutsideOfBegin("glDepthMask")) gl().depth_mask = flag != GL_FALSE;
}

void glDepthFunc(GLenum func) {
    Record("glDepthFunc", {Constant(func)});
    if (OutsideOfBegin("glDepthFunc")) gl().depth_func = func;
}

void glBlendFunc(GLenum sfactor, GLenum dfactor) {
    Record("glBlendFunc", {Factor(sfactor), Factor(dfactor)});
    if (!OutsideOfBegin("glBlendFunc")) return;
    gl().blend_source = sfactor;
    gl().blend_destination = dfactor;
}

void glShadeModel(GLenum mode) {
    Record("glShadeModel", {Constant(mode)});
    if (OutsideOfBegin("glShadeModel")) gl().shade_model = mode;
}

void glHint(GLenum target, GLenum mode) {
    Record("glHint", {Constant(target), Constant(mode)});
    if (OutsideOfBegin("glHint")) gl().hints[target] = mode;
}

void glClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha) {
    Record("glClearColor", {red, green, blue, alpha});
    if (OutsideOfBegin("glClearColor")) gl().clear_color = {red, green, blue, alpha};
}

void glClearDepth(GLclampd depth) {
    Record("glClearDepth", {depth});
    if (OutsideOfBegin("glClearDepth")) gl().clear_depth = depth;
}

void glClear(GLbitfield mask) {
    JustRecord("glClear", {Buffers(mask)});
}
void glFlush() {
    JustRecord("glFlush");
}
void glFinish() {
    JustRecord("glFinish");
}
void glScissor(GLint x, GLint y, GLsizei width, GLsizei height) {
    JustRecord("glScissor", {x, y, width, height});
}

void glGetFloatv(GLenum pname, GLfloat* params) {
    Get("glGetFloatv", pname, params, [](double number) { return static_cast<GLfloat>(number); });
}

void glGetDoublev(GLenum pname, GLdouble* params) {
    Get("glGetDoublev", pname, params, [](double number) { return number; });
}

void glGetIntegerv(GLenum pname, GLint* params) {
    Get("glGetIntegerv", pname, params,
        [](double number) { return static_cast<GLint>(std::lround(number)); });
}

GLenum glGetError() {
    Record("glGetError");
    const GLenum error = gl().error;
    gl().error = GL_NO_ERROR;
    return error;
}

}  // extern "C"
