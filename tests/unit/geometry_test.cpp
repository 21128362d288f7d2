// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Random numbers, interpolation and geometry of the engine's kit.

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>

#include "engine/MacEngine.h"
#include "tests/fakes/fakes.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// ---- Records ----

TEST(PolygonRecords, AreZeroAndWhiteWhenMade) {
    const POLYGON3D polygon;

    for (int corner = 0; corner < 3; ++corner) {
        EXPECT_EQ(polygon.vertex[corner].x, 0.0F);
        EXPECT_EQ(polygon.vertex[corner].y, 0.0F);
        EXPECT_EQ(polygon.vertex[corner].z, 0.0F);
        EXPECT_EQ(polygon.normal[corner].x, 0.0F);
        EXPECT_EQ(polygon.normal[corner].y, 0.0F);
        EXPECT_EQ(polygon.normal[corner].z, 0.0F);
        EXPECT_EQ(polygon.color[corner].r, 1.0F);
        EXPECT_EQ(polygon.color[corner].g, 1.0F);
        EXPECT_EQ(polygon.color[corner].b, 1.0F);
        EXPECT_EQ(polygon.txtcoord[corner].u, 0.0F);
        EXPECT_EQ(polygon.txtcoord[corner].v, 0.0F);
    }
}

TEST(PolygonRecords, APolygonHoldsCornersNormalsColoursThenTextureCoordinates) {
    EXPECT_EQ(offsetof(POLYGON3D, vertex), 0U);
    EXPECT_EQ(offsetof(POLYGON3D, normal), 9 * sizeof(float));
    EXPECT_EQ(offsetof(POLYGON3D, color), 18 * sizeof(float));
    EXPECT_EQ(offsetof(POLYGON3D, txtcoord), 27 * sizeof(float));
    EXPECT_EQ(sizeof(POLYGON3D), 33 * sizeof(float));
}

// ---- rand_intvf ----

// Exits with 0 if the first call seeds and the second does not, and with a status of its own for each
// mistake.
void SeedOnFirstCallAndExit() {
    std::srand(7);
    rand_intvf(0, 1, 10);
    if (fakes::world().seeds != std::vector<unsigned int>{7, 12345}) std::exit(2);
    if (fakes::Names() != std::vector<std::string>{"srand", "srand"}) std::exit(3);
    rand_intvf(0, 1, 10);
    std::exit(fakes::world().seeds.size() == 2 ? 0 : 4);
}

using RandIntvfFirstCall = fakes::Test;

TEST_F(RandIntvfFirstCall, SeedsTheGeneratorWithTheTimeAgainAndNeverAfter) {
    // In a process of its own: "first" means first in the process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    fakes::world().now = 12345;

    EXPECT_EXIT(SeedOnFirstCallAndExit(), testing::ExitedWithCode(0), "");
}

class RandIntvf : public fakes::Test {
  protected:
    void SetUp() override {
        rand_intvf(0, 1, 1);  // the call that seeds
        fakes::Test::SetUp();
    }
};

TEST_F(RandIntvf, YieldsElevenValuesFrom0To1InTenths) {
    for (int drawn = 0; drawn < 22; ++drawn) {
        fakes::world().rand_values = {drawn};
        EXPECT_EQ(rand_intvf(0, 1, 10), static_cast<float>(drawn % 11) / 10.0F) << drawn;
    }
}

TEST_F(RandIntvf, YieldsTheWholeNumbersFromMinus2To2) {
    for (int drawn = 0; drawn < 10; ++drawn) {
        fakes::world().rand_values = {drawn};
        EXPECT_EQ(rand_intvf(-2, 2, 1), static_cast<float>(drawn % 5 - 2)) << drawn;
    }
}

TEST_F(RandIntvf, CountsStepsBeforeItAddsTheMinimum) {
    fakes::world().rand_values = {45, 46};

    EXPECT_EQ(rand_intvf(1.5F, 6, 10), 6.0F);
    EXPECT_EQ(rand_intvf(1.5F, 6, 10), 1.5F);
}

