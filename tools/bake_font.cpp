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
// usage: bake_font FONT_FILE CELL_PIXELS OUTPUT

#include <cairo-ft.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>

#include "tools/raw_picture.h"

namespace {

constexpr int kColumns = 16;
constexpr char kFirst = ' ';
constexpr char kLast = '~';

constexpr double kAdvance = 1.025 / 2;  ///< of a cell's edge
constexpr double kInk = 0.43;           ///< the widest glyph without its dark edge, of a cell's edge

/// The dark edge is painted as rings of this many steps, each this opaque, out to this distance.
constexpr int kEdgeSteps = 5;
constexpr double kEdgeOpacity = 0.33;
constexpr double kEdgeReach = 0.095;  ///< of a cell's edge

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "bake_font: " << message << '\n';
    std::exit(1);
}

/// Opens a font file as a cairo font; FreeType's objects live as long as the process.
cairo_font_face_t* OpenFont(const char* path) {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    if (FT_Init_FreeType(&library) != 0) Fail("FreeType does not start");
    if (FT_New_Face(library, path, 0, &face) != 0) Fail(std::string("cannot read ") + path);
    return cairo_ft_font_face_create_for_ft_face(face, FT_LOAD_NO_HINTING);
}

/// Sets the largest font size at which no glyph's ink is wider than it may be.
void ChooseSize(cairo_t* cr, double cell) {
    cairo_set_font_size(cr, cell);
    double widest = 0;
    for (char c = kFirst; c <= kLast; ++c) {
        cairo_text_extents_t ink;
        cairo_text_extents(cr, std::string(1, c).c_str(), &ink);
        widest = std::max(widest, ink.width);
    }
    cairo_set_font_size(cr, cell * kInk * cell / widest);
}

/// Draws a glyph into its cell, and nothing outside it.
void DrawGlyph(cairo_t* cr, char c, double cell) {
    const std::string text(1, c);
    const int index = c - kFirst;
    cairo_text_extents_t glyph;
    cairo_text_extents_t capital;
    cairo_text_extents(cr, text.c_str(), &glyph);
    cairo_text_extents(cr, "H", &capital);

    cairo_save(cr);
    const int column = index % kColumns;
    const int row = index / kColumns;
    cairo_translate(cr, cell * column, cell * row);
    // A clear texel all round keeps linear filtering from showing a neighbour's edge.
    cairo_rectangle(cr, 1, 1, cell - 2, cell - 2);
    cairo_clip(cr);
    cairo_move_to(cr, kAdvance * cell / 2 - glyph.x_advance / 2,
                  (cell - capital.height) / 2 - capital.y_bearing);
    cairo_text_path(cr, text.c_str());
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    for (int step = kEdgeSteps; step > 0; --step) {
        cairo_set_source_rgba(cr, 0.04, 0.07, 0.10, kEdgeOpacity);
        cairo_set_line_width(cr, 2 * kEdgeReach * cell * step / kEdgeSteps);
        cairo_stroke_preserve(cr);
    }
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_fill(cr);
    cairo_restore(cr);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) Fail("usage: bake_font FONT_FILE CELL_PIXELS OUTPUT");
    const int cell = std::atoi(argv[2]);
    if (cell < 8 || cell > 256) Fail("a cell has 8 to 256 pixels");

    const int edge = cell * kColumns;
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, edge, edge);
    cairo_t* cr = cairo_create(surface);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cr, options);
    cairo_set_font_face(cr, OpenFont(argv[1]));
    ChooseSize(cr, cell);
    for (char c = kFirst; c <= kLast; ++c) DrawGlyph(cr, c, cell);
    cairo_destroy(cr);

    RawPicture picture = FromCairo(surface);
    BleedColour(picture);
    if (!Write(picture, argv[3])) Fail(std::string("cannot write ") + argv[3]);
    return 0;
}
