// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/notifications.h"

#include <GL/gl.h>

#include <cmath>

#include "app/character.h"
#include "app/shell.h"
#include "app/textures.h"
#include "calendar/editor.h"
#include "calendar/events.h"
#include "calendar/store.h"
#include "engine/Button.h"
#include "engine/MacEngine.h"
#include "engine/Sound.h"
#include "quiz/dialog.h"

int n_notify = 0;
bool new_notify = false;

namespace {

constexpr float kLongAgo = 999;            ///< seconds
constexpr float kSoundPeriodSeconds = 35;  ///< from one sound of a pending notice to the next

/// Seconds since the sound of a notice was last played; long ago where nothing is due.
float play_sfx_te = kLongAgo;

/// Returns how far button and badge have bobbed up, with the thought bubble, canvas units.
float Bob() {
    return 3.5F * std::sin(4 * character.bt);
}

// ---- The pass ----

/// Counts an event as due. The last one counted is the one that the button opens.
void CountDue(Event& event) {
    new_notify = true;
    edit_event = &event;
    ++n_notify;
}

/// Returns whether a reminder's period has run out. Only the longest counts its last instant, which is meant.
bool IsReminderDue(const Event& event) {
    switch (event.repeat) {
        case 0:
            return event.elapsed > 3600;
        case 1:
            return event.elapsed > 7200;
        case 2:
            return event.elapsed >= 10800;
        default:
            return false;
    }
}

/// Returns whether an event has come, or is so near that a notice is outstanding.
bool IsDue(const Event& event) {
    const double minutes = MinutesToDue(event, frame_time);
    return minutes <= 0 || (minutes <= 30 && event.warned_30 == 0) || (minutes <= 60 && event.warned_60 == 0);
}

void CountReminders() {
    for (auto at = events.rbegin(); at != events.rend(); ++at) {
        Event& event = *at;
        if (event.kind != kReminder) continue;
        event.elapsed += global_time;
        if (IsReminderDue(event)) CountDue(event);
    }
}

/// Counts appointments and weekly events; a weekly event that was acknowledged is armed again on any other
/// day. Returns whether one was.
bool CountAppointments() {
    bool changed = false;
    for (auto at = events.rbegin(); at != events.rend(); ++at) {
        Event& event = *at;
        if (event.done == 0) {
            if (IsDue(event)) CountDue(event);
        } else if (event.kind == kWeekly && event.wday != frame_time.tm_wday) {
            event.done = 0;
            changed = true;
        }
    }
    return changed;
}

/// Walks the list from back to front, so that the foremost due event is the one to be opened, appointments
/// and weekly events before reminders.
void FindDueEvents() {
    n_notify = 0;
    new_notify = false;
    SortEvents();
    CountReminders();
    if (CountAppointments()) SaveEvents();
}

// ---- Button and badge ----

void OpenEvent() {
    const bool reminder = edit_event->kind == kReminder;
    menu_case_id = reminder ? 1 : 2;
    if (reminder) force_back_hm = true;
}

void OpenQuiz() {
    AudioEngine.kill_static(0);
    StopLaughing();
    menu_case_id = 3;
    AskQuestion();
}

/// Shows the button of a due event or of the quiz offer. With both it wears the offer's icon and opens the
/// event, which is meant.
void ShowNotificationButton() {
    const bool due = new_notify && edit_event != nullptr;
    if (!due && !spawn_question) return;
    const Button bell(icns[spawn_question ? 5 : 6], 435, 440 + Bob(), 40, 40);
    bell.Display(true);
    if (!bell.isClicked()) return;
    if (due) {
        OpenEvent();
    } else {
        OpenQuiz();
    }
}

/// Sounds while something is due, at once and then every 35 seconds. Also with sound switched off, which is
/// meant: a notice is not to be missed.
void SoundNotice() {
    if (n_notify < 1) {
        play_sfx_te = kLongAgo;
        return;
    }
    play_sfx_te += global_time;
    if (play_sfx_te <= kSoundPeriodSeconds) return;
    AudioEngine.spawn_static(0, "notify.wav", false);
    play_sfx_te = 0;
}

void ShowBadge() {
    if (n_notify < 1) return;
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
    glPushMatrix();
    glTranslatef(194, 145 + Bob(), 0);
    glBindTexture(GL_TEXTURE_2D, notify_circle);
    glColor4f(0.85F, 0.85F, 0.85F, 1);
    DrawRect(40, 40, 0);
    glColor4f(1, 1, 1, 1);
    glPopMatrix();
    glPrintText(459, 401 + Bob(), 10, true, "%d", n_notify);
}

}  // namespace

void Notifications() {
    FindDueEvents();
    ShowNotificationButton();
    SoundNotice();
    ShowBadge();
}