TEST_F(RandIntvf, TruncatesAFractionOfAStep) {
    fakes::world().rand_values = {2, 3};  // (1 - 0) * 2.9 + 1: three values

    EXPECT_EQ(rand_intvf(0, 1, 2.9F), 2.0F / 2.9F);
    EXPECT_EQ(rand_intvf(0, 1, 2.9F), 0.0F);
}

TEST_F(RandIntvf, CountsItsStepsInSinglePrecision) {
    fakes::world().rand_values = {7};  // 0.7F is below 0.7, but 0.7F * 10 is 7: eight values

    EXPECT_EQ(rand_intvf(0, 0.7F, 10), 0.7F);
}

TEST_F(RandIntvf, TruncatesTowardZeroBelowZeroToo) {
    fakes::world().rand_values = {41};  // -0.9 becomes 0: one value

    EXPECT_EQ(rand_intvf(1, 0.1F, 1), 1.0F);
    EXPECT_EQ(fakes::world().rand_calls, 1);
}

TEST_F(RandIntvf, DrawsExactlyOneNumberACall) {
    rand_intvf(0, 1, 10);
    EXPECT_EQ(fakes::world().rand_calls, 1);
    rand_intvf(900, 1800, 1);
    EXPECT_EQ(fakes::world().rand_calls, 2);
}

TEST_F(RandIntvf, DoesNotSeedOnLaterCalls) {
    rand_intvf(0, 1, 10);

    EXPECT_TRUE(fakes::world().seeds.empty());
}

TEST_F(RandIntvf, GivesTheMinimumWithoutDrawingWhereTheGridIsEmpty) {
    EXPECT_EQ(rand_intvf(5, 4, 1), 5.0F);
    EXPECT_EQ(rand_intvf(5, 3.5F, 1), 5.0F);
    EXPECT_EQ(fakes::world().rand_calls, 0);
}

TEST_F(RandIntvf, NeverFallsBelowTheMinimumWithTheMaximumBelowIt) {
    for (int drawn = 0; drawn < 8; ++drawn) {
        fakes::world().rand_values = {drawn};
        EXPECT_EQ(rand_intvf(10, 5, 1), 10.0F + static_cast<float>(drawn % 4)) << drawn;  // n is -4
    }
}

TEST_F(RandIntvf, TakesTheWholeRangeOfRandForAHugeInterval) {
    fakes::world().rand_values = {RAND_MAX, RAND_MAX};

    EXPECT_EQ(rand_intvf(0, 1e30F, 1), static_cast<float>(RAND_MAX));
    EXPECT_EQ(rand_intvf(0, kInfinity, 1), static_cast<float>(RAND_MAX));
    EXPECT_EQ(fakes::world().rand_calls, 2);
}

TEST_F(RandIntvf, TakesAHugeIntervalBackwards) {
    fakes::world().rand_values = {RAND_MAX, 6};

    EXPECT_EQ(rand_intvf(0, -1e30F, 1), 0.0F);  // n is -(2^31 - 1), which is RAND_MAX
    EXPECT_EQ(rand_intvf(0, -1e30F, 1), 6.0F);
}

TEST_F(RandIntvf, GivesNaNForNaN) {
    EXPECT_TRUE(std::isnan(rand_intvf(kNaN, 1, 1)));
    EXPECT_EQ(rand_intvf(3, kNaN, 1), 3.0F);
    EXPECT_EQ(fakes::world().rand_calls, 2);
}

// ---- Interpolation ----

TEST(RateInterpole, IsHalfWayAt50PerCent) {
    EXPECT_EQ(RateInterpole(10, 20, 50), 15.0F);
}

TEST(RateInterpole, GivesTheEndsAt0And100) {
    EXPECT_EQ(RateInterpole(10, 20, 0), 10.0F);
    EXPECT_EQ(RateInterpole(10, 20, 100), 20.0F);
}

