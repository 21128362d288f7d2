// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The types of libical that reading and writing a calendar file share, as this program handles them.
#pragma once

#include <memory>

#include <libical/ical.h>

#include "agenda/wall_time.h"

/// Frees what libical has made.
struct FreeComponent {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

/// Returns a time of no zone: what a clock on the wall shows.
inline icaltimetype IcalTime(const WallTime& time) {
    icaltimetype result = icaltime_null_time();
    result.year = static_cast<int>(time.day.year);
    result.month = time.day.month;
    result.day = time.day.day;
    result.hour = time.hour;
    result.minute = time.minute;
    return result;
}
