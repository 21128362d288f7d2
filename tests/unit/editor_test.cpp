// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: notices, kind tabs, confirming, closing the editor, closing the view, kind labels, reminders, date,
// time, arrows, caret, focus, name, description, typing, the view, the frame.
#include "calendar/editor.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/unit/calendar_fixture.h"

namespace {

using Names = std::vector<std::string>;
using Places = std::vector<fakes::Rect>;
using Rgbas = std::vector<fakes::Rgba>;

class EditorTest : public CalendarTest {
  protected:
    /// Opens an event, the only one, on a screen.
    static Event& Open(int screen, const Event& event) {
        events.clear();
        ListedEvent& added = Add(event);
        edit_event = &added;
        menu_case_id = screen;
        return added;
    }
    static Event& Edit(const Event& event) { return Open(kEditorScreen, event); }
    static Event& View(const Event& event) { return Open(kViewScreen, event); }

    /// Returns an appointment that is due in so many minutes, on today's date.
    static Event DueIn(int minutes) { return MakeAppointment("visita", 16, 5, 2012, 10, 30 + minutes); }
    static Event AnyAppointment() { return MakeAppointment("visita", 20, 9, 2013, 15, 20); }
    static Event AnyWeekly() { return MakeWeekly("corso", 5, 15, 20); }
    static Event AnyReminder() { return MakeReminder("acqua", 1, 50); }

    static void ClickConfirm() { ClickAt(476, 436); }
    /// Clicks the button at the band's right end: the trash of the editor, the check of the view.
    static void ClickClose() { ClickAt(485, 486); }

    /// Draws the screen alone with keys held, as they stand in key_state.
    static void Press(std::initializer_list<int> keys) {
        fakes::gl().primitives.clear();
        for (const int key : keys) key_state[key] = true;
        EventEditor();
        reset_keys_state();
    }
    /// Draws the screen once for each character, with its key held.
    static void PressEach(const std::string& keys) {
        for (const char key : keys) Press({static_cast<unsigned char>(key)});
    }

