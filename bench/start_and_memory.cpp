// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How long the program takes to its first frame and how much memory it holds, compared with a bare GLUT
// program that does the same with the same pictures (bare_window.cpp); and how long with 100,000 events of
// random dates, compared with none.
//
// Start: from the fork to the first swap of buffers, where a preloaded library ends the process; pairs take
// turns. The owl waits for a refresh before that swap, as it does for the user. Memory: the resident set of
// both after a second in their windows. Prints a line each; exits with 1 where a limit is missed.
//
// usage: start_and_memory [PAIRS]
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/event_mix.h"
#include "bench/first_frame.h"
#include "bench/turns.h"
#include "tests/desktop/desktop.h"

namespace {

using desktop::Desktop;
using desktop::Process;
using desktop::Program;

constexpr double kStartLimit = 1.15;
constexpr int kEvents = 100'000;
constexpr double kEventsLimit = 1.6;
constexpr double kMemoryLimit = 1.10;
constexpr int kMemoryPairs = 3;
constexpr double kSettleSeconds = 1;

/// Returns the bare program's command: all pictures of the data folder, which are the files without a dot in
/// their name.
std::vector<std::string> BareWindow() {
    std::vector<std::string> words = {ULMARO_BARE_WINDOW};
    for (const auto& file : std::filesystem::directory_iterator(ULMARO_DATA)) {
        const std::string name = file.path().filename().string();
        if (file.is_regular_file() && name.find('.') == std::string::npos) words.push_back(name);
    }
    if (words.size() == 1) desktop::Fail("the data folder has no pictures");
    return words;
}

// ---- Start ----

bool CompareStarts(const Desktop& desk, int pairs) {
    const std::vector<std::string> bare = BareWindow();
    const std::vector<std::string> ours = {ULMARO_PROGRAM};
    const desktop::Folder folder;
    folder.LinkAll(ULMARO_DATA);
    std::filesystem::current_path(folder.Path());
    bench::EnterDesktop(desk);
    bench::FirstFrameMilliseconds(ours);
    bench::FirstFrameMilliseconds(bare);
    bench::Series series;
    for (int i = 0; i < pairs; ++i) {
        const double owl = bench::FirstFrameMilliseconds(ours);
        series.Add(owl, bench::FirstFrameMilliseconds(bare));
    }
    std::filesystem::current_path("/");
    return series.Print("start to the first frame : bare program", kStartLimit);
}

/// Returns how long the program takes to its first frame in a folder, milliseconds.
double StartIn(const desktop::Folder& folder) {
    std::filesystem::current_path(folder.Path());
    return bench::FirstFrameMilliseconds({ULMARO_PROGRAM});
}

bool CompareStartsWithEvents(const Desktop& desk, int pairs) {
    const desktop::Folder many, none;
    for (const desktop::Folder* folder : {&many, &none}) folder->LinkAll(ULMARO_DATA);
    std::ofstream(many.Path("database.bin"), std::ios::binary) << bench::RandomStore(kEvents);
    bench::EnterDesktop(desk);
    bench::Series series;
    for (int i = -1; i < pairs; ++i) {
        const double with_events = StartIn(many);
        const double without = StartIn(none);
        if (i >= 0) series.Add(with_events, without);  // the first pair warms up
    }
    std::filesystem::current_path("/");
    return series.Print("start to the first frame, 100,000 random events : none", kEventsLimit);
}

// ---- Memory ----

double OwlMebibytes(Desktop& desk) {
    Program owl(desk, {});
    owl.WaitForFrames(100);
    desktop::SleepSeconds(kSettleSeconds);
    return bench::ResidentMebibytes(owl.Child().Id());
}

double BareMebibytes(const Desktop& desk) {
    desktop::Command command;
    command.words = BareWindow();
    command.folder = ULMARO_DATA;
    command.environment = desk.ClientEnvironment();
    command.environment["ALSOFT_DRIVERS"] = "null";
    Process bare(command);
    if (!desktop::WaitUntil([&] { return desk.FindWindow("Bare window") != 0; }, 20)) {
        desktop::Fail("the bare program shows no window");
    }
    desktop::SleepSeconds(kSettleSeconds);
    return bench::ResidentMebibytes(bare.Id());
}

bool CompareMemory(Desktop& desk) {
    bench::Series series;
    for (int i = 0; i < kMemoryPairs; ++i) {
        const double owl = OwlMebibytes(desk);
        series.Add(owl, BareMebibytes(desk));
    }
    return series.Print("resident memory : bare program", kMemoryLimit, "MiB");
}

bool Compare(int pairs) {
    Desktop desk;
    bool good = CompareStarts(desk, pairs);
    good &= CompareStartsWithEvents(desk, pairs);
    return CompareMemory(desk) && good;
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 21, Compare);
}
