// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: weekday names, fresh events, the record's layout, the order of two events, sorting, texts of the
// fields, numbers out of their range.
#include "calendar/events.h"

#include <climits>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <list>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "tests/unit/calendar_fixture.h"

namespace {

using Names = std::vector<std::string>;

TEST(GetWdayStrTest, NamesTheSevenDaysFromSundayOn) {
    EXPECT_STREQ(GetWdayStr(0), "dom");
    EXPECT_STREQ(GetWdayStr(1), "lun");
    EXPECT_STREQ(GetWdayStr(2), "mar");
    EXPECT_STREQ(GetWdayStr(3), "merc");
    EXPECT_STREQ(GetWdayStr(4), "giov");
    EXPECT_STREQ(GetWdayStr(5), "ven");
    EXPECT_STREQ(GetWdayStr(6), "sab");
}

TEST(GetWdayStrTest, GivesAnEmptyTextForSevenMinusOneAndAnyOtherNumber) {
    for (const int wday : {-1, 7, 8, 100, -7, INT_MAX, INT_MIN}) {
        GetWdayStr(3);

        EXPECT_STREQ(GetWdayStr(wday), "") << wday;
    }
}

TEST(GetWdayStrTest, KeepsItsTextInOneBufferThatTheNextCallOverwrites) {
    const char* first = GetWdayStr(3);

    const char* second = GetWdayStr(0);

    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "dom");
}

TEST(GetWdayStrTest, EmptiesTheWholeBufferBeforeItWrites) {
    GetWdayStr(3);

    const char* text = GetWdayStr(0);

    EXPECT_EQ(std::string(text, 5), std::string("dom\0\0", 5));
    EXPECT_EQ(std::string(GetWdayStr(7), 5), std::string(5, '\0'));
}

using EventsTest = CalendarTest;

// ---- Fresh events ----

TEST(DateTest, StartsAtZero) {
    const Date date;

    EXPECT_EQ(date.day, 0);
    EXPECT_EQ(date.month, 0);
    EXPECT_EQ(date.year, 0);
}

TEST(TimeTest, StartsAtMidnight) {
    const Time time;

    EXPECT_EQ(time.hour, 0);
    EXPECT_EQ(time.minute, 0);
}

TEST_F(EventsTest, AFreshEventMadeAt1437Reads1400OnTodaysDateWithoutTextsFlagsOrPeriod) {
    SetNow(2013, 12, 29, 14, 37, 21);

    const Event event;

    EXPECT_EQ(event.date.day, 29);
    EXPECT_EQ(event.date.month, 12);
    EXPECT_EQ(event.date.year, 2013);
    EXPECT_EQ(event.time.hour, 14);
    EXPECT_EQ(event.time.minute, 0);
    EXPECT_EQ(event.wday, 0);
    EXPECT_EQ(event.kind, kAppointment);
    EXPECT_EQ(event.repeat, 0);
    EXPECT_EQ(event.elapsed, 0);
    EXPECT_EQ(event.warned_60, 0);
    EXPECT_EQ(event.warned_30, 0);
    EXPECT_EQ(event.done, 0);
    EXPECT_EQ(NameOf(event), "");
    EXPECT_EQ(DescriptionOf(event), "");
}

TEST_F(EventsTest, AFreshEventInJanuaryIsInMonthOne) {
    SetNow(2013, 1, 1, 0, 59);

    const Event event;

    EXPECT_EQ(event.date.month, 1);
    EXPECT_EQ(event.wday, 2);
    EXPECT_EQ(event.time.hour, 0);
}

TEST_F(EventsTest, AFreshEventZeroesEveryByteOfItsTexts) {
    alignas(Event) unsigned char memory[sizeof(Event)];
    std::memset(memory, 0xEE, sizeof memory);

    const Event* event = new (memory) Event;

    EXPECT_EQ(std::string(event->name, sizeof event->name), std::string(20, '\0'));
    EXPECT_EQ(std::string(event->description, sizeof event->description), std::string(512, '\0'));
}

TEST_F(EventsTest, AFreshEventTakesTheTimeOfItsMakingAndNotTheFrames) {
    SetNow(2013, 1, 1, 8, 0);
    fakes::SetLocalTime(2013, 1, 2, 9, 0);

    EXPECT_EQ(Event().date.day, 2);
    EXPECT_EQ(Event().time.hour, 9);
}

