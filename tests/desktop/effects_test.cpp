// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The two effects as the window shows them: the letters of a sleeping owl, and the smoke of an offer.
//
// They are looked for in parts of the canvas where without them nothing but background and tree is seen,
// whatever the owl's breath. The program's clock is in the test's hand.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/desktop/calendar.h"
#include "tests/desktop/fixture.h"
#include "tests/desktop/scene.h"

namespace desktop {
namespace {

constexpr int kEdge = 300;  ///< of the window, pixels

/// Where letters are two seconds old and older, right of the standing owl's ear.
constexpr CanvasRect kLettersPart = {345, 405, 440, 510};

/// Where a letter is in its first seconds, just above the sleeping head; the standing owl's ear is there too.
constexpr CanvasRect kYoungLetterPart = {290, 405, 390, 465};

/// Right above the hat, on the side that its tip does not bend to; the bubble is further right.
constexpr CanvasRect kSmokePart = {280, 480, 340, 510};

// Mean differences from background and tree, 0 to 255. Measured: 0.33 without an effect, and with one 4.2 at
// least; 7.5 at least between two moments of one.
constexpr double kNothing = 1;    ///< no effect shows
constexpr double kSomething = 2;  ///< one does

/// A random number that makes the first pose drawn a sleep.
constexpr int kSleepingPose = 2;

/// A random number that is the greater end of every pair: stars come far up on the right, away from a young
/// letter.
constexpr int kGreaterEnds = 100;

class TheEffects : public OnDesktop {
  protected:
    /// Starts the program in the top left corner; the pointer is in the other one, far from the window.
    Program& RunStill() {
        Start start;
        start.clock = Clock::kInHand;
        start.longest_step = 240'000'000;
        Program& program = Run(start);
        program.Resize({60, 60, kEdge, kEdge});
        return program;
    }

    /// Lets time pass until the owl dozes off, which a standing owl does within a minute. Returns whether it
    /// did.
    bool LetItDozeOff(Program& program) {
        program.LoadDice(kSleepingPose);
        bool dozes = false;
        for (int looks = 0; looks < 42 && !dozes; ++looks) {
            program.LetTimePass(1.5);
            dozes = scene_.BodyIn(program.Look()).substr(0, 5) == "sleep";
        }
        program.ReleaseDice();
        return dozes;
    }

    /// Returns how far a part of the window is from showing background and tree alone.
    double Strangeness(const Image& image, const CanvasRect& part) const {
        return MeanDifference(image, bare_, part);
    }

    /// Returns the middle of the light that is added to background and tree in a part of the window; nothing
    /// where it is too little.
    std::optional<CanvasPoint> MiddleOfLight(const Image& image, const CanvasRect& part) const {
        constexpr double kFaint = 25;      // luminance: less is filtering
        constexpr double kLeastLight = 4;  // of a whole bright pixel
        double light = 0;
        CanvasPoint middle;
        for (int y = 0; y < image.Height(); ++y) {
            for (int x = 0; x < image.Width(); ++x) {
                const CanvasPoint p = image.CanvasAt(x, y);
                if (p.x < part.left || p.x > part.right || p.y < part.bottom || p.y > part.top) continue;
                const double added = (image.At(x, y).Luminance() - bare_.At(x, y).Luminance() - kFaint) / 255;
                if (added <= 0) continue;
                light += added;
                middle.x += added * p.x;
                middle.y += added * p.y;
            }
        }
        if (light < kLeastLight) return {};
        return CanvasPoint{middle.x / light, middle.y / light};
    }

  private:
    Scene scene_;
    const Image bare_ = scene_.Draw(kEdge, kEdge, {"sleep_close_eyes", 0, false, {}, {}});
};

// ---- Letters ----

TEST_F(TheEffects, LettersAreShownWhileTheOwlSleepsAndNeverElse) {
    Program& program = RunStill();
    program.LetTimePass(6);
    const Image awake = program.Look();

    ASSERT_TRUE(LetItDozeOff(program)) << "it never sleeps";
    program.LetTimePass(6);
    const Image asleep = program.Look();
    program.LetTimePass(0.6);
    const Image later = program.Look();
    program.MovePointer({256, 60});
    program.LetTimePass(1.5);
    const Image awake_again = program.Look();

    EXPECT_LT(Strangeness(awake, kLettersPart), kNothing);
    EXPECT_GT(Strangeness(asleep, kLettersPart), kSomething);
    EXPECT_GT(Strangeness(later, kLettersPart), kSomething);
    EXPECT_GT(MeanDifference(asleep, later, kLettersPart), kSomething) << "they stand still";
    EXPECT_LT(Strangeness(awake_again, kLettersPart), kNothing);
}

TEST_F(TheEffects, ALetterDriftsUpAndToTheRightFromTheSleepingHead) {
    Program& program = RunStill();
    ASSERT_TRUE(LetItDozeOff(program)) << "it never sleeps";
    program.LoadDice(kGreaterEnds);

    std::optional<CanvasPoint> first;
    for (int tenths = 0; tenths < 40 && !first; ++tenths) {
        program.LetTimePass(0.1);
        first = MiddleOfLight(program.Look(), kYoungLetterPart);
    }
    ASSERT_TRUE(first) << "no letter";
    program.LetTimePass(0.8);
    const std::optional<CanvasPoint> second = MiddleOfLight(program.Look(), kYoungLetterPart);

    ASSERT_TRUE(second) << "it is gone";
    EXPECT_GT(second->y - first->y, 6);
    EXPECT_GT(second->x - first->x, 6);
}

// ---- Smoke ----

TEST_F(TheEffects, SmokeRisesFromTheHatUntilTheOfferLapses) {
    Program& program = RunStill();
    program.LetTimePass(3);
    const Image before = program.Look();

    program.Click(kMenuAsk);
    program.LetTimePass(3);
    const Image smoke = program.Look();
    program.LetTimePass(0.6);
    const Image later = program.Look();
    program.LetTimePass(15.6);
    const Image last = program.Look();  // 19.2 of the offer's 20 seconds have passed
    program.LetTimePass(1.2);
    const Image lapsed = program.Look();

    EXPECT_LT(Strangeness(before, kSmokePart), kNothing);
    EXPECT_GT(Strangeness(smoke, kSmokePart), kSomething);
    EXPECT_GT(Strangeness(later, kSmokePart), kSomething);
    EXPECT_GT(MeanDifference(smoke, later, kSmokePart), kSomething) << "it stands still";
    EXPECT_GT(Strangeness(last, kSmokePart), kSomething);
    EXPECT_LT(Strangeness(lapsed, kSmokePart), kNothing);
}

TEST_F(TheEffects, AreMissedInALineEachAndThePictureMovesOn) {
    Start start;
    start.missing = {"smoke.zfx"};
    start.pipes = {"sleep.zfx"};
    Program& program = Run(start);

    program.WaitForFrames(5);

    EXPECT_EQ(
        program.Said(),
        "Ulmaro Assistant: non riesco a leggere l'effetto \"sleep.zfx\": manca o non e' un file di effetti.\n"
        "Ulmaro Assistant: non riesco a leggere l'effetto \"smoke.zfx\": manca o non e' un file di "
        "effetti.\n");
}

}  // namespace
}  // namespace desktop
