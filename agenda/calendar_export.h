// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The store's events as an iCalendar file (RFC 5545). libical writes each component.
//
//     appointment   VEVENT at its day and time, without zone, since the owl goes by the clock on the wall
//     weekly event  VEVENT from the first such weekday on or after its stored date, FREQ=WEEKLY;BYDAY
//     reminder      VTODO with FREQ=HOURLY;INTERVAL. As a VEVENT it would fill every hour of every day in a
//                   calendar's view; as a task it stands there once.
//
// Alarms are those of the owl: the lead times of calendar/notices.h and the time itself.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "calendar/events.h"

/// An event that iCalendar cannot hold, and why, in Italian.
struct NotExported {
    std::string name;
    std::string why;
};

/// Takes a part of the file. Returns whether there may be more.
using Sink = std::function<bool(const std::string&)>;

/// Writes the events, in their order, to `sink`; `saved` is when they were saved, in seconds since the start
/// of 1970, so that the same store gives the same file. Returns what could not be written.
std::vector<NotExported> ExportEvents(const std::list<ListedEvent>& list, std::int64_t saved,
                                      const Sink& sink);
