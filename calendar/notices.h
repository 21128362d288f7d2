// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The rule of notices: when an event is due, and what makes it quiet again.
//
// An appointment or a weekly event is announced an hour before, half an hour before and at its time; a
// reminder each time its period has run out. Four fields of an event remember what has been announced. This
// is their life ("-" leaves a field alone):
//
//     what happens             | warned_60     | warned_30     | done                  | elapsed
//     -------------------------+---------------+---------------+-----------------------+------------------
//     Event()                  | 0             | 0             | 0                     | 0
//     StartReminder, at start  | -             | -             | -                     | longest period (1)
//     CountReminder, per frame | -             | -             | -                     | + frame (1)
//     Rearm, per frame         | -             | -             | 0 on another day (2)  | -
//     MarkTold, in the view    | 1 up to 60 min| 1 up to 30 min| 1 below 0 min         | -
//     TakeBack, in the editor  | 0 above 60 min| 0 above 30 min| -                     | -
//     AnnounceAgain, by arrows | -             | -             | 0                     | -
//     ConfirmReminder          | -             | -             | -                     | 0
//
//     (1) reminders only   (2) weekly events only
//
// Deliberate: a weekly event that is viewed only during its own minute is marked as told but not as done, so
// it is due again as soon as the owl is back. (An appointment is removed when its view is closed.)
// Deliberate: Rearm leaves both warnings set, so that they come again only when the editor takes them back.
#pragma once

#include <cstdint>
#include <ctime>
#include <iterator>

#include "calendar/events.h"

/// An announcement ahead of time. A third one can keep its mark in Event::filler, which is spare.
struct LeadTime {
    double minutes;             ///< so long before the event's time
    std::uint8_t Event::*told;  ///< the mark that it has been given
};

inline constexpr LeadTime kLeadTimes[] = {
    {60, &Event::warned_60},
    {30, &Event::warned_30},
};

/// How often a reminder comes.
struct Repeat {
    float seconds;       ///< its period
    bool inclusive;      ///< whether it is due at the period's last instant, or only after it
    const char* period;  ///< in words
};

/// The values of Event::repeat. Deliberate: only the three-hour period is inclusive. The longest must be: at
/// start every reminder has waited just that long, and is due at once.
inline constexpr Repeat kRepeats[] = {
    {3600, false, "ogni ora"},
    {7200, false, "ogni 2 ore"},
    {10800, true, "ogni 3 ore"},
};

inline constexpr std::int32_t kLastRepeat = static_cast<std::int32_t>(std::size(kRepeats)) - 1;

/// Returns the row of kRepeats for a reminder, or null where its number has none: such a reminder is never
/// due.
const Repeat* RepeatOf(const Event& event);

/// A moment of the local time. Made once for all events that are asked about.
struct Moment {
    Moment(const std::tm& local);

    int day, month, year;  ///< as in Date
    int wday;              ///< 0 = Sunday
    double stamp;          ///< in minutes (engine/date_key.h)
};

/// Returns the minutes from a moment to an appointment, or to a weekly event on its weekday; 999
/// for everything else. Negative once it has passed.
double MinutesToDue(const Event& event, const Moment& now);

// ---- Due or not ----

/// Returns whether a reminder's period has run out; false for other kinds.
bool IsReminderDue(const Event& event);

/// Returns whether an appointment or weekly event has come and is not done, or is so near that an
/// announcement is outstanding; false for reminders.
bool IsDatedEventDue(const Event& event, const Moment& now);

// ---- What happens to an event ----

/// Makes a reminder due at once; leaves other kinds alone.
void StartReminder(ListedEvent& event);

/// Lets a reminder have waited `seconds` longer; leaves other kinds alone. However short the frames and long
/// the wait, `elapsed` is the nearest float of their sum.
void CountReminder(ListedEvent& event, float seconds);

/// Lets a reminder's period begin anew, whatever the kind.
void ConfirmReminder(ListedEvent& event);

/// Marks what the user has been told by seeing the event so many minutes before its time.
void MarkTold(Event& event, double minutes);

/// Takes back the announcements of an event that has been moved to so many minutes ahead.
void TakeBack(Event& event, double minutes);

/// Lets an event that was done be announced again.
void AnnounceAgain(Event& event);

/// Lets a weekly event that was done be announced again on any other day than its own. Returns whether that
/// changed it.
bool Rearm(Event& event, const Moment& now);