    /// Returns the one text that starts at that place, or "nothing".
    static std::string TextAt(double x, double y) {
        std::string text = "nothing";
        int found = 0;
        for (const PrintedLine& line : PrintedText()) {
            if (std::abs(line.x - x) > 0.01 || std::abs(line.y - y) > 0.01) continue;
            EXPECT_NEAR(line.size, 10, 0.01);
            EXPECT_EQ(line.color, kWhite);
            text = line.text;
            ++found;
        }
        EXPECT_LE(found, 1);
        return text;
    }
    static std::string DateLine() { return TextAt(17, menu_case_id == kEditorScreen ? 375 : 330); }
    static std::string TimeLine() { return TextAt(20, 280); }
    static std::string NameLine() { return TextAt(28, 210); }
    /// Returns the first line of the description.
    static std::string DescriptionLine() { return TextAt(28, 170); }
};

// ---- Notices ----

TEST_F(EditorTest, TheViewMarksWhatTheUserHasBeenTold) {
    for (const Event& event : {DueIn(45), MakeWeekly("corso", 3, 11, 15)}) {
        const Event& shown = View(event);
        Frame();
        EXPECT_TRUE(shown.warned_60 && !shown.warned_30 && !shown.done) << event.kind;

        SetNow(2012, 5, 16, 11, 16);
        Frame();
        EXPECT_TRUE(shown.warned_60 && shown.warned_30 && shown.done) << event.kind;
        SetNow(2012, 5, 16, 10, 30);
    }
}

TEST_F(EditorTest, TheViewTakesNoNoticeBack) {
    Event event = DueIn(1000);
    event.warned_60 = event.warned_30 = event.done = 1;
    const Event& shown = View(event);

    Frame();

    EXPECT_TRUE(shown.warned_60 && shown.warned_30 && shown.done);
}

TEST_F(EditorTest, TheEditorTakesBackTheNoticesOfAnEventMovedLater) {
    Event event = DueIn(45);
    event.warned_60 = event.warned_30 = event.done = 1;
    Event& shown = Edit(event);
    Frame();
    EXPECT_TRUE(shown.warned_60 && !shown.warned_30 && shown.done);

    shown.date.day += 1;
    Frame();

    EXPECT_TRUE(!shown.warned_60 && !shown.warned_30 && shown.done);
}

TEST_F(EditorTest, TheEditorGivesNoNotice) {
    const Event& shown = Edit(DueIn(-100));

    Frame();

    EXPECT_FALSE(shown.warned_60 || shown.warned_30 || shown.done);
}

// ---- Kind tabs ----

TEST_F(EditorTest, ShowsThreeTabsOfWhichTheEventsKindIsChecked) {
    const Places places = {Around(87, 486, 75.5, 15), Around(243.5, 486, 70.5, 15),
                           Around(391.5, 486, 67.75, 15)};
    for (const int screen : {kEditorScreen, kViewScreen}) {
        for (int kind = kAppointment; kind <= kReminder; ++kind) {
            Event event;
            event.kind = kind;
            Open(screen, event);

            Frame();

            Places others = places;
            others.erase(others.begin() + kind);
            EXPECT_EQ(ButtonsDrawn(button[kChecked]), Places{places[static_cast<std::size_t>(kind)]})
                << kind << " on " << screen;
            EXPECT_EQ(ButtonsDrawn(button[kUnchecked]), others) << kind << " on " << screen;
        }
    }
}

TEST_F(EditorTest, AClickOnATabSetsTheKind) {
    const int x[] = {87, 243, 391};
    const double middle[] = {87, 243.5, 391.5};
    for (int from = kAppointment; from <= kReminder; ++from) {
        for (int to = kAppointment; to <= kReminder; ++to) {
            Event event;
            event.kind = from;
            const Event& shown = Edit(event);

            ClickAt(x[to], 486);

            EXPECT_EQ(shown.kind, to);
            Frame();
            EXPECT_EQ(ButtonsDrawn(button[kChecked]).at(0).CentreX(), middle[to]);
        }
    }
}

TEST_F(EditorTest, AClickOnATabOfTheViewDoesNothing) {
    const Event& shown = View(DueIn(10));

    for (const int x : {87, 243, 391}) ClickAt(x, 486);

    EXPECT_EQ(shown.kind, kAppointment);
}

TEST_F(EditorTest, ATabLightsUpUnderThePointer) {
    Edit(AnyAppointment());
    PointAt(243, 486);

    Frame();

    EXPECT_EQ(Colours(button[kChecked]), (Rgbas{kWhite}));
    EXPECT_EQ(Colours(button[kUnchecked]), (Rgbas{kYellow, kWhite}));
}

TEST_F(EditorTest, AnUnknownKindChecksNoTabAndCanBeChanged) {
    Event event;
    event.kind = 40;
    const Event& shown = Edit(event);
    Frame();
    EXPECT_TRUE(ButtonsDrawn(button[kChecked]).empty());
    EXPECT_TRUE(ButtonsDrawn(button_arrow_u).empty());
    EXPECT_EQ(DateLine(), "nothing");
    EXPECT_EQ(TimeLine(), "nothing");

    ClickAt(87, 486);

    EXPECT_EQ(shown.kind, kAppointment);
}

// ---- Confirming ----

TEST_F(EditorTest, ShowsTheConfirmButtonAndItsLabel) {
    Edit(AnyAppointment());

    Frame();

    EXPECT_EQ(ButtonsDrawn(button_check), (Places{Around(476.62, 436.5, 20.5, 20)}));
    ExpectPrinted({"conferma", 402, 436.5, true});
}

TEST_F(EditorTest, ConfirmingClearsElapsedSavesAndLeadsToTheList) {
    const Event& shown = Edit(AnyReminder());

    ClickConfirm();

    EXPECT_EQ(shown.elapsed, 0);
    EXPECT_EQ(menu_case_id, kListScreen);
    ASSERT_EQ(StoredNames(), (Names{"acqua"}));
    EXPECT_EQ(StoredEvents()[0].elapsed, 0);
    EXPECT_EQ(StoredEvents()[0].repeat, 1);
    Frame();
    EXPECT_EQ(ScreenShown(), kListScreen);
}

TEST_F(EditorTest, ConfirmingAReminderOpenedFromItsNoticeLeadsToTheOwlOnce) {
    Edit(AnyReminder());
    force_back_hm = true;
    ClickConfirm();
    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_FALSE(force_back_hm);
    Frame();
    EXPECT_EQ(ScreenShown(), kOwlScreen);

    Edit(AnyReminder());
    ClickConfirm();

    EXPECT_EQ(menu_case_id, kListScreen);
}

TEST_F(EditorTest, ConfirmingSavesEveryEvent) {
    AddAppointments(2);
    edit_event = &AddAppointment("tre", 20, 9, 2013, 15, 20);
    menu_case_id = kEditorScreen;

    ClickConfirm();

    EXPECT_EQ(StoredNames(), (Names{"01", "02", "tre"}));
}

TEST_F(EditorTest, TheFrameInWhichItIsConfirmedStaysTheEditors) {
    for (const bool back : {false, true}) {
        Edit(AnyAppointment());
        force_back_hm = back;

        ClickConfirm();

        EXPECT_EQ(ScreenShown(), kEditorScreen);
        EXPECT_EQ(ButtonsDrawn(button_trash).size(), 1U);
        EXPECT_EQ(ButtonsDrawn(button_check).size(), 1U);
        EXPECT_EQ(ButtonsDrawn(button_arrow_u).size(), 5U);
        EXPECT_TRUE(IsPrinted("conferma"));
        EXPECT_EQ(TextAt(17, 375), "Data:  20 / 9 / 2013");
        EXPECT_EQ(fakes::Count("glClear"), 1U);
    }
}

TEST_F(EditorTest, ConfirmingTakesTheFocusAway) {
    Edit(AnyAppointment());
    edit_tf = kDescriptionField;

    ClickConfirm();

    EXPECT_EQ(edit_tf, kNoField);
}

TEST_F(EditorTest, WithoutAClickNothingIsSaved) {
    Edit(AnyReminder());
    PointAt(476, 436);
    Frame();
    PointAt(485, 486);
    Frame();

    EXPECT_TRUE(NothingIsSaved());
    EXPECT_EQ(menu_case_id, kEditorScreen);
    EXPECT_EQ(edit_event->elapsed, 50);
}

// ---- Closing the editor ----

TEST_F(EditorTest, ShowsTheTrashButton) {
    Edit(AnyAppointment());

    Frame();

    EXPECT_EQ(ButtonsDrawn(button_trash), (Places{Around(485.12, 486, 15.5, 15)}));
    EXPECT_TRUE(ButtonsDrawn(button_close).empty());
}

TEST_F(EditorTest, TheTrashRemovesTheEventEvenInTheFutureSavesAndLeadsToTheList) {
    for (const Event& event : {AnyAppointment(), DueIn(-10), AnyWeekly(), AnyReminder()}) {
        Edit(event);
        AddAppointment("altro", 1, 1, 2014, 0, 0);

        ClickClose();

        EXPECT_EQ(NamesOf(events), (Names{"altro"})) << event.kind;
        EXPECT_EQ(StoredNames(), (Names{"altro"}));
        EXPECT_EQ(edit_event, nullptr);
        EXPECT_EQ(menu_case_id, kListScreen);
        EXPECT_FALSE(single_touch);
    }
}

TEST_F(EditorTest, TheTrashRemovesTheOpenEventAloneAmongEqualOnes) {
    AddAppointment("x", 20, 9, 2013, 15, 20);
    edit_event = &AddAppointment("x", 20, 9, 2013, 15, 20);
    AddAppointment("x", 20, 9, 2013, 15, 20);
    const Event* first = &events.front();
    const Event* last = &events.back();
    menu_case_id = kEditorScreen;

    ClickClose();

    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(&events.front(), first);
    EXPECT_EQ(&events.back(), last);
}

TEST_F(EditorTest, RemovingTheLastEventSavesAnEmptyList) {
    Edit(AnyAppointment());

    ClickClose();

    EXPECT_EQ(ReadFile("database.bin"), std::string(4, '\0'));
}

TEST_F(EditorTest, TheTrashLeadsToTheListAlsoForAReminderOpenedFromItsNotice) {
    Edit(AnyReminder());
    force_back_hm = true;

    ClickClose();

    EXPECT_EQ(menu_case_id, kListScreen);
    EXPECT_TRUE(force_back_hm) << "only the confirm button clears it";
}

TEST_F(EditorTest, AfterTheTrashTheListIsShownInTheSameFrame) {
    Edit(AnyAppointment());
    AddAppointment("altro", 1, 1, 2014, 0, 0);

    ClickClose();

    EXPECT_EQ(ScreenShown(), kListScreen);
    ExpectPrinted({"altro", 18, 381});
    EXPECT_EQ(fakes::Count("glClear"), 2U);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 1U);
    EXPECT_EQ(fakes::glut().redisplays, 1);
}

