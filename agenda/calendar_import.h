// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Which events of iCalendar files the store takes, and as what: one-off and plain weekly events, at the time
// that the clock on the user's wall shows, with texts as the owl would have typed them. What the store cannot
// hold is left out with its reason; nothing is guessed.
//
// The same event never comes twice: an event that the store has already, from an earlier import or typed by
// hand, is not added. Two events of one file that are alike but for their UID are two.
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "agenda/calendar_file.h"
#include "calendar/events.h"

/// The most bytes that the editor lets a user type.
inline constexpr std::size_t kTypedNameBytes = 17;
inline constexpr std::size_t kTypedDescriptionBytes = 345;

/// Stands between a name that was cut, in full, and the description behind it.
inline constexpr char kAfterFullName[] = " - ";

/// What the user has chosen, and when.
struct ImportSettings {
    WallTime now;
    std::optional<std::pair<int, int>> all_day_time;  ///< hour and minute for events of a whole day
};

/// An event that does not fit.
struct LeftOut {
    int line = 0;
    std::string name;  ///< as the owl writes it
    std::string why;   ///< in Italian
};

/// What becomes of one file.
struct Import {
    std::vector<ListedEvent> added;  ///< in the order of the file
    int known = 0;                   ///< how many the store has already
    std::vector<LeftOut> left_out;
};

/// Takes files one after the other for one store.
class Importer {
  public:
    /// `list` are the events that the store has.
    Importer(const std::list<ListedEvent>& list, const ImportSettings& settings);

    /// Works out what becomes of a file. What it adds is known to those that follow.
    Import Take(CalendarFile& file);

  private:
    ImportSettings settings_;
    std::unordered_map<std::string, int> have_;  ///< how many of an identity there are (agenda/record.h)
};
