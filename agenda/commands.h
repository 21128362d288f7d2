// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What ulmaro-agenda does: its four commands, their messages and exit statuses.
#pragma once

#include <string>
#include <vector>

/// The exit statuses, which the manual page lists.
enum Status {
    kDone = 0,
    kFailed = 1,       ///< the events could not be read or saved, or a file not be written
    kWrongUse = 2,     ///< the arguments make no sense
    kBadFile = 3,      ///< a file to import cannot be read or is no iCalendar; nothing was changed
    kSomeLeftOut = 4,  ///< done, but for events that do not fit
    kDamaged = 5,      ///< `controlla` has found something
    kOwlRuns = 6,      ///< the owl runs, so nothing was changed
};

/// Does what the arguments ask for, the program's name left out. Returns the exit status.
int RunAgenda(const std::vector<std::string>& arguments);