TEST(RateInterpole, ExtrapolatesOutside0To100) {
    EXPECT_FLOAT_EQ(RateInterpole(10, 20, 200), 30.0F);
    EXPECT_FLOAT_EQ(RateInterpole(10, 20, -100), 0.0F);
}

TEST(RateInterpole, IsEvaluatedInSinglePrecisionInItsOrder) {
    // Every other order, and double precision, gives 0.1 or 0.099999994 here.
    EXPECT_EQ(RateInterpole(0.1F, 0.1F, 51), 0.100000009F);
    EXPECT_EQ(RateInterpole(3e38F, -3e38F, 50), 0.0F);  // the difference of the ends fits no float
}

TEST(GetRate, IsThePercentageOfTheTotal) {
    EXPECT_EQ(GetRate(50, 200), 25.0F);
}
TEST(GetRate, IsAtMost100) {
    EXPECT_EQ(GetRate(300, 200), 100.0F);
}
TEST(GetRate, IsAtLeast0) {
    EXPECT_EQ(GetRate(-1, 200), 0.0F);
}

TEST(GetRate, MultipliesBeforeItDivides) {
    EXPECT_EQ(GetRate(1, 3), 33.3333321F);  // a third, times 100, would be 33.3333359
}

TEST(GetRate, OfATotalOf0Is100ForAPositiveValueAnd0ForANegativeOne) {
    EXPECT_EQ(GetRate(1, 0), 100.0F);
    EXPECT_EQ(GetRate(-1, 0), 0.0F);
    EXPECT_TRUE(std::isnan(GetRate(0, 0)));
}

TEST(Proportional, IsTheRuleOfThree) {
    EXPECT_EQ(proportional<float>(300, 512, 150), 256.0F);
    EXPECT_EQ(proportional<float>(2, 3, 5), 7.5F);
    EXPECT_EQ(proportional<double>(4, 3, 2), 1.5);
    EXPECT_EQ(proportional<int>(4, 3, 8), 6);
}

TEST(Proportional, MultipliesBeforeItDivides) {
    const float big = 3e38F;

    EXPECT_EQ(proportional<float>(big, big, 2), kInfinity);
}

// ---- Geometry ----

TEST(OppositeSign, CountsZeroAsPositive) {
    EXPECT_TRUE(OppositeSign(-1, 0));
    EXPECT_TRUE(OppositeSign(0, -1));
    EXPECT_FALSE(OppositeSign(0, 0));
    EXPECT_FALSE(OppositeSign(0, 1));
}

TEST(OppositeSign, IsFalseForTwoOfTheSameSign) {
    EXPECT_FALSE(OppositeSign(-1, -2));
    EXPECT_FALSE(OppositeSign(1, 2));
}

TEST(OppositeSign, IsTrueForOneOfEach) {
    EXPECT_TRUE(OppositeSign(-1, 2));
    EXPECT_TRUE(OppositeSign(2, -1));
}

TEST(OppositeSign, IsFalseForNaN) {
    EXPECT_FALSE(OppositeSign(-1, kNaN));
    EXPECT_FALSE(OppositeSign(kNaN, -1));
}

TEST(SlopeV3F, FromXToYIs90) {
    EXPECT_EQ(SlopeV3F(vector3f(1, 0, 0), vector3f(0, 1, 0)), 90.0F);
}
TEST(SlopeV3F, FromYToXIs270) {
    EXPECT_EQ(SlopeV3F(vector3f(0, 1, 0), vector3f(1, 0, 0)), 270.0F);
}

TEST(SlopeV3F, IgnoresZAndLength) {
    EXPECT_FLOAT_EQ(SlopeV3F(vector3f(3, 3, 7), vector3f(-2, 2, -9)), 90.0F);
    EXPECT_EQ(SlopeV3F(vector3f(1, 0, 5), vector3f(4, 0, -5)), 0.0F);
}

