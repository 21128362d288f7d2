// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Pictures cut out of SVG drawings, as the bakers need them.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "tools/raw_picture.h"

/// What a drawing cannot give, in one line.
struct DrawingError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A part of a drawing.
struct Cutout {
    std::string drawing;                ///< SVG file in the folder of drawings; it has a viewBox
    double x = 0, y = 0, w = 0, h = 0;  ///< the crop, in the drawing's own units, y down
    std::vector<std::string> layers;    ///< ids painted one over another; none: the whole drawing
};

/// Renders a cutout in so many pixels, straight alpha, colour bled into its clear texels. Throws a
/// DrawingError for a drawing that cannot be read or a layer that it does not have.
RawPicture Render(const Cutout& cutout, const std::string& folder, int width, int height);
