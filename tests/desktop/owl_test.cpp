// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl: where it looks, how it breathes and blinks, how it sleeps and wakes.
//
// The program's clock is in the test's hand: the owl holds still unless time is let pass.
#include <cmath>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "tests/desktop/fixture.h"
#include "tests/desktop/scene.h"

namespace desktop {
namespace {

/// How far the pupils turn to a pointer that is not near, canvas units.
constexpr double kTurn = 5;

/// How well a pupil's middle can be measured, canvas units: its highlight and the filtering blur it a little.
constexpr double kMeasured = 0.6;

/// Breathing goes up and down once in this time: pi seconds.
constexpr double kBreathSeconds = 3.14159265;

class TheOwl : public OnDesktop {
  protected:
    /// Starts the program with the clock in hand and the window where the pointer has room on all sides.
    Program& RunOwl(int edge) {
        Start start;
        start.clock = Clock::kInHand;
        start.longest_step = 240'000'000;
        Program& program = Run(start);
        program.Resize({(Desktop::kWidth - edge) / 2, (Desktop::kHeight - edge) / 2, edge, edge});
        return program;
    }

    /// Lets time pass in small steps until the window shows what is wanted. Returns whether it did within
    /// `seconds`.
    static bool LetTimePassUntil(Program& program, double seconds, double step,
                                 const std::function<bool(const Image&)>& wanted) {
        for (double passed = 0; passed < seconds; passed += step) {
            if (wanted(program.Look())) return true;
            program.LetTimePass(step);
        }
        return wanted(program.Look());
    }
};

/// The owl's eyes in 900 x 900 pixels are measured to a fraction of a unit.
constexpr int kLarge = 900;
constexpr int kSmall = 300;

// ---- Eyes ----

/// A pointer outside the window, and the way that the pupils must go.
struct Side {
    std::string name;
    ScreenPoint pointer;
};

std::ostream& operator<<(std::ostream& out, const Side& side) {
    return out << side.name;
}

class TheOwlsPupils : public TheOwl, public testing::WithParamInterface<Side> {};

/// Returns where a pupil must be, from its rest, for a pointer on a point of the screen.
CanvasPoint TurnedTo(ScreenPoint pointer, CanvasPoint rest, const ScreenRect& place) {
    // The pointer counts 4 units further right than it is, and each eye looks from 4 units right of its
    // pupil.
    const double dx = (pointer.x - place.x) * kCanvas / place.width - rest.x;
    const double dy = kCanvas - (pointer.y - place.y) * kCanvas / place.height - rest.y;
    const double length = std::hypot(dx, dy);
    return {kTurn * dx / length, kTurn * dy / length};
}

TEST_P(TheOwlsPupils, TurnToThePointerOutsideTheWindow) {
    Program& program = RunOwl(kLarge);

    desk.MovePointer(GetParam().pointer);
    program.WaitForFrames(3);
    const std::optional<Gaze> gaze = GazeIn(program.Look());

    ASSERT_TRUE(gaze) << "no pupils";
    const CanvasPoint left = TurnedTo(GetParam().pointer, kLeftPupil, program.Place());
    const CanvasPoint right = TurnedTo(GetParam().pointer, kRightPupil, program.Place());
    EXPECT_NEAR(gaze->left.x, left.x, kMeasured);
    EXPECT_NEAR(gaze->left.y, left.y, kMeasured);
    EXPECT_NEAR(gaze->right.x, right.x, kMeasured);
    EXPECT_NEAR(gaze->right.y, right.y, kMeasured);
}

INSTANTIATE_TEST_SUITE_P(AllSides, TheOwlsPupils,
                         testing::Values(Side{"Left", {2, 300}}, Side{"Right", {1277, 300}},
                                         Side{"Above", {640, 2}}, Side{"Below", {640, 1021}},
                                         Side{"LowerRight", {1277, 1021}}),
                         [](const auto& test) { return test.param.name; });

TEST_F(TheOwl, LooksFarLeftAndFarRightFromASmallWindowToo) {
    Program& program = RunOwl(kSmall);

    desk.MovePointer({0, 400});
    program.WaitForFrames(3);
    const std::optional<Gaze> to_left = GazeIn(program.Look());
    desk.MovePointer({Desktop::kWidth - 1, 400});
    program.WaitForFrames(3);
    const std::optional<Gaze> to_right = GazeIn(program.Look());

    ASSERT_TRUE(to_left && to_right) << "no pupils";
    EXPECT_NEAR(to_right->left.x - to_left->left.x, 2 * kTurn, 1.5);
    EXPECT_NEAR(to_right->right.x - to_left->right.x, 2 * kTurn, 1.5);
}

TEST_F(TheOwl, SquintsAtAPointerBetweenItsEyes) {
    Program& program = RunOwl(kLarge);

    program.MovePointer({(kLeftPupil.x + kRightPupil.x) / 2, (kLeftPupil.y + kRightPupil.y) / 2});
    const std::optional<Gaze> gaze = GazeIn(program.Look());

    ASSERT_TRUE(gaze) << "no pupils";
    EXPECT_NEAR(gaze->left.x, kTurn, kMeasured);
    EXPECT_NEAR(gaze->right.x, -kTurn, kMeasured);
}

/// Returns whether both pupils rest, but for the breathing.
bool LooksStraightAhead(const Gaze& gaze) {
    return std::abs(gaze.left.x) < 1.5 && std::abs(gaze.right.x) < 1.5;
}

TEST_F(TheOwl, LooksStraightAheadForSomeSecondsNowAndThen) {
    Program& program = RunOwl(kSmall);
    desk.MovePointer({0, 400});
    const auto straight = [](const Image& image) {
        const std::optional<Gaze> gaze = GazeIn(image);
        return gaze && LooksStraightAhead(*gaze);
    };

    EXPECT_FALSE(LetTimePassUntil(program, 4.5, 0.5, straight)) << "too early";
    EXPECT_TRUE(LetTimePassUntil(program, 11, 0.5, straight)) << "too late";
}

TEST_F(TheOwl, KeepsItsEyesOnAPointerOverTheWindow) {
    Program& program = RunOwl(kSmall);
    program.MovePointer({480, 60});

    for (int half_seconds = 0; half_seconds < 80; ++half_seconds) {
        program.LetTimePass(0.5);
        const std::optional<Gaze> gaze = GazeIn(program.Look());
        if (!gaze) continue;  // a blink
        ASSERT_FALSE(LooksStraightAhead(*gaze)) << "after " << (half_seconds + 1) / 2.0 << " seconds";
    }
}

// ---- Breath and blink ----

TEST_F(TheOwl, BreathesThreeUnitsUpAndDownInPiSeconds) {
    Program& program = RunOwl(kLarge);
    desk.MovePointer({0, 300});
    program.WaitForFrames(3);

    const std::optional<Gaze> out = GazeIn(program.Look());
    program.LetTimePass(kBreathSeconds / 4);
    const std::optional<Gaze> high = GazeIn(program.Look());
    program.LetTimePass(kBreathSeconds / 2);
    std::optional<Gaze> low = GazeIn(program.Look());
    if (!low) {  // a blink: a whole breath later it is over
        program.LetTimePass(kBreathSeconds);
        low = GazeIn(program.Look());
    }

    ASSERT_TRUE(out && high && low) << "no pupils";
    EXPECT_NEAR(high->left.y - out->left.y, 3, kMeasured);
    EXPECT_NEAR(low->left.y - out->left.y, -3, kMeasured);
}

TEST_F(TheOwl, BlinksForAMoment) {
    Program& program = RunOwl(kSmall);
    program.MovePointer({480, 60});  // keeps it standing
    Scene scene;
    const auto shut = [&](const Image& image) { return scene.BodyIn(image) == "stand_01_close_eyes"; };

    EXPECT_FALSE(LetTimePassUntil(program, 1.4, 0.1, shut)) << "too early";
    EXPECT_TRUE(LetTimePassUntil(program, 4.8, 0.05, shut)) << "too late";
    program.LetTimePass(0.2);
    EXPECT_FALSE(shut(program.Look())) << "the eyes stay shut";
}

// ---- Sleep ----

TEST_F(TheOwl, FallsAsleepInTimeAndWakesWhenThePointerEntersTheWindow) {
    Program& program = RunOwl(kSmall);
    desk.MovePointer({0, 400});
    Scene scene;

    // Every other change of pose, on average, is a sleep; they are 60 seconds apart at most.
    const bool slept = LetTimePassUntil(
        program, 1800, 5, [&](const Image& image) { return scene.BodyIn(image) == "sleep_close_eyes"; });
    ASSERT_TRUE(slept) << "it never sleeps";
    const std::string before = scene.BodyIn(program.Look());
    program.MovePointer({256, 60});
    program.LetTimePass(1.3);
    const std::string after = scene.BodyIn(program.Look());

    EXPECT_EQ(before, "sleep_close_eyes") << "no time passed, so it sleeps on";
    EXPECT_EQ(after.substr(0, 8), "stand_01") << after;
}

TEST_F(TheOwl, StandsAgainWithinASecondWhenItDozesOffUnderThePointer) {
    Program& program = RunOwl(kSmall);
    program.MovePointer({256, 60});
    Scene scene;
    const auto stands = [&] { return scene.BodyIn(program.Look()).substr(0, 8) == "stand_01"; };

    for (int seconds = 0; seconds < 240; seconds += 6) {
        program.LetTimePass(4.7);
        const bool stood = stands();
        program.LetTimePass(1.3);
        ASSERT_TRUE(stood || stands()) << "after " << seconds + 6 << " seconds";
    }
}

}  // namespace
}  // namespace desktop
