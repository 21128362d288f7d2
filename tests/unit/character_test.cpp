// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the scene, pointer and eyes, breathing, first delays, all timers, quiz offer, blinking, stare,
// poses, pointer over the canvas, sleep, laughing, attention, hat and thought bubble, the end of the frame,
// effects, long runs.
#include "app/character.h"

#include <GL/gl.h>

#include <array>
#include <cmath>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/vector3f.h"
#include "tests/unit/app_fixture.h"
#include "tests/unit/effect_files.h"

namespace {

/// Longer than any test: a timer set to it does not ring.
constexpr float kNever = 1e6F;

// The eyes of the owl at rest, canvas units.
constexpr float kLeftEyeX = 237.28F;
constexpr float kLeftEyeY = 392.248F;
constexpr float kRightEyeX = 287.52F;
constexpr float kRightEyeY = 389.804F;

using Sounds = std::vector<std::string>;

constexpr fakes::Rect kCanvas{0, 0, 512, 512};

/// How many random numbers the menu takes in each frame, after the owl: one for each of its buttons.
constexpr int kMenuNumbers = 5;

/// How far an eye is drawn from its rest, canvas units.
struct Offset {
    double x = 0;
    double y = 0;

    double Length() const { return std::hypot(x, y); }
};

/// An owl in pose A whose timers do not ring, which looks straight ahead; the pointer is far to the left of
/// the window.
class CharacterTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        character.has_delays = true;
        character.next_sq = character.next_ce = character.next_std = character.next_swap = kNever;
        LookStraightAhead();
        PointAt(-4000, 390);
    }

    static void LookStraightAhead() {
        character.ste = 1;
        character.next_st = 0;
    }

    static void LookAtThePointer() {
        character.ste = 0;
        character.next_st = kNever;
    }

    /// Puts the pointer where the owl takes it to be at a point of the canvas, also outside of it. The window
    /// is made so large that a pixel is a 32768th of a canvas unit. The owl takes a pointer to be 4 units
    /// right of where it is.
    static void PointAt(double x, double y) {
        constexpr int kPixels = 1 << 24;
        constexpr int kPixelsInUnit = kPixels / 512;
        fakes::gl().viewport = {0, 0, kPixels, kPixels};
        fakes::desktop().pointer.x = 100 + static_cast<int>(std::lround((x - 4) * kPixelsInUnit));
        fakes::desktop().pointer.y = 100 + kPixels - static_cast<int>(std::lround(y * kPixelsInUnit));
    }

    static void PutThePointerOverTheCanvas() { PointAt(256, 256); }

    static void FallAsleep() {
        anim = kSleeping;
        character.sleep_state = 2;
    }

    /// Returns a picture of the owl as it is drawn with its head raised by `bob`.
    static Sprite Body(unsigned int texture, double bob = 0) { return {texture, {21, 15, 521, 515 + bob}}; }

    /// Returns a pupil as it is drawn that far from its rest.
    static Sprite Eye(unsigned int texture, double x = 0, double y = 0) {
        return {texture, {21 + x, 15 + y, 521 + x, 515 + y}};
    }

    /// Returns a picture with its middle at a point of the owl's frame.
    static Sprite Around(unsigned int texture, double x, double y, double w, double h) {
        return {texture, {271 + x - w / 2, 265 + y - h / 2, 271 + x + w / 2, 265 + y + h / 2}};
    }

    /// Returns the scene with these sprites in front of background and tree.
    static std::vector<Sprite> InFrontOfTheTree(const std::vector<Sprite>& sprites) {
        std::vector<Sprite> scene = {{background, kCanvas}, {tree, kCanvas}};
        scene.insert(scene.end(), sprites.begin(), sprites.end());
        return scene;
    }

    /// Returns the thought bubble at a time of the animation clock.
    static std::vector<Sprite> Bubble(double bt) {
        const double swell = 5 * std::sin(8 * bt);
        return {
            Around(cloud, 164, 175 + 3.5 * std::sin(4 * bt), 150 + swell, 150 - swell),
            Around(circle, 74, 165 + 3.5 * std::sin(4 * bt), 30, 30),
            Around(circle, 47.5, 161 + 3 * std::sin(4 * bt + 1), 15, 15),
            Around(circle, 33, 154 + 2.5 * std::sin(4 * bt + 2), 10, 10),
        };
    }

    static std::vector<Sprite> Joined(std::vector<Sprite> first, const std::vector<Sprite>& second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }

    static void RunFrame(float seconds) {
        fakes::world().rand_calls = 0;
        AppTest::RunFrame(seconds);
    }

    /// Returns how many random numbers the owl has taken in the last frame.
    static int NumbersTaken() { return fakes::world().rand_calls - kMenuNumbers; }

    static bool IsDrawn(unsigned int texture) { return !fakes::gl().DrawnWith(texture).empty(); }

    static Offset EyeOffset(unsigned int texture) {
        const std::vector<fakes::Primitive> drawn = fakes::gl().DrawnWith(texture);
        if (drawn.size() != 1) {
            ADD_FAILURE() << "the eye is drawn " << drawn.size() << " times";
            return {};
        }
        const fakes::Rect rect = fakes::Bounds(drawn[0]);
        return {rect.CentreX() - 271, rect.CentreY() - 265};
    }

    static void ExpectOffset(const Offset& offset, double x, double y) {
        EXPECT_NEAR(offset.x, x, 1e-3);
        EXPECT_NEAR(offset.y, y, 1e-3);
    }

    static void ExpectWithin(float value, float least, float most) {
        EXPECT_GE(value, least);
        EXPECT_LE(value, most);
    }

    /// Returns how far the owl's head is raised in the last frame.
    static double Bob(unsigned int texture) {
        const std::vector<fakes::Primitive> drawn = fakes::gl().DrawnWith(texture);
        if (drawn.size() != 1) {
            ADD_FAILURE() << "the owl is drawn " << drawn.size() << " times";
            return 0;
        }
        return fakes::Bounds(drawn[0]).top - 515;
    }
};

// ---- The scene ----

TEST_F(CharacterTest, SceneIsBackgroundTreeOwlAndEyesInThisOrder) {
    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[0]), Eye(eye_l), Eye(eye_r)}));
}

TEST_F(CharacterTest, BackgroundIsDrawnBeforeBlendingIsSwitchedOn) {
    RunFrame(0);

    const std::vector<std::string> calls =
        fakes::Lines({"glBindTexture", "glEnd", "glBlendFunc", "glDepthMask"});
    ASSERT_GE(calls.size(), 6U);
    EXPECT_EQ(std::vector<std::string>(calls.begin(), calls.begin() + 6),
              (std::vector<std::string>{
                  "glBindTexture(GL_TEXTURE_2D, " + std::to_string(background) + ")",
                  "glEnd()",
                  "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
                  "glDepthMask(GL_FALSE)",
                  "glBindTexture(GL_TEXTURE_2D, " + std::to_string(tree) + ")",
                  "glEnd()",
              }));
    EXPECT_FALSE(fakes::gl().DrawnWith(background).at(0).blend);
    EXPECT_TRUE(fakes::gl().DrawnWith(background).at(0).depth_mask);
}

TEST_F(CharacterTest, TreeIsOneQuadOverTheCanvasWithTheWholePicture) {
    RunFrame(0);

    const fakes::Primitive quad = fakes::gl().DrawnWith(tree).at(0);
    EXPECT_EQ(quad.mode, static_cast<GLenum>(GL_QUADS));
    ASSERT_EQ(quad.vertices.size(), 4U);
    const std::array<std::pair<fakes::Vec3, fakes::Vec2>, 4> corners = {{
        {{0, 0, 0}, {0, 0}},
        {{512, 0, 0}, {1, 0}},
        {{512, 512, 0}, {1, 1}},
        {{0, 512, 0}, {0, 1}},
    }};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(quad.vertices[i].object, corners[i].first) << "corner " << i;
        EXPECT_EQ(quad.vertices[i].texcoord, corners[i].second) << "corner " << i;
    }
}

