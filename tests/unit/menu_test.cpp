// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the icons, hovering, clicking, the pointer after a page was opened, pending notices, the status
// line, the label's place, the menu in the frame.
#include "app/menu.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"
#include "tests/unit/colors.h"
#include "tests/unit/text_reader.h"

/// What the program opens as its web site, unless the build set another.
#ifndef ULMARO_WEB_SITE
#define ULMARO_WEB_SITE "file:///usr/share/doc/ulmaro-assistant/guida/index.html"
#endif

namespace {

constexpr double kItemX = 44.5;
constexpr double kItemHalf = 40;

/// An item of the menu, from top to bottom.
struct Item {
    double y = 0;              ///< centre, canvas units
    const unsigned int* icon;  ///< shown while sound is on
    std::string label;
};

/// The items by their places in Items().
enum MenuItem : std::size_t { kPlanItem, kInteractItem, kBrowserItem, kWebSiteItem, kSoundItem };

const std::vector<Item>& Items() {
    static const std::vector<Item> items = {
        {465, &icns[kPlanIcon], "pianifica un nuovo evento"},
        {360, &icns[kInteractIcon], "interagisci con Ulmaro"},
        {255, &icns[kBrowserIcon], "apri il browser su DuckDuckGo"},
        {150, &icns[kWebSiteIcon], "visita il sito degli sviluppatori!"},
        {45, &icns[kSoundOnIcon], "abilita/disabilita il sonoro"},
    };
    return items;
}

/// The menu in a window of 512 x 512 pixels, so that a pixel is a canvas unit, with the pointer away from it.
class MenuTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        SizeWindow(512, 512);
        PointAtCanvas(400, 300);
        fakes::ClearLog();
    }

    static void SizeWindow(int width, int height) {
        fakes::glut().get[GLUT_WINDOW_WIDTH] = width;
        fakes::glut().get[GLUT_WINDOW_HEIGHT] = height;
        ForgetWindowMetrics();
    }

    /// Puts the pointer on a canvas point of the window of 512 x 512 pixels.
    static void PointAtCanvas(double x, double y) { mouse(static_cast<int>(x), static_cast<int>(512 - y)); }

    static void Hover(std::size_t item) { PointAtCanvas(44, Items()[item].y); }

    /// Draws the menu alone.
    static void Menu() {
        fakes::gl().primitives.clear();
        fakes::ClearLog();
        ActionMenu();
    }

    /// Draws the menu with a click where the pointer is.
    static void Click() {
        single_touch = true;
        Menu();
        single_touch = false;
    }

    static void Click(std::size_t item) {
        Hover(item);
        Click();
    }

    /// Returns what was drawn that is no text, in order.
    static std::vector<fakes::Primitive> Icons() {
        std::vector<fakes::Primitive> icons;
        for (const fakes::Primitive& primitive : fakes::gl().primitives) {
            if (primitive.texture != font) icons.push_back(primitive);
        }
        return icons;
    }

    static std::vector<fakes::Rgba> Colours() {
        std::vector<fakes::Rgba> colours;
        for (const fakes::Primitive& icon : Icons()) colours.push_back(icon.color);
        return colours;
    }

    /// Returns every text after the status line, which is always the first.
    static std::vector<PrintedLine> Labels() {
        std::vector<PrintedLine> lines = PrintedText();
        if (!lines.empty()) lines.erase(lines.begin());
        return lines;
    }

    /// Expects that nothing that a click on some item changes is changed.
    static void ExpectNothingDone() {
        EXPECT_EQ(menu_case_id, kOwlScreen);
        EXPECT_FALSE(spawn_question);
        EXPECT_EQ(fakes::desktop().opened, (std::vector<std::string>{}));
        EXPECT_TRUE(enable_sfx);
    }
};

// ---- The icons ----

