// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>

#include "engine/date_key.h"
#include "engine/local_time.h"

std::list<ListedEvent> events;
ListedEvent* edit_event = nullptr;

namespace {

char wdaystr[5];

constexpr const char* kWeekdays[] = {"dom", "lun", "mar", "merc", "giov", "ven", "sab"};

/// Returns the number as an int, or the nearest there is: stored dates may hold anything.
int Saturated(std::int64_t number) {
    constexpr std::int64_t kLowest = std::numeric_limits<int>::min();
    constexpr std::int64_t kHighest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, kLowest, kHighest));
}

/// Returns by how many days the order shifts an event's stored date: for a weekly event, from today to its
/// weekday.
/// Deliberate: a weekday gone by wraps with 6, not 7.
std::int64_t DaysAhead(const Event& event, int today) {
    if (event.kind != kWeekly) return 0;
    const std::int64_t days = std::int64_t{event.wday} - today;
    return days < 0 ? 6 + days : days;
}

/// Returns the minute stamp that an event is ordered by.
double OrderStamp(const Event& event, int today) {
    const int day = Saturated(event.date.day + DaysAhead(event, today));
    return ConvertDAM(day, event.date.month, event.date.year, event.time.hour, event.time.minute);
}

/// Returns whether sorting would change nothing. One pass, because it runs every frame.
///
/// sort_by_date calls each of two reminders the first, so a sort swaps them every time although their order
/// is as good as the other. So it is not asked: an order is accepted when the stamps never fall, with those
/// of reminders lower than any other.
bool IsAccepted(const std::list<ListedEvent>& list) {
    constexpr double kFirst = -std::numeric_limits<double>::infinity();
    const int today = LocalTime().tm_wday;
    double previous = kFirst;
    for (const Event& event : list) {
        const double stamp = event.kind == kReminder ? kFirst : OrderStamp(event, today);
        if (stamp < previous) return false;
        previous = stamp;
    }
    return true;
}

}  // namespace

Event::Event()
    : name{}, description{}, kind(kAppointment), repeat(0), elapsed(0), warned_60(0), warned_30(0), done(0) {
    const std::tm& now = LocalTime();
    wday = now.tm_wday;
    date.day = now.tm_mday;
    date.month = now.tm_mon + 1;
    date.year = now.tm_year + 1900;
    time.hour = now.tm_hour;
    time.minute = now.tm_min;
    time.minute = 0;  // Deliberate: in two steps; a fresh event starts on the full hour.
}

const char* GetWdayStr(int wday) {
    std::fill(std::begin(wdaystr), std::end(wdaystr), '\0');
    if (wday >= 0 && wday < static_cast<int>(std::size(kWeekdays))) {
        std::snprintf(wdaystr, sizeof wdaystr, "%s", kWeekdays[wday]);
    }
    return wdaystr;
}

bool sort_by_date(const Event& a, const Event& b) {
    if (a.kind == kReminder) return true;
    if (b.kind == kReminder) return false;
    const int today = LocalTime().tm_wday;
    return OrderStamp(b, today) > OrderStamp(a, today);
}

void SortEvents() {
    if (!IsAccepted(events)) events.sort(sort_by_date);
}

std::string NameOf(const Event& event) {
    return {event.name, strnlen(event.name, kNameBytes)};
}

std::string DescriptionOf(const Event& event) {
    return {event.description, strnlen(event.description, kDescriptionBytes)};
}
