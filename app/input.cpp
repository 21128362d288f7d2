// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/input.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "app/desktop.h"
#include "app/stroke_queue.h"
#include "app/window.h"
#include "engine/window_metrics.h"

float touch_coord_x = 0;
float touch_coord_y = 0;
bool single_touch = false;
bool touch_event = false;
std::uint64_t press_time = 0;
bool key_state[256] = {};
bool listening_to_leaving = false;

namespace {

bool invio_pressed = false;

/// The keys that keyboard_down() has set and nothing else; written by it, keyboard_up() and
/// reset_keys_state().
bool special_keys[std::size(key_state)] = {};

constexpr unsigned char kEnter = 13;

bool IsKey(int key) {
    return 0 <= key && key < static_cast<int>(std::size(key_state));
}

}  // namespace

void mouse(int x, int y) {
    NoteActivity();
    touch_coord_x = static_cast<float>(x);
    touch_coord_y = static_cast<float>(y);
}

void mouse_event(int button, int state, int /*x*/, int /*y*/) {
    NoteActivity();
    if (button != GLUT_LEFT_BUTTON) return;
    single_touch = touch_event = state == GLUT_DOWN;
    if (!single_touch) return;
    press_time = MonotonicNanoseconds();
    MarkPress();
}

void ListenToLeaving() {
    if (listening_to_leaving) return;
    listening_to_leaving = true;
    glutEntryFunc(LeaveWindow);
}

void LeaveWindow(int state) {
    if (state != GLUT_LEFT) return;
    ForgetWindowPlace();
    const ScreenPoint pointer = GlobalPointer();
    mouse(pointer.x - WindowX(), pointer.y - WindowY());
}

void keyboard_down(int key, int /*x*/, int /*y*/) {
    NoteActivity();
    if (!IsKey(key)) return;
    if (!key_state[key]) special_keys[key] = true;
    key_state[key] = true;
}

void keyboard_up(int key, int /*x*/, int /*y*/) {
    if (!IsKey(key)) return;
    special_keys[key] = false;
    key_state[key] = false;
}

void keyboard(unsigned char key, int /*x*/, int /*y*/) {
    if (key == kEnter) invio_pressed = true;
}

void reset_keys_state() {
    std::fill(std::begin(key_state), std::end(key_state), false);
    std::fill(std::begin(special_keys), std::end(special_keys), false);
}

void ForgetSpecialKeys() {
    for (std::size_t key = 0; key < std::size(key_state); ++key) {
        if (special_keys[key]) key_state[key] = false;
    }
    std::fill(std::begin(special_keys), std::end(special_keys), false);
}

void ResetFrameInput() {
    single_touch = false;
    invio_pressed = false;
    reset_keys_state();
}

void reshape(int w, int h) {
    WatchFrames();
    ForgetWindowMetrics();
    glViewport(0, 0, w, h);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(45.0, static_cast<float>(w) / static_cast<float>(std::max(h, 1)), 1.0, 99.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

vector3f GetOGLPos(int x, int y) {
    GLdouble model_view[16];
    GLdouble projection[16];
    GLint viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, model_view);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);

    const auto win_x = static_cast<float>(x);
    const float win_y = static_cast<float>(viewport[3]) - static_cast<float>(y);
    float depth = 0.5F;  // stays so where there is no depth buffer to read
    glReadPixels(x, static_cast<int>(win_y), 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);

    GLdouble px = 0;
    GLdouble py = 0;
    GLdouble pz = 0;
    gluUnProject(win_x, win_y, depth, model_view, projection, viewport, &px, &py, &pz);
    return {static_cast<float>(px), static_cast<float>(py), static_cast<float>(pz)};
}
