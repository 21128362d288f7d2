// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as a bitmap: the input is the file "fuzz.bmp". The pixels are compared with those that a second,
// simple-minded decoder finds; then the file is made into textures.
#include <GL/gl.h>
#include <GL/glu.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "engine/BMP_Loader.h"
#include "engine/texture.h"
#include "fuzz/fuzzer.h"

// ---- The GL of the fuzzer ----
//
// Takes textures as a context would: it reads every byte that it is told to be there.

namespace {

constexpr GLint kLargest = 64;  ///< longest edge of a texture that this GL takes

int textures_made = 0;
int uploads = 0;
GLint alignment = 4;  ///< of rows in memory, bytes; as GL has it at first
unsigned char sum = 0;

/// Reads an image's rows.
void Read(const void* image, int width, int height, int pixel_size) {
    ++uploads;
    if (width <= 0 || height <= 0) return;
    const auto used = static_cast<std::size_t>(width) * static_cast<std::size_t>(pixel_size);
    const auto step = static_cast<std::size_t>(alignment);
    const std::size_t stride = (used + step - 1) / step * step;
    const auto* row = static_cast<const volatile unsigned char*>(image);
    for (int y = 0; y < height; ++y, row += stride) {
        sum ^= row[0];
        sum ^= row[used - 1];
    }
}

}  // namespace

extern "C" {

void glGenTextures(GLsizei /*n*/, GLuint* textures) {
    *textures = static_cast<GLuint>(++textures_made);
}
void glBindTexture(GLenum /*target*/, GLuint texture) {
    fuzz::Check(texture == static_cast<GLuint>(textures_made), "the texture just made is bound");
}
void glTexParameteri(GLenum /*target*/, GLenum /*name*/, GLint /*value*/) {}
void glGetIntegerv(GLenum what, GLint* number) {
    if (what == GL_UNPACK_ALIGNMENT) *number = alignment;
    if (what == GL_MAX_TEXTURE_SIZE) *number = kLargest;
}
void glPixelStorei(GLenum name, GLint value) {
    if (name == GL_UNPACK_ALIGNMENT) alignment = value;
}
void glTexImage2D(GLenum /*target*/, GLint /*level*/, GLint /*internal_format*/, GLsizei width,
                  GLsizei height, GLint /*border*/, GLenum format, GLenum /*type*/, const void* texels) {
    fuzz::Check(format == GL_RGBA, "texels have alpha");
    fuzz::Check(0 <= width && width <= kLargest && 0 <= height && height <= kLargest, "GL takes the sizes");
    Read(texels, width, height, 4);
}
GLint gluBuild2DMipmaps(GLenum /*target*/, GLint /*internal_format*/, GLsizei width, GLsizei height,
                        GLenum format, GLenum /*type*/, const void* pixels) {
    fuzz::Check(format == GL_RGB, "pixels are opaque");
    Read(pixels, width, height, 3);
    return 0;
}

}  // extern "C"

namespace {

using fuzz::Check;

constexpr char kFile[] = "fuzz.bmp";
constexpr char kAlphaFile[] = "alpha.bmp";  ///< always the same few pixels
constexpr int kAlphaPixels = 3;

// ---- What it has to give ----

/// A second look at a file. Bytes beyond its end count as 0.
struct File {
    std::string_view bytes;