// ---- The record's layout ----

TEST(EventLayoutTest, AnEventInTheListBeginsWithItsRecord) {
    const ListedEvent event = Event();

    EXPECT_EQ(static_cast<const void*>(static_cast<const Event*>(&event)), static_cast<const void*>(&event));
    EXPECT_EQ(event.lost, 0);
}

TEST(EventLayoutTest, HasItsFieldsAtTheirPlacesInTheFile) {
    EXPECT_EQ(sizeof(Event), 572U);
    EXPECT_EQ(offsetof(Event, name), 0U);
    EXPECT_EQ(offsetof(Event, description), 20U);
    EXPECT_EQ(offsetof(Event, date), 532U);
    EXPECT_EQ(offsetof(Event, time), 544U);
    EXPECT_EQ(offsetof(Event, wday), 552U);
    EXPECT_EQ(offsetof(Event, kind), 556U);
    EXPECT_EQ(offsetof(Event, repeat), 560U);
    EXPECT_EQ(offsetof(Event, elapsed), 564U);
    EXPECT_EQ(offsetof(Event, warned_60), 568U);
    EXPECT_EQ(offsetof(Event, warned_30), 569U);
    EXPECT_EQ(offsetof(Event, done), 570U);
    EXPECT_EQ(offsetof(Date, day), 0U);
    EXPECT_EQ(offsetof(Date, month), 4U);
    EXPECT_EQ(offsetof(Date, year), 8U);
    EXPECT_EQ(sizeof(Date), 12U);
    EXPECT_EQ(offsetof(Time, hour), 0U);
    EXPECT_EQ(offsetof(Time, minute), 4U);
    EXPECT_EQ(sizeof(Time), 8U);
}

// ---- The order of two events ----

TEST_F(EventsTest, AReminderComesBeforeAnythingElse) {
    const Event reminder = MakeReminder("r", 0, 0);
    const Event past = MakeAppointment("a", 1, 1, 1900, 0, 0);
    const Event weekly = MakeWeekly("w", 3, 0, 0);

    EXPECT_TRUE(sort_by_date(reminder, past));
    EXPECT_FALSE(sort_by_date(past, reminder));
    EXPECT_TRUE(sort_by_date(reminder, weekly));
    EXPECT_FALSE(sort_by_date(weekly, reminder));
}

TEST_F(EventsTest, OfTwoRemindersEachMustComeBeforeTheOther) {
    const Event a = MakeReminder("a", 0, 0);
    const Event b = MakeReminder("b", 2, 100);

    EXPECT_TRUE(sort_by_date(a, b));
    EXPECT_TRUE(sort_by_date(b, a));
    EXPECT_TRUE(sort_by_date(a, a));
}

TEST_F(EventsTest, AppointmentsAreOrderedByYearMonthDayHourAndMinute) {
    const Event event = MakeAppointment("", 16, 5, 2012, 10, 30);
    const std::vector<Event> later = {
        MakeAppointment("", 1, 1, 2013, 0, 0),    MakeAppointment("", 1, 6, 2012, 0, 0),
        MakeAppointment("", 17, 5, 2012, 0, 0),   MakeAppointment("", 16, 5, 2012, 11, 0),
        MakeAppointment("", 16, 5, 2012, 10, 31),
    };
    for (std::size_t i = 0; i < later.size(); ++i) {
        EXPECT_TRUE(sort_by_date(event, later[i])) << i;
        EXPECT_FALSE(sort_by_date(later[i], event)) << i;
    }
}

TEST_F(EventsTest, OfTwoEventsAtTheSameMinuteNeitherComesFirst) {
    const Event a = MakeAppointment("a", 16, 5, 2012, 10, 30);
    const Event b = MakeAppointment("b", 16, 5, 2012, 10, 30);

    EXPECT_FALSE(sort_by_date(a, b));
    EXPECT_FALSE(sort_by_date(b, a));
}

