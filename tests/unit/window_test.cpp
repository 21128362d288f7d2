// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: watching over the frames, shown frames, late refreshes, frames that nobody sees, slow swaps, rest,
// swap control, without waiting, options, the title.
#include "app/window.h"

#include <GL/gl.h>

#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"

namespace {

using Calls = std::vector<std::string>;

constexpr std::uint64_t kMillisecond = 1'000'000;

int frames_drawn = 0;
std::function<void()> draw;  ///< what a frame does beside beginning and ending

/// A display callback.
void DrawFrame() {
    ++frames_drawn;
    BeginFrame();
    fakes::Record("draw", {fakes::gl().Enabled(GL_SCISSOR_TEST)});
    if (draw) draw();
    PresentFrame();
}

/// A window whose frames are watched over. GLUT was last idle right after a frame, and there was no activity
/// for an hour.
class WindowTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        frames_drawn = 0;
        draw = nullptr;
        fakes::desktop().nanoseconds = std::uint64_t{3'600'000} * kMillisecond;
        window.frame = DrawFrame;
        window.last_frame = fakes::desktop().nanoseconds;
        WatchByIdleCallback();
        start_ = fakes::desktop().nanoseconds;
        fakes::ClearLog();
    }
    void TearDown() override {
        draw = nullptr;
        AppTest::TearDown();
    }

    /// Does a round of GLUT's loop for a window that GLUT takes for shown.
    static void Round() {
        DrawFrame();
        fakes::glut().idle();
    }
    static void Rounds(int rounds) {
        for (int i = 0; i < rounds; ++i) Round();
    }

    /// Does rounds of GLUT's loop for so long; returns how many frames they swapped.
    static int SwapsWithin(std::uint64_t milliseconds) {
        const std::uint64_t end = fakes::desktop().nanoseconds + milliseconds * kMillisecond;
        const int before = fakes::glut().swaps;
        for (int i = 0; i < 100'000 && fakes::desktop().nanoseconds < end; ++i) Round();
        EXPECT_GE(fakes::desktop().nanoseconds, end) << "time stands still";
        return fakes::glut().swaps - before;
    }

    /// Lets frames take so long to draw.
    static void LetDrawingTake(std::uint64_t milliseconds) {
        draw = [=] { fakes::desktop().nanoseconds += milliseconds * kMillisecond; };
    }

    /// Lets swaps take so long.
    static void LetSwapsTake(std::uint64_t milliseconds) {
        fakes::glut().swap = [=] { fakes::desktop().nanoseconds += milliseconds * kMillisecond; };
    }

    /// Returns the milliseconds since the last call.
    double Passed() {
        const std::uint64_t before = start_;
        start_ = fakes::desktop().nanoseconds;
        return static_cast<double>(start_ - before) / 1e6;
    }

    static void ForgetCalls() { fakes::ClearLog(); }

    /// Returns how the driver's swap interval was set.
    static std::vector<int> Intervals() { return fakes::desktop().swap_intervals; }

  private:
    static void WatchByIdleCallback() {
        window.watching = false;
        WatchFrames();
    }

    std::uint64_t start_ = 0;
};

/// A window on a desktop that tells of refreshes; one comes 16 ms after it was asked for.
class PacedTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        fakes::desktop().tells_of_refreshes = true;
        Round();
        fakes::desktop().swap_intervals.clear();
        Passed();
        ForgetCalls();
    }

    /// Lets no refresh come, so that the frames of a hidden window take over.
    void LoseTheRefresh() {
        fakes::desktop().refresh_after.reset();
        Round();
        Passed();
        ForgetCalls();
    }
    /// Lets the refresh that was asked for come now, and those that follow as before.
    static void FindTheRefresh() {
        fakes::desktop().refresh_asked_for = fakes::desktop().nanoseconds - 16 * kMillisecond;
        fakes::desktop().refresh_after = 16 * kMillisecond;
    }
};

// ---- Watching over the frames ----

using WatchFramesTest = WindowTest;

TEST_F(WatchFramesTest, WatchingDrawsNothing) {
    window.watching = false;

    WatchFrames();

    EXPECT_EQ(frames_drawn, 0);
    EXPECT_EQ(fakes::Lines(), (Calls{"glutIdleFunc(1)"}));
}

