// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the pass as a whole, reminders, appointments, re-arming, counting, the event that is opened, the
// button, its click, the badge, the sound, acknowledging, the pass in the frame. When an event is due is
// tested in notices_test.cpp.
#include "app/notifications.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <random>
#include <string>
#include <vector>

#include "tests/unit/calendar_fixture.h"

namespace {

using Names = std::vector<std::string>;
using Places = std::vector<fakes::Rect>;
using Rgbas = std::vector<fakes::Rgba>;

class NotificationsTest : public CalendarTest {
  protected:
    void SetUp() override {
        CalendarTest::SetUp();
        character.has_delays = true;
        character.next_sq = character.next_ce = character.next_st = character.next_swap = 1e6F;
    }

    /// Returns an appointment that is due in so many minutes.
    static Event DueIn(int minutes) { return MakeAppointment("visita", 16, 5, 2012, 10, 30 + minutes); }

    static std::string Opened() { return edit_event == nullptr ? "nothing" : NameOf(*edit_event); }

    static void ClickButton() { ClickAt(435, 440); }
};

// ---- The pass as a whole ----

/// What the pass does, the plain way: sorts, walks twice from back to front, the last one found is opened.
struct PlainPass {
    std::list<ListedEvent> list;
    int due = 0;
    std::string opened = "nothing";

    void Find(const Event& event) {
        ++due;
        opened = NameOf(event);
    }

