// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/date_key.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(ConvertDAMTest, ADayIs1440Minutes) {
    EXPECT_EQ(ConvertDAM(1, 0, 1900, 0, 0), 1440.0);
}
TEST(ConvertDAMTest, AMinuteIs1) {
    EXPECT_EQ(ConvertDAM(0, 0, 1900, 0, 1), 1.0);
}
TEST(ConvertDAMTest, AnHourIs60Minutes) {
    EXPECT_EQ(ConvertDAM(0, 0, 1900, 1, 0), 60.0);
}
TEST(ConvertDAMTest, AMonthIs31Days) {
    EXPECT_EQ(ConvertDAM(0, 1, 1900, 0, 0), 44640.0);
}
TEST(ConvertDAMTest, AYearIs12MonthsOf31Days) {
    EXPECT_EQ(ConvertDAM(0, 0, 1901, 0, 0), 535680.0);
}

TEST(ConvertDAMTest, AddsAllFields) {
    EXPECT_EQ(ConvertDAM(21, 12, 2012, 23, 59), 59 + 23 * 60.0 + 21 * 1440.0 + 12 * 44640.0 + 112 * 535680.0);
}

TEST(ConvertDAMTest, AYearBefore1900YieldsANegativeKey) {
    EXPECT_EQ(ConvertDAM(0, 0, 1899, 0, 0), -535680.0);
}

TEST(ConvertDAMTest, Day31SortsBeforeTheNextMonthsFirst) {
    EXPECT_LT(ConvertDAM(31, 1, 2012, 23, 59), ConvertDAM(1, 2, 2012, 0, 0));
    EXPECT_LT(ConvertDAM(31, 12, 2012, 23, 59), ConvertDAM(1, 1, 2013, 0, 0));
}

TEST(ConvertDAMTest, OverflowsForNoNumbers) {
    constexpr int kLowest = std::numeric_limits<int>::min();
    constexpr int kHighest = std::numeric_limits<int>::max();

    EXPECT_EQ(ConvertDAM(0, 0, kLowest, 0, 0), (-2147483648.0 - 1900.0) * 535680.0);
    EXPECT_EQ(ConvertDAM(0, 0, kHighest, 0, 0), (2147483647.0 - 1900.0) * 535680.0);
    EXPECT_EQ(ConvertDAM(kHighest, 0, 1900, 0, 0), 2147483647.0 * 1440.0);
    EXPECT_EQ(ConvertDAM(0, kHighest, 1900, 0, 0), 2147483647.0 * 44640.0);
    EXPECT_EQ(ConvertDAM(0, 0, 1900, kLowest, 0), -2147483648.0 * 60.0);
}

}  // namespace