TEST_F(WatchFramesTest, WatchingIsBegunOnce) {
    WatchFrames();
    WatchFrames();

    EXPECT_EQ(fakes::Count("glutIdleFunc"), 0U);
}

TEST_F(WatchFramesTest, WhereGlutDrawsTheIdleCallbackDrawsNothing) {
    Rounds(10);

    EXPECT_EQ(frames_drawn, 10);
}

TEST_F(WatchFramesTest, WhereGlutDrawsNothingTheIdleCallbackDrawsAFrameThatNobodySees) {
    fakes::glut().idle();

    EXPECT_EQ(frames_drawn, 1);
    EXPECT_EQ(fakes::Calls("draw").at(0).args.at(0), 1);
    EXPECT_EQ(fakes::glut().swaps, 0);
    EXPECT_EQ(Passed(), 100);
}

TEST_F(WatchFramesTest, WhileGlutDrawsNothingTheIdleCallbackDrawsTenFramesASecond) {
    for (int i = 0; i < 100; ++i) fakes::glut().idle();

    EXPECT_EQ(frames_drawn, 100);
    EXPECT_EQ(Passed(), 10'000);
}

TEST_F(WatchFramesTest, TheFirstFrameThatGlutDrawsAgainIsShown) {
    fakes::glut().idle();

    Round();

    EXPECT_EQ(fakes::glut().swaps, 1);
    EXPECT_EQ(frames_drawn, 2);
}

TEST(WindowStartTest, NothingHasHappenedBeforeTheFirstFrame) {
    const WindowState state;

    EXPECT_EQ(state.frame_begin, 0U);
    EXPECT_EQ(state.last_frame, 0U);
    EXPECT_EQ(state.swap_again, 0U);
    EXPECT_EQ(state.last_activity, 0U);
    EXPECT_EQ(state.processor, 0U);
    EXPECT_EQ(state.frame_cost, 0);
    EXPECT_FALSE(state.active);
    EXPECT_FALSE(state.unsaved);
}

TEST(WindowStartTest, TheFirstFrameOfAWindowThatIsHiddenFromTheStartWaitsForNothing) {
    ExpectInFreshProcess([] {
        SetFrame(DrawFrame);
        WatchFrames();
        fakes::glut().idle();
        const bool first = frames_drawn == 1 && fakes::Count("AwaitSight") == 0;
        fakes::glut().idle();
        return first && frames_drawn == 2 && fakes::Count("AwaitSight") == 1;
    });
}

TEST(WindowStartTest, TheFirstFrameOfAllSetsTheIntervalOfAShownWindowBeforeItSwaps) {
    ExpectInFreshProcess([] {
        SetFrame(DrawFrame);
        DrawFrame();
        return fakes::Lines({"SetSwapInterval", "glFlush", "glFinish", "glutSwapBuffers"}) ==
               Calls{"glFlush()", "glFinish()", "SetSwapInterval(1)", "glutSwapBuffers()"};
    });
}

// ---- Shown frames ----

using ShownFrameTest = PacedTest;

TEST_F(ShownFrameTest, TheRefreshIsAskedForFirstThenDrawingIsAwaitedAndTheSwapComesLast) {
    Round();

    EXPECT_EQ(fakes::Lines({"RequestRefresh", "AwaitDrawing", "draw", "glFlush", "glFinish", "AwaitRefresh",
                            "AwaitSight", "glScissor", "glEnable", "glDisable", "glutSwapBuffers"}),
              (Calls{"RequestRefresh()", "AwaitDrawing()", "draw(0)", "glFlush()", "glFinish()",
                     "AwaitRefresh(100000000, 0)", "glutSwapBuffers()"}));
}

TEST_F(ShownFrameTest, WhatTheUserDidIsForgottenByTheTimeTheFrameEnds) {
    NoteActivity();

    Round();

    EXPECT_FALSE(window.active);
    EXPECT_EQ(window.last_activity, fakes::desktop().nanoseconds - 16 * kMillisecond);
}

TEST_F(ShownFrameTest, DrawingAndWaitingOverlap) {
    LetDrawingTake(7);

    EXPECT_EQ(SwapsWithin(16 * 60), 60);
}

TEST_F(ShownFrameTest, AFrameThatIsLongerThanARefreshWaitsForNothing) {
    LetDrawingTake(20);

    EXPECT_EQ(SwapsWithin(20 * 60), 60);
}

TEST_F(ShownFrameTest, AFrameIsHeldForATenthOfASecondAtMost) {
    fakes::desktop().refresh_after = 99 * kMillisecond;
    Round();
    EXPECT_EQ(Passed(), 99);
    EXPECT_EQ(fakes::glut().swaps, 2);

    fakes::desktop().refresh_after = 101 * kMillisecond;
    Round();
    EXPECT_EQ(Passed(), 100);
    EXPECT_EQ(fakes::glut().swaps, 2);
}

// ---- Late refreshes ----

using LateRefreshTest = PacedTest;

TEST_F(LateRefreshTest, TheFrameThatWaitedInVainIsNotSwapped) {
    fakes::desktop().refresh_after.reset();

    Round();

    EXPECT_EQ(Passed(), 100);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);
}

