// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the character screen should show, put together from the program's pictures without GL.
//
// Tests compare it with what the window really shows: to measure the drawing, and to tell what the owl is
// doing.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "tests/desktop/image.h"
#include "tests/tools/raw_picture.h"

namespace desktop {

/// Where the standing owl's pupils rest, canvas units.
constexpr CanvasPoint kLeftPupil = {233.28, 392.25};
constexpr CanvasPoint kRightPupil = {283.52, 389.80};

/// One state of the owl.
struct Owl {
    std::string body = "stand_01";      ///< the picture of the body
    double bob = 0;                     ///< how far breathing raises the head, canvas units
    bool pupils = true;                 ///< the pupils are drawn; true for "stand_01" alone
    CanvasPoint left = {}, right = {};  ///< the pupils' offsets from rest, canvas units
};

/// Where the standing owl's pupils are, canvas units from where they rest.
struct Gaze {
    CanvasPoint left, right;
};

/// Measures both pupils in a window's picture, to about half a unit where the window has 900 x 900 pixels.
/// Nothing where the eyes are shut or not the standing owl's.
std::optional<Gaze> GazeIn(const Image& image);

/// The part of the canvas that nothing but background, tree and owl is drawn in.
constexpr CanvasRect kOwlPart = {130, 60, 330, 450};

/// Draws scenes from the pictures of the data folder.
class Scene {
  public:
    Scene();

    /// Returns what a window of that size shows of background, tree and owl.
    Image Draw(int width, int height, const Owl& owl) const;

    /// Returns the body picture ("stand_01", "sleep_close_eyes", ...) that an image looks most like.
    std::string BodyIn(const Image& image);

  private:
    const Image& Bare(const std::string& body, int width, int height);

    std::map<std::string, Image> bare_;  ///< the scenes that BodyIn compares with, drawn once each
    std::map<std::string, RawPicture> pictures_;
};

}  // namespace desktop
