// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the demand for attention, rises, replacing and closing, the click, what is unsaved.
#include "app/attention.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/unit/calendar_fixture.h"

namespace {

using Demands = std::vector<bool>;
using Names = std::vector<std::string>;

constexpr std::uint64_t kOneSecond = 1'000'000'000;

/// It is Wednesday, 16 May 2012, 10:30, and nobody sees the window.
class AttentionTest : public CalendarTest {
  protected:
    void SetUp() override {
        CalendarTest::SetUp();
        fakes::desktop().seen = false;
    }

    /// Returns an appointment that is due in so many minutes.
    static Event DueIn(int minutes, const std::string& name = "visita") {
        return MakeAppointment(name, 16, 5, 2012, 10, 30 + minutes);
    }

    static Names Titles() {
        Names titles;
        for (const DesktopNotice& notice : fakes::desktop().notices) titles.push_back(notice.title);
        return titles;
    }
};

// ---- The demand for attention ----

TEST_F(AttentionTest, AttentionIsDemandedOnceWhileSomethingIsDueAndTheWindowHasNotTheFocus) {
    fakes::desktop().focused = false;
    Frame();
    EXPECT_EQ(fakes::desktop().demands, Demands());
    Add(DueIn(20));

    for (int i = 0; i < 3; ++i) Frame();

    EXPECT_EQ(fakes::desktop().demands, (Demands{true}));
}

TEST_F(AttentionTest, ItIsDemandedOfAUserWhoSeesTheWindowToo) {
    fakes::desktop().seen = true;
    fakes::desktop().focused = false;
    Add(DueIn(20));

    Frame();

    EXPECT_EQ(fakes::desktop().demands, (Demands{true}));
}

TEST_F(AttentionTest, TheFocusTakesItBackAndItsLossDemandsItAgain) {
    fakes::desktop().focused = false;
    Add(DueIn(20));
    Frame();

    fakes::desktop().focused = true;
    Frame();
    EXPECT_EQ(fakes::desktop().demands, (Demands{true, false}));
    fakes::desktop().focused = false;
    Frame();
    EXPECT_EQ(fakes::desktop().demands, (Demands{true, false, true}));
}

TEST_F(AttentionTest, WhereNothingIsDueAnyMoreItIsTakenBack) {
    fakes::desktop().focused = false;
    Add(DueIn(20));
    Frame();
    events.clear();

    Frame();

    EXPECT_EQ(fakes::desktop().demands, (Demands{true, false}));
}

TEST_F(AttentionTest, WithTheFocusNothingIsDemanded) {
    Add(DueIn(20));

    Frame();

    EXPECT_EQ(fakes::desktop().demands, Demands());
}

// ---- Rises ----

TEST_F(AttentionTest, ANoticeTellsWhatAndWhenAndTheDescription) {
    Event event = DueIn(25, "Dentista");
    SetText(event.description, "portare la lastra\ne il libretto");
    Add(event);

    Frame();

    ASSERT_EQ(fakes::desktop().notices.size(), 1U);
    const DesktopNotice& notice = fakes::desktop().notices[0];
    EXPECT_EQ(notice.title, "Dentista");
    EXPECT_EQ(notice.text, "Oggi alle 10:55, tra 25 minuti\nportare la lastra");
    EXPECT_STREQ(notice.category, "x-ulmaro.event.due");
}

TEST_F(AttentionTest, ThereIsOneNoticeForARise) {
    Add(DueIn(20));

    for (int i = 0; i < 5; ++i) Frame();

    EXPECT_EQ(Titles(), (Names{"visita"}));
    EXPECT_TRUE(fakes::desktop().notice_shown);
    EXPECT_EQ(fakes::desktop().notices_closed, 0);
}

TEST_F(AttentionTest, WhileSomebodySeesTheWindowThereIsNone) {
    fakes::desktop().seen = true;
    Add(DueIn(20));

    Frame();

    EXPECT_EQ(Titles(), Names());
    EXPECT_EQ(fakes::desktop().notices_closed, 0);
}

TEST_F(AttentionTest, WhatFellDueBeforeTheWindowWentOutOfSightIsNotTold) {
    fakes::desktop().seen = true;
    Add(DueIn(20));
    Frame();
    fakes::desktop().nanoseconds += kOneSecond;
    Frame();
    fakes::desktop().seen = false;

    Frame();

    EXPECT_EQ(Titles(), Names());
}

TEST_F(AttentionTest, WhatFellDueLessThanASecondBeforeIsTold) {
    fakes::desktop().seen = true;
    Add(DueIn(20));
    Frame();
    fakes::desktop().nanoseconds += kOneSecond - 1;
    Frame();
    EXPECT_EQ(Titles(), Names());
    fakes::desktop().seen = false;

    for (int i = 0; i < 3; ++i) Frame();

    EXPECT_EQ(Titles(), (Names{"visita"}));
}

TEST_F(AttentionTest, ANoticeThatWasShownIsOverWithTheFirstGlimpse) {
    Add(DueIn(20));
    Frame();
    for (const bool seen : {true, false}) {
        fakes::desktop().seen = seen;
        Frame();
    }

    EXPECT_EQ(Titles(), (Names{"visita"}));
    EXPECT_FALSE(fakes::desktop().notice_shown);
}

TEST_F(AttentionTest, TheNextRiseReplacesTheNotice) {
    Add(DueIn(20, "prima"));
    Frame();
    Add(DueIn(10, "seconda"));

    Frame();

    EXPECT_EQ(Titles(), (Names{"prima", "seconda"}));
    EXPECT_EQ(fakes::desktop().notices_closed, 0);
}

TEST_F(AttentionTest, ARiseByAnEventThatReadsTheSameIsTold) {
    Add(DueIn(20));
    Frame();
    Add(DueIn(20));

    Frame();

    EXPECT_EQ(Titles(), (Names{"visita", "visita"}));
}

TEST_F(AttentionTest, AnEventThatTakesAnothersPlaceIsNoRise) {
    Add(DueIn(20, "prima"));
    Frame();
    events.clear();
    Add(DueIn(10, "seconda"));

    Frame();

    EXPECT_EQ(n_notify, 1);
    EXPECT_EQ(Titles(), (Names{"prima"}));
}

TEST_F(AttentionTest, NamesTheEventThatFellDueAndNotTheForemost) {
    Add(DueIn(10, "prima"));
    Frame();
    AddReminder("acqua", 0, 3599.9F);
    Frame(0.2F);
    ASSERT_EQ(NameOf(events.front()), "acqua");
    Add(DueIn(60, "dopo"));

    Frame();

    EXPECT_EQ(Titles(), (Names{"prima", "acqua", "dopo"}));
}

TEST_F(AttentionTest, OfSeveralItNamesTheFirstOfTheListInOrder) {
    Add(DueIn(20, "dopo"));
    Add(DueIn(10, "prima"));
    Add(DueIn(15, "in mezzo"));

    Frame();

    EXPECT_EQ(n_notify, 3);
    EXPECT_EQ(Titles(), (Names{"prima"}));
}

TEST_F(AttentionTest, AnEventThatIsDueAgainIsTold) {
    ListedEvent& event = AddReminder("acqua", 0, 4000);
    Frame();
    ConfirmReminder(event);
    Frame();
    event.elapsed = 4000;

    Frame();

    EXPECT_EQ(Titles(), (Names{"acqua", "acqua"}));
}

TEST_F(AttentionTest, WhileAPanelIsOpenNothingIsTold) {
    menu_case_id = kListScreen;
    Add(DueIn(20));

    Frame();

    EXPECT_EQ(Titles(), Names());
}

// ---- Closing ----

TEST_F(AttentionTest, WhereNothingIsDueAnyMoreTheNoticeGoes) {
    Add(DueIn(20));
    Frame();
    events.clear();

    for (int i = 0; i < 3; ++i) Frame();

    EXPECT_FALSE(fakes::desktop().notice_shown);
    EXPECT_EQ(fakes::desktop().notices_closed, 1);
}

TEST_F(AttentionTest, WhileSomethingElseIsDueTheNoticeStays) {
    Add(DueIn(10, "prima"));
    Add(DueIn(20, "seconda"));
    Frame();
    events.pop_front();

    Frame();

    EXPECT_EQ(Titles(), (Names{"prima"}));
    EXPECT_TRUE(fakes::desktop().notice_shown);
}

TEST_F(AttentionTest, WhenSomebodySeesTheWindowTheNoticeGoesAndDoesNotComeBack) {
    Add(DueIn(20));
    Frame();
    fakes::desktop().seen = true;
    Frame();
    EXPECT_FALSE(fakes::desktop().notice_shown);
    fakes::desktop().seen = false;

    Frame();

    EXPECT_EQ(Titles(), (Names{"visita"}));
    EXPECT_EQ(fakes::desktop().notices_closed, 1);
}

// ---- The click ----

TEST_F(AttentionTest, AClickOnTheNoticeBringsTheWindowUpOnce) {
    Add(DueIn(20));
    Frame();
    EXPECT_EQ(fakes::desktop().raised, 0);
    fakes::desktop().notice_clicked = true;

    Frame();
    Frame();

    EXPECT_EQ(fakes::desktop().raised, 1);
    EXPECT_EQ(n_notify, 1) << "a click acknowledges nothing";
    EXPECT_EQ(menu_case_id, kOwlScreen);
}

// ---- What is unsaved ----

/// A store that cannot be saved, because a folder has its name, until Mend().
class UnsavedAttentionTest : public AttentionTest {
  protected:
    void SetUp() override {
        AttentionTest::SetUp();
        std::filesystem::create_directory("database.bin");
        testing::internal::CaptureStderr();
        SaveEvents();
    }
    void TearDown() override {
        Mend();
        testing::internal::GetCapturedStderr();
    }