TEST_F(CharacterTest, OwlIsDrawnAroundItsOrigin) {
    RunFrame(0);

    const fakes::Primitive quad = fakes::gl().DrawnWith(owl[0]).at(0);
    ASSERT_EQ(quad.vertices.size(), 4U);
    EXPECT_EQ(quad.vertices[0].object, (fakes::Vec3{-250, -250, 0}));
    EXPECT_EQ(quad.vertices[2].object, (fakes::Vec3{250, 250, 0}));
    EXPECT_NEAR(fakes::Bounds(quad).CentreX(), 271, 1e-3);
    EXPECT_NEAR(fakes::Bounds(quad).CentreY(), 265, 1e-3);
}

TEST_F(CharacterTest, EverythingButTheBackgroundIsBlendedInWhiteWithoutWritingDepth) {
    spawn_question = new_notify = true;

    RunFrame(0.125F);

    std::size_t seen = 0;
    for (const Sprite& sprite : Scene()) {
        for (const fakes::Primitive& primitive : fakes::gl().DrawnWith(sprite.texture)) {
            EXPECT_EQ(primitive.color, (fakes::Rgba{1, 1, 1, 1})) << sprite;
            EXPECT_TRUE(primitive.textured) << sprite;
            if (sprite.texture == background) continue;
            EXPECT_TRUE(primitive.blend) << sprite;
            EXPECT_EQ(primitive.blend_source, static_cast<GLenum>(GL_SRC_ALPHA)) << sprite;
            EXPECT_EQ(primitive.blend_destination, static_cast<GLenum>(GL_ONE_MINUS_SRC_ALPHA)) << sprite;
            EXPECT_FALSE(primitive.depth_mask) << sprite;
            ++seen;
        }
    }
    EXPECT_GE(seen, 9U);
}

TEST_F(CharacterTest, TheFramesEndPopsTheOwlsFrameThenWritesDepthAgainThenStopsBlending) {
    RunFrame(0);

    EXPECT_TRUE(LogEndsWith({"glPopMatrix()", "glDepthMask(GL_TRUE)", "glDisable(GL_BLEND)",
                             // the test's own leaving of the canvas
                             "glMatrixMode(GL_PROJECTION)", "glPopMatrix()", "glMatrixMode(GL_MODELVIEW)",
                             "glPopMatrix()"}));
    EXPECT_TRUE(fakes::gl().depth_mask);
    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
}

TEST_F(CharacterTest, EveryPoseHasItsPicturesAndOnlyPoseAHasEyes) {
    RunFrame(0);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[0]), Eye(eye_l), Eye(eye_r)}));

    anim = kPerching;
    RunFrame(0);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[1])}));

    anim = kSleeping;
    RunFrame(0);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[2])}));
}

TEST_F(CharacterTest, WithClosedEyesThePoseIsOneClosedPictureAndHasNoEyes) {
    for (const int pose : {kStanding, kPerching, kSleeping}) {
        anim = pose;
        character.close_eyes = true;

        RunFrame(0);

        EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[pose])})) << "pose " << pose;
    }
}

// ---- Pointer and eyes ----

TEST_F(CharacterTest, ThePointerIsTakenFromTheScreenRelativeToTheWindow) {
    LookAtThePointer();
    fakes::gl().viewport = {0, 0, 300, 300};
    fakes::glut().get[GLUT_WINDOW_X] = 1000;
    fakes::glut().get[GLUT_WINDOW_Y] = 200;
    fakes::desktop().pointer = {1000 + 75, 200 + 150};  // canvas (128, 256), taken 4 units further right

    RunFrame(0);

    const double dx = 128 + 4 - kLeftEyeX;
    const double dy = 256 - kLeftEyeY;
    ExpectOffset(EyeOffset(eye_l), 5 * dx / std::hypot(dx, dy), 5 * dy / std::hypot(dx, dy));
}

TEST_F(CharacterTest, BothEyesFollowAPointerAnywhereOnTheScreen) {
    LookAtThePointer();
    fakes::gl().viewport = {0, 0, 300, 300};
    const std::array<ScreenPoint, 5> points = {
        {{-3000, 250}, {5000, 250}, {250, -4000}, {250, 6000}, {0, 0}}};
    for (const ScreenPoint& point : points) {
        fakes::desktop().pointer = point;

        RunFrame(0);

        const double x = (point.x - 100) * 512.0 / 300 + 4;
        const double y = 512 - (point.y - 100) * 512.0 / 300;
        const double left = std::hypot(x - kLeftEyeX, y - kLeftEyeY);
        const double right = std::hypot(x - kRightEyeX, y - kRightEyeY);
        ExpectOffset(EyeOffset(eye_l), 5 * (x - kLeftEyeX) / left, 5 * (y - kLeftEyeY) / left);
        ExpectOffset(EyeOffset(eye_r), 5 * (x - kRightEyeX) / right, 5 * (y - kRightEyeY) / right);
    }
}

TEST_F(CharacterTest, ThePointerIsAskedOnceAFrame) {
    RunFrame(0);
    RunFrame(0);

    EXPECT_EQ(fakes::desktop().pointer_calls, 2);
}

TEST_F(CharacterTest, AnOffsetOfLengthThreeIsUsedUnchanged) {
    LookAtThePointer();
    PointAt(kLeftEyeX + 1.8, kLeftEyeY - 2.4);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 1.8, -2.4);
}

TEST_F(CharacterTest, AnOffsetOfExactlyFourIsUsedUnchanged) {
    LookAtThePointer();
    PointAt(static_cast<double>(kLeftEyeX) + 4, kLeftEyeY);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 4, 0);
}

TEST_F(CharacterTest, AnOffsetJustAboveFourJumpsToFive) {
    LookAtThePointer();
    PointAt(kLeftEyeX + 4.001, kLeftEyeY);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 5, 0);
}

TEST_F(CharacterTest, AnOffsetOfLengthFourAndAHalfBecomesFiveInTheSameDirection) {
    LookAtThePointer();
    PointAt(kLeftEyeX - 2.7, kLeftEyeY + 3.6);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), -3, 4);
}

TEST_F(CharacterTest, TheRightEyeLooksFromAPlaceOfItsOwn) {
    LookAtThePointer();
    PointAt(kRightEyeX + 1, kRightEyeY + 2);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_r), 1, 2);
    EXPECT_NEAR(EyeOffset(eye_l).Length(), 5, 1e-3);
}

TEST_F(CharacterTest, AnEyeUnderThePointerStaysAtRest) {
    LookAtThePointer();
    PointAt(kRightEyeX, kRightEyeY);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_r), 0, 0);
}

TEST_F(CharacterTest, EyesLookFromTheBreathingHeadAndAreDrawnOnIt) {
    LookAtThePointer();
    character.bt = 0.5F;
    const double bob = 3 * std::sin(2 * 0.5);
    PointAt(kLeftEyeX + 1, kLeftEyeY + bob + 2);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 1, 2 + bob);
}

TEST_F(CharacterTest, LookingStraightAheadTheEyesStillMoveWithTheHead) {
    character.bt = 0.5F;

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 0, 3 * std::sin(2 * 0.5));
    ExpectOffset(EyeOffset(eye_r), 0, 3 * std::sin(2 * 0.5));
}

// ---- Breathing ----

TEST_F(CharacterTest, BreathingRaisesTheHeadOverAFixedBase) {
    for (int frame = 1; frame <= 30; ++frame) {
        RunFrame(0.125F);

        const double bob = 3 * std::sin(2 * 0.125 * frame);
        EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[0], bob), Eye(eye_l, 0, bob), Eye(eye_r, 0, bob)}))
            << "frame " << frame;
    }
}

TEST_F(CharacterTest, BreathingGoesOnInEveryPose) {
    for (const int pose : {kPerching, kSleeping}) {
        anim = pose;
        character.bt = 1;

        RunFrame(0);

        EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[pose], 3 * std::sin(2.0))}));
    }
}

TEST_F(CharacterTest, WithoutTimeNothingMoves) {
    character.bt = 0.7F;
    RunFrame(0);
    const std::vector<Sprite> before = Scene();

    RunFrame(0);

    EXPECT_EQ(Scene(), before);
}

