// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/typing.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <iterator>

#include "app/input.h"
#include "app/stroke_queue.h"
#include "app/window.h"

bool listening_to_typing = false;

namespace {

constexpr unsigned char kBackspace = 8;
constexpr unsigned char kDelete = 127;

/// A letter that is not ASCII and how the program writes it, before the apostrophe.
struct Accented {
    unsigned char latin1;
    unsigned char plain;
};

constexpr Accented kAccented[] = {
    {0xC0, 'A'}, {0xC8, 'E'}, {0xC9, 'E'}, {0xCC, 'I'}, {0xD2, 'O'}, {0xD9, 'U'},
    {0xE0, 'a'}, {0xE8, 'e'}, {0xE9, 'e'}, {0xEC, 'i'}, {0xF2, 'o'}, {0xF9, 'u'},
};

/// Lets this frame's press wait behind what was typed before it.
void QueuePress() {
    if (!single_touch) return;
    EnqueuePress(touch_coord_x, touch_coord_y, press_time);
    single_touch = false;
}

/// Lets the frame see a stroke.
void Deliver(const Stroke& stroke) {
    if (!stroke.IsPress()) {
        key_state[stroke.character] = true;
        return;
    }
    touch_coord_x = stroke.x;
    touch_coord_y = stroke.y;
    press_time = stroke.time;
    single_touch = true;
}

}  // namespace

void ListenToTyping() {
    if (listening_to_typing) return;
    listening_to_typing = true;
    glutKeyboardFunc(TypeCharacter);
}

void TypeCharacter(unsigned char character, int /*x*/, int /*y*/) {
    NoteActivity();
    if (character == kBackspace || character == kDelete) {
        EnqueueCharacter(kDelete);
        return;
    }
    if (character >= ' ' && character < kDelete) {
        EnqueueCharacter(character);
        return;
    }
    const auto* letter = std::find_if(std::begin(kAccented), std::end(kAccented),
                                      [&](const Accented& accented) { return accented.latin1 == character; });
    if (letter == std::end(kAccented)) return;
    EnqueueCharacter(letter->plain);
    EnqueueCharacter('\'');
}

void DeliverTyping(bool field_has_focus) {
    if (!listening_to_typing) return;
    ForgetSpecialKeys();
    QueuePress();
    if (!field_has_focus) DropCharacters();
    Stroke next;
    if (DequeueStroke(next)) Deliver(next);
}
