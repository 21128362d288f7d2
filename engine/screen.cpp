// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/screen.h"

#include <GL/gl.h>

#include <cstdlib>

namespace {

/// A corner of a textured square.
struct Corner {
    float u, v;
    float x, y, z;
};

/// A side of the sky box: which texture it shows, its inward normal, its corners in drawing order.
struct SkySide {
    int texture;
    float normal[3];
    Corner corners[4];
};

constexpr SkySide kSkySides[] = {
    {2, {0, 0, -1}, {{0, 0, -1, -1, 1}, {1, 0, 1, -1, 1}, {1, 1, 1, 1, 1}, {0, 1, -1, 1, 1}}},
    {3, {0, 0, 1}, {{1, 0, -1, -1, -1}, {1, 1, -1, 1, -1}, {0, 1, 1, 1, -1}, {0, 0, 1, -1, -1}}},
    {4, {0, -1, 0}, {{0, 1, -1, 1, -1}, {0, 0, -1, 1, 1}, {1, 0, 1, 1, 1}, {1, 1, 1, 1, -1}}},
    {5, {0, 1, 0}, {{1, 1, -1, -1, -1}, {0, 1, 1, -1, -1}, {0, 0, 1, -1, 1}, {1, 0, -1, -1, 1}}},
    {1, {-1, 0, 0}, {{1, 0, 1, -1, -1}, {1, 1, 1, 1, -1}, {0, 1, 1, 1, 1}, {0, 0, 1, -1, 1}}},
    {0, {1, 0, 0}, {{0, 0, -1, -1, -1}, {1, 0, -1, -1, 1}, {1, 1, -1, 1, 1}, {0, 1, -1, 1, -1}}},
};

/// Hands corners to GL, between glBegin and glEnd.
void Corners(const Corner (&corners)[4]) {
    for (const Corner& corner : corners) {
        glTexCoord2f(corner.u, corner.v);
        glVertex3f(corner.x, corner.y, corner.z);
    }
}

}  // namespace

void DrawRect(float w, float h, float top_extra) {
    const float right = w / 2.0F;
    const float bottom = -h / 2.0F;
    const float top = h / 2.0F + top_extra;
    glBegin(GL_QUADS);
    Corners(
        {{0, 0, -right, bottom, 0}, {1, 0, right, bottom, 0}, {1, 1, right, top, 0}, {0, 1, -right, top, 0}});
    glEnd();
}

void glBillboarding() {
    static GLfloat modelview_matrix[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, modelview_matrix);
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) modelview_matrix[column * 4 + row] = column == row ? 1.0F : 0.0F;
    }
    glLoadMatrixf(modelview_matrix);
    glRotatef(180.0F, 0.0F, 1.0F, 0.0F);
}

void RenderPlane(float size, float repeat) {
    glBegin(GL_QUADS);
    glNormal3f(0.0F, 1.0F, 0.0F);
    Corners({{repeat, 0, -size, 0, -size},
             {0, 0, size, 0, -size},
             {0, repeat, size, 0, size},
             {repeat, repeat, -size, 0, size}});
    glEnd();
}

void RenderParticle(float size, bool random_roll) {
    glPushMatrix();
    glBillboarding();
    if (random_roll) glRotatef(static_cast<GLfloat>(std::rand() % 360), 0.0F, 0.0F, 1.0F);
    glBegin(GL_QUADS);
    glNormal3f(0.0F, 0.0F, 1.0F);
    Corners({{1, 0, -size, -size, 0}, {0, 0, size, -size, 0}, {0, 1, size, size, 0}, {1, 1, -size, size, 0}});
    glEnd();
    glPopMatrix();
}

void RenderSkyBoxMask(unsigned int t0, unsigned int t1, unsigned int t2, unsigned int t3, unsigned int t4,
                      unsigned int t5) {
    const unsigned int textures[] = {t0, t1, t2, t3, t4, t5};
    for (const SkySide& side : kSkySides) {
        glBindTexture(GL_TEXTURE_2D, textures[side.texture]);
        glBegin(GL_QUADS);
        glNormal3f(side.normal[0], side.normal[1], side.normal[2]);
        Corners(side.corners);
        glEnd();
    }
}
