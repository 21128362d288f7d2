// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A picture on its way from cairo to a raw texture file, shared by the tools that bake one.
#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// An image, top row first: 4 bytes a pixel, straight R, G, B, A.
struct RawPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    /// Returns the pixel's number, counted along the rows.
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
    std::uint8_t* At(int x, int y) { return &rgba[Index(x, y) * 4]; }
};

/// Returns an ARGB32 surface as a picture and destroys the surface.
RawPicture FromCairo(cairo_surface_t* surface);

/// Gives every transparent pixel the colour of its nearest painted neighbours, so that linear filtering finds
/// no dark fringe around a sprite. Alpha stays as it is.
void BleedColour(RawPicture& picture);

/// Writes the file as the program reads it: width and height (32-bit, little-endian), then the rows from the
/// bottom up. Returns whether all of it was written.
bool Write(const RawPicture& picture, const std::string& path);