TEST_F(CharacterTest, TheAnimationClockStartsAgainWithoutAVisibleJump) {
    new_notify = true;
    character.bt = 628.25F;

    RunFrame(0.125F);

    EXPECT_NEAR(character.bt, 628.375 - 628.31853, 1e-4);
    const double bob = 3 * std::sin(2 * 628.375);
    EXPECT_NEAR(Bob(owl[0]), bob, 0.01);
    const std::vector<Sprite> bubble = Bubble(628.375);
    const std::vector<fakes::Primitive> clouds = fakes::gl().DrawnWith(cloud);
    const std::vector<fakes::Primitive> dots = fakes::gl().DrawnWith(circle);
    ASSERT_EQ(clouds.size(), 1U);
    ASSERT_EQ(dots.size(), 3U);
    EXPECT_NEAR(fakes::Bounds(clouds[0]).Width(), bubble[0].rect.Width(), 0.01);
    EXPECT_NEAR(fakes::Bounds(clouds[0]).CentreY(), bubble[0].rect.CentreY(), 0.01);
    for (std::size_t i = 0; i < dots.size(); ++i) {
        EXPECT_NEAR(fakes::Bounds(dots[i]).CentreY(), bubble[i + 1].rect.CentreY(), 0.01);
    }
}

TEST_F(CharacterTest, TheAnimationClockRunsFreelyUntilThen) {
    character.bt = 628;

    RunFrame(0.25F);

    EXPECT_EQ(character.bt, 628.25F);
}

// ---- First delays ----

TEST_F(CharacterTest, TheFirstFrameDrawsTheDelaysInTheOrderOfTheirTimers) {
    character = CharacterState();
    fakes::world().rand_values = {1, 2, 3, 4, 5};

    RunFrame(0);

    EXPECT_EQ(NumbersTaken(), 5);
    EXPECT_FLOAT_EQ(character.next_sq, 901);
    EXPECT_FLOAT_EQ(character.next_ce, 1.7F);
    EXPECT_FLOAT_EQ(character.next_st, 5.3F);
    EXPECT_FLOAT_EQ(character.next_std, 3.4F);
    EXPECT_FLOAT_EQ(character.next_swap, 20.5F);
}

TEST_F(CharacterTest, TheFirstDelaysReachFromTheirShortestToTheirLongest) {
    character = CharacterState();
    fakes::world().rand_values = {0, 0, 0, 0, 0};
    RunFrame(0);
    EXPECT_FLOAT_EQ(character.next_sq, 900);
    EXPECT_FLOAT_EQ(character.next_ce, 1.5F);
    EXPECT_FLOAT_EQ(character.next_st, 5);
    EXPECT_FLOAT_EQ(character.next_std, 3);
    EXPECT_FLOAT_EQ(character.next_swap, 20);

    character = CharacterState();
    fakes::world().rand_values = {900, 45, 100, 50, 400};
    RunFrame(0);
    EXPECT_FLOAT_EQ(character.next_sq, 1800);
    EXPECT_FLOAT_EQ(character.next_ce, 6);
    EXPECT_FLOAT_EQ(character.next_st, 15);
    EXPECT_FLOAT_EQ(character.next_std, 8);
    EXPECT_FLOAT_EQ(character.next_swap, 60);
}

TEST_F(CharacterTest, TheFirstDelaysWrapRightAfterTheirLongest) {
    character = CharacterState();
    fakes::world().rand_values = {901, 46, 101, 51, 401};

    RunFrame(0);

    EXPECT_FLOAT_EQ(character.next_sq, 900);
    EXPECT_FLOAT_EQ(character.next_ce, 1.5F);
    EXPECT_FLOAT_EQ(character.next_st, 5);
    EXPECT_FLOAT_EQ(character.next_std, 3);
    EXPECT_FLOAT_EQ(character.next_swap, 20);
}

TEST_F(CharacterTest, LaterFramesKeepTheFirstDelays) {
    character = CharacterState();
    fakes::world().rand_values = {1, 2, 3, 4, 5};
    RunFrame(0);

    RunFrame(0.25F);

    EXPECT_FLOAT_EQ(character.next_sq, 901);
    EXPECT_FLOAT_EQ(character.next_ce, 1.7F);
    EXPECT_FLOAT_EQ(character.next_st, 5.3F);
    EXPECT_FLOAT_EQ(character.next_std, 3.4F);
    EXPECT_FLOAT_EQ(character.next_swap, 20.5F);
    EXPECT_EQ(NumbersTaken(), 0);
}

TEST_F(CharacterTest, TimersThatRingInOneFrameDrawTheirNewDelaysInTheSameOrder) {
    character.next_sq = 900;
    character.sqt = 901;
    character.next_ce = 2;
    character.cet = 3;
    character.next_st = 5;
    character.next_std = 3;
    character.ste = 9;
    character.next_swap = 20;
    character.swap_te = 21;
    fakes::world().rand_values = {11, 12, 13, 14, kPerching, 15};

    RunFrame(0);

    EXPECT_FLOAT_EQ(character.next_sq, 911);
    EXPECT_FLOAT_EQ(character.next_ce, 2.7F);
    EXPECT_FLOAT_EQ(character.next_st, 6.3F);
    EXPECT_FLOAT_EQ(character.next_std, 4.4F);
    EXPECT_FLOAT_EQ(character.next_swap, 11.5F);  // of pose B, although the offer brings pose A back
    EXPECT_EQ(anim, kStanding);
}

// ---- All timers ----

TEST_F(CharacterTest, TheOwlsFourTimersRunWhateverItDoes) {
    struct Case {
        const char* state;
        int pose = kStanding;
        int stage = 0;
        float seconds = 0;  ///< into the stage and the laugh
        bool laugh_wanted = false;
        bool laugh = false;
        bool notice = false;
        bool offer = false;
        bool pointer_over = false;
    };
    const std::vector<Case> cases = {
        {.state = "standing"},
        {.state = "perching", .pose = kPerching},
        {.state = "falling asleep", .pose = kSleeping},
        {.state = "falling asleep, second stage", .pose = kSleeping, .stage = 1},
        {.state = "fast asleep", .pose = kSleeping, .stage = 2},
        {.state = "waking", .pose = kSleeping, .stage = 3},
        {.state = "waking, its end", .pose = kSleeping, .stage = 3, .seconds = 1},
        {.state = "laugh, its start", .laugh_wanted = true},
        {.state = "laugh", .laugh = true},
        {.state = "laugh, its end", .seconds = 15.5F, .laugh = true},
        {.state = "notice", .notice = true},
        {.state = "notice during a laugh", .laugh = true, .notice = true},
        {.state = "notice during sleep", .pose = kSleeping, .stage = 2, .notice = true},
        {.state = "offer", .offer = true},
        {.state = "pointer over the canvas", .pointer_over = true},
        {.state = "pointer over the canvas, perching", .pose = kPerching, .pointer_over = true},
        {.state = "pointer over the canvas, asleep", .pose = kSleeping, .stage = 2, .pointer_over = true},
    };
    const CharacterState calm = character;
    for (const Case& row : cases) {
        SCOPED_TRACE(row.state);
        character = calm;
        character.sqt = 0.5F;
        character.cet = 0.75F;
        character.ste = 1.5F;
        character.swap_te = 2;
        anim = row.pose;
        character.sleep_state = row.stage;
        character.te = character.lte = row.seconds;
        spawn_laugh = row.laugh_wanted;
        character.laugh = row.laugh;
        new_notify = row.notice;
        spawn_question = row.offer;
        PointAt(row.pointer_over ? 256 : -4000, 256);

        RunFrame(0.125F);

        EXPECT_EQ(character.sqt, row.offer ? 0 : 0.625F);  // stands still only while an offer shows
        EXPECT_EQ(character.cet, 0.875F);
        EXPECT_EQ(character.ste, 1.625F);
        EXPECT_EQ(character.swap_te, 2.125F);
    }
}

// ---- Quiz offer ----

