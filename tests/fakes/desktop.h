// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fake of app/desktop.h: a desktop whose pointer, clock and screen tests set, and which remembers what
// the program asked of it. Waiting advances the clock.
//
// How to use it:
//
//     fakes::desktop().pointer = {250, 250};               // screen pixels
//     fakes::desktop().nanoseconds += 16'000'000;          // a frame later
//     fakes::desktop().tells_of_refreshes = true;          // each comes refresh_after its request
//     fakes::desktop().refresh_after.reset();              // the screen is off: none comes any more
//     fakes::desktop().seen = false;                       // the window is minimised, say
//     fakes::desktop().focused = false;                    // another window has the focus
//     fakes::desktop().notice_clicked = true;              // told once
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

    bool seen = true;                           ///< somebody may see the window
    bool focused = true;                        ///< the window has the focus
    bool notice_clicked = false;                ///< the user has clicked the notice
    bool tells_of_refreshes = false;            ///< as with the X Present extension
    std::uint64_t refresh_period = 16'000'000;  ///< what RefreshPeriod returns, ns
    std::uint64_t frame_processor = 0;          ///< how far each look moves the processor's clock, ns
    std::vector<std::string> wrong_geometries;  ///< what IsGeometry does not take

    /// So long after it was asked for, a refresh comes, ns; nothing: it does not come.
    std::optional<std::uint64_t> refresh_after = 16'000'000;
    /// So long after the wait for a refresh has begun, GLUT has an event, ns; nothing: none comes.
    std::optional<std::uint64_t> event_after;
    /// So long after the wait for sight has begun, the window is seen, ns; nothing: nobody looks.
    std::optional<std::uint64_t> sight_after;

    // What tests read.
    int pointer_calls = 0;
    int clock_calls = 0;
    int mouse_resets = 0;
    int minimised = 0;                               ///< how often the window was
    int raised = 0;                                  ///< how often the window was
    std::vector<bool> demands;                       ///< every demand for attention (or its end), in order
    std::vector<DesktopNotice> notices;              ///< every notice, in order
    bool notice_shown = false;                       ///< the last of them has not been taken away
    int notices_closed = 0;                          ///< how often a notice was taken away
    std::uint64_t processor = 500'000'000;           ///< the processor's clock, ns; the start has used some
    std::optional<std::uint64_t> refresh_asked_for;  ///< when; nothing: none that has not come
    std::vector<std::string> opened;                 ///< every web address, in order
    std::string program;                             ///< the name that the window was introduced by
    int icon_width = 0, icon_height = 0;
    std::vector<unsigned char> icon;                 ///< its pixels
    void (*composed)(char32_t character) = nullptr;  ///< whom composed characters are reported to
    std::vector<int> swap_intervals;                 ///< every swap interval that was set, in order
};

// Returns the model that the fake desktop works on.
Desktop& desktop();

// Puts everything back. Reset() in fakes.h calls it.
void ResetDesktop();

}  // namespace fakes