TEST_F(MenuTest, ShowsFiveIconsOf80UnitsDownTheLeftEdgeFromTopToBottom) {
    Menu();

    const std::vector<fakes::Primitive> icons = Icons();
    ASSERT_EQ(icons.size(), Items().size());
    for (std::size_t i = 0; i < icons.size(); ++i) {
        const double y = Items()[i].y;
        EXPECT_EQ(icons[i].texture, *Items()[i].icon) << "item " << i;
        EXPECT_EQ(fakes::Bounds(icons[i]),
                  (fakes::Rect{kItemX - kItemHalf, y - kItemHalf, kItemX + kItemHalf, y + kItemHalf}))
            << "item " << i;
    }
}

TEST_F(MenuTest, ShowsEveryIconInWhiteAwayFromThePointer) {
    glColor4f(0.1F, 0.2F, 0.3F, 0.4F);

    Menu();

    EXPECT_EQ(Colours(), (std::vector<fakes::Rgba>(5, kWhite)));
}

TEST_F(MenuTest, ShowsTheSoundsIconByWhetherItIsOn) {
    enable_sfx = false;

    Menu();

    EXPECT_EQ(Icons().at(kSoundItem).texture, icns[kSoundOffIcon]);
    EXPECT_EQ(Icons().at(kPlanItem).texture, icns[kPlanIcon]);
    EXPECT_EQ(Icons().at(kInteractItem).texture, icns[kInteractIcon]);
    EXPECT_EQ(Icons().at(kBrowserItem).texture, icns[kBrowserIcon]);
    EXPECT_EQ(Icons().at(kWebSiteItem).texture, icns[kWebSiteIcon]);
}

TEST_F(MenuTest, MakesItsFiveButtonsAnewInEveryFrame) {
    Menu();
    EXPECT_EQ(fakes::world().rand_calls, 5);

    Menu();

    EXPECT_EQ(fakes::world().rand_calls, 10);
}

TEST_F(MenuTest, DrawsTheIconsThenTheStatusLineThenTheLabel) {
    Hover(kInteractItem);

    Menu();

    const std::vector<fakes::Primitive>& drawn = fakes::gl().primitives;
    const auto is_text = [](const fakes::Primitive& primitive) { return primitive.texture == font; };
    EXPECT_TRUE(std::is_partitioned(drawn.rbegin(), drawn.rend(), is_text));
    EXPECT_EQ(PrintedText().size(), 2U);
    EXPECT_EQ(PrintedText().back().text, Items()[kInteractItem].label);
}

TEST_F(MenuTest, LeavesWhiteAndTheStacksAsTheyWere) {
    for (const int pending : {0, 1}) {
        n_notify = pending;
        glColor4f(0.1F, 0.2F, 0.3F, 0.4F);

        Menu();

        EXPECT_EQ(fakes::gl().color, kWhite);
        EXPECT_EQ(fakes::gl().modelview.size(), 1U);
        EXPECT_EQ(fakes::gl().projection.size(), 1U);
        EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW));
    }
}

// ---- Hovering ----

TEST_F(MenuTest, ShowsNoLabelAwayFromTheItems) {
    Menu();

    EXPECT_TRUE(Labels().empty());
}

TEST_F(MenuTest, LightsUpTheItemUnderThePointerAndShowsItsLabel) {
    for (std::size_t i = 0; i < Items().size(); ++i) {
        Hover(i);

        Menu();

        std::vector<fakes::Rgba> colours(5, kWhite);
        colours[i] = kYellow;
        EXPECT_EQ(Colours(), colours) << "item " << i;
        EXPECT_EQ(Words(Labels()), (std::vector<std::string>{Items()[i].label}));
    }
}

TEST_F(MenuTest, ForgetsTheLabelWhenThePointerLeaves) {
    Hover(kWebSiteItem);
    Menu();
    ASSERT_EQ(Labels().size(), 1U);
    PointAtCanvas(400, 300);

    Menu();

    EXPECT_TRUE(Labels().empty());
}

TEST_F(MenuTest, HoveringDoesNothingByItself) {
    for (std::size_t i = 0; i < Items().size(); ++i) {
        Hover(i);

        Menu();

        ExpectNothingDone();
    }
}

