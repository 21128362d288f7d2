// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How the owl keeps pace with the screen: at its refreshes while somebody sees it, cheaply while nobody does,
// and never blocked by slow swaps. Frames are counted in the program by the desktop tests' library, refreshes
// by a client that does nothing else.
//
// Prints a line a measurement; exits with 1 where a limit is missed.
//
// usage: pace [REPETITIONS [shown|pointer|hidden|slow]]
//        (repetitions of each slice of a shown owl; everything else is measured once)
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/eyes.h"
#include "bench/refreshes.h"
#include "bench/table.h"
#include "bench/turns.h"
#include "bench/waiting.h"
#include "tests/desktop/calendar.h"
#include "tests/desktop/desktop.h"

namespace {

using bench::Refreshes;
using desktop::Desktop;
using desktop::Program;
using desktop::Start;
using desktop::WindowManager;

constexpr double kRateTolerance = 0.02;
constexpr double kRestLimit = 0.35;
constexpr double kFollowLimit = 1.5;
constexpr double kFirstFollowLimit = 2.5;
constexpr double kBackLimit = 0.3;  ///< seconds

constexpr double kSliceSeconds = 2;
constexpr double kRestSeconds = 1.5;  ///< after which an owl whose user does nothing is at rest

std::string DisplayOf(const Desktop& desk) {
    return DisplayString(desk.Connection());
}

/// Moves the pointer in a circle for some seconds, as often as a mouse does that is polled 125 times a
/// second.
void MovePointerFor(Desktop& desk, double seconds) {
    constexpr double kStepSeconds = 0.008;
    constexpr double kRadius = 60;
    const double start = desktop::Now();
    for (double now = start; now - start < seconds; now = desktop::Now()) {
        const double angle = 4 * (now - start);
        desk.MovePointer({Desktop::kWidth - 100 + static_cast<int>(kRadius * std::cos(angle)),
                          Desktop::kHeight - 100 + static_cast<int>(kRadius * std::sin(angle))});
        desktop::SleepSeconds(kStepSeconds);
    }
}

// ---- A shown owl ----

/// What an owl does in a second.
struct Rates {
    double frames = 0;
    double refreshes = 0;  ///< the screen's
    double processor = 0;  ///< seconds
};

Rates Measure(Program& owl, const Refreshes& refreshes, const std::function<void()>& meanwhile) {
    const pid_t process = owl.Child().Id();
    const double start = desktop::Now();
    const std::uint64_t frames = owl.Frames();
    const std::uint64_t screens = refreshes.Count();
    const double processor = bench::ProcessorSeconds(process);
    meanwhile();
    const double seconds = desktop::Now() - start;
    return {static_cast<double>(owl.Frames() - frames) / seconds,
            static_cast<double>(refreshes.Count() - screens) / seconds,
            (bench::ProcessorSeconds(process) - processor) / seconds};
}

/// Moves the pointer and compares the frames with the refreshes. Returns whether they are as many.
bool CompareMoving(Desktop& desk, Program& owl, const Refreshes& refreshes, int repetitions) {
    std::vector<double> frames, screens;
    MovePointerFor(desk, 0.5);
    for (int i = 0; i < repetitions; ++i) {
        const Rates rates = Measure(owl, refreshes, [&] { MovePointerFor(desk, kSliceSeconds); });
        frames.push_back(rates.frames);
        screens.push_back(rates.refreshes);
    }
    return bench::PrintSame("shown, pointer moving, frames a second : refreshes", bench::Median(frames),
                            bench::Median(screens), kRateTolerance);
}

/// Compares an owl at rest with the refreshes, and by turns with one that does not wait. Returns whether all
/// is within the limits.
bool CompareAtRest(Program& owl, Program& restless, const Refreshes& refreshes, int repetitions) {
    const bench::Runner paced = {owl.Child().Id(), [&] { return owl.Frames(); }};
    const bench::Runner unpaced = {restless.Child().Id(), [&] { return restless.Frames(); }};
    std::vector<double> frames, half_refreshes;
    bench::Series processor;
    for (int i = 0; i < repetitions; ++i) {
        desktop::SleepSeconds(kRestSeconds);
        const Rates rates = Measure(owl, refreshes, [] { desktop::SleepSeconds(kSliceSeconds); });
        frames.push_back(rates.frames);
        half_refreshes.push_back(rates.refreshes / 2);
        paced.Stop();
        unpaced.Continue();
        desktop::SleepSeconds(0.3);
        const Rates without = Measure(restless, refreshes, [] { desktop::SleepSeconds(kSliceSeconds); });
        processor.Add(100 * rates.processor, 100 * without.processor);
        unpaced.Stop();
        paced.Continue();
    }
    const bool good = bench::PrintSame("shown, at rest, frames a second : half the refreshes",
                                       bench::Median(frames), bench::Median(half_refreshes), kRateTolerance);
    return processor.Print("shown, at rest, a core's time : without waiting", kRestLimit, "%") && good;
}

bool CompareShown(int repetitions) {
    Desktop desk;
    const Refreshes refreshes(DisplayOf(desk));
    Start without_waiting;
    bench::SwitchWaitingOff(without_waiting);
    Program restless(desk, without_waiting);
    restless.Resize({0, 40, 300, 300});
    XStoreName(desk.Connection(), restless.Handle(), "measured");  // the next is looked for by its title
    const bench::Runner unpaced = {restless.Child().Id(), [&] { return restless.Frames(); }};
    unpaced.Stop();
    Program owl(desk, {});
    owl.Resize({320, 40, 300, 300});
    bool good = CompareMoving(desk, owl, refreshes, repetitions);
    good &= CompareAtRest(owl, restless, refreshes, repetitions);
    unpaced.Continue();
    return good;
}

// ---- Pointer to pixels ----

/// Moves the pointer some times, each time after `before_move`, and adds how long the eyes take to follow,
/// milliseconds. A blink, which hides the pupils, is left out.
void AddFollowing(Desktop& desk, const Program& owl, int moves, std::vector<double>& times,
                  const std::function<void()>& before_move) {
    static std::mt19937 random(1);
    std::uniform_real_distribution<double> phase(0.1, 0.2);  // seconds, so that no refresh is met in step
    for (int i = 0; i < moves; ++i) {
        before_move();
        desktop::SleepSeconds(phase(random));
        const std::optional<double> time = bench::TimeToFollow(desk.Connection(), bench::OwlsEyes(owl));
        if (time) times.push_back(*time);
    }
}

/// Returns the time from one refresh to the next, milliseconds.
double RefreshMilliseconds(const Refreshes& refreshes) {
    const double start = desktop::Now();
    const std::uint64_t before = refreshes.Count();
    desktop::SleepSeconds(kSliceSeconds);
    return 1000 * (desktop::Now() - start) / static_cast<double>(refreshes.Count() - before);
}

/// Measures how soon the eyes follow. The owls' clocks are in the benchmark's hand, so that nothing but the
/// pointer moves their eyes, and they come to rest when they are told so. Each owl is rested a few times
/// only: five seconds after its start it may look straight ahead for a while.
bool ComparePointer() {
    constexpr int kMoves = 40;
    constexpr int kOwls = 8;
    constexpr int kRests = 4;
    constexpr double kToRest = 1.1;  // seconds
    Desktop desk;
    std::vector<double> moving, rested;
    double period = 0;
    for (int i = 0; i < kOwls; ++i) {
        Start start;
        start.clock = desktop::Clock::kInHand;
        start.environment["vblank_mode"] = "1";  // paced all the same
        Program owl(desk, start);
        owl.Resize({150, 300, 300, 300});
        if (i == 0) {
            const Refreshes refreshes(DisplayOf(desk));
            period = RefreshMilliseconds(refreshes);
            AddFollowing(desk, owl, kMoves, moving, [] {});
        }
        AddFollowing(desk, owl, kRests, rested, [&] { owl.LetTimePass(kToRest); });
    }
    if (moving.size() < kMoves / 2 || rested.size() < kOwls * kRests / 2) desktop::Fail("no eyes follow");
    const double median = bench::Median(moving);
    const double first = bench::Median(rested);
    bool good = bench::PrintRow("pointer moved to eyes moved, moving : a refresh", median, period,
                                median / period, kFollowLimit);
    good &= bench::PrintRow("pointer moved to eyes moved, after a rest : a refresh", first, period,
                            first / period, kFirstFollowLimit);
    return good;
}

// ---- A hidden owl ----

/// A way to hide the window, and to show it again.
struct HidingPlace {
    std::string name;
    std::function<bool(const Desktop&)> exists;  ///< says whether the window manager has it
    std::function<void(Desktop&, Program&)> hide, show;
};

const std::array<HidingPlace, 3> kHidingPlaces = {
    {{"minimised", [](const Desktop& desk) { return desk.Manager() != WindowManager::kNone; },
      [](Desktop&, Program& owl) { owl.Minimise(); }, [](Desktop&, Program& owl) { owl.Restore(); }},
     {"on another desktop", [](const Desktop& desk) { return desk.HasSeveralDesktops(); },
      [](Desktop&, Program& owl) { owl.MoveToDesktop(1); },
      [](Desktop&, Program& owl) { owl.MoveToDesktop(0); }},
     {"covered", [](const Desktop&) { return true; },
      [](Desktop& desk, Program&) { desk.CoverByMaximisedWindow(); },
      [](Desktop& desk, Program&) { desk.Uncover(); }}}};

/// Returns how often the threads of a process have gone to sleep by themselves so far.
double Wakeups(pid_t process) {
    const std::string key = "voluntary_ctxt_switches:";
    double sum = 0;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(key)) sum += std::strtod(line.c_str() + key.size(), nullptr);
        }
    }
    return sum;
}

