// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/window.h"

#include <GL/gl.h>

#include <cstdarg>
#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"

namespace {

int frames_drawn = 0;
bool frame_was_cut_off = false;  ///< GL's scissor cut pixels off the last frame

/// A display callback that only presents its frame.
void PresentingFrame() {
    ++frames_drawn;
    frame_was_cut_off = fakes::gl().Enabled(GL_SCISSOR_TEST);
    PresentFrame();
}

/// A window whose frames are watched over, shown until now: GLUT was last idle right after a frame.
class WindowTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        window = WindowState();
        SetFrame(PresentingFrame);
        WatchFrames();
        PresentFrame();
        fakes::glut().idle();
        fakes::desktop().swap_intervals.clear();
        fakes::ClearLog();
        frames_drawn = 0;
        start_ = fakes::desktop().nanoseconds;
    }

    /// Lets GLUT be idle so often.
    static void BeIdle(int times) {
        for (int i = 0; i < times; ++i) fakes::glut().idle();
    }

    /// Lets GLUT be idle until a hidden frame has been drawn.
    static void DrawHiddenFrame() {
        const int before = frames_drawn;
        for (int tries = 0; tries < 10 && frames_drawn == before; ++tries) fakes::glut().idle();
        ASSERT_EQ(frames_drawn, before + 1);
    }

    double Milliseconds() const { return static_cast<double>(fakes::desktop().nanoseconds - start_) / 1e6; }

    std::uint64_t start_ = 0;
};

TEST_F(WindowTest, WatchingDrawsNothing) {
    window = WindowState();
    SetFrame(PresentingFrame);

    WatchFrames();

    EXPECT_EQ(frames_drawn, 0);
}

TEST_F(WindowTest, WatchingIsBegunOnce) {
    WatchFrames();
    WatchFrames();

    EXPECT_EQ(fakes::Count("glutIdleFunc"), 0U);
}

TEST_F(WindowTest, AHiddenWindowGetsTenFramesASecond) {
    while (Milliseconds() < 10'000) fakes::glut().idle();

    EXPECT_NEAR(frames_drawn, 100, 1);
}

TEST_F(WindowTest, AHiddenFrameComesATenthOfASecondAfterTheLast) {
    DrawHiddenFrame();

    EXPECT_EQ(Milliseconds(), 100);
}

TEST_F(WindowTest, AnEventEndsTheWaitAndBringsNoFrame) {
    fakes::desktop().event_after = 30'000'000;

    BeIdle(1);

    EXPECT_EQ(Milliseconds(), 30);
    EXPECT_EQ(frames_drawn, 0);
}

TEST_F(WindowTest, AStormOfEventsDelaysNoHiddenFrameAndBringsNoneSooner) {
    fakes::desktop().event_after = 1'000'000;

    while (Milliseconds() < 1000) fakes::glut().idle();

    EXPECT_NEAR(frames_drawn, 10, 1);
}

TEST_F(WindowTest, AShownWindowNeitherWaitsNorGetsAFrame) {
    for (int frame = 0; frame < 10; ++frame) {
        PresentFrame();
        BeIdle(1);
    }

    EXPECT_EQ(frames_drawn, 0);
    EXPECT_EQ(fakes::Count("AwaitWindowEvent"), 0U);
}

TEST_F(WindowTest, AWindowThatIsHiddenAndShownAgainGetsFramesOnlyWhileHidden) {
    DrawHiddenFrame();
    DrawHiddenFrame();

    for (int frame = 0; frame < 10; ++frame) {
        PresentFrame();
        BeIdle(1);
    }

    EXPECT_EQ(frames_drawn, 2);
}

TEST_F(WindowTest, AFrameIsFlushedThenFinishedThenSwapped) {
    PresentFrame();

    EXPECT_EQ(fakes::Names(), (std::vector<std::string>{"glFlush", "glFinish", "glutSwapBuffers"}));
}

TEST_F(WindowTest, AHiddenFrameIsFlushedThenFinishedThenSwapped) {
    DrawHiddenFrame();

    EXPECT_EQ(fakes::Names({"SetSwapInterval", "glFlush", "glFinish", "glutSwapBuffers"}),
              (std::vector<std::string>{"SetSwapInterval", "glFlush", "glFinish", "glutSwapBuffers"}));
}

TEST_F(WindowTest, AHiddenFrameTouchesNoPixel) {
    DrawHiddenFrame();

    EXPECT_TRUE(frame_was_cut_off);
    EXPECT_EQ(fakes::Lines({"glScissor"}), (std::vector<std::string>{"glScissor(0, 0, 0, 0)"}));
    EXPECT_LT(fakes::IndexOf("glScissor"), fakes::IndexOf("glFlush"));
}

TEST_F(WindowTest, AfterAHiddenFrameTheNextOneTouchesAllPixels) {
    DrawHiddenFrame();

    EXPECT_FALSE(fakes::gl().Enabled(GL_SCISSOR_TEST));
}

TEST_F(WindowTest, AHiddenFrameDoesNotWaitForTheScreen) {
    DrawHiddenFrame();

    EXPECT_EQ(fakes::desktop().swap_intervals, (std::vector<int>{0}));
}

TEST_F(WindowTest, AShownFrameWaitsForOneRefreshAgain) {
    DrawHiddenFrame();

    PresentFrame();

    EXPECT_EQ(fakes::desktop().swap_intervals, (std::vector<int>{0, 1}));
}

TEST_F(WindowTest, TheDriverIsToldOnlyWhenTheIntervalChanges) {
    PresentFrame();
    PresentFrame();
    BeIdle(1);
    for (int frame = 0; frame < 3; ++frame) DrawHiddenFrame();
    PresentFrame();
    PresentFrame();

    EXPECT_EQ(fakes::desktop().swap_intervals, (std::vector<int>{0, 1}));
}

/// Tells GLUT's error callback what GLUT would.
void TellError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fakes::glut().error(format, arguments);
    va_end(arguments);
}

TEST(WindowStartTest, WhatKeepsTheWindowFromOpeningIsSaidInOneLineAndEndsTheProgram) {
    ExplainMissingWindow();

    EXPECT_EXIT(TellError("failed to open display '%s'", ":99"), testing::ExitedWithCode(1),
                "^Ulmaro Assistant: non posso aprire la finestra, serve uno schermo X11 con OpenGL "
                "\\(failed to open display ':99'\\).\n$");
}

TEST(WindowStartTest, TheFirstFrameOfAllSetsTheIntervalOfAShownWindowBeforeItSwaps) {
    ExpectInFreshProcess([] {
        PresentFrame();
        return fakes::Lines() ==
               std::vector<std::string>{"SetSwapInterval(1)", "glFlush()", "glFinish()", "glutSwapBuffers()"};
    });
}

TEST(WindowStartTest, AWindowThatIsHiddenFromTheStartGetsFrames) {
    ExpectInFreshProcess([] {
        SetFrame(PresentingFrame);
        WatchFrames();
        for (int i = 0; i < 4; ++i) fakes::glut().idle();
        return frames_drawn == 2 && fakes::desktop().swap_intervals == std::vector<int>{0};
    });
}

}  // namespace
