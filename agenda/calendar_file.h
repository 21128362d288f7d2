// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What an iCalendar file (RFC 5545) says of its events, as far as the store can hold it. libical reads each
// component; this decides which lines it gets, keeps their numbers and takes the values out.
//
// Much of such a file is not looked at: places, people, categories, alarms. What is looked at must be right:
// a date that no calendar has, or a component without its end, makes the whole file a bad one.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agenda/time_zones.h"
#include "agenda/wall_time.h"

/// How often an event takes place.
enum class Repetition {
    kOnce,
    kWeekly,  ///< every week without end, on the days in Entry::weekdays
    kHourly,  ///< every Entry::hours hours without end
    kOther,   ///< why the store has no such event stands in Entry::why_other
};

/// A component of a file.
struct Entry {
    enum class Kind { kEvent, kTask, kJournal };

    int line = 0;  ///< in which it begins
    Kind kind = Kind::kEvent;
    std::string uid;          ///< empty where it has none
    std::string name;         ///< UTF-8
    std::string description;  ///< UTF-8
    std::string record;       ///< what an export keeps beside (agenda/kept_record.h)

    bool has_start = false;
    bool all_day = false;
    bool utc = false;  ///< the start is in UTC
    std::string zone;  ///< the start's; empty for UTC and for a time of any zone
    WallTime start;    ///< on the clock of its zone

    Repetition repetition = Repetition::kOnce;
    int hours = 0;
    bool weekdays[7] = {};  ///< from Sunday on, in the start's zone
    const char* why_other = "";

    bool cancelled = false;
    std::optional<Day> last_exception;  ///< the last day on which it does not take place as the rule says
    std::optional<Day> replaces;        ///< the day of the occurrence of another event that it replaces
};

/// What is wrong with a file.
struct FileProblem {
    int line = 0;
    std::string what;  ///< in Italian
};

/// What a file holds.
struct CalendarFile {
    std::vector<Entry> entries;  ///< in the order of the file
    TimeZones zones;
};

/// Reads a file's bytes. Returns what is wrong with the first bad line, or nothing; then `file` holds all its
/// events, tasks and journal entries.
std::optional<FileProblem> ReadCalendarFile(std::string_view bytes, CalendarFile& file);
