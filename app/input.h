// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Pointer and keys: the GLUT callbacks and the state they leave for the frame.
//
// The callbacks never act. They run between frames and only write down what happened; the screens read it
// while they draw, and the end of the frame clears the flags that last one frame. So a click looks like this
// to a button:
//
//   between frames   mouse_event(left, down)    single_touch = true
//   frame 1          every button under it      sees the click
//   end of frame 1   ResetFrameInput()          single_touch = false, although the button may still be held
//   between frames   mouse_event(left, up)      single_touch = false
//
// A press and its release between the same two frames leave nothing.
//
// The widgets' part of this state (touch_coord_x, touch_coord_y, single_touch) is declared in engine/host.h.
#pragma once

#include <cstdint>

#include "engine/host.h"
#include "engine/vector3f.h"

/// The left button as mouse_event() last saw it. Nothing reads it.
extern bool touch_event;

/// When the press that single_touch tells of was made, by the monotonic clock, nanoseconds.
extern std::uint64_t press_time;

/// Keys pressed since the last frame, by their code: special keys by GLUT's, characters by their own. Cleared
/// by the frame's end.
extern bool key_state[256];

/// Whether GLUT reports that the pointer has left the window. Written by ListenToLeaving(); tests set it.
extern bool listening_to_leaving;

/// Writes down the pointer's place: the GLUT callback for motion with and without a button, in window pixels.
void mouse(int x, int y);

/// Writes down a left press or release: the GLUT mouse-button callback. The place is the one that mouse()
/// last saw.
void mouse_event(int button, int state, int x, int y);

/// Starts listening to the pointer's leaving the window, unless it has been started; called by the first
/// frame.
void ListenToLeaving();

/// Writes down where the pointer went when it left the window, as a last motion; nothing when it enters: the
/// GLUT entry callback. While a window manager holds the pointer the place may lie inside the window.
void LeaveWindow(int state);

/// Marks a special key as pressed; codes outside the table are ignored.
void keyboard_down(int key, int x, int y);

/// Marks a special key as released; codes outside the table are ignored.
void keyboard_up(int key, int x, int y);

/// Notes the Enter key.
/// Deliberate: it is not registered with GLUT; the screens read key_state only.
void keyboard(unsigned char key, int x, int y);

/// Clears all of key_state.
void reset_keys_state();

/// Clears those keys of key_state that keyboard_down() alone has set. One that was set already when its
/// special key was pressed stays.
void ForgetSpecialKeys();

/// Clears what lasts one frame: the click, Enter and the keys.
void ResetFrameInput();

/// Sets viewport and perspective for a window of w x h pixels: the GLUT reshape callback. Each frame puts its
/// own canvas in the perspective's place. A height of 0 counts as 1.
void reshape(int w, int h);

/// Returns the scene point under a window pixel (origin top left) for the current matrices; not clamped to
/// the window. Where the window has no depth buffer the depth counts as 0.5, the plane that the canvas is
/// drawn in.
vector3f GetOGLPos(int x, int y);
