// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: pictures, pointer and eyes, breathing, first delays, all timers, quiz offer, blinking, stare, poses,
// pointer over the canvas, sleep, laughing, attention, hat and thought bubble, the end of an offer, its
// sounds, long runs.
#include "app/owl.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/owl_fixture.h"

namespace {

using OwlTest = OwlFixture;
using Sounds = std::vector<std::string>;

// ---- Pictures ----

TEST_F(OwlTest, OwlIsDrawnAroundItsOrigin) {
    RunFrame(0);

    const fakes::Primitive quad = fakes::gl().DrawnWith(owl[kStanding]).at(0);
    ASSERT_EQ(quad.vertices.size(), 4U);
    EXPECT_EQ(quad.vertices[0].object, (fakes::Vec3{-250, -250, 0}));
    EXPECT_EQ(quad.vertices[2].object, (fakes::Vec3{250, 250, 0}));
    EXPECT_NEAR(fakes::Bounds(quad).CentreX(), 271, 1e-3);
    EXPECT_NEAR(fakes::Bounds(quad).CentreY(), 265, 1e-3);
}

TEST_F(OwlTest, EveryPoseHasItsPicturesAndOnlyPoseAHasEyes) {
    RunFrame(0);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[kStanding]), Eye(eye_l), Eye(eye_r)}));

    anim = kPerching;
    RunFrame(0);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[kPerching])}));

    anim = kSleeping;
    RunFrame(0);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[kSleeping])}));
}

TEST_F(OwlTest, WithClosedEyesThePoseIsOneClosedPictureAndHasNoEyes) {
    for (const int pose : {kStanding, kPerching, kSleeping}) {
        anim = pose;
        character.close_eyes = true;

        RunFrame(0);

        EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[pose])})) << "pose " << pose;
    }
}

// ---- Pointer and eyes ----

TEST_F(OwlTest, ThePointerIsTakenFromTheScreenRelativeToTheWindow) {
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

TEST_F(OwlTest, BothEyesFollowAPointerAnywhereOnTheScreen) {
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

TEST_F(OwlTest, ThePointerIsAskedOnceAFrame) {
    RunFrame(0);
    RunFrame(0);

    EXPECT_EQ(fakes::desktop().pointer_calls, 2);
}

TEST_F(OwlTest, InAFrameThatNobodySeesThePointerCountsAsWhereItWas) {
    LookAtThePointer();
    PointAt(kLeftEyeX + 1.8, kLeftEyeY - 2.4);
    RunFrame(0);
    window.hidden = true;
    PointAt(kLeftEyeX - 3, kLeftEyeY);
    window.active = false;

    RunFrame(0);
    ExpectOffset(EyeOffset(eye_l), 1.8, -2.4);
    EXPECT_EQ(fakes::desktop().pointer_calls, 1);
    EXPECT_FALSE(window.active);

    window.hidden = false;
    RunFrame(0);
    ExpectOffset(EyeOffset(eye_l), -3, 0);
}

TEST_F(OwlTest, APointerThatMovesAnywhereOnTheScreenIsActivity) {
    const auto is_activity = [](int dx, int dy) {
        fakes::desktop().pointer.x += dx;
        fakes::desktop().pointer.y += dy;
        window.active = false;
        RunFrame(0);
        return window.active;
    };
    RunFrame(0);

    EXPECT_FALSE(is_activity(0, 0));
    EXPECT_TRUE(is_activity(1, 0));
    EXPECT_TRUE(is_activity(0, -1));
    EXPECT_TRUE(is_activity(-1, -1));
    EXPECT_FALSE(is_activity(0, 0));
}

TEST_F(OwlTest, AnOffsetOfLengthThreeIsUsedUnchanged) {
    LookAtThePointer();
    PointAt(kLeftEyeX + 1.8, kLeftEyeY - 2.4);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 1.8, -2.4);
}

TEST_F(OwlTest, AnOffsetOfExactlyFourIsUsedUnchanged) {
    LookAtThePointer();
    PointAt(static_cast<double>(kLeftEyeX) + 4, kLeftEyeY);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 4, 0);
}

TEST_F(OwlTest, AnOffsetJustAboveFourJumpsToFive) {
    LookAtThePointer();
    PointAt(kLeftEyeX + 4.001, kLeftEyeY);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 5, 0);
}

TEST_F(OwlTest, AnOffsetOfLengthFourAndAHalfBecomesFiveInTheSameDirection) {
    LookAtThePointer();
    PointAt(kLeftEyeX - 2.7, kLeftEyeY + 3.6);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), -3, 4);
}

TEST_F(OwlTest, TheRightEyeLooksFromAPlaceOfItsOwn) {
    LookAtThePointer();
    PointAt(kRightEyeX + 1, kRightEyeY + 2);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_r), 1, 2);
    EXPECT_NEAR(EyeOffset(eye_l).Length(), 5, 1e-3);
}

TEST_F(OwlTest, AnEyeUnderThePointerStaysAtRest) {
    LookAtThePointer();
    PointAt(kRightEyeX, kRightEyeY);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_r), 0, 0);
}

