// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The action menu under a real pointer: its icons, its labels, and what a click on each item does.
//
// The program's clock is in the test's hand unless a test says otherwise, so the owl holds still.
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/desktop/fixture.h"
#include "tests/desktop/reading.h"
#include "tests/desktop/scene.h"

/// What the program opens as its web site, unless the build set another.
#ifndef ULMARO_WEB_SITE
#define ULMARO_WEB_SITE "file:///usr/share/doc/ulmaro-assistant/guida/index.html"
#endif

namespace desktop {
namespace {

/// An item of the menu; canvas units.
struct Item {
    double y;           ///< centre
    const char* icon;   ///< the picture's file
    const char* label;  ///< shown next to the pointer
};

constexpr std::array<Item, 5> kItems = {{
    {465, "ic1", "pianifica un nuovo evento"},
    {360, "ic3", "interagisci con Ulmaro"},
    {255, "ic8", "apri il browser su DuckDuckGo"},
    {150, "ic9", "visita il sito degli sviluppatori!"},
    {45, "ic4", "abilita/disabilita il sonoro"},
}};
constexpr std::size_t kPlan = 0, kInteract = 1, kBrowse = 2, kWebSite = 3, kSound = 4;

/// A place beside the menu, over nothing.
constexpr CanvasPoint kAway = {480, 250};

CanvasPoint Middle(std::size_t item) {
    return {44.5, kItems[item].y};
}

CanvasRect IconPlace(std::size_t item) {
    return {4.5, kItems[item].y - 40, 84.5, kItems[item].y + 40};
}

/// The part of an item's label that stands clear of icon and eyes.
CanvasRect LabelPlace(std::size_t item) {
    return {90, kItems[item].y + 2, 200, kItems[item].y + 18};
}

/// Returns the icon that an image shows in an item's place.
std::string IconIn(const Image& image, std::size_t item) {
    std::string best;
    double least = 256;
    for (const char* icon : {"ic1", "ic2", "ic3", "ic4", "ic5", "ic6", "ic7", "ic8", "ic9"}) {
        const double misfit = Misfit(image, Picture(icon), IconPlace(item));
        if (misfit >= least) continue;
        least = misfit;
        best = icon;
    }
    return best;
}

/// A browser that the test has in hand: a program called xdg-open in a folder of its own. It writes down what
/// it was called with, its session and which descriptors it got, and stays until it is closed.
class Browser {
  public:
    Browser() {
        folder_.Write("stay", "x");
        folder_.Write("xdg-open", "#!/bin/sh\ncd '" + folder_.Path() + "' || exit 1\n" + kScript);
        std::filesystem::permissions(folder_.Path("xdg-open"), std::filesystem::perms::owner_all);
    }
    ~Browser() { Close(); }
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    /// Returns a PATH that finds this browser first.
    std::string SearchPath() const {
        const char* others = std::getenv("PATH");
        return SearchPathWith(others != nullptr ? others : "/usr/bin:/bin");
    }

    /// Returns a PATH of this browser and of those other folders only.
    std::string SearchPathWith(const std::string& others) const { return folder_.Path() + ":" + others; }

    /// Waits until the browser was called. Returns the calls' arguments, one a line after their number; empty
    /// when nobody called within 10 seconds.
    std::string Called() const {
        WaitUntil([this] { return !folder_.Read("called").empty(); }, 10);
        return folder_.Read("called");
    }

    /// Returns the numbers of the descriptors that a program of the browser's finds open.
    std::vector<int> Descriptors() const {
        std::istringstream lines(folder_.Read("descriptors"));
        std::vector<int> numbers;
        for (int number = 0; lines >> number;) numbers.push_back(number);
        return numbers;
    }

    /// Returns the number of the session that the browser is in; 0 when nobody called it.
    pid_t Session() const {
        std::istringstream text(folder_.Read("session"));
        pid_t number = 0;
        text >> number;
        return number;
    }

    bool Open() const { return !folder_.Read("called").empty() && folder_.Read("closed").empty(); }

    /// Closes the browser and waits for its end.
    void Close() {
        if (!Open()) return;
        folder_.Remove("stay");
        WaitUntil([this] { return !Open(); }, 5);
    }

