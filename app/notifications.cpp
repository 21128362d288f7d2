// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/notifications.h"

#include <GL/gl.h>

#include <algorithm>

#include "app/owl.h"
#include "app/sounds.h"
#include "app/state.h"
#include "app/textures.h"
#include "calendar/editor.h"
#include "calendar/events.h"
#include "calendar/notices.h"
#include "calendar/store.h"
#include "engine/Button.h"
#include "engine/screen.h"
#include "engine/text.h"
#include "quiz/dialog.h"

NotificationState notifications;

namespace {

constexpr float kSoundPeriodSeconds = 35;  ///< from one sound of a notice to the next

/// Where the button hangs, canvas units; the badge and its count hang on it, and all three bob with the
/// bubble.
constexpr float kBellX = 435;
constexpr float kBellY = 440;
constexpr float kBadgeX = kBellX + 30;
constexpr float kBadgeY = kBellY - 30;
constexpr float kCountX = kBellX + 24;  ///< the middle of the count's line
constexpr float kCountY = kBellY - 39;  ///< its lower edge

// ---- The pass ----

/// Counts an event as due. The last one counted is the one that the button opens.
void CountDue(ListedEvent& event) {
    new_notify = true;
    edit_event = &event;
    ++n_notify;
}

void CountReminders() {
    std::for_each(events.rbegin(), events.rend(), [](ListedEvent& event) {
        CountReminder(event, global_time);
        if (IsReminderDue(event)) CountDue(event);
    });
}

/// Counts appointments and weekly events, and arms weekly ones again. Returns whether one was.
bool CountDatedEvents() {
    bool rearmed = false;
    std::for_each(events.rbegin(), events.rend(), [&](ListedEvent& event) {
        if (IsDatedEventDue(event, frame_time)) CountDue(event);
        if (Rearm(event, frame_time)) rearmed = true;
    });
    return rearmed;
}

/// Walks the list from back to front, so that the foremost due event is the one to be opened, appointments
/// and weekly events before reminders.
void FindDueEvents() {
    n_notify = 0;
    new_notify = false;
    SortEvents();
    CountReminders();
    if (CountDatedEvents()) SaveEvents();
}

// ---- Button, sound and badge ----

void OpenEvent() {
    const bool reminder = edit_event->kind == kReminder;
    menu_case_id = reminder ? kEditorScreen : kViewScreen;
    if (reminder) force_back_hm = true;
}

void OpenQuiz() {
    Silence();
    StopLaughing();
    menu_case_id = kQuizScreen;
    AskQuestion();
}

/// Shows the button of a due event or of the quiz offer.
/// Deliberate: with both it wears the offer's icon and opens the event.
void ShowNotificationButton() {
    const bool due = new_notify && edit_event != nullptr;
    if (!due && !spawn_question) return;
    const Button bell(icns[spawn_question ? kOfferIcon : kNoticeIcon], kBellX, kBellY + ThoughtBob(), 40, 40);
    bell.Display(true);
    if (!bell.isClicked()) return;
    if (due) {
        OpenEvent();
    } else {
        OpenQuiz();
    }
}

/// Sounds while something is due, at once and then every 35 seconds.
void SoundNotice() {
    float& since_sound = notifications.play_sfx_te;
    if (n_notify < 1) {
        since_sound = kLongAgo;
        return;
    }
    since_sound += global_time;
    if (since_sound <= kSoundPeriodSeconds) return;
    PlayNotice("notify.wav");
    since_sound = 0;
}

void ShowBadge() {
    if (n_notify < 1) return;
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
    glPushMatrix();
    glTranslatef(kBadgeX - kOwlX, kBadgeY - kOwlY + ThoughtBob(), 0);
    glBindTexture(GL_TEXTURE_2D, notify_circle);
    glColor4f(0.85F, 0.85F, 0.85F, 1);
    DrawRect(40, 40, 0);
    glColor4f(1, 1, 1, 1);
    glPopMatrix();
    glPrintText(kCountX, kCountY + ThoughtBob(), 10, true, "%d", n_notify);
}

}  // namespace

void Notifications() {
    FindDueEvents();
    ShowNotificationButton();
    SoundNotice();
    ShowBadge();
}
