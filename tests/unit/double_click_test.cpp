// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/double_click.h"

#include <GL/freeglut.h>

#include <cstdint>
#include <string>

#include "tests/unit/calendar_fixture.h"

namespace {

/// Where the list's add button and the editor's confirm button overlap, and the middle of the
/// corner that closes the list and the view.
constexpr int kAddX = 462, kAddY = 436, kCornerX = 485, kCornerY = 486;

class DoubleClickTest : public CalendarTest {
  protected:
    /// Presses and draws the frame that sees it.
    static void PressAt(int x, int y) {
        PointAt(x, y);
        mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
        Frame();
        mouse_event(GLUT_LEFT_BUTTON, GLUT_UP, 0, 0);
    }

    static void LetPass(double seconds) {
        fakes::desktop().nanoseconds += static_cast<std::uint64_t>(seconds * 1e9);
    }
};

TEST_F(DoubleClickTest, TheSecondPressIsNothingWhereTheFirstHasOpenedAScreen) {
    menu_case_id = kListScreen;
    PressAt(kAddX, kAddY);
    ASSERT_EQ(menu_case_id, kEditorScreen);

    LetPass(0.15);
    PointAt(kAddX, kAddY);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    Frame();

    EXPECT_EQ(menu_case_id, kEditorScreen);
    EXPECT_FALSE(touch_event);
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(DoubleClickTest, TheSecondPressIsNothingWhereTheFirstHasClosedAScreen) {
    AddAppointment("dentista", 17, 5, 2012, 9, 0);
    edit_event = &events.front();
    menu_case_id = kEditorScreen;
    PressAt(kAddX, kAddY);
    ASSERT_EQ(menu_case_id, kListScreen);

    LetPass(0.15);
    PressAt(kAddX, kAddY);

    EXPECT_EQ(menu_case_id, kListScreen);
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(DoubleClickTest, APressActsWhenTheScreenIsOlderThanThreeTenthsOfASecond) {
    for (const double pause : {0.299, 0.3, 0.301}) {
        double_click = DoubleClickState();
        menu_case_id = kListScreen;
        PressAt(kAddX, kAddY);
        ASSERT_EQ(menu_case_id, kEditorScreen);

        LetPass(pause);
        PressAt(kAddX, kAddY);

        EXPECT_EQ(menu_case_id, pause > 0.3 ? kListScreen : kEditorScreen) << pause;
    }
}

TEST_F(DoubleClickTest, TheSpotIsFourPixelsToEachSide) {
    struct Case {
        int dx, dy;
        bool acts;
    };
    for (const Case& row :
         {Case{4, 4, false}, {-4, -4, false}, {5, 0, true}, {-5, 0, true}, {0, 5, true}, {0, -5, true}}) {
        double_click = DoubleClickState();
        menu_case_id = kListScreen;
        PressAt(kAddX, kAddY);
        ASSERT_EQ(menu_case_id, kEditorScreen);

        PressAt(kAddX + row.dx, kAddY + row.dy);

        EXPECT_EQ(menu_case_id, row.acts ? kListScreen : kEditorScreen) << row.dx << ", " << row.dy;
    }
}

TEST_F(DoubleClickTest, EveryFurtherPressIsNothingUntilOneWaitsThreeTenthsOfASecond) {
    menu_case_id = kListScreen;
    PressAt(kAddX, kAddY);

    for (int press = 0; press < 5; ++press) {
        LetPass(0.2);
        PressAt(kAddX, kAddY);
        EXPECT_EQ(menu_case_id, kEditorScreen) << press;
    }
    LetPass(0.31);
    PressAt(kAddX, kAddY);

    EXPECT_EQ(menu_case_id, kListScreen);
}

TEST_F(DoubleClickTest, APressElsewhereInBetweenEndsIt) {
    menu_case_id = kListScreen;
    PressAt(kAddX, kAddY);
    PressAt(200, 440);  // hits nothing

    PressAt(kAddX, kAddY);

    EXPECT_EQ(menu_case_id, kListScreen);
}

TEST_F(DoubleClickTest, ArrowsThatChangeNoScreenTakeClicksAsFastAsTheyCome) {
    AddAppointment("dentista", 10, 5, 2012, 9, 0);
    edit_event = &events.front();
    menu_case_id = kEditorScreen;

    for (int press = 0; press < 4; ++press) PressAt(105, 410);

    EXPECT_EQ(events.front().date.day, 14);
}

TEST_F(DoubleClickTest, AFrameThatTakesLongDoesNotMakeTheSecondPressADeliberateOne) {
    menu_case_id = kListScreen;
    PointAt(kAddX, kAddY);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    LetPass(1);  // between the press and the frame's end
    Frame();

    LetPass(0.1);
    PressAt(kAddX, kAddY);

    EXPECT_EQ(menu_case_id, kEditorScreen);
}

TEST_F(DoubleClickTest, BothPressesMayWaitBehindTypedCharacters) {
    AddAppointment("dentista", 10, 5, 2012, 9, 0);
    edit_event = &events.front();
    edit_tf = kDescriptionField;
    menu_case_id = kEditorScreen;
    for (const char c : std::string("abcdef")) TypeCharacter(static_cast<unsigned char>(c), 0, 0);
    PressAt(kAddX, kAddY);
    ASSERT_EQ(menu_case_id, kEditorScreen) << "the press waits";
    LetPass(0.15);
    PressAt(kAddX, kAddY);

    for (int frame = 0; frame < 10; ++frame) {
        LetPass(0.2);
        Frame();
    }

    EXPECT_EQ(menu_case_id, kListScreen);
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(DoubleClickTest, APressThatWaitsIsJudgedByTheTimeItWasMade) {
    AddAppointment("dentista", 10, 5, 2012, 9, 0);
    edit_event = &events.front();
    edit_tf = kDescriptionField;
    menu_case_id = kEditorScreen;
    for (const char c : std::string("abc")) TypeCharacter(static_cast<unsigned char>(c), 0, 0);
    PressAt(kAddX, kAddY);
    PressAt(kAddX, kAddY);
    Frame();
    Frame();
    ASSERT_EQ(menu_case_id, kListScreen) << "the first has acted, the second is next";

    LetPass(1);
    PressAt(200, 440);  // hits nothing
    Frame();

    EXPECT_EQ(menu_case_id, kListScreen);
}

TEST_F(DoubleClickTest, TheSecondPressIsNothingAlsoWhereTheFirstScreenIsDrawnAgainAtOnce) {
    AddAppointment("uno", 16, 5, 2012, 10, 40);
    edit_event = &events.front();
    menu_case_id = kViewScreen;
    PressAt(kCornerX, kCornerY);
    ASSERT_EQ(menu_case_id, kOwlScreen);
    menu_case_id = kListScreen;  // as if the list had come instead

    PressAt(kCornerX, kCornerY);

    EXPECT_EQ(menu_case_id, kListScreen);
}

}  // namespace
