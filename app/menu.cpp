// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/menu.h"

#include <GL/gl.h>

#include <cstdio>

#include "app/desktop.h"
#include "app/input.h"
#include "app/owl.h"
#include "app/sounds.h"
#include "app/state.h"
#include "app/textures.h"
#include "calendar/events.h"
#include "engine/Button.h"
#include "engine/canvas.h"
#include "engine/interpolation.h"
#include "engine/text.h"
#include "engine/window_metrics.h"

/// The developers' web site; the build may set another. The page ships with the program.
#ifndef ULMARO_WEB_SITE
#define ULMARO_WEB_SITE "file:///usr/share/doc/ulmaro-assistant/guida/index.html"
#endif

namespace {

// ---- What the items do ----

void PlanEvent() {
    Silence();
    StopLaughing();
    menu_case_id = kListScreen;
}

void AskForQuiz() {
    spawn_question = true;
}

/// Opens a page. Until the pointer moves again it counts as being at window pixel (256, 256), away from the
/// icons.
void Browse(const char* address) {
    OpenWebAddress(address);
    touch_coord_x = touch_coord_y = 256;
}

void OpenSearchSite() {
    Browse("https://duckduckgo.com/");
}

void OpenWebSite() {
    Browse(ULMARO_WEB_SITE);
}

/// Switches sound on or off; what is playing stops either way.
void ToggleSound() {
    enable_sfx = !enable_sfx;
    Silence();
}

// ---- The items ----

struct MenuItem {
    float y;                   ///< centre, canvas units
    const unsigned int* icon;  ///< shown while sound is on
    const unsigned int* mute;  ///< shown while it is off
    bool rests;                ///< dimmed and without effect while events are due
    void (*act)();
    const char* label;
};

constexpr float kItemX = 44.5F;  ///< centre of all items, canvas units
constexpr float kItemHalf = 40;  ///< half their edge

constexpr MenuItem kItems[] = {
    {465, &icns[kPlanIcon], &icns[kPlanIcon], true, PlanEvent, "pianifica un nuovo evento"},
    {360, &icns[kInteractIcon], &icns[kInteractIcon], true, AskForQuiz, "interagisci con Ulmaro"},
    {255, &icns[kBrowserIcon], &icns[kBrowserIcon], false, OpenSearchSite, "apri il browser su DuckDuckGo"},
    {150, &icns[kWebSiteIcon], &icns[kWebSiteIcon], false, OpenWebSite, "visita il sito degli sviluppatori!"},
    {45, &icns[kSoundOnIcon], &icns[kSoundOffIcon], false, ToggleSound, "abilita/disabilita il sonoro"},
};

/// Long enough for any label.
using Label = char[512];

/// Draws an item and asks it for click and hover; a hovered item puts its text in `label`. Only the first
/// item that acts does so: it may have moved the pointer onto another.
void ShowItem(const MenuItem& item, Label& label, bool& acted) {
    const bool awake = !item.rests || n_notify == 0;
    if (awake) {
        glColor4f(1, 1, 1, 1);
    } else {
        glColor4f(0.5F, 0.5F, 0.5F, 1);
    }
    const Button button(enable_sfx ? *item.icon : *item.mute, kItemX, item.y, kItemHalf, kItemHalf);
    button.Display(awake);
    if (button.isClicked() && awake && !acted) {
        acted = true;
        item.act();
    }
    if (button.isSelected()) std::snprintf(label, sizeof label, "%s", item.label);
}

/// Prints weekday, date and time.
/// Deliberate: the numbers are not padded, so 9:05:07 reads 9:5.7.
void PrintStatusLine() {
    const std::tm& t = frame_time;
    glPrintText(266, 10, 10, false, "%s %d/%d/%d %d:%d.%d", GetWdayStr(t.tm_wday), t.tm_mday, t.tm_mon + 1,
                t.tm_year + 1900, t.tm_hour, t.tm_min, t.tm_sec);
}

/// Prints the label 15 units to the right of the pointer, at its height.
void PrintLabel(const Label& label) {
    if (label[0] == '\0') return;
    const auto width = static_cast<float>(WindowWidth());
    const auto height = static_cast<float>(WindowHeight());
    const int x = static_cast<int>(proportional<float>(width, kCanvasEdge, touch_coord_x));
    const int y = static_cast<int>(proportional<float>(height, kCanvasEdge, touch_coord_y));
    glPrintText(static_cast<float>(x + 15), kCanvasEdge - static_cast<float>(y), 10, false, "%s", label);
}

}  // namespace

void ActionMenu() {
    Label label = {};
    bool acted = false;
    for (const MenuItem& item : kItems) ShowItem(item, label, acted);
    glColor4f(1, 1, 1, 1);
    PrintStatusLine();
    PrintLabel(label);
}