TEST_F(CharacterTest, AQuizOfferComesAfterItsDelayAndNotAtIt) {
    character.next_sq = 900;
    character.sqt = 899.5F;

    RunFrame(0.5F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(character.sqt, 900);

    RunFrame(0.125F);
    EXPECT_TRUE(spawn_question);
}

TEST_F(CharacterTest, AQuizOfferStartsItsTimerAnewWithANewDelay) {
    character.next_sq = 900;
    character.sqt = 900;
    fakes::world().rand_values = {17};

    RunFrame(0.5F);

    EXPECT_TRUE(spawn_question);
    EXPECT_EQ(character.sqt, 0);
    EXPECT_FLOAT_EQ(character.next_sq, 917);
}

TEST_F(CharacterTest, TheNextQuizOfferComesAfter15To30Minutes) {
    for (const auto& [random, delay] :
         {std::pair{0, 900.0F}, std::pair{900, 1800.0F}, std::pair{901, 900.0F}}) {
        spawn_question = false;
        character.next_sq = 900;
        character.sqt = 901;
        fakes::world().rand_values = {random};

        RunFrame(0);

        EXPECT_FLOAT_EQ(character.next_sq, delay);
    }
}

TEST_F(CharacterTest, AQuizOfferShowsInTheFrameInWhichItComes) {
    character.sqt = 901;
    character.next_sq = 900;

    RunFrame(0);

    EXPECT_TRUE(IsDrawn(hat));
    EXPECT_TRUE(IsDrawn(cloud));
}

TEST_F(CharacterTest, WhileAQuizOfferShowsTheTimeToTheNextStandsAtZero) {
    spawn_question = true;
    character.sqt = 500;
    RunFrame(0.25F);
    EXPECT_EQ(character.sqt, 0);

    RunFrame(0.25F);

    EXPECT_EQ(character.sqt, 0);
}

TEST_F(CharacterTest, AsleepNoQuizOfferComesButItsTimerGoesOn) {
    FallAsleep();
    character.next_sq = 900;
    character.sqt = 1000;

    RunFrame(0.25F);

    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(character.sqt, 1000.25F);
    EXPECT_EQ(character.next_sq, 900);
}

TEST_F(CharacterTest, AQuizOfferDueDuringSleepComesOnTheFirstFrameAfterWaking) {
    FallAsleep();
    character.next_sq = 900;
    character.sqt = 1000;
    character.sleep_state = 3;
    character.te = 0.875F;
    RunFrame(0.25F);
    ASSERT_EQ(anim, kStanding);
    EXPECT_FALSE(spawn_question);

    RunFrame(0.25F);

    EXPECT_TRUE(spawn_question);
}

// ---- Blinking ----

TEST_F(CharacterTest, ABlinkComesAfterItsDelayAndNotAtIt) {
    character.next_ce = 2;
    character.cet = 1.9375F;

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl[0]));
    EXPECT_EQ(character.cet, 2);

    RunFrame(0.0625F);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[0], 3 * std::sin(2 * 0.125))}));
}

TEST_F(CharacterTest, ABlinkStartsItsTimerAnewWithANewDelay) {
    for (const auto& [random, delay] : {std::pair{0, 1.5F}, std::pair{7, 2.2F}, std::pair{45, 6.0F}}) {
        character.next_ce = 2;
        character.cet = 2.5F;
        fakes::world().rand_values = {random};

        RunFrame(0);

        EXPECT_FLOAT_EQ(character.next_ce, delay);
        EXPECT_EQ(character.cet, 0);
    }
}

TEST_F(CharacterTest, ABlinkLastsATenthOfASecondAndStillLastsAtIt) {
    character.close_eyes = true;

    RunFrame(0.1F);
    EXPECT_TRUE(IsDrawn(owl_ce[0]));
    EXPECT_FALSE(IsDrawn(owl[0]));

    RunFrame(0.001F);
    EXPECT_FALSE(IsDrawn(owl_ce[0]));
    EXPECT_TRUE(IsDrawn(owl[0]));
    EXPECT_EQ(character.cst, 0);
}

TEST_F(CharacterTest, ABlinkCountsFromTheFrameInWhichItStarts) {
    character.next_ce = 2;
    character.cet = 2;
    RunFrame(0.0625F);
    EXPECT_EQ(character.cst, 0.0625F);
    EXPECT_TRUE(IsDrawn(owl_ce[0]));

    RunFrame(0.0625F);

    EXPECT_TRUE(IsDrawn(owl[0]));
}

TEST_F(CharacterTest, ABlinkShorterThanItsFrameIsNotSeen) {
    character.next_ce = 2;
    character.cet = 2;

    RunFrame(0.125F);

    EXPECT_TRUE(IsDrawn(owl[0]));
    EXPECT_FALSE(character.close_eyes);
    EXPECT_EQ(character.cet, 0);
}

TEST_F(CharacterTest, PoseBBlinksWithItsOwnPicture) {
    anim = kPerching;
    character.next_ce = 2;
    character.cet = 2;

    RunFrame(0.0625F);

    EXPECT_TRUE(IsDrawn(owl_ce[1]));
    EXPECT_FALSE(IsDrawn(owl[1]));
}

TEST_F(CharacterTest, OpenEyesDoNotCountABlink) {
    RunFrame(0.25F);

    EXPECT_EQ(character.cst, 0);
    EXPECT_EQ(character.cet, 0.25F);
}

// ---- Looking straight ahead ----

TEST_F(CharacterTest, TheOwlLooksStraightAheadAfterTheDelayAndNotAtIt) {
    character.next_st = 5;
    character.ste = 4.75F;

    RunFrame(0.25F);
    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);

    RunFrame(0.25F);
    EXPECT_NEAR(EyeOffset(eye_l).x, 0, 1e-3);
    EXPECT_NEAR(EyeOffset(eye_r).x, 0, 1e-3);
}

TEST_F(CharacterTest, TheLookLastsItsLengthAndStillLastsAtIt) {
    character.next_st = 5;
    character.next_std = 3;
    character.ste = 7.75F;

    RunFrame(0.25F);

    EXPECT_EQ(character.ste, 8);
    EXPECT_NEAR(EyeOffset(eye_l).x, 0, 1e-3);
}

TEST_F(CharacterTest, TheLooksLastFrameStartsTheCycleAnewWithNewDelays) {
    character.next_st = 5;
    character.next_std = 3;
    character.ste = 8;
    fakes::world().rand_values = {21, 32};

    RunFrame(0.25F);

    EXPECT_NEAR(EyeOffset(eye_l).x, 0, 1e-3);
    EXPECT_EQ(character.ste, 0);
    EXPECT_FLOAT_EQ(character.next_st, 7.1F);
    EXPECT_FLOAT_EQ(character.next_std, 6.2F);
    RunFrame(0.25F);
    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);
}

TEST_F(CharacterTest, TheCyclesNewDelaysAre5To15And3To8Seconds) {
    const std::vector<std::array<float, 4>> cases = {{0, 0, 5, 3}, {100, 50, 15, 8}, {101, 51, 5, 3}};
    for (const auto& [random_st, random_std, delay, length] : cases) {
        character.next_st = 5;
        character.next_std = 3;
        character.ste = 9;
        fakes::world().rand_values = {static_cast<int>(random_st), static_cast<int>(random_std)};

        RunFrame(0);

        EXPECT_FLOAT_EQ(character.next_st, delay);
        EXPECT_FLOAT_EQ(character.next_std, length);
    }
}

TEST_F(CharacterTest, EveryFrameStartsWithEyesThatFollow) {
    RunFrame(0);
    ExpectOffset(EyeOffset(eye_l), 0, 0);
    LookAtThePointer();

    RunFrame(0);

    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);
}

// ---- Poses ----

TEST_F(CharacterTest, ThePoseChangesAfterItsTimeAndNotAtIt) {
    character.next_swap = 20;
    character.swap_te = 19.75F;

    RunFrame(0.25F);
    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.swap_te, 20);
    EXPECT_EQ(NumbersTaken(), 0);

    fakes::world().rand_values = {1, 0};
    RunFrame(0.25F);
    EXPECT_EQ(anim, kPerching);
    EXPECT_EQ(character.swap_te, 0);
    EXPECT_TRUE(IsDrawn(owl[1]));
}

