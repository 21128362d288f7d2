// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What must hold for any list of events: sorting, saving and loading, the editor's arrows.
#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "calendar/events.h"
#include "calendar/store.h"
#include "tests/properties/any_event.h"
#include "tests/unit/calendar_fixture.h"
// After GoogleTest.
#include <rapidcheck/gtest.h>

namespace {

using Addresses = std::vector<const Event*>;

class Properties : public CalendarTest {
  protected:
    /// Runs a property, as RC_GTEST_PROP does, with this fixture.
    template <typename Property>
    static void Check(const Property& property) {
        rc::detail::checkGTest(property);
    }

    static void Fill(const std::vector<Event>& list) {
        events.clear();
        edit_event = nullptr;
        for (const Event& event : list) events.emplace_back(event);
    }

    /// Returns the events by where they lie: sorting moves none.
    static Addresses InOrder() {
        Addresses order;
        for (const Event& event : events) order.push_back(&event);
        return order;
    }

    static std::string Bytes() {
        std::string bytes;
        for (const Event& event : events) bytes.append(reinterpret_cast<const char*>(&event), sizeof event);
        return bytes;
    }

    /// Returns whether sort_by_date wants the second of two neighbours first, and not the first as well.
    static bool WrongWay(const Event& first, const Event& second) {
        return sort_by_date(second, first) && !sort_by_date(first, second);
    }

