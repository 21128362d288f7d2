// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The pace of the owl's frames: the screen's refresh rate, half of it at rest, and what becomes of it where
// nothing tells of refreshes or swaps take long.
#include <gtest/gtest.h>
#include <xcb/present.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/desktop/calendar.h"
#include "tests/desktop/fixture.h"

namespace desktop {
namespace {

/// Counts the screen's refreshes on a connection of its own.
class RefreshCounter {
  public:
    explicit RefreshCounter(const std::string& display)
        : connection_(xcb_connect(display.c_str(), nullptr)), window_(xcb_generate_id(connection_)) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        const std::uint32_t unmanaged = 1;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                          &unmanaged);
        xcb_map_window(connection_, window_);
        xcb_present_select_input(connection_, xcb_generate_id(connection_), window_,
                                 XCB_PRESENT_EVENT_MASK_COMPLETE_NOTIFY);
    }
    ~RefreshCounter() { xcb_disconnect(connection_); }
    RefreshCounter(const RefreshCounter&) = delete;
    RefreshCounter& operator=(const RefreshCounter&) = delete;

    /// Begins to count.
    void Begin() { first_ = Await(); }

    /// Returns how many refreshes a second the server has counted since Begin(). Some seconds must lie
    /// between, because the count is of whole refreshes.
    double PerSecond() {
        const Refresh last = Await();
        return 1e6 * static_cast<double>(last.number - first_.number) /
               static_cast<double>(last.at - first_.at);
    }

  private:
    struct Refresh {
        std::uint64_t number = 0;
        std::uint64_t at = 0;  ///< microseconds
    };

    /// Waits for the next refresh.
    Refresh Await() {
        xcb_present_notify_msc(connection_, window_, 0, last_.number + 1, 0, 0);
        xcb_flush(connection_);
        xcb_generic_event_t* event = xcb_wait_for_event(connection_);
        if (event == nullptr || (event->response_type & 0x7FU) != XCB_GE_GENERIC) {
            Fail("the X server tells of no refresh");
        }
        const auto* refresh = reinterpret_cast<xcb_present_complete_notify_event_t*>(event);
        last_ = {refresh->msc, refresh->ust};
        std::free(event);
        return last_;
    }

    xcb_connection_t* connection_;
    xcb_window_t window_;
    Refresh first_;
    Refresh last_;
};

class ThePace : public OnDesktop {
  protected:
    /// Watches for some seconds while the pointer moves over the window; returns the swaps per second.
    double SwapsWhileThePointerMoves(const Program& program, double seconds) {
        const ScreenRect place = program.Place();
        const double start = Now();
        const std::uint64_t before = program.Swaps();
        for (int step = 0; Now() < start + seconds; ++step) {
            desk.MovePointer({place.x + 50 + step % 200, place.y + 150});
            SleepSeconds(0.02);
        }
        return static_cast<double>(program.Swaps() - before) / (Now() - start);
    }

    /// Watches for some seconds in which nothing is touched.
    static double SwapsAtRest(const Program& program, double seconds) {
        const double start = Now();
        const std::uint64_t before = program.Swaps();
        SleepSeconds(seconds);
        return static_cast<double>(program.Swaps() - before) / (Now() - start);
    }

    /// Does the same until there are more swaps per second than that, some times, because the machine may be
    /// busy. A swap that was slow is not made again before the window is touched. Returns the last.
    double SwapsAtRestBeyond(const Program& program, double seconds, double swaps) {
        double rate = SwapsAtRest(program, seconds);
        for (int tries = 1; tries < 10 && rate <= swaps; ++tries) {
            desk.TouchWindow(program.Place());
            SleepSeconds(1.2);  // until the owl is at rest
            rate = SwapsAtRest(program, seconds);
        }
        return rate;
    }
};

/// Swaps per second that no frame paced by a refresh reaches here.
constexpr double kUnbound = 75;

/// Returns how far a rate is from the wanted one, as a share of that.
double Error(double rate, double wanted) {
    return std::abs(rate / wanted - 1);
}

TEST_F(ThePace, IsTheRefreshRateWhileThePointerMovesAndHalfOfItAtRest) {
    Program& program = Run();
    RefreshCounter refreshes(desk.Name());
    double moving_error = 1;
    double rest_error = 1;
    // Of both the best of some, because the machine may be busy.
    for (int tries = 0; tries < 8 && moving_error > 0.02; ++tries) {
        refreshes.Begin();
        SwapsWhileThePointerMoves(program, 0.3);
        const double moving = SwapsWhileThePointerMoves(program, 3);
        const double wanted = refreshes.PerSecond();
        std::printf("%.1f refreshes/s; %.1f swaps/s while the pointer moves\n", wanted, moving);
        moving_error = std::min(moving_error, Error(moving, wanted));
    }
    SleepSeconds(1.3);
    for (int tries = 0; tries < 8 && rest_error > 0.02; ++tries) {
        refreshes.Begin();
        const double rest = SwapsAtRest(program, 4);
        const double wanted = refreshes.PerSecond();
        std::printf("%.1f refreshes/s; %.1f swaps/s at rest\n", wanted, rest);
        rest_error = std::min(rest_error, Error(rest, wanted / 2));
    }

    EXPECT_LT(moving_error, 0.02);
    EXPECT_LT(rest_error, 0.02) << "GL without a graphics card is costly enough to rest";
}

