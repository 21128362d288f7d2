// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What 10,000 and 100,000 events cost a frame: the real program with them and without, windows on one X
// server. The 100,000 are of random dates, so they do not lie in memory in the order in which they are
// walked.
//
// Prints two lines a screen, of real time and of processor time: milliseconds a frame with the events and
// without, and the median of the ratios of slices that take turns; while one program is measured the others
// are stopped. The list is also compared with that of 12 events, which fill its page with as much text. The
// owl holds still: its clock is in the benchmark's hand. Exits with 1 where a ratio is above its limit.
//
// usage: event_frames [PAIRS]
#include <X11/Xlib.h>

#include <string>

#include "bench/event_mix.h"
#include "bench/screens.h"
#include "bench/turns.h"
#include "bench/waiting.h"
#include "tests/desktop/desktop.h"

namespace {

using bench::Runner;
using desktop::CanvasPoint;
using desktop::Clock;
using desktop::Desktop;
using desktop::Image;
using desktop::Program;
using desktop::Start;

constexpr int kEvents = 10'000;
constexpr int kManyEvents = 100'000;
constexpr int kReminders = 3;
constexpr int kRows = 12;         ///< of the list
constexpr double kLimit = 1.25;   ///< with 10,000 events
constexpr double kManyLimit = 4;  ///< with 100,000
constexpr double kSliceSeconds = 0.4;

constexpr CanvasPoint kPlanItem = {44.5, 465};
constexpr CanvasPoint kBell = {435, 440};
constexpr CanvasPoint kConfirmButton = {476.62, 436.5};
constexpr CanvasPoint kAway = {480, 250};

Start WithStore(const std::string& store) {
    Start start;
    start.clock = Clock::kInHand;
    bench::SwitchWaitingOff(start);
    start.spoilt["database.bin"] = store;
    return start;
}

/// The program with a store, in a part of the screen that no other window covers.
class Side {
  public:
    Side(Desktop& desktop, const std::string& store, int x) : program_(desktop, WithStore(store)) {
        program_.Resize({x, 40, 300, 300});
        // The next program is looked for by its title.
        XStoreName(desktop.Connection(), program_.Handle(), "measured");
        XSync(desktop.Connection(), False);
    }
    ~Side() { Continue(); }
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;

    Program& Owl() { return program_; }
    void Stop() { Frames().Stop(); }
    void Continue() { Frames().Continue(); }

    Runner Frames() {
        return {program_.Child().Id(), [this] { return program_.Frames(); }};
    }

  private:
    Program program_;
};

/// Measures a screen that both programs show. Returns whether the ratios are within the limit.
bool Compare(const std::string& screen, Side& ours, Side& other, int pairs, double limit = kLimit) {
    return bench::CompareFrames(screen, ours.Frames(), other.Frames(), pairs, kSliceSeconds, limit);
}

/// Clicks a button that leads to another screen. A click may be lost on a window that was just stopped, so it
/// is tried again until most of the picture has changed.
void Go(Program& program, CanvasPoint button) {
    program.WaitForFrames(2);
    const Image before = program.Look();
    for (int tries = 0; tries < 10; ++tries) {
        program.Click(button);
        program.MovePointer(kAway);
        program.WaitForFrames(2);
        if (bench::Difference(before, program.Look()) > 0.5) return;
    }
    desktop::Fail("a click leads nowhere");
}

/// Confirms every due reminder, opened by the bell, and returns to the owl.
void ConfirmReminders(Side& side) {
    side.Continue();
    for (int i = 0; i < kReminders; ++i) {
        Go(side.Owl(), kBell);
        Go(side.Owl(), kConfirmButton);
    }
    side.Stop();
}

void OpenList(Side& side) {
    side.Continue();
    Go(side.Owl(), kPlanItem);
    side.Stop();
}

/// Measures the owl and the list with 100,000 events. Returns whether all is within the limit.
bool CompareManyEvents(int pairs) {
    Desktop desktop;
    Side many(desktop, bench::RandomStore(kManyEvents), 0);
    Side none(desktop, bench::RandomStore(0), 320);
    Side page(desktop, bench::RandomStore(kRows), 640);
    for (Side* side : {&many, &none, &page}) side->Stop();
    bool good = Compare("owl, 100,000 random events : none", many, none, pairs, kManyLimit);
    for (Side* side : {&many, &none, &page}) OpenList(*side);
    good &= Compare("list, 100,000 random events : 12", many, page, pairs, kManyLimit);
    return good;
}

/// Measures the owl with 10,000 events, with and without due reminders, then the list. Returns whether all is
/// within the limit.
bool CompareEvents(int pairs) {
    Desktop desktop;
    Side many(desktop, bench::MixedStore(kEvents, kReminders), 0);
    Side none(desktop, bench::MixedStore(0, 0), 320);
    Side page(desktop, bench::MixedStore(kRows, 0), 640);
    for (Side* side : {&many, &none, &page}) side->Stop();
    bool good = Compare("owl, 10,000 events (3 due) : none", many, none, pairs);
    ConfirmReminders(many);
    good &= Compare("owl, 10,000 events : none", many, none, pairs);
    for (Side* side : {&many, &none, &page}) OpenList(*side);
    good &= Compare("list, 10,000 events : none", many, none, pairs);
    good &= Compare("list, 10,000 events : 12", many, page, pairs);
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 15, [](int pairs) {
        const bool good = CompareEvents(pairs);
        return CompareManyEvents(pairs) && good;
    });
}
