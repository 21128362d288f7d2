// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The texture calls of the GL fake.

#include <algorithm>
#include <cstring>

#include "tests/fakes/gl_detail.h"

namespace fakes {
namespace {

// Returns true for the one target that the model has.
bool IsModelled(std::string_view call, GLenum target) {
    if (!OutsideOfBegin(call)) return false;
    if (target == GL_TEXTURE_2D) return true;
    Misuse(GL_INVALID_ENUM, std::string(call) + " of a target other than GL_TEXTURE_2D");
    return false;
}

// Returns whether a size can be uploaded, and counts a mistake where it can not.
bool IsSizeAllowed(std::string_view call, GLsizei width, GLsizei height) {
    if (width >= 0 && height >= 0 && width <= gl().max_texture_size && height <= gl().max_texture_size)
        return true;
    Misuse(GL_INVALID_VALUE, std::string(call) + " of a size that GL does not take");
    return false;
}

bool SetParameter(Texture& texture, GLenum pname, GLint value) {
    switch (pname) {
        case GL_TEXTURE_MIN_FILTER:
            texture.min_filter = value;
            return true;
        case GL_TEXTURE_MAG_FILTER:
            texture.mag_filter = value;
            return true;
        case GL_TEXTURE_WRAP_S:
            texture.wrap_s = value;
            return true;
        case GL_TEXTURE_WRAP_T:
            texture.wrap_t = value;
            return true;
        default:
            return false;
    }
}

// Returns whether the rectangle lies in level 0 of the bound texture.
bool IsInside(GLint x, GLint y, GLsizei width, GLsizei height) {
    return x >= 0 && y >= 0 && width >= 0 && height >= 0 && x + width <= BoundTexture().width &&
           y + height <= BoundTexture().height;
}

std::size_t RowBytes(GLsizei width, int pixel_size, GLint alignment) {
    const std::size_t packed = static_cast<std::size_t>(width) * static_cast<std::size_t>(pixel_size);
    const auto step = static_cast<std::size_t>(alignment);
    return (packed + step - 1) / step * step;
}

}  // namespace

Texture& BoundTexture() {
    const auto found = gl().textures.find(gl().bound_texture);
    return found == gl().textures.end() ? gl().default_texture : found->second;
}

int PixelSize(GLenum format, GLenum type) {
    int channels = 0;
    switch (format) {
        case GL_RGBA:
        case GL_BGRA:
            channels = 4;
            break;
        case GL_RGB:
        case GL_BGR:
            channels = 3;
            break;
        case GL_LUMINANCE_ALPHA:
            channels = 2;
            break;
        case GL_LUMINANCE:
        case GL_ALPHA:
        case GL_DEPTH_COMPONENT:
            channels = 1;
            break;
        default:
            return 0;
    }
    switch (type) {
        case GL_BYTE:
        case GL_UNSIGNED_BYTE:
            return channels;
        case GL_SHORT:
        case GL_UNSIGNED_SHORT:
            return channels * 2;
        case GL_INT:
        case GL_UNSIGNED_INT:
        case GL_FLOAT:
            return channels * 4;
        default:
            return 0;
    }
}

std::vector<std::uint8_t> ImageBytes(const void* pixels, GLsizei width, GLsizei height, GLenum format,
                                     GLenum type, GLint alignment) {
    if (pixels == nullptr) return {};
    const auto* row = static_cast<const std::uint8_t*>(pixels);
    const std::size_t packed = RowBytes(width, PixelSize(format, type), 1);
    std::vector<std::uint8_t> bytes;
    for (GLsizei y = 0; y < height; ++y) {
        bytes.insert(bytes.end(), row, row + packed);
        row += RowBytes(width, PixelSize(format, type), alignment);
    }
    return bytes;
}

}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

void glGenTextures(GLsizei n, GLuint* textures) {
    Record("glGenTextures", {n});
    if (!OutsideOfBegin("glGenTextures")) return;
    if (n < 0) return Misuse(GL_INVALID_VALUE, "glGenTextures of a negative count");
    for (GLsizei i = 0; i < n; ++i) {
        while (gl().textures.contains(gl().next_texture)) ++gl().next_texture;
        textures[i] = gl().next_texture++;
        gl().textures[textures[i]];
    }
}

void glDeleteTextures(GLsizei n, const GLuint* textures) {
    for (GLsizei i = 0; i < n; ++i) Record("glDeleteTextures", {n, textures[i]});
    if (!OutsideOfBegin("glDeleteTextures")) return;
    if (n < 0) return Misuse(GL_INVALID_VALUE, "glDeleteTextures of a negative count");
    for (GLsizei i = 0; i < n; ++i) {
        if (gl().textures.erase(textures[i]) == 0) continue;
        gl().deleted_textures.push_back(textures[i]);
        if (gl().bound_texture == textures[i]) gl().bound_texture = 0;
    }
}