TEST_F(LateRefreshTest, UntilItComesTenFramesASecondTouchNoPixelAndAreNotSwapped) {
    LoseTheRefresh();

    Rounds(100);

    EXPECT_EQ(Passed(), 10'000);
    EXPECT_EQ(fakes::Count("draw"), 100U);
    EXPECT_EQ(fakes::Count("AwaitSight"), 100U);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);
    for (const fakes::Call& frame : fakes::Calls("draw")) EXPECT_EQ(frame.args.at(0), 1);
}

TEST_F(LateRefreshTest, UntilItComesNoFrameWaitsForIt) {
    LoseTheRefresh();

    Rounds(3);

    EXPECT_EQ(fakes::Lines({"AwaitRefresh"}), Calls(3, "AwaitRefresh(0, 0)"));
}

TEST_F(LateRefreshTest, EachFrameUntilItComesAsksForItAgain) {
    LoseTheRefresh();

    Rounds(3);

    EXPECT_EQ(fakes::Names({"AwaitRefresh", "RequestRefresh", "draw"}),
              (Calls{"AwaitRefresh", "RequestRefresh", "draw", "AwaitRefresh", "RequestRefresh", "draw",
                     "AwaitRefresh", "RequestRefresh", "draw"}));
}

TEST_F(LateRefreshTest, TheFirstFrameAfterItHasComeIsShownAtOnce) {
    LoseTheRefresh();
    Round();
    FindTheRefresh();
    Passed();

    Round();

    EXPECT_EQ(Passed(), 0);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 1U);
    EXPECT_EQ(fakes::Calls("draw").back().args.at(0), 0);
}

TEST_F(LateRefreshTest, AfterItHasComeTheRateIsFull) {
    LoseTheRefresh();
    Rounds(10);
    FindTheRefresh();
    Round();

    EXPECT_EQ(SwapsWithin(16 * 60), 60);
}

TEST_F(LateRefreshTest, ItEndsTheWaitOfTheFrameThatNobodySees) {
    LoseTheRefresh();
    fakes::desktop().refresh_after = 130 * kMillisecond;  // 100 of them have passed

    Round();
    EXPECT_EQ(Passed(), 30);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);

    Round();
    EXPECT_EQ(Passed(), 0);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 1U);
}

TEST_F(LateRefreshTest, TheDriverNeedNotWaitForTheFrameThatIsShownAtOnce) {
    Round();
    LoseTheRefresh();
    Round();
    FindTheRefresh();
    fakes::desktop().swap_intervals.clear();

    Rounds(3);

    EXPECT_EQ(Intervals(), (std::vector<int>{}));
}

TEST_F(LateRefreshTest, ItIsWaitedForAnewWhenTheWindowIsSeenAgain) {
    LoseTheRefresh();
    fakes::desktop().seen = false;
    Round();
    fakes::desktop().seen = true;
    ForgetCalls();

    Round();

    EXPECT_EQ(fakes::Lines({"AwaitRefresh"}), (Calls{"AwaitRefresh(100000000, 0)"}));
    EXPECT_EQ(fakes::Calls("draw").at(0).args.at(0), 0);
}