TEST_F(MenuTest, TheItemsReachToTheirEdgesAndNotOntoThem) {
    struct Case {
        double x, y;
        bool over;
    };
    const std::vector<Case> cases = {
        {4, 465, false},  {5, 465, true},   {84, 465, true},  {85, 465, false}, {44, 425, false},
        {44, 426, true},  {44, 504, true},  {44, 505, false}, {44, 400, false}, {44, 399, true},
        {44, 320, false}, {44, 321, true},  {44, 295, false}, {44, 294, true},  {44, 215, false},
        {44, 216, true},  {44, 190, false}, {44, 189, true},  {44, 110, false}, {44, 111, true},
        {44, 85, false},  {44, 84, true},   {44, 5, false},   {44, 6, true},
    };
    for (const Case& row : cases) {
        PointAtCanvas(row.x, row.y);

        Menu();

        EXPECT_EQ(Labels().size(), row.over ? 1U : 0U) << row.x << ", " << row.y;
    }
}

// ---- Clicking ----

TEST_F(MenuTest, AClickBesideTheItemsDoesNothing) {
    for (const double x : {85.0, 400.0}) {
        PointAtCanvas(x, 465);

        Click();

        ExpectNothingDone();
    }
}

TEST_F(MenuTest, TheFirstItemOpensTheListOfEvents) {
    Click(kPlanItem);

    EXPECT_EQ(menu_case_id, kListScreen);
    EXPECT_FALSE(spawn_question);
    EXPECT_TRUE(enable_sfx);
}

TEST_F(MenuTest, TheFirstItemEndsALaughAndStartsTheAnimationClockAnew) {
    character.laugh = true;
    character.bt = 4.5F;
    character.lte = 3.5F;

    Click(kPlanItem);

    EXPECT_FALSE(character.laugh);
    EXPECT_EQ(character.bt, 0);
    EXPECT_EQ(character.lte, 0);
}

TEST_F(MenuTest, NoOtherItemEndsALaugh) {
    for (std::size_t i = 1; i < Items().size(); ++i) {
        character.laugh = true;
        character.bt = 4.5F;
        character.lte = 3.5F;

        Click(i);

        EXPECT_TRUE(character.laugh) << "item " << i;
        EXPECT_EQ(character.bt, 4.5F) << "item " << i;
        EXPECT_EQ(character.lte, 3.5F) << "item " << i;
    }
}

TEST_F(MenuTest, TheSecondItemRaisesAQuizOffer) {
    Click(kInteractItem);

    EXPECT_TRUE(spawn_question);
    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_EQ(fakes::desktop().opened, (std::vector<std::string>{}));
}

TEST_F(MenuTest, TheSecondItemLeavesAnOfferThatStandsAsItIs) {
    spawn_question = true;
    character.sqte = 5;
    character.play_sfx = true;

    Click(kInteractItem);

    EXPECT_TRUE(spawn_question);
    EXPECT_EQ(character.sqte, 5) << "its 20 seconds do not begin again";
    EXPECT_TRUE(character.play_sfx) << "it does not sound again";
}

TEST_F(MenuTest, TheFirstItemLeavesAnOfferToThePanel) {
    spawn_question = true;

    Click(kPlanItem);

    EXPECT_EQ(menu_case_id, kListScreen);
    EXPECT_TRUE(spawn_question);
}

TEST_F(MenuTest, TheThirdItemOpensTheSearchSite) {
    Click(kBrowserItem);

    EXPECT_EQ(fakes::desktop().opened, (std::vector<std::string>{"https://duckduckgo.com/"}));
    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_FALSE(spawn_question);
}

TEST_F(MenuTest, TheFourthItemOpensTheDevelopersWebSite) {
    Click(kWebSiteItem);

    EXPECT_EQ(fakes::desktop().opened, (std::vector<std::string>{ULMARO_WEB_SITE}));
    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_FALSE(spawn_question);
}

TEST_F(MenuTest, TheLastItemSwitchesSoundOffAndOnAgain) {
    Click(kSoundItem);
    EXPECT_FALSE(enable_sfx);

    Click(kSoundItem);
    EXPECT_TRUE(enable_sfx);
    EXPECT_EQ(fakes::desktop().opened, (std::vector<std::string>{}));
    EXPECT_EQ(menu_case_id, kOwlScreen);
}

