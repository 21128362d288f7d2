// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: what is drawn, the rows' areas, the rows' texts, opening events, adding, closing, scrolling, order.
#include "calendar/list.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tests/unit/calendar_fixture.h"

namespace {

using Names = std::vector<std::string>;
using Places = std::vector<fakes::Rect>;

constexpr int kShownRows = 12;

/// Returns the middle of a row, canvas units.
int RowY(int row) {
    return 390 - 32 * row;
}

class ListTest : public CalendarTest {
  protected:
    void SetUp() override {
        CalendarTest::SetUp();
        menu_case_id = kListScreen;
    }

    static void ClickRow(int row) { ClickAt(200, RowY(row)); }

    static void ScrollDown(int times) {
        for (int i = 0; i < times; ++i) ClickAt(485, 40);
    }
    static void ScrollUp(int times) {
        for (int i = 0; i < times; ++i) ClickAt(485, 389);
    }

    /// Returns the texts of the first column from the top, by their places.
    static Names NamesShown() {
        Names names;
        for (const PrintedLine& line : PrintedText()) {
            if (std::abs(line.x - 18) > 0.01) continue;
            EXPECT_NEAR(line.y, RowY(static_cast<int>(names.size())) - 9, 0.01) << line;
            names.push_back(line.text);
        }
        return names;
    }

    /// Returns the text of the date column in the first row.
    static std::string DateShown() { return TextCentredAt(283.5); }
    /// Returns the text of the time column in the first row.
    static std::string TimeShown() { return TextCentredAt(390); }

    static std::string TextCentredAt(double x) {
        for (const PrintedLine& line : PrintedText()) {
            if (std::abs(line.centre_x - x) < 0.01 && std::abs(line.y - 381) < 0.01) return line.text;
        }
        return "nothing";
    }

