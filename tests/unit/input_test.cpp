// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/input.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"

namespace {

class InputTest : public AppTest {
  protected:
    static bool AnyKeyPressed() {
        return std::any_of(std::begin(key_state), std::end(key_state), [](bool pressed) { return pressed; });
    }
};

// ---- Pointer and click ----

TEST(InputStartTest, NothingIsTouchedAtFirst) {
    ExpectInFreshProcess([] {
        return press_time == 0 && touch_coord_x == 0 && touch_coord_y == 0 && !single_touch && !touch_event;
    });
}

TEST_F(InputTest, MotionWritesDownThePlaceInWindowPixels) {
    mouse(17, 240);

    EXPECT_EQ(touch_coord_x, 17);
    EXPECT_EQ(touch_coord_y, 240);
}

TEST_F(InputTest, MotionOutsideTheWindowIsWrittenDownAsItIs) {
    mouse(-30, 5000);

    EXPECT_EQ(touch_coord_x, -30);
    EXPECT_EQ(touch_coord_y, 5000);
}

TEST_F(InputTest, MotionIsNoClick) {
    mouse(17, 240);

    EXPECT_FALSE(single_touch);
    EXPECT_FALSE(touch_event);
}

TEST_F(InputTest, ALeftPressIsAClick) {
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);

    EXPECT_TRUE(single_touch);
    EXPECT_TRUE(touch_event);
}

TEST_F(InputTest, APressKeepsThePlaceThatMotionSawLast) {
    mouse(17, 240);

    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 99, 98);

    EXPECT_EQ(touch_coord_x, 17);
    EXPECT_EQ(touch_coord_y, 240);
}

TEST_F(InputTest, APressOfAnotherButtonChangesNothing) {
    for (const int other : {GLUT_RIGHT_BUTTON, GLUT_MIDDLE_BUTTON, 3, 4}) {
        mouse_event(other, GLUT_DOWN, 0, 0);

        EXPECT_FALSE(single_touch) << "button " << other;
        EXPECT_FALSE(touch_event) << "button " << other;
    }
}

TEST_F(InputTest, AReleaseOfAnotherButtonKeepsTheClick) {
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);

    mouse_event(GLUT_RIGHT_BUTTON, GLUT_UP, 0, 0);

    EXPECT_TRUE(single_touch);
    EXPECT_TRUE(touch_event);
}

TEST_F(InputTest, APressFollowedByAReleaseBeforeTheFrameIsNoClick) {
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);

    mouse_event(GLUT_LEFT_BUTTON, GLUT_UP, 0, 0);

    EXPECT_FALSE(single_touch);
    EXPECT_FALSE(touch_event);
}

TEST_F(InputTest, TwoPressesBeforeTheFrameAreOneClick) {
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    EXPECT_TRUE(single_touch);

    display();

    EXPECT_FALSE(single_touch);
}

TEST_F(InputTest, AHeldButtonIsAClickInOneFrameOnly) {
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);

    display();
    mouse(5, 5);  // dragging

    EXPECT_FALSE(single_touch);
}

// ---- Keys ----

TEST_F(InputTest, APressedKeyIsMarkedAlone) {
    keyboard_down(GLUT_KEY_UP, 3, 4);

    EXPECT_TRUE(key_state[GLUT_KEY_UP]);
    EXPECT_EQ(std::count(std::begin(key_state), std::end(key_state), true), 1);
}

TEST_F(InputTest, AReleasedKeyIsUnmarkedAlone) {
    keyboard_down(GLUT_KEY_UP, 0, 0);
    keyboard_down(GLUT_KEY_F1, 0, 0);

    keyboard_up(GLUT_KEY_UP, 0, 0);

    EXPECT_FALSE(key_state[GLUT_KEY_UP]);
    EXPECT_TRUE(key_state[GLUT_KEY_F1]);
}

TEST_F(InputTest, TheFirstAndTheLastCodeHaveAPlace) {
    keyboard_down(0, 0, 0);
    keyboard_down(255, 0, 0);

    EXPECT_TRUE(key_state[0]);
    EXPECT_TRUE(key_state[255]);
}

TEST_F(InputTest, CodesOutsideTheTableAreIgnored) {
    for (const int code : {-1, 256, 100000, -100000}) {
        keyboard_down(code, 0, 0);
        keyboard_up(code, 0, 0);
    }

    EXPECT_FALSE(AnyKeyPressed());
    EXPECT_EQ(touch_coord_x, 0);
    EXPECT_FALSE(single_touch);
    EXPECT_FALSE(touch_event);
}

TEST_F(InputTest, KeysKeepThePointersPlace) {
    mouse(17, 240);

    keyboard_down(GLUT_KEY_UP, 1, 2);
    keyboard_up(GLUT_KEY_UP, 1, 2);

    EXPECT_EQ(touch_coord_x, 17);
    EXPECT_EQ(touch_coord_y, 240);
}

TEST_F(InputTest, ResetClearsEveryKey) {
    std::fill(std::begin(key_state), std::end(key_state), true);

    reset_keys_state();

    EXPECT_FALSE(AnyKeyPressed());
}

