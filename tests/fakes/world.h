// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The settable world: the C library's rand, srand, time, localtime and system, replaced at link time.
//
// How to use it:
//
//     fakes::world().rand_values = {3, 0, 7};              // what rand gives next; then its own sequence
//     fakes::world().rand_default = 0;                     // ... or always this, once those are used up
//     fakes::SetLocalTime(2012, 5, 16, 10, 30);            // what time and localtime tell
//     fakes::world().now += 61;                            // a minute later
//     EXPECT_EQ(fakes::world().rand_calls, 1);
//     EXPECT_EQ(fakes::world().seeds, (std::vector<unsigned int>{42}));
//     EXPECT_EQ(fakes::world().commands, (std::vector<std::string>{"open http://..."}));
//
// The local zone is taken to be UTC without summer time, so localtime follows `now`. By default it is
// Wednesday, 16 May 2012, 10:30:00. rand's own sequence is the same in every run and starts over at
// srand, as the C library's does. GoogleTest uses none of these five functions (it reads its clocks
// through other calls), so tests may set them freely. srand and system are logged (log.h), the others
// only counted.

#pragma once

#include <cstdint>
#include <ctime>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace fakes {

struct World {
    std::deque<int> rand_values;      ///< scripted, 0 .. RAND_MAX each; others end the test program
    std::optional<int> rand_default;  ///< given once the script is used up; nothing: the own sequence
    int rand_calls = 0;
    std::uint32_t rand_state = 1;
    std::vector<unsigned int> seeds;  ///< every srand

    std::time_t now = 0;           ///< seconds since 1970
    std::optional<std::tm> local;  ///< what localtime gives for any instant; nothing: derived from it
    int time_calls = 0;
    int localtime_calls = 0;

    std::vector<std::string> commands;                   ///< every system with a command
    int system_result = 0;                               ///< what system returns
    std::function<void(const std::string&)> on_command;  ///< runs inside system, if set
};

/// Returns the model that the fakes of the C library work on.
World& world();

/// Sets the local time that the program sees; month is 1 .. 12. The weekday follows.
void SetLocalTime(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

/// Puts everything back. Reset() in fakes.h calls it.
void ResetWorld();

}  // namespace fakes
