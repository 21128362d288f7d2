// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/announcement.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "engine/date_key.h"

namespace {

constexpr std::int64_t kMinutesOfDay = 1440;
constexpr std::int64_t kMinutesOfMonth = 31 * kMinutesOfDay;
constexpr std::int64_t kMinutesOfYear = 12 * kMinutesOfMonth;

/// Returns how many minutes before its time an event's next announcement comes: the longest lead time that
/// has not been told.
double LeadOf(const Event& event) {
    double lead = 0;
    for (const LeadTime& candidate : kLeadTimes) {
        if (event.*candidate.told == 0) lead = std::max(lead, candidate.minutes);
    }
    return lead;
}

/// Returns the first minute of the calendar that is not before a stamp (engine/date_key.h). Where the stamp
/// is of a day that its month has not, that is the start of the next month.
WallTime FirstMinuteFrom(double stamp) {
    const auto since_first = static_cast<std::int64_t>(std::ceil(stamp)) - kMinutesOfMonth - kMinutesOfDay;
    std::int64_t year = since_first / kMinutesOfYear;
    if (since_first % kMinutesOfYear < 0) --year;
    const auto of_year = static_cast<int>(since_first - year * kMinutesOfYear);
    const auto of_day = static_cast<int>(of_year % kMinutesOfDay);
    const WallTime time = {{year + 1900, static_cast<int>(of_year / kMinutesOfMonth) + 1,
                            static_cast<int>(of_year % kMinutesOfMonth / kMinutesOfDay) + 1},
                           of_day / 60,
                           of_day % 60};
    const bool other_years = time.day.year < 1 || time.day.year > 9999;
    if (other_years || IsDay(time.day)) return time;
    return {{time.day.year, time.day.month + 1, 1}, 0, 0};  // never after December, which has 31 days
}

Announcement OfAppointment(const Event& event, const Moment& now) {
    if (event.done != 0) return {};
    const double stamp = now.stamp + MinutesToDue(event, now) - LeadOf(event);
    return {Announcement::When::kAt, FirstMinuteFrom(stamp)};
}

/// Returns the announcement of a weekly event that is not due. It comes on its own weekday only, on the day
/// itself at the earliest; and it was armed again on the day before.
Announcement OfWeekly(const Event& event, const Moment& now) {
    if (event.wday < 0 || event.wday > 6) return {};
    const double minute = std::max(event.time.hour * 60.0 + event.time.minute - LeadOf(event), 0.0);
    if (minute >= kMinutesOfDay) return {};
    int days = (event.wday - now.wday + 7) % 7;
    const double today = ConvertDAM(now.day, now.month, now.year, 0, 0) + minute;
    if (days == 0 && (event.done != 0 || today <= now.stamp)) days = 7;
    const Day day = DayAfter1970(DaysSince1970({now.year, now.month, now.day}) + days);
    return {Announcement::When::kAt, {day, static_cast<int>(minute) / 60, static_cast<int>(minute) % 60}};
}

}  // namespace

Announcement NextAnnouncement(const Event& event, const Moment& now) {
    if (event.kind == kReminder) {
        return {RepeatOf(event) == nullptr ? Announcement::When::kNever : Announcement::When::kAtStart, {}};
    }
    if (event.kind != kAppointment && event.kind != kWeekly) return {};
    if (IsDatedEventDue(event, now)) return {Announcement::When::kNow, {}};
    return event.kind == kAppointment ? OfAppointment(event, now) : OfWeekly(event, now);
}
