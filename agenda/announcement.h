// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// When an event will next be announced, by the rule of notices (calendar/notices.h), found without waiting
// for it.
#pragma once

#include "agenda/wall_time.h"
#include "calendar/events.h"
#include "calendar/notices.h"

/// The next announcement of an event by an owl that is awake all the time.
struct Announcement {
    enum class When {
        kNever,    ///< acknowledged, or the record is of no kind that is announced
        kNow,      ///< it is due
        kAtStart,  ///< a reminder: at every start of the owl, then in its period
        kAt,       ///< at `time`
    };

    When when = When::kNever;
    WallTime time;
};

/// Returns when an event will next be announced. `now` must be a day of the calendar.
Announcement NextAnnouncement(const Event& event, const Moment& now);