TEST_F(OwlTest, EyesLookFromTheBreathingHeadAndAreDrawnOnIt) {
    LookAtThePointer();
    character.bt = 0.5F;
    const double bob = 3 * std::sin(2 * 0.5);
    PointAt(kLeftEyeX + 1, kLeftEyeY + bob + 2);

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 1, 2 + bob);
}

TEST_F(OwlTest, LookingStraightAheadTheEyesStillMoveWithTheHead) {
    character.bt = 0.5F;

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 0, 3 * std::sin(2 * 0.5));
    ExpectOffset(EyeOffset(eye_r), 0, 3 * std::sin(2 * 0.5));
}

// ---- Breathing ----

TEST_F(OwlTest, BreathingRaisesTheHeadOverAFixedBase) {
    for (int frame = 1; frame <= 30; ++frame) {
        RunFrame(0.125F);

        const double bob = 3 * std::sin(2 * 0.125 * frame);
        EXPECT_EQ(Scene(),
                  InFrontOfTheTree({Body(owl[kStanding], bob), Eye(eye_l, 0, bob), Eye(eye_r, 0, bob)}))
            << "frame " << frame;
    }
}

TEST_F(OwlTest, BreathingGoesOnInEveryPose) {
    for (const int pose : {kPerching, kSleeping}) {
        anim = pose;
        character.bt = 1;

        RunFrame(0);

        EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[pose], 3 * std::sin(2.0))}));
    }
}

TEST_F(OwlTest, WithoutTimeNothingMoves) {
    character.bt = 0.7F;
    RunFrame(0);
    const std::vector<Sprite> before = Scene();

    RunFrame(0);

    EXPECT_EQ(Scene(), before);
}

