// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The calendar's events: the record that is edited on screen, watched for due times and stored byte for byte,
// and the order in which events are shown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <list>
#include <string>

/// A day. A fresh one is all zero.
struct Date {
    std::int32_t day = 0;    ///< of the month, 1 .. 31
    std::int32_t month = 0;  ///< 1 .. 12
    std::int32_t year = 0;   ///< full year
};

/// A time of day. A fresh one is midnight.
struct Time {
    std::int32_t hour = 0;    ///< 0 .. 23
    std::int32_t minute = 0;  ///< 0 .. 59
};

/// The values of Event::kind. A file may hold others: such an event is listed and never due.
enum EventKind { kAppointment = 0, kWeekly = 1, kReminder = 2 };

constexpr int kNameBytes = 20;
constexpr int kDescriptionBytes = 512;

/// One event. The store writes its memory image, so order, widths and length of the fields are a file format.
struct Event {
    /// Makes an event for today on the current full hour: an appointment without name, not yet announced.
    Event();

    char name[kNameBytes];                ///< ends with a NUL, or at its end
    char description[kDescriptionBytes];  ///< ends with a NUL, or at its end
    Date date;                            ///< of an appointment
    Time time;                            ///< of an appointment or weekly event
    std::int32_t wday;                    ///< of a weekly event, 0 = Sunday .. 6 = Saturday
    std::int32_t kind;                    ///< one of EventKind
    std::int32_t repeat;                  ///< of a reminder: the row of kRepeats (notices.h)
    float elapsed;                        ///< of a reminder: seconds since it was last confirmed
    std::uint8_t warned_60;               ///< announced an hour before (notices.h); not 0 counts as set
    std::uint8_t warned_30;               ///< announced half an hour before
    std::uint8_t done;                    ///< the occurrence has been reached and acknowledged
    std::uint8_t filler = 0;              ///< completes the record; spare
};

static_assert(sizeof(Event) == 572, "the store's records have 572 bytes");

/// An event in the list: the record, which alone is stored, and what is known of it besides.
struct ListedEvent : Event {
    ListedEvent() = default;
    ListedEvent(const Event& event) : Event(event) {}

    std::uint8_t passes_due = 0;  ///< how many passes of the notices in a row found it due, at most 2
    double lost = 0;  ///< what the float `elapsed` lacks of the exact sum (engine/compensated_sum.h), seconds
};

/// All events in the order of the screen. Written by the store, the editor and the sorting.
extern std::list<ListedEvent> events;

/// The event that the editor shows and the notification button opens, an element of `events` or null.
extern ListedEvent* edit_event;

/// Returns the short Italian name of a weekday, 0 = Sunday .. 6 = Saturday; any other number gives an empty
/// text. The text stands in one buffer that the next call overwrites.
const char* GetWdayStr(int wday);

/// Returns whether `a` must come before `b`: reminders first, then by date and time, a weekly event at its
/// next occurrence.
/// Deliberate: it is no strict ordering, for of two reminders each must come before the other.
/// Deliberate: a weekly event whose weekday has gone by stands one day before its next occurrence.
bool sort_by_date(const Event& a, const Event& b);

/// Fetches events from memory before a walk over `events` comes to them.
///
/// After a sort each event lies somewhere else, and the list tells of each only the next, so that a walk
/// waits for the memory at every event: with 100,000, four times as long as with this. So the way of the last
/// walk is kept, as a hint only: after a change of the list the first walk fetches some in vain, and puts the
/// hint right.
class ReadAhead {
  public:
    /// Begins a walk at the front.
    ReadAhead();

    /// To be called with each event as the walk comes to it.
    void Visit(const ListedEvent& event);

  private:
    std::size_t visited_ = 0;
};

/// Tells, event by event from the front of a list, whether sorting would change nothing.
///
/// sort_by_date calls each of two reminders the first, so a sort swaps them every time although their order
/// is as good as the other. So it is not asked: an order is accepted when the stamps never fall, with those
/// of reminders lower than any other.
class OrderCheck {
  public:
    /// Begins a list, as it is to be ordered now.
    OrderCheck();

    /// Returns whether the event may follow the one asked before, or may be the first.
    bool Accepts(const Event& next);

  private:
    static constexpr double kFirst = -std::numeric_limits<double>::infinity();

    int today_;        ///< the weekday
    double previous_;  ///< the stamp of the event asked before
};

/// Sorts `events` by sort_by_date. An order that it already accepts is left alone, so that reminders do not
/// swap places from frame to frame.
void SortEvents();

/// Returns the name, up to its NUL or its end.
std::string NameOf(const Event& event);

/// Returns the description, up to its NUL or its end.
std::string DescriptionOf(const Event& event);
