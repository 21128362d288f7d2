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

/// A window whose frames are watched, at a look after which no frame has come yet.
class WindowTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        KeepFramesComing(PresentingFrame);
        fakes::glut().FireTimers();  // from here on, what was presented before does not count
        PresentFrame();              // the swap interval is a shown window's
        fakes::glut().FireTimers();  // and this frame has been seen
        fakes::desktop().swap_intervals.clear();
        fakes::ClearLog();
        frames_drawn = 0;
    }
};

TEST_F(WindowTest, WatchingStartsWithOneTimerOfATenthOfASecondAndDrawsNothing) {
    fakes::glut().timers.clear();

    KeepFramesComing(PresentingFrame);

    ASSERT_EQ(fakes::glut().timers.size(), 1U);
    EXPECT_EQ(fakes::glut().timers[0].milliseconds, 100U);
    EXPECT_EQ(frames_drawn, 0);
}

TEST_F(WindowTest, EveryLookSetsOneTimerForTheNext) {
    for (int look = 0; look < 5; ++look) {
        fakes::glut().FireTimers();

        ASSERT_EQ(fakes::glut().timers.size(), 1U);
        EXPECT_EQ(fakes::glut().timers[0].milliseconds, 100U);
    }
}

TEST_F(WindowTest, SetsTheNextTimerBeforeItDrawsSoThatALongFrameDoesNotDelayIt) {
    fakes::glut().FireTimers();

    EXPECT_LT(fakes::IndexOf("glutTimerFunc"), fakes::IndexOf("glutSwapBuffers"));
}

TEST_F(WindowTest, AHiddenWindowGetsOneFrameALook) {
    for (int look = 1; look <= 10; ++look) {
        fakes::glut().FireTimers();

        EXPECT_EQ(frames_drawn, look);
    }
}

TEST_F(WindowTest, AShownWindowGetsNoFrameFromTheTimer) {
    for (int look = 0; look < 10; ++look) {
        PresentFrame();
        fakes::glut().FireTimers();
    }

    EXPECT_EQ(frames_drawn, 0);
}

TEST_F(WindowTest, AWindowThatIsHiddenAndShownAgainGetsFramesFromTheTimerOnlyWhileHidden) {
    PresentFrame();
    fakes::glut().FireTimers();
    EXPECT_EQ(frames_drawn, 0);
    fakes::glut().FireTimers();
    fakes::glut().FireTimers();
    EXPECT_EQ(frames_drawn, 2);

    PresentFrame();
    fakes::glut().FireTimers();

    EXPECT_EQ(frames_drawn, 2);
}

TEST_F(WindowTest, AFrameIsFlushedThenFinishedThenSwapped) {
    PresentFrame();

    EXPECT_EQ(fakes::Names(), (std::vector<std::string>{"glFlush", "glFinish", "glutSwapBuffers"}));
}

TEST_F(WindowTest, AHiddenFrameIsFlushedThenFinishedThenSwapped) {
    fakes::glut().FireTimers();

    EXPECT_EQ(fakes::Names({"SetSwapInterval", "glFlush", "glFinish", "glutSwapBuffers"}),
              (std::vector<std::string>{"SetSwapInterval", "glFlush", "glFinish", "glutSwapBuffers"}));
}

TEST_F(WindowTest, AHiddenFrameTouchesNoPixel) {
    fakes::glut().FireTimers();

    EXPECT_TRUE(frame_was_cut_off);
    EXPECT_EQ(fakes::Lines({"glScissor"}), (std::vector<std::string>{"glScissor(0, 0, 0, 0)"}));
    EXPECT_LT(fakes::IndexOf("glScissor"), fakes::IndexOf("glFlush"));
}

TEST_F(WindowTest, AfterAHiddenFrameTheNextOneTouchesAllPixels) {
    fakes::glut().FireTimers();

    EXPECT_FALSE(fakes::gl().Enabled(GL_SCISSOR_TEST));
}

TEST_F(WindowTest, AHiddenFrameDoesNotWaitForTheScreen) {
    fakes::glut().FireTimers();

    EXPECT_EQ(fakes::desktop().swap_intervals, (std::vector<int>{0}));
}

TEST_F(WindowTest, AShownFrameWaitsForOneRefreshAgain) {
    fakes::glut().FireTimers();

    PresentFrame();

    EXPECT_EQ(fakes::desktop().swap_intervals, (std::vector<int>{0, 1}));
}

TEST_F(WindowTest, TheDriverIsToldOnlyWhenTheIntervalChanges) {
    PresentFrame();
    PresentFrame();
    fakes::glut().FireTimers();
    fakes::glut().FireTimers();
    fakes::glut().FireTimers();
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
        KeepFramesComing(PresentingFrame);
        fakes::glut().FireTimers();
        fakes::glut().FireTimers();
        return frames_drawn == 2 && fakes::desktop().swap_intervals == std::vector<int>{0};
    });
}

}  // namespace