    static bool IsInOrder() {
        return std::adjacent_find(events.begin(), events.end(), WrongWay) == events.end();
    }
};

// ---- Sorting ----

TEST_F(Properties, SortingIsAPermutationInTheRightOrder) {
    Check([] {
        Fill(*rc::gen::container<std::vector<Event>>(EventOfAFewDays()));
        Addresses before = InOrder();
        const std::string bytes = Bytes();

        SortEvents();

        Addresses after = InOrder();
        RC_ASSERT(IsInOrder());
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        RC_ASSERT(before == after);
        RC_ASSERT(bytes.size() == Bytes().size());
    });
}

TEST_F(Properties, SortingLeavesAnAcceptedListAlone) {
    Check([] {
        Fill(*rc::gen::container<std::vector<Event>>(EventOfAFewDays()));
        const bool accepted = IsInOrder();
        const Addresses before = InOrder();

        SortEvents();

        const Addresses once = InOrder();
        RC_CLASSIFY(accepted, "accepted before");
        RC_ASSERT(!accepted || once == before);
        for (int frame = 0; frame < 3; ++frame) SortEvents();
        RC_ASSERT(InOrder() == once);
    });
}

TEST_F(Properties, SortingKeepsTheOrderOfEventsOfTheSameTime) {
    Check([] {
        Fill(*rc::gen::container<std::vector<Event>>(EventOfAFewDays()));
        const Addresses before = InOrder();
        const auto place = [&](const Event* event) {
            return std::find(before.begin(), before.end(), event) - before.begin();
        };

        SortEvents();

        const Addresses after = InOrder();
        for (std::size_t i = 1; i < after.size(); ++i) {
            const Event& first = *after[i - 1];
            const Event& second = *after[i];
            if (first.kind == kReminder || second.kind == kReminder) continue;
            if (sort_by_date(first, second)) continue;  // not of the same time
            RC_ASSERT(place(&first) < place(&second));
        }
    });
}

TEST_F(Properties, SortingGivesWhatTheListsOwnSortGives) {
    Check([] {
        Fill(*rc::gen::container<std::vector<Event>>(EventOfAnyBytes()));
        if (IsInOrder()) return;
        std::list<ListedEvent> copy = events;
        copy.sort(sort_by_date);
        std::string expected;
        for (const Event& event : copy) expected.append(reinterpret_cast<const char*>(&event), sizeof event);

        SortEvents();

        RC_ASSERT(Bytes() == expected);
    });
}

// ---- The store ----

TEST_F(Properties, WhatIsSavedIsLoadedAndSavedAgainToTheSameBytes) {
    Check([] {
        Fill(*rc::gen::container<std::vector<Event>>(EventOfAnyBytes()));
        // A reminder is due at the start: loading sets its time, so it is set before.
        for (ListedEvent& event : events) StartReminder(event);
        const std::string bytes = Bytes();

        RC_ASSERT(SaveEvents());
        const std::string file = ReadFile("database.bin");
        LoadEvents();

        RC_ASSERT(file.substr(4) == bytes);
        RC_ASSERT(Bytes() == bytes);
        RC_ASSERT(SaveEvents());
        RC_ASSERT(ReadFile("database.bin") == file);
    });
}

TEST_F(Properties, AStoreCutAnywhereLoadsWhatIsThereAndIsKept) {
    Check([] {
        for (const char* old : {"database.bin", "database.bin.bak"}) std::filesystem::remove(old);
        Fill(*rc::gen::nonEmpty(rc::gen::container<std::vector<Event>>(EventOfAFewDays())));
        for (ListedEvent& event : events) StartReminder(event);
        const std::string bytes = Bytes();
        const std::size_t count = events.size();
        LoadEvents();  // forgets what was known of the last file
        Fill({});
        std::string file = std::string(4, '\0') + bytes;
        file[0] = static_cast<char>(count);
        file[1] = static_cast<char>(count / 256);
        const auto length = *rc::gen::inRange<std::size_t>(4, file.size());
        WriteFile("database.bin", file.substr(0, length));

        testing::internal::CaptureStderr();
        LoadEvents();
        const bool saved = SaveEvents();
        const std::string said = testing::internal::GetCapturedStderr();

        RC_ASSERT(events.size() == count);
        const std::size_t whole = (length - 4) / sizeof(Event) * sizeof(Event);
        RC_ASSERT(Bytes().substr(0, whole) == bytes.substr(0, whole));
        RC_ASSERT(saved);
        RC_ASSERT(ReadFile("database.bin.bak") == file.substr(0, length));
        RC_ASSERT(said.find("danneggiato") != std::string::npos);
    });
}

// ---- Arrows ----

/// A pair of arrows of the editor and the range of what it changes.
struct Arrows {
    EventKind kind;
    double x, up_y, down_y;
    std::int32_t& (*field)(Event&);
    std::int32_t first, last;
};

// Deliberate in the editor: a month that is lowered below January becomes 31.
constexpr Arrows kArrows[] = {
    {kWeekly, 150, 410, 362, [](Event& e) -> std::int32_t& { return e.wday; }, 0, 6},
    {kAppointment, 105, 410, 362, [](Event& e) -> std::int32_t& { return e.date.day; }, 1, 31},
    {kAppointment, 150, 410, 362, [](Event& e) -> std::int32_t& { return e.date.month; }, 1, 31},
    {kAppointment, 210, 410, 362, [](Event& e) -> std::int32_t& { return e.date.year; }, 1900, 2400},
    {kAppointment, 105, 314, 266, [](Event& e) -> std::int32_t& { return e.time.hour; }, 0, 23},
    {kWeekly, 105, 314, 266, [](Event& e) -> std::int32_t& { return e.time.hour; }, 0, 23},
    {kAppointment, 150, 314, 266, [](Event& e) -> std::int32_t& { return e.time.minute; }, 0, 59},
    {kWeekly, 150, 314, 266, [](Event& e) -> std::int32_t& { return e.time.minute; }, 0, 59},
    {kReminder, 215, 365, 315, [](Event& e) -> std::int32_t& { return e.repeat; }, 0, 2},
};

TEST_F(Properties, ArrowsNeverLeaveTheirRangesAndMoveByOneOrToAnEnd) {
    Check([] {
        const Arrows& arrows = kArrows[*rc::gen::inRange<std::size_t>(0, std::size(kArrows))];
        Fill({MakeEvent(arrows.kind, "evento")});
        edit_event = &events.front();
        menu_case_id = kEditorScreen;
        std::int32_t& value = arrows.field(*edit_event);
        value = *rc::gen::inRange(arrows.first, arrows.last + 1);
        const Event others = *edit_event;
        for (const bool up : *rc::gen::container<std::vector<bool>>(rc::gen::arbitrary<bool>())) {
            const std::int32_t before = value;
            ClickAt(arrows.x, up ? arrows.up_y : arrows.down_y);
            RC_ASSERT(value >= arrows.first);
            RC_ASSERT(value <= arrows.last || arrows.field(*edit_event) == edit_event->date.year);
            const bool by_one = value == before + (up ? 1 : -1);
            const bool to_an_end = up ? value == arrows.first : value == arrows.last || before == 1900;
            RC_ASSERT(by_one || to_an_end);
        }
        Event now = *edit_event;
        Event then = others;
        arrows.field(now) = arrows.field(then) = 0;
        RC_ASSERT(SameBytes(now, then));
    });
}

}  // namespace