TEST(SlopeV3F, StaysBetween0And360) {
    // From just below the negative x axis to just above it: the raw difference is almost 360.
    EXPECT_NEAR(SlopeV3F(vector3f(-1, -0.001F, 0), vector3f(-1, 0.001F, 0)), 359.8854F, 1e-3F);
    EXPECT_NEAR(SlopeV3F(vector3f(-1, 0.001F, 0), vector3f(-1, -0.001F, 0)), 0.1146F, 1e-3F);
}

TEST(SlopeV3F, Keeps360Itself) {
    EXPECT_EQ(SlopeV3F(vector3f(-1, -0.0F, 0), vector3f(-1, 0, 0)), 360.0F);
    EXPECT_EQ(SlopeV3F(vector3f(1, 1e-9F, 0), vector3f(1, 0, 0)), 360.0F);  // a hair below 0, and 360 more
}

TEST(GetDistanceBetween, IsEuclidean) {
    EXPECT_EQ(GetDistanceBetween(1, 1, 1, 3, 4, 7), 7.0F);
    EXPECT_EQ(GetDistanceBetween(3, 4, 7, 1, 1, 1), 7.0F);
    EXPECT_EQ(GetDistanceBetween(5, 6, 7, 5, 6, 7), 0.0F);
}

TEST(GetDistanceBetween, IsComputedInSinglePrecision) {
    EXPECT_EQ(GetDistanceBetween(0, 0, 0, 1e30F, 0, 0), kInfinity);
}

class SegmentPlane : public testing::Test {
  protected:
    bool Meets(vector3f s0, vector3f s1) { return SegmentPlaneIntersect(s0, s1, a_, b_, c_); }

    vector3f a_{0, 0, 2};
    vector3f b_{1, 0, 2};
    vector3f c_{0, 1, 2};
};

TEST_F(SegmentPlane, IsCrossedFromBothSides) {
    EXPECT_TRUE(Meets({5, 5, 1}, {5, 5, 3}));
    EXPECT_TRUE(Meets({5, 5, 3}, {5, 5, 1}));
}

TEST_F(SegmentPlane, IsTouchedByAnEndpoint) {
    EXPECT_TRUE(Meets({5, 5, 2}, {5, 5, 3}));
    EXPECT_TRUE(Meets({5, 5, 3}, {5, 5, 2}));
    EXPECT_TRUE(Meets({5, 5, 1}, {5, 5, 2}));
    EXPECT_TRUE(Meets({5, 5, 2}, {5, 5, 1}));
}

// Seen from another corner, c would lie beside the plane by a rounding error.
TEST_F(SegmentPlane, IsTouchedByItsThirdCornerExactly) {
    a_.set(0.2F, 0.2F, 0.3F);
    b_.set(1.7F, 0.2F, 0.9F);
    c_.set(0.3F, 1.1F, 1.4F);
    vector3f normal = crossProduct(a_ - c_, b_ - c_);
    normal.normalize();

    EXPECT_TRUE(Meets(c_, c_ + normal));
    EXPECT_TRUE(Meets(c_, c_ - normal));
    EXPECT_TRUE(Meets(c_ + normal, c_));
    EXPECT_TRUE(Meets(c_ - normal, c_));
}

TEST_F(SegmentPlane, IsMissedByASegmentOnOneSide) {
    EXPECT_FALSE(Meets({5, 5, 3}, {5, 5, 4}));
    EXPECT_FALSE(Meets({5, 5, 1}, {5, 5, 0}));
}

TEST_F(SegmentPlane, OfADegenerateTriangleIsNeverMet) {
    b_ = a_;

    EXPECT_FALSE(Meets({0, 0, 1}, {0, 0, 3}));
    EXPECT_FALSE(Meets({0, 0, 2}, {0, 0, 2}));
}

TEST_F(SegmentPlane, LeavesItsArgumentsAlone) {
    vector3f s0(5, 5, 1);
    vector3f s1(5, 5, 3);

    SegmentPlaneIntersect(s0, s1, a_, b_, c_);

    EXPECT_EQ(s0, vector3f(5, 5, 1));
    EXPECT_EQ(s1, vector3f(5, 5, 3));
    EXPECT_EQ(a_, vector3f(0, 0, 2));
    EXPECT_EQ(b_, vector3f(1, 0, 2));
    EXPECT_EQ(c_, vector3f(0, 1, 2));
}

