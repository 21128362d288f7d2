// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The restless run: the real program under clicks that never rest, several a second, at any place, while all
// its clocks go faster. It looks for nothing but damaged memory: the program must live and say nothing.
//
// usage: restless SECONDS SEED FACTOR [PROGRAM [TOOL...]]
//
// SECONDS are of real time. PROGRAM may be built with sanitizers. TOOL is a command such as valgrind with its
// options, which the program is run under; what it has to say it must say on standard error, and nothing
// where all is well. ULMARO_RESTLESS_CLOCK names another library to turn the clocks, for comparison; it takes
// its orders from the environment.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/desktop/sanitized.h"
#include "tests/longrun/fast_clock.h"
#include "tests/longrun/places.h"

namespace longrun {
namespace {

struct Run {
    double seconds = 300;
    unsigned int seed = 1;
    std::string factor = "12";
    std::string program = ULMARO_PROGRAM;
    std::vector<std::string> tool;
};

/// Returns events of all kinds, so that there is something to open: every reminder is due at start.
std::vector<desktop::Record> Mix() {
    std::vector<desktop::Record> events;
    for (int i = 0; i < 9; ++i) {
        desktop::Record event;
        event.name = "evento " + std::to_string(i);
        event.kind = i % 3;
        event.repeat = i / 3;
        event.wday = i % 7;
        event.hour = 3 * i % 24;
        event.day = 1 + i;
        event.month = 1 + i;
        event.year = 2030;
        events.push_back(event);
    }
    return events;
}

std::string Quoted(const std::string& word) {
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

/// Returns the library that turns the clocks; more libraries may follow it after colons.
std::string Clock() {
    const char* other = std::getenv("ULMARO_RESTLESS_CLOCK");
    return other != nullptr ? other : ULMARO_FAST_CLOCK_LIBRARY;
}

/// Returns a script that becomes the program under the tool. The shell does not load the libraries. A tool
/// must leave them to the program too: the first process that loads them takes them from the environment.
std::string Script(const Run& run) {
    std::string preload = desktop::IsSanitized(run.program) ? std::string(ULMARO_ASAN_LIBRARY) + ":" : "";
    preload += Clock() + ":" + ULMARO_PROBE_LIBRARY;
    std::string command;
    for (const std::string& word : run.tool) command += Quoted(word) + " ";
    return "#!/bin/sh\nexec env LD_PRELOAD=" + Quoted(preload) + " " + command + Quoted(run.program) + "\n";
}

/// What stands around the program: browsers do nothing.
struct Stage {
    desktop::Folder folder;
    desktop::Start start;

    explicit Stage(const Run& run) {
        folder.Write("xdg-open", "#!/bin/sh\n");
        folder.Write("program", Script(run));
        if (std::system(("chmod +x " + folder.Path() + "/*").c_str()) != 0) desktop::Fail("no script");
        start.program = folder.Path("program");
        start.spoilt[desktop::kStoreFile] = desktop::StoreBytes(Mix());
        start.environment["LD_PRELOAD"] = "";
        start.environment["vblank_mode"] = "0";  // frames as fast as they can be drawn
        start.environment["PATH"] = folder.Path() + ":" + std::getenv("PATH");
        start.environment[kFactorVariable] = run.factor;
        start.environment["ASAN_OPTIONS"] = "detect_leaks=0";
    }
};

/// Fails unless the program has loaded the library that turns its clocks: without it the run would show
/// little.
void CheckClock(desktop::Program& program) {
    std::ifstream maps("/proc/" + std::to_string(program.Child().Id()) + "/maps");
    std::stringstream loaded;
    loaded << maps.rdbuf();
    const std::string library = Clock().substr(0, Clock().find(':'));
    if (loaded.str().find(library) == std::string::npos)
        desktop::Fail("the program has not loaded " + library);
}

/// Runs the program; returns whether all was well.
bool Perform(const Run& run) {
    Stage stage(run);
    desktop::Desktop desk;
    desktop::Program program(desk, stage.start);
    CheckClock(program);
    program.Resize({40, 60, 64, 64});
    std::mt19937 dice(run.seed);
    long clicks = 0;
    const double began = desktop::Now();
    while (desktop::Now() < began + run.seconds && program.Said().empty()) {
        program.Click(AnyPlace(dice));
        ++clicks;
    }
    const double seconds = desktop::Now() - began;
    std::printf("seed %u: %.0f s, clock %s times as fast: %.2f h; %ld clicks, %llu frames\n", run.seed,
                seconds, run.factor.c_str(), seconds * std::strtod(run.factor.c_str(), nullptr) / 3600,
                clicks, static_cast<unsigned long long>(program.Frames()));
    if (program.Said().empty()) return clicks > 0;
    desktop::SleepSeconds(5);  // a report takes a moment
    std::printf("WRONG: the program said:\n%s\n", program.Said().c_str());
    return false;
}

}  // namespace
}  // namespace longrun

int main(int argc, char** argv) {
    longrun::Run run;
    if (argc > 1) run.seconds = std::strtod(argv[1], nullptr);
    if (argc > 2) run.seed = static_cast<unsigned int>(std::strtoul(argv[2], nullptr, 10));
    if (argc > 3) run.factor = argv[3];
    if (argc > 4) run.program = argv[4];
    if (argc > 5) run.tool.assign(argv + 5, argv + argc);
    try {
        return longrun::Perform(run) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::printf("WRONG: seed %u: %s\n", run.seed, error.what());
        return EXIT_FAILURE;
    }
}
