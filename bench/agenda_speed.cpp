// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How fast ulmaro-agenda is: exporting and importing events side by side with calcurse, which exports and
// imports the same events; and whether the time grows with the number of events and not faster.
//
// Prints one line a measurement, of the processor time of the programs, so that a busy machine does not
// matter. Works in a new folder in the current directory. Exits with 1 where a ratio is above its limit.
// calcurse keeps its list sorted as it imports, event by event: 100,000 take it minutes, so that they are
// compared only where they are asked for.
//
// usage: agenda_speed [EVENTS [PAIRS]]
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "bench/event_mix.h"
#include "bench/table.h"

namespace {

constexpr double kAhead = 1;  ///< the most that a ratio to calcurse may be
constexpr double kLinear =
    1.3;  ///< the most that the time of one event may grow, from a quarter of the events to all

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "agenda_speed: %s\n", what.c_str());
    std::exit(2);
}

std::string Contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Returns the processor time of the commands that have run so far, milliseconds.
double ProcessorTime() {
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval& time) {
        return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// Runs a command of the shell; returns its processor time, milliseconds.
double Run(const std::string& command) {
    const double before = ProcessorTime();
    if (std::system(command.c_str()) != 0) Fail("this does not work: " + command);
    return ProcessorTime() - before;
}

/// Makes an empty folder, and returns its name.
std::string Fresh(const std::string& name) {
    std::filesystem::remove_all(name);
    std::filesystem::create_directories(name);
    return name;
}

/// Returns a store of events on random days that every month has, in no order and in years that
/// calcurse takes.
std::string Store(int count) {
    std::string store = bench::MixedStore(count, 0);
    std::mt19937 random(18);
    for (std::size_t at = 4; at < store.size(); at += bench::kRecord) {
        bench::Put(store.data() + at, 532, 1 + static_cast<std::int32_t>(random() % 28));
        bench::Put(store.data() + at, 536, 1 + static_cast<std::int32_t>(random() % 12));
        // calcurse refuses weekly events at midnight that begin in summer.
        bench::Put(store.data() + at, 544, 8 + static_cast<std::int32_t>(random() % 10));
        bench::Put(store.data() + at, 540, 2027 + static_cast<std::int32_t>(random() % 10));
    }
    return store;
}

std::string Agenda(const std::string& folder, const std::string& arguments) {
    return "XDG_DATA_HOME=\"$PWD/" + folder +
           "\" "
           "'" ULMARO_AGENDA "' " +
           arguments + " >/dev/null";
}

/// The times of one round, milliseconds.
struct Times {
    double exporting = 0;
    double importing = 0;
};

/// Exports a store of so many events to events.ics and imports that into an empty one, which must then be the
/// same.
Times RunAgenda(int count) {
    const std::string from = Fresh("from") + "/ulmaro-assistant";
    const std::string to = Fresh("to") + "/ulmaro-assistant";
    std::filesystem::create_directories(from);
    std::ofstream(from + "/database.bin", std::ios::binary) << Store(count);
    Times times;
    times.exporting = Run(Agenda("from", "esporta events.ics"));
    times.importing = Run(Agenda("to", "importa events.ics"));
    if (Contents(from + "/database.bin") != Contents(to + "/database.bin"))
        Fail("an import is not what was exported");
    return times;
}

/// Lets calcurse import events.ics and export it again.
Times RunCalcurse(int count) {
    Fresh("calcurse");
    Times times;
    times.importing = Run("calcurse -q -D calcurse -i events.ics");
    times.exporting = Run("calcurse -q -D calcurse -xical >calcurse.ics");
    const std::string events = Contents("calcurse/apts");
    if (std::count(events.begin(), events.end(), '\n') != count) Fail("calcurse has not all events");
    return times;
}

/// Prints how the time of an event grows from a quarter of the events to all.
bool PrintGrowth(const std::string& what, double quarter, double all) {
    return bench::PrintRow(what, all / 4, quarter, all / 4 / quarter, kLinear);
}

}  // namespace

int main(int argc, char** argv) {
    const int count = std::max(argc > 1 ? std::atoi(argv[1]) : 100'000, 4);
    const int pairs = std::max(argc > 2 ? std::atoi(argv[2]) : 1, 1);
    std::string folder = std::filesystem::current_path().string() + "/agenda_speed-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr || chdir(folder.c_str()) != 0) Fail("no folder");
    setenv("HOME", folder.c_str(), 1);
    std::vector<double> ours[2], theirs[2], ratios[2], quarters[2];
    for (int pair = 0; pair < pairs; ++pair) {
        const Times quarter = RunAgenda(count / 4);
        const Times agenda = RunAgenda(count);
        const Times calcurse = RunCalcurse(count);
        const double measured[2] = {agenda.exporting, agenda.importing};
        const double compared[2] = {calcurse.exporting, calcurse.importing};
        const double fewer[2] = {quarter.exporting, quarter.importing};
        for (int i = 0; i < 2; ++i) {
            ours[i].push_back(measured[i]);
            theirs[i].push_back(compared[i]);
            ratios[i].push_back(measured[i] / compared[i]);
            quarters[i].push_back(fewer[i]);
        }
    }
    const char* const steps[2] = {"exporting ", "importing "};
    bool good = true;
    for (int i = 0; i < 2; ++i) {
        const std::string what = steps[i] + std::to_string(count) + " events";
        good &= bench::PrintRow(what + " : calcurse", bench::Median(ours[i]), bench::Median(theirs[i]),
                                bench::Median(ratios[i]), kAhead);
        good &= PrintGrowth(what + ", a quarter : a quarter of them", bench::Median(quarters[i]),
                            bench::Median(ours[i]));
    }
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);
    std::filesystem::remove_all(folder, ignored);
    return good ? 0 : 1;
}
