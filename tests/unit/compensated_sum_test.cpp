// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/compensated_sum.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(CompensatedSumTest, ShowsTheNearestFloatOfTheExactSumAfterEveryStep) {
    for (const float step : {0.125F, 1 / 60.0F, 1 / 165.0F, 0.001F}) {
        float sum = 10000;
        double lost = 0;
        double exact = 10000;
        for (int i = 0; i < 100'000; ++i) {
            exact += static_cast<double>(step);

            AddCompensated(sum, lost, step);

            ASSERT_EQ(sum, static_cast<float>(exact)) << i << " steps of " << step;
            ASSERT_EQ(static_cast<double>(sum) + lost, exact);
        }
    }
}

TEST(CompensatedSumTest, AddsUpStepsThatAreEachTooShortForTheFloat) {
    float sum = 1 << 24;
    double lost = 0;

    for (int i = 0; i < 1024; ++i) AddCompensated(sum, lost, 0.125F);

    EXPECT_EQ(sum, (1 << 24) + 128);
    EXPECT_EQ(lost, 0);
}

TEST(CompensatedSumTest, TakesStepsBackToo) {
    float sum = 0;
    double lost = 0;
    for (int i = 0; i < 1000; ++i) AddCompensated(sum, lost, 0.1F);
    for (int i = 0; i < 1000; ++i) AddCompensated(sum, lost, -0.1F);

    EXPECT_NEAR(static_cast<double>(sum) + lost, 0, 1e-10);
}

TEST(CompensatedSumTest, AnInfiniteSumStaysInfinite) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    float sum = kInfinity;
    double lost = 0;

    for (int i = 0; i < 3; ++i) AddCompensated(sum, lost, 0.1F);

    EXPECT_EQ(sum, kInfinity);
    EXPECT_EQ(lost, 0);
}

}  // namespace