  private:
    static constexpr char kScript[] = R"(
ls /proc/self/fd >descriptors
read -r id name state parent group session rest </proc/$$/stat
echo "$session" >session
printf '%s\n' $# "$@" >>called
while [ -e stay ]; do sleep 0.05; done
echo x >closed
)";

    Folder folder_;
};

class TheMenu : public OnDesktop {
  protected:
    /// Starts the program with the clock in hand in a window whose pixels are about as fine as the pictures.
    Program& RunMenu(Start start = {}) {
        start.clock = Clock::kInHand;
        Program& program = Run(start);
        program.Resize({(Desktop::kWidth - 600) / 2, (Desktop::kHeight - 600) / 2, 600, 600});
        program.MovePointer(kAway);
        return program;
    }

    static Start With(const Browser& browser) {
        Start start;
        start.environment["PATH"] = browser.SearchPath();
        return start;
    }
};

// ---- Icons and labels ----

TEST_F(TheMenu, ShowsItsIconsDownTheLeftEdge) {
    Program& program = RunMenu();

    const Image image = program.Look();

    for (std::size_t item = 0; item < kItems.size(); ++item) {
        EXPECT_EQ(IconIn(image, item), kItems[item].icon);
        EXPECT_LT(Misfit(image, Picture(kItems[item].icon), IconPlace(item)), 15) << kItems[item].icon;
    }
}

TEST_F(TheMenu, LightsUpTheIconUnderThePointerAndShowsItsLabelAndNoOther) {
    Program& program = RunMenu();
    const Image before = program.Look();

    for (std::size_t hovered = 0; hovered < kItems.size(); ++hovered) {
        program.MovePointer(Middle(hovered));
        const Image image = program.Look();

        for (std::size_t item = 0; item < kItems.size(); ++item) {
            const double label = MeanDifference(before, image, LabelPlace(item));
            if (item == hovered) {
                EXPECT_GT(label, 10) << kItems[item].label;
            } else {
                EXPECT_LT(label, 0.01) << kItems[item].label << " while " << kItems[hovered].label;
            }
            const Colour was = before.AtCanvas({20, kItems[item].y});
            const Colour is = image.AtCanvas({20, kItems[item].y});
            EXPECT_EQ(is.r, was.r);
            EXPECT_NEAR(is.b, item == hovered ? was.b / 2.0 : was.b, 2) << "yellow is half the blue";
        }
    }
}

TEST_F(TheMenu, WritesTheLabelLegiblyNextToThePointer) {
    Program& program = RunMenu();
    program.Resize({140, 60, 900, 900});

    for (std::size_t item = 0; item < kItems.size(); ++item) {
        program.MovePointer(Middle(item));
        const Image image = program.Look();

        // The pointer counts in whole canvas units and the label begins 15 to its right.
        const int pointer_x = static_cast<int>(44.5 * 900 / kCanvas);
        const int pointer_y = static_cast<int>((kCanvas - kItems[item].y) * 900 / kCanvas);
        const CanvasPoint place = {15 + std::floor(pointer_x * kCanvas / 900),
                                   kCanvas - std::floor(pointer_y * kCanvas / 900)};
        const std::string label = kItems[item].label;
        const std::string reversed(label.rbegin(), label.rend());
        EXPECT_GT(InkBrightness(image, label, place), 225) << label;
        EXPECT_LT(InkBrightness(image, reversed, place), 200) << label;
    }
}

TEST_F(TheMenu, TakesTheLabelAwayWhenThePointerLeaves) {
    Program& program = RunMenu();
    const Image before = program.Look();

    program.MovePointer(Middle(kWebSite));
    program.MovePointer(kAway);
    const Image after = program.Look();

    EXPECT_LT(MeanDifference(before, after, {0, 40, 512, 512}), 0.01);
}

TEST_F(TheMenu, TakesLabelAndLightAwayWhenThePointerLeavesTheWindowToTheLeftInOneJump) {
    Program& program = RunMenu();
    const Image before = program.Look();
    const ScreenRect place = program.Place();
    program.MovePointer(Middle(kPlan));
    ASSERT_GT(MeanDifference(before, program.Look(), LabelPlace(kPlan)), 10);

    desk.MovePointer({place.x - 100, place.y + 100});
    program.AwaitEvents();
    program.WaitForFrames(3);
    const Image after = program.Look();

    EXPECT_LT(MeanDifference(before, after, LabelPlace(kPlan)), 0.01);
    EXPECT_LT(MeanDifference(before, after, IconPlace(kPlan)), 0.01) << "yellow";
}

TEST_F(TheMenu, CountsTheSecondsInTheStatusLine) {
    Program& program = RunMenu();
    constexpr CanvasRect kStatusLine = {266, 8, 512, 32};
    const Image before = program.Look();

    const bool changed =
        WaitUntil([&] { return MeanDifference(before, program.Look(), kStatusLine) > 0.2; }, 5);

    EXPECT_TRUE(changed);
    EXPECT_LT(MeanDifference(before, program.Look(), {92, 40, 512, 512}), 0.01) << "the clock is in hand";
}

// ---- Clicks ----

TEST_F(TheMenu, OpensTheListOfEventsFromItsFirstItem) {
    Program& program = RunMenu();
    const std::string label = "aggiungi";  // beside the list's button
    const CanvasPoint place = {372, 436.5};
    const std::string before = ReadCentred(program.Look(), place, label.size());

    program.Click(Middle(kPlan));
    const std::string after = ReadCentred(program.Look(), place, label.size());

    EXPECT_NE(before, label);
    EXPECT_EQ(after, label);
}

TEST_F(TheMenu, RaisesAQuizOfferFromItsSecondItem) {
    Program& program = RunMenu();
    const RawPicture hat = Picture("hat");
    const RawPicture bubble = Picture("circle");  // the largest of those that trail from the cloud
    const RawPicture offer = Picture("ic6");      // the button in the cloud
    constexpr CanvasRect kHat = {21, 20, 521, 510};
    constexpr CanvasRect kBubble = {330, 415, 360, 445};
    constexpr CanvasRect kOffer = {395, 400, 475, 480};
    const Image before = program.Look();

    program.Click(Middle(kInteract));
    program.MovePointer(kAway);
    const Image after = program.Look();

    EXPECT_GT(Misfit(before, hat, kHat), 40);
    EXPECT_LT(Misfit(after, hat, kHat), 15);
    EXPECT_GT(Misfit(before, bubble, kBubble), 40);
    EXPECT_LT(Misfit(after, bubble, kBubble), 15);
    EXPECT_GT(Misfit(before, offer, kOffer), 40);
    EXPECT_LT(Misfit(after, offer, kOffer), 15);
}

TEST_F(TheMenu, OpensTheSearchSiteFromItsThirdItem) {
    Browser browser;
    Program& program = RunMenu(With(browser));

    program.Click(Middle(kBrowse));

    EXPECT_EQ(browser.Called(), "1\nhttps://duckduckgo.com/\n");
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheMenu, OpensTheWebSiteFromItsFourthItem) {
    Browser browser;
    Program& program = RunMenu(With(browser));

    program.Click(Middle(kWebSite));

    EXPECT_EQ(browser.Called(), "1\n" ULMARO_WEB_SITE "\n");
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheMenu, ForgetsThePointerOverTheItemThatOpenedAPageUntilItMoves) {
    Browser browser;
    Program& program = RunMenu(With(browser));
    const Image before = program.Look();

    program.Click(Middle(kBrowse));
    const Image clicked = program.Look();
    program.MovePointer({46, kItems[kBrowse].y});
    const Image moved = program.Look();

    EXPECT_LT(MeanDifference(before, clicked, LabelPlace(kBrowse)), 0.01);
    EXPECT_GT(MeanDifference(before, moved, LabelPlace(kBrowse)), 10);
}

TEST_F(TheMenu, LetsTheOwlBreatheWhileTheBrowserIsOpen) {
    Browser browser;
    Program& program = Run(With(browser));  // the clock runs

    program.Click(Middle(kBrowse));
    ASSERT_NE(browser.Called(), "");
    program.MovePointer(kAway);
    const Image first = program.Look();
    SleepSeconds(0.4);
    const Image second = program.Look();
    program.WaitForFrames(20);

    EXPECT_TRUE(browser.Open());
    EXPECT_GT(MeanDifference(first, second, kOwlPart), 0.1);
}

TEST_F(TheMenu, OpensNoSecondBrowserForOneClick) {
    Browser browser;
    Program& program = RunMenu(With(browser));
    program.Click(Middle(kBrowse));
    ASSERT_NE(browser.Called(), "");

    program.WaitForFrames(20);
    browser.Close();

    EXPECT_EQ(browser.Called(), "1\nhttps://duckduckgo.com/\n");
}

TEST_F(TheMenu, HandsTheBrowserNoneOfItsDescriptors) {
    // One that the program inherits itself, and would hand on if it did nothing against it.
    const int ours = open("/dev/null", O_RDONLY);  // NOLINT(android-cloexec-open): meant to be inherited
    ASSERT_GT(ours, 2);
    Browser browser;
    Program& program = RunMenu(With(browser));
    close(ours);
    const std::string inherited =
        "/proc/" + std::to_string(program.Child().Id()) + "/fd/" + std::to_string(ours);
    ASSERT_TRUE(std::filesystem::exists(inherited)) << "the program has not got it either";

    program.Click(Middle(kBrowse));
    ASSERT_NE(browser.Called(), "");

    // In, out, error; and the folder of descriptors that the listing program reads.
    EXPECT_EQ(browser.Descriptors(), (std::vector<int>{0, 1, 2, 3}));
}

TEST_F(TheMenu, GivesTheBrowserASessionOfItsOwn) {
    Browser browser;
    Program& program = RunMenu(With(browser));
    const pid_t ours = getsid(program.Child().Id());
    ASSERT_NE(ours, -1);  // 0 where the session was begun outside a container

    program.Click(Middle(kBrowse));
    ASSERT_NE(browser.Called(), "");

    EXPECT_GT(browser.Session(), 0);
    EXPECT_NE(browser.Session(), ours);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheMenu, OpensTheBrowserAlsoWhereNothingMakesSessions) {
    const Folder tools;  // those that the stand-in for the browser calls
    for (const std::string tool : {"ls", "sleep"})
        std::filesystem::create_symlink("/bin/" + tool, tools.Path(tool));
    Browser browser;
    Start start;
    start.environment["PATH"] = browser.SearchPathWith(tools.Path());
    Program& program = RunMenu(start);

    program.Click(Middle(kBrowse));

    EXPECT_EQ(browser.Called(), "1\nhttps://duckduckgo.com/\n");
    EXPECT_EQ(browser.Session(), getsid(program.Child().Id()));
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheMenu, SaysNothingAndGoesOnWhereThereIsNoBrowser) {
    const Folder empty;
    Start start;
    start.environment["PATH"] = empty.Path();
    Program& program = RunMenu(start);

    program.Click(Middle(kBrowse));
    program.Click(Middle(kWebSite));
    program.WaitForFrames(20);
    program.Click(Middle(kInteract));

    EXPECT_TRUE(program.Child().Running());
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheMenu, SwitchesTheSoundOffAndOnFromItsLastItem) {
    Program& program = RunMenu();
    const auto look_away = [&] {
        program.MovePointer(kAway);
        return program.Look();
    };
    const Image on = look_away();

    program.Click(Middle(kSound));
    const Image off = look_away();
    program.Click(Middle(kSound));
    const Image on_again = look_away();

    EXPECT_EQ(IconIn(on, kSound), "ic4");
    EXPECT_EQ(IconIn(off, kSound), "ic5");
    EXPECT_EQ(IconIn(on_again, kSound), "ic4");
    EXPECT_LT(MeanDifference(on, on_again, IconPlace(kSound)), 0.01);
}

// ---- What a frame costs ----

TEST_F(TheMenu, AsksTheServerAtMostSixTimesAFrameAlsoWithALabel) {
    Program& program = RunMenu();
    const Image before = program.Look();
    program.MovePointer(Middle(kWebSite));
    ASSERT_GT(MeanDifference(before, program.Look(), LabelPlace(kWebSite)), 10) << "no label";

    const double each = program.RoundTripsPerFrame(100);

    RecordProperty("round_trips", std::to_string(each));
    std::printf("%.2f round trips a frame\n", each);
    EXPECT_GT(each, 0.9) << "the owl must ask for the pointer: the count itself is broken";
    EXPECT_LT(each, 6.05);
}

}  // namespace
}  // namespace desktop