TEST_F(InputTest, SpecialKeysAreForgottenAloneAndOnce) {
    keyboard_down(GLUT_KEY_UP, 0, 0);
    key_state[GLUT_KEY_DOWN] = key_state[0] = key_state[255] = true;

    ForgetSpecialKeys();
    EXPECT_FALSE(key_state[GLUT_KEY_UP]);
    EXPECT_TRUE(key_state[GLUT_KEY_DOWN] && key_state[0] && key_state[255]);

    key_state[GLUT_KEY_UP] = true;
    ForgetSpecialKeys();
    EXPECT_TRUE(key_state[GLUT_KEY_UP]);
}

TEST_F(InputTest, SpecialKeysOfTheFirstAndTheLastCodeAreForgottenToo) {
    for (const int code : {-1, 0, 255, 256}) keyboard_down(code, 0, 0);

    ForgetSpecialKeys();

    EXPECT_FALSE(AnyKeyPressed());
}

TEST_F(InputTest, AKeyIsSeenInOneFrameOnly) {
    keyboard_down(GLUT_KEY_DOWN, 0, 0);

    display();

    EXPECT_FALSE(AnyKeyPressed());
}

TEST_F(InputTest, ARepeatedKeyIsSeenOnceMore) {
    keyboard_down(GLUT_KEY_DOWN, 0, 0);
    display();

    keyboard_down(GLUT_KEY_DOWN, 0, 0);

    EXPECT_TRUE(key_state[GLUT_KEY_DOWN]);
}

TEST_F(InputTest, TheFrameResetClearsClickAndKeysAndKeepsThePlace) {
    mouse(17, 240);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    keyboard_down(GLUT_KEY_F2, 0, 0);

    ResetFrameInput();

    EXPECT_FALSE(single_touch);
    EXPECT_FALSE(AnyKeyPressed());
    EXPECT_EQ(touch_coord_x, 17);
    EXPECT_EQ(touch_coord_y, 240);
}

TEST_F(InputTest, AsciiKeysLeaveTheTableOfSpecialKeysAlone) {
    keyboard(13, 0, 0);
    keyboard('a', 0, 0);

    EXPECT_FALSE(AnyKeyPressed());
    EXPECT_FALSE(single_touch);
}

// ---- Activity ----

TEST_F(InputTest, MotionAnyButtonAndAnyKeyAreActivity) {
    const auto is_activity = [](auto act) {
        window.active = false;
        act();
        return window.active;
    };

    EXPECT_TRUE(is_activity([] { mouse(1, 2); }));
    for (const int button : {GLUT_LEFT_BUTTON, GLUT_RIGHT_BUTTON, 3}) {
        for (const int state : {GLUT_DOWN, GLUT_UP}) {
            EXPECT_TRUE(is_activity([=] { mouse_event(button, state, 0, 0); })) << button << ' ' << state;
        }
    }
    for (const int key : {GLUT_KEY_UP, -1, 256}) {
        EXPECT_TRUE(is_activity([=] { keyboard_down(key, 0, 0); })) << key;
    }
    EXPECT_FALSE(is_activity([] { reshape(300, 300); }));
}

// ---- reshape ----

TEST_F(InputTest, ReshapeBeginsToWatchOverTheFrames) {
    window.watching = false;

    reshape(300, 300);
    reshape(300, 300);

    EXPECT_TRUE(window.watching);
    EXPECT_EQ(fakes::Count("glutIdleFunc"), 1U);
}

/// Expects the projection of a perspective with a vertical field of view of 45 degrees from 1 to 99.
void ExpectPerspective(double aspect) {
    const double cotangent = 1 / std::tan(22.5 * std::numbers::pi / 180);
    const fakes::Mat4& projection = fakes::gl().projection.back();
    const fakes::Mat4 expected = {cotangent / aspect, 0,  0, 0, 0,           cotangent, 0, 0, 0, 0,
                                  -100.0 / 98,        -1, 0, 0, -198.0 / 98, 0};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(projection[i], expected[i], 1e-6) << "element " << i;
}

TEST_F(InputTest, ReshapeSetsViewportThenPerspectiveThenAnEmptyModelView) {
    glTranslatef(1, 2, 3);
    fakes::ClearLog();

    reshape(200, 100);

    EXPECT_EQ(fakes::Lines(), (std::vector<std::string>{
                                  "glViewport(0, 0, 200, 100)",
                                  "glMatrixMode(GL_PROJECTION)",
                                  "glLoadIdentity()",
                                  "gluPerspective(45, 2, 1, 99)",
                                  "glMatrixMode(GL_MODELVIEW)",
                                  "glLoadIdentity()",
                              }));
    EXPECT_EQ(fakes::gl().modelview.back(), fakes::Identity());
    ExpectPerspective(2);
}

TEST_F(InputTest, ReshapeReplacesThePerspectiveOfBefore) {
    reshape(200, 100);

    reshape(300, 300);

    ExpectPerspective(1);
}

