// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/reading.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "tests/desktop/process.h"

namespace desktop {

namespace {

constexpr double kSquare = 20;      ///< edge of a glyph's square, canvas units
constexpr double kAdvance = 10.25;  ///< from one glyph to the next, canvas units
constexpr char kFirst = ' ';
constexpr char kLast = '~';

/// The program's font: 16 x 16 cells, the blank's at the top left.
class Font {
  public:
    int Cell() const { return picture_.Width() / 16; }

    /// Returns the texel of a character at column x, row y from the bottom of its cell.
    const Texel& At(char character, int x, int y) const {
        const int index = character - kFirst;
        return picture_.At(index % 16 * Cell() + x, (15 - index / 16) * Cell() + y);
    }

    /// Returns the canvas point of a texel in a glyph whose square begins at `place`.
    CanvasPoint Place(CanvasPoint place, int x, int y) const {
        return {place.x + (x + 0.5) / Cell() * kSquare, place.y + (y + 0.5) / Cell() * kSquare};
    }

    /// Returns how many columns of a cell are a glyph's own, from the left: the next glyph covers the others.
    int OwnColumns() const { return static_cast<int>(Cell() * kAdvance / kSquare); }

  private:
    RawPicture picture_ = Picture("font");
};

const Font& TheFont() {
    static const Font font;
    return font;
}

/// Returns how badly a character explains what stands at a place: the mean squared difference from its glyph
/// over the best plain ground. Green tells white and green ink alike from what is below.
double Surprise(const Image& image, char character, CanvasPoint place) {
    const Font& font = TheFont();
    double count = 0;
    double through_squares = 0;  // sums of products, for the best ground
    double left_through = 0;
    double left_squares = 0;
    for (int y = 0; y < font.Cell(); ++y) {
        for (int x = 0; x < font.OwnColumns(); ++x) {
            const Texel& texel = font.At(character, x, y);
            const double through = 1 - texel.a / 255.0;  // how much of the ground shows
            // What the ink leaves unexplained.
            const double left = image.AtCanvas(font.Place(place, x, y)).g - texel.g * texel.a / 255.0;
            through_squares += through * through;
            left_through += left * through;
            left_squares += left * left;
            count += 1;
        }
    }
    const double ground = through_squares > 0 ? left_through / through_squares : 0;
    return (left_squares - ground * left_through) / count;
}

char ReadCharacter(const Image& image, CanvasPoint place) {
    char best = kFirst;
    double least = std::numeric_limits<double>::max();
    for (char character = kFirst; character <= kLast; ++character) {
        const double surprise = Surprise(image, character, place);
        if (surprise >= least) continue;
        least = surprise;
        best = character;
    }
    return best;
}

}  // namespace

RawPicture Picture(const std::string& file) {
    RawPicture picture = ReadRawPicture(std::string(ULMARO_DATA) + "/" + file);
    if (picture.texels.empty()) Fail("cannot read the picture " + file);
    return picture;
}

double Misfit(const Image& image, const RawPicture& picture, const CanvasRect& place) {
    double sum = 0;
    double count = 0;
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            const Texel& texel = picture.At(x, y);
            if (texel.a < 255) continue;
            const double u = (x + 0.5) / picture.Width();
            const double v = (y + 0.5) / picture.Height();
            const Colour& shown = image.AtCanvas(
                {place.left + u * (place.right - place.left), place.bottom + v * (place.top - place.bottom)});
            sum += std::abs(shown.r - texel.r) + std::abs(shown.g - texel.g) + std::abs(shown.b - texel.b);
            count += 3;
        }
    }
    return count > 0 ? sum / count : 255;
}

double InkBrightness(const Image& image, const std::string& text, CanvasPoint place) {
    const Font& font = TheFont();
    double sum = 0;
    double count = 0;
    for (const char character : text) {
        for (int y = 0; y < font.Cell(); ++y) {
            for (int x = 0; x < font.Cell(); ++x) {
                const Texel& texel = font.At(character, x, y);
                if (texel.a < 250 || texel.r < 250) continue;
                sum += image.AtCanvas(font.Place(place, x, y)).Luminance();
                count += 1;
            }
        }
        place.x += kAdvance;
    }
    return count > 0 ? sum / count : 0;
}

std::string ReadText(const Image& image, CanvasPoint place, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += ReadCharacter(image, place);
        place.x += kAdvance;
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string ReadCentred(const Image& image, CanvasPoint place, std::size_t length) {
    place.x -= kAdvance * static_cast<double>(length) / 2;
    return ReadText(image, place, length);
}

}  // namespace desktop