    static void Mend() {
        std::filesystem::remove("database.bin");
        SaveEvents();
    }
};

TEST_F(UnsavedAttentionTest, ASaveThatFailedIsToldUntilOneWorks) {
    for (int i = 0; i < 3; ++i) Frame();
    ASSERT_EQ(Titles(), (Names{"Eventi non salvati"}));
    EXPECT_EQ(fakes::desktop().notices[0].text,
              "Non riesco a salvare gli eventi: riprovo da solo finche' ci riesco.");
    EXPECT_STREQ(fakes::desktop().notices[0].category, "x-ulmaro.store.error");
    Mend();

    Frame();

    EXPECT_FALSE(fakes::desktop().notice_shown);
}

TEST_F(UnsavedAttentionTest, WhileSomebodySeesTheWindowItsTitleTellsItAlone) {
    fakes::desktop().seen = true;

    Frame();

    EXPECT_EQ(Titles(), Names());
}

TEST_F(UnsavedAttentionTest, ADueEventGoesBeforeIt) {
    Frame();
    Add(DueIn(20));
    for (int i = 0; i < 3; ++i) Frame();
    EXPECT_EQ(Titles(), (Names{"Eventi non salvati", "visita"}));
    events.clear();

    Frame();

    EXPECT_EQ(Titles(), (Names{"Eventi non salvati", "visita", "Eventi non salvati"}));
    EXPECT_EQ(fakes::desktop().notices_closed, 0);
}

}  // namespace
