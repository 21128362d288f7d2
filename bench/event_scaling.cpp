// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How frame, start, load and save grow with the number of events, of random dates: medians, milliseconds.
//
// Prints a line for each number of events, columns apart by a tab, for bench/plot_events.gp. The start (to
// the first frame) and the frame are those of the real program on the owl's screen, load and save those of
// the store by itself.
//
// usage: event_scaling [REPETITIONS]
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/event_mix.h"
#include "bench/first_frame.h"
#include "bench/store_time.h"
#include "bench/table.h"
#include "bench/turns.h"
#include "bench/waiting.h"
#include "tests/desktop/desktop.h"

namespace {

constexpr int kNumbersOfEvents[] = {0, 10, 100, 1'000, 10'000, 100'000, 1'000'000};
constexpr double kSliceSeconds = 0.5;

/// Returns the median of a measurement that is made several times.
template <typename Measure>
double MedianOf(int repetitions, const Measure& measure) {
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(repetitions));
    for (int i = 0; i < repetitions; ++i) values.push_back(measure());
    return bench::Median(values);
}

double FrameMilliseconds(desktop::Desktop& desk, const std::string& store, int repetitions) {
    desktop::Start start;
    start.clock = desktop::Clock::kInHand;
    bench::SwitchWaitingOff(start);
    start.spoilt["database.bin"] = store;
    desktop::Program program(desk, start);
    program.Resize({0, 40, 300, 300});
    const bench::Runner runner = {program.Child().Id(), [&] { return program.Frames(); }};
    const double frame = MedianOf(repetitions, [&] { return runner.FrameCost(kSliceSeconds).real; });
    runner.Continue();
    return frame;
}

/// Measures a number of events and prints its line.
void Measure(desktop::Desktop& desk, int count, int repetitions) {
    const std::string store = bench::RandomStore(count);
    const double frame = FrameMilliseconds(desk, store, repetitions);

    const desktop::Folder folder;
    folder.LinkAll(ULMARO_DATA);
    std::ofstream(folder.Path("database.bin"), std::ios::binary) << store;
    std::filesystem::current_path(folder.Path());
    const double first_frame =
        MedianOf(repetitions, [] { return bench::FirstFrameMilliseconds({ULMARO_PROGRAM}); });
    const double load = MedianOf(repetitions, [&] { return bench::LoadMilliseconds(count); });
    const double save = MedianOf(repetitions, bench::SaveMilliseconds);
    std::filesystem::current_path("/");
    std::printf("%d\t%.3f\t%.3f\t%.3f\t%.3f\n", count, frame, first_frame, load, save);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 5, [](int repetitions) {
        desktop::Desktop desk;
        bench::EnterDesktop(desk);
        std::puts("# events\tframe\tstart to the first frame\tload\tsave");
        for (const int count : kNumbersOfEvents) Measure(desk, count, repetitions);
        return true;
    });
}