TEST_F(OwlTest, TheAnimationClockStartsAgainWithoutAVisibleJump) {
    new_notify = true;
    character.bt = 628.25F;

    RunFrame(0.125F);

    EXPECT_NEAR(character.bt, 628.375 - 628.31853, 1e-4);
    const double bob = 3 * std::sin(2 * 628.375);
    EXPECT_NEAR(Bob(owl[kStanding]), bob, 0.01);
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

TEST_F(OwlTest, TheAnimationClockRunsFreelyUntilThen) {
    character.bt = 628;

    RunFrame(0.25F);

    EXPECT_EQ(character.bt, 628.25F);
}

// ---- First delays ----

TEST_F(OwlTest, TheFirstFrameDrawsTheDelaysInTheOrderOfTheirTimers) {
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

TEST_F(OwlTest, TheFirstDelaysReachFromTheirShortestToTheirLongest) {
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

TEST_F(OwlTest, TheFirstDelaysWrapRightAfterTheirLongest) {
    character = CharacterState();
    fakes::world().rand_values = {901, 46, 101, 51, 401};

    RunFrame(0);

    EXPECT_FLOAT_EQ(character.next_sq, 900);
    EXPECT_FLOAT_EQ(character.next_ce, 1.5F);
    EXPECT_FLOAT_EQ(character.next_st, 5);
    EXPECT_FLOAT_EQ(character.next_std, 3);
    EXPECT_FLOAT_EQ(character.next_swap, 20);
}

TEST_F(OwlTest, LaterFramesKeepTheFirstDelays) {
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

TEST_F(OwlTest, TimersThatRingInOneFrameDrawTheirNewDelaysInTheSameOrder) {
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

TEST_F(OwlTest, TheOwlsFourTimersRunWhateverItDoes) {
    struct Case {
        const char* state;
        int pose = kStanding;
        int stage = kDozing;
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
        {.state = "falling asleep, second stage", .pose = kSleeping, .stage = kNodding},
        {.state = "fast asleep", .pose = kSleeping, .stage = kAsleep},
        {.state = "waking", .pose = kSleeping, .stage = kWaking},
        {.state = "waking, its end", .pose = kSleeping, .stage = kWaking, .seconds = 1},
        {.state = "laugh, its start", .laugh_wanted = true},
        {.state = "laugh", .laugh = true},
        {.state = "laugh, its end", .seconds = 15.5F, .laugh = true},
        {.state = "notice", .notice = true},
        {.state = "notice during a laugh", .laugh = true, .notice = true},
        {.state = "notice during sleep", .pose = kSleeping, .stage = kAsleep, .notice = true},
        {.state = "offer", .offer = true},
        {.state = "pointer over the canvas", .pointer_over = true},
        {.state = "pointer over the canvas, perching", .pose = kPerching, .pointer_over = true},
        {.state = "pointer over the canvas, asleep",
         .pose = kSleeping,
         .stage = kAsleep,
         .pointer_over = true},
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

TEST_F(OwlTest, AQuizOfferComesAfterItsDelayAndNotAtIt) {
    character.next_sq = 900;
    character.sqt = 899.5F;

    RunFrame(0.5F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(character.sqt, 900);

    RunFrame(0.125F);
    EXPECT_TRUE(spawn_question);
}

TEST_F(OwlTest, AtAnyFrameRateAQuizOfferComesWithinASecondOfItsDelay) {
    for (const int rate : {8, 30, 60, 75, 144, 165, 240, 360, 1000}) {
        const float frame = 1 / static_cast<float>(rate);
        spawn_question = false;
        character.next_sq = 900;
        character.sqt = 0;
        character.sqt_lost = 0;
        double exact = 0;
        std::int64_t wrong = 0;
        while (!spawn_question && exact < 902) {
            exact += static_cast<double>(frame);
            global_time = frame;
            AdvanceOwl();
            fakes::ClearLog();
            if (!spawn_question && character.sqt != static_cast<float>(exact)) ++wrong;
        }
        EXPECT_NEAR(exact, 900, 1) << rate << " frames a second";
        EXPECT_EQ(wrong, 0) << "frames at " << rate << " a second do not show the nearest float";
    }
}

TEST_F(OwlTest, AQuizOfferStartsItsTimerAnewWithANewDelayAndNothingLost) {
    character.next_sq = 900;
    character.sqt = 900;
    character.sqt_lost = 2e-5;

    RunFrame(0.5F);

    ASSERT_TRUE(spawn_question);
    EXPECT_EQ(character.sqt_lost, 0);
}

TEST_F(OwlTest, AQuizOfferStartsItsTimerAnewWithANewDelay) {
    character.next_sq = 900;
    character.sqt = 900;
    fakes::world().rand_values = {17};

    RunFrame(0.5F);

    EXPECT_TRUE(spawn_question);
    EXPECT_EQ(character.sqt, 0);
    EXPECT_FLOAT_EQ(character.next_sq, 917);
}

TEST_F(OwlTest, TheNextQuizOfferComesAfter15To30Minutes) {
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

TEST_F(OwlTest, AQuizOfferShowsInTheFrameInWhichItComes) {
    character.sqt = 901;
    character.next_sq = 900;

    RunFrame(0);

    EXPECT_TRUE(IsDrawn(hat));
    EXPECT_TRUE(IsDrawn(cloud));
}

TEST_F(OwlTest, WhileAQuizOfferShowsTheTimeToTheNextStandsAtZero) {
    spawn_question = true;
    character.sqt = 500;
    RunFrame(0.25F);
    EXPECT_EQ(character.sqt, 0);

    RunFrame(0.25F);

    EXPECT_EQ(character.sqt, 0);
}

TEST_F(OwlTest, AsleepNoQuizOfferComesButItsTimerGoesOn) {
    FallAsleep();
    character.next_sq = 900;
    character.sqt = 1000;

    RunFrame(0.25F);

    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(character.sqt, 1000.25F);
    EXPECT_EQ(character.next_sq, 900);
}

TEST_F(OwlTest, AQuizOfferDueDuringSleepComesOnTheFirstFrameAfterWaking) {
    FallAsleep();
    character.next_sq = 900;
    character.sqt = 1000;
    character.sleep_state = kWaking;
    character.te = 0.875F;
    RunFrame(0.25F);
    ASSERT_EQ(anim, kStanding);
    EXPECT_FALSE(spawn_question);

    RunFrame(0.25F);

    EXPECT_TRUE(spawn_question);
}

// ---- Blinking ----

TEST_F(OwlTest, ABlinkComesAfterItsDelayAndNotAtIt) {
    character.next_ce = 2;
    character.cet = 1.9375F;

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl[kStanding]));
    EXPECT_EQ(character.cet, 2);

    RunFrame(0.0625F);
    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[kStanding], 3 * std::sin(2 * 0.125))}));
}

TEST_F(OwlTest, ABlinkStartsItsTimerAnewWithANewDelay) {
    for (const auto& [random, delay] : {std::pair{0, 1.5F}, std::pair{7, 2.2F}, std::pair{45, 6.0F}}) {
        character.next_ce = 2;
        character.cet = 2.5F;
        fakes::world().rand_values = {random};

        RunFrame(0);

        EXPECT_FLOAT_EQ(character.next_ce, delay);
        EXPECT_EQ(character.cet, 0);
    }
}

TEST_F(OwlTest, ABlinkLastsATenthOfASecondAndStillLastsAtIt) {
    character.close_eyes = true;

    RunFrame(0.1F);
    EXPECT_TRUE(IsDrawn(owl_ce[kStanding]));
    EXPECT_FALSE(IsDrawn(owl[kStanding]));

    RunFrame(0.001F);
    EXPECT_FALSE(IsDrawn(owl_ce[kStanding]));
    EXPECT_TRUE(IsDrawn(owl[kStanding]));
    EXPECT_EQ(character.cst, 0);
}

TEST_F(OwlTest, ABlinkCountsFromTheFrameInWhichItStarts) {
    character.next_ce = 2;
    character.cet = 2;
    RunFrame(0.0625F);
    EXPECT_EQ(character.cst, 0.0625F);
    EXPECT_TRUE(IsDrawn(owl_ce[kStanding]));

    RunFrame(0.0625F);

    EXPECT_TRUE(IsDrawn(owl[kStanding]));
}

TEST_F(OwlTest, ABlinkShorterThanItsFrameIsNotSeen) {
    character.next_ce = 2;
    character.cet = 2;

    RunFrame(0.125F);

    EXPECT_TRUE(IsDrawn(owl[kStanding]));
    EXPECT_FALSE(character.close_eyes);
    EXPECT_EQ(character.cet, 0);
}

TEST_F(OwlTest, PoseBBlinksWithItsOwnPicture) {
    anim = kPerching;
    character.next_ce = 2;
    character.cet = 2;

    RunFrame(0.0625F);

    EXPECT_TRUE(IsDrawn(owl_ce[kPerching]));
    EXPECT_FALSE(IsDrawn(owl[kPerching]));
}

TEST_F(OwlTest, OpenEyesDoNotCountABlink) {
    RunFrame(0.25F);

    EXPECT_EQ(character.cst, 0);
    EXPECT_EQ(character.cet, 0.25F);
}

// ---- Looking straight ahead ----

TEST_F(OwlTest, TheOwlLooksStraightAheadAfterTheDelayAndNotAtIt) {
    character.next_st = 5;
    character.ste = 4.75F;

    RunFrame(0.25F);
    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);

    RunFrame(0.25F);
    EXPECT_NEAR(EyeOffset(eye_l).x, 0, 1e-3);
    EXPECT_NEAR(EyeOffset(eye_r).x, 0, 1e-3);
}

TEST_F(OwlTest, TheLookLastsItsLengthAndStillLastsAtIt) {
    character.next_st = 5;
    character.next_std = 3;
    character.ste = 7.75F;

    RunFrame(0.25F);

    EXPECT_EQ(character.ste, 8);
    EXPECT_NEAR(EyeOffset(eye_l).x, 0, 1e-3);
}

TEST_F(OwlTest, TheLooksLastFrameStartsTheCycleAnewWithNewDelays) {
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

TEST_F(OwlTest, TheCyclesNewDelaysAre5To15And3To8Seconds) {
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

TEST_F(OwlTest, EveryFrameStartsWithEyesThatFollow) {
    RunFrame(0);
    ExpectOffset(EyeOffset(eye_l), 0, 0);
    LookAtThePointer();

    RunFrame(0);

    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);
}

// ---- Poses ----

TEST_F(OwlTest, ThePoseChangesAfterItsTimeAndNotAtIt) {
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
    EXPECT_TRUE(IsDrawn(owl[kPerching]));
}

TEST_F(OwlTest, TheNewPoseIsDrawnUntilItDiffers) {
    character.next_swap = 20;
    character.swap_te = 20;
    fakes::world().rand_values = {0, 3, 6, 5, 0};

    RunFrame(0.25F);

    EXPECT_EQ(anim, kSleeping);  // 5 % 3
    EXPECT_EQ(NumbersTaken(), 5);
}

TEST_F(OwlTest, FromPoseBTheNewPoseIsAnotherToo) {
    anim = kPerching;
    character.next_swap = 20;
    character.swap_te = 20;
    fakes::world().rand_values = {1, 4, 7, 3, 0};

    RunFrame(0.25F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(NumbersTaken(), 5);
}

TEST_F(OwlTest, TheTimeInTheNewPoseGoesByThePose) {
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
        character.sleep_state = kDozing;
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

TEST_F(OwlTest, ThePoseTimerWakesASleepingOwlInsteadOfDrawingAPose) {
    FallAsleep();
    character.next_swap = 30;
    character.swap_te = 30;
    fakes::world().rand_values = {25};

    RunFrame(0.25F);

    EXPECT_EQ(anim, kSleeping);
    EXPECT_EQ(character.sleep_state, kWaking);
    EXPECT_EQ(character.swap_te, 0);
    EXPECT_FLOAT_EQ(character.next_swap, 22.5F);  // 20 to 60 seconds
}

TEST_F(OwlTest, ThePoseTimerOfASleepingOwlReachesTo60Seconds) {
    FallAsleep();
    character.next_swap = 30;
    character.swap_te = 31;
    fakes::world().rand_values = {400};

    RunFrame(0);

    EXPECT_FLOAT_EQ(character.next_swap, 60);
}

// ---- The pointer over the canvas ----

TEST_F(OwlTest, ThePointerOverTheCanvasBringsPoseBBackToPoseA) {
    anim = kPerching;
    PutThePointerOverTheCanvas();

    RunFrame(0);

    EXPECT_EQ(anim, kStanding);
    EXPECT_TRUE(IsDrawn(owl[kStanding]));
}

TEST_F(OwlTest, ThePointerOverTheCanvasEndsTheLookStraightAhead) {
    PutThePointerOverTheCanvas();

    RunFrame(0);

    EXPECT_NEAR(EyeOffset(eye_l).Length(), 5, 1e-3);
    EXPECT_NEAR(EyeOffset(eye_r).Length(), 5, 1e-3);
}

TEST_F(OwlTest, ThePointerOverTheCanvasUndoesAChangeOfPoseInItsFrame) {
    PutThePointerOverTheCanvas();
    character.next_swap = 20;
    character.swap_te = 21;
    fakes::world().rand_values = {1, 0};

    RunFrame(0);

    EXPECT_EQ(anim, kStanding);
    EXPECT_FLOAT_EQ(character.next_swap, 10);
}

TEST_F(OwlTest, TheEdgesOfTheCanvasAreOutside) {
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

TEST_F(OwlTest, ThePointerOverTheCanvasGoesByTheWindowsPlaceAndSize) {
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

TEST_F(OwlTest, ThePointerOverTheCanvasWakesASleepingOwl) {
    FallAsleep();
    PutThePointerOverTheCanvas();

    RunFrame(0.25F);

    EXPECT_EQ(anim, kSleeping);
    EXPECT_EQ(character.sleep_state, kWaking);
}

TEST_F(OwlTest, WithThePointerOverTheCanvasAnySleepEndsWithinASecond) {
    for (const int stage : {kDozing, kNodding, kAsleep, kWaking}) {
        anim = kSleeping;
        character.sleep_state = stage;
        character.te = 0;
        PutThePointerOverTheCanvas();

        for (int frame = 0; frame < 9; ++frame) RunFrame(0.125F);  // just over a second

        EXPECT_EQ(anim, kStanding) << "stage " << stage;
        EXPECT_EQ(character.sleep_state, kDozing) << "stage " << stage;
    }
}

TEST_F(OwlTest, WithThePointerOverTheCanvasTheOwlNeverFallsFastAsleep) {
    PutThePointerOverTheCanvas();
    fakes::world().rand_default = kSleeping;  // every pose drawn is the sleep
    character.next_swap = 20;
    float asleep = 0;
    for (int frame = 0; frame < 2400; ++frame) {
        RunFrame(0.125F);

        EXPECT_NE(anim, kPerching);
        EXPECT_NE(character.sleep_state, kAsleep);
        asleep = anim == kSleeping ? asleep + 0.125F : 0;
        EXPECT_LE(asleep, 1.125F);
    }
}

// ---- Sleep ----

TEST_F(OwlTest, FallingAsleepTakesTwoStagesOfOneSecondAndThenHolds) {
    anim = kSleeping;
    std::vector<int> stage_at_the_end_of_each_second;
    for (int second = 0; second < 6; ++second) {
        for (int frame = 0; frame < 8; ++frame) RunFrame(0.125F);
        stage_at_the_end_of_each_second.push_back(character.sleep_state);
    }

    // A stage lasts nine frames here: at one second exactly it still lasts.
    EXPECT_EQ(stage_at_the_end_of_each_second,
              (std::vector<int>{kDozing, kNodding, kAsleep, kAsleep, kAsleep, kAsleep}));
    EXPECT_EQ(anim, kSleeping);
}

TEST_F(OwlTest, AStageLastsOneSecondAndStillLastsAtIt) {
    anim = kSleeping;
    character.te = 0.75F;

    RunFrame(0.25F);
    EXPECT_EQ(character.sleep_state, kDozing);
    EXPECT_EQ(character.te, 1);

    RunFrame(0.125F);
    EXPECT_EQ(character.sleep_state, kNodding);
    EXPECT_EQ(character.te, 0);
}

TEST_F(OwlTest, FallingAsleepTheEyesAreOpenAndBlink) {
    for (const int stage : {kDozing, kNodding}) {
        anim = kSleeping;
        character.sleep_state = stage;
        character.te = 0;
        RunFrame(0);
        EXPECT_TRUE(IsDrawn(owl[kSleeping])) << "stage " << stage;
        EXPECT_FALSE(IsDrawn(owl_ce[kSleeping])) << "stage " << stage;

        character.next_ce = 2;
        character.cet = 2;
        RunFrame(0.0625F);
        EXPECT_TRUE(IsDrawn(owl_ce[kSleeping])) << "stage " << stage;
        RunFrame(0.0625F);
        EXPECT_TRUE(IsDrawn(owl[kSleeping])) << "stage " << stage;
    }
}

TEST_F(OwlTest, AsleepTheEyesAreShutInEveryFrame) {
    FallAsleep();
    for (int frame = 0; frame < 20; ++frame) {
        RunFrame(0.125F);

        EXPECT_TRUE(IsDrawn(owl_ce[kSleeping]));
        EXPECT_FALSE(IsDrawn(owl[kSleeping]));
    }
}

TEST_F(OwlTest, TheFrameThatReachesSleepStillShowsOpenEyes) {
    anim = kSleeping;
    character.sleep_state = kNodding;
    character.te = 1;

    RunFrame(0.125F);
    EXPECT_EQ(character.sleep_state, kAsleep);
    EXPECT_TRUE(IsDrawn(owl[kSleeping]));

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl_ce[kSleeping]));
}

TEST_F(OwlTest, AsleepTheStagesClockStandsStill) {
    FallAsleep();
    character.te = 0.5F;

    RunFrame(0.25F);

    EXPECT_EQ(character.te, 0.5F);
}

TEST_F(OwlTest, WakingEndsInPoseAWithinASecond) {
    anim = kSleeping;
    character.sleep_state = kWaking;
    for (int frame = 0; frame < 8; ++frame) {
        RunFrame(0.125F);
        EXPECT_EQ(anim, kSleeping);
        EXPECT_EQ(character.sleep_state, kWaking);
        EXPECT_TRUE(IsDrawn(owl[kSleeping]));
    }

    RunFrame(0.125F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.sleep_state, kDozing);
    EXPECT_EQ(character.te, 0);
    EXPECT_TRUE(IsDrawn(owl[kStanding]));
}

TEST_F(OwlTest, WakingDoesNotBeginTheStagesSecondAgain) {
    anim = kSleeping;
    character.sleep_state = kDozing;
    character.te = 0.875F;
    PutThePointerOverTheCanvas();

    RunFrame(0.25F);

    EXPECT_EQ(anim, kStanding);
}

TEST_F(OwlTest, WakingOpensTheEyesAfterTheLengthOfABlink) {
    FallAsleep();
    RunFrame(0);
    character.sleep_state = kWaking;

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl_ce[kSleeping]));

    RunFrame(0.0625F);
    EXPECT_TRUE(IsDrawn(owl[kSleeping]));
}

// Only the end of waking goes back to the first stage; a sleep that ended otherwise is gone on with.
TEST_F(OwlTest, AnewAsleepByLotTheOwlGoesOnWithTheStageAndTheSecondItHad) {
    for (const int stage : {kDozing, kNodding, kAsleep}) {
        anim = kStanding;
        character.sleep_state = stage;
        character.te = 0.5F;
        character.next_swap = 20;
        character.swap_te = 21;
        fakes::world().rand_values = {kSleeping, 0};

        RunFrame(0.25F);

        EXPECT_EQ(anim, kSleeping);
        EXPECT_EQ(character.sleep_state, stage);
        EXPECT_EQ(character.te, stage == kAsleep ? 0.5F : 0.75F);
    }
}

TEST_F(OwlTest, ThePoseTimerThatWakesTheOwlDoesNotBeginTheStagesSecondAgain) {
    FallAsleep();
    character.te = 0.5F;
    character.next_swap = 30;
    character.swap_te = 31;

    RunFrame(0.25F);

    EXPECT_EQ(character.sleep_state, kWaking);
    EXPECT_EQ(character.te, 0.75F);
}

TEST_F(OwlTest, AwakeThePointerOverTheCanvasKeepsTheStageOfTheLastSleep) {
    for (const int pose : {kStanding, kPerching}) {
        anim = pose;
        character.sleep_state = kAsleep;
        character.te = 0.5F;
        PutThePointerOverTheCanvas();

        RunFrame(0.25F);

        EXPECT_EQ(character.sleep_state, kAsleep);
        EXPECT_EQ(character.te, 0.5F);
    }
}

TEST_F(OwlTest, AwakeTheStagesClockStandsStill) {
    character.te = 0.5F;

    RunFrame(0.25F);

    EXPECT_EQ(character.te, 0.5F);
    EXPECT_EQ(character.sleep_state, kDozing);
}

// ---- Laughing ----

TEST_F(OwlTest, ARequestStartsALaughAndIsTaken) {
    spawn_laugh = true;
    character.lte = 3;
    character.bt = 2;

    RunFrame(0.125F);

    EXPECT_FALSE(spawn_laugh);
    EXPECT_TRUE(character.laugh);
    EXPECT_EQ(character.lte, 0.125F);
    EXPECT_EQ(character.bt, 0);
}

TEST_F(OwlTest, TheFirstFrameOfALaughBreathesAsBefore) {
    spawn_laugh = true;
    character.bt = 2;

    RunFrame(0.125F);

    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[kStanding], 3 * std::sin(2 * 2.125))}));
}