TEST_F(EditorTest, TheClickOnTheTrashDoesNotCloseTheListBelow) {
    Edit(AnyAppointment());

    ClickClose();
    Frame();

    EXPECT_EQ(menu_case_id, kListScreen);
}

// ---- Closing the view ----

TEST_F(EditorTest, TheViewIsClosedByACheckAtTheEndOfTheBand) {
    View(DueIn(10));

    Frame();

    EXPECT_EQ(ButtonsDrawn(button_check), (Places{Around(485.12, 486, 15.5, 15)}));
    EXPECT_TRUE(ButtonsDrawn(button_trash).empty());
}

TEST_F(EditorTest, ClosingTheViewDiscardsOnlyAnAppointmentThatHasCome) {
    const auto due_today = [](int minutes, int kind) {
        Event event = DueIn(minutes);
        event.kind = kind;
        event.wday = 3;
        return event;
    };
    struct Case {
        Event event;
        bool stays;
    };
    const Case cases[] = {
        {due_today(-1, kAppointment), false}, {due_today(0, kAppointment), false},
        {due_today(1, kAppointment), true},   {due_today(60, kAppointment), true},
        {due_today(-1, kWeekly), true},       {due_today(0, kWeekly), true},
        {MakeReminder("r", 0, 1e6F), true},   {due_today(-1, 3), true},
    };
    for (const Case& row : cases) {
        View(row.event);
        PointAt(485, 486);
        single_touch = true;

        const bool finished = EventEditor();

        EXPECT_FALSE(finished) << "the owl must be drawn at once";
        EXPECT_EQ(events.size(), row.stays ? 1U : 0U) << row.event.kind << " at " << row.event.time.minute;
        EXPECT_EQ(StoredEvents().size(), events.size());
        EXPECT_EQ(edit_event, nullptr);
        EXPECT_EQ(menu_case_id, kOwlScreen);
        EXPECT_FALSE(single_touch);
    }
}

TEST_F(EditorTest, ClosingTheViewSavesTheNoticesThatItHasMarked) {
    View(DueIn(20));

    ClickClose();

    EXPECT_EQ(StoredEvents().at(0).warned_60, 1);
    EXPECT_EQ(StoredEvents().at(0).warned_30, 1);
    EXPECT_EQ(StoredEvents().at(0).done, 0);
}

TEST_F(EditorTest, AfterTheViewTheOwlIsShownInTheSameFrameAndAdvancesOnce) {
    View(DueIn(20));
    AddReminder("r", 0, 100);
    PointAt(485, 486);
    single_touch = true;

    Frame(0.125F);

    EXPECT_EQ(ScreenShown(), kOwlScreen);
    EXPECT_EQ(fakes::Count("glutSwapBuffers"), 1U);
    EXPECT_EQ(character.bt, 0.125F);
    EXPECT_EQ(events.front().elapsed, 100.125F);
    EXPECT_EQ(menu_case_id, kOwlScreen);
}

TEST_F(EditorTest, AFrameDrawnAgainFromTheTopStartsFromTheSameMatrices) {
    Edit(AnyAppointment());

    ClickClose();

    EXPECT_EQ(ButtonsDrawn(GUI[kListScreen]), (Places{{0, 0, 512, 512}}));
    for (int i = 0; i < 40; ++i) {
        Edit(AnyAppointment());
        ClickClose();
    }
    EXPECT_EQ(fakes::gl().modelview.size(), 1U);
    EXPECT_EQ(fakes::gl().projection.size(), 1U);
}

// ---- Kind labels ----

TEST_F(EditorTest, LabelsTheTabsTheOneOfTheKindInGreen) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        for (int kind = kAppointment; kind <= kReminder + 1; ++kind) {
            Event event;
            event.kind = kind;
            Open(screen, event);

            Frame();

            ExpectPrinted({"appuntamento", 80, 477, true, kind == kAppointment ? kGreen : kWhite});
            ExpectPrinted({"settimanale", 243.5, 477, true, kind == kWeekly ? kGreen : kWhite});
            ExpectPrinted({"promemoria", 391.5, 477, true, kind == kReminder ? kGreen : kWhite});
        }
    }
}

// ---- Reminders ----

TEST_F(EditorTest, AReminderShowsItsPeriodInTheEditor) {
    const char* const texts[] = {"Ricordamelo ogni ora", "Ricordamelo ogni 2 ore", "Ricordamelo ogni 3 ore"};
    for (int repeat = 0; repeat < 3; ++repeat) {
        Edit(MakeReminder("r", repeat, 0));

        Frame();

        ExpectPrinted({texts[repeat], 17, 330});
    }
    EXPECT_EQ(ButtonsDrawn(button_arrow_u), (Places{Around(215, 365, 15, 15)}));
    EXPECT_EQ(ButtonsDrawn(button_arrow_d), (Places{Around(215, 315, 15, 15)}));
}

TEST_F(EditorTest, AReminderShowsNoDateAndNoTimeLine) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        Open(screen, AnyReminder());

        Frame();

        for (const PrintedLine& line : PrintedText()) {
            EXPECT_EQ(line.text.find("Data"), std::string::npos) << line;
            EXPECT_EQ(line.text.find("Ora"), std::string::npos) << line;
        }
    }
}

TEST_F(EditorTest, TheViewOfAReminderShowsNothingOfItsPeriod) {
    View(AnyReminder());

    Frame();

    EXPECT_EQ(Words(PrintedText()),
              (Names{"appuntamento", "settimanale", "promemoria", "acqua", "nessuna descrizione"}));
    EXPECT_TRUE(ButtonsDrawn(button_arrow_u).empty());
    EXPECT_TRUE(ButtonsDrawn(button_arrow_d).empty());
}