/// Expects that a weekly event has the place of an appointment at that day and time.
void ExpectPlacedLike(const Event& weekly, const Event& appointment) {
    Event before = appointment;
    Event after = appointment;
    --before.time.minute;
    ++after.time.minute;
    EXPECT_FALSE(sort_by_date(weekly, appointment));
    EXPECT_FALSE(sort_by_date(appointment, weekly));
    EXPECT_TRUE(sort_by_date(before, weekly));
    EXPECT_TRUE(sort_by_date(weekly, after));
    EXPECT_FALSE(sort_by_date(weekly, before));
    EXPECT_FALSE(sort_by_date(after, weekly));
}

TEST_F(EventsTest, AMondayEventSeenOnAWednesdayIsOrderedFourDaysAfterItsStoredDay) {
    SetNow(2012, 5, 16, 10, 30);
    ASSERT_EQ(LocalTime().tm_wday, 3);

    ExpectPlacedLike(MakeWeekly("", 1, 9, 15), MakeAppointment("", 20, 5, 2012, 9, 15));
}

TEST_F(EventsTest, AWeeklyEventIsOrderedByTheDaysToItsWeekdayWhichWrapWithSix) {
    for (int today = 0; today < 7; ++today) {
        SetNow(2012, 7, 1 + today, 12, 0);  // the first of July was a Sunday
        ASSERT_EQ(LocalTime().tm_wday, today);
        for (int wday = 0; wday < 7; ++wday) {
            Event weekly = MakeWeekly("", wday, 9, 15);
            weekly.date.day = 10;
            const int offset = wday >= today ? wday - today : 6 - (today - wday);
            SCOPED_TRACE(testing::Message() << "weekday " << wday << " seen on " << today);

            ExpectPlacedLike(weekly, MakeAppointment("", 10 + offset, 7, 2012, 9, 15));
        }
    }
}

TEST_F(EventsTest, AWeeklyEventIsOrderedByItsOwnStoredMonthAndYear) {
    Event weekly = MakeWeekly("", 5, 9, 15);  // Friday, seen on a Wednesday
    weekly.date.day = 3;
    weekly.date.month = 11;
    weekly.date.year = 2001;

    ExpectPlacedLike(weekly, MakeAppointment("", 5, 11, 2001, 9, 15));
}

TEST_F(EventsTest, ADayGoneByInItsMonthIsNoReasonToOrderAWeeklyEventOtherwise) {
    Event weekly = MakeWeekly("", 3, 1, 0);  // today, hours ago

    ExpectPlacedLike(weekly, MakeAppointment("", 16, 5, 2012, 1, 0));
}

TEST_F(EventsTest, AnAppointmentsWeekdayDoesNotCount) {
    Event a = MakeAppointment("", 17, 5, 2012, 9, 0);
    Event b = MakeAppointment("", 18, 5, 2012, 9, 0);
    a.wday = 2;
    b.wday = 3;

    EXPECT_TRUE(sort_by_date(a, b));
}

TEST_F(EventsTest, AnEventOfAnUnknownKindIsOrderedByItsDate) {
    Event unknown = MakeAppointment("", 17, 5, 2012, 9, 0);
    unknown.kind = 77;
    unknown.wday = 1;

    ExpectPlacedLike(unknown, MakeAppointment("", 17, 5, 2012, 9, 0));
}

// ---- Sorting ----

TEST_F(EventsTest, SortingPutsTheReminderFirstThenTodayThenTomorrow) {
    AddAppointment("domani", 17, 5, 2012, 9, 0);
    AddAppointment("oggi", 16, 5, 2012, 18, 0);
    AddReminder("promemoria", 1, 0);

    SortEvents();

    EXPECT_EQ(NamesOf(events), (Names{"promemoria", "oggi", "domani"}));
}

TEST_F(EventsTest, SortingKeepsTheOrderOfAppointmentsAtTheSameTime) {
    AddAppointment("b", 17, 5, 2012, 9, 0);
    AddAppointment("a", 17, 5, 2012, 9, 0);
    AddAppointment("first", 16, 5, 2012, 9, 0);
    AddAppointment("c", 17, 5, 2012, 9, 0);

    SortEvents();

    EXPECT_EQ(NamesOf(events), (Names{"first", "b", "a", "c"}));
}