TEST_F(CharacterTest, TheNewPoseIsDrawnUntilItDiffers) {
    character.next_swap = 20;
    character.swap_te = 20;
    fakes::world().rand_values = {0, 3, 6, 5, 0};

    RunFrame(0.25F);

    EXPECT_EQ(anim, kSleeping);  // 5 % 3
    EXPECT_EQ(NumbersTaken(), 5);
}

TEST_F(CharacterTest, FromPoseBTheNewPoseIsAnotherToo) {
    anim = kPerching;
    character.next_swap = 20;
    character.swap_te = 20;
    fakes::world().rand_values = {1, 4, 7, 3, 0};

    RunFrame(0.25F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(NumbersTaken(), 5);
}

TEST_F(CharacterTest, TheTimeInTheNewPoseGoesByThePose) {
    struct Case {
        int from, pose_random, to, time_random;
        float seconds;
    };
    const std::vector<Case> cases = {
        {kPerching, 0, kStanding, 0, 20},     {kPerching, 0, kStanding, 400, 60},
        {kPerching, 0, kStanding, 401, 20},   {kStanding, 1, kPerching, 0, 10},
        {kStanding, 1, kPerching, 100, 20},   {kStanding, 1, kPerching, 101, 10},
        {kStanding, 2, kSleeping, 0, 30},     {kStanding, 2, kSleeping, 300, 60},
        {kStanding, 2, kSleeping, 301, 30},   {kPerching, 2, kSleeping, 15, 31.5F},
        {kStanding, 1, kPerching, 15, 11.5F},
    };
    for (const Case& row : cases) {
        anim = row.from;
        character.sleep_state = 0;
        character.te = 0;
        character.next_swap = 20;
        character.swap_te = 21;
        fakes::world().rand_values = {row.pose_random, row.time_random};

        RunFrame(0);

        EXPECT_EQ(anim, row.to);
        EXPECT_FLOAT_EQ(character.next_swap, row.seconds)
            << "pose " << row.to << ", rand " << row.time_random;
    }
}

TEST_F(CharacterTest, ThePoseTimerWakesASleepingOwlInsteadOfDrawingAPose) {
    FallAsleep();
    character.next_swap = 30;
    character.swap_te = 30;
    fakes::world().rand_values = {25};

    RunFrame(0.25F);

    EXPECT_EQ(anim, kSleeping);
    EXPECT_EQ(character.sleep_state, 3);
    EXPECT_EQ(character.swap_te, 0);
    EXPECT_FLOAT_EQ(character.next_swap, 22.5F);  // 20 to 60 seconds
}

TEST_F(CharacterTest, ThePoseTimerOfASleepingOwlReachesTo60Seconds) {
    FallAsleep();
    character.next_swap = 30;
    character.swap_te = 31;
    fakes::world().rand_values = {400};

    RunFrame(0);

    EXPECT_FLOAT_EQ(character.next_swap, 60);
}

// ---- The pointer over the canvas ----

TEST_F(CharacterTest, ThePointerOverTheCanvasBringsPoseBBackToPoseA) {
    anim = kPerching;
    PutThePointerOverTheCanvas();

    RunFrame(0);

    EXPECT_EQ(anim, kStanding);
    EXPECT_TRUE(IsDrawn(owl[0]));
}

TEST_F(CharacterTest, ThePointerOverTheCanvasEndsTheLookStraightAhead) {
    PutThePointerOverTheCanvas();

    RunFrame(0);

    EXPECT_NEAR(EyeOffset(eye_l).Length(), 5, 1e-3);
    EXPECT_NEAR(EyeOffset(eye_r).Length(), 5, 1e-3);
}

TEST_F(CharacterTest, ThePointerOverTheCanvasUndoesAChangeOfPoseInItsFrame) {
    PutThePointerOverTheCanvas();
    character.next_swap = 20;
    character.swap_te = 21;
    fakes::world().rand_values = {1, 0};

    RunFrame(0);

    EXPECT_EQ(anim, kStanding);
    EXPECT_FLOAT_EQ(character.next_swap, 10);
}

TEST_F(CharacterTest, TheEdgesOfTheCanvasAreOutside) {
    struct Case {
        double x, y;
        bool over;
    };
    const std::vector<Case> cases = {
        {0, 100, false},   {512, 100, false},   {100, 0, false},   {100, 512, false},
        {0.01, 100, true}, {511.99, 100, true}, {100, 0.01, true}, {100, 511.99, true},
        {-1, 100, false},  {513, 100, false},   {100, -1, false},  {100, 513, false},
    };
    for (const Case& row : cases) {
        anim = kPerching;
        PointAt(row.x, row.y);

        RunFrame(0);

        EXPECT_EQ(anim, row.over ? kStanding : kPerching) << row.x << ", " << row.y;
    }
}

TEST_F(CharacterTest, ThePointerOverTheCanvasGoesByTheWindowsPlaceAndSize) {
    fakes::gl().viewport = {0, 0, 300, 300};
    const auto pose_with_pointer_at = [](int x, int y) {
        anim = kPerching;
        fakes::desktop().pointer = {100 + x, 100 + y};
        RunFrame(0);
        return anim;
    };

    EXPECT_EQ(pose_with_pointer_at(150, 150), kStanding);
    EXPECT_EQ(pose_with_pointer_at(1, 299), kStanding);
    EXPECT_EQ(pose_with_pointer_at(297, 1), kStanding);
    EXPECT_EQ(pose_with_pointer_at(298, 150),
              kPerching);  // the owl takes the pointer to be 4 units further right
    EXPECT_EQ(pose_with_pointer_at(-2, 150), kStanding);
    EXPECT_EQ(pose_with_pointer_at(-3, 150), kPerching);
    EXPECT_EQ(pose_with_pointer_at(150, 0), kPerching);
    EXPECT_EQ(pose_with_pointer_at(150, 300), kPerching);
}

TEST_F(CharacterTest, ThePointerOverTheCanvasWakesASleepingOwl) {
    FallAsleep();
    PutThePointerOverTheCanvas();

    RunFrame(0.25F);

    EXPECT_EQ(anim, kSleeping);
    EXPECT_EQ(character.sleep_state, 3);
}

TEST_F(CharacterTest, WithThePointerOverTheCanvasAnySleepEndsWithinASecond) {
    for (const int stage : {0, 1, 2, 3}) {
        anim = kSleeping;
        character.sleep_state = stage;
        character.te = 0;
        PutThePointerOverTheCanvas();

        for (int frame = 0; frame < 9; ++frame) RunFrame(0.125F);  // just over a second

        EXPECT_EQ(anim, kStanding) << "stage " << stage;
        EXPECT_EQ(character.sleep_state, 0) << "stage " << stage;
    }
}

TEST_F(CharacterTest, WithThePointerOverTheCanvasTheOwlNeverFallsFastAsleep) {
    PutThePointerOverTheCanvas();
    fakes::world().rand_default = 2;  // every pose drawn is the sleep
    character.next_swap = 20;
    float asleep = 0;
    for (int frame = 0; frame < 2400; ++frame) {
        RunFrame(0.125F);

        EXPECT_NE(anim, kPerching);
        EXPECT_NE(character.sleep_state, 2);
        asleep = anim == kSleeping ? asleep + 0.125F : 0;
        EXPECT_LE(asleep, 1.125F);
    }
}

// ---- Sleep ----

TEST_F(CharacterTest, FallingAsleepTakesTwoStagesOfOneSecondAndThenHolds) {
    anim = kSleeping;
    std::vector<int> stage_at_the_end_of_each_second;
    for (int second = 0; second < 6; ++second) {
        for (int frame = 0; frame < 8; ++frame) RunFrame(0.125F);
        stage_at_the_end_of_each_second.push_back(character.sleep_state);
    }

    // A stage lasts nine frames here: at one second exactly it still lasts.
    EXPECT_EQ(stage_at_the_end_of_each_second, (std::vector<int>{0, 1, 2, 2, 2, 2}));
    EXPECT_EQ(anim, kSleeping);
}

TEST_F(CharacterTest, AStageLastsOneSecondAndStillLastsAtIt) {
    anim = kSleeping;
    character.te = 0.75F;

    RunFrame(0.25F);
    EXPECT_EQ(character.sleep_state, 0);
    EXPECT_EQ(character.te, 1);

    RunFrame(0.125F);
    EXPECT_EQ(character.sleep_state, 1);
    EXPECT_EQ(character.te, 0);
}

TEST_F(CharacterTest, FallingAsleepTheEyesAreOpenAndBlink) {
    for (const int stage : {0, 1}) {
        anim = kSleeping;
        character.sleep_state = stage;
        character.te = 0;
        RunFrame(0);
        EXPECT_TRUE(IsDrawn(owl[2])) << "stage " << stage;
        EXPECT_FALSE(IsDrawn(owl_ce[2])) << "stage " << stage;

        character.next_ce = 2;
        character.cet = 2;
        RunFrame(0.0625F);
        EXPECT_TRUE(IsDrawn(owl_ce[2])) << "stage " << stage;
        RunFrame(0.0625F);
        EXPECT_TRUE(IsDrawn(owl[2])) << "stage " << stage;
    }
}

TEST_F(CharacterTest, AsleepTheEyesAreShutInEveryFrame) {
    FallAsleep();
    for (int frame = 0; frame < 20; ++frame) {
        RunFrame(0.125F);

        EXPECT_TRUE(IsDrawn(owl_ce[2]));
        EXPECT_FALSE(IsDrawn(owl[2]));
    }
}

TEST_F(CharacterTest, TheFrameThatReachesSleepStillShowsOpenEyes) {
    anim = kSleeping;
    character.sleep_state = 1;
    character.te = 1;

    RunFrame(0.125F);
    EXPECT_EQ(character.sleep_state, 2);
    EXPECT_TRUE(IsDrawn(owl[2]));

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl_ce[2]));
}

