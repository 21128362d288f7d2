// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Bakes the program's font texture from a font file: white glyphs with a soft dark edge, so that tinted text
// reads on any background.
//
// The texture is a grid of 16 x 16 square cells, the blank at the top left, then printable ASCII row by row.
// The program draws a cell as a square and advances by 1.025 of half its edge; so a glyph stands in the left
// half of its cell, its middle half an advance from the cell's left edge, the middle of the capitals at the
// cell's middle. The file is written as the program reads its pictures: width, height, then straight RGBA
// rows from the bottom up.
//
// usage: bake_font FONT_FILE CELL_PIXELS OUTPUT [NAME=VALUE ...]      the names: see kSettings below
//
// docs/font.md has the measurements that the values in the manifest were chosen by.

#include <cairo-ft.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string>

#include "tools/raw_picture.h"

namespace {

constexpr int kColumns = 16;
constexpr char kFirst = ' ';
constexpr char kLast = '~';

constexpr double kAdvance = 1.025 / 2;  ///< of a cell's edge
constexpr double kClear = 1;            ///< texels at a cell's border that nothing is painted on
constexpr double kLeastEdge = 1;        ///< texels of the dark edge that remain under the lowest tails

/// The dark edge is painted as rings of this many steps.
constexpr int kEdgeSteps = 5;

/// How the glyphs are shaped. Lengths are parts of a cell's edge.
struct Shape {
    double capital = 0.52;  ///< height of the capitals
    double width = 1;       ///< stretches all glyphs from left to right
    double ink = 0.43;      ///< a glyph that is wider is squeezed; the dark edge comes on top
    double weight = 0;      ///< width of a white line along the outline, half of it outside
    double reach = 0.095;   ///< of the dark edge
    double shade = 0.33;    ///< opacity of each of the edge's rings
    double hint = 0;        ///< 1: the font's own hinting for the cell's pixels
};

/// The names on the command line.
struct Setting {
    const char* name;
    double Shape::*field;
};

constexpr Setting kSettings[] = {
    {"capital", &Shape::capital}, {"width", &Shape::width}, {"ink", &Shape::ink},
    {"weight", &Shape::weight},   {"reach", &Shape::reach}, {"shade", &Shape::shade},
    {"hint", &Shape::hint},
};

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "bake_font: " << message << '\n';
    std::exit(1);
}

/// Takes a NAME=VALUE from the command line.
void Read(const std::string& word, Shape& shape) {
    const std::size_t equals = word.find('=');
    const auto* setting = std::find_if(std::begin(kSettings), std::end(kSettings), [&](const Setting& row) {
        return word.substr(0, equals) == row.name;
    });
    if (equals == std::string::npos || setting == std::end(kSettings)) Fail("unknown setting " + word);
    char* end = nullptr;
    const double value = std::strtod(word.c_str() + equals + 1, &end);
    if (*end != '\0' || end == word.c_str() + equals + 1) Fail("no number in " + word);
    if (!(value >= 0 && value <= 2)) Fail("out of range: " + word);
    shape.*setting->field = value;
}

/// Opens a font file as a cairo font; FreeType's objects live as long as the process.
cairo_font_face_t* OpenFont(const char* path, bool hinted) {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    if (FT_Init_FreeType(&library) != 0) Fail("FreeType does not start");
    if (FT_New_Face(library, path, 0, &face) != 0) Fail(std::string("cannot read ") + path);
    return cairo_ft_font_face_create_for_ft_face(face, hinted ? FT_LOAD_DEFAULT : FT_LOAD_NO_HINTING);
}

cairo_text_extents_t Measure(cairo_t* cr, char c) {
    cairo_text_extents_t extents;
    cairo_text_extents(cr, std::string(1, c).c_str(), &extents);
    return extents;
}

/// Sets the font size at which the capitals have their height.
void ChooseSize(cairo_t* cr, double cell, const Shape& shape) {
    constexpr double kTrial = 1000;
    cairo_set_font_size(cr, kTrial);
    cairo_set_font_size(cr, kTrial * shape.capital * cell / Measure(cr, 'H').height);
}

/// Where a glyph goes: its origin in its cell and how it is stretched from left to right, texels.
struct Place {
    double x = 0, y = 0;
    double stretch = 1;
};

