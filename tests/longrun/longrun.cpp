// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The long run: the real program through simulated hours, with a restless user and a judge.
//
// usage: longrun HOURS SEED [PROGRAM]
//
// The program's clock is in hand and takes one step of 0.24 s a frame, as fast as frames can be drawn; the
// clock on the wall goes along in steps of at most thirty seconds. Now and then something goes wrong around
// the program (faults.h). The same seed gives the same user; the program's own chance is seeded by the clock
// on the wall and so is the same too. PROGRAM may be built with sanitizers; then its memory is not judged.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

#include "tests/desktop/calendar.h"
#include "tests/desktop/sanitized.h"
#include "tests/longrun/course.h"
#include "tests/longrun/faults.h"
#include "tests/longrun/user.h"

namespace longrun {
namespace {

/// By how much the resident memory may grow after the first hour, kiB.
constexpr long kMostGrowth = 1024;

/// Returns appointments, weekly events and reminders over the two days that a run may touch.
std::vector<desktop::Record> Mix() {
    std::vector<desktop::Record> events;
    for (int i = 0; i < 8; ++i) {
        desktop::Record event;
        event.name = "evento " + std::to_string(i);
        event.description = "di prova, che il tempo passi o no";
        event.year = 2031;
        event.month = 3;
        event.day = 12 + i / 5;
        event.hour = (9 + 3 * i) % 24;
        event.minute = 5 * i;
        events.push_back(event);
        event.kind = desktop::kWeekly;
        event.wday = 3 + i / 4;
        event.hour = (8 + 4 * i) % 24;
        events.push_back(event);
        event.kind = desktop::kReminder;
        event.repeat = i % 3;
        if (i < 3) events.push_back(event);
    }
    // Near the hours that daylight saving leaves out and repeats: the first is due from three o'clock on, the
    // second from three minutes before the clock goes back, and then no more for half an hour.
    desktop::Record night;
    night.year = 2031;
    night.day = 30;
    night.month = 3;
    night.hour = 3;
    night.minute = 5;
    events.push_back(night);
    night.day = 26;
    night.month = 10;
    night.minute = 27;
    night.warned_60 = 1;
    events.push_back(night);
    return events;
}

/// Returns a process's resident memory, kiB; 0 where it cannot be read.
long ResidentMemory(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("RssAnon:", 0) == 0) return std::strtol(line.c_str() + 8, nullptr, 10);
    }
    return 0;
}

struct Run {
    double hours = 24;
    unsigned int seed = 1;
    std::string program = ULMARO_PROGRAM;
};

/// A program about to start: browsers are a file that takes note, memory and what is seen are watched.
struct Stage {
    desktop::Folder folder;
    SharedWorld world{folder};
    desktop::Start start;
    bool sanitized = false;

    explicit Stage(const Run& run) : sanitized(desktop::IsSanitized(run.program)) {
        folder.Write("xdg-open", "#!/bin/sh\necho \"$1\" >> \"$(dirname \"$0\")/opened\"\n");
        if (std::system(("chmod +x " + folder.Path("xdg-open")).c_str()) != 0) desktop::Fail("no browser");
        start.program = run.program;
        start.clock = desktop::Clock::kInHand;
        start.longest_step = kStep;
        start.spoilt[desktop::kStoreFile] = desktop::StoreBytes(Mix());
        start.preload.emplace_back(ULMARO_WITNESS_LIBRARY);
        start.environment["vblank_mode"] = "0";  // frames as fast as they can be drawn
        start.environment["PATH"] = folder.Path() + ":" + std::getenv("PATH");
        start.environment["LP_NUM_THREADS"] = "0";  // a window this small is drawn sooner without threads
        start.environment[kWitnessVariable] = folder.Path("frames");
        start.environment[kWorldVariable] = world.Path();
        start.environment["TZ"] = kZone;
    }

    long Browsers() const {
        const std::string opened = folder.Read("opened");
        return std::count(opened.begin(), opened.end(), '\n');
    }
};

