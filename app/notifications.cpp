// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/notifications.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstdint>

#include "app/attention.h"
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

/// What an examination of all events finds.
struct Findings {
    int due = 0;                      ///< how many events
    bool in_order = true;             ///< sorting would change nothing
    bool rearmed = false;             ///< a weekly event is armed again
    ListedEvent* dated = nullptr;     ///< the foremost due appointment or weekly event
    ListedEvent* reminder = nullptr;  ///< the foremost due reminder
    ListedEvent* new_due = nullptr;   ///< the foremost event that was not due in the pass before

    void AddDue(ListedEvent& event) {
        ++due;
        if (event.passes_due == 1 && new_due == nullptr) new_due = &event;
        ListedEvent*& foremost = event.kind == kReminder ? reminder : dated;
        if (foremost == nullptr) foremost = &event;
    }
};

bool IsDue(const Event& event, const Moment& now) {
    return IsReminderDue(event) || IsDatedEventDue(event, now);
}

/// Counts the passes that found an event due. Writes only what changes, because writing all events takes
/// longer than reading them.
void CountPass(ListedEvent& event, bool due) {
    const auto passes = static_cast<std::uint8_t>(due ? std::min(event.passes_due + 1, 2) : 0);
    if (event.passes_due != passes) event.passes_due = passes;
}

/// Lets reminders count, finds what is due, arms weekly events again, and checks the order: all in one walk,
/// because with many events its time is that of reading them from memory, in every frame.
Findings ExamineEvents(const Moment& now) {
    Findings findings;
    OrderCheck order;
    ReadAhead ahead;
    for (ListedEvent& event : events) {
        ahead.Visit(event);
        if (!order.Accepts(event)) findings.in_order = false;
        CountReminder(event, global_time);
        const bool due = IsDue(event, now);
        CountPass(event, due);
        if (due) findings.AddDue(event);
        if (Rearm(event, now)) findings.rearmed = true;
    }
    return findings;
}

/// Sorts the events and finds the foremost due ones anew. Nothing else depends on the order.
void SortAndFindForemost(Findings& findings, const Moment& now) {
    SortEvents();
    findings = {.due = 0, .in_order = true, .rearmed = findings.rearmed};
    ReadAhead ahead;
    for (ListedEvent& event : events) {
        ahead.Visit(event);
        if (IsDue(event, now)) findings.AddDue(event);
    }
}

/// Counts the due events, tells of the one whose falling due has raised their number, and chooses the one to
/// be opened: appointments and weekly events go before reminders.
void FindDueEvents() {
    const Moment now = frame_time;
    Findings findings = ExamineEvents(now);
    if (!findings.in_order) SortAndFindForemost(findings, now);
    const bool risen = findings.due > n_notify;
    n_notify = findings.due;
    if (risen && findings.new_due != nullptr) NoteRise(*findings.new_due);
    new_notify = findings.due > 0;
    if (new_notify) edit_event = findings.dated != nullptr ? findings.dated : findings.reminder;
    if (findings.rearmed) SaveEvents();
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
