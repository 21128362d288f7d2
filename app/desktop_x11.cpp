// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/desktop.h"

#include <GL/glx.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <linux/close_range.h>
#include <sys/time.h>
#include <unistd.h>

#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

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

/// Returns the text as one word of a shell command, whatever characters it has.
std::string ShellQuoted(const char* text) {
    std::string quoted = "'";
    for (const char* c = text; *c != '\0'; ++c)
        quoted += *c == '\'' ? std::string("'\\''") : std::string(1, *c);
    return quoted + "'";
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

std::uint64_t Nanoseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
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

std::uint64_t MonotonicNanoseconds() {
    return Nanoseconds(CLOCK_MONOTONIC);
}

/// Stands in for the C library's. GLUT asks for the time of day to tell when a timer is due, and when the
/// user set the clock back by an hour, a hidden owl would get no frame for that hour. What is told here is
/// the time of the program's start and what has passed since; it never goes back.
// The parameters have other names than the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int gettimeofday(timeval* now, void* /*zone*/) noexcept {
    static const std::uint64_t start = Nanoseconds(CLOCK_REALTIME) - Nanoseconds(CLOCK_MONOTONIC);
    const std::uint64_t microseconds = (start + Nanoseconds(CLOCK_MONOTONIC)) / 1'000;
    *now = {static_cast<std::time_t>(microseconds / 1'000'000),
            static_cast<suseconds_t>(microseconds % 1'000'000)};
    return 0;
}

void OpenWebAddress(const char* address) {
    // The browser inherits nothing of ours: neither the window's connection nor a lock that we hold.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    // In the background, because a browser that stays in the foreground must not freeze the owl.
    const std::string command = "xdg-open " + ShellQuoted(address) + " </dev/null >/dev/null 2>&1 &";
    [[maybe_unused]] const int status = std::system(command.c_str());  // no browser: nothing is shown
}

void IntroduceWindow(const char* program, const WindowIcon& icon) {
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