TEST_F(LateRefreshTest, ADesktopThatTellsOfRefreshesNoLongerLeavesTheWindowShown) {
    LoseTheRefresh();
    Round();
    fakes::desktop().tells_of_refreshes = false;  // the connection has broken
    fakes::desktop().refresh_asked_for.reset();
    ForgetCalls();

    Rounds(3);

    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 3U);
}

// ---- Frames that nobody sees ----

using HiddenFrameTest = PacedTest;

TEST_F(HiddenFrameTest, TouchesNoPixelAsksForNoRefreshAndIsNotSwapped) {
    fakes::desktop().seen = false;

    Round();

    EXPECT_EQ(fakes::Lines({"RequestRefresh", "draw", "glFlush", "glFinish", "AwaitRefresh", "AwaitSight",
                            "glScissor", "glEnable", "glDisable", "glutSwapBuffers", "SetSwapInterval",
                            "GlobalPointer", "glutGet"}),
              (Calls{"glEnable(GL_SCISSOR_TEST)", "glScissor(0, 0, 0, 0)", "draw(1)", "glFlush()",
                     "glFinish()", "glDisable(GL_SCISSOR_TEST)", "AwaitSight(100000000)"}));
}

TEST_F(HiddenFrameTest, TellsThatItIsHiddenWhileItIsDrawn) {
    std::vector<bool> hidden;
    draw = [&] { hidden.push_back(IsFrameHidden()); };

    Round();
    fakes::desktop().seen = false;
    Round();
    fakes::desktop().seen = true;
    Round();

    EXPECT_EQ(hidden, (std::vector<bool>{false, true, false}));
}

TEST_F(HiddenFrameTest, ComesATenthOfASecondAfterTheLastWhateverDrawingTakes) {
    fakes::desktop().seen = false;
    LetDrawingTake(30);

    Rounds(10);

    EXPECT_EQ(Passed(), 1000);
    EXPECT_EQ(fakes::Lines({"AwaitSight"}), Calls(10, "AwaitSight(70000000)"));
}

TEST_F(HiddenFrameTest, DoesNotWaitWhereDrawingTakesATenthOfASecond) {
    fakes::desktop().seen = false;
    LetDrawingTake(100);

    Round();

    EXPECT_EQ(fakes::Count("AwaitSight"), 0U);
}

TEST_F(HiddenFrameTest, TheNextFrameIsShownWhenTheWindowIsSeenAgain) {
    fakes::desktop().seen = false;
    Rounds(10);
    fakes::desktop().sight_after = 5 * kMillisecond;
    Passed();

    Round();
    EXPECT_EQ(Passed(), 5);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);

    Round();
    EXPECT_EQ(Passed(), 16);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 1U);
    EXPECT_EQ(SwapsWithin(16 * 60), 60);
}

TEST_F(HiddenFrameTest, StaysHiddenWhenARefreshOfBeforeComes) {
    LoseTheRefresh();
    fakes::desktop().seen = false;
    Round();
    FindTheRefresh();

    Rounds(3);

    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);
}

TEST_F(HiddenFrameTest, StaysHiddenWhateverTheUserDoes) {
    fakes::desktop().seen = false;
    Round();
    NoteActivity();

    Round();

    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);
}

TEST_F(HiddenFrameTest, WithoutNewsOfRefreshesNobodySeesTheWindowEither) {
    fakes::desktop().tells_of_refreshes = false;
    fakes::desktop().seen = false;

    Rounds(10);

    EXPECT_EQ(Passed(), 1000);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);
}

// ---- Slow swaps ----

class SlowSwapTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        LetSwapsTake(1000);
    }
};