TEST_F(ThePace, IsFullAgainAtTheFirstMovementAfterARest) {
    Program& program = Run();
    SleepSeconds(2);
    double rate = 0;
    // The best of some, because the machine may be busy.
    for (int tries = 0; tries < 10 && rate < 50; ++tries) {
        SleepSeconds(1.2);
        desk.MovePointer({Desktop::kWidth / 2, Desktop::kHeight / 2});
        const ScreenRect place = program.Place();
        desk.MovePointer({place.x + 100, place.y + 100 + tries});
        rate = SwapsAtRest(program, 0.5);
    }
    std::printf("%.1f swaps/s in the half second after a movement\n", rate);
    EXPECT_GE(rate, 50);
}

TEST_F(ThePace, IsUnboundForMeasuring) {
    Start start;
    start.environment["vblank_mode"] = "0";
    Program& program = Run(start);
    program.Resize({400, 300, 100, 100});  // cheap frames, also on a busy machine

    const double rate = SwapsAtRestBeyond(program, 1, kUnbound);

    std::printf("%.1f swaps/s\n", rate);
    EXPECT_GT(rate, kUnbound);
}

TEST_F(ThePace, NeedsNoWordOfRefreshes) {
    Start start;
    start.preload = {ULMARO_WITHOUT_PRESENT_LIBRARY};
    Program& program = Run(start);

    program.Resize({400, 300, 100, 100});  // cheap frames, also on a busy machine

    const double shown = SwapsAtRestBeyond(program, 1, kUnbound);
    program.Minimise();
    SleepSeconds(0.5);
    const double hidden = program.FramesPerSecond(1.5);

    std::printf("%.1f swaps/s, hidden %.1f frames/s\n", shown, hidden);
    EXPECT_GT(shown, kUnbound) << "nothing may wait: the extension is not hidden at all";
    EXPECT_GE(hidden, 8);
    EXPECT_LE(hidden, 15);
    EXPECT_EQ(program.Said(), "");
}

/// The program whose own connection to the server breaks after a while, or at once.
class TheLostConnection : public ThePace, public testing::WithParamInterface<int> {};

TEST_P(TheLostConnection, LeavesAWindowThatIsDrawnWhileItIsShownAndTenTimesASecondWhileItIsNot) {
    Start start;
    start.preload = {ULMARO_LOST_CONNECTION_LIBRARY};
    start.environment["ULMARO_CONNECTION_LASTS"] = std::to_string(GetParam());
    Program& program = Run(start);
    program.Resize({400, 300, 100, 100});  // cheap frames, also on a busy machine
    SleepSeconds(1);

    const double shown = SwapsAtRest(program, 1);
    program.Minimise();
    SleepSeconds(0.5);
    const double hidden = program.FramesPerSecond(1.5);

    std::printf("%.1f swaps/s, minimised %.1f frames/s\n", shown, hidden);
    EXPECT_GT(shown, 2) << "also on a busy machine";
    EXPECT_GE(hidden, 5);
    EXPECT_LE(hidden, 15);
    EXPECT_EQ(program.Said(), "");
}

INSTANTIATE_TEST_SUITE_P(Lasting, TheLostConnection, testing::Values(0, 100),
                         [](const auto& test) { return test.param == 0 ? "NotAtAll" : "AWhile"; });

TEST_F(ThePace, IsThatOfAHiddenWindowWhereNoRefreshComes) {
    Start start;
    start.preload = {ULMARO_WITHOUT_REFRESHES_LIBRARY};
    Program& program = Run(start);
    SleepSeconds(0.5);

    const double rate = program.FramesPerSecond(2);

    std::printf("%.1f frames/s\n", rate);
    EXPECT_GE(rate, 8);
    EXPECT_LE(rate, 15);
}

TEST_F(ThePace, OfTimersOutlivesSwapsOfASecond) {
    Record event;
    event.name = "Dentista";
    event.day = event.month = 1;
    event.year = 2020;
    Start start;
    start.spoilt[kStoreFile] = StoreBytes({event});
    start.preload = {ULMARO_SLOW_SWAPS_LIBRARY};
    Program& program = Run(start);
    ASSERT_TRUE(WaitUntil([&] { return program.Notices() >= 1; }, 5)) << "no notice";
    const double first = Now();
    const std::uint64_t frames = program.Frames();
    const double stalled = program.StalledSeconds();

    // A timer of 35 seconds; reminders count by the same frames.
    EXPECT_TRUE(WaitUntil([&] { return program.Notices() >= 2; }, 40)) << "no second notice";
    const double passed = Now() - first;

    std::printf("the second notice after %.2f s; %.1f frames/s, %.2f s lost\n", passed,
                static_cast<double>(program.Frames() - frames) / passed, program.StalledSeconds() - stalled);
    // The swaps of the window's start come on top: until it is shown and the pointer stands still.
    EXPECT_NEAR(passed, 35, 35 * 0.02 + program.StalledSeconds() - stalled);
    EXPECT_LE(program.StalledSeconds() - stalled, 3);
}

}  // namespace
}  // namespace desktop