/// Measures a hidden owl and prints three lines. Returns whether all is within the limits.
bool MeasureHidden(const std::string& what, Program& owl) {
    constexpr double kSettleSeconds = 1.5;
    constexpr double kHiddenSeconds = 5;
    const pid_t process = owl.Child().Id();
    desktop::SleepSeconds(kSettleSeconds);
    const double start = desktop::Now();
    const std::uint64_t frames = owl.Frames();
    const double processor = bench::ProcessorSeconds(process);
    const double wakeups = Wakeups(process);
    desktop::SleepSeconds(kHiddenSeconds);
    const double seconds = desktop::Now() - start;
    bool good = bench::PrintBetween(what + ", frames a second",
                                    static_cast<double>(owl.Frames() - frames) / seconds, 8, 15);
    good &= bench::PrintCount(what + ", per cent of a core",
                              100 * (bench::ProcessorSeconds(process) - processor) / seconds, 1.5);
    return bench::PrintCount(what + ", wakeups a second", (Wakeups(process) - wakeups) / seconds, 40) && good;
}

/// The times of a program's swaps, from the construction on.
class SwapTimes {
  public:
    explicit SwapTimes(const Program& program)
        : thread_([&](const std::stop_token& stop) {
              std::uint64_t last = program.Swaps();
              while (!stop.stop_requested()) {
                  const std::uint64_t now = program.Swaps();
                  for (; last < now; ++last) times_.push_back(desktop::Now());
                  desktop::SleepSeconds(0.0005);
              }
          }) {}

