// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What several tests of ulmaro-agenda need: events, the user's time zone, and calendars as text.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <list>
#include <string>
#include <vector>

#include "agenda/calendar_export.h"
#include "agenda/calendar_file.h"
#include "agenda/calendar_import.h"
#include "agenda/record.h"
#include "calendar/events.h"
#include "calendar/notices.h"

/// Lets the user live in a time zone for as long as it lives.
class InZone {
  public:
    explicit InZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    InZone(const InZone&) = delete;
    InZone& operator=(const InZone&) = delete;
    ~InZone() {
        unsetenv("TZ");
        tzset();
    }
};

inline Event Appointment(const std::string& name, const Day& day, int hour, int minute) {
    Event event;
    SetField(event.name, name);
    event.date = {day.day, day.month, static_cast<std::int32_t>(day.year)};
    event.time = {hour, minute};
    event.wday = IsDay(day) ? WeekdayOf(day) : 0;
    return event;
}

inline Event Weekly(const std::string& name, int wday, int hour, int minute) {
    Event event;
    SetField(event.name, name);
    event.kind = kWeekly;
    event.wday = wday;
    event.time = {hour, minute};
    return event;
}

inline Event Reminder(const std::string& name, int repeat) {
    ListedEvent event;
    SetField(event.name, name);
    event.kind = kReminder;
    event.repeat = repeat;
    StartReminder(event);
    return event;
}

inline std::string BytesOf(const Event& event) {
    return {reinterpret_cast<const char*>(&event), sizeof event};
}

/// Returns a calendar with what `components` say.
inline std::string Calendar(const std::string& components) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//IT\r\n" + components + "END:VCALENDAR\r\n";
}

/// Returns an event's component of these lines, which `\n` separates.
inline std::string Vevent(const std::string& lines) {
    std::string component = "BEGIN:VEVENT\r\n";
    for (const char c : lines) component += c == '\n' ? "\r\n" : std::string(1, c);
    return component + "\r\nEND:VEVENT\r\n";
}

/// Returns the export of some events.
inline std::string ExportOf(const std::vector<Event>& some) {
    const std::list<ListedEvent> list(some.begin(), some.end());
    std::string text;
    ExportEvents(list, 1'700'000'000, [&](const std::string& part) {
        text += part;
        return true;
    });
    return text;
}

inline const WallTime kSomeNow = {{2026, 11, 22}, 10, 30};

/// Returns what becomes of a calendar's text in a store with these events; a bad text fails the test.
inline Import ImportOf(const std::string& text, const std::vector<Event>& store = {},
                       const ImportSettings& settings = {kSomeNow, {}}) {
    const std::list<ListedEvent> list(store.begin(), store.end());
    CalendarFile file;
    const auto problem = ReadCalendarFile(text, file);
    EXPECT_FALSE(problem) << "line " << problem->line << ": " << problem->what;
    return Importer(list, settings).Take(file);
}