TEST_F(OwlTest, ALaughComesAlsoWithSoundSwitchedOff) {
    enable_sfx = false;
    spawn_laugh = true;

    RunFrame(0.125F);

    EXPECT_TRUE(character.laugh);
    EXPECT_TRUE(IsDrawn(owl_ce[kStanding]));
}

TEST_F(OwlTest, ALaughSoundsOnce) {
    spawn_laugh = true;

    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), (Sounds{"laugh.wav"}));

    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(OwlTest, ALaughIsSilentWithSoundSwitchedOff) {
    enable_sfx = false;
    spawn_laugh = true;

    RunFrame(0.125F);

    EXPECT_EQ(SoundsStarted(), Sounds());
}

TEST_F(OwlTest, LaughingShakesTheOwlSlowerAndSlower) {
    for (const auto& [bt, lte] : {std::pair{0.125F, 0.25F}, std::pair{0.5F, 0.625F}, std::pair{1.0F, 1.125F},
                                  std::pair{7.25F, 7.375F}, std::pair{15.0F, 15.125F}}) {
        character.laugh = true;
        character.bt = bt;
        character.lte = lte;

        RunFrame(0.125F);

        const double clock = bt + 0.125;
        const double lasted = lte + 0.125;
        const double bob = 3 * std::sin(2 * clock) + 10 * std::sin(30 * clock / (1 + 0.025 * lasted));
        EXPECT_NEAR(Bob(owl_ce[kStanding]), bob, 2e-3) << "after " << lasted << " seconds";
    }
}

