// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's raw texture files as tests read them, independently of the program.
//
// The file is a width and a height (unsigned 32-bit, little-endian, pixels), then width x height pixels of
// straight R, G, B, A bytes, the bottom row first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// One pixel of a raw texture file, straight alpha.
struct Texel {
    std::uint8_t r = 0, g = 0, b = 0, a = 0;
};

/// A raw texture file; row 0 is the bottom one.
struct RawPicture {
    std::uint32_t width = 0;   ///< as the header says, pixels
    std::uint32_t height = 0;  ///< as the header says, pixels
    std::size_t bytes = 0;     ///< the file's length
    std::vector<Texel> texels;

    /// Returns the pixel at column x, row y from the bottom.
    const Texel& At(int x, int y) const {
        return texels[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)];
    }

    int Width() const { return static_cast<int>(width); }
    int Height() const { return static_cast<int>(height); }

    /// Returns whether the file has just the bytes that its header announces.
    bool Whole() const { return bytes == 8 + std::size_t{width} * height * 4; }
};

/// Reads a raw texture file. A file that is missing or not whole gives a picture without texels.
RawPicture ReadRawPicture(const std::string& path);
