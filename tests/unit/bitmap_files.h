// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Bitmap files made by hand, and a second, simple-minded decoder of them, for tests of the bitmap reader and
// of what is made from bitmaps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/unit/little_endian.h"

namespace bitmaps {

/// The first 54 bytes of a file. What the reader has no use for is nonsense, so that it cannot matter.
struct Header {
    int width = 0;
    int height = 0;
    int bits = 24;
    int start = 54;  ///< where the pixels begin
    std::string magic = "BM";

    std::string Bytes() const {
        return magic + Number(0xABCDEF01, 4) + Number(0x23456789, 4) +
               Number(static_cast<std::uint32_t>(start), 4) + Number(0xFEDCBA98, 4) +
               Number(static_cast<std::uint32_t>(width), 4) + Number(static_cast<std::uint32_t>(height), 4) +
               Number(0x7777, 2) + Number(static_cast<std::uint32_t>(bits) & 0xFFU, 1) + Number(0xEE, 1) +
               Number(1, 4) + Number(2, 4) + Number(3, 4) + Number(4, 4) + Number(5, 4) + Number(6, 4);
    }
};

/// Returns a file of 24 bits whose pixels, blue first, are these bytes.
inline std::string TrueColor(int width, int height, const std::string& pixels) {
    return Header{width, height, 24, 54}.Bytes() + pixels;
}

/// Returns how many bytes the palette of that depth has in the file.
inline int PaletteBytes(int bits) {
    return bits == 8 ? 1024 : bits == 4 ? 64 : bits == 1 ? 8 : 0;
}

/// Returns a palette in which no two colours and no two parts of one are alike.
inline std::string Palette(int bits) {
    std::string palette;
    for (int i = 0; i < PaletteBytes(bits) / 4; ++i) {
        const auto index = static_cast<std::uint32_t>(i);
        palette += Number(index + 3, 1) + Number(index * 5 + 1, 1) + Number(255 - index, 1) + "\x99";
    }
    return palette;
}

/// Returns a file with a palette, and the pixels right after it.
inline std::string WithPalette(int width, int height, int bits, const std::string& pixels) {
    return Header{width, height, bits, 54 + PaletteBytes(bits)}.Bytes() + Palette(bits) + pixels;
}

/// Returns so many bytes, none of them 0, that look random.
inline std::string Noise(std::size_t count) {
    std::string bytes;
    std::uint32_t state = 12345;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525U + 1013904223U;
        bytes += static_cast<char>(1 + (state >> 16U) % 255U);
    }
    return bytes;
}

/// Returns the pixels, red first, that a file whose header is whole must give: each from its own place in the
/// file, black where the file has no such place. For sizes that are not negative.
inline std::string Decoded(const std::string& file, const Header& header) {
    const auto at = [&](std::size_t place) { return place < file.size() ? file[place] : '\0'; };
    const auto start = static_cast<std::size_t>(header.start);
    std::string pixels;
    for (int y = 0; y < header.height; ++y) {
        for (int x = 0; x < header.width; ++x) {
            const auto column = static_cast<std::size_t>(x);
            const auto row = static_cast<std::size_t>(y);
            const auto width = static_cast<std::size_t>(header.width);
            if (header.bits == 24) {
                const std::size_t place = start + 3 * (row * width + column);
                pixels += {at(place + 2), at(place + 1), at(place)};
                continue;
            }
            const std::size_t per_byte = 8 / static_cast<std::size_t>(header.bits);
            const std::size_t stride =
                header.bits == 4 ? std::size_t{128} : (width + per_byte - 1) / per_byte;
            const std::size_t place = start + row * stride + column / per_byte;
            const bool off_the_grid = header.bits == 4 && (x >= 256 || y >= 256);
            if (off_the_grid || place >= file.size()) {
                pixels += std::string(3, '\0');
                continue;
            }
            const std::size_t shift =
                static_cast<std::size_t>(header.bits) * (per_byte - 1 - column % per_byte);
            const std::size_t mask = (std::size_t{1} << static_cast<std::size_t>(header.bits)) - 1;
            const std::size_t index = static_cast<unsigned char>(file[place]) >> shift & mask;
            pixels += {at(54 + 4 * index + 2), at(54 + 4 * index + 1), at(54 + 4 * index)};
        }
    }
    return pixels;
}

}  // namespace bitmaps