TEST_F(MenuTest, SwitchingSoundOffOrOnStopsWhatIsPlaying) {
    for (int times = 0; times < 2; ++times) {
        AudioEngine.spawn_static(0, "notify.wav", false);

        Click(kSoundItem);

        EXPECT_EQ(SoundsPlaying(), 0U) << times;
    }
}

TEST_F(MenuTest, PlanningAnEventStopsALaughWithItsSound) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    character.laugh = true;

    Click(kPlanItem);

    EXPECT_EQ(SoundsPlaying(), 0U);
    EXPECT_FALSE(character.laugh);
}

TEST_F(MenuTest, TheOtherItemsLetSoundsPlayOn) {
    AudioEngine.spawn_static(0, "laugh.wav", false);

    for (const int item : {1, 2, 3}) Click(item);

    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(MenuTest, TheLastItemShowsItsOtherIconFromTheFrameAfterTheClick) {
    Click(kSoundItem);
    EXPECT_EQ(Icons().at(kSoundItem).texture, icns[kSoundOnIcon]);

    Menu();
    EXPECT_EQ(Icons().at(kSoundItem).texture, icns[kSoundOffIcon]);

    Click(kSoundItem);
    EXPECT_EQ(Icons().at(kSoundItem).texture, icns[kSoundOffIcon]);

    Menu();
    EXPECT_EQ(Icons().at(kSoundItem).texture, icns[kSoundOnIcon]);
}

TEST_F(MenuTest, AnItemIsClickedAtItsEdgesAndNotOnThem) {
    struct Case {
        double x, y;
        bool clicked;
    };
    for (const Case& row : {Case{4, 45, false}, Case{5, 45, true}, Case{84, 45, true}, Case{85, 45, false},
                            Case{44, 5, false}, Case{44, 6, true}, Case{44, 84, true}, Case{44, 85, false}}) {
        enable_sfx = true;
        PointAtCanvas(row.x, row.y);

        Click();

        EXPECT_EQ(enable_sfx, !row.clicked) << row.x << ", " << row.y;
    }
}

TEST_F(MenuTest, TheClickStaysForWhoComesAfterTheMenu) {
    Hover(kInteractItem);
    single_touch = true;

    Menu();

    EXPECT_TRUE(single_touch);
}

TEST_F(MenuTest, RunsNoShellCommandOfItsOwn) {
    for (std::size_t i = 0; i < Items().size(); ++i) Click(i);

    EXPECT_EQ(fakes::world().commands, (std::vector<std::string>{}));
}

// ---- The pointer after a page was opened ----

// In a window of this size pixel (256, 256) lies on the web site's icon.
TEST_F(MenuTest, OneClickActsOnOneItemAlsoWhereItMovesThePointerOntoAnother) {
    SizeWindow(2000, 360);
    mouse(44 * 2000 / 512, 360 - 255 * 360 / 512);

    Click();

    EXPECT_EQ(fakes::desktop().opened, std::vector<std::string>{"https://duckduckgo.com/"});
}

TEST_F(MenuTest, AfterAPageWasOpenedThePointerCountsAsBeingAtPixel256And256UntilItMoves) {
    for (const MenuItem item : {kBrowserItem, kWebSiteItem}) {
        Click(item);
        EXPECT_EQ(touch_coord_x, 256) << "item " << item;
        EXPECT_EQ(touch_coord_y, 256) << "item " << item;
        EXPECT_TRUE(Labels().empty()) << "item " << item;

        Menu();
        EXPECT_EQ(touch_coord_x, 256) << "item " << item;
        EXPECT_EQ(touch_coord_y, 256) << "item " << item;
        EXPECT_TRUE(Labels().empty()) << "item " << item;

        mouse(20, 30);
        EXPECT_EQ(touch_coord_x, 20) << "item " << item;
    }
}

TEST_F(MenuTest, ThatPlaceIsInPixelsWhateverTheWindowsSize) {
    SizeWindow(300, 300);
    mouse(26, 150);  // canvas (44, 256)

    Click();

    EXPECT_EQ(fakes::desktop().opened.size(), 1U);
    EXPECT_EQ(touch_coord_x, 256);
    EXPECT_EQ(touch_coord_y, 256);
}

TEST_F(MenuTest, NoOtherItemMovesThePointer) {
    for (const MenuItem item : {kPlanItem, kInteractItem, kSoundItem}) {
        Click(item);

        EXPECT_EQ(touch_coord_x, 44) << "item " << item;
        EXPECT_EQ(touch_coord_y, 512 - Items()[item].y) << "item " << item;
    }
}

TEST_F(MenuTest, ThePageIsAskedForBeforeTheStatusLineIsPrinted) {
    Click(kBrowserItem);

    ASSERT_EQ(PrintedText().size(), 1U);
    EXPECT_LT(fakes::IndexOf("OpenWebAddress"), fakes::gl().DrawnWith(font).at(0).log_index);
}

// ---- Pending notices ----

TEST_F(MenuTest, WithANoticePendingTheFirstTwoItemsAreGreyAndTheOthersWhite) {
    for (const int pending : {1, 2, 17}) {
        n_notify = pending;

        Menu();

        EXPECT_EQ(Colours(), (std::vector<fakes::Rgba>{kGrey, kGrey, kWhite, kWhite, kWhite})) << pending;
    }
}

TEST_F(MenuTest, WithANoticePendingTheFirstTwoItemsShowTheirLabelsButNoYellow) {
    n_notify = 1;
    for (const MenuItem item : {kPlanItem, kInteractItem}) {
        Hover(item);

        Menu();

        EXPECT_EQ(Colours(), (std::vector<fakes::Rgba>{kGrey, kGrey, kWhite, kWhite, kWhite}));
        EXPECT_EQ(Words(Labels()), (std::vector<std::string>{Items()[item].label}));
    }
}

TEST_F(MenuTest, WithANoticePendingTheOtherItemsLightUpAsEver) {
    n_notify = 1;
    for (const MenuItem item : {kBrowserItem, kWebSiteItem, kSoundItem}) {
        Hover(item);

        Menu();

        std::vector<fakes::Rgba> colours = {kGrey, kGrey, kWhite, kWhite, kWhite};
        colours[item] = kYellow;
        EXPECT_EQ(Colours(), colours);
        EXPECT_EQ(Words(Labels()), (std::vector<std::string>{Items()[item].label}));
    }
}

TEST_F(MenuTest, WithANoticePendingClicksOnTheFirstTwoItemsDoNothing) {
    n_notify = 1;
    character.laugh = true;
    character.bt = 4.5F;
    character.lte = 3.5F;
    for (const MenuItem item : {kPlanItem, kInteractItem}) {
        Click(item);

        ExpectNothingDone();
        EXPECT_TRUE(character.laugh);
        EXPECT_EQ(character.bt, 4.5F);
        EXPECT_EQ(character.lte, 3.5F);
    }
}

TEST_F(MenuTest, WithANoticePendingTheOtherItemsStillWork) {
    n_notify = 1;

    Click(kBrowserItem);
    Click(kWebSiteItem);
    Click(kSoundItem);

    EXPECT_EQ(fakes::desktop().opened,
              (std::vector<std::string>{"https://duckduckgo.com/", ULMARO_WEB_SITE}));
    EXPECT_FALSE(enable_sfx);
}

TEST_F(MenuTest, TextIsWhiteWithANoticePendingAndWithout) {
    for (const int pending : {0, 1}) {
        for (const MenuItem item : {kPlanItem, kInteractItem, kSoundItem}) {
            n_notify = pending;
            Hover(item);

            Menu();

            const std::vector<PrintedLine> lines = PrintedText();
            ASSERT_EQ(lines.size(), 2U);
            EXPECT_EQ(lines[0].color, kWhite);
            EXPECT_EQ(lines[1].color, kWhite);
        }
    }
}

TEST_F(MenuTest, WithNoNoticePendingAnyMoreTheFirstTwoItemsWakeUp) {
    n_notify = 1;
    Menu();
    n_notify = 0;

    Click(kInteractItem);

    EXPECT_EQ(Colours(), (std::vector<fakes::Rgba>{kWhite, kYellow, kWhite, kWhite, kWhite}));
    EXPECT_TRUE(spawn_question);
}

// ---- The status line ----

/// Returns a local time as the frame keeps it; the month is 1 to 12.
std::tm TimeOf(int wday, int day, int month, int year, int hour, int minute, int second) {
    std::tm t{};
    t.tm_wday = wday;
    t.tm_mday = day;
    t.tm_mon = month - 1;
    t.tm_year = year - 1900;
    t.tm_hour = hour;
    t.tm_min = minute;
    t.tm_sec = second;
    return t;
}

TEST_F(MenuTest, PrintsTheStatusLineAtTheBottom) {
    frame_time = TimeOf(3, 16, 5, 2012, 10, 30, 45);

    Menu();

    const std::vector<PrintedLine> lines = PrintedText();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].text, "merc 16/5/2012 10:30.45");
    EXPECT_NEAR(lines[0].x, 266, 1e-3);
    EXPECT_NEAR(lines[0].y, 10, 1e-3);
    EXPECT_NEAR(lines[0].size, 10, 1e-3);
}