void Print(const Figures& seen, const User& user, const Follower& follower, const Stage& stage) {
    std::printf("%llu frames, %.2f h, of them on the owl's screen %.2f h and undisturbed %.2f h\n",
                static_cast<unsigned long long>(seen.frames), seen.seconds / 3600, seen.owl_seconds / 3600,
                seen.calm_seconds / 3600);
    std::printf("%ld clicks, %ld pages opened, store changed %d times, %zu events at the end\n",
                user.Clicks(), stage.Browsers(), follower.Saves(), follower.Events());
    std::printf("%d offers by themselves after %.0f s in the mean, %d asked for, %d sounds\n", seen.offers,
                seen.offers > 0 ? seen.offer_gaps / seen.offers : 0, seen.asked_offers, seen.offer_sounds);
    std::printf("%d notices for %.0f s, %d sounds; %d quiz sounds, %d laughs\n", seen.notices,
                seen.badge_seconds, seen.notice_sounds, seen.quiz_sounds, seen.laughs);
    std::printf(
        "%d sleeps, %d of them undisturbed (%.1f an hour), letters %d times; %d wakings by the pointer; %d "
        "poses timed, %d of %d could-be sleeps were\n",
        seen.sleeps, seen.calm_sleeps,
        seen.calm_seconds > 0 ? 3600 * seen.calm_sleeps / seen.calm_seconds : 0, seen.letters,
        seen.pointer_wakings, seen.timed_poses, seen.chances_taken, seen.chances);
}

/// Lets one simulated hour pass, or what is left of the run.
void PassHour(Course& course, Faults& faults, double end) {
    const double hour_end = std::min(end, course.now + 3600);
    while (course.now < hour_end) {
        course.Pass(course.user.Act());
        faults.HappenIfDue();
    }
}

/// Compares the memory at the end of each hour with that at the end of the first one of the same process.
class MemoryWatch {
  public:
    /// Returns whether the memory has grown too much.
    bool HasGrown(long memory, int restarts) {
        if (restarts != restarts_ || first_ == 0) first_ = memory;
        restarts_ = restarts;
        growth_ = memory - first_;
        return growth_ >= kMostGrowth;
    }

    long Growth() const { return growth_; }

  private:
    int restarts_ = 0;
    long first_ = 0;   ///< kiB
    long growth_ = 0;  ///< kiB
};

/// Says what was wrong of all that only the whole run tells; returns the number of complaints.
int Conclude(const Course& course, const Faults& faults) {
    int wrong = 0;
    const auto say = [&](const std::string& text) {
        std::printf("WRONG: %s\n", text.c_str());
        ++wrong;
    };
    course.judge.Conclude();
    for (const std::string& complaint : course.judge.Complaints()) say(complaint);
    if (course.program.Said() != faults.Sayings()) say("the program said:\n" + course.program.Said());
    for (const std::string& fault : faults.Missing()) say("did not happen: " + fault);
    const Figures& seen = course.judge.Seen();
    if (seen.sleeps == 0 || seen.notices == 0 || course.user.Clicks() == 0) say("nothing was seen");
    return wrong;
}

/// Runs the program; returns the number of complaints.
int Perform(const Run& run) {
    std::printf("%g hours, seed %u, %s\n", run.hours, run.seed, run.program.c_str());
    Stage stage(run);
    desktop::Desktop desk;
    desktop::Program program(desk, stage.start);
    program.Resize({40, 60, kUsualEdge, kUsualEdge});
    Judge judge(static_cast<double>(kStep) / 1e9);
    judge.SetWallClock(ItalianTime(kBeginning));
    Follower follower(program, judge, stage.folder.Path("frames"));
    User user(desk, program, judge, follower, run.seed);
    Course course{desk, program, stage.world, judge, follower, user};
    Faults faults(course, run.hours * 3600);
    follower.CatchUp();

    const double began = desktop::Now();
    MemoryWatch watch;
    int wrong = 0;
    for (int hour = 1; course.now < run.hours * 3600; ++hour) {
        PassHour(course, faults, run.hours * 3600);
        if (hour == 1) user.TryEverything();  // what only the first use costs is no growth
        user.Settle();
        const long memory = ResidentMemory(program.Child().Id());
        const bool grown = watch.HasGrown(memory, course.restarts);
        std::printf("hour %2d: resident %ld kiB, %zu events, %.0f s of real time\n", hour, memory,
                    follower.Events(), desktop::Now() - began);
        std::fflush(stdout);
        if (stage.sanitized || !grown) continue;
        std::printf("WRONG: the memory has grown by %ld kiB since the first hour\n", watch.Growth());
        ++wrong;
    }
    wrong += Conclude(course, faults);
    std::printf("%d faults around the program\n", faults.Count());
    Print(judge.Seen(), user, follower, stage);
    return wrong;
}

}  // namespace
}  // namespace longrun

int main(int argc, char** argv) {
    longrun::Run run;
    if (argc > 1) run.hours = std::strtod(argv[1], nullptr);
    if (argc > 2) run.seed = static_cast<unsigned int>(std::strtoul(argv[2], nullptr, 10));
    if (argc > 3) run.program = argv[3];
    try {
        return longrun::Perform(run) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::printf("WRONG: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
