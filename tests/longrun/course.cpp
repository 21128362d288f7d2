// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/longrun/course.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace longrun {

std::tm ItalianTime(std::int64_t seconds) {
    const bool summer = seconds >= kSummerBegins && seconds < kSummerEnds;
    const std::time_t shown = seconds + (summer ? 7200 : 3600);
    std::tm local = {};
    gmtime_r(&shown, &local);
    return local;
}

SharedWorld::SharedWorld(const desktop::Folder& folder) : path_(folder.Path("world")) {
    folder.Write("world", std::string(sizeof(World), '\0'));
    const int file = open(path_.c_str(), O_RDWR | O_CLOEXEC);
    void* world = mmap(nullptr, sizeof(World), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (file >= 0) close(file);
    if (world == MAP_FAILED) desktop::Fail("no world");
    world_ = static_cast<World*>(world);
    world_->seconds = kBeginning;
}

SharedWorld::~SharedWorld() {
    munmap(world_, sizeof(World));
}

void Course::Pass(double seconds) {
    constexpr double kLongest = 30;
    for (double left = seconds; left > 0; left -= kLongest) {
        const double step = std::min(left, kLongest);
        program.LetTimePass(step);
        now += step;
        ShowWall();
    }
}

void Course::TurnWall(std::int64_t seconds) {
    follower.CatchUp();
    wall_offset += seconds;
    ShowWall();
}

void Course::ShowWall() {
    follower.CatchUp();
    world->seconds = kBeginning + wall_offset + static_cast<std::int64_t>(now);
    judge.SetWallClock(ItalianTime(world->seconds));
    program.WaitForFrames(2);
    follower.CatchUp();
}

}  // namespace longrun
