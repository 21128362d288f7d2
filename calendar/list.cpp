// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/list.h"

#include <GL/gl.h>

#include <algorithm>
#include <iterator>

#include "app/panel.h"
#include "app/state.h"
#include "app/textures.h"
#include "calendar/events.h"
#include "engine/text.h"

ListState event_list;

namespace {

constexpr int kRows = 12;
constexpr float kTextSize = 10;

constexpr ButtonPlace kAddButton = {447.12F, 436.5F, 20.5F, 20};
constexpr ButtonPlace kUpArrow = {485, 389, 15, 15};
constexpr ButtonPlace kDownArrow = {485, 40, 15, 15};

int Size() {
    return static_cast<int>(events.size());
}

/// Returns the place of a row, 0 at the top.
constexpr ButtonPlace RowPlace(int row) {
    return {241.5F, 390 - 32 * static_cast<float>(row), 225.5F, 15};
}

void ClampScroll() {
    if (Size() - event_list.swap < kRows) event_list.swap = Size() - kRows;
    event_list.swap = std::max(event_list.swap, 0);
}

/// Returns the event in the first row; the list must not be shorter.
std::list<ListedEvent>::iterator FirstShown() {
    return std::next(events.begin(), event_list.swap);
}

void Open(ListedEvent& event) {
    edit_event = &event;
    menu_case_id = kEditorScreen;
}

// ---- Steps ----

void ShowAddButton() {
    if (ShowButton(kAddButton, button_add)) Open(events.emplace_back());
}

void ShowCloseButton() {
    if (ShowButton(kCloseButton, button_close)) menu_case_id = kOwlScreen;
}

/// Fills a row: yellow under the pointer, otherwise in shades that alternate with the event and not with the
/// row, so that they do not jump while scrolling.
void FillRow(const Button& area, int row) {
    if (area.isSelected() && event_list.swap + row < Size()) {
        glColor4f(1, 1, 0.5F, 0.4F);
    } else {
        glColor4f(1, 1, 1, (event_list.swap + row) % 2 == 0 ? 0.35F : 0.25F);
    }
    area.Display(false);
}

void ShowRows() {
    auto event = FirstShown();
    for (int row = 0; row < kRows; ++row) {
        const Button area = ButtonAt(RowPlace(row), 0);
        FillRow(area, row);
        if (event == events.end()) continue;
        if (area.isClicked()) Open(*event);
        ++event;
    }
    glColor4f(1, 1, 1, 1);
}

/// Prints an event's date.
/// Deliberate: an appointment is today's by its day number alone, whatever the month.
void PrintDate(const Event& event, float y) {
    constexpr float kX = 283.5F;
    const bool today =
        event.kind == kWeekly ? event.wday == frame_time.tm_wday : event.date.day == frame_time.tm_mday;
    if (event.kind == kReminder) {
        glPrintText(kX, y, kTextSize, true, "promemoria");
    } else if (today) {
        glPrintText(kX, y, kTextSize, true, "Oggi");
    } else if (event.kind == kWeekly) {
        glPrintText(kX, y, kTextSize, true, "ogni %s", GetWdayStr(event.wday));
    } else {
        glPrintText(kX, y, kTextSize, true, "%d/%d/%d", event.date.day, event.date.month, event.date.year);
    }
}

void PrintTime(const Event& event, float y) {
    constexpr float kX = 390;
    if (event.kind == kReminder) {
        glPrintText(kX, y, kTextSize, true, "/");
    } else {
        glPrintText(kX, y, kTextSize, true, "%d:%d", event.time.hour, event.time.minute);
    }
}

void PrintEvents() {
    auto event = FirstShown();
    for (int row = 0; row < kRows && event != events.end(); ++row, ++event) {
        const float y = RowPlace(row).y - 9;
        const std::string name = NameOf(*event);
        glPrintText(18, y, kTextSize, false, "%s", name.empty() ? "evento senza nome" : name.c_str());
        PrintDate(*event, y);
        PrintTime(*event, y);
    }
}

/// Draws a scroll arrow, grey where there is nothing to scroll to, white elsewhere, also under the pointer;
/// returns whether it is clicked.
bool ShowScrollArrow(const ButtonPlace& place, unsigned int texture, bool live) {
    const Button arrow = ButtonAt(place, texture);
    const float grey = live ? 1.0F : 0.5F;
    glColor4f(grey, grey, grey, 1);
    arrow.Display(false);
    glColor4f(1, 1, 1, 1);
    return arrow.isClicked();
}

void ShowScrollArrows() {
    if (ShowScrollArrow(kUpArrow, button_arrow_u, event_list.swap >= 1))
        event_list.swap = std::max(event_list.swap - 1, 0);
    if (ShowScrollArrow(kDownArrow, button_arrow_d, Size() - event_list.swap >= kRows + 1)) {
        ++event_list.swap;
        ClampScroll();
    }
}

}  // namespace

void EventList() {
    DrawTabs(button[kUnchecked]);
    ShowAddButton();
    ClampScroll();
    ShowCloseButton();
    ShowRows();
    glPrintText(372, 436.5F, kTextSize, true, "aggiungi");
    SortEvents();
    PrintEvents();
    ShowScrollArrows();
}
