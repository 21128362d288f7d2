// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fake of app/desktop.h: a desktop whose pointer and clock tests set, and which remembers what the
// program asked of it.
//
// How to use it:
//
//     fakes::desktop().pointer = {250, 250};               // screen pixels
//     fakes::desktop().nanoseconds += 16'000'000;          // a frame later
//     EXPECT_EQ(fakes::desktop().opened, (std::vector<std::string>{"https://..."}));
//     EXPECT_EQ(fakes::desktop().swap_intervals, (std::vector<int>{1}));
//     EXPECT_EQ(fakes::desktop().pointer_calls, 1);
//
// Every call is logged as well (log.h), so that its place among the calls of GL and GLUT can be asserted.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/desktop.h"

namespace fakes {

struct Desktop {
    // What tests set.
    ScreenPoint pointer{250, 250};              ///< screen pixels; the middle of the fake GLUT's window
    std::uint64_t nanoseconds = 1'000'000'000;  ///< what the clock shows; it stands still by itself

    std::optional<std::uint64_t>
        event_after;  ///< after so long an event ends a wait, ns; nothing: none comes

    // What tests read.
    int pointer_calls = 0;
    int clock_calls = 0;
    int mouse_resets = 0;
    std::vector<std::string> opened;  ///< every web address, in order
    std::string program;              ///< the name that the window was introduced by
    int icon_width = 0, icon_height = 0;
    std::vector<unsigned char> icon;  ///< its pixels
    std::vector<int> swap_intervals;  ///< every swap interval that was set, in order
};

// Returns the model that the fake desktop works on.
Desktop& desktop();

// Puts everything back. Reset() in fakes.h calls it.
void ResetDesktop();

}  // namespace fakes
