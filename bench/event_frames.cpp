// What 10,000 events cost a frame: the real program with them and without, windows on one X server.
//
// Prints two lines a screen, of real time and of processor time: milliseconds a frame with the events and
// without, and the median of the ratios of slices that take turns; while one program is measured the others
// are stopped. The list is also compared with that of 12 events, which fill its page with as much text. The
// owl holds still: its clock is in the benchmark's hand. Exits with 1 where a ratio is above its limit.
//
// usage: event_frames [PAIRS]
#include <X11/Xlib.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <string>
#include <vector>

#include "bench/event_mix.h"
#include "bench/table.h"
#include "tests/desktop/desktop.h"

namespace {

using desktop::CanvasPoint;
using desktop::Clock;
using desktop::Desktop;
using desktop::Image;
using desktop::Program;
using desktop::Start;

constexpr int kEvents = 10'000;
constexpr int kReminders = 3;
constexpr int kRows = 12;  ///< of the list
constexpr double kLimit = 1.25;
constexpr double kSliceSeconds = 0.4;

constexpr CanvasPoint kPlanItem = {44.5, 465};
constexpr CanvasPoint kBell = {435, 440};
constexpr CanvasPoint kConfirmButton = {476.62, 436.5};
constexpr CanvasPoint kAway = {480, 250};

Start WithStore(const std::string& store) {
    Start start;
    start.clock = Clock::kInHand;
    start.spoilt["database.bin"] = store;
    return start;
}

/// What a frame takes, milliseconds.
struct Cost {
    double real, processor;
};

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
    void Stop() { kill(program_.Child().Id(), SIGSTOP); }
    void Continue() { kill(program_.Child().Id(), SIGCONT); }

    /// Returns what a frame takes, over a slice of time.
    Cost FrameCost() {
        Continue();
        program_.WaitForFrames(3);
        const std::uint64_t frames = program_.Frames();
        const double start = desktop::Now();
        const double processor = ProcessorSeconds();
        desktop::SleepSeconds(kSliceSeconds);
        const double drawn = static_cast<double>(program_.Frames() - frames) / 1000;
        const Cost cost = {(desktop::Now() - start) / drawn, (ProcessorSeconds() - processor) / drawn};
        Stop();
        return cost;
    }

  private:
    /// Returns the processor time of all threads, to the nanosecond; the harness has it in whole ticks.
    double ProcessorSeconds() {
        clockid_t clock = 0;
        timespec time = {};
        if (clock_getcpuclockid(program_.Child().Id(), &clock) != 0 || clock_gettime(clock, &time) != 0) {
            desktop::Fail("the program's processor time cannot be read");
        }
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    }

    Program program_;
};

/// The costs of two programs, slice by slice.
struct Series {
    std::vector<double> ours, compared, ratios;

    void Add(double a, double b) {
        ours.push_back(a);
        compared.push_back(b);
        ratios.push_back(a / b);
    }

    /// Prints the line; returns whether the ratio is within the limit.
    bool Print(const std::string& what) const {
        return bench::PrintRow(what.c_str(), bench::Median(ours), bench::Median(compared),
                               bench::Median(ratios), kLimit);
    }
};

/// Measures a screen that both programs show. Returns whether the ratios are within the limit.
bool Compare(const std::string& screen, Side& ours, Side& other, int pairs) {
    Series real, processor;
    for (int i = 0; i < pairs; ++i) {
        const Cost a = ours.FrameCost();
        const Cost b = other.FrameCost();
        real.Add(a.real, b.real);
        processor.Add(a.processor, b.processor);
    }
    const bool good = real.Print(screen + ", real time");
    return processor.Print(screen + ", processor time") && good;
}

/// Returns the part of the pixels in which two images of the same size differ, 0 .. 1.
double Difference(const Image& a, const Image& b) {
    int different = 0;
    for (int y = 0; y < a.Height(); ++y) {
        for (int x = 0; x < a.Width(); ++x) {
            if (std::abs(a.At(x, y).Luminance() - b.At(x, y).Luminance()) > 2) ++different;
        }
    }
    return static_cast<double>(different) / a.Width() / a.Height();
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
        if (Difference(before, program.Look()) > 0.5) return;
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

/// Measures the owl with and without due reminders, then the list. Returns whether all is within the limit.
bool CompareScreens(int pairs) {
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
    const int pairs = argc > 1 ? std::atoi(argv[1]) : 15;
    try {
        return CompareScreens(std::max(pairs, 1)) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "event_frames: %s\n", error.what());
        return 2;
    }
}