TEST_F(SlowSwapTest, AfterASwapOfASecondThereIsNoneFor128Seconds) {
    Round();
    EXPECT_EQ(Passed(), 1000);

    EXPECT_EQ(SwapsWithin(128'000), 0);
    EXPECT_EQ(fakes::Count("draw"), 1281U);

    Round();
    EXPECT_EQ(fakes::glut().swaps, 2);
}

TEST_F(SlowSwapTest, ASwapOfATenthOfASecondIsNotSlow) {
    LetSwapsTake(100);
    Rounds(3);
    EXPECT_EQ(fakes::glut().swaps, 3);

    LetSwapsTake(101);
    Rounds(3);
    EXPECT_EQ(fakes::glut().swaps, 4);
}

TEST_F(SlowSwapTest, TheTimeForWhichItIsNotMadeGoesByHowLongItTook) {
    LetSwapsTake(500);
    Round();

    EXPECT_EQ(SwapsWithin(63'950), 0);
    EXPECT_EQ(SwapsWithin(100), 1);
}

TEST_F(SlowSwapTest, TheLongestPauseIsFiveMinutesHoweverLongASwapTook) {
    LetSwapsTake(3'600'000);
    Round();

    EXPECT_EQ(SwapsWithin(299'900), 0);
    EXPECT_EQ(SwapsWithin(200), 1);
}

TEST_F(SlowSwapTest, IsMadeAgainAtOnceWhenTheUserTouchesTheWindow) {
    Round();
    Round();
    NoteActivity();

    Round();

    EXPECT_EQ(fakes::glut().swaps, 2);
}

TEST_F(SlowSwapTest, IsNotMadeAgainBecauseThePointerMovesAnywhereOnTheScreen) {
    draw = NoteActivity;  // as the owl does that sees the pointer move

    Round();
    draw = nullptr;

    EXPECT_EQ(SwapsWithin(128'000), 0);
}

TEST_F(SlowSwapTest, IsMadeAgainAtOnceWhenTheWindowIsSeenAgain) {
    Round();
    fakes::desktop().seen = false;
    Rounds(5);
    fakes::desktop().seen = true;

    Round();

    EXPECT_EQ(fakes::glut().swaps, 2);
}

TEST_F(SlowSwapTest, ASwapThatHasBecomeFastIsMadeWithEachFrame) {
    Round();
    LetSwapsTake(1);
    NoteActivity();

    Rounds(10);

    EXPECT_EQ(fakes::glut().swaps, 11);
}

TEST_F(SlowSwapTest, WhileItIsNotMadeNoRefreshIsAskedFor) {
    fakes::desktop().tells_of_refreshes = true;
    Round();
    ForgetCalls();

    Rounds(10);

    EXPECT_EQ(fakes::Count("RequestRefresh"), 0U);
    EXPECT_EQ(fakes::Count("AwaitSight"), 10U);
}

// ---- Rest ----

/// A window at rest whose frames cost half a refresh of processor time.
class RestTest : public PacedTest {
  protected:
    void SetUp() override {
        PacedTest::SetUp();
        LetFramesCost(8);
    }

    /// Lets frames cost that much processor time and have done so for long.
    void LetFramesCost(double milliseconds) {
        fakes::desktop().frame_processor = static_cast<std::uint64_t>(milliseconds * 1e6);
        window.frame_cost = milliseconds * 1e6;
        Passed();
    }
};

TEST_F(RestTest, EverySecondRefreshIsWaitedFor) {
    Round();

    EXPECT_EQ(fakes::Lines({"RequestRefresh", "draw", "AwaitRefresh", "glutSwapBuffers"}),
              (Calls{"RequestRefresh()", "draw(0)", "AwaitRefresh(100000000, 0)", "RequestRefresh()",
                     "AwaitRefresh(84000000, 1)", "glutSwapBuffers()"}));
    EXPECT_EQ(SwapsWithin(16 * 60), 30);
}

TEST_F(RestTest, AFrameThatCostsNoMoreThanAThirdOfARefreshIsDrawnAtEach) {
    LetFramesCost(16.0 / 3 - 0.001);
    Round();
    EXPECT_EQ(Passed(), 16);

    LetFramesCost(16.0 / 3 + 0.001);
    Round();
    EXPECT_EQ(Passed(), 32);
}

TEST_F(RestTest, TheCostIsAMeanOverSixteenFrames) {
    LetFramesCost(0);
    fakes::desktop().frame_processor = 16 * kMillisecond;

    Round();
    EXPECT_EQ(window.frame_cost, 1e6);

    Round();
    EXPECT_EQ(window.frame_cost, 1e6 + 15e6 / 16);
}

TEST_F(RestTest, FramesThatNobodySeesDoNotCountForTheMean) {
    fakes::desktop().seen = false;
    fakes::desktop().frame_processor = 1;
    Rounds(100);
    EXPECT_EQ(window.frame_cost, 8e6);

    fakes::desktop().seen = true;
    fakes::desktop().frame_processor = 8 * kMillisecond;
    Round();
    EXPECT_EQ(window.frame_cost, 8e6);
}

TEST_F(RestTest, BeginsWhenNothingWasDoneForMoreThanASecond) {
    NoteActivity();
    Round();
    const std::uint64_t active = window.last_activity;

    while (fakes::desktop().nanoseconds + 16 * kMillisecond - active <= 1000 * kMillisecond) {
        Passed();
        Round();
        ASSERT_EQ(Passed(), 16);
    }
    Round();
    Passed();
    Round();

    EXPECT_EQ(Passed(), 32);
}

TEST_F(RestTest, EndsWithTheFrameInWhichTheUserDoesSomething) {
    draw = NoteActivity;

    Round();

    EXPECT_EQ(Passed(), 16);
}

TEST_F(RestTest, EndsWithTheFrameBeforeWhichTheUserDidSomething) {
    fakes::desktop().nanoseconds += kMillisecond;
    NoteActivity();

    Round();

    EXPECT_EQ(Passed(), 17);
}

TEST_F(RestTest, AnEventEndsTheWait) {
    fakes::desktop().event_after = 4 * kMillisecond;

    Round();

    EXPECT_EQ(Passed(), 20);
    EXPECT_EQ(fakes::glut().swaps, 2);
    EXPECT_FALSE(window.refresh_late);
}

TEST_F(RestTest, AnEventDoesNotEndTheWaitForTheFirstRefresh) {
    draw = NoteActivity;
    fakes::desktop().event_after = 4 * kMillisecond;

    Round();

    EXPECT_EQ(Passed(), 16);
}

TEST_F(RestTest, HoldsNoFrameLongerThanATenthOfASecondAndShowsIt) {
    fakes::desktop().refresh_after = 60 * kMillisecond;

    Round();

    EXPECT_EQ(Passed(), 100);
    EXPECT_EQ(fakes::glut().swaps, 2);
}

TEST_F(RestTest, WithALateRefreshTheSecondIsNotWaitedFor) {
    fakes::desktop().refresh_after.reset();

    Round();

    EXPECT_EQ(fakes::Count("AwaitRefresh"), 1U);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 0U);
}

TEST_F(RestTest, ADesktopThatNoLongerTellsOfRefreshesIsNotWaitedForAgain) {
    draw = [] { fakes::desktop().tells_of_refreshes = false; };

    Round();

    EXPECT_EQ(Passed(), 16);
    EXPECT_EQ(fakes::Count("AwaitRefresh"), 1U);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 1U);
}

TEST_F(RestTest, NobodyRestsBeforeTheTimeOfARefreshIsKnown) {
    fakes::desktop().refresh_period = 0;

    Round();

    EXPECT_EQ(Passed(), 16);
}

TEST(WindowStartTest, WhatTheStartHasCostIsNotTheCostOfAFrame) {
    ExpectInFreshProcess([] {
        SetFrame(DrawFrame);
        DrawFrame();
        const bool free = window.frame_cost == 0;
        fakes::desktop().frame_processor = 16 * kMillisecond;
        DrawFrame();
        return free && window.frame_cost == 1e6;
    });
}

// ---- Swap control ----

using SwapControlTest = WindowTest;

TEST_F(SwapControlTest, WithoutNewsOfRefreshesTheDriverWaitsAndNothingElseDoes) {
    window.swap_interval = -1;
    const std::uint64_t before = fakes::desktop().nanoseconds;

    Rounds(3);

    EXPECT_EQ(Intervals(), (std::vector<int>{1}));
    EXPECT_EQ(fakes::Names({"AwaitRefresh", "AwaitSight", "SetSwapInterval", "glutSwapBuffers"}),
              (Calls{"SetSwapInterval", "glutSwapBuffers", "glutSwapBuffers", "glutSwapBuffers"}));
    EXPECT_EQ(fakes::desktop().nanoseconds, before);
}

TEST_F(SwapControlTest, WithNewsOfRefreshesTheDriverDoesNotWait) {
    fakes::desktop().tells_of_refreshes = true;

    Rounds(3);

    EXPECT_EQ(Intervals(), (std::vector<int>{0}));
    EXPECT_LT(fakes::IndexOf("SetSwapInterval"), fakes::IndexOf("glutSwapBuffers"));
}

TEST_F(SwapControlTest, TheDriverIsToldOnlyWhenItChanges) {
    for (const bool tells : {true, true, false, false, true}) {
        fakes::desktop().tells_of_refreshes = tells;
        Rounds(2);
        fakes::desktop().seen = false;
        Rounds(2);
        fakes::desktop().seen = true;
    }

    EXPECT_EQ(Intervals(), (std::vector<int>{0, 1, 0}));
}

// ---- Without waiting ----

/// Draws three frames of a window on a desktop that tells of refreshes, the second one unseen. Returns the
/// calls that wait, or let something wait.
Calls WaitingCallsWith(const char* vblank_mode) {
    setenv("vblank_mode", vblank_mode, 1);
    fakes::desktop().tells_of_refreshes = true;
    SetFrame(DrawFrame);
    WatchFrames();
    for (const bool seen : {true, false, true}) {
        fakes::desktop().seen = seen;
        DrawFrame();
    }
    return fakes::Lines({"RequestRefresh", "AwaitDrawing", "AwaitRefresh", "AwaitSight", "SetSwapInterval",
                         "glutSwapBuffers"});
}

TEST(VblankModeTest, NothingWaitsInMode0) {
    ExpectInFreshProcess([] {
        return WaitingCallsWith("0") == Calls{"SetSwapInterval(0)", "glutSwapBuffers()", "glutSwapBuffers()"};
    });
}

TEST(VblankModeTest, OtherModesChangeNothing) {
    for (const char* mode : {"1", "2", "3", "", "00"}) {
        ExpectInFreshProcess([mode] {
            return WaitingCallsWith(mode) == Calls{"RequestRefresh()",           "AwaitDrawing()",
                                                   "AwaitRefresh(100000000, 0)", "SetSwapInterval(0)",
                                                   "glutSwapBuffers()",          "AwaitSight(100000000)",
                                                   "RequestRefresh()",           "AwaitDrawing()",
                                                   "AwaitRefresh(100000000, 0)", "glutSwapBuffers()"};
        });
    }
}

// ---- Options ----

/// The options of the program as ReadOptions has left them.
Calls Read(Calls options) {
    options.insert(options.begin(), "ulmaro-assistant");
    std::vector<char*> argv;
    for (std::string& option : options) argv.push_back(option.data());
    argv.push_back(nullptr);
    int argc = static_cast<int>(options.size());
    ReadOptions(&argc, argv.data());
    EXPECT_EQ(argv[static_cast<std::size_t>(argc)], nullptr);
    EXPECT_STREQ(argv[0], "ulmaro-assistant");
    return {argv.begin() + 1, argv.begin() + argc};
}

using OptionsTest = AppTest;

TEST_F(OptionsTest, OthersAreKeptAsTheyAre) {
    EXPECT_EQ(Read({}), (Calls{}));
    EXPECT_EQ(Read({"-display", ":1", "-direct", "file"}), (Calls{"-display", ":1", "-direct", "file"}));
}

TEST_F(OptionsTest, TheIconicOptionIsTakenOutWhereverItStands) {
    EXPECT_EQ(Read({"-iconic"}), (Calls{}));
    EXPECT_EQ(Read({"-iconic", "-direct", "-iconic", "-display", ":1", "-iconic"}),
              (Calls{"-direct", "-display", ":1"}));
    EXPECT_EQ(Read({"-iconic", "-geometry", "40x50+6+7"}), (Calls{"-geometry", "40x50+6+7"}));
}

TEST_F(OptionsTest, SomethingLikeTheIconicOptionIsKept) {
    EXPECT_EQ(Read({"-iconi", "--iconic", "iconic", "-iconic2"}),
              (Calls{"-iconi", "--iconic", "iconic", "-iconic2"}));
}

TEST(MinimiseAtStartTest, AProgramOfThatNameDoesNotStartMinimised) {
    ExpectInFreshProcess([] {
        std::string name = "-iconic";
        char* argv[] = {name.data(), nullptr};
        int argc = 1;
        ReadOptions(&argc, argv);
        MinimiseAtStart();
        return argc == 1 && argv[0] == name && fakes::desktop().minimised == 0;
    });
}

TEST_F(OptionsTest, AGeometryIsKept) {
    for (const char* geometry : {"300x200", "300x200+10+20", "300x200-10-20", "=300x200+0+0"}) {
        EXPECT_EQ(Read({"-geometry", geometry, "-direct"}), (Calls{"-geometry", geometry, "-direct"}));
    }
}

TEST_F(OptionsTest, AGeometryWithoutASizeGetsThatOfTheWindow) {
    EXPECT_EQ(Read({"-geometry", "+10-20"}), (Calls{"-geometry", "300x300+10-20"}));
    EXPECT_EQ(Read({"-geometry", "-10+20"}), (Calls{"-geometry", "300x300-10+20"}));
    EXPECT_EQ(fakes::Lines(), (Calls{"IsGeometry(\"300x300+10-20\")", "IsGeometry(\"300x300-10+20\")"}));
}

TEST_F(OptionsTest, AWrongGeometryEndsTheProgramWithOneLine) {
    fakes::desktop().wrong_geometries = {"foo", "300x300+5"};

    EXPECT_EXIT(Read({"-geometry", "foo"}), testing::ExitedWithCode(1),
                "^Ulmaro Assistant: \"foo\" non e' una posizione o una dimensione della finestra: "
                "scrivi per esempio -geometry 300x300\\+10\\+10\\.\n$");
    EXPECT_EXIT(Read({"-direct", "-geometry", "+5"}), testing::ExitedWithCode(1),
                "^Ulmaro Assistant: \"\\+5\" non e' una posizione");
}

TEST_F(OptionsTest, AGeometryThatIsMissingEndsTheProgramWithOneLine) {
    EXPECT_EXIT(Read({"-direct", "-geometry"}), testing::ExitedWithCode(1),
                "^Ulmaro Assistant: \"\" non e' una posizione o una dimensione della finestra: "
                "scrivi per esempio -geometry 300x300\\+10\\+10\\.\n$");
}

TEST(MinimiseAtStartTest, MinimisesWithTheIconicOption) {
    ExpectInFreshProcess([] {
        Read({"-iconic"});
        const bool too_early = fakes::desktop().minimised > 0;
        MinimiseAtStart();
        return !too_early && fakes::desktop().minimised == 1;
    });
}

TEST(MinimiseAtStartTest, DoesNothingWithoutTheIconicOption) {
    ExpectInFreshProcess([] {
        Read({"-direct"});
        MinimiseAtStart();
        return fakes::desktop().minimised == 0;
    });
}

/// Tells GLUT's error callback what GLUT would.
void TellError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fakes::glut().error(format, arguments);
    va_end(arguments);
}

TEST(ExplainMissingWindowTest, WhatKeepsTheWindowFromOpeningIsSaidInOneLineAndEndsTheProgram) {
    ExplainMissingWindow();

    EXPECT_EXIT(TellError("failed to open display '%s'", ":99"), testing::ExitedWithCode(1),
                "^Ulmaro Assistant: non riesco ad aprire la finestra, serve uno schermo X11 con OpenGL "
                "\\(failed to open display ':99'\\).\n$");
}

// ---- The title ----

using ShowUnsavedTest = AppTest;

TEST_F(ShowUnsavedTest, TheTitleHasAnAsteriskWhileSomethingIsUnsaved) {
    ShowUnsaved(true);
    ShowUnsaved(false);

    EXPECT_EQ(fakes::Lines(), (Calls{"glutSetWindowTitle(\"*Ulmaro Assistant\")",
                                     "glutSetWindowTitle(\"Ulmaro Assistant\")"}));
}

TEST_F(ShowUnsavedTest, TheTitleIsSetOnlyWhenItChanges) {
    ShowUnsaved(false);
    ShowUnsaved(true);
    ShowUnsaved(true);

    EXPECT_EQ(fakes::Lines(), (Calls{"glutSetWindowTitle(\"*Ulmaro Assistant\")"}));
}

}  // namespace
