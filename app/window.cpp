// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/window.h"

#include <GL/freeglut.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "app/desktop.h"

namespace {

/// How often a hidden window gets a frame: ten times a second. Far below the 0.25 seconds above which a frame
/// advances no timer, and cheap enough to go unnoticed.
constexpr unsigned int kHiddenFrameMilliseconds = 100;

struct WindowState {
    void (*frame)() = nullptr;    ///< the display callback; set by KeepFramesComing
    unsigned int presented = 0;   ///< frames so far; written by PresentFrame
    unsigned int seen = 0;        ///< frames so far at the last look; written by LookAfterFrames
    bool drawing_hidden = false;  ///< the frame being drawn is the timer's; written by LookAfterFrames
    int swap_interval = -1;       ///< what the driver was last told; -1 before the first frame
};

WindowState window;

/// Draws a frame that nobody sees: all its steps happen, but it touches no pixel, which is most of a frame's
/// cost.
void DrawHiddenFrame() {
    window.drawing_hidden = true;
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 0, 0);
    window.frame();
    glDisable(GL_SCISSOR_TEST);
    window.drawing_hidden = false;
}

/// Draws a frame if none has come since the last look.
void LookAfterFrames(int /*unused*/) {
    glutTimerFunc(kHiddenFrameMilliseconds, LookAfterFrames, 0);
    if (window.presented == window.seen) DrawHiddenFrame();
    window.seen = window.presented;
}

/// Tells the driver only when the answer changes.
void ChooseSwapInterval(int refreshes) {
    if (window.swap_interval == refreshes) return;
    window.swap_interval = refreshes;
    SetSwapInterval(refreshes);
}

/// GLUT's error callback: its own words are English.
void EndWithoutWindow(const char* format, std::va_list arguments) {
    char reason[256];
    if (std::vsnprintf(reason, sizeof reason, format, arguments) < 0) reason[0] = '\0';
    std::fprintf(stderr,
                 "Ulmaro Assistant: non posso aprire la finestra, serve uno schermo X11 con OpenGL (%s).\n",
                 reason);
    std::quick_exit(EXIT_FAILURE);
}

}  // namespace

void ExplainMissingWindow() {
    glutInitErrorFunc(EndWithoutWindow);
}

void KeepFramesComing(void (*frame)()) {
    window.frame = frame;
    glutTimerFunc(kHiddenFrameMilliseconds, LookAfterFrames, 0);
}

void PresentFrame() {
    ChooseSwapInterval(window.drawing_hidden ? 0 : 1);
    glFlush();
    glFinish();
    glutSwapBuffers();
    ++window.presented;
}