TEST_F(OwlTest, LaughingShowsTheClosedPictureOfPoseAAndNoEyes) {
    character.laugh = true;

    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[kStanding])}));
}

TEST_F(OwlTest, LaughingBringsPoseBAndSleepToPoseA) {
    for (const int pose : {kPerching, kSleeping}) {
        anim = pose;
        character.laugh = true;

        RunFrame(0.125F);

        EXPECT_EQ(anim, kStanding);
        EXPECT_TRUE(IsDrawn(owl_ce[kStanding]));
    }
}

TEST_F(OwlTest, ALaughKeepsTheStageOfTheSleepThatItEnds) {
    for (const int pose : {kStanding, kSleeping}) {
        anim = pose;
        character.sleep_state = kAsleep;
        character.te = 0.5F;
        spawn_laugh = true;

        RunFrame(0.25F);

        EXPECT_EQ(anim, kStanding);
        EXPECT_EQ(character.sleep_state, kAsleep);
        EXPECT_EQ(character.te, 0.5F);
    }
}

TEST_F(OwlTest, WakingComesToItsEndInTheFrameInWhichALaughStarts) {
    anim = kSleeping;
    character.sleep_state = kWaking;
    character.te = 0.875F;
    spawn_laugh = true;

    RunFrame(0.25F);

    EXPECT_EQ(character.sleep_state, kDozing);
    EXPECT_EQ(character.te, 0);
}

