// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/character.h"

#include <GL/gl.h>

#include "app/menu.h"
#include "app/notifications.h"
#include "app/owl.h"
#include "app/particles.h"
#include "app/textures.h"
#include "engine/MotionBlur.h"

namespace {

void DrawBackground() {
    glBindTexture(GL_TEXTURE_2D, background);
    RenderOnViewport();
}

void BeginSprites() {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
}

void EndSprites() {
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

void DrawTree() {
    glBindTexture(GL_TEXTURE_2D, tree);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(0, 0);
    glTexCoord2f(1, 0);
    glVertex2f(512, 0);
    glTexCoord2f(1, 1);
    glVertex2f(512, 512);
    glTexCoord2f(0, 1);
    glVertex2f(0, 512);
    glEnd();
}

}  // namespace

void Render() {
    DrawBackground();
    BeginSprites();
    DrawTree();

    EnterOwlFrame();
    const OwlFrame frame = AdvanceOwl();
    DrawOwl(frame);
    ActionMenu();
    Notifications();
    DrawSleep();
    DrawSmoke();
    SoundOffer();
    EndOffer();
    LeaveOwlFrame();

    EndSprites();
}
