// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fake of freeglut: keeps what the program registers and asks, and lets tests play the window
// system by calling the registered functions themselves.
//
// How to use it:
//
//     fakes::glut().get[GLUT_WINDOW_WIDTH] = 600;          // what glutGet answers (else the default)
//     fakes::glut().mouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
//     fakes::glut().display();
//     EXPECT_EQ(fakes::glut().redisplays, 1);
//     fakes::glut().FireTimers();                          // each once; new ones wait for the next call
//     fakes::glut().main_loop = [] { fakes::glut().display(); };   // what glutMainLoop does
//
// glutMainLoop runs `main_loop` if there is one and returns.

#pragma once

#include <GL/freeglut.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace fakes {

struct Timer {
    unsigned int milliseconds = 0;
    void (*callback)(int) = nullptr;
    int value = 0;
};

/// A character drawn by glutBitmapCharacter, with the raster position (canvas units) of then.
struct BitmapCharacter {
    void* font = nullptr;
    int character = 0;
    double x = 0;
    double y = 0;
};

struct Glut {
    // The callbacks that the program registered; null until then.
    void (*display)() = nullptr;
    void (*reshape)(int, int) = nullptr;
    void (*keyboard)(unsigned char, int, int) = nullptr;
    void (*keyboard_up)(unsigned char, int, int) = nullptr;
    void (*special)(int, int, int) = nullptr;
    void (*special_up)(int, int, int) = nullptr;
    void (*mouse)(int, int, int, int) = nullptr;
    void (*mouse_wheel)(int, int, int, int) = nullptr;
    void (*motion)(int, int) = nullptr;
    void (*passive_motion)(int, int) = nullptr;
    void (*entry)(int) = nullptr;
    void (*idle)() = nullptr;
    void (*visibility)(int) = nullptr;
    void (*window_status)(int) = nullptr;
    void (*position)(int, int) = nullptr;
    void (*close)() = nullptr;  ///< by glutCloseFunc or glutWMCloseFunc

    std::vector<Timer> timers;  ///< waiting, oldest first
    std::vector<BitmapCharacter> bitmap_characters;

    void (*error)(const char*, va_list) = nullptr;

    // What the program asked for.
    unsigned int display_mode = 0;
    int init_width = 300, init_height = 300;  ///< GLUT's own defaults
    int init_x = -1, init_y = -1;
    std::vector<std::string> windows;  ///< titles in order of creation; the window numbers are 1, 2 ...
    int current_window = 0;
    int redisplays = 0;
    int swaps = 0;
    int main_loops = 0;
    std::map<GLenum, int> get_calls;  ///< how often glutGet was asked for each

    // What tests set. By default the screen is 1920 x 1080, the window 300 x 300 at (100, 100).
    std::map<GLenum, int> get;
    std::function<void()> main_loop;
    std::function<void()> swap;  ///< what glutSwapBuffers does beside counting

    /// Calls every timer that waits now once and forgets it; timers set meanwhile stay waiting.
    void FireTimers();
};

/// Returns the model that the GLUT fakes work on.
Glut& glut();

/// Forgets everything. Reset() in fakes.h calls it.
void ResetGlut();

}  // namespace fakes