class SegmentTriangle : public testing::Test {
  protected:
    bool Meets(vector3f s0, vector3f s1) {
        return GetIntersectionBetweenSegmentTriangle(a_, b_, c_, s0, s1, hit_);
    }

    vector3f a_{0, 0, 0};
    vector3f b_{1, 0, 0};
    vector3f c_{0, 1, 0};
    vector3f hit_{7, 8, 9};
};

TEST_F(SegmentTriangle, IsHitInside) {
    EXPECT_TRUE(Meets({0.25F, 0.25F, -1}, {0.25F, 0.25F, 1}));
    EXPECT_EQ(hit_, vector3f(0.25F, 0.25F, 0));
}

TEST_F(SegmentTriangle, IsMissedOutsideButThePointIsStillWritten) {
    EXPECT_FALSE(Meets({2, 2, -1}, {2, 2, 1}));
    EXPECT_EQ(hit_, vector3f(2, 2, 0));
}

TEST_F(SegmentTriangle, IsMissedByASegmentOnOneSideAndThePointIsLeftUnchanged) {
    EXPECT_FALSE(Meets({0.25F, 0.25F, 1}, {0.25F, 0.25F, 2}));
    EXPECT_EQ(hit_, vector3f(7, 8, 9));
}

TEST_F(SegmentTriangle, HasAToleranceOfOnePerCentOfItsArea) {
    // A point (x, y) beyond the longest side makes the three areas x + y - 1 larger than the whole, which is
    // 1/2.
    const float just_in = 0.5F + 0.0024F;   // 0.0096 of the area more
    const float just_out = 0.5F + 0.0026F;  // 0.0104 of the area more

    EXPECT_TRUE(Meets({just_in, just_in, -1}, {just_in, just_in, 1}));
    EXPECT_FALSE(Meets({just_out, just_out, -1}, {just_out, just_out, 1}));
}

TEST_F(SegmentTriangle, IsMissedBeyondEachOfItsSides) {
    EXPECT_FALSE(Meets({0.5F, -0.1F, -1}, {0.5F, -0.1F, 1}));
    EXPECT_FALSE(Meets({-0.1F, 0.5F, -1}, {-0.1F, 0.5F, 1}));
    EXPECT_FALSE(Meets({0.6F, 0.6F, -1}, {0.6F, 0.6F, 1}));
}

TEST_F(SegmentTriangle, IsHitBySlantedSegmentsInAnyPosition) {
    // The plane x + 2 y + 3 z = 6, met by a segment that runs along no axis.
    a_.set(6, 0, 0);
    b_.set(0, 3, 0);
    c_.set(0, 0, 2);

    EXPECT_TRUE(Meets({1, 0.5F, 0.25F}, {4, 1.5F, 1.25F}));
    EXPECT_NEAR(hit_.x + 2 * hit_.y + 3 * hit_.z, 6.0F, 1e-5F);
    EXPECT_NEAR(hit_.x, 2.21875F, 1e-5F);  // t = 3.25 / 8
    EXPECT_NEAR(hit_.y, 0.90625F, 1e-5F);
    EXPECT_NEAR(hit_.z, 0.65625F, 1e-5F);
}

TEST_F(SegmentTriangle, ForgetsTheCallBefore) {
    Meets({2, 2, -1}, {2, 2, 1});

    EXPECT_TRUE(Meets({0.25F, 0.25F, -1}, {0.25F, 0.25F, 1}));
    EXPECT_EQ(hit_, vector3f(0.25F, 0.25F, 0));
}

TEST_F(SegmentTriangle, IsNotHitByASegmentInItsPlane) {
    EXPECT_FALSE(Meets({0.2F, 0.2F, 0}, {0.3F, 0.3F, 0}));
    EXPECT_TRUE(std::isnan(hit_.x));
}

}  // namespace