    /// Ends the watching and returns the times.
    std::vector<double> Take() {
        thread_.request_stop();
        thread_.join();
        return times_;
    }

  private:
    std::vector<double> times_;
    std::jthread thread_;
};

/// Returns the time from which on the swaps come at nearly such a rate, for a quarter of a second at least;
/// infinity where they never do.
double FirstAtRate(const std::vector<double>& times, double rate) {
    constexpr double kNearly = 0.8;
    const auto frames = static_cast<std::size_t>(rate / 4);
    for (std::size_t i = 0; i + frames < times.size(); ++i) {
        if (times[i + frames] - times[i] <= static_cast<double>(frames) / (kNearly * rate)) return times[i];
    }
    return std::numeric_limits<double>::infinity();
}

/// Lets the user move the pointer; where a desktop lets no program move it, only time passes.
void BeBusy(Desktop& desk, double seconds) {
    if (desk.Manager() == WindowManager::kMutterWayland) {
        desktop::SleepSeconds(seconds);
    } else {
        MovePointerFor(desk, seconds);
    }
}

/// Hides the owl, measures it, and shows it again. Puts into `back` how long it then takes to its full rate,
/// seconds. Returns whether the hidden owl was within the limits.
bool MeasureCell(Desktop& desk, Program& owl, const HidingPlace& place, double& back) {
    BeBusy(desk, 0.3);
    SwapTimes shown(owl);
    BeBusy(desk, 1);
    const auto rate = static_cast<double>(shown.Take().size());
    place.hide(desk, owl);
    const bool good = MeasureHidden("hidden, " + NameOf(desk.Manager()) + ", " + place.name, owl);
    SwapTimes times(owl);
    const double asked = desktop::Now();
    place.show(desk, owl);
    BeBusy(desk, 1);
    back = FirstAtRate(times.Take(), rate) - asked;
    return good;
}

/// Measures the owl in every hiding place of every window manager.
bool CompareHidden() {
    bool good = true;
    double longest = 0;
    std::string where;
    for (const WindowManager manager : desktop::kWindowManagers) {
        Desktop desk(manager);
        Program owl(desk, {});
        desktop::SleepSeconds(2);  // the sound device falls asleep
        for (const HidingPlace& place : kHidingPlaces) {
            if (!place.exists(desk)) continue;
            double back = 0;
            good &= MeasureCell(desk, owl, place, back);
            if (back < longest) continue;
            longest = back;
            where = NameOf(manager) + ", " + place.name;
        }
    }
    return bench::PrintCount("shown again, seconds to the full rate: " + where, longest, kBackLimit) && good;
}

// ---- Slow swaps ----

