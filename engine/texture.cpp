// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/texture.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "engine/BMP_Loader.h"

namespace {

/// Reads a bitmap; returns whether that worked.
bool Read(const char* file, BMPClass& image) {
    return BMPLoad(file, image) == 0;
}

std::int64_t Pixels(const BMPClass& image) {
    return std::int64_t{image.width} * image.height;
}

/// Returns whether GL takes an image of these sizes. They come unchecked from the file's header, and
/// allocateMem() accepts two negative ones, as their product is positive.
bool IsTaken(const BMPClass& image) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return std::min(image.width, image.height) >= 0 && std::max(image.width, image.height) <= largest;
}

/// Makes a texture and leaves it bound.
void MakeTexture(unsigned int* texture, GLint magnified, GLint minified) {
    glGenTextures(1, texture);
    glBindTexture(GL_TEXTURE_2D, *texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, magnified);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minified);
}

/// Uploads an image with all its mipmaps. The image's rows have no padding, which GL expects by default.
void BuildMipmaps(const BMPClass& image) {
    GLint alignment = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, image.width, image.height, GL_RGB, GL_UNSIGNED_BYTE,
                      image.bytes);
    glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
}

/// Returns RGBA texels: the colours of one image, with the red of another as alpha.
std::vector<unsigned char> Combine(const BMPClass& color, const BMPClass& alpha) {
    const auto pixels = static_cast<std::size_t>(Pixels(color));
    std::vector<unsigned char> texels(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i) {
        for (std::size_t c = 0; c < 3; ++c) texels[4 * i + c] = color.bytes[3 * i + c];
        texels[4 * i + 3] = alpha.bytes[3 * i];
    }
    return texels;
}

}  // namespace

bool LoadTexture(unsigned int* texture, const char* file, bool mipmap_filter) try {
    BMPClass image;
    // gluBuild2DMipmaps counts bytes in an int and crashes if that overflows.
    if (!Read(file, image) || Pixels(image) > INT_MAX / 3) return false;
    MakeTexture(texture, GL_NEAREST, mipmap_filter ? GL_LINEAR_MIPMAP_NEAREST : GL_NEAREST);
    BuildMipmaps(image);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool LoadTextureAlpha(unsigned int* texture, const char* color_file, const char* alpha_file) try {
    BMPClass color;
    BMPClass alpha;
    if (!Read(color_file, color) || !Read(alpha_file, alpha)) return false;
    if (Pixels(alpha) < Pixels(color) || !IsTaken(color)) return false;
    const std::vector<unsigned char> texels = Combine(color, alpha);
    MakeTexture(texture, GL_LINEAR, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, color.width, color.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 texels.data());
    return true;
} catch (const std::bad_alloc&) {
    return false;
}
