// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What a window shows, as pixels, and the measuring of it in the program's own canvas units.
//
// The canvas is 512 x 512 units with its origin at the bottom left, whatever the window's size in pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// The canvas is this many units wide and high.
constexpr double kCanvas = 512;

/// A point of the canvas, canvas units, y up.
struct CanvasPoint {
    double x = 0;
    double y = 0;
};

/// A part of the canvas, canvas units, y up.
struct CanvasRect {
    double left = 0, bottom = 0, right = kCanvas, top = kCanvas;
};

/// A colour, 0 to 255 a channel.
struct Colour {
    std::uint8_t r = 0, g = 0, b = 0;

    /// Returns how bright the colour looks, 0 to 255 (Rec. 601 weights).
    double Luminance() const { return 0.299 * r + 0.587 * g + 0.114 * b; }
};

/// A picture of a window's client area, top row first.
class Image {
  public:
    Image(int width, int height)
        : width_(width),
          height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

    int Width() const { return width_; }
    int Height() const { return height_; }

    /// Returns the pixel at column x, row y from the top.
    Colour& At(int x, int y) { return pixels_[Index(x, y)]; }
    const Colour& At(int x, int y) const { return pixels_[Index(x, y)]; }

    /// Returns the canvas point in the middle of a pixel.
    CanvasPoint CanvasAt(int x, int y) const;

    /// Returns the pixel that holds a canvas point.
    const Colour& AtCanvas(CanvasPoint point) const;

    /// Writes the image as a PPM file, for looking at.
    void SavePpm(const std::string& path) const;

  private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }

    int width_;
    int height_;
    std::vector<Colour> pixels_;
};

/// Returns the mean absolute difference of two images' channels in a part of the canvas, 0 to 255. Images of
/// different sizes are compared at the pixels of the first.
double MeanDifference(const Image& a, const Image& b, const CanvasRect& part = {});

/// A blot of pixels.
struct Blot {
    CanvasPoint middle;  ///< its centre of gravity, canvas units
    double area = 0;     ///< square canvas units
    double roundness =
        0;  ///< 1 for a full disc, less for all other shapes: area / (2 pi mean squared distance)
};

/// Returns the blot of the pixels darker than `luminance` in the disc of `radius` units around `middle`;
/// nothing where no pixel is that dark.
std::optional<Blot> FindDark(const Image& image, CanvasPoint middle, double radius, double luminance);

}  // namespace desktop
