// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/interpolation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/unit/nonfinite_floats.h"

namespace {

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

}  // namespace
