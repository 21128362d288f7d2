// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The keyboard's part of the seam to the desktop: dead keys, the Compose key and characters beyond Latin-1.
//
// GLUT asks XLookupString what each key that is pressed types, and reports the first byte of the answer. That
// function knows neither dead keys nor compositions, and GLUT has no other callback for a key. So
// XLookupString is replaced for the whole process by the one below: the linker gives a program's own function
// to its libraries, too. It asks the real one first, lets xkbcommon compose what can be composed, and answers
// "nothing" where a key has been taken into a composition or is reported by itself.
//
//   key pressed         the real answer    composing    GLUT is told    reported
//   a                   a                  -            a               -
//   dead grave          nothing            begins       nothing         -
//   o                   o                  ends         nothing         U+00F2
//   euro sign           nothing            -            nothing         U+20AC
//   dead grave, then x  x                  fails        x               -
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <dlfcn.h>
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdlib>

#include "app/desktop.h"

namespace {

using Lookup = int (*)(XKeyEvent*, char*, int, KeySym*, XComposeStatus*);
using Report = void (*)(char32_t character);

Report report = nullptr;

/// Returns the name of the user's locale for characters.
const char* LocaleName() {
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* name = std::getenv(variable);
        if (name != nullptr && *name != '\0') return name;
    }
    return "C";
}

/// Makes the state of composing; null where the system has no compositions. It lives as long as the process.
xkb_compose_state* MakeComposing() {
    xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (context == nullptr) return nullptr;
    xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);
    for (const char* locale : {LocaleName(), "en_US.UTF-8"}) {
        xkb_compose_table* table =
            xkb_compose_table_new_from_locale(context, locale, XKB_COMPOSE_COMPILE_NO_FLAGS);
        if (table != nullptr) return xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS);
    }
    return nullptr;
}

/// Returns whether compositions may begin with a key.
bool BeginsComposing(KeySym key) {
    constexpr KeySym kFirstDeadKey = XKB_KEY_dead_grave;
    constexpr KeySym kLastDeadKey = XKB_KEY_dead_greek;
    return key == XKB_KEY_Multi_key || (kFirstDeadKey <= key && key <= kLastDeadKey);
}

/// Reports the character that has been composed.
void ReportComposed(xkb_compose_state* composing) {
    const xkb_keysym_t symbol = xkb_compose_state_get_one_sym(composing);
    const char32_t character = xkb_keysym_to_utf32(symbol);
    if (character != 0) report(character);
}

/// Lets a key take part in a composition. Returns whether it does; then it types nothing by itself.
bool Compose(KeySym key) {
    static xkb_compose_state* composing = nullptr;
    static bool made = false;
    // The table takes some milliseconds to read, and few users ever need it.
    if (!made && !BeginsComposing(key)) return false;
    if (!made) composing = MakeComposing();
    made = true;
    if (composing == nullptr) return false;

    if (xkb_compose_state_feed(composing, static_cast<xkb_keysym_t>(key)) == XKB_COMPOSE_FEED_IGNORED)
        return false;
    switch (xkb_compose_state_get_status(composing)) {
        case XKB_COMPOSE_COMPOSING:
            return true;
        case XKB_COMPOSE_COMPOSED:
            ReportComposed(composing);
            xkb_compose_state_reset(composing);
            return true;
        case XKB_COMPOSE_CANCELLED:
            xkb_compose_state_reset(composing);
            return false;
        case XKB_COMPOSE_NOTHING:
            return false;
    }
    return false;
}

}  // namespace

void ListenToComposing(void (*typed)(char32_t character)) {
    report = typed;
}

/// Tells GLUT what a key types: see the head of this file.
extern "C" int XLookupString(XKeyEvent* event, char* buffer, int bytes, KeySym* symbol,
                             XComposeStatus* status) {
    static const auto real = reinterpret_cast<Lookup>(dlsym(RTLD_NEXT, "XLookupString"));
    KeySym key = NoSymbol;
    const int length = real(event, buffer, bytes, &key, status);
    if (symbol != nullptr) *symbol = key;
    if (event->type != KeyPress || report == nullptr) return length;
    if (Compose(key)) {
        if (symbol != nullptr) *symbol = NoSymbol;
        return 0;
    }
    constexpr char32_t kBeyondLatin1 = 0x100;
    const char32_t character = xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(key));
    if (length > 0 || character < kBeyondLatin1) return length;
    report(character);
    return 0;
}