TEST_F(EditorTest, TheArrowsChangeThePeriodAndWrap) {
    const Event& shown = Edit(MakeReminder("r", 0, 0));
    std::vector<int> repeats;
    for (int i = 0; i < 4; ++i) {
        ClickAt(215, 365);
        repeats.push_back(shown.repeat);
    }
    for (int i = 0; i < 4; ++i) {
        ClickAt(215, 315);
        repeats.push_back(shown.repeat);
    }

    EXPECT_EQ(repeats, (std::vector<int>{1, 2, 0, 1, 0, 2, 1, 0}));
}

TEST_F(EditorTest, AnUnknownPeriodHasNoTextAndItsArrowsNeverOverflow) {
    for (const int repeat : {INT_MIN, -1, 3, INT_MAX}) {
        const Event& shown = Edit(MakeReminder("r", repeat, 0));
        Frame();
        EXPECT_EQ(TextAt(17, 330), "nothing") << repeat;

        ClickAt(215, 365);
        EXPECT_EQ(shown.repeat, repeat > 0 ? 0 : repeat + 1);

        Edit(MakeReminder("r", repeat, 0));
        ClickAt(215, 315);
        EXPECT_EQ(edit_event->repeat, repeat > 0 ? repeat - 1 : 2);
    }
}

// ---- Date ----

TEST_F(EditorTest, AnAppointmentsDateIsWrittenInNumbers) {
    Edit(AnyAppointment());
    Frame();
    ExpectPrinted({"Data:  20 / 9 / 2013", 17, 375});

    View(AnyAppointment());
    Frame();
    ExpectPrinted({"Data:  20 / 9 / 2013", 17, 330});
}

TEST_F(EditorTest, AnAppointmentOnTodaysDayNumberReadsOggiInTheViewAlone) {
    for (const int month : {1, 5, 12}) {
        const Event event = MakeAppointment("x", 16, month, 2020, 9, 0);
        View(event);
        Frame();
        ExpectPrinted({"Data:  Oggi", 17, 330});

        Edit(event);
        Frame();
        EXPECT_EQ(DateLine(), "Data:  16 / " + std::to_string(month) + " / 2020");
    }
}

TEST_F(EditorTest, AWeeklyEventsDateIsItsWeekday) {
    const char* const days[] = {"dom", "lun", "mar", "merc", "giov", "ven", "sab"};
    for (int wday = 0; wday < 7; ++wday) {
        Event event = MakeWeekly("x", wday, 9, 0);
        event.date.day = 2;
        Edit(event);
        Frame();
        ExpectPrinted({std::string("Data: ogni ") + days[wday], 17, 375});

        View(event);
        Frame();
        ExpectPrinted({std::string("Data: ogni ") + days[wday], 17, 330});
    }
}

TEST_F(EditorTest, AWeeklyEventStoredOnTodaysDayNumberReadsOggiInTheViewAloneWhateverItsWeekday) {
    for (int wday = 0; wday < 7; ++wday) {
        Event event = MakeWeekly("x", wday, 9, 0);
        event.date.month = 11;
        View(event);
        Frame();
        ExpectPrinted({"Data: Oggi", 17, 330});

        Edit(event);
        Frame();
        EXPECT_EQ(DateLine(), std::string("Data: ogni ") + GetWdayStr(wday));
    }
}

TEST_F(EditorTest, AWeeklyEventOnNoWeekdayEndsWithTheBlank) {
    Edit(MakeWeekly("x", 9, 9, 0));

    Frame();

    EXPECT_EQ(DateLine(), "Data: ogni ");
}

// ---- Time ----

TEST_F(EditorTest, TheTimeKeepsIts24HoursAndSaysAmOrPm) {
    struct Case {
        int hour, minute;
        const char* text;
    };
    const Case cases[] = {
        {0, 0, "Ora:   0 : 0 (am)"},     {11, 59, "Ora:   11 : 59 (am)"}, {12, 0, "Ora:   12 : 0 (pm)"},
        {15, 30, "Ora:   15 : 30 (pm)"}, {23, 5, "Ora:   23 : 5 (pm)"},
    };
    for (const Case& row : cases) {
        const Event appointment = MakeAppointment("x", 20, 9, 2013, row.hour, row.minute);
        const Event weekly = MakeWeekly("x", 5, row.hour, row.minute);
        for (const int screen : {kEditorScreen, kViewScreen}) {
            for (const Event& event : {appointment, weekly}) {
                Open(screen, event);

                Frame();

                ExpectPrinted({row.text, 20, 280});
            }
        }
    }
}

TEST_F(EditorTest, AnAppointmentDueIn42MinutesIsViewedWithThemWhateverTheSeconds) {
    for (const int second : {0, 36, 59}) {
        SetNow(2012, 5, 16, 10, 30, second);
        View(DueIn(42));

        Frame();

        ExpectPrinted({"Ora:  tra 42 minuti", 20, 280});
    }
}

TEST_F(EditorTest, TheViewCountsTheMinutesOfTheLastHourOnly) {
    struct Case {
        int minutes;
        const char* text;
    };
    const Case cases[] = {
        {-1, "Ora:   10 : 29 (am)"},
        {0, "Ora:   10 : 30 (am)"},
        {1, "Ora:  tra 1 minuti"},
        {29, "Ora:  tra 29 minuti"},
    };
    for (const Case& row : cases) {
        View(DueIn(row.minutes));
        Frame();
        EXPECT_EQ(TimeLine(), row.text);
    }
    View(MakeAppointment("x", 16, 5, 2012, 11, 30));
    Frame();
    EXPECT_EQ(TimeLine(), "Ora:  tra 60 minuti");
    View(MakeAppointment("x", 16, 5, 2012, 11, 31));
    Frame();
    EXPECT_EQ(TimeLine(), "Ora:   11 : 31 (am)");
}

TEST_F(EditorTest, TheViewOfAWeeklyEventCountsItsMinutesToo) {
    View(MakeWeekly("x", 3, 10, 45));
    Frame();
    EXPECT_EQ(TimeLine(), "Ora:  tra 15 minuti");

    View(MakeWeekly("x", 4, 10, 45));
    Frame();
    EXPECT_EQ(TimeLine(), "Ora:   10 : 45 (am)");
}

TEST_F(EditorTest, TheEditorNeverCountsMinutes) {
    Edit(DueIn(15));

    Frame();

    EXPECT_EQ(TimeLine(), "Ora:   10 : 45 (am)");
}

// ---- Arrows ----

