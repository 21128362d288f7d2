// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/wall_time.h"

#include <gtest/gtest.h>

#include <climits>

#include "tests/agenda/helpers.h"

namespace {

TEST(WallTime, KnowsTheCalendar) {
    EXPECT_TRUE(IsDay({2028, 2, 29}));
    for (const Day& day : {Day{2026, 2, 29},
                           {2026, 4, 31},
                           {2026, 11, 278},
                           {2026, 11, INT_MAX},
                           {2026, 257, 1},
                           {2026, 13, 1},
                           {2026, 0, 1},
                           {2026, 1, 0},
                           {0, 1, 1},
                           {10000, 1, 1},
                           {-5, 1, 1}})
        EXPECT_FALSE(IsDay(day));
    EXPECT_TRUE(IsTime(0, 0) && IsTime(23, 59));
    EXPECT_FALSE(IsTime(24, 0) || IsTime(0, 60) || IsTime(-1, 0) || IsTime(0, -1));
}

TEST(WallTime, CountsDaysBothWays) {
    EXPECT_EQ(DaysSince1970({1970, 1, 1}), 0);
    EXPECT_EQ(DaysSince1970({2000, 3, 1}), 11017);
    EXPECT_EQ(DayAfter1970(-1), (Day{1969, 12, 31}));
    EXPECT_EQ(WeekdayOf({2026, 11, 22}), 0);
    EXPECT_EQ(WeekdayOf({2026, 11, 26}), 4);
    for (std::int64_t seconds : {-90060, -60, 0, 1'700'000'040})
        EXPECT_EQ(SecondsSince1970(TimeAfter1970(seconds)), seconds);
}

TEST(WallTime, ShowsTheUsersClock) {
    const InZone rome("Europe/Rome");
    EXPECT_EQ(LocalWallTime(1'782'900'000), (WallTime{{2026, 7, 1}, 12, 0}));   // 10:00 UTC
    EXPECT_EQ(LocalWallTime(1'796'119'200), (WallTime{{2026, 12, 1}, 11, 0}));  // 10:00 UTC
}

TEST(WallTime, ReadsDaysAndTimes) {
    Day day;
    EXPECT_TRUE(ReadDay("24/11/2026", day) && day == (Day{2026, 11, 24}));
    EXPECT_TRUE(ReadDay("2026-01-02", day) && day == (Day{2026, 1, 2}));
    for (const char* bad :
         {"", "31/2/2026", "24/11", "24/11/2026/1", "2026-1-x", "24-11-2026", "+1/1/2026", " 1/1/2026"})
        EXPECT_FALSE(ReadDay(bad, day)) << bad;
    int hour = 0;
    int minute = 0;
    EXPECT_TRUE(ReadTime("9:05", hour, minute) && hour == 9 && minute == 5);
    EXPECT_TRUE(ReadTime("17", hour, minute) && hour == 17 && minute == 0);
    for (const char* bad : {"", "24", "9:60", "9:", ":5", "-1", "9:5:1", "x"})
        EXPECT_FALSE(ReadTime(bad, hour, minute)) << bad;
}

}  // namespace
