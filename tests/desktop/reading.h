// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Reading a window: which of the program's pictures it shows in a place, and which text.
#pragma once

#include <cstddef>
#include <string>

#include "tests/desktop/image.h"
#include "tests/tools/raw_picture.h"

namespace desktop {

/// Reads a picture of the data folder, such as "ic1"; stops the test where it cannot be read.
RawPicture Picture(const std::string& file);

/// Returns how far an image is from showing the opaque pixels of a picture in that place, 0 to 255.
double Misfit(const Image& image, const RawPicture& picture, const CanvasRect& place);

/// Returns how bright an image is, 0 to 255, where the ink of a text should be that begins at a canvas point.
double InkBrightness(const Image& image, const std::string& text, CanvasPoint place);

/// Returns the text of a line whose first glyph's square has its bottom left corner at a canvas point: at
/// most `length` characters, without the blanks at their end. Each character is the one that explains the
/// pixels best; nothing there reads as a blank. For white or green text in a window of 600 x 600 pixels or
/// more.
std::string ReadText(const Image& image, CanvasPoint place, std::size_t length);

/// Returns the text of a line of `length` characters that is centred on place.x, without the blanks at its
/// end.
std::string ReadCentred(const Image& image, CanvasPoint place, std::size_t length);

}  // namespace desktop
