// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The queue of strokes: typed characters and presses of the mouse, in the order in which they happened.
//
// It belongs to neither the pointer nor the keyboard, since it keeps their common order: what was typed
// before a press goes to the field that had the focus then.
#pragma once

#include <cstdint>
#include <string_view>

/// A typed character, or a press of the left button.
struct Stroke {
    unsigned char character = 0;  ///< a code of key_state; 0: a press
    int together = 1;             ///< of a character: so many from it on go into a field whole or not at all
    float x = 0, y = 0;           ///< where the press happened, window pixels, origin top left
    std::uint64_t time = 0;       ///< when it happened, by the monotonic clock, nanoseconds

    bool IsPress() const { return character == 0; }
};

/// Appends a typed character, not 0. Does nothing while 345 strokes wait, the largest field's characters.
void EnqueueCharacter(unsigned char character);

/// Appends characters that stand for one key, such as a letter and an apostrophe. Does nothing where 345
/// strokes do not leave room for all of them.
void EnqueueTogether(std::string_view characters);

/// Marks the present end of the queue as the place of a press that has just happened.
void MarkPress();

/// Puts the press, made at that time, into the marked place.
void EnqueuePress(float x, float y, std::uint64_t time);

/// Takes the oldest stroke. Returns false where there is none.
bool DequeueStroke(Stroke& stroke);

/// Drops so many of the oldest strokes.
void DropStrokes(int count);

/// Drops all characters before the next press.
void DropCharacters();

/// Empties the queue.
void ForgetStrokes();