TEST_F(CharacterTest, AsleepTheStagesClockStandsStill) {
    FallAsleep();
    character.te = 0.5F;

    RunFrame(0.25F);

    EXPECT_EQ(character.te, 0.5F);
}

TEST_F(CharacterTest, WakingEndsInPoseAWithinASecond) {
    anim = kSleeping;
    character.sleep_state = 3;
    for (int frame = 0; frame < 8; ++frame) {
        RunFrame(0.125F);
        EXPECT_EQ(anim, kSleeping);
        EXPECT_EQ(character.sleep_state, 3);
        EXPECT_TRUE(IsDrawn(owl[2]));
    }

    RunFrame(0.125F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.sleep_state, 0);
    EXPECT_EQ(character.te, 0);
    EXPECT_TRUE(IsDrawn(owl[0]));
}

TEST_F(CharacterTest, WakingDoesNotBeginTheStagesSecondAgain) {
    anim = kSleeping;
    character.sleep_state = 0;
    character.te = 0.875F;
    PutThePointerOverTheCanvas();

    RunFrame(0.25F);

    EXPECT_EQ(anim, kStanding);
}

TEST_F(CharacterTest, WakingOpensTheEyesAfterTheLengthOfABlink) {
    FallAsleep();
    RunFrame(0);
    character.sleep_state = 3;

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl_ce[2]));

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl[2]));
}

// Only the end of waking goes back to the first stage; a sleep that ended otherwise is gone on with.
TEST_F(CharacterTest, AnewAsleepByLotTheOwlGoesOnWithTheStageAndTheSecondItHad) {
    for (const int stage : {0, 1, 2}) {
        anim = kStanding;
        character.sleep_state = stage;
        character.te = 0.5F;
        character.next_swap = 20;
        character.swap_te = 21;
        fakes::world().rand_values = {kSleeping, 0};

        RunFrame(0.25F);

        EXPECT_EQ(anim, kSleeping);
        EXPECT_EQ(character.sleep_state, stage);
        EXPECT_EQ(character.te, stage == 2 ? 0.5F : 0.75F);
    }
}

TEST_F(CharacterTest, ThePoseTimerThatWakesTheOwlDoesNotBeginTheStagesSecondAgain) {
    FallAsleep();
    character.te = 0.5F;
    character.next_swap = 30;
    character.swap_te = 31;

    RunFrame(0.25F);

    EXPECT_EQ(character.sleep_state, 3);
    EXPECT_EQ(character.te, 0.75F);
}

TEST_F(CharacterTest, AwakeThePointerOverTheCanvasKeepsTheStageOfTheLastSleep) {
    for (const int pose : {kStanding, kPerching}) {
        anim = pose;
        character.sleep_state = 2;
        character.te = 0.5F;
        PutThePointerOverTheCanvas();

        RunFrame(0.25F);

        EXPECT_EQ(character.sleep_state, 2);
        EXPECT_EQ(character.te, 0.5F);
    }
}

TEST_F(CharacterTest, AwakeTheStagesClockStandsStill) {
    character.te = 0.5F;

    RunFrame(0.25F);

    EXPECT_EQ(character.te, 0.5F);
    EXPECT_EQ(character.sleep_state, 0);
}

// ---- Laughing ----

TEST_F(CharacterTest, ARequestStartsALaughAndIsTaken) {
    spawn_laugh = true;
    character.lte = 3;
    character.bt = 2;

    RunFrame(0.125F);

    EXPECT_FALSE(spawn_laugh);
    EXPECT_TRUE(character.laugh);
    EXPECT_EQ(character.lte, 0.125F);
    EXPECT_EQ(character.bt, 0);
}

TEST_F(CharacterTest, TheFirstFrameOfALaughBreathesAsBefore) {
    spawn_laugh = true;
    character.bt = 2;

    RunFrame(0.125F);

    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[0], 3 * std::sin(2 * 2.125))}));
}

TEST_F(CharacterTest, ALaughComesAlsoWithSoundSwitchedOff) {
    enable_sfx = false;
    spawn_laugh = true;

    RunFrame(0.125F);

    EXPECT_TRUE(character.laugh);
    EXPECT_TRUE(IsDrawn(owl_ce[0]));
}

TEST_F(CharacterTest, ALaughSoundsOnce) {
    spawn_laugh = true;

    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), (Sounds{"laugh.wav"}));

    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(CharacterTest, ALaughIsSilentWithSoundSwitchedOff) {
    enable_sfx = false;
    spawn_laugh = true;

    RunFrame(0.125F);

    EXPECT_EQ(SoundsStarted(), Sounds());
}

TEST_F(CharacterTest, LaughingShakesTheOwlSlowerAndSlower) {
    for (const auto& [bt, lte] : {std::pair{0.125F, 0.25F}, std::pair{0.5F, 0.625F}, std::pair{1.0F, 1.125F},
                                  std::pair{7.25F, 7.375F}, std::pair{15.0F, 15.125F}}) {
        character.laugh = true;
        character.bt = bt;
        character.lte = lte;

        RunFrame(0.125F);

        const double clock = bt + 0.125;
        const double lasted = lte + 0.125;
        const double bob = 3 * std::sin(2 * clock) + 10 * std::sin(30 * clock / (1 + 0.025 * lasted));
        EXPECT_NEAR(Bob(owl_ce[0]), bob, 2e-3) << "after " << lasted << " seconds";
    }
}

TEST_F(CharacterTest, LaughingShowsTheClosedPictureOfPoseAAndNoEyes) {
    character.laugh = true;

    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[0])}));
}

TEST_F(CharacterTest, LaughingBringsPoseBAndSleepToPoseA) {
    for (const int pose : {kPerching, kSleeping}) {
        anim = pose;
        character.laugh = true;

        RunFrame(0.125F);

        EXPECT_EQ(anim, kStanding);
        EXPECT_TRUE(IsDrawn(owl_ce[0]));
    }
}

