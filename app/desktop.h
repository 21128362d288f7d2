// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The seam to the desktop: all that the program asks of the desktop beside its GLUT window.
//
// Three source files fill it in: desktop_x11.cpp, the only one that includes Xlib; desktop_posix.cpp for
// clocks and web pages, which need no window system; and desktop_notice.cpp for notices on the message bus.
// Tests fill it in with a desktop of their own. Nothing here fails loudly: where the desktop has no answer,
// the function says what it does.
#pragma once

#include <cstdint>
#include <string>

/// The program's name for the desktop: its window's class, its entry in menus and its icon.
inline constexpr char kProgramName[] = "ulmaro-assistant";

// ---- The pointer ----

/// A point of the screen in pixels, origin at the top left of the main screen.
struct ScreenPoint {
    int x = 0;
    int y = 0;
};

/// Returns where the pointer is, over our window or anywhere else. Costs one round trip to the window system.
ScreenPoint GlobalPointer();

/// Moves the pointer to screen point (400, 300).
void ResetMouse();

// ---- The keyboard ----

/// From now on reports the characters that GLUT's keyboard callback does not: those composed with dead keys
/// or the Compose key, as the user's locale has them, and those beyond Latin-1. `typed` is called in the
/// order of the keys, between GLUT's callbacks. A letter that goes into a composed character is not reported
/// by itself.
void ListenToComposing(void (*typed)(char32_t character));

// ---- Clocks and web pages ----

/// Returns a clock that never goes back, in nanoseconds from an arbitrary start.
std::uint64_t MonotonicNanoseconds();

/// Returns the processor time that the process has used so far, all its threads together, nanoseconds.
std::uint64_t ProcessorNanoseconds();

/// Opens a web address in the user's default browser and returns at once. Shows nothing where there is no
/// browser.
void OpenWebAddress(const char* address);

// ---- The window ----

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

/// Asks the window manager to minimise the window; without one nothing happens.
void MinimiseWindow();

/// Brings the window up in front of the others and gives it the focus, also where it is minimised or on
/// another desktop. To be called for what the user has just done: it costs a round trip to the window system.
void RaiseWindow();

/// Asks for the user's attention, as the desktop does that: a task bar lets the window's button flash, say.
/// Or takes that back. Costs round trips to the window system, so call it only when the answer changes.
void DemandAttention(bool wanted);

/// Returns whether GLUT can take the text for a place or size on the screen, such as "300x300+10-20".
bool IsGeometry(const char* text);

// ---- Who sees the window ----
//
// These work on a connection of their own to the window system. The first call opens it; where that fails the
// window counts as seen, and no refresh is ever told of.

/// Returns whether anybody can see the window, as far as the desktop tells: it is neither minimised nor on
/// another desktop nor wholly behind one opaque window, and no screen saver covers it. Takes in what the
/// desktop has told since the last call; only where something has changed it asks, at most ten times a
/// second.
bool IsWindowSeen();

/// Returns whether the window has the focus of the keyboard, as far as the desktop had told when
/// IsWindowSeen() was called last. Where the desktop cannot be asked, it counts as having it.
bool IsWindowFocused();

/// Asks to be told of the next refresh of the screen. Returns false where the desktop does not tell. While
/// one is awaited that was asked for less than ten seconds ago, nothing new is asked.
bool RequestRefresh();

/// Waits until it is time to begin drawing the frame for the refresh that was asked for: so late that it is
/// drawn just before the refresh, going by how long the last frames took, because what is drawn later knows
/// better where the pointer is. Does not wait where that is unknown, or after a frame that missed its
/// refresh.
void AwaitDrawing();

/// Waits until the refresh that was asked for has come, at most so many nanoseconds. Returns whether it has.
/// With `until_event`, an event of GLUT's also ends the wait; then the refresh counts as come.
bool AwaitRefresh(std::uint64_t nanoseconds, bool until_event);

/// Returns the time between two refreshes, nanoseconds; 0 before two of them have come.
std::uint64_t RefreshPeriod();

/// Waits until the window may be seen again, or a refresh that was asked for has come, at most so many
/// nanoseconds.
void AwaitSight(std::uint64_t nanoseconds);

/// Lets a buffer swap wait for that many screen refreshes (0: not at all), where the driver offers swap
/// control.
void SetSwapInterval(int refreshes);

// ---- Notices ----
//
// The desktop shows one notice of the program at a time, in a window of its own beside the others. None of
// these functions waits or says anything: without a message bus, or without a server of notices on it, there
// are none.

/// A notice: plain text, UTF-8 without control characters; lines of `text` end with "\n".
struct DesktopNotice {
    std::string title;
    std::string text;
    const char* category;  ///< one that servers of notifications know, or one of our own: "x-..."
};

/// Shows a notice, in place of the one before.
void ShowNotice(const DesktopNotice& notice);

/// Takes the notice away, if one is shown or on its way.
void CloseNotice();

/// Sends and takes in what it can; to be called in every frame. Returns whether the user has clicked the
/// notice since the last call.
bool ServeNotice();
