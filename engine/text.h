// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Lines and boxes of text in the bitmap font, the texture `font` (host.h).
//
// Positions and sizes are canvas units; (x, y) is the bottom left corner of the first glyph's square, `size`
// half its edge. Glyphs are tinted by the current colour; each advances by 1.025 * size. A text that is too
// long for the printer's buffer is cut. Afterwards the matrix mode is model-view, blending is off, and depth
// is written.
//
// Deliberate: the texture and the vertex array stay enabled after a text.
#pragma once

/// Returns the number of a character's cell in the font: its value less 32; cells count row by row from the
/// top left. The result is negative below 32, and beyond ASCII because the character is taken as signed; such
/// characters are drawn as the blank.
int ConvertCharToGlASCII(char c);

/// Prints a line of at most 255 bytes; `centered` puts its middle on x. Does nothing if the format is
/// null.
void glPrintText(float x, float y, float size, bool centered, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/// Prints a text of at most 511 bytes in lines of `width` characters. Only the count breaks a line: words may
/// be split, and a newline is drawn as the blank. Does nothing if the format is null.
///
/// Deliberate: the first line holds `width` + 1 characters.
void glPrintTextBox(float x, float y, float size, int width, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/// Prints a line in GLUT's 24-point Times Roman at (x, y, -10) of the projection's space.
void glPrint(float x, float y, const char* text);
