// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the tables, minutes to due, reminders, appointments and weekly events, the life of the four fields,
// several steps of that life. Now is Wednesday, 16 May 2012, 10:30 throughout.
#include "calendar/notices.h"

#include <climits>
#include <cmath>
#include <string>
#include <vector>

#include "tests/unit/calendar_fixture.h"
#include "tests/unit/nonfinite_floats.h"

namespace {

constexpr int kToday = 3;  ///< the weekday

/// Numbers that are no kind of event.
const std::vector<int>& UnknownKinds() {
    static const std::vector<int> kinds = {INT_MIN, -1, 3, 100, INT_MAX};
    return kinds;
}

/// Returns the next number below or above.
float Below(float number) {
    return std::nextafter(number, -kInfinity);
}
float Above(float number) {
    return std::nextafter(number, kInfinity);
}

class NoticesTest : public CalendarTest {
  protected:
    static Event AppointmentIn(int minutes) {
        return MakeAppointment("visita", 16, 5, 2012, 10, 30 + minutes);
    }
    static Event WeeklyIn(int minutes) { return MakeWeekly("corso", kToday, 10, 30 + minutes); }

    /// Returns an appointment and a weekly event that are due in so many minutes.
    static std::vector<Event> DatedEventsIn(int minutes) {
        return {AppointmentIn(minutes), WeeklyIn(minutes)};
    }

    /// Returns an event of each kind, the unknown ones too.
    static std::vector<Event> EventsOfEachKind() {
        std::vector<Event> all = {AppointmentIn(0), WeeklyIn(0), MakeReminder("acqua", 0, 0)};
        for (const int kind : UnknownKinds()) {
            all.push_back(WeeklyIn(0));
            all.back().kind = kind;
        }
        return all;
    }

    /// Lets it be today, so many minutes before an event's time.
    static void SetNowBefore(const Event& event, int minutes) {
        const int now = 60 * event.time.hour + event.time.minute - minutes;
        SetNow(2012, 5, 16, now / 60, now % 60);
    }

