// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/command_line.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

const char kUsage[] =
    "Uso: ulmaro-agenda elenco [--da GIORNO] [--a GIORNO] [--json]\n"
    "     ulmaro-agenda esporta [FILE]\n"
    "     ulmaro-agenda importa [--prova] [--giorno-intero ORA] FILE...\n"
    "     ulmaro-agenda controlla\n"
    "     ulmaro-agenda --help | --version\n"
    "\n"
    "elenco     gli eventi del gufo, ciascuno con il prossimo avviso\n"
    "esporta    gli eventi in formato iCalendar, in FILE o sullo standard output\n"
    "importa    gli eventi dei FILE iCalendar (\"-\" e' lo standard input)\n"
    "controlla  che cosa e' danneggiato nell'agenda\n"
    "\n"
    "GIORNO e' come 24/11/2026 o 2026-11-24, ORA come 9:30 o 9.\n";

namespace {

struct CommandRow {
    std::string_view name;
    Command command;
    std::size_t least_files;
    std::size_t most_files;
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

constexpr CommandRow kCommands[] = {
    {"elenco", Command::kList, 0, 0},
    {"esporta", Command::kExport, 0, 1},
    {"importa", Command::kImport, 1, kAnyNumber},
    {"controlla", Command::kCheck, 0, 0},
    {"--help", Command::kHelp, 0, 0},
    {"-h", Command::kHelp, 0, 0},
    {"--version", Command::kVersion, 0, 0},
};

/// Takes an option's value over. Returns whether it is one.
using Setter = bool (*)(CommandLine&, const std::string&);

bool SetDay(std::optional<Day>& limit, const std::string& value) {
    Day day;
    if (!ReadDay(value, day)) return false;
    limit = day;
    return true;
}

bool SetAllDayTime(CommandLine& line, const std::string& value) {
    int hour = 0;
    int minute = 0;
    if (!ReadTime(value, hour, minute)) return false;
    line.all_day_time = {hour, minute};
    return true;
}

struct OptionRow {
    std::string_view name;
    Command command;
    bool has_value;
    Setter set;
};

constexpr OptionRow kOptions[] = {
    {"--da", Command::kList, true,
     [](CommandLine& line, const std::string& value) { return SetDay(line.range.from, value); }},
    {"--a", Command::kList, true,
     [](CommandLine& line, const std::string& value) { return SetDay(line.range.to, value); }},
    {"--json", Command::kList, false, [](CommandLine& line, const std::string&) { return line.json = true; }},
    {"--prova", Command::kImport, false,
     [](CommandLine& line, const std::string&) { return line.trial = true; }},
    {"--giorno-intero", Command::kImport, true, SetAllDayTime},
};

/// Reads the option at the front of `rest`, with its value behind "=" or in the next argument, and takes them
/// out. Returns what is wrong.
std::string ReadOption(std::vector<std::string>& rest, CommandLine& line) {
    const std::string argument = rest.front();
    rest.erase(rest.begin());
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto* option = std::find_if(std::begin(kOptions), std::end(kOptions), [&](const OptionRow& row) {
        return row.name == name && row.command == line.command;
    });
    if (option == std::end(kOptions)) return "non conosco l'opzione \"" + name + "\"";
    if (!option->has_value && equals != std::string::npos)
        return "l'opzione " + name + " non vuole un valore";
    std::string value;
    if (option->has_value && equals != std::string::npos) value = argument.substr(equals + 1);
    if (option->has_value && equals == std::string::npos) {
        if (rest.empty()) return "l'opzione " + name + " vuole un valore";
        value = rest.front();
        rest.erase(rest.begin());
    }
    return option->set(line, value) ? "" : "l'opzione " + name + " non puo' essere \"" + value + "\"";
}

}  // namespace

std::string ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line) {
    if (arguments.empty()) return "manca il comando";
    const auto* command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                       [&](const CommandRow& row) { return row.name == arguments[0]; });
    if (command == std::end(kCommands)) return "non conosco il comando \"" + arguments[0] + "\"";
    line = {};
    line.command = command->command;
    std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    bool options = true;
    while (!rest.empty()) {
        if (options && rest.front() == "--") {
            options = false;
            rest.erase(rest.begin());
        } else if (options && rest.front().size() > 1 && rest.front()[0] == '-') {
            if (std::string wrong = ReadOption(rest, line); !wrong.empty()) return wrong;
        } else {
            line.files.push_back(rest.front());
            rest.erase(rest.begin());
        }
    }
    if (line.files.size() < command->least_files) return "manca il file da importare";
    if (line.files.size() > command->most_files) return "non so che fare di \"" + line.files.back() + "\"";
    if (line.range.from && line.range.to && *line.range.to < *line.range.from)
        return "il giorno di --a viene prima di quello di --da";
    return {};
}