/// A row of arrows in the editor: what they change and how it wraps.
struct ArrowRow {
    const char* name;
    EventKind kind;
    std::int32_t& (*field)(Event&);
    int x, up_y, down_y;  ///< centres, canvas units
    int last, after_last;
    int first, before_first;
};

const ArrowRow kRows[] = {
    {"wday", kWeekly, [](Event& e) -> std::int32_t& { return e.wday; }, 150, 410, 362, 6, 0, 0, 6},
    {"day", kAppointment, [](Event& e) -> std::int32_t& { return e.date.day; }, 105, 410, 362, 31, 1, 1, 31},
    {"month", kAppointment, [](Event& e) -> std::int32_t& { return e.date.month; }, 150, 410, 362, 12, 1, 1,
     31},
    {"year", kAppointment, [](Event& e) -> std::int32_t& { return e.date.year; }, 210, 410, 362, INT_MAX,
     INT_MAX, 1900, 1900},
    {"hour", kAppointment, [](Event& e) -> std::int32_t& { return e.time.hour; }, 105, 314, 266, 23, 0, 0,
     23},
    {"minute", kAppointment, [](Event& e) -> std::int32_t& { return e.time.minute; }, 150, 314, 266, 59, 0, 0,
     59},
    {"hour", kWeekly, [](Event& e) -> std::int32_t& { return e.time.hour; }, 105, 314, 266, 23, 0, 0, 23},
    {"minute", kWeekly, [](Event& e) -> std::int32_t& { return e.time.minute; }, 150, 314, 266, 59, 0, 0, 59},
};

class ArrowTest : public EditorTest {
  protected:
    /// Returns what an arrow of a row makes of a number, and checks that it changes nothing else but `done`.
    static int Clicked(const ArrowRow& row, int y, int value) {
        Event event = row.kind == kWeekly ? AnyWeekly() : AnyAppointment();
        row.field(event) = value;
        event.done = 1;
        Event& shown = Edit(event);

        ClickAt(row.x, y);

        const int result = row.field(shown);
        EXPECT_EQ(shown.done, 0) << row.name;
        row.field(event) = result;
        event.done = 0;
        EXPECT_TRUE(SameBytes(shown, event)) << row.name << " changes another field";
        return result;
    }
};

TEST_F(ArrowTest, EveryUpArrowRaisesItsFieldAndWrapsBeyondTheLast) {
    for (const ArrowRow& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Clicked(row, row.up_y, row.first), row.first + 1);
        EXPECT_EQ(Clicked(row, row.up_y, row.last - 1), row.last);
        EXPECT_EQ(Clicked(row, row.up_y, row.last), row.after_last);
    }
}

TEST_F(ArrowTest, EveryDownArrowLowersItsFieldAndWrapsBeforeTheFirst) {
    for (const ArrowRow& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Clicked(row, row.down_y, row.first + 1), row.first);
        EXPECT_EQ(Clicked(row, row.down_y, row.last), row.last - 1);
        EXPECT_EQ(Clicked(row, row.down_y, row.first), row.before_first);
    }
}

TEST_F(ArrowTest, Day1LoweredIs31Month1LoweredIs31AndYear1900LoweredStays) {
    EXPECT_EQ(Clicked(kRows[1], 362, 1), 31);
    EXPECT_EQ(Clicked(kRows[2], 362, 1), 31);
    EXPECT_EQ(Clicked(kRows[3], 362, 1900), 1900);
}

TEST_F(ArrowTest, NoDayIsTooLateForAMonth) {
    Event event = MakeAppointment("x", 30, 2, 2013, 9, 0);
    const Event& shown = Edit(event);

    ClickAt(105, 410);

    EXPECT_EQ(shown.date.day, 31);
    EXPECT_EQ(shown.date.month, 2);
}

TEST_F(ArrowTest, AFieldBeyondItsRangeComesBackIntoItAndNeverOverflows) {
    for (const ArrowRow& row : kRows) {
        SCOPED_TRACE(row.name);
        const bool year = row.last == INT_MAX;
        EXPECT_EQ(Clicked(row, row.up_y, INT_MAX), row.after_last);
        EXPECT_EQ(Clicked(row, row.down_y, INT_MIN), row.before_first);
        EXPECT_EQ(Clicked(row, row.up_y, INT_MIN), INT_MIN + 1);
        EXPECT_EQ(Clicked(row, row.down_y, INT_MAX), INT_MAX - 1);
        EXPECT_EQ(Clicked(row, row.up_y, year ? 2012 : 100), year ? 2013 : row.after_last);
        EXPECT_EQ(Clicked(row, row.down_y, -5), row.before_first);
    }
}

TEST_F(ArrowTest, AnAppointmentHasFivePairsAtTheirPlaces) {
    Edit(AnyAppointment());

    Frame();

    EXPECT_EQ(ButtonsDrawn(button_arrow_u),
              (Places{Around(105, 410, 15, 15), Around(150, 410, 15, 15), Around(210, 410, 15, 15),
                      Around(105, 314, 15, 15), Around(150, 314, 15, 15)}));
    EXPECT_EQ(ButtonsDrawn(button_arrow_d),
              (Places{Around(105, 362, 15, 15), Around(150, 362, 15, 15), Around(210, 362, 15, 15),
                      Around(105, 266, 15, 15), Around(150, 266, 15, 15)}));
    EXPECT_EQ(Colours(button_arrow_u), Rgbas(5, kWhite));
}

TEST_F(ArrowTest, AWeeklyEventHasThreePairsAtTheirPlaces) {
    Edit(AnyWeekly());

    Frame();

    EXPECT_EQ(ButtonsDrawn(button_arrow_u),
              (Places{Around(150, 410, 15, 15), Around(105, 314, 15, 15), Around(150, 314, 15, 15)}));
    EXPECT_EQ(ButtonsDrawn(button_arrow_d),
              (Places{Around(150, 362, 15, 15), Around(105, 266, 15, 15), Around(150, 266, 15, 15)}));
}

TEST_F(ArrowTest, TheViewHasNoArrowsAndNothingToClick) {
    for (const Event& event : {AnyAppointment(), AnyWeekly(), AnyReminder()}) {
        const Event& shown = View(event);
        Frame();
        const Event before = shown;
        EXPECT_TRUE(ButtonsDrawn(button_arrow_u).empty());
        EXPECT_TRUE(ButtonsDrawn(button_arrow_d).empty());

        for (const ArrowRow& row : kRows) {
            for (const int y : {row.up_y, row.down_y, row.up_y - 45, row.down_y - 45}) ClickAt(row.x, y);
        }
        ClickAt(215, 365);
        ClickAt(215, 315);

        EXPECT_TRUE(SameBytes(shown, before));
    }
}

