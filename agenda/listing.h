// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The store's events as lines for people and as JSON for scripts, each with its next announcement.
#pragma once

#include <list>
#include <optional>
#include <string>

#include "agenda/wall_time.h"
#include "calendar/events.h"
#include "calendar/notices.h"

/// The days to list, both included; without one there is no limit on that side.
struct DayRange {
    std::optional<Day> from;
    std::optional<Day> to;
};

/// Returns whether an event takes place in a range: an appointment on its day, a weekly event where its
/// weekday is in it. A reminder always does.
bool TakesPlaceIn(const Event& event, const DayRange& range);

/// Returns an event's name for people to read: bytes that are not printable ASCII are question marks, and an
/// empty name is what the screen calls it.
std::string PrintableName(const Event& event);

/// Returns an event as one line of columns, each as wide as in every other line unless its contents are
/// wider: date, time, kind, next announcement, name. Bytes of the name that are not printable ASCII are
/// question marks.
std::string LineOf(const Event& event, const Moment& now);

/// Returns an event as a JSON object in one line (RFC 8259), texts as Latin-1.
std::string JsonOf(const Event& event, const Moment& now);
