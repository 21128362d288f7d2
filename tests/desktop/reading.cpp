// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/reading.h"

#include <algorithm>
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

/// What a pixel shows of the font.
struct Sample {
    double green = 0;  ///< 0 to 255
    double alpha = 0;  ///< 0 to 1
};

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

    /// Returns what GL's linear filter makes of a character's cell, a point of it in parts of its edge from
    /// the bottom left.
    Sample Filtered(char character, double u, double v) const {
        const double x = u * Cell() - 0.5;
        const double y = v * Cell() - 0.5;
        const int left = static_cast<int>(std::floor(x));
        const int bottom = static_cast<int>(std::floor(y));
        Sample sample;
        for (const int row : {bottom, bottom + 1}) {
            for (const int column : {left, left + 1}) {
                const double weight = (1 - std::abs(x - column)) * (1 - std::abs(y - row));
                // All that is painted keeps a texel away from its cell's border.
                const Texel& texel =
                    At(character, std::clamp(column, 0, Cell() - 1), std::clamp(row, 0, Cell() - 1));
                sample.green += weight * texel.g;
                sample.alpha += weight * texel.a / 255.0;
            }
        }
        return sample;
    }

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
    // The pixels of the glyph's own columns: the next glyph covers the others.
    const double unit_x = image.Width() / kCanvas;
    const double unit_y = image.Height() / kCanvas;
    const auto first_row = static_cast<int>(std::ceil((kCanvas - place.y - kSquare) * unit_y));
    const auto last_row = static_cast<int>(std::floor((kCanvas - place.y) * unit_y)) - 1;
    const auto first_column = static_cast<int>(std::ceil(place.x * unit_x));
    const auto last_column = static_cast<int>(std::floor((place.x + kAdvance) * unit_x)) - 1;
    for (int row = std::max(first_row, 0); row <= std::min(last_row, image.Height() - 1); ++row) {
        for (int column = std::max(first_column, 0); column <= std::min(last_column, image.Width() - 1);
             ++column) {
            const CanvasPoint point = image.CanvasAt(column, row);
            const Sample glyph =
                font.Filtered(character, (point.x - place.x) / kSquare, (point.y - place.y) / kSquare);
            const double through = 1 - glyph.alpha;  // how much of the ground shows
            // What the ink leaves unexplained.
            const double left = image.At(column, row).g - glyph.green * glyph.alpha;
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