TEST_F(ArrowTest, AnArrowLightsUpUnderThePointer) {
    Edit(AnyAppointment());
    PointAt(150, 362);

    Frame();

    EXPECT_EQ(Colours(button_arrow_d), (Rgbas{kWhite, kYellow, kWhite, kWhite, kWhite}));
    EXPECT_EQ(Colours(button_arrow_u), Rgbas(5, kWhite));
}

TEST_F(ArrowTest, AChangeIsNotSaved) {
    Clicked(kRows[1], 410, 5);

    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(ArrowTest, ThePeriodsArrowsLeaveDoneAlone) {
    Event event = AnyReminder();
    event.done = 1;
    const Event& shown = Edit(event);

    ClickAt(215, 365);
    ClickAt(215, 315);

    EXPECT_EQ(shown.done, 1);
}

TEST_F(ArrowTest, AHeldButtonChangesAFieldOnce) {
    const Event& shown = Edit(AnyAppointment());

    ClickAt(105, 410);
    PointAt(105, 410);
    Frame();
    Frame();

    EXPECT_EQ(shown.date.day, 21);
}

// ---- Caret ----

TEST_F(EditorTest, TheCaretChangesAfterHalfASecondAndNotAtIt) {
    Edit(AnyAppointment());
    edit_tf = kNameField;
    for (const bool visible : {false, true}) {
        caret = {visible, 0.25F};

        Frame(0.25F);
        EXPECT_EQ(NameLine(), visible ? "visita|" : "visita");
        EXPECT_EQ(caret.ecte, 0.5F);

        Frame(0.0625F);
        EXPECT_EQ(NameLine(), visible ? "visita" : "visita|");
        EXPECT_EQ(caret.ecte, 0) << "counted from zero again";
    }
}

TEST_F(EditorTest, TheCaretBlinksWithoutFocusAndInTheViewToo) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        Open(screen, AnyAppointment());
        edit_tf = kNoField;
        caret = {false, 0.5F};

        Frame(0.125F);

        EXPECT_TRUE(caret.ec) << screen;
    }
}

TEST_F(EditorTest, TheCaretStandsAtTheFocusedFieldAlone) {
    Event event = AnyAppointment();
    SetText(event.description, "dal medico");
    Edit(event);
    caret.ec = true;
    Frame();
    EXPECT_EQ(NameLine(), "visita");
    EXPECT_EQ(DescriptionLine(), "dal medico");

    edit_tf = kNameField;
    Frame();
    EXPECT_EQ(NameLine(), "visita|");
    EXPECT_EQ(DescriptionLine(), "dal medico");

    edit_tf = kDescriptionField;
    Frame();
    EXPECT_EQ(NameLine(), "visita");
    EXPECT_EQ(DescriptionLine(), "dal medico|");
}

TEST_F(EditorTest, AnEmptyFocusedFieldShowsItsCaretOrNothing) {
    Edit(MakeAppointment("", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;
    Frame();
    EXPECT_EQ(NameLine(), "nothing");

    caret.ec = true;
    Frame();
    EXPECT_EQ(NameLine(), "|");

    edit_tf = kDescriptionField;
    Frame();
    EXPECT_EQ(NameLine(), "evento senza nome");
    EXPECT_EQ(DescriptionLine(), "|");
}

TEST_F(EditorTest, InTheViewNoFieldHasFocusWhateverEditTfSays) {
    View(MakeAppointment("", 20, 9, 2013, 15, 20));
    for (const int field : {kNameField, kDescriptionField}) {
        edit_tf = field;
        caret.ec = true;

        Frame();

        EXPECT_EQ(NameLine(), "evento senza nome");
        EXPECT_EQ(DescriptionLine(), "nessuna descrizione");
    }
}

// ---- Focus ----

TEST_F(EditorTest, AClickGivesTheFocusToTheFieldUnderIt) {
    struct Case {
        int x, y, field;
    };
    const Case cases[] = {
        {120, 220, kNameField},        {29, 220, kNameField},        {211, 220, kNameField},
        {28, 220, kNoField},           {212, 220, kNoField},         {120, 234, kNameField},
        {120, 235, kNoField},          {120, 206, kNameField},       {120, 205, kNoField},
        {256, 108, kDescriptionField}, {32, 108, kDescriptionField}, {480, 108, kDescriptionField},
        {31, 108, kNoField},           {481, 108, kNoField},         {256, 194, kDescriptionField},
        {256, 195, kNoField},          {256, 22, kDescriptionField}, {256, 21, kNoField},
        {300, 300, kNoField},          {506, 506, kNoField},
    };
    Edit(AnyAppointment());
    for (const int before : {kNoField, kNameField, kDescriptionField}) {
        for (const Case& row : cases) {
            edit_tf = before;

            ClickAt(row.x, row.y);

            EXPECT_EQ(edit_tf, row.field) << row.x << ", " << row.y;
        }
    }
}

TEST_F(EditorTest, TheFocusStaysWithoutAClick) {
    Edit(AnyAppointment());
    edit_tf = kDescriptionField;
    PointAt(120, 220);

    Frame();

    EXPECT_EQ(edit_tf, kDescriptionField);
}

TEST_F(EditorTest, AClickInTheViewFocusesNothing) {
    View(AnyAppointment());
    for (const int y : {220, 108}) {
        edit_tf = kNameField;

        ClickAt(120, y);

        EXPECT_EQ(edit_tf, kNoField);
    }
}

TEST_F(EditorTest, TheFocusShowsInTheFrameOfTheClick) {
    Edit(MakeAppointment("", 20, 9, 2013, 15, 20));

    ClickAt(120, 220);

    EXPECT_EQ(NameLine(), "nothing");
}

TEST_F(EditorTest, TheAreasOfTheFieldsAreNotDrawn) {
    Edit(AnyAppointment());

    Frame();

    EXPECT_TRUE(ButtonsDrawn(0).empty());
}

TEST_F(EditorTest, HasRoomInAFieldThatHasTheFocusWhileItIsOpenAndNowhereElse) {
    Edit(AnyAppointment());
    for (int screen = kOwlScreen; screen <= kQuizScreen; ++screen) {
        for (const int field : {kNoField, kNameField, kDescriptionField}) {
            menu_case_id = screen;
            edit_tf = field;

            EXPECT_EQ(EditorRoom() != kNoFocus, screen == kEditorScreen && field != kNoField)
                << "screen " << screen << ", field " << field;
        }
    }
}

TEST_F(EditorTest, HasRoomFor17CharactersInTheNameAnd345InTheDescription) {
    Event& event = Edit(AnyAppointment());
    for (const int length : {0, 1, 16, 17, 18}) {
        edit_tf = kNameField;
        SetText(event.name, std::string(static_cast<std::size_t>(length), 'n'));
        EXPECT_EQ(EditorRoom(), std::max(0, 17 - length)) << length;
    }
    for (const int length : {0, 1, 344, 345, 400}) {
        edit_tf = kDescriptionField;
        SetText(event.description, std::string(static_cast<std::size_t>(length), 'd'));
        EXPECT_EQ(EditorRoom(), std::max(0, 345 - length)) << length;
    }
}

TEST_F(EditorTest, HasNoRoomButAFocusWithoutAnEvent) {
    edit_event = nullptr;
    menu_case_id = kEditorScreen;
    edit_tf = kNameField;

    EXPECT_EQ(EditorRoom(), 0);
}

// ---- Name and description ----

TEST_F(EditorTest, ShowsNameAndDescription) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        Event event = AnyAppointment();
        SetText(event.description, "dal medico");
        Open(screen, event);

        Frame();

        ExpectPrinted({"visita", 28, 210});
        ExpectPrinted({"dal medico", 28, 170});
    }
}

