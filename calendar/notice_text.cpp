// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/notice_text.h"

#include <cmath>
#include <cstdio>

#include "engine/plain_text.h"

namespace {

/// Further away the minutes are not told, as in the view.
constexpr double kLongestTold = 60;

/// Returns the time with its preposition. One o'clock is "l'una", the only hour in the singular.
std::string AtTime(const Time& time) {
    char text[64];
    const char* preposition = time.hour == 1 ? "all'" : "alle ";
    std::snprintf(text, sizeof text, "%s%d:%02d", preposition, time.hour, time.minute);
    return text;
}

/// Returns how far away so many minutes are, behind a comma; nothing where that is not told.
std::string Distance(double minutes) {
    if (std::abs(minutes) > kLongestTold) return "";
    const int count = static_cast<int>(std::abs(minutes));
    if (count == 0) return ", adesso";
    const std::string length = count == 1 ? "un minuto" : std::to_string(count) + " minuti";
    return minutes > 0 ? ", tra " + length : ", " + length + " fa";
}

std::string DayOf(const Date& date, const Moment& now) {
    if (date.day == now.day && date.month == now.month && date.year == now.year) return "Oggi";
    char text[64];
    std::snprintf(text, sizeof text, "%d/%d/%d", date.day, date.month, date.year);
    return text;
}

std::string AppointmentTime(const Event& event, const Moment& now) {
    return DayOf(event.date, now) + " " + AtTime(event.time) + Distance(MinutesToDue(event, now));
}

std::string WeeklyTime(const Event& event) {
    const std::string weekday = GetWdayStr(event.wday);
    return "ogni " + (weekday.empty() ? "settimana" : weekday) + " " + AtTime(event.time);
}

std::string ReminderTime(const Event& event) {
    const Repeat* repeat = RepeatOf(event);
    return repeat == nullptr ? "" : std::string("promemoria: ") + repeat->period;
}

}  // namespace

std::string NoticeTitle(const Event& event) {
    const std::string name = FirstLineOfText(NameOf(event));
    return name.empty() ? "evento senza nome" : name;
}

std::string NoticeTime(const Event& event, const Moment& now) {
    switch (event.kind) {
        case kAppointment:
            return AppointmentTime(event, now);
        case kWeekly:
            return WeeklyTime(event);
        case kReminder:
            return ReminderTime(event);
        default:
            return "";
    }
}

std::string NoticeText(const Event& event, const Moment& now) {
    const std::string description = FirstLineOfText(DescriptionOf(event));
    return NoticeTime(event, now) + (description.empty() ? "" : "\n" + description);
}
