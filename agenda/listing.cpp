// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/listing.h"

#include <algorithm>
#include <cstdio>

#include "agenda/announcement.h"
#include "agenda/record.h"

namespace {

constexpr const char* kKinds[] = {"appuntamento", "settimanale", "promemoria"};

const char* KindOf(const Event& event) {
    return event.kind >= kAppointment && event.kind <= kReminder ? kKinds[event.kind] : "sconosciuto";
}

/// Returns a text as printf makes it.
template <typename... Values>
std::string Print(const char* format, Values... values) {
    char text[200];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string InItalian(const Day& day) {
    return Print("%02d/%02d/%04lld", day.day, day.month, static_cast<long long>(day.year));
}

std::string InIso(const Day& day) {
    return Print("%04lld-%02d-%02d", static_cast<long long>(day.year), day.month, day.day);
}

std::string InIso(const WallTime& time) {
    return InIso(time.day) + Print("T%02d:%02d", time.hour, time.minute);
}

Day StoredDay(const Event& event) {
    return {event.date.year, event.date.month, event.date.day};
}

std::string TimeOf(const Event& event) {
    return Print("%02d:%02d", event.time.hour, event.time.minute);
}

/// Returns how many hours a reminder's period has; 0 for one that has none.
int HoursOf(const Event& event) {
    const Repeat* repeat = RepeatOf(event);
    return repeat == nullptr ? 0 : static_cast<int>(repeat->seconds) / 3600;
}

std::string DateColumn(const Event& event) {
    if (event.kind == kWeekly) return std::string("ogni ") + GetWdayStr(event.wday);
    if (event.kind != kReminder) return InItalian(StoredDay(event));
    const int hours = HoursOf(event);
    if (hours == 0) return "mai";
    return hours == 1 ? "ogni ora" : Print("ogni %d ore", hours);
}

std::string NoticeColumn(const Announcement& next) {
    switch (next.when) {
        case Announcement::When::kNow:
            return "adesso";
        case Announcement::When::kAtStart:
            return "all'avvio";
        case Announcement::When::kAt:
            return InItalian(next.time.day) + Print(" %02d:%02d", next.time.hour, next.time.minute);
        default:
            return "mai";
    }
}

/// Returns a text as a JSON string.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else {
            quoted += byte < ' ' || byte > '~' ? Print("\\u%04x", byte) : std::string(1, c);
        }
    }
    return quoted + '"';
}

std::string NoticeInJson(const Announcement& next) {
    switch (next.when) {
        case Announcement::When::kNow:
            return "\"adesso\"";
        case Announcement::When::kAtStart:
            return "\"avvio\"";
        case Announcement::When::kAt:
            return Quoted(InIso(next.time));
        default:
            return "null";
    }
}

}  // namespace

bool TakesPlaceIn(const Event& event, const DayRange& range) {
    if (event.kind == kReminder) return true;
    if (event.kind != kWeekly)
        return (!range.from || StoredDay(event) >= *range.from) &&
               (!range.to || StoredDay(event) <= *range.to);
    if (!range.from || !range.to) return true;
    const int days = (event.wday - WeekdayOf(*range.from) + 7) % 7;
    return event.wday >= 0 && event.wday <= 6 &&
           DaysSince1970(*range.from) + days <= DaysSince1970(*range.to);
}

std::string PrintableName(const Event& event) {
    std::string name = NameOf(event);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return name.empty() ? kUnnamed : name;
}

std::string LineOf(const Event& event, const Moment& now) {
    const std::string time = event.kind == kReminder ? "-" : TimeOf(event);
    return Print("%-10s  %-5s  %-12s  %-16s  %s", DateColumn(event).c_str(), time.c_str(), KindOf(event),
                 NoticeColumn(NextAnnouncement(event, now)).c_str(), PrintableName(event).c_str());
}

std::string JsonOf(const Event& event, const Moment& now) {
    std::string object = "{\"tipo\": " + Quoted(KindOf(event)) + ", \"nome\": " + Quoted(NameOf(event)) +
                         ", \"descrizione\": " + Quoted(DescriptionOf(event));
    if (event.kind == kReminder) {
        object += Print(", \"ogni_ore\": %d", HoursOf(event));
    } else {
        if (event.kind == kWeekly) object += Print(", \"giorno\": %d", event.wday);
        if (event.kind != kWeekly) object += ", \"data\": " + Quoted(InIso(StoredDay(event)));
        object += ", \"ora\": " + Quoted(TimeOf(event));
    }
    return object + ", \"prossimo_avviso\": " + NoticeInJson(NextAnnouncement(event, now)) + "}";
}