    unsigned char At(std::uint64_t place) const {
        return place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0;
    }
    std::int64_t Int(std::uint64_t place) const {
        std::uint32_t number = 0;
        for (unsigned i = 0; i < 4; ++i) number |= std::uint32_t{At(place + i)} << (8 * i);
        return static_cast<std::int32_t>(number);
    }
    std::int64_t Width() const { return Int(18); }
    std::int64_t Height() const { return Int(22); }
    std::int64_t Pixels() const { return Width() * Height(); }
    unsigned Bits() const { return At(28); }
};

unsigned PaletteBytes(unsigned bits) {
    return bits == 8 ? 1024 : bits == 4 ? 64 : bits == 1 ? 8 : 0;
}

/// Returns the code that loading must give; the file has a size that there is memory for.
char ExpectedCode(const File& file) {
    if (file.bytes.substr(0, 2) != "BM") return 'b';
    const unsigned bits = file.Bits();
    return bits == 1 || bits == 4 || bits == 8 || bits == 24 ? '\0' : 'u';
}

/// Returns where in the file the byte of a pixel is, in a file of a palette.
std::uint64_t PlaceOf(const File& file, std::uint64_t start, int x, int y) {
    const auto column = static_cast<std::uint64_t>(x);
    const auto row = static_cast<std::uint64_t>(y);
    const auto width = static_cast<std::uint64_t>(file.Width());
    switch (file.Bits()) {
        case 8:
            return start + row * width + column;
        case 4:
            return start + row * 128 + column / 2;
        default:
            return start + row * ((width + 7) / 8) + column / 8;
    }
}

void CheckPixel(const File& file, BMPClass& image, std::uint64_t start, int x, int y) {
    const unsigned bits = file.Bits();
    std::uint64_t blue = 0;
    bool black = false;
    if (bits == 24) {
        blue = start + 3 * (static_cast<std::uint64_t>(y) * static_cast<std::uint64_t>(file.Width()) +
                            static_cast<std::uint64_t>(x));
    } else {
        const std::uint64_t place = PlaceOf(file, start, x, y);
        const unsigned shift = bits == 8   ? 0
                               : bits == 4 ? (x % 2 == 0 ? 4 : 0)
                                           : 7 - static_cast<unsigned>(x) % 8;
        const unsigned index = static_cast<unsigned>(file.At(place)) >> shift & ((1U << bits) - 1);
        blue = 54 + 4 * index;
        black = place >= file.bytes.size() || (bits == 4 && (x >= 256 || y >= 256));
    }
    for (unsigned c = 0; c < 3; ++c) {
        const unsigned char expected = black ? 0 : file.At(blue + 2 - c);
        Check(image.pixel(x, y, static_cast<int>(c)) == expected, "a pixel is the one of its place");
    }
}

void CheckImage(const File& file, BMPClass& image) {
    Check(image.width == file.Width() && image.height == file.Height(), "the sizes are the file's");
    if (file.Pixels() == 0) return;  // the other size may be two billion
    const std::uint64_t after_palette = 54 + PaletteBytes(file.Bits());
    const std::int64_t says = file.Int(10);
    const std::uint64_t start = says < 0 ? after_palette : static_cast<std::uint64_t>(says);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) CheckPixel(file, image, start, x, y);
    }
}

/// Loads the file and compares. Returns whether it gives an image.
bool LoadAndCompare(const File& file, bool has_memory) {
    BMPClass image;
    char code = 0;
    try {
        code = BMPLoad(kFile, image);
    } catch (const std::bad_alloc&) {
        Check(!has_memory, "there is memory for a size that is not negative");
        Check(image.bytes == nullptr, "an image without memory is empty");
        return false;
    }
    Check(has_memory, "there is no memory for a negative size");
    Check(code == ExpectedCode(file), "the code is that of the first thing wrong");
    if (code == 0) CheckImage(file, image);
    return code == 0;
}

/// Returns whether GL takes a texture of the file's sizes without scaling it.
bool IsTaken(const File& file) {
    return 0 <= file.Width() && file.Width() <= kLargest && 0 <= file.Height() && file.Height() <= kLargest;
}

void MakeTextures(const File& file, bool is_image) {
    textures_made = uploads = 0;
    alignment = 4;
    unsigned int name = 0;
    int expected = 0;
    for (const bool mipmaps : {false, true}) {
        Check(LoadTexture(&name, kFile, mipmaps) == is_image, "a texture is made of an image only");
        if (is_image) Check(name == static_cast<unsigned>(++expected), "the name is the new texture's");
    }
    const bool is_taken = is_image && IsTaken(file);
    Check(LoadTextureAlpha(&name, kFile, kFile) == is_taken, "an image is large enough for its own alpha");
    if (is_taken) ++expected;
    const bool has_alpha = is_taken && file.Pixels() <= kAlphaPixels;
    Check(LoadTextureAlpha(&name, kFile, kAlphaFile) == has_alpha, "no pixel lacks its alpha");
    if (has_alpha) ++expected;
    Check(textures_made == expected && uploads == expected, "every texture is filled, and no more are made");
    Check(alignment == 4, "the alignment of rows is left as it was");
}

