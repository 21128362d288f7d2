// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The seam to the desktop: all that the program asks of the desktop beside its GLUT window.
//
// Two source files fill it in: desktop_x11.cpp, the only one that includes Xlib, and desktop_posix.cpp for
// the clock and web pages, which need no window system. Tests fill it in with a desktop of their own. Nothing
// here fails loudly: where the desktop has no answer, the function says what it does.
#pragma once

#include <cstdint>

/// A point of the screen in pixels, origin at the top left of the main screen.
struct ScreenPoint {
    int x = 0;
    int y = 0;
};

/// Returns where the pointer is, over our window or anywhere else. Costs one round trip to the window system.
ScreenPoint GlobalPointer();

/// Returns a clock that never goes back, in nanoseconds from an arbitrary start.
std::uint64_t MonotonicNanoseconds();

/// Waits until an event of our window has come or so many nanoseconds have passed; not at all before there is
/// a window.
void AwaitWindowEvent(std::uint64_t nanoseconds);

/// Opens a web address in the user's default browser and returns at once. Shows nothing where there is no
/// browser.
void OpenWebAddress(const char* address);

/// An icon of so many pixels, four bytes each: red, green, blue, alpha; rows from the bottom. None at all has
/// the width 0.
struct WindowIcon {
    int width = 0;
    int height = 0;
    const unsigned char* pixels = nullptr;
};

/// Sets the window's class, which is the name that the program's desktop entry has too, and the icon that
/// docks and task switchers show for it.
void SetWindowIdentity(const char* program, const WindowIcon& icon);

/// Moves the pointer to screen point (400, 300).
void ResetMouse();

/// Lets a buffer swap wait for that many screen refreshes (0: not at all), where the driver offers swap
/// control.
void SetSwapInterval(int refreshes);
