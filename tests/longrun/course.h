// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The course of a long run: the program, its world and who watches it, and the time that passes for all of
// them.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "tests/desktop/desktop.h"
#include "tests/longrun/judge.h"
#include "tests/longrun/user.h"
#include "tests/longrun/witness.h"

namespace longrun {

/// The longest step of the program's clock, ns: below the 0.25 s above which it takes a frame for a stall.
constexpr std::int64_t kStep = 240'000'000;

/// The size of the window in most of a run: small, because a run draws hundreds of thousands of frames.
constexpr int kUsualEdge = 64;

/// The time zone of a run, with both nights of daylight saving.
constexpr char kZone[] = "CET-1CEST,M3.5.0,M10.5.0/3";

/// Seconds since 1970: when a run begins, Wednesday 12 March 2031, 06:30 in Italy, and when daylight saving
/// begins and ends in that year.
constexpr std::int64_t kBeginning = 1'931'059'800;
constexpr std::int64_t kSummerBegins = 1'932'598'800;
constexpr std::int64_t kSummerEnds = 1'950'742'800;

/// Returns the Italian time of 2031. Reckoned here by hand, as the judge's own opinion.
std::tm ItalianTime(std::int64_t seconds);

/// The program's world in a file that it maps too.
class SharedWorld {
  public:
    explicit SharedWorld(const desktop::Folder& folder);
    ~SharedWorld();
    SharedWorld(const SharedWorld&) = delete;
    SharedWorld& operator=(const SharedWorld&) = delete;

    const std::string& Path() const { return path_; }
    World& operator*() const { return *world_; }
    World* operator->() const { return world_; }

  private:
    std::string path_;
    World* world_ = nullptr;
};

struct Course {
    desktop::Desktop& desk;
    desktop::Program& program;
    SharedWorld& world;
    Judge& judge;
    Follower& follower;
    User& user;
    double now = 0;                ///< simulated seconds since the run began
    std::int64_t wall_offset = 0;  ///< by how much the clock on the wall was set, seconds
    int restarts = 0;              ///< of the program

    /// Lets some seconds pass, in steps of at most thirty, and follows the program.
    void Pass(double seconds);

    /// Sets the clock on the wall by that much more, at once.
    void TurnWall(std::int64_t seconds);

  private:
    void ShowWall();
};

}  // namespace longrun
