// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include <cmath>
#include <cstdlib>

#include "engine/random.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/nonfinite_floats.h"

namespace {

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

}  // namespace