/// Returns the place of a glyph. Its advance has its middle half an advance from the cell's left, unless its
/// ink, which stays clear of the cell's border, asks for a shift.
Place PlaceOf(cairo_t* cr, char c, double cell, const Shape& shape) {
    const cairo_text_extents_t glyph = Measure(cr, c);
    const cairo_text_extents_t capital = Measure(cr, 'H');
    const double line = shape.weight * cell;
    Place place;
    place.stretch = shape.width;
    if (glyph.width > 0) place.stretch = std::min(shape.width, (shape.ink * cell - line) / glyph.width);
    place.x = kAdvance * cell / 2 - place.stretch * glyph.x_advance / 2;
    place.y = (cell - capital.height) / 2 - capital.y_bearing;

    const double left = place.x + place.stretch * glyph.x_bearing - line / 2;
    const double right = left + place.stretch * glyph.width + line;
    if (right > cell / 2) place.x -= right - cell / 2;
    if (left < kClear) place.x += kClear - left;
    return place;
}

/// Shortens what of the current path lies below the baseline, so that with a line of that width it ends above
/// `lowest`: tall letters leave little room for the tails of g and p. Texels, y down.
void ShortenTail(cairo_t* cr, double baseline, double line, double lowest) {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_path_extents(cr, &left, &top, &right, &bottom);
    const double room = lowest - line / 2 - baseline;
    if (bottom - baseline <= room) return;
    const double shortening = room / (bottom - baseline);
    cairo_path_t* path = cairo_copy_path(cr);
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
        for (int point = i + 1; point < i + path->data[i].header.length; ++point) {
            double& y = path->data[point].point.y;
            if (y > baseline) y = baseline + (y - baseline) * shortening;
        }
    }
    cairo_new_path(cr);
    cairo_append_path(cr, path);
    cairo_path_destroy(path);
}

/// Draws a glyph into its cell, and nothing outside it.
void DrawGlyph(cairo_t* cr, char c, double cell, const Shape& shape) {
    const int index = c - kFirst;
    const int column = index % kColumns;
    const int row = index / kColumns;
    const Place place = PlaceOf(cr, c, cell, shape);

    cairo_save(cr);
    cairo_translate(cr, cell * column, cell * row);
    // A clear texel all round keeps linear filtering from showing a neighbour's edge.
    cairo_rectangle(cr, kClear, kClear, cell - 2 * kClear, cell - 2 * kClear);
    cairo_clip(cr);
    cairo_save(cr);
    cairo_translate(cr, place.x, place.y);
    cairo_scale(cr, place.stretch, 1);
    cairo_move_to(cr, 0, 0);
    cairo_text_path(cr, std::string(1, c).c_str());
    cairo_restore(cr);  // lines are as thick all round, whatever the stretch
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    const double line = shape.weight * cell;
    ShortenTail(cr, place.y, line, cell - kClear - kLeastEdge);
    for (int step = kEdgeSteps; step > 0 && shape.reach > 0; --step) {
        cairo_set_source_rgba(cr, 0.04, 0.07, 0.10, shape.shade);
        cairo_set_line_width(cr, line + 2 * shape.reach * cell * step / kEdgeSteps);
        cairo_stroke_preserve(cr);
    }
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_fill_preserve(cr);
    cairo_set_line_width(cr, line);
    if (line > 0) cairo_stroke_preserve(cr);
    cairo_new_path(cr);
    cairo_restore(cr);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) Fail("usage: bake_font FONT_FILE CELL_PIXELS OUTPUT [NAME=VALUE ...]");
    const int cell = std::atoi(argv[2]);
    if (cell < 8 || cell > 256) Fail("a cell has 8 to 256 pixels");
    Shape shape;
    for (int i = 4; i < argc; ++i) Read(argv[i], shape);

    const int edge = cell * kColumns;
    const bool hinted = shape.hint > 0;
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, edge, edge);
    cairo_t* cr = cairo_create(surface);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, hinted ? CAIRO_HINT_STYLE_FULL : CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cr, options);
    cairo_set_font_face(cr, OpenFont(argv[1], hinted));
    ChooseSize(cr, cell, shape);
    for (char c = kFirst; c <= kLast; ++c) DrawGlyph(cr, c, cell, shape);
    cairo_destroy(cr);

    RawPicture picture = FromCairo(surface);
    BleedColour(picture);
    if (!Write(picture, argv[3])) Fail(std::string("cannot write ") + argv[3]);
    return 0;
}