TEST_F(MenuTest, DoesNotPadTheNumbersOfTheStatusLine) {
    frame_time = TimeOf(2, 3, 2, 2026, 9, 5, 7);
    Menu();
    EXPECT_EQ(PrintedText().at(0).text, "mar 3/2/2026 9:5.7");

    frame_time = TimeOf(0, 1, 1, 2026, 0, 0, 0);
    Menu();
    EXPECT_EQ(PrintedText().at(0).text, "dom 1/1/2026 0:0.0");
}

TEST_F(MenuTest, NamesEveryWeekdayInTheStatusLine) {
    const std::vector<std::string> names = {"dom", "lun", "mar", "merc", "giov", "ven", "sab"};
    for (int wday = 0; wday < 7; ++wday) {
        frame_time = TimeOf(wday, 11, 12, 2026, 13, 14, 15);

        Menu();

        EXPECT_EQ(PrintedText().at(0).text, names[static_cast<std::size_t>(wday)] + " 11/12/2026 13:14.15");
    }
}

TEST_F(MenuTest, TheLongestStatusLineEndsWithinTheCanvas) {
    frame_time = TimeOf(4, 31, 12, 2026, 23, 59, 59);

    Menu();

    const PrintedLine line = PrintedText().at(0);
    EXPECT_EQ(line.text, "giov 31/12/2026 23:59.59");
    EXPECT_LE(line.centre_x + (line.centre_x - line.x), 512.001);
}