TEST_F(OwlTest, ThePointerOverTheCanvasWakesTheOwlBeforeALaughDoes) {
    FallAsleep();
    PutThePointerOverTheCanvas();
    spawn_laugh = true;

    RunFrame(0.25F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.sleep_state, kWaking);
    EXPECT_EQ(character.te, 0.25F);
}

TEST_F(OwlTest, LaughingTheEyesStayShutForTheWholeLaugh) {
    spawn_laugh = true;
    for (int frame = 0; frame < 8 * 15; ++frame) {
        RunFrame(0.125F);

        EXPECT_TRUE(IsDrawn(owl_ce[kStanding]));
    }
}

TEST_F(OwlTest, ALaughLastsFifteenAndAHalfSecondsAndStillLastsAtThem) {
    character.laugh = true;
    character.lte = 15.25F;

    RunFrame(0.25F);
    EXPECT_TRUE(character.laugh);
    EXPECT_EQ(character.lte, 15.5F);

    RunFrame(0.0625F);
    EXPECT_FALSE(character.laugh);
    EXPECT_EQ(character.lte, 0);
    EXPECT_TRUE(IsDrawn(owl_ce[kStanding])) << "the last frame still laughs";
}

TEST_F(OwlTest, ALaughsSoundPlaysOnWhereverTheLaughEnds) {
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

TEST_F(OwlTest, AfterALaughTheEyesOpenAndFollowAgain) {
    LookAtThePointer();
    character.laugh = true;
    character.lte = 15.5F;
    RunFrame(0.0625F);
    RunFrame(0.0625F);

    RunFrame(0.0625F);

    EXPECT_TRUE(IsDrawn(owl[kStanding]));
    EXPECT_NEAR(EyeOffset(eye_l).x, -5, 0.01);
}

TEST_F(OwlTest, ANewRequestStartsARunningLaughAnew) {
    character.laugh = true;
    character.lte = 10;
    character.bt = 10;
    spawn_laugh = true;

    RunFrame(0.125F);

    EXPECT_EQ(character.lte, 0.125F);
    EXPECT_EQ(character.bt, 0);
}

TEST_F(OwlTest, WithoutALaughItsClockStandsStill) {
    RunFrame(0.25F);

    EXPECT_EQ(character.lte, 0);
}

// ---- Attention ----

TEST_F(OwlTest, ANoticeOrAnOfferBringsTheOwlToPoseALookingStraightAhead) {
    for (const bool offer : {false, true}) {
        for (const int pose : {kStanding, kPerching, kSleeping}) {
            LookAtThePointer();
            anim = pose;
            spawn_question = offer;
            new_notify = !offer;

            RunFrame(0);

            EXPECT_EQ(anim, kStanding);
            EXPECT_TRUE(IsDrawn(owl[kStanding]));
            ExpectOffset(EyeOffset(eye_l), 0, 0);
            ExpectOffset(EyeOffset(eye_r), 0, 0);
        }
    }
}

TEST_F(OwlTest, AttentionLooksStraightAheadAlsoWithThePointerOverTheCanvas) {
    LookAtThePointer();
    PutThePointerOverTheCanvas();
    new_notify = true;

    RunFrame(0);

    ExpectOffset(EyeOffset(eye_l), 0, 0);
}

TEST_F(OwlTest, AttentionEndsALaughWhoseLastFrameIsStillDrawn) {
    for (const bool offer : {false, true}) {
        character.laugh = true;
        character.lte = 4.875F;
        character.bt = 4.875F;
        spawn_question = offer;
        new_notify = !offer;

        RunFrame(0.125F);

        EXPECT_FALSE(character.laugh);
        EXPECT_EQ(character.lte, 0);
        EXPECT_NEAR(Bob(owl_ce[kStanding]), 3 * std::sin(10.0) + 10 * std::sin(150 / 1.125), 2e-3);
    }
}

TEST_F(OwlTest, AttentionKeepsTheStageOfTheSleepThatItEnds) {
    FallAsleep();
    new_notify = true;

    RunFrame(0.125F);

    EXPECT_EQ(anim, kStanding);
    EXPECT_EQ(character.sleep_state, kAsleep);
}

TEST_F(OwlTest, AttentionShowsASleepersEyesShutInItsFirstFrame) {
    FallAsleep();
    new_notify = true;

    RunFrame(0.125F);

    EXPECT_TRUE(IsDrawn(owl_ce[kStanding]));
}

TEST_F(OwlTest, AttentionLetsTheStagesClockRunInItsFirstFrame) {
    anim = kSleeping;
    character.te = 0.5F;
    new_notify = true;

    RunFrame(0.25F);

    EXPECT_EQ(character.te, 0.75F);
    EXPECT_EQ(anim, kStanding);
}

// ---- Hat and thought bubble ----

TEST_F(OwlTest, AnOfferPutsOnTheHatAndShowsTheBubble) {
    spawn_question = true;

    RunFrame(0);

    EXPECT_EQ(Scene(),
              InFrontOfTheTree(Joined(
                  {Body(owl[kStanding]), Eye(eye_l), Eye(eye_r), {hat, {21, 20, 521, 510}}}, Bubble(0))));
}

TEST_F(OwlTest, ANoticeShowsTheBubbleWithoutAHat) {
    new_notify = true;

    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree(Joined({Body(owl[kStanding]), Eye(eye_l), Eye(eye_r)}, Bubble(0))));
}

