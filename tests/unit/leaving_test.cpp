// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The pointer's leaving the window (app/input.h).
#include <GL/freeglut.h>

#include "app/input.h"
#include "tests/unit/app_fixture.h"

namespace {

using LeavingTest = AppTest;

TEST_F(LeavingTest, WritesDownWhereThePointerWentRelativeToTheWindow) {
    mouse(10, 20);
    fakes::desktop().pointer = {60, 130};  // the window is at (100, 100)

    LeaveWindow(GLUT_LEFT);

    EXPECT_EQ(touch_coord_x, -40);
    EXPECT_EQ(touch_coord_y, 30);
}

TEST_F(LeavingTest, AsksForTheWindowsPlaceAnew) {
    EXPECT_EQ(WindowX(), 100);
    fakes::glut().get[GLUT_WINDOW_X] = 500;
    fakes::desktop().pointer = {60, 130};

    LeaveWindow(GLUT_LEFT);

    EXPECT_EQ(touch_coord_x, -440);
}

TEST_F(LeavingTest, EnteringChangesNothing) {
    mouse(10, 20);

    LeaveWindow(GLUT_ENTERED);

    EXPECT_EQ(touch_coord_x, 10);
    EXPECT_EQ(touch_coord_y, 20);
    EXPECT_EQ(fakes::desktop().pointer_calls, 0);
}

TEST(LeavingAtStart, IsListenedToFromTheFirstFrameOnAndBegunOnce) {
    ExpectInFreshProcess([] {
        ListenToLeaving();
        const bool begun = fakes::glut().entry == LeaveWindow;
        ListenToLeaving();
        return begun && fakes::Count("glutEntryFunc") == 1;
    });
}

}  // namespace
