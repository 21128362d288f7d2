// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Dates and times as a clock on the wall shows them, which is what the store holds, and the way between them
// and the seconds that all zones share.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

/// A day of the Gregorian calendar; none of them is checked.
struct Day {
    std::int64_t year = 0;
    int month = 0;  ///< 1 .. 12
    int day = 0;    ///< 1 .. 31

    auto operator<=>(const Day&) const = default;
};

/// A minute of a day.
struct WallTime {
    Day day;
    int hour = 0;
    int minute = 0;

    auto operator<=>(const WallTime&) const = default;
};

/// Returns whether the calendar has the day, in the years 1 to 9999.
bool IsDay(const Day& day);

/// Returns whether it is a time of a day, 00:00 to 23:59.
bool IsTime(int hour, int minute);

/// Returns the days from 1 January 1970 to a day; the day must be one (IsDay).
std::int64_t DaysSince1970(const Day& day);

/// Returns the day that lies so many days after 1 January 1970. Years beyond those of IsDay() are none.
Day DayAfter1970(std::int64_t days);

/// Returns the weekday of a day, 0 = Sunday; the day must be one.
int WeekdayOf(const Day& day);

/// Returns the seconds from 1 January 1970, 00:00, to a time, all on the same clock: no zone counts. The day
/// must be one.
std::int64_t SecondsSince1970(const WallTime& time);

/// Returns the time that lies so many seconds after 1 January 1970, 00:00, on the same clock.
WallTime TimeAfter1970(std::int64_t seconds);

/// Returns what the clocks of the user's time zone show so many seconds after the start of 1970 in UTC.
WallTime LocalWallTime(std::int64_t seconds);

/// Reads a day as an Italian or a computer writes it, "24/11/2026" or "2026-11-24". Returns whether it is
/// one.
bool ReadDay(const std::string& text, Day& day);

/// Reads a time of day, "9:05", "09:05" or an hour alone. Returns whether it is one.
bool ReadTime(const std::string& text, int& hour, int& minute);
