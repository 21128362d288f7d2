// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/typing.h"

#include <GL/freeglut.h>

#include <string>

#include "app/desktop.h"
#include "app/input.h"
#include "app/stroke_queue.h"
#include "app/window.h"
#include "engine/typed_text.h"

bool listening_to_typing = false;

namespace {

constexpr unsigned char kBackspace = 8;
constexpr unsigned char kDelete = 127;

void Type(char32_t character) {
    if (character == kBackspace || character == kDelete) {
        EnqueueCharacter(kDelete);
    } else if (character >= ' ' && character < kDelete) {
        EnqueueCharacter(static_cast<unsigned char>(character));
    } else {
        EnqueueTogether(std::string(TypedAs(character)));
    }
}

// ---- Into the frame ----

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
    ListenToComposing(TypeComposed);
}

void TypeCharacter(unsigned char character, int /*x*/, int /*y*/) {
    NoteActivity();
    Type(character);
}

void TypeComposed(char32_t character) {
    NoteActivity();
    Type(character);
}

void DeliverTyping(int room) {
    if (!listening_to_typing) return;
    ForgetSpecialKeys();
    QueuePress();
    if (room < 0) DropCharacters();
    Stroke next;
    if (!DequeueStroke(next)) return;
    if (next.together > 1 && next.together > room) {
        DropStrokes(next.together - 1);
    } else {
        Deliver(next);
    }
}
