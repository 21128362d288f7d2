// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/unit/text_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <ostream>

#include "engine/host.h"
#include "tests/fakes/log.h"

namespace {

constexpr double kAdvance = 1.025;  ///< from one glyph to the next, in units of the size

/// A glyph's square and what is in it.
struct Glyph {
    char character = ' ';
    double x = 0, y = 0, size = 0;  ///< bottom left corner; half the edge
    fakes::Rgba color{};
    std::size_t log_index = 0;
};

/// Returns the glyph that a primitive shows; a primitive that is no glyph fails the test.
std::optional<Glyph> ReadGlyph(const fakes::Primitive& primitive) {
    const fakes::Rect place = fakes::Bounds(primitive);
    const fakes::Rect cell = fakes::TexBounds(primitive);
    const double column = cell.left * 16;
    const double row = (1 - cell.top) * 16;
    const double index = row * 16 + column;
    const bool square = std::abs(place.Width() - place.Height()) < 0.01;
    const bool whole_cell =
        cell == fakes::Rect{column / 16, 1 - (row + 1) / 16, (column + 1) / 16, 1 - row / 16};
    if (primitive.vertices.size() != 6 || !square || !whole_cell || index != std::floor(index) || index < 0 ||
        index > 95) {
        ADD_FAILURE() << "drawn with the font, but no glyph: " << primitive;
        return {};
    }
    return Glyph{static_cast<char>(' ' + static_cast<int>(index)),
                 place.left,
                 place.bottom,
                 place.Width() / 2,
                 primitive.color,
                 primitive.log_index};
}

bool Near(double a, double b) {
    return std::abs(a - b) < 0.02;  // the pen adds up its rounding over hundreds of glyphs
}

/// Says whether one printing drew both glyphs: every printing binds the font anew.
bool InOnePrinting(const Glyph& first, const Glyph& second) {
    const std::size_t end = std::min(second.log_index, fakes::Log().size());
    for (std::size_t i = first.log_index; i < end; ++i) {
        if (fakes::Log()[i].name == "glBindTexture") return false;
    }
    return true;
}

/// Says whether a glyph stands where the line's next one must.
bool Continues(const PrintedLine& line, const Glyph& glyph) {
    const double next_x = line.x + kAdvance * line.size * static_cast<double>(line.text.size());
    return Near(glyph.size, line.size) && Near(glyph.y, line.y) && Near(glyph.x, next_x);
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const PrintedLine& line) {
    return out << '"' << line.text << "\" at " << line.x << ", " << line.y << " in size " << line.size;
}

std::vector<PrintedLine> PrintedText(unsigned int texture) {
    std::vector<PrintedLine> lines;
    std::optional<Glyph> last;
    for (const fakes::Primitive& primitive : fakes::gl().DrawnWith(texture)) {
        const std::optional<Glyph> glyph = ReadGlyph(primitive);
        if (!glyph) continue;
        const bool same_text = last && InOnePrinting(*last, *glyph);
        if (!same_text || !Continues(lines.back(), *glyph)) {
            lines.push_back({"", glyph->x, glyph->y, 0, glyph->size, glyph->color, same_text});
        }
        PrintedLine& line = lines.back();
        line.text += glyph->character;
        line.centre_x = line.x + kAdvance * line.size * static_cast<double>(line.text.size()) / 2;
        last = glyph;
    }
    return lines;
}

std::vector<PrintedLine> PrintedText() {
    return PrintedText(font);
}

std::vector<std::string> Words(const std::vector<PrintedLine>& lines) {
    std::vector<std::string> words;
    for (const PrintedLine& line : lines) words.push_back(line.text);
    return words;
}