TEST_F(OwlTest, WithoutNoticeAndOfferThereIsNeitherHatNorBubble) {
    RunFrame(0);

    EXPECT_FALSE(IsDrawn(hat));
    EXPECT_FALSE(IsDrawn(cloud));
    EXPECT_FALSE(IsDrawn(circle));
}

TEST_F(OwlTest, TheHatRisesWithTheHeadAlsoOverClosedEyes) {
    spawn_question = true;
    character.close_eyes = true;
    character.bt = 0.5F;
    const double bob = 3 * std::sin(1.0);

    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree(Joined(
                           {Body(owl_ce[kStanding], bob), {hat, {21, 20, 521, 510 + bob}}}, Bubble(0.5))));
}

TEST_F(OwlTest, TheBubbleSwellsAndItsDotsSwingByTheAnimationClock) {
    for (const float bt : {0.0F, 0.2F, 0.5F, 1.0F, 2.75F, 10.0F, 100.0F}) {
        new_notify = true;
        character.bt = bt;

        RunFrame(0);

        const std::vector<Sprite> scene = Scene();
        ASSERT_GE(scene.size(), 4U);
        EXPECT_EQ(std::vector<Sprite>(scene.end() - 4, scene.end()), Bubble(bt)) << "at " << bt;
    }
}