TEST_F(CharacterTest, ALaughKeepsTheStageOfTheSleepThatItEnds) {
    for (const int pose : {kStanding, kSleeping}) {
        anim = pose;
        character.sleep_state = 2;
        character.te = 0.5F;
        spawn_laugh = true;

        RunFrame(0.25F);

        EXPECT_EQ(anim, kStanding);
        EXPECT_EQ(character.sleep_state, 2);
        EXPECT_EQ(character.te, 0.5F);
    }
}

TEST_F(CharacterTest, WakingComesToItsEndInTheFrameInWhichALaughStarts) {
    anim = kSleeping;
    character.sleep_state = 3;
    character.te = 0.875F;
    spawn_laugh = true;

    RunFrame(0.25F);

    EXPECT_EQ(character.sleep_state, 0);
    EXPECT_EQ(character.te, 0);
}

TEST_F(CharacterTest, ThePointerOverTheCanvasWakesTheOwlBeforeALaughDoes) {
    FallAsleep();
    PutThePointerOverTheCanvas();
    spawn_laugh = true;

    RunFrame(0.25F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.sleep_state, 3);
    EXPECT_EQ(character.te, 0.25F);
}

TEST_F(CharacterTest, LaughingTheEyesStayShutForTheWholeLaugh) {
    spawn_laugh = true;
    for (int frame = 0; frame < 8 * 15; ++frame) {
        RunFrame(0.125F);

        EXPECT_TRUE(IsDrawn(owl_ce[0]));
    }
}

TEST_F(CharacterTest, ALaughLastsFifteenAndAHalfSecondsAndStillLastsAtThem) {
    character.laugh = true;
    character.lte = 15.25F;

    RunFrame(0.25F);
    EXPECT_TRUE(character.laugh);
    EXPECT_EQ(character.lte, 15.5F);

    RunFrame(0.0625F);
    EXPECT_FALSE(character.laugh);
    EXPECT_EQ(character.lte, 0);
    EXPECT_TRUE(IsDrawn(owl_ce[0])) << "the last frame still laughs";
}

TEST_F(CharacterTest, ALaughsSoundPlaysOnWhereverTheLaughEnds) {
    for (const bool notice : {false, true}) {
        AudioEngine.spawn_static(0, "laugh.wav", false);
        character.laugh = true;
        character.lte = notice ? 5 : 15.5F;
        new_notify = notice;

        RunFrame(0.125F);

        EXPECT_FALSE(character.laugh);
        EXPECT_EQ(SoundsPlaying(), 1U) << (notice ? "by a notice" : "by itself");
    }
}

TEST_F(CharacterTest, AfterALaughTheEyesOpenAndFollowAgain) {
    LookAtThePointer();
    character.laugh = true;
    character.lte = 15.5F;
    RunFrame(0.0625F);
    RunFrame(0.0625F);

    RunFrame(0.0625F);

    EXPECT_TRUE(IsDrawn(owl[0]));
    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);
}

TEST_F(CharacterTest, ANewRequestStartsARunningLaughAnew) {
    character.laugh = true;
    character.lte = 10;
    character.bt = 10;
    spawn_laugh = true;

    RunFrame(0.125F);

    EXPECT_EQ(character.lte, 0.125F);
    EXPECT_EQ(character.bt, 0);
}

TEST_F(CharacterTest, WithoutALaughItsClockStandsStill) {
    RunFrame(0.25F);

    EXPECT_EQ(character.lte, 0);
}

// ---- Attention ----

TEST_F(CharacterTest, ANoticeOrAnOfferBringsTheOwlToPoseALookingStraightAhead) {
    for (const bool offer : {false, true}) {
        for (const int pose : {kStanding, kPerching, kSleeping}) {
            LookAtThePointer();
            anim = pose;
            spawn_question = offer;
            new_notify = !offer;

            RunFrame(0);

            EXPECT_EQ(anim, kStanding);
            EXPECT_TRUE(IsDrawn(owl[0]));
            ExpectOffset(EyeOffset(eye_l), 0, 0);
            ExpectOffset(EyeOffset(eye_r), 0, 0);
        }
    }
}

TEST_F(CharacterTest, AttentionLooksStraightAheadAlsoWithThePointerOverTheCanvas) {
    LookAtThePointer();
    PutThePointerOverTheCanvas();
    new_notify = true;

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 0, 0);
}

TEST_F(CharacterTest, AttentionEndsALaughWhoseLastFrameIsStillDrawn) {
    for (const bool offer : {false, true}) {
        character.laugh = true;
        character.lte = 4.875F;
        character.bt = 4.875F;
        spawn_question = offer;
        new_notify = !offer;

        RunFrame(0.125F);

        EXPECT_FALSE(character.laugh);
        EXPECT_EQ(character.lte, 0);
        EXPECT_NEAR(Bob(owl_ce[0]), 3 * std::sin(10.0) + 10 * std::sin(150 / 1.125), 2e-3);
    }
}

TEST_F(CharacterTest, AttentionKeepsTheStageOfTheSleepThatItEnds) {
    FallAsleep();
    new_notify = true;

    RunFrame(0.125F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.sleep_state, 2);
}

TEST_F(CharacterTest, AttentionShowsASleepersEyesShutInItsFirstFrame) {
    FallAsleep();
    new_notify = true;

    RunFrame(0.125F);

    EXPECT_TRUE(IsDrawn(owl_ce[0]));
}

TEST_F(CharacterTest, AttentionLetsTheStagesClockRunInItsFirstFrame) {
    anim = kSleeping;
    character.te = 0.5F;
    new_notify = true;

    RunFrame(0.25F);

    EXPECT_EQ(character.te, 0.75F);
    EXPECT_EQ(anim, kStanding);
}

// ---- Hat and thought bubble ----

TEST_F(CharacterTest, AnOfferPutsOnTheHatAndShowsTheBubble) {
    spawn_question = true;

    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree(Joined(
                           {Body(owl[0]), Eye(eye_l), Eye(eye_r), {hat, {21, 20, 521, 510}}}, Bubble(0))));
}

TEST_F(CharacterTest, ANoticeShowsTheBubbleWithoutAHat) {
    new_notify = true;

    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree(Joined({Body(owl[0]), Eye(eye_l), Eye(eye_r)}, Bubble(0))));
}

TEST_F(CharacterTest, WithoutNoticeAndOfferThereIsNeitherHatNorBubble) {
    RunFrame(0);

    EXPECT_FALSE(IsDrawn(hat));
    EXPECT_FALSE(IsDrawn(cloud));
    EXPECT_FALSE(IsDrawn(circle));
}

TEST_F(CharacterTest, TheHatRisesWithTheHeadAlsoOverClosedEyes) {
    spawn_question = true;
    character.close_eyes = true;
    character.bt = 0.5F;
    const double bob = 3 * std::sin(1.0);

    RunFrame(0);

    EXPECT_EQ(Scene(),
              InFrontOfTheTree(Joined({Body(owl_ce[0], bob), {hat, {21, 20, 521, 510 + bob}}}, Bubble(0.5))));
}

TEST_F(CharacterTest, TheBubbleSwellsAndItsDotsSwingByTheAnimationClock) {
    for (const float bt : {0.0F, 0.2F, 0.5F, 1.0F, 2.75F, 10.0F, 100.0F}) {
        new_notify = true;
        character.bt = bt;

        RunFrame(0);

        const std::vector<Sprite> scene = Scene();
        ASSERT_GE(scene.size(), 4U);
        EXPECT_EQ(std::vector<Sprite>(scene.end() - 4, scene.end()), Bubble(bt)) << "at " << bt;
    }
}

TEST_F(CharacterTest, TheBubbleGoesByTheClockThatALaughHasJustStartedAnew) {
    new_notify = true;
    spawn_laugh = true;
    character.bt = 2;

    RunFrame(0.125F);

    const std::vector<Sprite> scene = Scene();
    ASSERT_GE(scene.size(), 4U);
    EXPECT_EQ(std::vector<Sprite>(scene.end() - 4, scene.end()), Bubble(0));
}

// ---- The end of the frame ----