    static bool IsDue(const Event& event) { return IsDatedEventDue(event, frame_time); }
};

// ---- The tables ----

TEST_F(NoticesTest, AnnouncementsAreGivenAnHourAndHalfAnHourBeforeAndMarkedEachInAFieldOfItsOwn) {
    ASSERT_EQ(std::size(kLeadTimes), 2U);
    EXPECT_EQ(kLeadTimes[0].minutes, 60);
    EXPECT_EQ(kLeadTimes[0].told, &Event::warned_60);
    EXPECT_EQ(kLeadTimes[1].minutes, 30);
    EXPECT_EQ(kLeadTimes[1].told, &Event::warned_30);
}

TEST_F(NoticesTest, ARemindersNumberIsARowOfTheRepeats) {
    struct Case {
        int repeat;
        float seconds;
        const char* period;
    };
    const Case cases[] = {
        {0, 3600, "ogni ora"},
        {1, 7200, "ogni 2 ore"},
        {2, 10800, "ogni 3 ore"},
    };
    EXPECT_EQ(kLastRepeat, 2);
    for (const Case& row : cases) {
        const Repeat* repeat = RepeatOf(MakeReminder("r", row.repeat, 0));

        ASSERT_NE(repeat, nullptr) << row.repeat;
        EXPECT_EQ(repeat->seconds, row.seconds) << row.repeat;
        EXPECT_STREQ(repeat->period, row.period);
    }
}

TEST_F(NoticesTest, AnyOtherNumberHasNoRow) {
    for (const int repeat : {INT_MIN, -1, 3, 4, INT_MAX}) {
        EXPECT_EQ(RepeatOf(MakeReminder("r", repeat, 0)), nullptr) << repeat;
    }
}

// ---- Minutes to due ----

TEST_F(NoticesTest, AnAppointmentIsDueInTheMinutesBetweenTwoStamps) {
    struct Case {
        Event event;
        double minutes;
    };
    const Case cases[] = {
        {MakeAppointment("", 16, 5, 2012, 10, 30), 0},
        {MakeAppointment("", 16, 5, 2012, 10, 29), -1},
        {MakeAppointment("", 16, 5, 2012, 11, 15), 45},
        {MakeAppointment("", 17, 5, 2012, 10, 30), 1440},
        {MakeAppointment("", 16, 6, 2012, 10, 30), 44640},
        {MakeAppointment("", 16, 5, 2011, 10, 30), -535680},
    };
    for (const Case& row : cases) EXPECT_EQ(MinutesToDue(row.event, frame_time), row.minutes);
}

TEST_F(NoticesTest, EveryMonthHas31DaysForTheMinutesToDue) {
    SetNow(2012, 4, 30, 10, 30);

    EXPECT_EQ(MinutesToDue(MakeAppointment("", 1, 5, 2012, 10, 30), frame_time), 2 * 1440);
}

TEST_F(NoticesTest, TheSecondsDoNotCountInTheMinutesToDue) {
    SetNow(2012, 5, 16, 10, 30, 59);

    EXPECT_EQ(MinutesToDue(MakeAppointment("", 16, 5, 2012, 10, 31), frame_time), 1);
}

TEST_F(NoticesTest, AWeeklyEventIsDueOnItsWeekdayAtItsTimeWhateverItsStoredDate) {
    Event weekly = MakeWeekly("", 3, 11, 0);
    weekly.date.day = 1;
    weekly.date.year = 1999;

    EXPECT_EQ(MinutesToDue(weekly, frame_time), 30);
    weekly.time.hour = 9;
    EXPECT_EQ(MinutesToDue(weekly, frame_time), -90);
}

TEST_F(NoticesTest, AWeeklyEventOnAnotherWeekdayIsFarAway) {
    for (const int wday : {0, 1, 2, 4, 5, 6, -1, 7}) {
        EXPECT_EQ(MinutesToDue(MakeWeekly("", wday, 10, 30), frame_time), 999) << wday;
    }
}

TEST_F(NoticesTest, RemindersAndUnknownKindsAreFarAway) {
    Event unknown = MakeAppointment("", 16, 5, 2012, 10, 30);
    unknown.kind = 3;

    EXPECT_EQ(MinutesToDue(MakeReminder("", 0, 1e6F), frame_time), 999);
    EXPECT_EQ(MinutesToDue(unknown, frame_time), 999);
}

TEST_F(NoticesTest, TheMinutesToDueAreANumberForNumbersAtTheirLimits) {
    for (const Event& event : EventsOfExtremes()) {
        EXPECT_TRUE(std::isfinite(MinutesToDue(event, frame_time)));
    }
}

TEST_F(NoticesTest, TheMinutesToDueHaveTheSignOfTheYearAtItsLimits) {
    EXPECT_LT(MinutesToDue(MakeAppointment("", 1, 1, INT_MIN, 0, 0), frame_time), 0);
    EXPECT_GT(MinutesToDue(MakeAppointment("", 1, 1, INT_MAX, 0, 0), frame_time), 0);
}

// ---- Reminders ----

TEST_F(NoticesTest, AReminderIsDueAfterItsPeriodAndThatOf3HoursAtItToo) {
    struct Case {
        int repeat;
        float elapsed;
        bool due;
    };
    const Case cases[] = {
        {0, 0, false},     {0, Below(3600), false}, {0, 3600, false}, {0, Above(3600), true},
        {1, 0, false},     {1, Above(3600), false}, {1, 7200, false}, {1, Below(7200), false},
        {2, 0, false},     {2, Above(7200), false}, {2, 10800, true}, {2, Below(10800), false},
        {0, 10800, true},  {1, Above(7200), true},  {1, 10800, true}, {2, Above(10800), true},
        {0, -3601, false}, {0, -kInfinity, false},  {0, NAN, false},  {2, NAN, false},
        {0, 1e9F, true},   {0, kInfinity, true},    {2, 1e9F, true},  {2, kInfinity, true},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(IsReminderDue(MakeReminder("r", row.repeat, row.elapsed)), row.due)
            << row.repeat << " after " << row.elapsed;
    }
}

TEST_F(NoticesTest, AReminderOfNoKnownPeriodIsNeverDue) {
    for (const int repeat : {INT_MIN, -1, 3, 4, INT_MAX}) {
        for (const float elapsed : {0.0F, 3601.0F, 10800.0F, 1e9F, kInfinity}) {
            EXPECT_FALSE(IsReminderDue(MakeReminder("r", repeat, elapsed))) << repeat << ", " << elapsed;
        }
    }
}

TEST_F(NoticesTest, OtherKindsAreNeverDueAsReminders) {
    for (Event event : EventsOfEachKind()) {
        event.elapsed = 1e6F;

        EXPECT_EQ(IsReminderDue(event), event.kind == kReminder) << event.kind;
    }
}

TEST_F(NoticesTest, AReminderIsDueWhateverItsDateAndFlags) {
    Event reminder = MakeReminder("r", 0, 4000);
    reminder.done = reminder.warned_60 = reminder.warned_30 = 1;
    reminder.date.year = 2030;

    EXPECT_TRUE(IsReminderDue(reminder));
}

// ---- Appointments and weekly events ----

/// Whether an event is due at so many minutes, by the announcements that have been given.
struct DueCase {
    int minutes;
    bool due_if_nothing_told, due_if_told_60, due_if_told_30, due_if_both_told;
};

constexpr DueCase kDueCases[] = {
    {1440, false, false, false, false}, {62, false, false, false, false}, {61, false, false, false, false},
    {60, true, false, true, false},     {59, true, false, true, false},   {45, true, false, true, false},
    {31, true, false, true, false},     {30, true, true, true, false},    {29, true, true, true, false},
    {1, true, true, true, false},       {0, true, true, true, true},      {-1, true, true, true, true},
    {-30, true, true, true, true},      {-61, true, true, true, true},    {-600, true, true, true, true},
};

TEST_F(NoticesTest, AnEventIsDueByItsMinutesAndTheAnnouncementsGiven) {
    for (const DueCase& row : kDueCases) {
        for (Event event : DatedEventsIn(row.minutes)) {
            if (row.minutes == 1440 && event.kind == kWeekly) continue;  // no time of this day
            SCOPED_TRACE(testing::Message() << row.minutes << " minutes, kind " << event.kind);
            EXPECT_EQ(IsDue(event), row.due_if_nothing_told);
            event.warned_60 = 1;
            EXPECT_EQ(IsDue(event), row.due_if_told_60);
            event.warned_30 = 1;
            EXPECT_EQ(IsDue(event), row.due_if_both_told);
            event.warned_60 = 0;
            EXPECT_EQ(IsDue(event), row.due_if_told_30);
        }
    }
}

TEST_F(NoticesTest, AnEventThatIsDoneIsNeverDue) {
    for (const DueCase& row : kDueCases) {
        for (Event event : DatedEventsIn(row.minutes)) {
            event.done = 1;

            EXPECT_FALSE(IsDue(event)) << row.minutes << " minutes, kind " << event.kind;
        }
    }
}

TEST_F(NoticesTest, FlagsOtherThanZeroAndOneCountAsSet) {
    for (const int flag : {2, 0x80, 0xFF}) {
        Event event = AppointmentIn(20);
        event.warned_60 = event.warned_30 = static_cast<std::uint8_t>(flag);
        EXPECT_FALSE(IsDue(event)) << flag;

        event = AppointmentIn(-5);
        event.done = static_cast<std::uint8_t>(flag);
        EXPECT_FALSE(IsDue(event)) << flag;
    }
}

TEST_F(NoticesTest, AWeeklyEventIsNotDueOnAnyOtherDay) {
    for (const int wday : {INT_MIN, -1, 0, 1, 2, 4, 5, 6, 7, INT_MAX}) {
        EXPECT_FALSE(IsDue(MakeWeekly("w", wday, 10, 30))) << wday;
        EXPECT_FALSE(IsDue(MakeWeekly("w", wday, 9, 0))) << wday;
    }
}

TEST_F(NoticesTest, RemindersAndUnknownKindsAreNeverDueByTheirDate) {
    for (const int minutes : {-5, 0, 20, 50}) {
        Event event = WeeklyIn(minutes);
        event.elapsed = 1e6F;
        event.kind = kReminder;
        EXPECT_FALSE(IsDue(event));
        for (const int kind : UnknownKinds()) {
            event.kind = kind;
            EXPECT_FALSE(IsDue(event)) << kind;
            EXPECT_FALSE(IsReminderDue(event)) << kind;
        }
    }
}

// ---- The life of the four fields ----

/// Expects that an event has these four fields and is otherwise, byte for byte, as it was before.
void ExpectLife(const Event& event, const Event& before, int warned_60, int warned_30, int done,
                float elapsed) {
    EXPECT_EQ(event.warned_60, warned_60);
    EXPECT_EQ(event.warned_30, warned_30);
    EXPECT_EQ(event.done, done);
    EXPECT_EQ(event.elapsed, elapsed);
    Event expected = before;
    expected.warned_60 = event.warned_60;
    expected.warned_30 = event.warned_30;
    expected.done = event.done;
    expected.elapsed = event.elapsed;
    EXPECT_TRUE(SameBytes(event, expected)) << "another field is changed";
}

/// Runs a step of an event's life on an event of each kind, once with all flags clear and once with all set,
/// and hands each to `expect` with what it was before.
template <typename Step, typename Expect>
void ForEachKindAndFlag(const std::vector<Event>& of_each_kind, Step step, Expect expect) {
    for (const Event& event : of_each_kind) {
        for (const int flag : {0, 1}) {
            SCOPED_TRACE(testing::Message() << "kind " << event.kind << ", flags " << flag);
            Event before = event;
            before.warned_60 = before.warned_30 = before.done = static_cast<std::uint8_t>(flag);
            before.elapsed = 50;
            ListedEvent after = before;

            step(after);

            expect(after, before, flag);
        }
    }
}

TEST_F(NoticesTest, StartingMakesARemindersWaitTheLongestPeriodAndLeavesOtherKindsAlone) {
    ForEachKindAndFlag(
        EventsOfEachKind(), [](ListedEvent& event) { StartReminder(event); },
        [](const Event& after, const Event& before, int flag) {
            ExpectLife(after, before, flag, flag, flag, after.kind == kReminder ? 10800.0F : 50.0F);
        });
}

TEST_F(NoticesTest, StartingMakesEveryReminderDueAtOnceButOneOfNoKnownPeriod) {
    for (const int repeat : {INT_MIN, -1, 0, 1, 2, 3, INT_MAX}) {
        ListedEvent reminder = MakeReminder("r", repeat, 5);

        StartReminder(reminder);

        EXPECT_EQ(IsReminderDue(reminder), 0 <= repeat && repeat <= 2) << repeat;
    }
}

TEST_F(NoticesTest, CountingAddsTheSecondsToARemindersWaitAndLeavesOtherKindsAlone) {
    ForEachKindAndFlag(
        EventsOfEachKind(), [](ListedEvent& event) { CountReminder(event, 0.25F); },
        [](const Event& after, const Event& before, int flag) {
            ExpectLife(after, before, flag, flag, flag, after.kind == kReminder ? 50.25F : 50.0F);
        });
}

TEST_F(NoticesTest, ConfirmingEndsTheWaitWhateverTheKind) {
    ForEachKindAndFlag(
        EventsOfEachKind(), [](ListedEvent& event) { ConfirmReminder(event); },
        [](const Event& after, const Event& before, int flag) {
            ExpectLife(after, before, flag, flag, flag, 0);
        });
}

TEST_F(NoticesTest, StartingAndConfirmingForgetWhatRoundingHasLost) {
    ListedEvent reminder = MakeReminder("r", 2, 9000);
    reminder.lost = 0.0003;
    ConfirmReminder(reminder);
    EXPECT_EQ(reminder.lost, 0);

    reminder.lost = 0.0003;
    StartReminder(reminder);

    EXPECT_EQ(reminder.lost, 0);
}

TEST_F(NoticesTest, AtAnyFrameRateAReminderComesWithinASecondOfItsPeriod) {
    for (const int rate : {8, 30, 60, 75, 144, 165, 240, 360, 1000}) {
        const float frame = 1 / static_cast<float>(rate);
        ListedEvent reminder = MakeReminder("r", 0, 0);
        double exact = 0;
        std::int64_t wrong = 0;
        for (reminder.repeat = 0; reminder.repeat <= kLastRepeat; ++reminder.repeat) {
            const double period = kRepeats[reminder.repeat].seconds;
            while (!IsReminderDue(reminder) && exact < period + 2) {
                exact += static_cast<double>(frame);
                CountReminder(reminder, frame);
                if (reminder.elapsed != static_cast<float>(exact)) ++wrong;
            }
            EXPECT_NEAR(exact, period, 1) << rate << " frames a second";
        }
        EXPECT_EQ(wrong, 0) << "frames at " << rate << " a second do not show the nearest float";
    }
}

TEST_F(NoticesTest, AReminderCountsOnPast3000SecondsHoweverShortTheFrames) {
    ListedEvent reminder = MakeReminder("r", 0, 3500);
    constexpr float kFrame = 1e-5F;  // a float near 3500 knows no steps below 2e-4

    for (int i = 0; i < 100'000; ++i) CountReminder(reminder, kFrame);

    EXPECT_NEAR(reminder.elapsed, 3501, 2e-4);
}

TEST_F(NoticesTest, AnnouncingAgainClearsDoneAlone) {
    ForEachKindAndFlag(
        EventsOfEachKind(), [](Event& event) { AnnounceAgain(event); },
        [](const Event& after, const Event& before, int flag) {
            ExpectLife(after, before, flag, flag, 0, 50);
        });
}

/// The minutes at which something changes, from both sides, and what then becomes of the flags.
struct FlagCase {
    double minutes;
    int warned_60, warned_30, done;
};

TEST_F(NoticesTest, MarkingSetsWhatTheMinutesSayAndClearsNothing) {
    const FlagCase cases[] = {
        {-1e6, 1, 1, 1},  {-1, 1, 1, 1},     {-0.001, 1, 1, 1}, {0, 1, 1, 0},
        {0.001, 1, 1, 0}, {1, 1, 1, 0},      {29, 1, 1, 0},     {30, 1, 1, 0},
        {31, 1, 0, 0},    {30.001, 1, 0, 0}, {59, 1, 0, 0},     {60, 1, 0, 0},
        {61, 0, 0, 0},    {999, 0, 0, 0},    {60.001, 0, 0, 0}, {1e6, 0, 0, 0},
    };
    for (const FlagCase& row : cases) {
        SCOPED_TRACE(row.minutes);
        ForEachKindAndFlag(
            EventsOfEachKind(), [&](Event& event) { MarkTold(event, row.minutes); },
            [&](const Event& after, const Event& before, int flag) {
                if (flag == 0) ExpectLife(after, before, row.warned_60, row.warned_30, row.done, 50);
                if (flag == 1) ExpectLife(after, before, 1, 1, 1, 50);
            });
    }
}

TEST_F(NoticesTest, TakingBackClearsWhatTheMinutesSayAndSetsNothing) {
    const FlagCase cases[] = {
        {-1e6, 1, 1, 1},   {-1, 1, 1, 1},  {0, 1, 1, 1},   {1, 1, 1, 1},  {30, 1, 1, 1},
        {30.001, 1, 0, 1}, {31, 1, 0, 1},  {59, 1, 0, 1},  {60, 1, 0, 1}, {61, 0, 0, 1},
        {60.001, 0, 0, 1}, {999, 0, 0, 1}, {1e6, 0, 0, 1},
    };
    for (const FlagCase& row : cases) {
        SCOPED_TRACE(row.minutes);
        ForEachKindAndFlag(
            EventsOfEachKind(), [&](Event& event) { TakeBack(event, row.minutes); },
            [&](const Event& after, const Event& before, int flag) {
                if (flag == 0) ExpectLife(after, before, 0, 0, 0, 50);
                if (flag == 1) ExpectLife(after, before, row.warned_60, row.warned_30, row.done, 50);
            });
    }
}

TEST_F(NoticesTest, RearmingClearsDoneOfAWeeklyEventOnAnyOtherDayAlone) {
    for (const int wday : {INT_MIN, -1, 0, 1, 2, 3, 4, 5, 6, 7, INT_MAX}) {
        std::vector<Event> all = EventsOfEachKind();
        for (Event& event : all) event.wday = wday;
        SCOPED_TRACE(wday);
        bool changed = false;
        ForEachKindAndFlag(
            all, [&](Event& event) { changed = Rearm(event, frame_time); },
            [&](const Event& after, const Event& before, int flag) {
                const bool rearmed = flag == 1 && after.kind == kWeekly && wday != kToday;
                EXPECT_EQ(changed, rearmed);
                ExpectLife(after, before, flag, flag, rearmed ? 0 : flag, 50);
            });
    }
}

// ---- Several steps of that life ----

TEST_F(NoticesTest, AnEventSeenInItsOwnMinuteIsDueAgainAtOnceAndDoneAMinuteLater) {
    for (Event event : DatedEventsIn(0)) {
        SetNow(2012, 5, 16, 10, 30);
        MarkTold(event, MinutesToDue(event, frame_time));
        EXPECT_TRUE(IsDue(event)) << event.kind;

        SetNow(2012, 5, 16, 10, 31);
        MarkTold(event, MinutesToDue(event, frame_time));
        EXPECT_FALSE(IsDue(event)) << event.kind;
    }
}

TEST_F(NoticesTest, AnEventSeenEarlierIsQuietUntilTheNextAnnouncement) {
    struct Case {
        int seen;        ///< so many minutes before its time
        int next_quiet;  ///< the last minute at which it is quiet
        int next_due;
    };
    for (const Case& row : {Case{60, 31, 30}, Case{45, 31, 30}, Case{30, 1, 0}, Case{1, 1, 0}}) {
        for (Event event : DatedEventsIn(0)) {
            SCOPED_TRACE(testing::Message() << "seen at " << row.seen << ", kind " << event.kind);
            MarkTold(event, row.seen);

            SetNowBefore(event, row.next_quiet);
            EXPECT_FALSE(IsDue(event));
            SetNowBefore(event, row.next_due);
            EXPECT_TRUE(IsDue(event));
        }
    }
}

TEST_F(NoticesTest, SeeingAReminderOrAWeeklyEventOfAnotherDayMarksNothing) {
    for (Event event : {MakeReminder("", 0, 1e6F), MakeWeekly("", 4, 9, 0)}) {
        MarkTold(event, MinutesToDue(event, frame_time));

        EXPECT_FALSE(event.warned_60 || event.warned_30 || event.done) << event.kind;
    }
}

TEST_F(NoticesTest, TheAnnouncementsOfAReminderOrAWeeklyEventOfAnotherDayAreTakenBack) {
    for (Event event : {MakeReminder("", 1, 50), MakeWeekly("", 5, 15, 20)}) {
        event.warned_60 = event.warned_30 = 1;

        TakeBack(event, MinutesToDue(event, frame_time));

        EXPECT_FALSE(event.warned_60 || event.warned_30) << event.kind;
    }
}

TEST_F(NoticesTest, AWeeklyEventArmedAgainIsDueAtItsTimeButNotAheadOfIt) {
    Event event = WeeklyIn(20);
    event.done = event.warned_60 = event.warned_30 = 1;
    SetNow(2012, 5, 17, 0, 0);
    EXPECT_TRUE(Rearm(event, frame_time));
    EXPECT_FALSE(IsDue(event));

    SetNow(2012, 5, 23, 10, 49);  // a minute before, a week later
    EXPECT_FALSE(IsDue(event));
    SetNow(2012, 5, 23, 10, 50);
    EXPECT_TRUE(IsDue(event));
}

}  // namespace