TEST_F(EditorTest, SaysSoWhereTheyAreEmpty) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        Open(screen, Event());

        Frame();

        ExpectPrinted({"evento senza nome", 28, 210});
        ExpectPrinted({"nessuna descrizione", 28, 170});
    }
}

TEST_F(EditorTest, TheDescriptionIsABoxOf43CharactersALineAnd44InTheFirst) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += static_cast<char>('a' + i % 26);
    Event event;
    SetText(event.description, text);
    Edit(event);

    Frame();

    ExpectPrinted({text.substr(0, 44), 28, 170});
    ExpectPrinted({text.substr(44, 43), 28, 170 - 20.5});
    ExpectPrinted({text.substr(87), 28, 170 - 41});
}

TEST_F(EditorTest, TheCaretFollowsInTheBox) {
    Event event;
    SetText(event.description, std::string(44, 'd'));
    Edit(event);
    edit_tf = kDescriptionField;
    caret.ec = true;

    Frame();

    ExpectPrinted({"|", 28, 149.5});
}

TEST_F(EditorTest, FieldsWithoutNulAreShownUpToTheirOwnEnd) {
    Event event = AnyAppointment();
    SetText(event.name, std::string(20, 'n'));
    SetText(event.description, std::string(512, 'd'));
    event.date.day = 0x41414141;
    for (const int screen : {kEditorScreen, kViewScreen}) {
        const Event& shown = Open(screen, event);

        Frame();

        EXPECT_EQ(NameLine(), std::string(20, 'n'));
        std::size_t letters = 0;
        for (const PrintedLine& line : PrintedText()) {
            if (line.y > 170.5) continue;
            EXPECT_EQ(line.text, std::string(line.text.size(), 'd'));
            letters += line.text.size();
        }
        EXPECT_EQ(letters, 511U);  // what a text box holds
        EXPECT_TRUE(SameBytes(shown, event));
    }
}

TEST_F(EditorTest, TextsAreNoFormats) {
    Event event = MakeAppointment("%s%n%d", 20, 9, 2013, 15, 20);
    SetText(event.description, "%s%n 5%");
    Edit(event);

    Frame();

    EXPECT_EQ(NameLine(), "%s%n%d");
    EXPECT_EQ(DescriptionLine(), "%s%n 5%");
}

// ---- Typing ----