TEST_F(CharacterTest, AnOfferEndsAfterTwentySecondsAndNotAtThem) {
    spawn_question = true;
    character.sqte = 19.75F;

    RunFrame(0.25F);
    EXPECT_TRUE(spawn_question);
    EXPECT_EQ(character.sqte, 20);

    RunFrame(0.125F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(character.sqte, 0);
}

TEST_F(CharacterTest, TheFrameInWhichAnOfferEndsStillShowsItAndTheNextDoesNot) {
    spawn_question = true;
    character.sqte = 20;
    RunFrame(0.125F);
    EXPECT_TRUE(IsDrawn(hat));

    RunFrame(0.125F);

    EXPECT_FALSE(IsDrawn(hat));
    EXPECT_FALSE(IsDrawn(cloud));
}

TEST_F(CharacterTest, AnOfferShowsForTwentySecondsFromItsFirstFrame) {
    character.next_sq = 900;
    character.sqt = 900;
    RunFrame(0.25F);
    ASSERT_TRUE(spawn_question);

    int frames = 1;
    while (spawn_question && frames < 1000) {
        RunFrame(0.25F);
        ++frames;
    }

    EXPECT_EQ(frames, 81);  // 20 seconds exactly are not over yet
}

TEST_F(CharacterTest, AnOfferTakenEarlierLeavesNoTimeForTheNext) {
    character.sqte = 15;

    RunFrame(0.25F);

    EXPECT_EQ(character.sqte, 0);
}

// ---- Effects ----

/// A test with effects whose particle shows where they are: a square about the effect's place.
class EffectsTest : public CharacterTest {
  protected:
    void SetUp() override {
        CharacterTest::SetUp();
        WriteEffect("sleep.zfx", 1, 1);
        WriteEffect("smoke.zfx", 2, 1);
        sleep_fx.load("sleep.zfx");
        smoke_fx.load("smoke.zfx");
    }
    void TearDown() override {
        // Empty again for the next test.
        std::ofstream("empty.zfx") << "ZFX ver: 2\n";
        sleep_fx.load("empty.zfx");
        smoke_fx.load("empty.zfx");
        CharacterTest::TearDown();
    }

    /// Returns the particles drawn by the last frame: what has the texture of an effect, which GL has named,
    /// and not the fixture.
    static std::vector<fakes::Primitive> Drawn() {
        std::vector<fakes::Primitive> particles;
        for (const fakes::Primitive& drawn : fakes::gl().primitives) {
            if (0 < drawn.texture && drawn.texture < 100) particles.push_back(drawn);
        }
        return particles;
    }

    /// Returns their places, canvas units.
    static std::vector<fakes::Rect> Particles() {
        std::vector<fakes::Rect> places;
        for (const fakes::Primitive& drawn : Drawn()) places.push_back(fakes::Bounds(drawn));
        return places;
    }

    /// Expects that one particle is drawn, and in the canvas's plane.
    static void ExpectOneInThePlane() {
        const std::vector<fakes::Primitive> particles = Drawn();
        ASSERT_EQ(particles.size(), 1U);
        for (const fakes::Vertex& corner : particles[0].vertices) EXPECT_EQ(corner.eye[2], 0);
    }
};

using Places = std::vector<fakes::Rect>;

TEST_F(EffectsTest, ASleepingOwlSnoresOverItsHead) {
    FallAsleep();

    RunFrame(0.125F);

    const double moved = 0.125 * 50;  // one unit of its size a second
    EXPECT_EQ(Particles(),
              (Places{{271 + 36 - 50 + moved, 265 + 130 - 50, 271 + 36 + 50 + moved, 265 + 130 + 50}}));
}

TEST_F(EffectsTest, LieInThePlaneOfTheCanvas) {
    FallAsleep();
    RunFrame(0.125F);
    ExpectOneInThePlane();

    spawn_question = true;
    RunFrame(0.125F);
    ExpectOneInThePlane();
}

TEST_F(EffectsTest, AnOwlThatIsNotFastAsleepDoesNotSnore) {
    for (const int stage : {0, 1, 3}) {
        anim = kSleeping;
        character.sleep_state = stage;
        character.te = 0;

        RunFrame(0.125F);

        EXPECT_TRUE(Particles().empty()) << stage;
    }
    anim = kStanding;
    character.sleep_state = 2;
    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());
}

TEST_F(EffectsTest, TheSnoresParticlesVanishWithTheSleepAndComeAnewWithTheNext) {
    FallAsleep();
    RunFrame(0.125F);
    character.sleep_state = 3;
    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());

    character.sleep_state = 2;
    RunFrame(0.125F);
    EXPECT_EQ(Particles().size(), 1U) << "a burst at once";
}

TEST_F(EffectsTest, AnOfferSmokesAtTheHatFiveTimesAsFastAsTime) {
    spawn_question = true;

    RunFrame(0.125F);

    const double moved = 5 * 0.125 * 45;  // one unit of its size a second
    EXPECT_EQ(Particles(),
              (Places{{271 - 8 - 45 + moved, 265 + 185 - 45, 271 - 8 + 45 + moved, 265 + 185 + 45}}));
    RunFrame(0.125F);
    ASSERT_EQ(Particles().size(), 1U);
    EXPECT_NEAR(Particles()[0].left, 271 - 8 - 45 + 2 * moved, 1e-3);
}

TEST_F(EffectsTest, TheSmokeVanishesWithTheOffer) {
    spawn_question = true;
    RunFrame(0.125F);
    spawn_question = false;

    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());

    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_EQ(Particles().size(), 1U);
}

TEST_F(EffectsTest, AnOfferStillSmokesInTheFrameInWhichItsTimeIsUp) {
    spawn_question = true;
    character.sqte = 20;

    RunFrame(0.125F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(Particles().size(), 1U);

    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());
}

TEST_F(EffectsTest, AreDrawnAfterTheMenuAndTheNotices) {
    spawn_question = true;

    RunFrame(0.125F);

    EXPECT_EQ(fakes::Bounds(fakes::gl().primitives.back()), Particles().back());
}

TEST_F(CharacterTest, AnOfferSoundsOnce) {
    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), (Sounds{"question.wav"}));

    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());

    spawn_question = false;
    RunFrame(0.125F);
    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), (Sounds{"question.wav"})) << "the next offer sounds again";
}

TEST_F(CharacterTest, AnOfferMadeWithSoundSwitchedOffStaysSilentAlsoWhenItIsSwitchedOn) {
    enable_sfx = false;
    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());

    enable_sfx = true;
    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());
}

TEST_F(CharacterTest, AnOffersSoundPlaysOnWhenItsTimeIsUp) {
    spawn_question = true;
    RunFrame(0.125F);
    character.sqte = 20;

    RunFrame(0.125F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(SoundsPlaying(), 1U);

    RunFrame(0.125F);
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(CharacterTest, AnOfferCutsOffALaughsSound) {
    spawn_laugh = true;
    RunFrame(0.125F);
    spawn_question = true;

    RunFrame(0.125F);

    EXPECT_EQ(SoundsStarted(), (Sounds{"question.wav"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
}

// ---- Long runs ----

TEST_F(CharacterTest, InAnHourOfRunningEverythingKeepsItsBounds) {
    character = CharacterState();
    int offers = 0;
    bool offered = false;
    bool seen[3] = {};
    for (int frame = 0; frame < 4 * 3600 && !HasFailure(); ++frame) {
        RunFrame(0.25F);

        ExpectWithin(character.next_sq, 900, 1800);
        ExpectWithin(character.next_ce, 1.5F, 6);
        ExpectWithin(character.next_st, 5, 15);
        ExpectWithin(character.next_std, 3, 8);
        ExpectWithin(character.next_swap, 10, 60);
        ASSERT_TRUE(anim >= 0 && anim <= 2);
        seen[anim] = true;
        EXPECT_LE(std::abs(Bob(character.close_eyes ? owl_ce[anim] : owl[anim])), 3.001);
        if (spawn_question && !offered) ++offers;
        offered = spawn_question;
    }

    EXPECT_TRUE(seen[0] && seen[1] && seen[2]);
    EXPECT_GE(offers, 1);  // every 30 minutes at the latest
    EXPECT_LE(offers, 3);  // every 15 minutes at the earliest
}

}  // namespace
