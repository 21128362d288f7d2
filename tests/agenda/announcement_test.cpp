// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/announcement.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/agenda/helpers.h"

namespace {

std::tm Broken(const WallTime& time) {
    std::tm broken = {};
    broken.tm_year = static_cast<int>(time.day.year) - 1900;
    broken.tm_mon = time.day.month - 1;
    broken.tm_mday = time.day.day;
    broken.tm_hour = time.hour;
    broken.tm_min = time.minute;
    broken.tm_wday = WeekdayOf(time.day);
    return broken;
}

/// Waits with the event, minute by minute for at most so many days, as the owl does. Returns when it is due.
Announcement Wait(Event event, const WallTime& now, int days) {
    const std::int64_t start = SecondsSince1970(now);
    for (std::int64_t minute = 0; minute < days * 24 * 60; ++minute) {
        const WallTime time = TimeAfter1970(start + minute * 60);
        const Moment moment(Broken(time));
        Rearm(event, moment);
        if (!IsDatedEventDue(event, moment)) continue;
        return {minute == 0 ? Announcement::When::kNow : Announcement::When::kAt, time};
    }
    return {};
}

void ExpectAsWaitedFor(const Event& event, const WallTime& now, int days) {
    const Announcement waited = Wait(event, now, days);
    const Announcement next = NextAnnouncement(event, Moment(Broken(now)));
    ASSERT_EQ(next.when, waited.when);
    if (next.when == Announcement::When::kAt) {
        ASSERT_EQ(next.time, waited.time);
    }
}

TEST(Announcement, IsWhenAnOwlThatWaitsWouldGiveIt) {
    std::mt19937 random(3);
    const auto choose = [&](int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(random);
    };
    for (int i = 0; i < 400; ++i) {
        const WallTime now = TimeAfter1970(1'772'000'000 + std::int64_t{choose(0, 60 * 24 * 60)} * 60);
        const Day day = DayAfter1970(DaysSince1970(now.day) + choose(-1, 9));
        Event event = Appointment("a", day, choose(0, 3) * 8 % 24, choose(0, 59));
        if (choose(0, 5) == 0) event.date.day = choose(29, 31);  // of a day that the month may not have
        event.kind = choose(0, 1);
        event.wday = choose(-1, 7);
        if (choose(0, 9) == 0) event.time.hour = choose(24, 30);
        event.warned_60 = static_cast<std::uint8_t>(choose(0, 1));
        event.warned_30 = static_cast<std::uint8_t>(choose(0, 1));
        event.done = static_cast<std::uint8_t>(choose(0, 3) == 0);
        SCOPED_TRACE(i);
        ASSERT_NO_FATAL_FAILURE(ExpectAsWaitedFor(event, now, 45));
    }
}

TEST(Announcement, OfARemindersIsAtTheStart) {
    const Moment now(Broken(kSomeNow));
    EXPECT_EQ(NextAnnouncement(Reminder("a", 2), now).when, Announcement::When::kAtStart);
    EXPECT_EQ(NextAnnouncement(Reminder("a", 3), now).when, Announcement::When::kNever);
}

TEST(Announcement, OfAnUnknownKindIsNever) {
    Event event = Appointment("a", {2026, 11, 22}, 10, 0);
    event.kind = 7;
    EXPECT_EQ(NextAnnouncement(event, Moment(Broken(kSomeNow))).when, Announcement::When::kNever);
}

TEST(Announcement, TakesNumbersOfAnySize) {
    Event event = Appointment("a", {2026, 11, 22}, 10, 0);
    for (const std::int32_t number : {INT32_MIN, INT32_MAX, 0}) {
        for (std::int32_t* field : {&event.date.day, &event.date.month, &event.date.year, &event.time.hour,
                                    &event.time.minute, &event.wday}) {
            const std::int32_t before = *field;
            for (const int kind : {0, 1}) {
                event.kind = kind;
                *field = number;
                NextAnnouncement(event, Moment(Broken(kSomeNow)));
            }
            *field = before;
        }
    }
}

}  // namespace
