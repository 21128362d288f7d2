// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How soon the eyes follow the pointer: the owl's, compared with those of xeyes.
//
// Both are measured in the same way (bench/eyes.h), by turns, the other one stopped meanwhile. The owl's
// clock is in the benchmark's hand, so that nothing but the pointer moves its eyes, and it does not wait for
// the screen's refreshes, because xeyes does not either. Prints one line; exits with 1 where the limit is
// missed.
//
// usage: eye_speed [PAIRS]
#include <X11/Xlib.h>

#include <csignal>
#include <optional>
#include <random>
#include <vector>

#include "bench/eyes.h"
#include "bench/table.h"
#include "bench/turns.h"
#include "bench/waiting.h"
#include "tests/desktop/desktop.h"

namespace {

using bench::Part;
using desktop::Desktop;
using desktop::Process;
using desktop::Program;

constexpr double kLimit = 0.5;
constexpr int kMoves = 6;               ///< in a turn
constexpr double kRestSeconds = 0.12;   ///< between moves, at least
constexpr double kPhaseSeconds = 0.06;  ///< more at random, so that no polling is met in step

/// Someone with eyes.
struct Watcher {
    pid_t process = -1;
    Part eyes;
};

/// Moves the pointer to and fro. Returns how long the eyes take to move, the median, milliseconds.
double Milliseconds(Display* connection, const Watcher& watcher) {
    static std::mt19937 random(1);
    std::uniform_real_distribution<double> phase(0, kPhaseSeconds);
    kill(watcher.process, SIGCONT);
    desktop::SleepSeconds(3 * kRestSeconds);
    std::vector<double> times;
    for (int i = 0; i < kMoves; ++i) {
        desktop::SleepSeconds(kRestSeconds + phase(random));
        const std::optional<double> time = bench::TimeToFollow(connection, watcher.eyes);
        if (!time) desktop::Fail("the eyes do not move");
        times.push_back(*time);
    }
    kill(watcher.process, SIGSTOP);
    return bench::Median(times);
}

/// Returns a window's middle, of the size of the owl's eyes; xeyes' pupils move there.
Part MiddleOf(Display* connection, Window window, const Part& like) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(connection, window, &attributes);
    Part part = like;
    part.window = window;
    part.x = (attributes.width - static_cast<int>(like.width)) / 2;
    part.y = (attributes.height - static_cast<int>(like.height)) / 2;
    return part;
}

bool Compare(int pairs) {
    Desktop desk;
    desktop::Start start;
    start.clock = desktop::Clock::kInHand;
    bench::SwitchWaitingOff(start);
    Program owl(desk, start);
    owl.Resize({150, 300, 300, 300});
    desktop::Command command;
    command.words = {"xeyes", "-geometry", "80x50+800+450"};
    command.environment = desk.ClientEnvironment();
    Process xeyes(command);
    if (!desktop::WaitUntil([&] { return desk.FindWindow("xeyes") != None; }, 20)) {
        desktop::Fail("xeyes shows no window");
    }
    desktop::SleepSeconds(1);
    const Part eyes = bench::OwlsEyes(owl);
    const Watcher ours = {owl.Child().Id(), eyes};
    const Watcher theirs = {xeyes.Id(), MiddleOf(desk.Connection(), desk.FindWindow("xeyes"), eyes)};
    kill(ours.process, SIGSTOP);
    kill(theirs.process, SIGSTOP);
    bench::Series series;
    for (int i = 0; i < pairs; ++i) {
        const double a = Milliseconds(desk.Connection(), ours);
        series.Add(a, Milliseconds(desk.Connection(), theirs));
    }
    kill(ours.process, SIGCONT);
    kill(theirs.process, SIGCONT);
    return series.Print("pointer moved to eyes moved : xeyes", kLimit);
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 9, Compare);
}