TEST_F(EventsTest, SortingLeavesTheRemindersOfAnAcceptedListInTheirOrder) {
    AddReminder("b", 1, 0);
    AddReminder("a", 0, 0);
    AddReminder("c", 2, 0);
    AddAppointment("oggi", 16, 5, 2012, 18, 0);
    AddAppointment("domani", 17, 5, 2012, 9, 0);

    for (int i = 0; i < 10; ++i) {
        SortEvents();

        EXPECT_EQ(NamesOf(events), (Names{"b", "a", "c", "oggi", "domani"}));
    }
}

TEST_F(EventsTest, SortingBringsEveryReminderToTheFront) {
    for (int i = 0; i < 20; ++i) {
        AddAppointment("a", 28 - i, 5, 2012, 9, 0);
        AddReminder("r", i % 3, 0);
        AddWeekly("w", i % 7, i, 0);
    }

    SortEvents();

    ASSERT_EQ(events.size(), 60U);
    std::vector<Event> sorted(events.begin(), events.end());
    for (std::size_t i = 0; i < 20; ++i) EXPECT_EQ(sorted[i].kind, kReminder);
    for (std::size_t i = 20; i < 60; ++i) EXPECT_NE(sorted[i].kind, kReminder);
    for (std::size_t i = 21; i < 60; ++i) EXPECT_FALSE(sort_by_date(sorted[i], sorted[i - 1])) << i;
}

TEST_F(EventsTest, SortingMovesNoEventInMemory) {
    Event& last = AddAppointment("domani", 17, 5, 2012, 9, 0);
    AddAppointment("oggi", 16, 5, 2012, 18, 0);

    SortEvents();

    EXPECT_EQ(&events.back(), &last);
}

TEST_F(EventsTest, SortingAnEmptyListLeavesItEmpty) {
    SortEvents();

    EXPECT_TRUE(events.empty());
}

TEST_F(EventsTest, SortingFollowsTheDay) {
    AddWeekly("lunedi", 1, 9, 0);
    AddWeekly("giovedi", 4, 9, 0);
    SortEvents();
    EXPECT_EQ(NamesOf(events), (Names{"giovedi", "lunedi"}));  // on a Wednesday: 1 day and 4

    SetNow(2012, 5, 21, 10, 30);
    SortEvents();

    EXPECT_EQ(NamesOf(events), (Names{"lunedi", "giovedi"}));  // on a Monday: 0 days and 3
}

/// Expects that SortEvents() gives the order of the list's own sort, and leaves every event where it lies.
void ExpectOrderOfTheListsOwnSort() {
    std::list<const ListedEvent*> expected;
    for (const ListedEvent& event : events) expected.push_back(&event);
    expected.sort([](const Event* a, const Event* b) { return sort_by_date(*a, *b); });

    SortEvents();

    std::list<const ListedEvent*> sorted;
    for (const ListedEvent& event : events) sorted.push_back(&event);
    ASSERT_EQ(sorted, expected);
}

TEST_F(EventsTest, SortingGivesTheOrderOfTheListsOwnSort) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        events.clear();
        AddAppointment("last", 1, 1, 2030, 0, 0);
        const int count = round % 70;
        for (int i = 0; i < count; ++i) Add(RandomEvent(random, std::to_string(i)));
        AddAppointment("first", 1, 1, 2000, 0, 0);  // so the order is never accepted
        SCOPED_TRACE(round);

        ExpectOrderOfTheListsOwnSort();
        if (HasFatalFailure()) return;
    }
}

TEST_F(EventsTest, SortingAListThatHasChangedSinceTheLastSortGivesTheOrderOfTheListsOwnSort) {
    std::mt19937 random(2);
    for (int i = 0; i < 200; ++i) Add(RandomEvent(random, std::to_string(i)));
    for (int round = 0; round < 500; ++round) {
        events.erase(std::next(events.begin(), static_cast<int>(random() % 100)),
                     std::prev(events.end(), 50));
        for (int i = 0; i < 100; ++i) Add(RandomEvent(random, std::to_string(i)));
        events.push_front(MakeAppointment("last", 1, 1, 2030, 0, 0));
        AddAppointment("first", 1, 1, 2000, 0, 0);
        SCOPED_TRACE(round);

        ExpectOrderOfTheListsOwnSort();
        if (HasFatalFailure()) return;
    }
}

