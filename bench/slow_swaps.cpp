// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into a program: each swap of its buffers takes a second longer, as some desktops hold the swaps
// of windows that nobody sees.
#include <dlfcn.h>
#include <unistd.h>

extern "C" void glXSwapBuffers(void* display, unsigned long drawable) {
    static const auto next =
        reinterpret_cast<void (*)(void*, unsigned long)>(dlsym(RTLD_NEXT, "glXSwapBuffers"));
    next(display, drawable);
    sleep(1);
}
