// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The part of the seam to the desktop that X11 fills in: pointer, window class and icon, swap control. No
// other source includes Xlib.
#include <GL/glx.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "app/desktop.h"

namespace {

/// Returns the connection that the window was made on, so that the program keeps to one; null before there is
/// a window.
Display* WindowConnection() {
    return glXGetCurrentDisplay();
}

/// Returns whether the GLX of the window's screen names an extension.
bool HasGlxExtension(Display* display, const char* name) {
    const char* names = glXQueryExtensionsString(display, DefaultScreen(display));
    return names != nullptr &&
           (" " + std::string(names) + " ").find(" " + std::string(name) + " ") != std::string::npos;
}

template <typename Function>
Function GlxFunction(const char* name) {
    return reinterpret_cast<Function>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
}

/// Returns an icon as the window manager reads it: width, height, then a number for each pixel, alpha in its
/// highest byte, then red, green and blue; rows from the top. Xlib takes 32-bit numbers as longs.
std::vector<unsigned long> IconCardinals(const WindowIcon& icon) {
    std::vector<unsigned long> cardinals = {static_cast<unsigned long>(icon.width),
                                            static_cast<unsigned long>(icon.height)};
    for (int y = icon.height - 1; y >= 0; --y) {
        for (int x = 0; x < icon.width; ++x) {
            const unsigned char* pixel = icon.pixels + (std::ptrdiff_t{y} * icon.width + x) * 4;
            cardinals.push_back(std::uint32_t{pixel[3]} << 24U | std::uint32_t{pixel[0]} << 16U |
                                std::uint32_t{pixel[1]} << 8U | pixel[2]);
        }
    }
    return cardinals;
}

}  // namespace

ScreenPoint GlobalPointer() {
    ScreenPoint point;
    Display* display = WindowConnection();
    if (display == nullptr) return point;
    Window root = 0;
    Window child = 0;
    int window_x = 0;
    int window_y = 0;
    unsigned int buttons = 0;
    XQueryPointer(display, DefaultRootWindow(display), &root, &child, &point.x, &point.y, &window_x,
                  &window_y, &buttons);
    return point;
}

void AwaitWindowEvent(std::uint64_t nanoseconds) {
    Display* display = WindowConnection();
    if (display == nullptr || XPending(display) > 0) return;
    pollfd connection = {ConnectionNumber(display), POLLIN, 0};
    const timespec wait = {static_cast<std::time_t>(nanoseconds / 1'000'000'000U),
                           static_cast<long>(nanoseconds % 1'000'000'000U)};
    ppoll(&connection, 1, &wait, nullptr);
}

void SetWindowIdentity(const char* program, const WindowIcon& icon) {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    const Window window = glXGetCurrentDrawable();
    std::string name = program;
    std::string class_name = name;
    class_name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    XClassHint hint = {name.data(), class_name.data()};
    XSetClassHint(display, window, &hint);
    if (icon.width == 0) return;
    const std::vector<unsigned long> cardinals = IconCardinals(icon);
    XChangeProperty(display, window, XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(cardinals.data()),
                    static_cast<int>(cardinals.size()));
}

void ResetMouse() {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, 400, 300);
    XFlush(display);
}

void SetSwapInterval(int refreshes) {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    if (HasGlxExtension(display, "GLX_EXT_swap_control")) {
        const auto set = GlxFunction<PFNGLXSWAPINTERVALEXTPROC>("glXSwapIntervalEXT");
        set(display, glXGetCurrentDrawable(), refreshes);
    } else if (HasGlxExtension(display, "GLX_MESA_swap_control")) {
        const auto set = GlxFunction<PFNGLXSWAPINTERVALMESAPROC>("glXSwapIntervalMESA");
        set(static_cast<unsigned int>(refreshes));
    } else if (HasGlxExtension(display, "GLX_SGI_swap_control") && refreshes > 0) {
        const auto set = GlxFunction<PFNGLXSWAPINTERVALSGIPROC>("glXSwapIntervalSGI");
        set(refreshes);
    }
}