    void Run(float seconds) {
        OrderCheck order;
        bool in_order = true;
        for (const Event& event : list) in_order &= order.Accepts(event);
        if (!in_order) list.sort(sort_by_date);
        for (auto event = list.rbegin(); event != list.rend(); ++event) {
            if (event->kind == kReminder) event->elapsed += seconds;
            if (IsReminderDue(*event)) Find(*event);
        }
        for (auto event = list.rbegin(); event != list.rend(); ++event) {
            if (IsDatedEventDue(*event, frame_time)) Find(*event);
            if (event->kind == kWeekly && event->wday != frame_time.tm_wday) event->done = 0;
        }
    }
};

TEST_F(NotificationsTest, ThePassDoesWhatSortingAndTwoWalksFromTheBackDo) {
    std::mt19937 random(3);
    for (int round = 0; round < 1000; ++round) {
        edit_event = nullptr;
        events.clear();
        for (int i = 0; i < round % 40; ++i) Add(RandomEvent(random, std::to_string(i)));
        if (round % 3 == 0) SortEvents();
        PlainPass plain = {events};
        SCOPED_TRACE(round);

        plain.Run(0.25F);
        Frame(0.25F);

        ASSERT_EQ(NamesOf(events), NamesOf(plain.list));
        ASSERT_TRUE(std::equal(events.begin(), events.end(), plain.list.begin(), SameBytes));
        ASSERT_EQ(n_notify, plain.due);
        ASSERT_EQ(new_notify, plain.due > 0);
        ASSERT_EQ(Opened(), plain.opened);
    }
}

TEST_F(NotificationsTest, AReminderCountsOnceAlsoInAFrameThatSorts) {
    AddAppointment("domani", 17, 5, 2012, 9, 0);
    const Event& reminder = AddReminder("r", 0, 100);

    Frame(0.25F);

    ASSERT_EQ(NamesOf(events), (Names{"r", "domani"}));
    EXPECT_EQ(reminder.elapsed, 100.25F);
}

// ---- Reminders ----

TEST_F(NotificationsTest, TheFramesTimeCountsBeforeAReminderIsExamined) {
    const Event& reminder = AddReminder("r", 0, 3600);

    Frame(0.25F);

    EXPECT_EQ(reminder.elapsed, 3600.25F);
    EXPECT_EQ(n_notify, 1);
}

TEST_F(NotificationsTest, AReminderGoesOnCountingWhileItIsDue) {
    const Event& reminder = AddReminder("r", 2, 10800);
    for (int i = 0; i < 4; ++i) Frame(0.25F);

    EXPECT_EQ(reminder.elapsed, 10801);
    EXPECT_EQ(n_notify, 1);
    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(NotificationsTest, WhileAPanelIsOpenRemindersDoNotCountAndNothingIsExamined) {
    const Event& reminder = AddReminder("r", 0, 3600);
    edit_event = &events.front();
    for (menu_case_id = kListScreen; menu_case_id <= kQuizScreen; ++menu_case_id) {
        Frame(0.25F);

        EXPECT_EQ(reminder.elapsed, 3600) << menu_case_id;
        EXPECT_EQ(n_notify, 0);
    }
}

TEST_F(NotificationsTest, EveryReminderIsDueInTheFirstFrameAfterTheStart) {
    for (const int repeat : {0, 1, 2}) AddReminder("r", repeat, 5);
    SaveEvents();
    LoadEvents();

    Frame();

    EXPECT_EQ(n_notify, 3);
}

// ---- Appointments ----

TEST_F(NotificationsTest, AnAppointmentWhoseTimePassedWhileTheProgramWasClosedIsDueAtTheNextStart) {
    AddAppointment("vecchio", 2, 3, 2011, 9, 0);
    SaveEvents();
    LoadEvents();

    Frame();

    EXPECT_EQ(n_notify, 1);
    EXPECT_EQ(Opened(), "vecchio");
}

TEST_F(NotificationsTest, NowIsTheFramesTime) {
    Add(DueIn(61));
    Frame();
    EXPECT_EQ(n_notify, 0);
    fakes::world().now += 60;

    Frame();

    EXPECT_EQ(n_notify, 1);
}

// ---- Re-arming ----

TEST_F(NotificationsTest, AWeeklyEventAcknowledgedOnMondayIsArmedAndSavedInTheFirstFrameOfTuesday) {
    SetNow(2012, 5, 21, 23, 59, 59);  // a Monday
    Event& event = AddWeekly("lezione", 1, 9, 0);
    event.done = event.warned_60 = event.warned_30 = 1;
    Frame();
    EXPECT_EQ(event.done, 1);
    EXPECT_TRUE(NothingIsSaved());
    fakes::world().now += 1;

    Frame();

    EXPECT_EQ(event.done, 0);
    EXPECT_EQ(n_notify, 0);
    ASSERT_EQ(StoredNames(), (Names{"lezione"}));
    EXPECT_EQ(StoredEvents()[0].done, 0);
}

TEST_F(NotificationsTest, ArmingIsSavedOnceAndNotAgain) {
    AddWeekly("a", 1, 9, 0).done = 1;
    AddWeekly("b", 2, 9, 0).done = 1;
    Frame();
    ASSERT_EQ(StoredEvents().size(), 2U);
    std::filesystem::remove("database.bin");

    Frame();

    EXPECT_TRUE(NothingIsSaved());
}

// ---- Counting ----

TEST_F(NotificationsTest, CountsEveryDueEventAnewInEveryFrame) {
    Add(DueIn(-1));
    Add(DueIn(20));
    Add(DueIn(500));
    AddWeekly("w", 3, 10, 30);
    AddReminder("r", 2, 10800);
    AddReminder("s", 2, 0);
    for (int i = 0; i < 3; ++i) {
        Frame();

        EXPECT_EQ(n_notify, 4);
        EXPECT_TRUE(new_notify);
    }
    events.clear();

    Frame();

    EXPECT_EQ(n_notify, 0);
    EXPECT_FALSE(new_notify);
}

TEST_F(NotificationsTest, TheMenuReadsThePreviousFramesCount) {
    Add(DueIn(-1));

    Frame();
    EXPECT_EQ(Colours(icns[kPlanIcon]), (Rgbas{kWhite}));
    Frame();
    EXPECT_EQ(Colours(icns[kPlanIcon]), (Rgbas{kGrey}));
}

TEST_F(NotificationsTest, TheOwlPaysAttentionFromTheNextFrameOn) {
    Add(DueIn(-1));
    Frame();
    EXPECT_TRUE(ButtonsDrawn(cloud).empty());

    Frame();

    EXPECT_EQ(ButtonsDrawn(cloud).size(), 1U);
}

// ---- The event that is opened ----

TEST_F(NotificationsTest, SortsTheEventsInEveryFrame) {
    AddAppointment("b", 20, 5, 2012, 9, 0);
    AddAppointment("a", 19, 5, 2012, 9, 0);
    AddReminder("r", 0, 0);

    Frame();

    EXPECT_EQ(NamesOf(events), (Names{"r", "a", "b"}));
}

TEST_F(NotificationsTest, OpensTheForemostDueAppointmentOrWeeklyEvent) {
    AddReminder("promemoria", 2, 10800);
    AddAppointment("dopo", 16, 5, 2012, 10, 20);
    AddWeekly("settimanale", 3, 10, 10);
    AddAppointment("prima", 16, 5, 2012, 10, 0);
    Event done = MakeAppointment("fatto", 1, 5, 2012, 10, 0);
    done.done = 1;
    Add(done);

    Frame();
    EXPECT_EQ(Opened(), "prima");

    events.remove_if([](const Event& event) { return NameOf(event) == "prima"; });
    edit_event = nullptr;
    Frame();
    EXPECT_EQ(Opened(), "settimanale");
}

TEST_F(NotificationsTest, OpensTheForemostDueReminderWhereNothingElseIsDue) {
    AddReminder("a", 2, 0);
    AddReminder("b", 2, 10800);
    AddReminder("c", 2, 10800);
    Add(DueIn(500));

    Frame();

    EXPECT_EQ(Opened(), "b");
    EXPECT_EQ(n_notify, 2);
}

TEST_F(NotificationsTest, WithNothingDueItLeavesTheOpenEventAlone) {
    Add(DueIn(500));

    Frame();

    EXPECT_EQ(edit_event, nullptr);
}

// ---- The button ----

TEST_F(NotificationsTest, ShowsNoButtonAndNoBadgeWithoutANotice) {
    Add(DueIn(500));

    Frame();

    EXPECT_TRUE(ButtonsDrawn(icns[kOfferIcon]).empty());
    EXPECT_TRUE(ButtonsDrawn(icns[kNoticeIcon]).empty());
    EXPECT_TRUE(ButtonsDrawn(notify_circle).empty());
    EXPECT_EQ(PrintedText().size(), 1U);  // the status line
}

TEST_F(NotificationsTest, ShowsTheNoticesButtonWhereSomethingIsDue) {
    Add(DueIn(-1));

    Frame();

    EXPECT_EQ(ButtonsDrawn(icns[kNoticeIcon]), (Places{Around(435, 440, 40, 40)}));
    EXPECT_TRUE(ButtonsDrawn(icns[kOfferIcon]).empty());
    EXPECT_EQ(Colours(icns[kNoticeIcon]), (Rgbas{kWhite}));
}

TEST_F(NotificationsTest, ShowsTheQuizButtonForAnOfferAlsoWithANotice) {
    spawn_question = true;
    Frame();
    EXPECT_EQ(ButtonsDrawn(icns[kOfferIcon]), (Places{Around(435, 440, 40, 40)}));
    EXPECT_TRUE(ButtonsDrawn(icns[kNoticeIcon]).empty());
    EXPECT_TRUE(ButtonsDrawn(notify_circle).empty());

    Add(DueIn(-1));
    Frame();

    EXPECT_EQ(ButtonsDrawn(icns[kOfferIcon]).size(), 1U);
    EXPECT_TRUE(ButtonsDrawn(icns[kNoticeIcon]).empty());
    EXPECT_EQ(ButtonsDrawn(notify_circle).size(), 1U);
}

TEST_F(NotificationsTest, TheButtonBobsAndSoDoBadgeAndCount) {
    Add(DueIn(-1));
    for (const double clock : {0.25, 0.5, 1.25}) {
        character.bt = static_cast<float>(clock);
        const double bob = 3.5 * std::sin(4 * clock);

        Frame();

        EXPECT_NEAR(ButtonsDrawn(icns[kNoticeIcon]).at(0).CentreY(), 440 + bob, 1e-3) << clock;
        EXPECT_NEAR(ButtonsDrawn(notify_circle).at(0).CentreY(), 410 + bob, 1e-3) << clock;
        ExpectPrinted({"1", 459, 401 + bob, true});
    }
}

TEST_F(NotificationsTest, TheButtonLightsUpUnderThePointer) {
    Add(DueIn(-1));
    PointAt(435, 440);

    Frame();

    EXPECT_EQ(Colours(icns[kNoticeIcon]), (Rgbas{kYellow}));
}

// ---- Its click ----

TEST_F(NotificationsTest, AClickOpensTheViewOfAnAppointmentOrWeeklyEvent) {
    for (const Event& event : {DueIn(20), MakeWeekly("w", 3, 10, 0)}) {
        events.clear();
        Add(event);
        menu_case_id = kOwlScreen;

        ClickButton();

        EXPECT_EQ(menu_case_id, kViewScreen);
        EXPECT_EQ(edit_event, &events.front());
        EXPECT_FALSE(force_back_hm);
        EXPECT_EQ(ScreenShown(), kOwlScreen);
        Frame();
        EXPECT_EQ(ScreenShown(), kViewScreen);
    }
    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(NotificationsTest, AClickOpensTheEditorOfAReminderWhichLeadsBackToTheOwl) {
    AddReminder("acqua", 0, 4000);

    ClickButton();

    EXPECT_EQ(menu_case_id, kEditorScreen);
    EXPECT_TRUE(force_back_hm);
    EXPECT_EQ(Opened(), "acqua");
}

TEST_F(NotificationsTest, WithAnOfferAndANoticeTheClickOpensTheEvent) {
    Add(DueIn(20));
    spawn_question = true;

    ClickButton();

    EXPECT_EQ(menu_case_id, kViewScreen);
}

TEST_F(NotificationsTest, TheButtonReachesToItsEdgesAndNotOntoThem) {
    struct Case {
        int x, y;
        bool over;
    };
    const Case cases[] = {
        {395, 440, false}, {396, 440, true}, {474, 440, true}, {475, 440, false},
        {435, 400, false}, {435, 401, true}, {435, 479, true}, {435, 480, false},
    };
    for (const Case& row : cases) {
        events.clear();
        Add(DueIn(20));
        menu_case_id = kOwlScreen;

        ClickAt(row.x, row.y);

        EXPECT_EQ(menu_case_id, row.over ? kViewScreen : kOwlScreen) << row.x << ", " << row.y;
    }
}

TEST_F(NotificationsTest, AClickLeavesAnOfferToThePanelThatItOpens) {
    for (const bool due : {false, true}) {
        if (due) Add(DueIn(20));
        menu_case_id = kOwlScreen;
        spawn_question = true;

        ClickButton();
        EXPECT_EQ(menu_case_id, due ? kViewScreen : kQuizScreen);
        EXPECT_TRUE(spawn_question);

        Frame();
        EXPECT_FALSE(spawn_question);
    }
}

TEST_F(NotificationsTest, OpeningAnEventLetsTheAnimationClockRunOn) {
    for (const Event& event : {DueIn(20), MakeReminder("r", 0, 4000)}) {
        events.clear();
        Add(event);
        menu_case_id = kOwlScreen;
        character.bt = 4.5F;

        ClickButton();

        EXPECT_NE(menu_case_id, kOwlScreen);
        EXPECT_EQ(character.bt, 4.5F);
    }
}

TEST_F(NotificationsTest, WithoutANoticeAClickThereOpensNothing) {
    Add(DueIn(500));
    edit_event = &events.front();

    ClickButton();

    EXPECT_EQ(menu_case_id, kOwlScreen);
}

TEST_F(NotificationsTest, APointerWithoutClickOpensNothing) {
    Add(DueIn(20));
    PointAt(435, 440);

    Frame();

    EXPECT_EQ(menu_case_id, kOwlScreen);
}

TEST_F(NotificationsTest, TheFrameOfTheClickStaysTheOwls) {
    Add(DueIn(20));

    ClickButton();

    EXPECT_EQ(ScreenShown(), kOwlScreen);
    EXPECT_EQ(ButtonsDrawn(notify_circle).size(), 1U);
}

// ---- The badge ----

TEST_F(NotificationsTest, TheBadgeIs40UnitsWideBlendedAndALittleGrey) {
    Add(DueIn(-1));

    Frame();

    const std::vector<fakes::Primitive> badges = fakes::gl().DrawnWith(notify_circle);
    ASSERT_EQ(badges.size(), 1U);
    EXPECT_EQ(fakes::Bounds(badges[0]), Around(465, 410, 20, 20));
    EXPECT_EQ(badges[0].color, (fakes::Rgba{0.85F, 0.85F, 0.85F, 1}));
    EXPECT_TRUE(badges[0].blend);
    EXPECT_EQ(badges[0].blend_source, static_cast<GLenum>(GL_SRC_ALPHA));
    EXPECT_EQ(badges[0].blend_destination, static_cast<GLenum>(GL_ONE_MINUS_SRC_ALPHA));
    EXPECT_FALSE(badges[0].depth_mask);
}

TEST_F(NotificationsTest, TheCountStandsOnTheBadgeInWhite) {
    for (int count = 1; count <= 12; ++count) {
        Add(DueIn(-count));

        Frame();

        ExpectPrinted({std::to_string(count), 459, 401, true});
    }
}

TEST_F(NotificationsTest, ButtonBadgeAndCountAreDrawnLastInThisOrder) {
    Add(DueIn(-1));

    Frame();

    std::vector<unsigned int> textures;
    for (const fakes::Primitive& drawn : fakes::gl().primitives) textures.push_back(drawn.texture);
    ASSERT_GT(textures.size(), 3U);
    EXPECT_EQ(std::vector<unsigned int>(textures.end() - 3, textures.end()),
              (std::vector<unsigned int>{icns[kNoticeIcon], notify_circle, font}));
}

TEST_F(NotificationsTest, LeavesWhite) {
    Add(DueIn(-1));

    Frame();

    EXPECT_EQ(fakes::gl().color, kWhite);
    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
    EXPECT_TRUE(fakes::gl().depth_mask);
}

// ---- The sound ----

TEST_F(NotificationsTest, SoundsAtOnce) {
    Add(DueIn(-1));

    Frame(0.25F);

    EXPECT_EQ(SoundsStarted(), (Names{"notify.wav"}));
    EXPECT_EQ(notifications.play_sfx_te, 0);
}

TEST_F(NotificationsTest, SoundsAgainAfter35SecondsAndNotAtThem) {
    Add(DueIn(-1));
    notifications.play_sfx_te = 34.75F;

    Frame(0.25F);
    EXPECT_EQ(SoundsStarted(), Names());
    EXPECT_EQ(notifications.play_sfx_te, 35);

    Frame(0.25F);
    EXPECT_EQ(SoundsStarted(), (Names{"notify.wav"}));
    EXPECT_EQ(notifications.play_sfx_te, 0);
}

TEST_F(NotificationsTest, SoundsAlsoWithSoundSwitchedOff) {
    enable_sfx = false;
    Add(DueIn(-1));

    Frame(0.25F);

    EXPECT_EQ(SoundsStarted(), (Names{"notify.wav"}));
}

TEST_F(NotificationsTest, WithSoundSwitchedOffNothingElseSounds) {
    enable_sfx = false;
    Add(DueIn(-1));
    spawn_question = spawn_laugh = true;
    Names sounds;
    for (int frame = 0; frame < 4 * 71; ++frame) {
        Frame(0.25F);
        for (const std::string& sound : SoundsStarted()) sounds.push_back(sound);
        spawn_laugh = frame % 40 == 0;
    }

    EXPECT_EQ(sounds, (Names(3, "notify.wav")));
}

TEST_F(NotificationsTest, DoesNotSoundWhereNothingIsDue) {
    Add(DueIn(61));

    for (int frame = 0; frame < 200; ++frame) {
        Frame(0.25F);
        EXPECT_EQ(SoundsStarted(), Names());
    }
}

TEST_F(NotificationsTest, SoundsAtOnceForWhatFallsDueAfterAllWasAcknowledged) {
    notifications.play_sfx_te = 10;
    Frame(0.25F);
    EXPECT_EQ(SoundsStarted(), Names());
    EXPECT_EQ(notifications.play_sfx_te, kLongAgo);
    Add(DueIn(-1));

    Frame(0.25F);

    EXPECT_EQ(SoundsStarted(), (Names{"notify.wav"}));
}

TEST_F(NotificationsTest, DoesNotSoundForAnotherEventThatFallsDueMeanwhile) {
    notifications.play_sfx_te = 10;
    Add(DueIn(-1));
    Add(DueIn(-2));

    Frame(0.25F);

    EXPECT_EQ(n_notify, 2);
    EXPECT_EQ(SoundsStarted(), Names());
}

TEST_F(NotificationsTest, SoundsBetweenItsButtonAndItsBadge) {
    Add(DueIn(-1));

    Frame(0.25F);

    const std::size_t sound = fakes::IndexOf("alSourcePlay");
    const std::vector<fakes::Primitive> bell = fakes::gl().DrawnWith(icns[kNoticeIcon]);
    const std::vector<fakes::Primitive> badge = fakes::gl().DrawnWith(notify_circle);
    ASSERT_EQ(bell.size(), 1U);
    ASSERT_EQ(badge.size(), 1U);
    EXPECT_LT(bell[0].log_index, sound);
    EXPECT_LT(sound, badge[0].log_index);
}

TEST_F(NotificationsTest, SwitchingSoundOffStopsTheSoundThatPlays) {
    Add(DueIn(-1));
    Frame(0.25F);
    ASSERT_EQ(SoundsPlaying(), 1U);

    ClickAt(44, 45);

    EXPECT_FALSE(enable_sfx);
    EXPECT_EQ(SoundsPlaying(), 0U);
}

TEST_F(NotificationsTest, OpeningTheEventLetsTheSoundPlayOn) {
    Add(DueIn(-1));
    Frame(0.25F);

    ClickButton();

    EXPECT_EQ(SoundsPlaying(), 1U);
}

// ---- Acknowledging ----

TEST_F(NotificationsTest, AnAppointment45MinutesAheadIsDueOnceForEachNoticeAndThenAtItsTime) {
    Add(DueIn(45));
    const auto acknowledge = [] {
        ClickButton();
        Frame();
        ClickAt(485, 486);  // the view's check
        Frame();
        EXPECT_EQ(n_notify, 0);
    };
    const auto wait_minutes = [](int minutes) {
        fakes::world().now += std::time_t{60} * minutes;
        Frame();
    };
    Frame();
    EXPECT_EQ(n_notify, 1);
    acknowledge();
    wait_minutes(14);  // 31 are left
    EXPECT_EQ(n_notify, 0);
    wait_minutes(1);
    EXPECT_EQ(n_notify, 1);
    acknowledge();
    wait_minutes(29);  // 1 is left
    EXPECT_EQ(n_notify, 0);
    wait_minutes(1);
    EXPECT_EQ(n_notify, 1);

    acknowledge();

    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(StoredEvents().empty());
}

TEST_F(NotificationsTest, AWeeklyEventOpenedInItsOwnMinuteIsDueAgainAtOnceAndDoneAMinuteLater) {
    Event& event = AddWeekly("lezione", 3, 10, 30);
    ClickButton();
    Frame();
    ClickAt(485, 486);
    EXPECT_TRUE(event.warned_60 && event.warned_30);
    EXPECT_EQ(event.done, 0);
    EXPECT_EQ(n_notify, 1);

    fakes::world().now += 60;
    ClickButton();
    Frame();
    ClickAt(485, 486);

    EXPECT_EQ(event.done, 1);
    EXPECT_EQ(n_notify, 0);
    EXPECT_EQ(StoredEvents().at(0).done, 1);
}

TEST_F(NotificationsTest, AReminderIsAcknowledgedByConfirmingItAndTheOwlReturns) {
    Event& reminder = AddReminder("acqua", 0, 4000);
    ClickButton();
    Frame(0.25F);
    EXPECT_EQ(reminder.elapsed, 4000);

    ClickAt(476, 436);

    EXPECT_EQ(reminder.elapsed, 0);
    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_FALSE(force_back_hm);
    EXPECT_EQ(StoredEvents().at(0).elapsed, 0);
    Frame();
    EXPECT_EQ(ScreenShown(), kOwlScreen);
    EXPECT_EQ(n_notify, 0);
}

TEST_F(NotificationsTest, AReminderOpenedFromItsNoticeAndDeletedIsNoLongerDue) {
    AddReminder("acqua", 0, 4000);
    ClickButton();
    Frame();

    ClickAt(485, 486);

    EXPECT_EQ(menu_case_id, kListScreen);
    menu_case_id = kOwlScreen;
    Frame();
    EXPECT_EQ(n_notify, 0);
    EXPECT_EQ(edit_event, nullptr);
}

// ---- The pass in the frame ----

TEST_F(NotificationsTest, ComesAfterTheMenuAndBeforeTheOfferRunsOut) {
    Add(DueIn(-1));
    spawn_question = true;
    character.sqte = 20;

    Frame(0.125F);

    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(ButtonsDrawn(icns[kOfferIcon]).size(), 1U);
}

TEST_F(NotificationsTest, LeavesTheOwlsFrameAsItFoundIt) {
    Add(DueIn(-1));

    RunFrame(0.125F);

    EXPECT_EQ(n_notify, 1);
}

}  // namespace