TEST_F(InputTest, ReshapeDividesWithoutRounding) {
    reshape(400, 300);

    EXPECT_EQ(fakes::Calls("gluPerspective").at(0).args.at(1), static_cast<double>(400.0F / 300.0F));
    ExpectPerspective(4.0 / 3);
}

TEST_F(InputTest, ReshapeToNoHeightCountsAsAHeightOfOne) {
    reshape(300, 0);

    EXPECT_EQ(fakes::gl().viewport, (std::array<GLint, 4>{0, 0, 300, 0}));
    ExpectPerspective(300);
}

TEST_F(InputTest, ReshapeToNothingLeavesNumbersInTheProjection) {
    reshape(0, 0);

    for (const double element : fakes::gl().projection.back()) EXPECT_TRUE(std::isfinite(element));
}

TEST_F(InputTest, ReshapeLetsTheWindowsSizeAndPlaceBeAskedAnew) {
    EXPECT_EQ(WindowWidth(), 300);
    EXPECT_EQ(WindowHeight(), 300);
    EXPECT_EQ(WindowX(), 100);
    fakes::glut().get = {{GLUT_WINDOW_WIDTH, 640}, {GLUT_WINDOW_HEIGHT, 480}, {GLUT_WINDOW_X, 7}};

    reshape(640, 480);

    EXPECT_EQ(WindowWidth(), 640);
    EXPECT_EQ(WindowHeight(), 480);
    EXPECT_EQ(WindowX(), 7);
}

// ---- GetOGLPos ----

/// The frame's canvas in a window of 300 x 300 pixels.
class GetOGLPosTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, 512, 0, 512, -1, 1);
        glMatrixMode(GL_MODELVIEW);
        fakes::ClearLog();
    }

    static void ExpectPoint(const vector3f& point, double x, double y, double z) {
        EXPECT_NEAR(point.x, x, 1e-3);
        EXPECT_NEAR(point.y, y, 1e-3);
        EXPECT_NEAR(point.z, z, 1e-6);
    }
};

TEST_F(GetOGLPosTest, TopLeftPixelIsTheCanvassTopLeft) {
    ExpectPoint(GetOGLPos(0, 0), 0, 512, 0);
}

TEST_F(GetOGLPosTest, BottomRightCornerIsTheCanvassBottomRight) {
    ExpectPoint(GetOGLPos(300, 300), 512, 0, 0);
}

TEST_F(GetOGLPosTest, PixelsScaleToCanvasUnits) {
    ExpectPoint(GetOGLPos(75, 60), 128, 409.6, 0);
}

TEST_F(GetOGLPosTest, GoesByTheViewportOfANewSize) {
    reshape(600, 200);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, 512, 0, 512, -1, 1);
    glMatrixMode(GL_MODELVIEW);

    ExpectPoint(GetOGLPos(150, 50), 128, 384, 0);
}

TEST_F(GetOGLPosTest, GoesByTheModelViewMatrix) {
    glTranslatef(271, 265, 0);

    ExpectPoint(GetOGLPos(150, 150), 256 - 271, 256 - 265, 0);
}

TEST_F(GetOGLPosTest, OutsideTheWindowIsOutsideTheCanvas) {
    ExpectPoint(GetOGLPos(-300, -150), -512, 768, 0);
    ExpectPoint(GetOGLPos(900, 450), 1536, -256, 0);
}

TEST_F(GetOGLPosTest, WithoutADepthBufferThePointLiesInThePlaneOfTheCanvas) {
    fakes::gl().depth.reset();

    EXPECT_NEAR(GetOGLPos(10, 10).z, 0, 1e-6);
    EXPECT_EQ(fakes::Calls("gluUnProject").at(0).args.at(2), 0.5);
}

TEST_F(GetOGLPosTest, WithADepthBufferThePointLiesAtTheDepthRead) {
    fakes::gl().depth = 0.25F;

    ExpectPoint(GetOGLPos(150, 150), 256, 256, 0.5);
}

TEST_F(GetOGLPosTest, ReadsTheDepthOfTheOnePixelCountedFromTheBottom) {
    GetOGLPos(20, 70);

    EXPECT_EQ(fakes::Lines({"glReadPixels"}),
              (std::vector<std::string>{"glReadPixels(20, 230, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT)"}));
}

TEST_F(GetOGLPosTest, HandsThePixelCountedFromTheBottomToTheProjection) {
    GetOGLPos(20, 70);

    EXPECT_EQ(fakes::Lines({"gluUnProject"}), (std::vector<std::string>{"gluUnProject(20, 230, 0.5)"}));
}

TEST_F(GetOGLPosTest, ReadsTheMatricesAndTheViewportOfTheCall) {
    GetOGLPos(20, 70);

    EXPECT_EQ(fakes::Count("glReadPixels"), 1U);
    EXPECT_EQ(fakes::Names({"glGetDoublev", "glGetIntegerv", "glReadPixels", "gluUnProject"}),
              (std::vector<std::string>{"glGetDoublev", "glGetDoublev", "glGetIntegerv", "glReadPixels",
                                        "gluUnProject"}));
}

}  // namespace