// ---- Seeds ----

std::string Number(std::int64_t number, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i));
    return text;
}

std::string Bitmap(std::int64_t width, std::int64_t height, unsigned bits, std::size_t pixels,
                   std::int64_t start = 0) {
    std::string palette;
    for (unsigned i = 0; i < PaletteBytes(bits); ++i) palette += static_cast<char>(i * 7);
    std::string bytes;
    for (std::size_t i = 0; i < pixels; ++i) bytes += static_cast<char>(i * 13 + 1);
    return "BM" + Number(0, 8) + Number(start != 0 ? start : 54 + PaletteBytes(bits), 4) + Number(40, 4) +
           Number(width, 4) + Number(height, 4) + Number(1, 2) + Number(bits, 2) + std::string(24, '\0') +
           palette + bytes;
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    std::vector<std::string> seeds = {"", "B", "BA", "BM", Bitmap(2, 2, 32, 16), Bitmap(2, 2, 0, 16)};
    for (const unsigned bits : {24U, 8U, 4U, 1U}) {
        const std::string good = Bitmap(16, 4, bits, bits == 4 ? 512 : 192);
        seeds.push_back(good);
        seeds.push_back(good.substr(0, 30));
        seeds.push_back(good.substr(0, good.size() - 50));
        seeds.push_back(Bitmap(3, 5, bits, 100));
        seeds.push_back(Bitmap(3, 5, bits, 100, -1));
        seeds.push_back(Bitmap(3, 5, bits, 100, 20));
        seeds.push_back(Bitmap(3, 5, bits, 100, INT_MAX));
        seeds.push_back(Bitmap(260, 3, bits, 100));
        seeds.push_back(Bitmap(3, 260, bits, 100));
        seeds.push_back(Bitmap(64, 62, bits, 100));
        seeds.push_back(Bitmap(3, 1, bits, 9));
        seeds.push_back(Bitmap(-3, 5, bits, 100));
        seeds.push_back(Bitmap(-3, -5, bits, 100));
        seeds.push_back(Bitmap(0, INT_MAX, bits, 100));
        seeds.push_back(Bitmap(INT_MAX, 0, bits, 100));
        seeds.push_back(Bitmap(INT_MAX, INT_MAX, bits, 100));
        seeds.push_back(Bitmap(INT_MIN, INT_MIN, bits, 100));
    }
    seeds.push_back(Bitmap(256, 256, 4, std::size_t{256} * 128));
    seeds.push_back(Bitmap(256, 256, 4, 100));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::int64_t kMostPixels = 4'000;        // more takes too long for most inputs
    constexpr std::int64_t kNoMemory = LLONG_MAX / 3;  // beyond, bytes cannot be counted
    const File file = {{reinterpret_cast<const char*>(data), size}};
    const std::int64_t pixels = file.Pixels();
    const bool is_usual = file.Bits() == 4 && file.Width() == 256 && file.Height() == 256;
    if (pixels > kMostPixels && pixels <= kNoMemory && !is_usual) return 0;
    const fuzz::InOwnFolder here;
    fuzz::WriteFile(kFile, data, size);
    static const std::string alpha = Bitmap(kAlphaPixels, 1, 24, kAlphaPixels * std::size_t{3});
    fuzz::WriteFile(kAlphaFile, alpha.data(), alpha.size());

    const bool has_memory = ExpectedCode(file) == 'b' || (pixels >= 0 && pixels <= kNoMemory);
    MakeTextures(file, LoadAndCompare(file, has_memory));
    return 0;
}
