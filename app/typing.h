// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Typing: brings ordinary characters to the text fields.
//
// The screens read key_state, one frame of keys at a time, in the order of the key codes; whoever sets a key
// there types it. So that fast typing, repeated letters and slow frames lose and reorder nothing, typed
// characters wait in a queue (stroke_queue.h), and one of them a frame is put into key_state:
//
//   between frames   "aa" is typed     the queue holds a, a
//   frame 1          DeliverTyping()   key_state['a'] is set; the frame's end clears it
//   frame 2          DeliverTyping()   key_state['a'] is set again
//
// A field holds ASCII only, so other characters are typed as what they are commonly written as without them:
// an Italian accented letter as the letter and an apostrophe, other letters without their marks, "EUR" for
// the euro sign. Where such a text has no room in the field as a whole, nothing of it is typed.
//
// A press of the mouse waits its turn among them: what was typed before it goes to the field that had the
// focus then.
//
// GLUT's special keys share their codes with letters (Shift is 112 and so is 'p'); while typing is listened
// to, what they have set in key_state is forgotten before the frame reads it, and nothing else.
#pragma once

/// Whether GLUT reports characters. Written by ListenToTyping(); tests set it.
extern bool listening_to_typing;

/// Starts listening to GLUT's characters, unless it has been started. Without it key_state holds whatever was
/// put there.
void ListenToTyping();

/// Takes a typed character (Latin-1, as GLUT reports it): the GLUT keyboard callback. Backspace and Delete
/// arrive at the fields as 127; other control characters type nothing.
void TypeCharacter(unsigned char character, int x, int y);

/// Takes a typed character that GLUT does not report, such as one of a dead key and a letter: any of Unicode.
/// Characters that are not known type nothing.
void TypeComposed(char32_t character);

/// Puts the next typed character into key_state, beside what was set there directly; called before a screen
/// is drawn. `room` is how many more characters the focused field takes; without one, kNoFocus
/// (calendar/editor.h), the characters that wait are dropped. A press that came after characters that still
/// wait is taken out of single_touch, and back in, where it happened, when they have been delivered.
void DeliverTyping(int room);