TEST_F(EventsTest, SortingByNumbersAtTheirLimitsGivesTheOrderOfTheListsOwnSort) {
    for (const Event& event : EventsOfExtremes()) Add(event);
    events.reverse();

    ExpectOrderOfTheListsOwnSort();
}

// ---- Whether an order is accepted ----

TEST_F(EventsTest, AnOrderIsAcceptedWhileStampsDoNotFallAndRemindersAreInFront) {
    OrderCheck order;
    EXPECT_TRUE(order.Accepts(MakeReminder("b", 0, 0)));
    EXPECT_TRUE(order.Accepts(MakeReminder("a", 0, 0)));
    EXPECT_TRUE(order.Accepts(MakeAppointment("", 16, 5, 2012, 9, 0)));
    EXPECT_TRUE(order.Accepts(MakeAppointment("", 16, 5, 2012, 9, 0)));
    EXPECT_FALSE(order.Accepts(MakeAppointment("", 16, 5, 2012, 8, 59)));
    EXPECT_TRUE(order.Accepts(MakeWeekly("", 4, 9, 0)));
    EXPECT_FALSE(order.Accepts(MakeReminder("c", 0, 0)));
}

// ---- Texts of the fields ----

TEST_F(EventsTest, ATextEndsAtItsNul) {
    Event event;
    std::memcpy(event.name, "ab\0cd", 5);
    std::memcpy(event.description, "xyz\0w", 5);

    EXPECT_EQ(NameOf(event), "ab");
    EXPECT_EQ(DescriptionOf(event), "xyz");
}

TEST_F(EventsTest, ATextWithoutNulEndsAtTheEndOfItsField) {
    Event event;
    SetText(event.name, std::string(20, 'n'));
    SetText(event.description, std::string(512, 'd'));

    EXPECT_EQ(NameOf(event), std::string(20, 'n'));
    EXPECT_EQ(DescriptionOf(event), std::string(512, 'd'));
}

// ---- Numbers out of their range ----

TEST_F(EventsTest, TheOrderHoldsForNumbersAtTheirLimits) {
    const std::vector<Event> extremes = EventsOfExtremes();
    for (const Event& a : extremes) {
        for (const Event& b : extremes) {
            if (a.kind == kReminder) {
                EXPECT_TRUE(sort_by_date(a, b));
            } else {
                EXPECT_FALSE(sort_by_date(a, b) && sort_by_date(b, a));
            }
        }
    }
}

TEST_F(EventsTest, SortingKeepsEveryEventWithNumbersAtTheirLimits) {
    for (const Event& event : EventsOfExtremes()) Add(event);
    const std::size_t size = events.size();

    SortEvents();

    EXPECT_EQ(events.size(), size);
    EXPECT_EQ(events.front().kind, kReminder);
}

TEST_F(EventsTest, AWeeklyEventWhoseDayIsTheHighestNumberStaysLastWhateverItsOffset) {
    Event weekly = MakeWeekly("", 6, 9, 0);
    weekly.date.day = INT_MAX;
    Event lower = weekly;
    lower.date.day = INT_MAX - 10;

    EXPECT_FALSE(sort_by_date(weekly, MakeAppointment("", 1, 1, 2013, 0, 0)));
    EXPECT_TRUE(sort_by_date(lower, weekly));
}

TEST_F(EventsTest, AWeekdayAtItsLimitsOrdersAnEventFarOffAndNotTheOtherWayRound) {
    const Event appointment = MakeAppointment("", 17, 5, 2012, 9, 0);

    EXPECT_TRUE(sort_by_date(MakeWeekly("", INT_MIN, 9, 0), appointment));
    EXPECT_TRUE(sort_by_date(appointment, MakeWeekly("", INT_MAX, 9, 0)));
}

TEST_F(EventsTest, EveryScreenDrawsNumbersAtTheirLimits) {
    for (const Event& event : EventsOfExtremes()) {
        for (const int screen : {kOwlScreen, kListScreen, kEditorScreen, kViewScreen}) {
            events.clear();
            edit_event = &Add(event);
            menu_case_id = screen;

            Frame(0.125F);

            EXPECT_EQ(ScreenShown(), screen);
            EXPECT_EQ(events.size(), 1U);
        }
    }
}

}  // namespace
