// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/world.h"

#include <cstdio>
#include <cstdlib>

#include "tests/fakes/log.h"

namespace fakes {

World& world() {
    static World model = [] {
        World fresh;
        fresh.now = 1337164200;  // Wednesday, 16 May 2012, 10:30:00
        return fresh;
    }();
    return model;
}

void ResetWorld() {
    World fresh;
    fresh.now = 1337164200;
    world() = fresh;
}

void SetLocalTime(int year, int month, int day, int hour, int minute, int second) {
    std::tm local{};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    world().now = timegm(&local);
    world().local.reset();
}

}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

// The own sequence is the linear congruential generator of Numerical Recipes, its upper bits.
int rand() noexcept {
    ++world().rand_calls;
    if (!world().rand_values.empty()) {
        const int value = world().rand_values.front();
        world().rand_values.pop_front();
        if (value < 0) {
            std::fprintf(stderr, "A test scripted rand to give %d, which rand never does.\n", value);
            std::abort();
        }
        return value;
    }
    if (world().rand_default) return *world().rand_default;
    world().rand_state = world().rand_state * 1664525U + 1013904223U;
    return static_cast<int>(world().rand_state >> 1U);
}

void srand(unsigned int seed) noexcept {
    Record("srand", {seed});
    world().seeds.push_back(seed);
    world().rand_state = seed;
}

std::time_t time(std::time_t* timer) noexcept {
    ++world().time_calls;
    if (timer != nullptr) *timer = world().now;
    return world().now;
}

std::tm* localtime(const std::time_t* timer) noexcept {
    static std::tm broken_down;
    ++world().localtime_calls;
    if (!world().local) return gmtime_r(timer, &broken_down);
    broken_down = *world().local;
    return &broken_down;
}

int system(const char* command) {
    if (command == nullptr) return 1;  // there is a shell
    Record("system", {}, command);
    world().commands.emplace_back(command);
    if (world().on_command) world().on_command(command);
    return world().system_result;
}

}  // extern "C"
