// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into the program: every buffer swap takes a second, as for windows that nobody sees on some
// desktops with a graphics card.
#include <dlfcn.h>

#include <ctime>

extern "C" void glXSwapBuffers(void* display, unsigned long drawable) {
    static const auto next =
        reinterpret_cast<void (*)(void*, unsigned long)>(dlsym(RTLD_NEXT, "glXSwapBuffers"));
    next(display, drawable);
    const timespec second = {1, 0};
    nanosleep(&second, nullptr);
}