    /// Draws the list with one event.
    static void Show(const Event& event) {
        events.clear();
        Add(event);
        Frame();
    }
};

// ---- What is drawn ----

TEST_F(ListTest, IsDrawnOnItsPanelPicture) {
    Frame();

    EXPECT_EQ(ScreenShown(), kListScreen);
    EXPECT_EQ(ButtonsDrawn(GUI[kListScreen]), (Places{{0, 0, 512, 512}}));
}

TEST_F(ListTest, ShowsThreeTabsAsAHeader) {
    Frame();

    EXPECT_EQ(
        ButtonsDrawn(button[kUnchecked]),
        (Places{Around(87, 486, 75.5, 15), Around(243.5, 486, 70.5, 15), Around(391.5, 486, 67.75, 15)}));
    EXPECT_TRUE(ButtonsDrawn(button[kChecked]).empty());
    EXPECT_EQ(Colours(button[kUnchecked]), (std::vector<fakes::Rgba>(3, kWhite)));
}

TEST_F(ListTest, TheTabsDoNothingAndDoNotLightUp) {
    AddAppointments(3);
    for (const int x : {87, 243, 391}) {
        ClickAt(x, 486);
        PointAt(x, 486);
        Frame();

        EXPECT_EQ(Colours(button[kUnchecked]), (std::vector<fakes::Rgba>(3, kWhite)));
        EXPECT_EQ(menu_case_id, kListScreen);
        EXPECT_EQ(edit_event, nullptr);
    }
}

TEST_F(ListTest, ShowsItsButtonsAtTheirPlaces) {
    Frame();

    EXPECT_EQ(ButtonsDrawn(button_add), (Places{Around(447.12, 436.5, 20.5, 20)}));
    EXPECT_EQ(ButtonsDrawn(button_close), (Places{Around(485.12, 486, 15.5, 15)}));
    EXPECT_EQ(ButtonsDrawn(button_arrow_u), (Places{Around(485, 389, 15, 15)}));
    EXPECT_EQ(ButtonsDrawn(button_arrow_d), (Places{Around(485, 40, 15, 15)}));
    EXPECT_TRUE(ButtonsDrawn(button_trash).empty());
    EXPECT_TRUE(ButtonsDrawn(button_check).empty());
}

TEST_F(ListTest, AddAndCloseLightUpUnderThePointer) {
    PointAt(447, 436);
    Frame();
    EXPECT_EQ(Colours(button_add), (std::vector<fakes::Rgba>{kYellow}));
    EXPECT_EQ(Colours(button_close), (std::vector<fakes::Rgba>{kWhite}));

    PointAt(485, 486);
    Frame();
    EXPECT_EQ(Colours(button_add), (std::vector<fakes::Rgba>{kWhite}));
    EXPECT_EQ(Colours(button_close), (std::vector<fakes::Rgba>{kYellow}));
}

TEST_F(ListTest, LabelsTheAddButton) {
    Frame();

    EXPECT_EQ(Words(PrintedText()), (Names{"aggiungi"}));
    ExpectPrinted({"aggiungi", 372, 436.5, true});
}

TEST_F(ListTest, DrawsItsStepsInOrder) {
    AddAppointments(1);
    Frame();

    std::vector<unsigned int> textures;
    for (const fakes::Primitive& drawn : fakes::gl().primitives) {
        if (textures.empty() || textures.back() != drawn.texture) textures.push_back(drawn.texture);
    }
    EXPECT_EQ(textures, (std::vector<unsigned int>{GUI[kListScreen], button[kUnchecked], button_add,
                                                   button_close, 0, font, button_arrow_u, button_arrow_d}));
    EXPECT_EQ(Words(PrintedText()), (Names{"aggiungi", "01", "18/5/2012", "9:0"}));
}

TEST_F(ListTest, LeavesWhite) {
    for (const int count : {0, 5, 20}) {
        events.clear();
        AddAppointments(count);
        PointAt(200, RowY(2));

        Frame();

        EXPECT_EQ(fakes::gl().color, kWhite) << count;
    }
}

// ---- The rows' areas ----

TEST_F(ListTest, FillsTwelveUntexturedRowsWhateverTheListHolds) {
    Places rows;
    for (int row = 0; row < kShownRows; ++row) rows.push_back(Around(241.5, RowY(row), 225.5, 15));
    for (const int count : {0, 3, 12, 20}) {
        events.clear();
        AddAppointments(count);

        Frame();

        EXPECT_EQ(ButtonsDrawn(0), rows) << count;
    }
}

TEST_F(ListTest, ShadesTheRowsAlternately) {
    Frame();

    const std::vector<fakes::Rgba> colours = Colours(0);
    ASSERT_EQ(colours.size(), 12U);
    for (std::size_t row = 0; row < colours.size(); ++row) {
        EXPECT_EQ(colours[row], (fakes::Rgba{1, 1, 1, row % 2 == 0 ? 0.35F : 0.25F})) << row;
    }
}

TEST_F(ListTest, TheShadingFollowsTheEventsWhileScrolling) {
    AddAppointments(20);
    event_list.swap = 3;

    Frame();

    EXPECT_EQ(Colours(0).at(0), (fakes::Rgba{1, 1, 1, 0.25F}));
    EXPECT_EQ(Colours(0).at(1), (fakes::Rgba{1, 1, 1, 0.35F}));
}

TEST_F(ListTest, ARowWithAnEventLightsUpUnderThePointer) {
    AddAppointments(3);
    for (int row = 0; row < kShownRows; ++row) {
        PointAt(200, RowY(row));

        Frame();

        for (int other = 0; other < kShownRows; ++other) {
            const fakes::Rgba shade{1, 1, 1, other % 2 == 0 ? 0.35F : 0.25F};
            const fakes::Rgba lit{1, 1, 0.5F, 0.4F};
            EXPECT_EQ(Colours(0).at(static_cast<std::size_t>(other)), other == row && row < 3 ? lit : shade)
                << "row " << other << ", pointer on " << row;
        }
    }
}

TEST_F(ListTest, ARowReachesToItsEdgesAndNotOntoThem) {
    AddAppointments(3);
    struct Case {
        int x, y;
        bool over;
    };
    const Case cases[] = {
        {16, 390, false}, {17, 390, true},  {466, 390, true},  {467, 390, false}, {200, 405, false},
        {200, 404, true}, {200, 376, true}, {200, 375, false}, {200, 374, false},
    };
    for (const Case& row : cases) {
        edit_event = nullptr;
        menu_case_id = kListScreen;

        ClickAt(row.x, row.y);

        EXPECT_EQ(edit_event != nullptr, row.over) << row.x << ", " << row.y;
    }
}

// ---- The rows' texts ----

TEST_F(ListTest, WithFiveEventsShowsFiveRowsAndTwoGreyArrows) {
    AddAppointments(5);

    Frame();

    EXPECT_EQ(NamesShown(), (Names{"01", "02", "03", "04", "05"}));
    EXPECT_EQ(Colours(button_arrow_u), (std::vector<fakes::Rgba>{kGrey}));
    EXPECT_EQ(Colours(button_arrow_d), (std::vector<fakes::Rgba>{kGrey}));
}

TEST_F(ListTest, WritesNameDateAndTimeOfAnAppointmentInItsRow) {
    AddAppointment("dentista", 3, 9, 2013, 8, 5);
    AddAppointment("cena", 24, 12, 2014, 20, 30);

    Frame();

    ExpectPrinted({"dentista", 18, 381});
    ExpectPrinted({"3/9/2013", 283.5, 381, true});
    ExpectPrinted({"8:5", 390, 381, true});
    ExpectPrinted({"cena", 18, 349});
    ExpectPrinted({"24/12/2014", 283.5, 349, true});
    ExpectPrinted({"20:30", 390, 349, true});
    EXPECT_EQ(PrintedText().size(), 7U);
}

TEST_F(ListTest, WritesNoMoreThanTwelveRowsDownToTheLast) {
    AddAppointments(20);

    Frame();

    EXPECT_EQ(NamesShown().size(), 12U);
    ExpectPrinted({"12", 18, 390 - 32 * 11 - 9});
}

TEST_F(ListTest, AnEventWithoutNameIsCalledSo) {
    Show(MakeAppointment("", 3, 9, 2013, 8, 5));

    ExpectPrinted({"evento senza nome", 18, 381});
}

TEST_F(ListTest, AnAppointmentOnTodaysDayNumberReadsOggiInAnyMonthAndYear) {
    for (const int month : {1, 5, 12}) {
        Show(MakeAppointment("x", 16, month, 2020, 8, 5));

        EXPECT_EQ(DateShown(), "Oggi") << month;
    }
    Show(MakeAppointment("x", 17, 5, 2012, 8, 5));
    EXPECT_EQ(DateShown(), "17/5/2012");
}

TEST_F(ListTest, AWeeklyEventOnTodaysWeekdayReadsOggiWhateverItsStoredDate) {
    Event event = MakeWeekly("x", 3, 8, 5);
    event.date.day = 2;

    Show(event);

    ExpectPrinted({"Oggi", 283.5, 381, true});
    EXPECT_EQ(TimeShown(), "8:5");
}

TEST_F(ListTest, AWeeklyEventOnAnotherWeekdayReadsItsNameEvenIfMadeOnTodaysDate) {
    const char* const days[] = {"dom", "lun", "mar", nullptr, "giov", "ven", "sab"};
    for (int wday = 0; wday < 7; ++wday) {
        if (wday == 3) continue;

        Show(MakeWeekly("x", wday, 8, 5));

        EXPECT_EQ(DateShown(), std::string("ogni ") + days[wday]);
    }
    ExpectPrinted({"ogni sab", 283.5, 381, true});
}

TEST_F(ListTest, AReminderReadsPromemoriaAndNoTimeEvenOnTodaysDate) {
    Show(MakeReminder("x", 1, 0));

    ExpectPrinted({"promemoria", 283.5, 381, true});
    ExpectPrinted({"/", 390, 381, true});
}

TEST_F(ListTest, NumbersHaveNoLeadingZeros) {
    Show(MakeAppointment("x", 1, 2, 3, 0, 7));

    EXPECT_EQ(DateShown(), "1/2/3");
    EXPECT_EQ(TimeShown(), "0:7");
}

TEST_F(ListTest, ANameWithoutNulIsShownUpToItsOwnEnd) {
    Event event = MakeAppointment("", 3, 9, 2013, 8, 5);
    SetText(event.name, std::string(20, 'n'));
    SetText(event.description, "descrizione");

    Show(event);

    ExpectPrinted({std::string(20, 'n'), 18, 381});
}

TEST_F(ListTest, ANameIsNoFormat) {
    Show(MakeAppointment("%d%s%n 100%", 3, 9, 2013, 8, 5));

    ExpectPrinted({"%d%s%n 100%", 18, 381});
}

TEST_F(ListTest, AnEventOfAnUnknownKindIsListedByItsDate) {
    Event event = MakeAppointment("x", 3, 9, 2013, 8, 5);
    event.kind = 9;

    Show(event);

    EXPECT_EQ(DateShown(), "3/9/2013");
    EXPECT_EQ(TimeShown(), "8:5");
}

TEST_F(ListTest, TodayIsTheFramesDay) {
    Show(MakeAppointment("x", 17, 5, 2012, 8, 5));
    fakes::SetLocalTime(2012, 5, 17, 0, 0);

    Frame();

    EXPECT_EQ(DateShown(), "Oggi");
}

// ---- Opening events ----

TEST_F(ListTest, AClickOnARowOpensItsEventInTheEditorFromTheNextFrameOn) {
    AddAppointments(12);
    for (int row = 0; row < kShownRows; ++row) {
        menu_case_id = kListScreen;

        ClickRow(row);

        EXPECT_EQ(edit_event, &*std::next(events.begin(), row)) << row;
        EXPECT_EQ(menu_case_id, kEditorScreen);
        EXPECT_EQ(ScreenShown(), kListScreen);
        EXPECT_EQ(events.size(), 12U);
    }
    Frame();
    EXPECT_EQ(ScreenShown(), kEditorScreen);
    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(ListTest, AClickOnAnEmptyRowDoesNothing) {
    AddAppointments(3);

    for (int row = 3; row < kShownRows; ++row) ClickRow(row);

    EXPECT_EQ(edit_event, nullptr);
    EXPECT_EQ(menu_case_id, kListScreen);
}

TEST_F(ListTest, AClickBetweenTwoRowsDoesNothing) {
    AddAppointments(3);

    ClickAt(200, 374);

    EXPECT_EQ(edit_event, nullptr);
}

TEST_F(ListTest, APointerWithoutClickOpensNothing) {
    AddAppointments(3);
    PointAt(200, RowY(0));

    Frame();

    EXPECT_EQ(edit_event, nullptr);
    EXPECT_EQ(menu_case_id, kListScreen);
}

TEST_F(ListTest, AfterScrollingAClickOpensTheEventThatTheRowShows) {
    AddAppointments(20);
    event_list.swap = 5;
    ClickRow(2);

    ASSERT_NE(edit_event, nullptr);
    EXPECT_EQ(NameOf(*edit_event), "08");
}

TEST_F(ListTest, AClickInTheFrameInWhichTheOrderChangesOpensTheEventThatTheUserSaw) {
    AddWeekly("lunedi", 1, 9, 0);
    AddWeekly("giovedi", 4, 9, 0);
    Frame();
    ASSERT_EQ(NamesShown(), (Names{"giovedi", "lunedi"}));
    SetNow(2012, 5, 21, 0, 0);  // a Monday: its event comes first now

    ClickRow(0);

    EXPECT_EQ(NameOf(*edit_event), "giovedi");
    EXPECT_EQ(NamesShown(), (Names{"lunedi", "giovedi"}));
}

// ---- Adding ----

TEST_F(ListTest, TheAddButtonAppendsAFreshEventAndOpensIt) {
    AddAppointments(2);
    SetNow(2012, 5, 16, 14, 37);

    ClickAt(447, 436);

    ASSERT_EQ(events.size(), 3U);
    ASSERT_NE(edit_event, nullptr);
    EXPECT_TRUE(SameBytes(*edit_event, Event()));
    EXPECT_EQ(edit_event->time.hour, 14);
    EXPECT_EQ(menu_case_id, kEditorScreen);
    EXPECT_TRUE(NothingIsSaved());
    Frame();
    EXPECT_EQ(ScreenShown(), kEditorScreen);
}

TEST_F(ListTest, AFreshEventShowsInTheFrameInWhichItIsAdded) {
    ClickAt(447, 436);

    EXPECT_EQ(NamesShown(), (Names{"evento senza nome"}));
    EXPECT_EQ(DateShown(), "Oggi");
    EXPECT_EQ(TimeShown(), "10:0");
}

TEST_F(ListTest, AddingToALongListOpensTheAddedEventWhereverItIsSorted) {
    AddAppointments(20);

    ClickAt(447, 436);

    ASSERT_EQ(events.size(), 21U);
    EXPECT_EQ(edit_event, &events.front());  // today comes before the coming days
}

TEST_F(ListTest, AnEventThatWasAddedAndLeftByTheListsCloseButtonIsKeptAndSavedWithTheNextSave) {
    ClickAt(447, 436);
    menu_case_id =
        kListScreen;  // the editor gives no way back without saving: as if the list were still open
    ClickAt(485, 486);
    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_EQ(events.size(), 1U);
    EXPECT_TRUE(NothingIsSaved());

    SaveEvents();

    EXPECT_EQ(StoredEvents().size(), 1U);
}

// ---- Closing ----

TEST_F(ListTest, TheCloseButtonLeadsToTheOwlFromTheNextFrameOnAndSavesNothing) {
    AddAppointments(2);

    ClickAt(485, 486);

    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_EQ(ScreenShown(), kListScreen);
    EXPECT_EQ(NamesShown(), (Names{"01", "02"}));
    EXPECT_TRUE(NothingIsSaved());
    EXPECT_EQ(events.size(), 2U);
    Frame();
    EXPECT_EQ(ScreenShown(), kOwlScreen);
}

TEST_F(ListTest, AnOpenListDropsTheQuizOffer) {
    spawn_question = true;

    Frame();

    EXPECT_FALSE(spawn_question);
}

// ---- Scrolling ----

TEST_F(ListTest, WithTwentyEventsTenClicksOnTheDownArrowLeaveTheEighthFirst) {
    AddAppointments(20);

    ScrollDown(10);
    Frame();

    EXPECT_EQ(NamesShown().front(), "09");
    EXPECT_EQ(NamesShown().back(), "20");
    EXPECT_EQ(NamesShown().size(), 12U);
}

TEST_F(ListTest, EachClickOnAnArrowScrollsByOneFromTheNextFrameOn) {
    AddAppointments(20);
    ScrollDown(1);
    EXPECT_EQ(NamesShown().front(), "01");
    Frame();
    EXPECT_EQ(NamesShown().front(), "02");

    ScrollDown(2);
    ScrollUp(1);
    Frame();

    EXPECT_EQ(NamesShown().front(), "03");
}

TEST_F(ListTest, ScrollsUpToTheTopAndNoFurther) {
    AddAppointments(20);
    event_list.swap = 3;

    ScrollUp(10);
    Frame();

    EXPECT_EQ(NamesShown().front(), "01");
    ScrollDown(1);
    Frame();
    EXPECT_EQ(NamesShown().front(), "02");
}

TEST_F(ListTest, AnArrowIsGreyExactlyWhereThereIsNothingToScrollTo) {
    struct Case {
        int count, down;
        fakes::Rgba up_colour, down_colour;
    };
    const Case cases[] = {
        {0, 0, kGrey, kGrey},   {12, 0, kGrey, kGrey},   {13, 0, kGrey, kWhite},
        {13, 1, kWhite, kGrey}, {20, 7, kWhite, kWhite}, {20, 8, kWhite, kGrey},
    };
    for (const Case& row : cases) {
        events.clear();
        AddAppointments(row.count);
        event_list.swap = row.down;

        Frame();

        EXPECT_EQ(Colours(button_arrow_u).at(0), row.up_colour) << row.count << ", " << row.down;
        EXPECT_EQ(Colours(button_arrow_d).at(0), row.down_colour) << row.count << ", " << row.down;
    }
}

TEST_F(ListTest, AnArrowIsWhiteOrGreyAlsoUnderThePointer) {
    AddAppointments(20);
    PointAt(485, 40);
    Frame();
    EXPECT_EQ(Colours(button_arrow_d), (std::vector<fakes::Rgba>{kWhite}));

    PointAt(485, 389);
    Frame();
    EXPECT_EQ(Colours(button_arrow_u), (std::vector<fakes::Rgba>{kGrey}));
}

TEST_F(ListTest, TheGreyOfAnArrowIsThatArrowsAlone) {
    AddAppointments(20);
    Frame();
    EXPECT_EQ(Colours(button_arrow_u), (std::vector<fakes::Rgba>{kGrey}));
    EXPECT_EQ(Colours(button_arrow_d), (std::vector<fakes::Rgba>{kWhite}));
    EXPECT_EQ(fakes::gl().color, kWhite);

    event_list.swap = 8;
    Frame();

    EXPECT_EQ(Colours(button_arrow_d), (std::vector<fakes::Rgba>{kGrey}));
    EXPECT_EQ(fakes::gl().color, kWhite);
    Frame();
    EXPECT_EQ(Colours(GUI[kListScreen]), (std::vector<fakes::Rgba>{kWhite}));
    EXPECT_EQ(Colours(button[kUnchecked]), (std::vector<fakes::Rgba>(3, kWhite)));
}

TEST_F(ListTest, AGreyArrowScrollsNothing) {
    AddAppointments(12);

    ScrollDown(3);
    Frame();

    EXPECT_EQ(NamesShown().front(), "01");
    EXPECT_EQ(NamesShown().size(), 12U);
    ScrollDown(1);
    AddAppointments(1);
    Frame();
    EXPECT_EQ(NamesShown().size(), 12U);
    EXPECT_EQ(event_list.swap, 0) << "nor what comes to the list later";
}

TEST_F(ListTest, AListThatBecameShorterIsScrolledBackToItsEnd) {
    AddAppointments(20);
    event_list.swap = 8;
    for (int i = 0; i < 4; ++i) events.pop_back();

    Frame();
    EXPECT_EQ(NamesShown().front(), "05");
    EXPECT_EQ(NamesShown().size(), 12U);

    events.resize(3);
    Frame();
    EXPECT_EQ(NamesShown(), (Names{"01", "02", "03"}));

    events.clear();
    Frame();
    EXPECT_TRUE(NamesShown().empty());
}

TEST_F(ListTest, KeepsItsPlaceWhileOtherScreensAreOpen) {
    AddAppointments(20);
    event_list.swap = 4;
    menu_case_id = kOwlScreen;
    Frame();
    menu_case_id = kListScreen;

    Frame();

    EXPECT_EQ(NamesShown().front(), "05");
}

// ---- Order ----

TEST_F(ListTest, IsSortedInEveryFrame) {
    AddAppointment("b", 20, 5, 2012, 9, 0);
    AddAppointment("a", 19, 5, 2012, 9, 0);
    AddReminder("r", 0, 0);

    Frame();

    EXPECT_EQ(NamesShown(), (Names{"r", "a", "b"}));
    events.back().date.day = 18;
    Frame();
    EXPECT_EQ(NamesShown(), (Names{"r", "b", "a"}));
    EXPECT_TRUE(NothingIsSaved());
}

TEST_F(ListTest, RemindersDoNotSwapPlacesFromFrameToFrame) {
    AddReminder("b", 0, 0);
    AddReminder("a", 0, 0);
    AddAppointment("x", 20, 5, 2012, 9, 0);
    for (int i = 0; i < 5; ++i) {
        Frame();

        EXPECT_EQ(NamesShown(), (Names{"b", "a", "x"}));
    }
}

}  // namespace
