// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Prints the name of the OpenGL renderer that a program gets on this display.
#include <GL/gl.h>
#include <GL/glx.h>
#include <X11/Xlib.h>

#include <cstdio>

int main() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) return 1;
    int wanted[] = {GLX_RGBA, GLX_DOUBLEBUFFER, None};
    XVisualInfo* visual = glXChooseVisual(display, DefaultScreen(display), wanted);
    if (visual == nullptr) return 2;
    XSetWindowAttributes attributes = {};
    attributes.colormap = XCreateColormap(display, DefaultRootWindow(display), visual->visual, AllocNone);
    const Window window = XCreateWindow(display, DefaultRootWindow(display), 0, 0, 8, 8, 0, visual->depth,
                                        InputOutput, visual->visual, CWColormap, &attributes);
    GLXContext context = glXCreateContext(display, visual, nullptr, True);
    if (glXMakeCurrent(display, window, context) == False) return 3;
    std::printf("%s\n", reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
    return 0;
}
