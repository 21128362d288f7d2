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

struct TypingState {
    bool listening = false;             ///< GLUT reports characters; written by ListenToTyping()
    std::deque<unsigned char> waiting;  ///< oldest first, all of them ASCII
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
    if (typing.waiting.size() < kLongestQueue) typing.waiting.push_back(character);
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

void DeliverTyping(bool field_has_focus) {
    if (!typing.listening) return;
    reset_keys_state();  // what special keys have left there
    if (single_touch) return;
    if (!field_has_focus) typing.waiting.clear();
    if (typing.waiting.empty()) return;
    key_state[typing.waiting.front()] = true;
    typing.waiting.pop_front();
}