TEST_F(EditorTest, KeysGoIntoTheFocusedFieldAlone) {
    const Event& shown = Edit(MakeAppointment("a", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;
    PressEach("bc");
    EXPECT_EQ(NameOf(shown), "abc");
    EXPECT_EQ(DescriptionOf(shown), "");

    edit_tf = kDescriptionField;
    PressEach("de");
    EXPECT_EQ(NameOf(shown), "abc");
    EXPECT_EQ(DescriptionOf(shown), "de");

    edit_tf = kNoField;
    PressEach("fg");
    EXPECT_EQ(NameOf(shown), "abc");
    EXPECT_EQ(DescriptionOf(shown), "de");
}

TEST_F(EditorTest, KeysOfOneFrameAreTakenInTheOrderOfTheirCodes) {
    const Event& shown = Edit(MakeAppointment("", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;

    Press({'z', 'b', ' ', 'A', '~'});

    EXPECT_EQ(NameOf(shown), " Abz~");
}

TEST_F(EditorTest, Key127RemovesTheLastCharacterInItsTurn) {
    const Event& shown = Edit(MakeAppointment("ab", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;
    Press({127});
    EXPECT_EQ(NameOf(shown), "a");
    Press({'x', 127});  // appended, then removed
    EXPECT_EQ(NameOf(shown), "a");
    Press({127, 200});  // removed, then another appended
    EXPECT_EQ(NameOf(shown), "\xC8");
    Press({127});
    Press({127});

    EXPECT_EQ(NameOf(shown), "");
}

TEST_F(EditorTest, KeysUpTo2TypeNothingAndEveryOtherOneItself) {
    for (int key = 0; key < 256; ++key) {
        const Event& shown = Edit(MakeAppointment("", 20, 9, 2013, 15, 20));
        edit_tf = kDescriptionField;

        Press({key});

        const bool types = key > 2 && key != 127;
        EXPECT_EQ(DescriptionOf(shown), types ? std::string(1, static_cast<char>(key)) : "") << key;
    }
}

TEST_F(EditorTest, Typing20LettersIntoTheNameKeepsTheFirst17) {
    const Event& shown = Edit(MakeAppointment("", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;

    PressEach("abcdefghijklmnopqrst");

    EXPECT_EQ(NameOf(shown), "abcdefghijklmnopq");
}

TEST_F(EditorTest, LettersOfOneFrameStopAtTheLimitToo) {
    const Event& shown = Edit(MakeAppointment("0123456789abcdef", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;

    Press({'x', 'y', 'z'});

    EXPECT_EQ(NameOf(shown), "0123456789abcdefx");
}

TEST_F(EditorTest, ADescriptionOf344CharactersTakesOneMoreAndThenNone) {
    Event event;
    SetText(event.description, std::string(344, 'd'));
    const Event& shown = Edit(event);
    edit_tf = kDescriptionField;

    PressEach("xyz");

    EXPECT_EQ(DescriptionOf(shown), std::string(344, 'd') + "x");
}

TEST_F(EditorTest, ALongerTextFromTheFileStaysUntilCharactersAreRemoved) {
    Event event;
    SetText(event.name, std::string(20, 'n'));
    SetText(event.description, std::string(512, 'd'));
    const Event& shown = Edit(event);
    edit_tf = kNameField;
    PressEach("x");
    EXPECT_EQ(NameOf(shown), std::string(20, 'n'));
    Press({127});
    EXPECT_EQ(NameOf(shown), std::string(19, 'n'));

    edit_tf = kDescriptionField;
    PressEach("x");
    EXPECT_EQ(DescriptionOf(shown), std::string(512, 'd'));
    Press({127});

    EXPECT_EQ(DescriptionOf(shown), std::string(511, 'd'));
    EXPECT_EQ(NameOf(shown), std::string(19, 'n'));
}

TEST_F(EditorTest, AFieldThatIsTypedIntoIsZeroedBehindItsText) {
    Event event;
    SetText(event.name, std::string("ab\0cdef", 7));
    SetText(event.description, std::string("gh\0ijkl", 7));
    const Event& shown = Edit(event);

    edit_tf = kNameField;
    Press({127});
    edit_tf = kDescriptionField;
    PressEach("x");

    EXPECT_EQ(std::string(shown.name, 20), "a" + std::string(19, '\0'));
    EXPECT_EQ(std::string(shown.description, 512), "ghx" + std::string(509, '\0'));
}

TEST_F(EditorTest, AFocusedFieldThatNothingIsTypedIntoKeepsItsBytes) {
    Event event;
    SetText(event.name, std::string("ab\0cdef", 7));
    SetText(event.description, std::string("gh\0ijkl", 7));
    const Event& shown = Edit(event);
    for (const int field : {kNameField, kDescriptionField}) {
        edit_tf = field;
        Press({});
    }

    EXPECT_TRUE(SameBytes(shown, event));
}

TEST_F(EditorTest, WhatIsTypedShowsFromTheNextFrameOnAndIsNotSaved) {
    Edit(MakeAppointment("a", 20, 9, 2013, 15, 20));
    edit_tf = kNameField;
    PressEach("b");
    EXPECT_EQ(NameLine(), "a");

    Press({});

    EXPECT_EQ(NameLine(), "ab");
    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(EditorTest, NothingTypedChangesAnEventInTheView) {
    const Event& shown = View(AnyAppointment());
    for (const int field : {kNameField, kDescriptionField}) {
        edit_tf = field;
        PressEach("abc");
        Press({127});
    }

    EXPECT_TRUE(SameBytes(shown, AnyAppointment()));
}

// ---- The view ----

TEST_F(EditorTest, TheViewShowsNoConfirmation) {
    View(AnyAppointment());

    Frame();

    EXPECT_FALSE(IsPrinted("conferma"));
    ClickConfirm();
    EXPECT_EQ(menu_case_id, kViewScreen);
    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(EditorTest, TheViewIsDrawnInOrder) {
    View(DueIn(42));

    Frame();

    EXPECT_EQ(Words(PrintedText()), (Names{"appuntamento", "settimanale", "promemoria", "Data:  Oggi",
                                           "Ora:  tra 42 minuti", "visita", "nessuna descrizione"}));
    EXPECT_EQ(ScreenShown(), kViewScreen);
}

// ---- The frame ----

TEST_F(EditorTest, TheEditorIsDrawnInOrder) {
    Edit(AnyAppointment());

    Frame();

    std::vector<unsigned int> textures;
    for (const fakes::Primitive& drawn : fakes::gl().primitives) {
        if (textures.empty() || textures.back() != drawn.texture) textures.push_back(drawn.texture);
    }
    const unsigned int up = button_arrow_u;
    const unsigned int down = button_arrow_d;
    EXPECT_EQ(textures, (std::vector<unsigned int>{GUI[kEditorScreen], button[kChecked], button[kUnchecked],
                                                   button_check, font, button_trash, font, up, down, up, down,
                                                   up, down, up, down, up, down, font}));
    EXPECT_EQ(Words(PrintedText()),
              (Names{"conferma", "appuntamento", "settimanale", "promemoria", "Data:  20 / 9 / 2013",
                     "Ora:   15 : 20 (pm)", "visita", "nessuna descrizione"}));
}

TEST_F(EditorTest, WithoutAnEventOnlyItsPictureIsDrawn) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        menu_case_id = screen;
        edit_event = nullptr;

        ClickClose();

        EXPECT_EQ(fakes::gl().primitives.size(), 1U);
        EXPECT_EQ(menu_case_id, screen);
        EXPECT_TRUE(NothingIsSaved());
    }
}

TEST_F(EditorTest, LeavesWhite) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        for (const Event& event : {AnyAppointment(), AnyWeekly(), AnyReminder()}) {
            Open(screen, event);

            Frame();

            EXPECT_EQ(fakes::gl().color, kWhite);
        }
    }
}

TEST_F(EditorTest, DropsTheQuizOffer) {
    for (const int screen : {kEditorScreen, kViewScreen}) {
        Open(screen, AnyAppointment());
        spawn_question = true;

        Frame();

        EXPECT_FALSE(spawn_question);
    }
}

TEST_F(EditorTest, DoesNotSortTheEvents) {
    AddAppointment("b", 20, 9, 2013, 15, 20);
    AddAppointment("a", 19, 9, 2013, 15, 20);
    edit_event = &events.front();
    menu_case_id = kEditorScreen;

    Frame();

    EXPECT_EQ(NamesOf(events), (Names{"b", "a"}));
}

}  // namespace