/// The times at which a file was opened, from the construction on.
class Openings {
  public:
    explicit Openings(const std::string& path) : watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (inotify_add_watch(watch_, path.c_str(), IN_OPEN) < 0) desktop::Fail("cannot watch " + path);
        thread_ = std::jthread([this](const std::stop_token& stop) { Watch(stop); });
    }
    ~Openings() {
        thread_.request_stop();
        thread_.join();
        close(watch_);
    }
    Openings(const Openings&) = delete;
    Openings& operator=(const Openings&) = delete;

    /// Returns how many there were between two times.
    int CountBetween(double from, double to) {
        const std::scoped_lock lock(mutex_);
        return static_cast<int>(std::count_if(times_.begin(), times_.end(),
                                              [&](double time) { return time >= from && time <= to; }));
    }

  private:
    void Watch(const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            pollfd ready = {watch_, POLLIN, 0};
            poll(&ready, 1, 50);
            alignas(inotify_event) char bytes[4096];
            const ssize_t length = read(watch_, bytes, sizeof bytes);
            const std::scoped_lock lock(mutex_);
            for (ssize_t at = 0; at < length; at += static_cast<ssize_t>(sizeof(inotify_event))) {
                times_.push_back(desktop::Now());  // a watched file's events carry no name
            }
        }
    }

    int watch_;
    std::mutex mutex_;
    std::vector<double> times_;
    std::jthread thread_;
};

/// An owl whose swaps take a second each. It has a reminder, due from its start on, and an event of this
/// weekday that is done: on another day it is armed again, and the store is saved, with how long the reminder
/// has counted.
class SlowOwl {
  public:
    SlowOwl() : sounds_(std::string(ULMARO_DATA) + "/notify.wav"), owl_(desk_, Begin()) {
        if (!desktop::WaitUntil([this] { return owl_.Swaps() > 0; }, 20)) desktop::Fail("no frame comes");
        first_frame_ = desktop::Now();
    }

    /// Waits until the owl has run long enough and prints two lines. Returns whether both are right.
    bool Judge() {
        constexpr double kSoundSeconds = 110;
        constexpr double kCountSeconds = 140;  // so long that a swap is tried again meanwhile
        desktop::WaitUntil([&] { return desktop::Now() - first_frame_ >= kCountSeconds; }, kCountSeconds);
        const int sounds = sounds_.CountBetween(0, first_frame_ + kSoundSeconds);
        const bool good = bench::PrintBetween("slow swaps, sounds of a notice in 110 s", sounds, 4, 4);
        clock_.Set(kNextDay);
        const auto counted = [this] { return Reminder().elapsed; };
        if (!desktop::WaitUntil([&] { return counted() > kLongestPeriod; }, 20)) {
            desktop::Fail("the store is not saved");
        }
        const double passed = desktop::Now() - first_frame_;
        return bench::PrintSame("slow swaps, seconds that a reminder counts : passed",
                                static_cast<double>(counted()) - kLongestPeriod, passed, 0.01) &&
               good;
    }

  private:
    static constexpr char kDay[] = "2031-03-12 08:17:00";
    static constexpr char kNextDay[] = "2031-03-13 08:17:00";
    static constexpr int kWeekday = 3;
    static constexpr float kLongestPeriod = 10'800;  ///< what a reminder has counted at the start, seconds

    Start Begin() const {
        desktop::Record reminder;
        reminder.name = "Bere";
        reminder.kind = desktop::kReminder;
        desktop::Record weekly;
        weekly.name = "Corso";
        weekly.kind = desktop::kWeekly;
        weekly.wday = kWeekday;
        weekly.done = weekly.warned_60 = weekly.warned_30 = 1;
        Start start;
        start.wait_for_window = false;
        start.preload = {ULMARO_SLOW_SWAPS};
        start.spoilt[desktop::kStoreFile] = desktop::StoreBytes({reminder, weekly});
        clock_.Rule(start);
        return start;
    }

    desktop::Record Reminder() {
        for (const desktop::Record& record : desktop::ReadStore(owl_.Files().Read(desktop::kStoreFile))) {
            if (record.kind == desktop::kReminder) return record;
        }
        return {};
    }

    Desktop desk_;
    desktop::WallClock clock_{kDay};
    Openings sounds_;
    Program owl_;
    double first_frame_ = 0;
};

bool CompareAll(int repetitions) {
    bool good = CompareShown(repetitions);
    good &= ComparePointer();
    SlowOwl slow;  // runs beside the hidden ones, and takes hardly more than they do
    good &= CompareHidden();
    return slow.Judge() && good;
}

/// Measures one part, by its name on the command line.
bool ComparePart(const std::string& part, int repetitions) {
    if (part == "shown") return CompareShown(repetitions);
    if (part == "pointer") return ComparePointer();
    if (part == "hidden") return CompareHidden();
    if (part == "slow") return SlowOwl().Judge();
    desktop::Fail("there is no part " + part);
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 5, [&](int repetitions) {
        return argc > 2 ? ComparePart(argv[2], repetitions) : CompareAll(repetitions);
    });
}