TEST_F(MenuTest, TakesTheStatusLineFromTheFramesTime) {
    fakes::SetLocalTime(2026, 2, 3, 9, 5, 7);
    display();
    EXPECT_EQ(PrintedText().at(0).text, "mar 3/2/2026 9:5.7");

    fakes::world().now += 60;
    fakes::gl().primitives.clear();
    display();
    EXPECT_EQ(PrintedText().at(0).text, "mar 3/2/2026 9:6.7");
}

// ---- The label's place ----

/// A pointer in a window and where the label must begin, canvas units.
struct LabelCase {
    int width, height;  ///< of the window, pixels
    int x, y;           ///< the pointer, window pixels
    double label_x, label_y;
};

std::ostream& operator<<(std::ostream& out, const LabelCase& row) {
    return out << "pixel " << row.x << ", " << row.y << " of " << row.width << " x " << row.height;
}

TEST_F(MenuTest, ShowsTheLabel15UnitsRightOfThePointerAtItsHeight) {
    const std::vector<LabelCase> cases = {
        {512, 512, 44, 47, 59, 465},    // 44 + 15; 512 - 47
        {512, 512, 5, 8, 20, 504},      // the item's upper left corner
        {512, 512, 84, 506, 99, 6},     // the lowest item's lower right corner
        {300, 300, 26, 150, 59, 256},   // 44.37 is cut to 44
        {300, 300, 26, 27, 59, 466},    // 46.08 from above is cut to 46
        {300, 300, 49, 90, 98, 359},    // 83.63 to 83; 153.6 to 153
        {1024, 128, 100, 64, 65, 256},  // 50 + 15
        {900, 600, 77, 301, 58, 256},   // 43.80 to 43; 256.85 to 256
        {200, 1000, 20, 907, 66, 48},   // 51.2 to 51; 464.38 to 464
    };
    for (const LabelCase& row : cases) {
        SizeWindow(row.width, row.height);
        mouse(row.x, row.y);

        Menu();

        const std::vector<PrintedLine> labels = Labels();
        ASSERT_EQ(labels.size(), 1U) << row;
        EXPECT_NEAR(labels[0].x, row.label_x, 1e-3) << row;
        EXPECT_NEAR(labels[0].y, row.label_y, 1e-3) << row;
        EXPECT_NEAR(labels[0].size, 10, 1e-3) << row;
    }
}

