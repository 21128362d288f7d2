// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/glut.h"

#include <algorithm>
#include <utility>

#include "tests/fakes/gl.h"
#include "tests/fakes/log.h"

namespace fakes {
namespace {

// What glutGet answers where a test has set nothing.
const std::map<GLenum, int>& DefaultAnswers() {
    static const std::map<GLenum, int> answers = {
        {GLUT_WINDOW_X, 100},      {GLUT_WINDOW_Y, 100},          {GLUT_WINDOW_WIDTH, 300},
        {GLUT_WINDOW_HEIGHT, 300}, {GLUT_SCREEN_WIDTH, 1920},     {GLUT_SCREEN_HEIGHT, 1080},
        {GLUT_INIT_STATE, 1},      {GLUT_WINDOW_DOUBLEBUFFER, 1}, {GLUT_WINDOW_DEPTH_SIZE, 0},
    };
    return answers;
}

// Keeps a callback in its place and logs whether there is one: 1, or 0 for null.
template <typename Callback>
void Register(const char* call, Callback& place, Callback callback) {
    Record(call, {callback != nullptr ? 1 : 0});
    place = callback;
}

}  // namespace

Glut& glut() {
    static Glut model;
    return model;
}

void ResetGlut() {
    glut() = Glut();
}

void Glut::FireTimers() {
    const std::vector<Timer> due = std::exchange(timers, {});
    for (const Timer& timer : due) timer.callback(timer.value);
}

}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

void* glutStrokeRoman = nullptr;
void* glutStrokeMonoRoman = nullptr;
void* glutBitmap9By15 = nullptr;
void* glutBitmap8By13 = nullptr;
void* glutBitmapTimesRoman10 = nullptr;
void* glutBitmapTimesRoman24 = nullptr;
void* glutBitmapHelvetica10 = nullptr;
void* glutBitmapHelvetica12 = nullptr;
void* glutBitmapHelvetica18 = nullptr;

// NOLINTNEXTLINE(readability-non-const-parameter): the signature is GLUT's
void glutInit(int* pargc, char** /*argv*/) {
    Record("glutInit", {pargc != nullptr ? *pargc : 0});
}

void glutInitErrorFunc(void (*callback)(const char*, va_list)) {
    Record("glutInitErrorFunc");
    glut().error = callback;
}

void glutInitDisplayMode(unsigned int displayMode) {
    Record("glutInitDisplayMode", {displayMode});
    glut().display_mode = displayMode;
}

void glutInitWindowSize(int width, int height) {
    Record("glutInitWindowSize", {width, height});
    glut().init_width = width;
    glut().init_height = height;
}

void glutInitWindowPosition(int x, int y) {
    Record("glutInitWindowPosition", {x, y});
    glut().init_x = x;
    glut().init_y = y;
}

int glutCreateWindow(const char* title) {
    Record("glutCreateWindow", {}, title);
    glut().windows.emplace_back(title);
    glut().current_window = static_cast<int>(glut().windows.size());
    return glut().current_window;
}

void glutSetWindowTitle(const char* title) {
    Record("glutSetWindowTitle", {}, title);
}
void glutMainLoop() {
    Record("glutMainLoop");
    ++glut().main_loops;
    if (glut().main_loop) glut().main_loop();
}

void glutPostRedisplay() {
    Record("glutPostRedisplay");
    ++glut().redisplays;
}

void glutSwapBuffers() {
    Record("glutSwapBuffers");
    ++glut().swaps;
    if (glut().swap) glut().swap();
}

int glutGet(GLenum query) {
    Record("glutGet", {query});
    ++glut().get_calls[query];
    for (const auto& table : {glut().get, DefaultAnswers()}) {
        const auto found = table.find(query);
        if (found != table.end()) return found->second;
    }
    return 0;
}

void glutDisplayFunc(void (*callback)()) {
    Register("glutDisplayFunc", glut().display, callback);
}
void glutReshapeFunc(void (*callback)(int, int)) {
    Register("glutReshapeFunc", glut().reshape, callback);
}
void glutKeyboardFunc(void (*callback)(unsigned char, int, int)) {
    Register("glutKeyboardFunc", glut().keyboard, callback);
}
void glutKeyboardUpFunc(void (*callback)(unsigned char, int, int)) {
    Register("glutKeyboardUpFunc", glut().keyboard_up, callback);
}
void glutSpecialFunc(void (*callback)(int, int, int)) {
    Register("glutSpecialFunc", glut().special, callback);
}
void glutSpecialUpFunc(void (*callback)(int, int, int)) {
    Register("glutSpecialUpFunc", glut().special_up, callback);
}
void glutMouseFunc(void (*callback)(int, int, int, int)) {
    Register("glutMouseFunc", glut().mouse, callback);
}
void glutMouseWheelFunc(void (*callback)(int, int, int, int)) {
    Register("glutMouseWheelFunc", glut().mouse_wheel, callback);
}
void glutMotionFunc(void (*callback)(int, int)) {
    Register("glutMotionFunc", glut().motion, callback);
}
void glutPassiveMotionFunc(void (*callback)(int, int)) {
    Register("glutPassiveMotionFunc", glut().passive_motion, callback);
}
void glutEntryFunc(void (*callback)(int)) {
    Register("glutEntryFunc", glut().entry, callback);
}
void glutIdleFunc(void (*callback)()) {
    Register("glutIdleFunc", glut().idle, callback);
}
void glutVisibilityFunc(void (*callback)(int)) {
    Register("glutVisibilityFunc", glut().visibility, callback);
}
void glutWindowStatusFunc(void (*callback)(int)) {
    Register("glutWindowStatusFunc", glut().window_status, callback);
}
void glutPositionFunc(void (*callback)(int, int)) {
    Register("glutPositionFunc", glut().position, callback);
}
void glutCloseFunc(void (*callback)()) {
    Register("glutCloseFunc", glut().close, callback);
}
void glutWMCloseFunc(void (*callback)()) {
    Register("glutWMCloseFunc", glut().close, callback);
}

void glutTimerFunc(unsigned int time, void (*callback)(int), int value) {
    Record("glutTimerFunc", {time, value});
    glut().timers.push_back({time, callback, value});
}

void glutBitmapCharacter(void* font, int character) {
    Record("glutBitmapCharacter", {character});
    glut().bitmap_characters.push_back({font, character, gl().raster.x, gl().raster.y});
}

}  // extern "C"