TEST_F(OwlTest, TheBubbleGoesByTheClockThatALaughHasJustStartedAnew) {
    new_notify = true;
    spawn_laugh = true;
    character.bt = 2;

    RunFrame(0.125F);

    const std::vector<Sprite> scene = Scene();
    ASSERT_GE(scene.size(), 4U);
    EXPECT_EQ(std::vector<Sprite>(scene.end() - 4, scene.end()), Bubble(0));
}

// ---- The end of the frame ----

TEST_F(OwlTest, AnOfferEndsAfterTwentySecondsAndNotAtThem) {
    spawn_question = true;
    character.sqte = 19.75F;

    RunFrame(0.25F);
    EXPECT_TRUE(spawn_question);
    EXPECT_EQ(character.sqte, 20);

    RunFrame(0.125F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(character.sqte, 0);
}

TEST_F(OwlTest, TheFrameInWhichAnOfferEndsStillShowsItAndTheNextDoesNot) {
    spawn_question = true;
    character.sqte = 20;
    RunFrame(0.125F);
    EXPECT_TRUE(IsDrawn(hat));

    RunFrame(0.125F);

    EXPECT_FALSE(IsDrawn(hat));
    EXPECT_FALSE(IsDrawn(cloud));
}

TEST_F(OwlTest, AnOfferShowsForTwentySecondsFromItsFirstFrame) {
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

TEST_F(OwlTest, AnOfferTakenEarlierLeavesNoTimeForTheNext) {
    character.sqte = 15;

    RunFrame(0.25F);

    EXPECT_EQ(character.sqte, 0);
}

// ---- The sounds of an offer ----

TEST_F(OwlTest, AnOfferSoundsOnce) {
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

TEST_F(OwlTest, AnOfferMadeWithSoundSwitchedOffStaysSilentAlsoWhenItIsSwitchedOn) {
    enable_sfx = false;
    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());

    enable_sfx = true;
    RunFrame(0.125F);
    EXPECT_EQ(SoundsStarted(), Sounds());
}

TEST_F(OwlTest, AnOffersSoundPlaysOnWhenItsTimeIsUp) {
    spawn_question = true;
    RunFrame(0.125F);
    character.sqte = 20;

    RunFrame(0.125F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(SoundsPlaying(), 1U);

    RunFrame(0.125F);
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(OwlTest, AnOfferCutsOffALaughsSound) {
    spawn_laugh = true;
    RunFrame(0.125F);
    spawn_question = true;

    RunFrame(0.125F);

    EXPECT_EQ(SoundsStarted(), (Sounds{"question.wav"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
}

// ---- Long runs ----

TEST_F(OwlTest, InAnHourOfRunningEverythingKeepsItsBounds) {
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
        ASSERT_TRUE(anim >= kStanding && anim <= kSleeping);
        seen[anim] = true;
        EXPECT_LE(std::abs(Bob(character.close_eyes ? owl_ce[anim] : owl[anim])), 3.001);
        if (spawn_question && !offered) ++offers;
        offered = spawn_question;
    }

    EXPECT_TRUE(seen[kStanding] && seen[kPerching] && seen[kSleeping]);
    EXPECT_GE(offers, 1);  // every 30 minutes at the latest
    EXPECT_LE(offers, 3);  // every 15 minutes at the earliest
}

}  // namespace
