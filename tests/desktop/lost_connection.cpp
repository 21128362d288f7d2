// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into the program: the connection to the X server that it makes beside GLUT's breaks after it was
// asked so many times whether it has, as ULMARO_CONNECTION_LASTS says; with 0 it cannot be made.
#include <dlfcn.h>
#include <xcb/xcb.h>

#include <cstdlib>

namespace {

int made = 0;                     // connections; the first is GLUT's
xcb_connection_t* own = nullptr;  // the second
int left = 0;

}  // namespace

extern "C" {

xcb_connection_t* xcb_connect(const char* display, int* screen) {
    static const auto next = reinterpret_cast<decltype(&xcb_connect)>(dlsym(RTLD_NEXT, "xcb_connect"));
    const char* lasts = std::getenv("ULMARO_CONNECTION_LASTS");
    left = lasts == nullptr ? 0 : std::atoi(lasts);
    xcb_connection_t* connection = next(display, screen);
    if (++made == 2) own = connection;
    return connection;
}

int xcb_connection_has_error(xcb_connection_t* connection) {
    static const auto next =
        reinterpret_cast<decltype(&xcb_connection_has_error)>(dlsym(RTLD_NEXT, "xcb_connection_has_error"));
    return connection == own && left-- <= 0 ? XCB_CONN_ERROR : next(connection);
}

}  // extern "C"
