// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The long run: the real program through simulated hours, with a restless user and a judge.
//
// usage: longrun HOURS SEED [PROGRAM]
//
// The program's clock is in hand and takes one step of 0.24 s a frame, as fast as frames can be drawn; the
// clock on the wall goes along in steps of at most thirty seconds. The same seed gives the same user; the
// program's own chance is seeded by the clock on the wall and so is the same too. PROGRAM may be built with
// sanitizers; then its memory is not judged.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

#include "tests/desktop/calendar.h"
#include "tests/longrun/sanitized.h"
#include "tests/longrun/user.h"

namespace longrun {
namespace {

/// Below the 0.25 s above which the program takes a frame for a stall.
constexpr std::int64_t kStep = 240'000'000;

/// By how much the resident memory may grow after the first hour, kiB.
constexpr long kMostGrowth = 1024;

/// The run begins on a Wednesday.
std::tm WallTime(double seconds) {
    std::tm start = {};
    start.tm_year = 131;
    start.tm_mon = 2;
    start.tm_mday = 12;
    start.tm_hour = 6;
    start.tm_min = 30;
    const std::time_t now = timegm(&start) + static_cast<std::time_t>(seconds);
    std::tm local = {};
    gmtime_r(&now, &local);
    return local;
}

/// The clock on the wall, as the witness shows it to the program. Its time zone is that of the universal
/// time.
class Wall {
  public:
    explicit Wall(const desktop::Folder& folder) : path_(folder.Path("wall")) {
        folder.Write("wall", std::string(sizeof *seconds_, '\0'));
        const int file = open(path_.c_str(), O_RDWR | O_CLOEXEC);
        void* number = mmap(nullptr, sizeof *seconds_, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (file >= 0) close(file);
        if (number == MAP_FAILED) desktop::Fail("no clock for the wall");
        seconds_ = static_cast<std::atomic<std::int64_t>*>(number);
    }
    ~Wall() { munmap(seconds_, sizeof *seconds_); }
    Wall(const Wall&) = delete;
    Wall& operator=(const Wall&) = delete;

    const std::string& Path() const { return path_; }

    void Set(std::tm time) { *seconds_ = timegm(&time); }

  private:
    std::string path_;
    std::atomic<std::int64_t>* seconds_ = nullptr;
};

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
    return events;
}

/// Returns a process's resident memory, kiB; 0 where it cannot be read.
long ResidentMemory(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
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
    Wall wall{folder};
    desktop::Start start;
    bool sanitized = false;

    explicit Stage(const Run& run) : sanitized(IsSanitized(run.program)) {
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
        start.environment[kWallVariable] = wall.Path();
        start.environment["TZ"] = "UTC0";
        wall.Set(WallTime(0));
        if (!sanitized) return;
        std::string preload = std::string(ULMARO_ASAN_LIBRARY) + ":" + ULMARO_PROBE_LIBRARY;
        for (const std::string& library : start.preload) preload += ":" + library;
        start.environment["LD_PRELOAD"] = preload;
        start.environment["ASAN_OPTIONS"] = "detect_leaks=0";
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
void PassHour(double& now, double end, Stage& stage, desktop::Program& program, Judge& judge, User& user,
              Follower& follower) {
    const double hour_end = std::min(end, now + 3600);
    while (now < hour_end) {
        const double pause = user.Act();
        program.LetTimePass(pause);
        follower.CatchUp();
        now += pause;
        stage.wall.Set(WallTime(now));
        judge.SetWallClock(WallTime(now));
        program.WaitForFrames(2);
        follower.CatchUp();
    }
}

/// Runs the program; returns the number of complaints.
int Perform(const Run& run) {
    std::printf("%g hours, seed %u, %s\n", run.hours, run.seed, run.program.c_str());
    Stage stage(run);
    desktop::Desktop desk;
    desktop::Program program(desk, stage.start);
    program.Resize({40, 60, 64, 64});
    Judge judge(static_cast<double>(kStep) / 1e9);
    judge.SetWallClock(WallTime(0));
    Follower follower(program, judge, stage.folder.Path("frames"));
    User user(desk, program, judge, follower, run.seed);
    follower.CatchUp();

    const double began = desktop::Now();
    long first_hour = 0;
    int wrong = 0;
    double now = 0;
    for (int hour = 1; now < run.hours * 3600; ++hour) {
        PassHour(now, run.hours * 3600, stage, program, judge, user, follower);
        if (hour == 1) user.TryEverything();  // what only the first use costs is no growth
        user.Settle();
        const long memory = ResidentMemory(program.Child().Id());
        if (hour == 1) first_hour = memory;
        std::printf("hour %2d: resident %ld kiB, %zu events, %.0f s of real time\n", hour, memory,
                    follower.Events(), desktop::Now() - began);
        std::fflush(stdout);
        if (stage.sanitized || memory - first_hour < kMostGrowth) continue;
        std::printf("WRONG: the memory has grown by %ld kiB since the first hour\n", memory - first_hour);
        ++wrong;
    }
    judge.Conclude();
    Print(judge.Seen(), user, follower, stage);
    for (const std::string& complaint : judge.Complaints()) std::printf("WRONG: %s\n", complaint.c_str());
    wrong += static_cast<int>(judge.Complaints().size());
    if (!program.Said().empty()) {
        std::printf("WRONG: the program said:\n%s\n", program.Said().c_str());
        ++wrong;
    }
    if (judge.Seen().sleeps == 0 || judge.Seen().notices == 0 || user.Clicks() == 0) {
        std::printf("WRONG: nothing was seen\n");
        ++wrong;
    }
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
