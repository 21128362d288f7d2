// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/text.h"

#include <GL/freeglut.h>

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "engine/canvas.h"
#include "engine/host.h"

namespace {

constexpr int kColumns = 16;              ///< cells in a row of the font
constexpr float kCell = 1.0F / kColumns;  ///< edge of a cell, texture coordinates
constexpr float kAdvance = 1.025F;        ///< from one glyph to the next, in units of the size
constexpr std::size_t kLineBytes = 256;   ///< longest text of glPrintText, with its NUL
constexpr std::size_t kBoxBytes = 512;    ///< longest text of glPrintTextBox, with its NUL

void EnterTextCanvas() {
    glBindTexture(GL_TEXTURE_2D, font);
    EnterCanvas();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

/// Deliberate: GL_TEXTURE_2D stays enabled.
void LeaveTextCanvas() {
    glDisable(GL_BLEND);
    glDepthMask(GL_TRUE);
    LeaveCanvas();
}

/// Draws one character on a square of edge 2 * size about (x, y).
/// Deliberate: the vertex array stays enabled.
void DrawGlyph(char c, float x, float y, float size) {
    const int cell = ConvertCharToGlASCII(c);
    const int column = cell < 0 ? 0 : cell % kColumns;
    const int row = cell < 0 ? 0 : cell / kColumns;
    const float left = kCell * static_cast<float>(column);
    const float right = left + kCell;
    const float bottom = 1 - kCell * static_cast<float>(row + 1);
    const float top = bottom + kCell;
    const float s = size;
    const float vertices[] = {-s, s, 0, -s, -s, 0, s, s, 0, s, s, 0, s, -s, 0, -s, -s, 0};
    const float texture[] = {left, top, left, bottom, right, top, right, top, right, bottom, left, bottom};

    glPushMatrix();
    glTranslatef(x, y, 0);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, vertices);
    glTexCoordPointer(2, GL_FLOAT, 0, texture);
    glDrawArrays(GL_TRIANGLES, 0, 6);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glPopMatrix();
}

/// Writes a text as printf does, cut off where the buffer ends; empty where it cannot be written.
void Format(char* text, std::size_t bytes, const char* format, va_list arguments) {
    if (std::vsnprintf(text, bytes, format, arguments) < 0) text[0] = '\0';
}

}  // namespace

int ConvertCharToGlASCII(char c) {
    return static_cast<signed char>(c) - 32;
}

void glPrintText(float x, float y, float size, bool centered, const char* format, ...) {
    if (format == nullptr) return;
    char text[kLineBytes];
    va_list arguments;
    va_start(arguments, format);
    Format(text, sizeof text, format, arguments);
    va_end(arguments);

    EnterTextCanvas();
    glTranslatef(size, size, 0);
    if (centered) x -= size * kAdvance * static_cast<float>(std::strlen(text)) * 0.5F;
    for (const char* c = text; *c != '\0'; ++c) {
        DrawGlyph(*c, x, y, size);
        x += size * kAdvance;
    }
    LeaveTextCanvas();
}

void glPrintTextBox(float x, float y, float size, int width, const char* format, ...) {
    if (format == nullptr) return;
    char text[kBoxBytes];
    va_list arguments;
    va_start(arguments, format);
    Format(text, sizeof text, format, arguments);
    va_end(arguments);

    EnterTextCanvas();
    glTranslatef(size, size, 0);
    const float start_x = x;
    int count = 0;
    for (const char* c = text; *c != '\0'; ++c) {
        DrawGlyph(*c, x, y, size);
        x += size * kAdvance;
        // Deliberate: testing before counting gives the first line one character more than the others.
        if (count >= width) {
            x = start_x;
            y -= size * kAdvance * 2;
            count = 0;
        }
        ++count;
    }
    LeaveTextCanvas();
}

void glPrint(float x, float y, const char* text) {
    glDisable(GL_DEPTH_TEST);
    glPushMatrix();
    glLoadIdentity();
    glRasterPos3f(x, y, -10);
    for (const char* c = text; *c != '\0'; ++c) {
        glutBitmapCharacter(GLUT_BITMAP_TIMES_ROMAN_24, static_cast<unsigned char>(*c));
    }
    glPopMatrix();
    glEnable(GL_DEPTH_TEST);
}
