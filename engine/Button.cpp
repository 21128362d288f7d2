// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/Button.h"

#include <GL/gl.h>

#include <cstdlib>

#include "engine/canvas.h"
#include "engine/host.h"
#include "engine/window_metrics.h"

namespace {

/// Returns the pointer's column on the canvas, truncated to whole units.
float PointerX() {
    return static_cast<float>(
        static_cast<int>(kCanvasEdge * touch_coord_x / static_cast<float>(WindowWidth())));
}

/// Returns the pointer's row on the canvas, truncated to whole units.
float PointerY() {
    return static_cast<float>(
        static_cast<int>(kCanvasEdge - kCanvasEdge * touch_coord_y / static_cast<float>(WindowHeight())));
}

/// Draws the whole bound texture on the square from -1 to 1.
/// Deliberate: the vertex array stays enabled.
void DrawUnitSquare() {
    static const float plane_vertex_buffer[] = {-1, 1, 0, -1, -1, 0, 1, 1, 0, 1, 1, 0, 1, -1, 0, -1, -1, 0};
    static const float plane_txtcoord_buffer[] = {0, 1, 0, 0, 1, 1, 1, 1, 1, 0, 0, 0};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, plane_vertex_buffer);
    glTexCoordPointer(2, GL_FLOAT, 0, plane_txtcoord_buffer);
    glDrawArrays(GL_TRIANGLES, 0, 6);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

}  // namespace

Button::Button(unsigned int picture, float x, float y, float w, float h)
    : texture(picture), width(w), height(h), phase(static_cast<float>(std::rand() % 180)) {
    Repos(x, y);
    Reshape(w, h);
}

void Button::Repos(float x, float y) {
    position.set(x, y, 0);
}

void Button::Reshape(float w, float h) {
    width = w;
    height = h;
}

void Button::Display(bool highlight) const {
    EnterCanvas();
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    if (highlight) glColor4f(1, 1, isSelected() ? 0.5F : 1, 1);
    glTranslatef(position.x, position.y + offset_y, 0);
    glScalef(width, height, 1);
    DrawUnitSquare();
    if (highlight) glColor4f(1, 1, 1, 1);
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
    LeaveCanvas();
}

bool Button::isSelected() const {
    const float px = PointerX();
    const float py = PointerY();
    return position.x - width < px && px < position.x + width &&  //
           position.y - height + offset_y < py && py < position.y + height + offset_y;
}

bool Button::isClicked() const {
    return single_touch && isSelected();
}
