// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/notices.h"

#include <algorithm>

#include "engine/compensated_sum.h"
#include "engine/date_key.h"

namespace {

/// What MinutesToDue says of events that do not come today.
constexpr double kFarAway = 999;

constexpr float LongestPeriod() {
    float longest = 0;
    for (const Repeat& repeat : kRepeats) longest = std::max(longest, repeat.seconds);
    return longest;
}

/// Returns whether a reminder that has waited the longest period is due, whatever its repeat.
constexpr bool LongestIsInclusive() {
    return std::all_of(std::begin(kRepeats), std::end(kRepeats), [](const Repeat& repeat) {
        return repeat.seconds < LongestPeriod() || repeat.inclusive;
    });
}

static_assert(LongestIsInclusive(), "at start every reminder is due");

void SetElapsed(ListedEvent& event, float seconds) {
    event.elapsed = seconds;
    event.lost = 0;
}

}  // namespace

const Repeat* RepeatOf(const Event& event) {
    return event.repeat >= 0 && event.repeat <= kLastRepeat ? &kRepeats[event.repeat] : nullptr;
}

Moment::Moment(const std::tm& local)
    : day(local.tm_mday),
      month(local.tm_mon + 1),
      year(local.tm_year + 1900),
      wday(local.tm_wday),
      stamp(ConvertDAM(day, month, year, local.tm_hour, local.tm_min)) {}

double MinutesToDue(const Event& event, const Moment& now) {
    const Date& date = event.date;
    const Time& time = event.time;
    if (event.kind == kAppointment)
        return ConvertDAM(date.day, date.month, date.year, time.hour, time.minute) - now.stamp;
    if (event.kind != kWeekly || event.wday != now.wday) return kFarAway;
    return ConvertDAM(now.day, now.month, now.year, time.hour, time.minute) - now.stamp;
}

bool IsReminderDue(const Event& event) {
    const Repeat* repeat = RepeatOf(event);
    if (event.kind != kReminder || repeat == nullptr) return false;
    return repeat->inclusive ? event.elapsed >= repeat->seconds : event.elapsed > repeat->seconds;
}

bool IsDatedEventDue(const Event& event, const Moment& now) {
    if (event.done != 0) return false;
    const double minutes = MinutesToDue(event, now);
    return minutes <= 0 ||
           std::any_of(std::begin(kLeadTimes), std::end(kLeadTimes), [&](const LeadTime& lead) {
               return minutes <= lead.minutes && event.*lead.told == 0;
           });
}

void StartReminder(ListedEvent& event) {
    if (event.kind == kReminder) SetElapsed(event, LongestPeriod());
}

void CountReminder(ListedEvent& event, float seconds) {
    if (event.kind == kReminder) AddCompensated(event.elapsed, event.lost, seconds);
}

void ConfirmReminder(ListedEvent& event) {
    SetElapsed(event, 0);
}

void MarkTold(Event& event, double minutes) {
    if (minutes < 0) event.done = 1;
    for (const LeadTime& lead : kLeadTimes) {
        if (minutes <= lead.minutes) event.*lead.told = 1;
    }
}

void TakeBack(Event& event, double minutes) {
    for (const LeadTime& lead : kLeadTimes) {
        if (minutes > lead.minutes) event.*lead.told = 0;
    }
}

void AnnounceAgain(Event& event) {
    event.done = 0;
}

bool Rearm(Event& event, const Moment& now) {
    if (event.done == 0 || event.kind != kWeekly || event.wday == now.wday) return false;
    AnnounceAgain(event);
    return true;
}