TEST_F(MenuTest, EveryLabelEndsWithinTheCanvasFromTheMiddleOfItsIcon) {
    for (std::size_t i = 0; i < Items().size(); ++i) {
        Hover(i);

        Menu();

        const PrintedLine label = Labels().at(0);
        EXPECT_LE(label.x + 10.25 * static_cast<double>(label.text.size()), 512) << label;
    }
}

// ---- The menu in the frame ----

TEST_F(MenuTest, IsDrawnInFrontOfTheOwlItsHatAndItsBubble) {
    spawn_question = true;

    RunFrame(0.125F);

    const std::vector<fakes::Primitive>& drawn = fakes::gl().primitives;
    const auto in_menu = [](const fakes::Primitive& primitive) {
        const bool icon = std::find(std::begin(icns), std::end(icns), primitive.texture) != std::end(icns);
        return icon || primitive.texture == font;
    };
    ASSERT_FALSE(Scene().empty());
    EXPECT_EQ(Icons().size(), Scene().size() + 5 + 1);  // the sixth is the offer's own button
    EXPECT_EQ(Icons().back().texture, icns[kOfferIcon]);
    EXPECT_TRUE(std::is_partitioned(drawn.rbegin(), drawn.rend(), in_menu));
    EXPECT_TRUE(in_menu(drawn.back()));
}

TEST_F(MenuTest, IsNotDrawnOnAPanel) {
    menu_case_id = kListScreen;
    Hover(kSoundItem);
    single_touch = true;

    display();

    for (const Item& item : Items()) EXPECT_TRUE(fakes::gl().DrawnWith(*item.icon).empty());
    EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{"aggiungi"}));  // the panel's own
    EXPECT_TRUE(enable_sfx);
}

TEST_F(MenuTest, AClickCountsInOneFrameOnly) {
    Hover(kSoundItem);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);

    display();
    display();
    display();

    EXPECT_FALSE(enable_sfx);
}

TEST_F(MenuTest, TheOfferRaisedByAClickShowsFromTheNextFrameOn) {
    Hover(kInteractItem);
    single_touch = true;
    RunFrame(0.125F);
    EXPECT_TRUE(fakes::gl().DrawnWith(hat).empty());
    single_touch = false;

    RunFrame(0.125F);

    EXPECT_EQ(fakes::gl().DrawnWith(hat).size(), 1U);
    EXPECT_EQ(fakes::gl().DrawnWith(cloud).size(), 1U);
}

TEST_F(MenuTest, TheClickOnTheFirstItemShowsThePanelFromTheNextFrameOn) {
    Hover(kPlanItem);
    single_touch = true;
    display();
    EXPECT_TRUE(fakes::gl().DrawnWith(GUI[kListScreen]).empty());
    fakes::gl().primitives.clear();

    display();

    EXPECT_EQ(fakes::gl().DrawnWith(GUI[kListScreen]).size(), 1U);
    EXPECT_TRUE(fakes::gl().DrawnWith(owl[kStanding]).empty());
}

TEST_F(MenuTest, AsksForTheWindowsSizeAtMostOnceHoweverManyItemsThereAre) {
    Hover(kBrowserItem);

    Menu();
    Menu();

    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_WIDTH], 1);
    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_HEIGHT], 1);
}

}  // namespace
