// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The time zones that an iCalendar file names (TZID): those of the system by their names, those that the file
// describes itself, and those of Windows by a table, in this order.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <libical/ical.h>

#include "agenda/ical_types.h"
#include "agenda/wall_time.h"

/// The zones that the times of one file may be in.
class TimeZones {
  public:
    /// Takes a zone that the file describes, a VTIMEZONE. One without TZID, or one whose rules are not
    /// yearly, as no zone's are, is not taken: its times count as those of an unknown zone, unless the system
    /// has it.
    void Add(Component description);

    /// Returns the seconds since the start of 1970 in UTC at which a clock in the zone shows a time; nothing
    /// for an unknown zone. The day must be one. A time that the clock shows twice is the first of the two;
    /// one that it leaves out is what a clock shows that was not put forward.
    std::optional<std::int64_t> Seconds(const std::string& name, const WallTime& time);

    /// Returns whether a clock in the zone never shows a time, because it is put forward. The day must be
    /// one.
    bool LeavesOut(const std::string& name, const WallTime& time);

  private:
    struct FreeZone {
        void operator()(icaltimezone* zone) const { icaltimezone_free(zone, 1); }
    };

    icaltimezone* Find(const std::string& name);

    std::map<std::string, std::unique_ptr<icaltimezone, FreeZone>> described_;
    std::map<std::string, icaltimezone*> found_;  ///< by any name that was asked for; null for an unknown one
};
