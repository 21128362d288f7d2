// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/BMP_Loader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

#include "engine/file.h"

namespace {

constexpr std::size_t kHeaderBytes = 54;
constexpr int kSixteenColorEdge = 256;  ///< width and height of every 16-colour image, pixels

using Header = std::array<unsigned char, kHeaderBytes>;

/// A file's palette: blue, green, red and a reserved byte for each colour.
using Palette = std::array<unsigned char, 256 * std::size_t{4}>;

int Int32(const Header& header, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8U | header[at + i];
    return static_cast<int>(number);
}

/// Reads the palette, which follows the header. Colours that are missing from the file are black.
Palette ReadPalette(std::FILE* file, std::size_t colors) {
    Palette palette = {};
    const std::size_t got = std::fread(palette.data(), 1, colors * 4, file);
    static_cast<void>(got);
    return palette;
}

/// Sets a pixel to a colour of the palette. Does nothing outside the image.
void Store(BMPClass& image, std::int64_t x, int y, const Palette& palette, unsigned int index) {
    if (x >= image.width || y >= image.height) return;
    const unsigned char* color = &palette.at(index * std::size_t{4});
    for (int c = 0; c < 3; ++c) image.pixel(static_cast<int>(x), y, c) = color[2 - c];
}

// ---- The depths ----
//
// Each reads pixels from the current position of the file, and stops at its end.

void Read24Bits(std::FILE* file, BMPClass& image) {
    // Not negative: allocateMem() has thrown otherwise.
    const std::size_t wanted = static_cast<std::size_t>(std::int64_t{image.width} * image.height) * 3;
    const std::size_t got = std::fread(image.bytes, 1, wanted, file);
    // Swaps blue and red, also in a last pixel that the file holds only in part.
    for (std::size_t i = 0; i < got; i += 3) std::swap(image.bytes[i], image.bytes[i + 2]);
}

void Read256Colors(std::FILE* file, BMPClass& image, const Palette& palette) {
    for (int y = 0; y < image.height && image.width > 0; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const int index = std::getc(file);
            if (index == EOF) return;
            Store(image, x, y, palette, static_cast<unsigned int>(index));
        }
    }
}

void Read16Colors(std::FILE* file, BMPClass& image, const Palette& palette) {
    for (int y = 0; y < kSixteenColorEdge; ++y) {
        for (int x = 0; x < kSixteenColorEdge; x += 2) {
            const int byte = std::getc(file);
            if (byte == EOF) return;
            const auto bits = static_cast<unsigned int>(byte);
            Store(image, x, y, palette, bits >> 4U);
            Store(image, x + 1, y, palette, bits & 0xFU);
        }
    }
}

void Read2Colors(std::FILE* file, BMPClass& image, const Palette& palette) {
    for (int y = 0; y < image.height && image.width > 0; ++y) {
        for (std::int64_t x = 0; x < image.width; x += 8) {
            const int byte = std::getc(file);
            if (byte == EOF) return;
            const auto bits = static_cast<unsigned int>(byte);
            for (int bit = 7; bit >= 0; --bit) {
                Store(image, x + (7 - bit), y, palette, bits >> static_cast<unsigned int>(bit) & 1U);
            }
        }
    }
}

/// Reads pixels of `bits` bits each that begin `start` bytes into the file. Returns false for an unknown
/// depth.
bool ReadPixels(std::FILE* file, int bits, int start, BMPClass& image) {
    const std::size_t colors = bits == 8 ? 256 : bits == 4 ? 16 : bits == 1 ? 2 : 0;
    const Palette palette = ReadPalette(file, colors);
    std::fseek(file, start, SEEK_SET);
    switch (bits) {
        case 24:
            Read24Bits(file, image);
            return true;
        case 8:
            Read256Colors(file, image, palette);
            return true;
        case 4:
            Read16Colors(file, image, palette);
            return true;
        case 1:
            Read2Colors(file, image, palette);
            return true;
        default:
            return false;
    }
}

}  // namespace

// ---- BMPClass ----

BMPClass::~BMPClass() {
    std::free(bytes);
}

void BMPClass::allocateMem() {
    std::free(bytes);
    bytes = nullptr;
    const std::int64_t pixels = std::int64_t{width} * height;
    if (pixels < 0 || pixels > std::numeric_limits<std::int64_t>::max() / 3) throw std::bad_alloc();
    const auto room = std::max<std::size_t>(static_cast<std::size_t>(pixels) * 3, 1);
    bytes = static_cast<unsigned char*>(std::calloc(room, 1));
    if (bytes == nullptr) throw std::bad_alloc();
}

// NOLINTNEXTLINE(readability-make-member-function-const): gives write access to the pixels
unsigned char& BMPClass::pixel(int x, int y, int c) {
    return bytes[(std::ptrdiff_t{y} * width + x) * 3 + c];
}

// ---- Loading ----

// NOLINTNEXTLINE(performance-unnecessary-value-param): the engine passes paths by value
char BMPLoad(std::string path, BMPClass& image) {
    const File file(std::fopen(path.c_str(), "rbe"));
    if (file == nullptr) return 'o';
    Header header = {};
    const std::size_t got = std::fread(header.data(), 1, header.size(), file.get());
    if (got < 2 || header[0] != 'B' || header[1] != 'M') return 'b';

    const int start = Int32(header, 10);
    image.width = Int32(header, 18);
    image.height = Int32(header, 22);
    image.allocateMem();
    if (!ReadPixels(file.get(), static_cast<signed char>(header[28]), start, image)) return 'u';
    return std::ferror(file.get()) != 0 ? 'f' : '\0';
}

char BMPLoad(std::string path) {
    BMPClass forgotten;
    return BMPLoad(std::move(path), forgotten);
}

std::string TranslateBMPError(char code) {
    struct Message {
        char code;
        const char* text;
    };
    constexpr Message kMessages[] = {
        {'\0', "No errors detected"},
        {'o', "Failed to open the file, suspect it doesn't exist"},
        {'b', "This file is not a bitmap, specifically it doesn't start 'BM'"},
        {'u', "Unknown bmp format, ie not 24bit, 256,16 or 2 colour"},
        {'f', "ferror said we had an error. This error seems to not always mean anything, try ignoring it"},
        {'i', "sizeof(int)!=4 quite a lot of rewriting probably needs to be done on the code"},
    };
    for (const Message& message : kMessages) {
        if (message.code == code) return message.text;
    }
    return "Not a valid error code";
}
