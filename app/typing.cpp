// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/typing.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "app/desktop.h"
#include "app/input.h"
#include "app/stroke_queue.h"
#include "app/window.h"

bool listening_to_typing = false;

namespace {

constexpr unsigned char kBackspace = 8;
constexpr unsigned char kDelete = 127;

// ---- What types what ----

/// What Latin-1 beyond ASCII types, from 0xA0 on; in the locales where GLUT reports Latin-9, 0xA4 is the euro
/// sign.
constexpr const char* kLatin1[] = {
    " ",  "!",  "c",  "GBP", "EUR", "JPY", "|",  "par.", "\"", "(c)", "a", "\"", "-",   "",    "(r)", "-",
    "o",  "+-", "2",  "3",   "'",   "u",   "P",  ".",    ",",  "1",   "o", "\"", "1/4", "1/2", "3/4", "?",
    "A'", "A",  "A",  "A",   "A",   "A",   "AE", "C",    "E'", "E'",  "E", "E",  "I'",  "I",   "I",   "I",
    "D",  "N",  "O'", "O",   "O",   "O",   "O",  "x",    "O",  "U'",  "U", "U",  "U",   "Y",   "TH",  "ss",
    "a'", "a",  "a",  "a",   "a",   "a",   "ae", "c",    "e'", "e'",  "e", "e",  "i'",  "i",   "i",   "i",
    "d",  "n",  "o'", "o",   "o",   "o",   "o",  ":",    "o",  "u'",  "u", "u",  "u",   "y",   "th",  "y",
};
constexpr char32_t kFirstOfLatin1 = 0xA0;
static_assert(std::size(kLatin1) == 0x100 - kFirstOfLatin1);

/// What the letters of Latin Extended-A type, from 0x100 on; "?" stands for those of kOthers.
constexpr char kExtendedA[] =
    "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi??JjKkkLlLlLlLlLlNnNnNnnNnOoOoOo??RrRrRrSsSsSsSsTtTtTt"
    "UuUuUuUuUuUuWwYyYZzZzZzs";
constexpr char32_t kFirstOfExtendedA = 0x100;
static_assert(std::size(kExtendedA) - 1 == 0x180 - kFirstOfExtendedA);

/// A character beyond those and what it types.
struct Spelling {
    char32_t character;
    const char* text;
};

constexpr Spelling kOthers[] = {
    {0x132, "IJ"},  {0x133, "ij"},  {0x152, "OE"},   {0x153, "oe"},   {0x218, "S"},     {0x219, "s"},
    {0x21A, "T"},   {0x21B, "t"},   {0x1E9E, "SS"},  {0x2010, "-"},   {0x2011, "-"},    {0x2012, "-"},
    {0x2013, "-"},  {0x2014, "-"},  {0x2018, "'"},   {0x2019, "'"},   {0x201A, ","},    {0x201C, "\""},
    {0x201D, "\""}, {0x201E, "\""}, {0x2022, "*"},   {0x2026, "..."}, {0x2032, "'"},    {0x2033, "\""},
    {0x2039, "'"},  {0x203A, "'"},  {0x20AC, "EUR"}, {0x2116, "n."},  {0x2122, "(tm)"}, {0x2212, "-"},
};

/// Returns what a character beyond ASCII types: nothing where it is not known.
std::string SpellingOf(char32_t character) {
    const auto* row = std::find_if(std::begin(kOthers), std::end(kOthers),
                                   [&](const Spelling& other) { return other.character == character; });
    if (row != std::end(kOthers)) return row->text;
    if (character < kFirstOfLatin1) return "";
    if (character < kFirstOfExtendedA) return kLatin1[character - kFirstOfLatin1];
    if (character < kFirstOfExtendedA + std::size(kExtendedA) - 1)
        return {kExtendedA[character - kFirstOfExtendedA]};
    return "";
}

void Type(char32_t character) {
    if (character == kBackspace || character == kDelete) {
        EnqueueCharacter(kDelete);
    } else if (character >= ' ' && character < kDelete) {
        EnqueueCharacter(static_cast<unsigned char>(character));
    } else {
        EnqueueTogether(SpellingOf(character));
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
