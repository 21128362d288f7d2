// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/typing.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>

#include "app/input.h"

namespace {

constexpr unsigned char kBackspace = 8;
constexpr unsigned char kDelete = 127;

/// More than anyone types ahead, far more than a field holds.
constexpr std::size_t kLongestQueue = 4096;

/// A typed character, or a press of the mouse.
struct Stroke {
    unsigned char character = 0;  ///< ASCII; 0: a press
    float x = 0, y = 0;           ///< where the press happened, window pixels, origin top left

    bool IsPress() const { return character == 0; }
};

struct TypingState {
    bool listening = false;        ///< GLUT reports characters; written by ListenToTyping()
    std::deque<Stroke> waiting;    ///< oldest first
    std::size_t before_press = 0;  ///< so many of them came before the press that single_touch tells of
};

TypingState typing;

/// A letter that is not ASCII and how the program writes it, before the apostrophe.
struct Accented {
    unsigned char latin1;
    unsigned char plain;
};

constexpr Accented kAccented[] = {
    {0xC0, 'A'}, {0xC8, 'E'}, {0xC9, 'E'}, {0xCC, 'I'}, {0xD2, 'O'}, {0xD9, 'U'},
    {0xE0, 'a'}, {0xE8, 'e'}, {0xE9, 'e'}, {0xEC, 'i'}, {0xF2, 'o'}, {0xF9, 'u'},
};

void Wait(unsigned char character) {
    if (typing.waiting.size() < kLongestQueue) typing.waiting.push_back({character});
}

/// Lets this frame's press wait behind what was typed before it.
void QueuePress() {
    const std::size_t place = std::min(typing.before_press, typing.waiting.size());
    typing.waiting.insert(typing.waiting.begin() + static_cast<std::ptrdiff_t>(place),
                          {0, touch_coord_x, touch_coord_y});
    single_touch = false;
}

/// Drops what was typed before the next press.
void DropCharacters() {
    const auto press = std::find_if(typing.waiting.begin(), typing.waiting.end(),
                                    [](const Stroke& stroke) { return stroke.IsPress(); });
    typing.waiting.erase(typing.waiting.begin(), press);
}

/// Lets the frame see a stroke.
void Deliver(const Stroke& stroke) {
    if (!stroke.IsPress()) {
        key_state[stroke.character] = true;
        return;
    }
    touch_coord_x = stroke.x;
    touch_coord_y = stroke.y;
    single_touch = true;
}

}  // namespace

void ListenToTyping() {
    typing = {};
    typing.listening = true;
    glutKeyboardFunc(TypeCharacter);
}

void TypeCharacter(unsigned char character, int /*x*/, int /*y*/) {
    if (character == kBackspace || character == kDelete) {
        Wait(kDelete);
        return;
    }
    if (character >= ' ' && character < kDelete) {
        Wait(character);
        return;
    }
    const auto* letter = std::find_if(std::begin(kAccented), std::end(kAccented),
                                      [&](const Accented& accented) { return accented.latin1 == character; });
    if (letter == std::end(kAccented)) return;
    Wait(letter->plain);
    Wait('\'');
}

void NotePress() {
    typing.before_press = typing.waiting.size();
}

void DeliverTyping(bool field_has_focus) {
    if (!typing.listening) return;
    reset_keys_state();  // what special keys have left there
    if (single_touch) QueuePress();
    if (!field_has_focus) DropCharacters();
    if (typing.waiting.empty()) return;
    const Stroke next = typing.waiting.front();
    typing.waiting.pop_front();
    Deliver(next);
}
