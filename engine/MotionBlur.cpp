// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/MotionBlur.h"

#include <GL/gl.h>

#include <list>

#include "engine/canvas.h"

namespace {

/// Edge of a captured frame, pixels.
constexpr int kFrameEdge = 512;

/// Copies the lower left of the frame buffer into a new texture and returns its name. The texture is bound.
GLuint CaptureFrame() {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, kFrameEdge, kFrameEdge, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, kFrameEdge, kFrameEdge);
    return texture;
}

/// Deletes the oldest textures until no more than `frames` are left.
void Trim(std::list<GLuint>& textures, unsigned int frames) {
    while (textures.size() > frames) {
        const GLuint oldest = textures.front();
        if (glIsTexture(oldest) != GL_FALSE) glDeleteTextures(1, &oldest);
        textures.pop_front();
    }
}

}  // namespace

void RenderOnViewport() {
    constexpr float kHalf = kCanvasEdge / 2;
    EnterCanvas();
    glEnable(GL_TEXTURE_2D);
    glTranslatef(kHalf, kHalf, 0.0F);

    glBegin(GL_QUADS);
    glNormal3f(0.0F, 0.0F, 1.0F);
    glTexCoord2f(0.0F, 0.0F);
    glVertex3f(-kHalf, -kHalf, 0.0F);
    glTexCoord2f(1.0F, 0.0F);
    glVertex3f(kHalf, -kHalf, 0.0F);
    glTexCoord2f(1.0F, 1.0F);
    glVertex3f(kHalf, kHalf, 0.0F);
    glTexCoord2f(0.0F, 1.0F);
    glVertex3f(-kHalf, kHalf, 0.0F);
    glEnd();
    LeaveCanvas();
}

void ReshapeViewport(int /*w*/, int /*h*/) {}

void PerformMotionBlur(unsigned int frames, int width, int height) {
    static std::list<GLuint> frame_blur_stack;  // oldest frame first
    frame_blur_stack.push_back(CaptureFrame());
    Trim(frame_blur_stack, frames);

    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glViewport(0, 0, width, height);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);
    glColor4f(1.0F, 1.0F, 1.0F, 0.1F);

    for (const GLuint texture : frame_blur_stack) {
        glBindTexture(GL_TEXTURE_2D, texture);
        RenderOnViewport();
    }

    glColor4f(1.0F, 1.0F, 1.0F, 1.0F);
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    glDisable(GL_BLEND);
}
