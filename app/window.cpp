// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/window.h"

#include <GL/freeglut.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/desktop.h"

WindowState window;

namespace {

/// How long after a frame a hidden window gets the next: ten a second. Far below the 0.25 seconds above which
/// a frame advances no timer, and cheap enough to go unnoticed.
constexpr std::uint64_t kHiddenFrameNanoseconds = 100'000'000;

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

/// GLUT's idle callback: waits for the next hidden frame's time and draws it, but only where GLUT itself
/// draws none. An event ends the wait, because GLUT must handle it: it may be the one that shows the window.
void DrawFrameIfHidden() {
    const std::uint64_t now = MonotonicNanoseconds();
    const std::uint64_t passed = now - window.last_frame;
    if (window.presented) {
        window.presented = false;
        window.last_frame = now;
    } else if (passed < kHiddenFrameNanoseconds) {
        AwaitWindowEvent(kHiddenFrameNanoseconds - passed);
    } else {
        DrawHiddenFrame();
    }
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
    std::exit(EXIT_FAILURE);
}

}  // namespace

void ExplainMissingWindow() {
    glutInitErrorFunc(EndWithoutWindow);
}

void SetFrame(void (*frame)()) {
    window.frame = frame;
}

void WatchFrames() {
    if (window.watching) return;
    window.watching = true;
    glutIdleFunc(DrawFrameIfHidden);
}

void PresentFrame() {
    ChooseSwapInterval(window.drawing_hidden ? 0 : 1);
    glFlush();
    glFinish();
    glutSwapBuffers();
    window.presented = true;
}

void ShowUnsaved(bool unsaved) {
    if (window.unsaved == unsaved) return;
    window.unsaved = unsaved;
    glutSetWindowTitle((unsaved ? "*" + std::string(kWindowTitle) : kWindowTitle).c_str());
}
