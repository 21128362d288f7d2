// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/attention.h"

#include "app/state.h"
#include "app/window.h"
#include "calendar/notice_text.h"
#include "calendar/store.h"

AttentionState attention;

namespace {

/// Who has seen the window for less than this since a rise has not seen the rise, nanoseconds.
constexpr std::uint64_t kGlimpse = 1'000'000'000;

const DesktopNotice kUnsavedNotice = {"Eventi non salvati",
                                      "Non riesco a salvare gli eventi: riprovo da solo finche' ci riesco.",
                                      "x-ulmaro.store.error"};

void DemandAttentionWhileDue() {
    const bool wanted = n_notify > 0 && !IsWindowFocused();
    if (attention.demanded == wanted) return;
    attention.demanded = wanted;
    DemandAttention(wanted);
}

/// Forgets the notice of a due event where nothing is due any more or somebody sees the window, and has seen
/// it since the rise for longer than a glimpse.
void ForgetSeen() {
    const bool glimpsed = attention.untold && window.last_frame - attention.risen_at < kGlimpse;
    if (n_notify > 0 && (!window.seen || glimpsed)) return;
    attention.due.reset();
    attention.untold = false;
}

NoticeTopic WantedTopic() {
    if (window.seen) return NoticeTopic::kNone;
    if (attention.due) return NoticeTopic::kDueEvent;
    return EventsAreUnsaved() ? NoticeTopic::kUnsaved : NoticeTopic::kNone;
}

/// Shows, replaces or closes the notice where another is wanted.
void KeepNotice() {
    ForgetSeen();
    const NoticeTopic topic = WantedTopic();
    const bool replaced = topic == NoticeTopic::kDueEvent && attention.untold;
    if (topic == attention.topic && !replaced) return;
    attention.topic = topic;
    switch (topic) {
        case NoticeTopic::kNone:
            return CloseNotice();
        case NoticeTopic::kUnsaved:
            return ShowNotice(kUnsavedNotice);
        case NoticeTopic::kDueEvent:
            break;
    }
    attention.untold = false;
    ShowNotice(*attention.due);
}

}  // namespace

void NoteRise(const Event& event) {
    attention.due = DesktopNotice{NoticeTitle(event), NoticeText(event, frame_time), "x-ulmaro.event.due"};
    attention.untold = true;
    attention.risen_at = window.frame_begin;
}

void KeepAttention() {
    DemandAttentionWhileDue();
    KeepNotice();
    if (ServeNotice()) RaiseWindow();
}