void glBindTexture(GLenum target, GLuint texture) {
    Record("glBindTexture", {Constant(target), texture});
    if (!IsModelled("glBindTexture", target)) return;
    gl().bound_texture = texture;
    if (texture != 0) gl().textures[texture].bound_once = true;
}

GLboolean glIsTexture(GLuint texture) {
    Record("glIsTexture", {texture});
    if (!OutsideOfBegin("glIsTexture")) return GL_FALSE;
    const auto found = gl().textures.find(texture);
    return found != gl().textures.end() && found->second.bound_once ? GL_TRUE : GL_FALSE;
}

void glTexParameteri(GLenum target, GLenum pname, GLint param) {
    Record("glTexParameteri", {Constant(target), Constant(pname), Constant(static_cast<GLenum>(param))});
    if (!IsModelled("glTexParameteri", target)) return;
    if (!SetParameter(BoundTexture(), pname, param))
        Misuse(GL_INVALID_ENUM, "glTexParameteri of an unknown parameter");
}

void glTexEnvi(GLenum target, GLenum pname, GLint param) {
    Record("glTexEnvi", {Constant(target), Constant(pname), Constant(static_cast<GLenum>(param))});
    OutsideOfBegin("glTexEnvi");
}

void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height,
                  GLint border, GLenum format, GLenum type, const GLvoid* pixels) {
    const bool allowed = IsModelled("glTexImage2D", target) && IsSizeAllowed("glTexImage2D", width, height);
    std::vector<std::uint8_t> bytes;
    if (allowed) bytes = ImageBytes(pixels, width, height, format, type, gl().unpack_alignment);
    Record("glTexImage2D",
           {Constant(target), level, Constant(static_cast<GLenum>(internalFormat)), width, height, border,
            Constant(format), Constant(type)},
           {}, bytes);
    if (!allowed) return;
    if (PixelSize(format, type) == 0)
        return Misuse(GL_INVALID_ENUM, "glTexImage2D of an unknown format or type");
    Texture& texture = BoundTexture();
    texture.levels.insert(level);
    if (level != 0) return;
    texture.width = width;
    texture.height = height;
    texture.internal_format = internalFormat;
    texture.format = format;
    texture.type = type;
    texture.pixels = std::move(bytes);
    texture.copied_from_frame = false;
}

void glCopyTexSubImage2D(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint x, GLint y,
                         GLsizei width, GLsizei height) {
    Record("glCopyTexSubImage2D", {Constant(target), level, xoffset, yoffset, x, y, width, height});
    if (!IsModelled("glCopyTexSubImage2D", target)) return;
    if (!IsInside(xoffset, yoffset, width, height))
        return Misuse(GL_INVALID_VALUE, "glCopyTexSubImage2D outside of the texture");
    BoundTexture().copied_from_frame = true;
}

void glGetTexLevelParameteriv(GLenum target, GLint level, GLenum pname, GLint* params) {
    Record("glGetTexLevelParameteriv", {Constant(target), level, Constant(pname)});
    if (!IsModelled("glGetTexLevelParameteriv", target)) return;
    if (pname == GL_TEXTURE_WIDTH)
        *params = BoundTexture().width >> level;
    else if (pname == GL_TEXTURE_HEIGHT)
        *params = BoundTexture().height >> level;
    else
        Misuse(GL_INVALID_ENUM, "glGetTexLevelParameteriv of an unknown parameter");
}

void glPixelStorei(GLenum pname, GLint param) {
    Record("glPixelStorei", {Constant(pname), param});
    if (!OutsideOfBegin("glPixelStorei")) return;
    if (pname != GL_UNPACK_ALIGNMENT && pname != GL_PACK_ALIGNMENT) return;  // the others are only logged
    if (param != 1 && param != 2 && param != 4 && param != 8)
        return Misuse(GL_INVALID_VALUE, "glPixelStorei of an alignment other than 1, 2, 4 or 8");
    (pname == GL_UNPACK_ALIGNMENT ? gl().unpack_alignment : gl().pack_alignment) = param;
}

void glReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
                  GLvoid* pixels) {
    Record("glReadPixels", {x, y, width, height, Constant(format), Constant(type)});
    if (!OutsideOfBegin("glReadPixels")) return;
    if (width < 0 || height < 0) return Misuse(GL_INVALID_VALUE, "glReadPixels of a negative size");
    if (format != GL_DEPTH_COMPONENT) {  // the frame is black: colours are not modelled
        std::memset(
            pixels, 0,
            RowBytes(width, PixelSize(format, type), gl().pack_alignment) * static_cast<std::size_t>(height));
        return;
    }
    if (!gl().depth) {  // not the program's mistake: the window has no depth buffer
        if (gl().error == GL_NO_ERROR) gl().error = GL_INVALID_OPERATION;
        return;
    }
    if (type != GL_FLOAT)
        return Misuse(GL_INVALID_ENUM, "glReadPixels of depth in a type other than GL_FLOAT");
    std::fill_n(static_cast<float*>(pixels),
                static_cast<std::size_t>(width) * static_cast<std::size_t>(height), *gl().depth);
}

}  // extern "C"
