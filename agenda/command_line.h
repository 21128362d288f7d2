// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the user asks ulmaro-agenda for.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "agenda/listing.h"

enum class Command { kHelp, kVersion, kList, kExport, kImport, kCheck };

/// A command with its options.
struct CommandLine {
    Command command = Command::kHelp;
    DayRange range;                                   ///< --da, --a
    bool json = false;                                ///< --json
    bool trial = false;                               ///< --prova
    std::optional<std::pair<int, int>> all_day_time;  ///< --giorno-intero, hour and minute
    std::vector<std::string> files;                   ///< "-" is standard input or output
};

/// Reads the arguments, the program's name left out. Returns what is wrong with them, in Italian; empty where
/// `line` is set.
std::string ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line);

/// How the program is called.
extern const char kUsage[];
