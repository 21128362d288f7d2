// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fixture for tests of what the owl's screen shows: a calm owl, and the places of its pictures.
//
// How to use it:
//
//     character.close_eyes = true;
//     RunFrame(0.125F);                                        // one frame of the owl's screen
//     EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl_ce[kStanding], 3 * std::sin(0.25))}));
#pragma once

#include <cmath>
#include <vector>

#include "engine/vector3f.h"
#include "tests/unit/app_fixture.h"

/// Longer than any test: a timer set to it does not ring.
constexpr float kNever = 1e6F;

// The eyes of the owl at rest, canvas units.
constexpr float kLeftEyeX = 237.28F;
constexpr float kLeftEyeY = 392.248F;
constexpr float kRightEyeX = 287.52F;
constexpr float kRightEyeY = 389.804F;

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
class OwlFixture : public AppTest {
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
        character.sleep_state = kAsleep;
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
