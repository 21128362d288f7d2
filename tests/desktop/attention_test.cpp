// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What reaches a user who does not look at the owl: the demand for attention under every window manager, and
// notices, with a double of their server and with a real one.
//
// Index: attention, notices, the click, servers and buses that fail, a real server.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/desktop/fixture.h"
#include "tests/desktop/notice_server.h"

// After GoogleTest, which has a None of its own.
#include <X11/Xutil.h>

namespace desktop {
namespace {

/// The day of the tests; at eight nothing is due, and what is due at nine is announced a minute later.
constexpr char kEight[] = "2031-03-12 07:59:30";
constexpr char kAMinuteLater[] = "2031-03-12 08:00:30";

/// Returns an appointment of that day, so many minutes after nine.
Record AtNine(const std::string& name, int minutes = 0) {
    Record event;
    event.name = name;
    event.day = 12;
    event.month = 3;
    event.year = 2031;
    event.hour = 9;
    event.minute = minutes;
    return event;
}

/// A desktop with a message bus, and the program on it at eight o'clock.
class WithAClock : public OnDesktop {
  protected:
    explicit WithAClock(WindowManager manager = WindowManager::kOpenbox) : OnDesktop(manager) {
        desk.StartBus();
    }

    Program& Begin(const std::vector<Record>& records, Start start = {}) {
        start.spoilt[kStoreFile] = StoreBytes(records);
        clock.Rule(start);
        return Run(start);
    }

    const std::string& BusAddress() const { return desk.ClientEnvironment().at("DBUS_SESSION_BUS_ADDRESS"); }

    WallClock clock{kEight};
};

// ---- Attention ----

/// A small window in the middle of the program's that takes the focus, as another program's would. Mutter
/// notes no demand for attention of a window that is wholly in view.
class OtherWindow {
  public:
    OtherWindow(Desktop& desk, const Program& program) : desk_(desk) {
        Display* connection = desk.Connection();
        const ScreenRect place = program.Place();
        window_ = XCreateSimpleWindow(connection, DefaultRootWindow(connection), 0, 0, 80, 80, 0, 0, 0);
        XMapRaised(connection, window_);
        TakeFocus();
        XMoveWindow(connection, window_, place.x + 100, place.y + 100);
        XSync(connection, False);
    }
    ~OtherWindow() { XDestroyWindow(desk_.Connection(), window_); }
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;

    void TakeFocus() {
        const auto focused = [&] {
            desk_.AskRoot(window_, "_NET_ACTIVE_WINDOW", 2);
            return WaitUntil([&] { return Focus() == window_; }, 0.5);
        };
        if (!WaitUntil(focused, 10)) Fail("the other window gets no focus");
    }

    Window Focus() const {
        Window focus = None;
        int revert_to = 0;
        XGetInputFocus(desk_.Connection(), &focus, &revert_to);
        return focus;
    }

  private:
    Desktop& desk_;
    Window window_ = None;
};

bool HasUrgencyHint(const Desktop& desk, const Program& program) {
    const std::unique_ptr<XWMHints, decltype(&XFree)> hints(XGetWMHints(desk.Connection(), program.Handle()),
                                                            &XFree);
    return hints && (hints->flags & XUrgencyHint) != 0;
}

bool DemandsAttention(const Desktop& desk, const Program& program) {
    const Atom demands = XInternAtom(desk.Connection(), "_NET_WM_STATE_DEMANDS_ATTENTION", False);
    for (const unsigned long state : desk.Property(program.Handle(), "_NET_WM_STATE")) {
        if (state == demands) return true;
    }
    return false;
}

bool HasFocus(const Desktop& desk, const Program& program) {
    Window focus = None;
    int revert_to = 0;
    XGetInputFocus(desk.Connection(), &focus, &revert_to);
    return focus == program.Handle();
}

class TheWindowsAttention : public WithAClock, public testing::WithParamInterface<WindowManager> {
  protected:
    TheWindowsAttention() : WithAClock(GetParam()) {}
};

TEST_P(TheWindowsAttention, IsDemandedWhileSomethingIsDueAndAnotherWindowHasTheFocus) {
    Program& program = Begin({AtNine("Dentista")});
    OtherWindow other(desk, program);
    program.WaitForFrames(5);
    EXPECT_FALSE(HasUrgencyHint(desk, program));
    EXPECT_FALSE(DemandsAttention(desk, program));

    clock.Set(kAMinuteLater);
    const auto demanded = [&] { return HasUrgencyHint(desk, program) && DemandsAttention(desk, program); };
    const auto quiet = [&] { return !HasUrgencyHint(desk, program) && !DemandsAttention(desk, program); };
    EXPECT_TRUE(WaitUntil(demanded, 5));

    program.Activate();
    EXPECT_TRUE(WaitUntil(quiet, 5)) << "it has the focus";
    other.TakeFocus();
    EXPECT_TRUE(WaitUntil(demanded, 5)) << "it has lost the focus";
    clock.Set(kEight);
    EXPECT_TRUE(WaitUntil(quiet, 5)) << "nothing is due";
}

INSTANTIATE_TEST_SUITE_P(Everywhere, TheWindowsAttention,
                         testing::Values(WindowManager::kOpenbox, WindowManager::kXfwm4,
                                         WindowManager::kMutter, WindowManager::kKwin),
                         [](const auto& test) { return NameOf(test.param); });

class TheFrameWithANotice : public WithAClock {};

TEST_F(TheFrameWithANotice, AsksTheServerNothingForTheAttention) {
    Program& program = Begin({AtNine("Dentista")});
    OtherWindow other(desk, program);
    program.WaitForFrames(5);
    // The middle one of some rounds: on a busy machine late events cost answers of their own. A frame whose
    // swap is left out, because swaps are slow, costs none: such rounds do not count.
    const auto round_trips = [&] {
        std::vector<double> rounds;
        for (int tries = 0; tries < 20 && rounds.size() < 5; ++tries) {
            const std::uint64_t frames = program.Frames();
            const std::uint64_t swaps = program.Swaps();
            const double answers = program.RoundTripsPerFrame(30);
            if (program.Frames() - frames <= program.Swaps() - swaps + 1) rounds.push_back(answers);
        }
        if (rounds.empty()) Fail("the frames are not swapped");
        std::sort(rounds.begin(), rounds.end());
        return rounds[rounds.size() / 2];
    };
    const double before = round_trips();

    clock.Set(kAMinuteLater);
    ASSERT_TRUE(WaitUntil([&] { return HasUrgencyHint(desk, program); }, 5));
    program.WaitForFrames(5);
    EXPECT_NEAR(round_trips(), before, 0.1);
}

// ---- Notices ----

class TheNotice : public WithAClock {
  protected:
    NoticeServer server{BusAddress()};
};

TEST_F(TheNotice, TellsOfWhatFallsDueWhileNobodySeesTheWindowAndGoesWhenItIsSeen) {
    Record event = AtNine("Caff\u00e8 & <t\u00e8>");
    event.description = "Perch\u00e9 <b>no</b> & s\u00ec\xE9\nseconda riga";
    Program& program = Begin({event});
    program.Minimise();
    server.ServeFor(0.5);
    EXPECT_EQ(server.Notices().size(), 0U);

    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitNotices(1));
    server.ServeFor(1);
    ASSERT_EQ(server.Notices().size(), 1U);
    const SentNotice& notice = server.Notices()[0];
    EXPECT_EQ(notice.program, "Ulmaro Assistant");
    EXPECT_EQ(notice.replaced, 0U);
    EXPECT_EQ(notice.icon, "ulmaro-assistant");
    EXPECT_EQ(notice.title, "Caff\u00e8 & <t\u00e8>");
    EXPECT_EQ(notice.text, "Oggi alle 9:00, tra 60 minuti\nPerch\u00e9 &lt;b&gt;no&lt;/b&gt; &amp; s\u00ec");
    EXPECT_EQ(notice.actions, (std::vector<std::string>{"default", "Apri"}));
    EXPECT_EQ(notice.hints, (std::map<std::string, std::string>{{"category", "x-ulmaro.event.due"},
                                                                {"desktop-entry", "ulmaro-assistant"},
                                                                {"urgency", "1"}}));
    EXPECT_EQ(notice.timeout, 0);

    program.Restore();
    EXPECT_TRUE(server.AwaitNone());
    program.Click(kBell);
    program.Click(kCorner);
    program.Minimise();
    server.ServeFor(0.5);
    EXPECT_EQ(server.Notices().size(), 1U) << "what is acknowledged is not told again";
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheNotice, IsNotShownWhileTheWindowIsSeen) {
    Program& program = Begin({AtNine("Dentista")});
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(WaitUntil([&] { return program.Notices() > 0; }, 5)) << "no sound";

    server.ServeFor(1.5);
    program.Minimise();
    server.ServeFor(0.5);

    EXPECT_EQ(server.Notices().size(), 0U);
}

TEST_F(TheNotice, IsReplacedByTheNextAndGoesWhenNothingIsDue) {
    Program& program = Begin({AtNine("Prima"), AtNine("Seconda", 1)});
    program.Minimise();
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitNotices(1));

    clock.Set("2031-03-12 08:01:30");
    ASSERT_TRUE(server.AwaitNotices(2));
    EXPECT_EQ(server.Notices()[0].title, "Prima");
    EXPECT_EQ(server.Notices()[1].title, "Seconda");
    EXPECT_EQ(server.Notices()[1].replaced, server.Notices()[0].number);
    EXPECT_EQ(server.Notices()[1].number, server.Shown());

    clock.Set(kEight);
    EXPECT_TRUE(server.AwaitNone());
    server.ServeFor(0.3);
    EXPECT_EQ(server.Notices().size(), 2U);
}

TEST_F(TheNotice, TellsOfAStartThatIsMinimised) {
    Start start;
    start.options = {"-iconic"};
    start.wait_for_sight = false;
    Record reminder;
    reminder.name = "Acqua";
    reminder.kind = kReminder;
    reminder.repeat = 1;

    Begin({reminder}, start);

    ASSERT_TRUE(server.AwaitNotices(1));
    EXPECT_EQ(server.Notices()[0].title, "Acqua");
    EXPECT_EQ(server.Notices()[0].text, "promemoria: ogni 2 ore");
}

TEST_F(TheNotice, TellsOfASaveThatFailedUntilOneWorks) {
    Program& program = Begin({});
    const std::string store = program.Files().Path(kStoreFile);
    std::filesystem::remove(store);
    std::filesystem::create_directory(store);  // nothing can be saved in its place
    program.Click(kMenuPlan);
    program.Click(kAdd);
    program.Click(kConfirm);
    program.Minimise();

    ASSERT_TRUE(server.AwaitNotices(1));
    EXPECT_EQ(server.Notices()[0].title, "Eventi non salvati");
    std::filesystem::remove(store);
    EXPECT_TRUE(server.AwaitNone(15)) << "the save is tried again by itself";
}

TEST_F(TheNotice, GoesWithTheProgram) {
    Program& program = Begin({AtNine("Dentista")});
    program.Minimise();
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitNotices(1));
    server.ServeFor(0.3);

    program.Close();

    EXPECT_TRUE(server.AwaitNone());
    EXPECT_EQ(program.Child().WaitForEnd(10), 0);
}

// ---- The click ----

/// A way to hide the window.
struct WayToHide {
    WindowManager manager;
    bool minimised;  ///< else it is on another desktop
};

std::ostream& operator<<(std::ostream& out, const WayToHide& place) {
    return out << place.manager << (place.minimised ? "Minimised" : "AnotherDesktop");
}

std::vector<WayToHide> WaysToHide() {
    std::vector<WayToHide> places;
    for (const WindowManager manager :
         {WindowManager::kOpenbox, WindowManager::kXfwm4, WindowManager::kMutter, WindowManager::kKwin}) {
        places.push_back({manager, true});
        places.push_back({manager, false});
    }
    return places;
}

class TheClickedNotice : public WithAClock, public testing::WithParamInterface<WayToHide> {
  protected:
    TheClickedNotice() : WithAClock(GetParam().manager) {}

    /// Returns whether the window is on the desktop that is shown.
    bool IsOnThisDesktop(const Program& program) const {
        const Window root = DefaultRootWindow(desk.Connection());
        return desk.Property(program.Handle(), "_NET_WM_DESKTOP") ==
               desk.Property(root, "_NET_CURRENT_DESKTOP");
    }
};

TEST_P(TheClickedNotice, BringsTheWindowUp) {
    NoticeServer server(BusAddress());
    Program& program = Begin({AtNine("Dentista")});
    OtherWindow other(desk, program);
    if (GetParam().minimised) {
        program.Minimise();
    } else {
        program.MoveToDesktop(1);
        ASSERT_FALSE(IsOnThisDesktop(program));
    }
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitNotices(1));
    server.ServeFor(0.3);

    server.Click();

    const auto up = [&] {
        server.Serve();
        return program.Shown() && IsOnThisDesktop(program) && HasFocus(desk, program);
    };
    EXPECT_TRUE(WaitUntil(up, 5)) << program.Shown() << IsOnThisDesktop(program) << HasFocus(desk, program);
    EXPECT_EQ(server.Notices().size(), 1U);
    EXPECT_TRUE(WaitUntil([&] { return !DemandsAttention(desk, program); }, 5));
}

INSTANTIATE_TEST_SUITE_P(Everywhere, TheClickedNotice, testing::ValuesIn(WaysToHide()),
                         testing::PrintToStringParamName());

// ---- Servers and buses that fail ----

/// Watches frames that wait for nothing, and returns the longest in seconds.
double LongestFrame(Program& program, double seconds) {
    double longest = 0;
    double last = Now();
    std::uint64_t frames = program.Frames();
    for (const double end = last + seconds; last < end;) {
        SleepSeconds(0.0005);
        const std::uint64_t now = program.Frames();
        if (now == frames) continue;
        longest = std::max(longest, Now() - last);
        last = Now();
        frames = now;
    }
    return longest;
}

class TheFailingServer : public WithAClock {
  protected:
    /// Starts the program, minimised, with frames that wait for nothing but a millisecond, so that each wait
    /// would show.
    Program& BeginUnpaced(Start start = {}) {
        start.environment["vblank_mode"] = "0";
        start.breath = 0.001;  // else a frame of a hidden window takes so little that it takes a processor
        Program& program = Begin({AtNine("Prima"), AtNine("Seconda", 1)}, start);
        program.Minimise();
        program.WaitForFrames(20);
        return program;
    }

    /// Lets events fall due and pass, and expects that no frame is longer for it. Of each the best of some
    /// rounds, because the machine may be busy.
    void ExpectNoLongFrame(Program& program) {
        const char* const times[] = {kAMinuteLater, "2031-03-12 08:01:30", kEight};
        double usual = kNever;
        double longest_after[] = {2 * kNever, 2 * kNever, 2 * kNever};
        double longest = 2 * kNever;
        for (int round = 0; round < 8 && longest > usual + kLongest; ++round) {
            usual = std::min(usual, LongestFrame(program, 0.7));
            for (std::size_t i = 0; i < std::size(times); ++i) {
                clock.Set(times[i]);
                longest_after[i] = std::min(longest_after[i], LongestFrame(program, 0.7));
            }
            longest = *std::max_element(std::begin(longest_after), std::end(longest_after));
        }
        std::printf("longest frame %.1f ms, usual %.1f ms\n", 1000 * longest, 1000 * usual);
        EXPECT_LE(longest, usual + kLongest) << "seconds";
        EXPECT_GT(program.Notices(), 0U) << "nothing has fallen due";
        EXPECT_EQ(program.Said(), "");
    }

    static constexpr double kLongest = 0.02;  ///< seconds
    static constexpr double kNever = 1e6;     ///< seconds
};

TEST_F(TheFailingServer, ThatHangsCostsNoFrameAndShowsTheLastWishWhenItGoesOn) {
    NoticeServer server(BusAddress());
    Program& program = BeginUnpaced();
    ExpectNoLongFrame(program);

    clock.Set(kAMinuteLater);
    program.WaitForFrames(20);
    clock.Set("2031-03-12 08:01:30");
    program.WaitForFrames(20);
    EXPECT_TRUE(server.AwaitNotices(2));
    server.ServeFor(0.3);

    EXPECT_EQ(server.Notices().size(), 2U) << "one that was on its way, and the last";
    EXPECT_EQ(server.Notices().back().title, "Seconda");
    EXPECT_EQ(server.Notices().back().replaced, server.Notices().front().number);
    clock.Set(kEight);
    EXPECT_TRUE(server.AwaitNone());
}

TEST_F(TheFailingServer, ThatHangsAndGoesOnWhenTheWindowIsSeenShowsNothingForLong) {
    NoticeServer server(BusAddress());
    Program& program = Begin({AtNine("Dentista")});
    program.Minimise();
    server.Serve();
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitUnread()) << "no notice is on its way";
    program.Restore();
    program.WaitForFrames(10);

    EXPECT_EQ(server.Notices().size(), 0U);
    ASSERT_TRUE(server.AwaitNotices(1));

    EXPECT_TRUE(server.AwaitNone());
}

TEST_F(TheFailingServer, ThatIsNotThereCostsNothingAndIsToldWhenItComes) {
    Program& program = BeginUnpaced();
    ExpectNoLongFrame(program);
    clock.Set(kAMinuteLater);
    program.WaitForFrames(50);
    SleepSeconds(0.3);

    NoticeServer server(BusAddress());

    ASSERT_TRUE(server.AwaitNotices(1));
    EXPECT_EQ(server.Notices()[0].title, "Prima");
    server.ServeFor(0.5);
    EXPECT_EQ(server.Notices().size(), 1U);
}

TEST_F(TheFailingServer, ThatRestartsIsToldTheNextRiseAsANewNotice) {
    auto server = std::make_unique<NoticeServer>(BusAddress());
    Program& program = BeginUnpaced();
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server->AwaitNotices(1));
    server->ServeFor(0.3);

    server.reset();
    server = std::make_unique<NoticeServer>(BusAddress());
    server->ServeFor(0.5);
    EXPECT_EQ(server->Notices().size(), 0U) << "the user has had it";
    clock.Set("2031-03-12 08:01:30");

    ASSERT_TRUE(server->AwaitNotices(1));
    EXPECT_EQ(server->Notices()[0].title, "Seconda");
    EXPECT_EQ(server->Notices()[0].replaced, 0U);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheFailingServer, BehindABusThatHangsCostsNothing) {
    NoticeServer server(BusAddress());
    Program& program = BeginUnpaced();
    kill(desk.Bus().Id(), SIGSTOP);

    ExpectNoLongFrame(program);

    kill(desk.Bus().Id(), SIGCONT);
    server.ServeFor(0.5);
    EXPECT_EQ(server.Shown(), 0U) << "nothing is due any more";
    clock.Set(kAMinuteLater);
    EXPECT_TRUE(WaitUntil([&] { return server.Serve(), server.Shown() != 0; }, 5));
}

TEST_F(TheFailingServer, WhoseBusEndsCostsNothing) {
    NoticeServer server(BusAddress());
    Program& program = BeginUnpaced();
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitNotices(1));
    kill(desk.Bus().Id(), SIGKILL);
    ASSERT_TRUE(desk.Bus().WaitForEnd(10));
    clock.Set(kEight);

    ExpectNoLongFrame(program);
}

/// Desktops on which there is no bus, or none that is of use.
class TheMissingBus : public TheFailingServer, public testing::WithParamInterface<const char*> {};

TEST_P(TheMissingBus, CostsNothing) {
    Start start;
    start.environment["DBUS_SESSION_BUS_ADDRESS"] = GetParam();
    Program& program = BeginUnpaced(start);

    ExpectNoLongFrame(program);
    EXPECT_FALSE(std::filesystem::exists(program.Files().Path("started"))) << "no address starts a program";
}

INSTANTIATE_TEST_SUITE_P(Addresses, TheMissingBus,
                         testing::Values("unix:path=/nonexistent/bus", "", "nonsense",
                                         "unix:", "unixexec:path=/usr/bin/touch,argv1=started",
                                         "tcp:host=192.0.2.1,port=9",
                                         "unix:path=/nonexistent;unixexec:path=/usr/bin/touch,argv1=started"),
                         [](const auto& test) { return std::to_string(test.index); });

/// Returns whether a library is loaded into the program.
bool HasLoaded(Program& program, const std::string& library) {
    std::ifstream maps("/proc/" + std::to_string(program.Child().Id()) + "/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    return text.find(library) != std::string::npos;
}

class TheLibraryOfTheBus : public TheFailingServer {};

TEST_F(TheLibraryOfTheBus, IsLoadedWithTheFirstNotice) {
    NoticeServer server(BusAddress());
    Program& program = BeginUnpaced();
    EXPECT_FALSE(HasLoaded(program, "libsystemd"));
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(server.AwaitNotices(1));

    EXPECT_TRUE(HasLoaded(program, "libsystemd"));
}

TEST_F(TheLibraryOfTheBus, IsNotNeeded) {
    NoticeServer server(BusAddress());
    Start start;
    start.preload = {ULMARO_WITHOUT_MESSAGE_BUS_LIBRARY};
    Program& program = BeginUnpaced(start);

    ExpectNoLongFrame(program);

    server.ServeFor(0.3);
    EXPECT_EQ(server.Notices().size(), 0U);
}

// ---- A real server ----

/// A desktop with dunst on its bus. Dunst prints the notices that it shows.
class TheRealServer : public TheFailingServer {
  protected:
    TheRealServer() {
        folder_.Write("dunstrc",
                      "[global]\nfollow = none\norigin = top-left\noffset = 20x20\nmonitor = 0\n"
                      "mouse_left_click = do_action, close_current\n");
        Command command;
        command.words = {"dunst", "-print", "-config", folder_.Path("dunstrc")};
        command.environment = desk.ClientEnvironment();
        for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
            command.environment[variable] = folder_.Path();
        command.error_file = folder_.Path("printed");
        dunst_.emplace(command);
    }

    std::string Printed() const { return folder_.Read("printed"); }

    /// Returns dunst's window while it is on the screen; None otherwise.
    Window Shown() const {
        const Window window = desk.FindWindow("Dunst");
        XWindowAttributes attributes{};
        if (window == None || XGetWindowAttributes(desk.Connection(), window, &attributes) == 0) return None;
        return attributes.map_state == IsViewable ? window : None;
    }

    Process& Dunst() { return *dunst_; }

  private:
    Folder folder_;
    std::optional<Process> dunst_;
};

TEST_F(TheRealServer, ShowsTheNoticeAndAClickOnItBringsTheWindowUp) {
    Record event = AtNine("Caff\u00e8 & <t\u00e8>");
    event.description = "Perch\u00e9 <b>no</b>?";
    Program& program = Begin({event});
    program.Minimise();
    SleepSeconds(1);
    EXPECT_EQ(Shown(), None);

    clock.Set(kAMinuteLater);
    ASSERT_TRUE(WaitUntil([&] { return Shown() != None; }, 10)) << Printed();
    ASSERT_TRUE(WaitUntil([&] { return Printed().find("Oggi alle") != std::string::npos; }, 5));
    EXPECT_NE(Printed().find("summary: 'Caff\u00e8 & <t\u00e8>'"), std::string::npos) << Printed();
    EXPECT_NE(Printed().find("body: 'Oggi alle 9:00, tra 60 minuti\nPerch\u00e9 &lt;b&gt;no&lt;/b&gt;?'"),
              std::string::npos)
        << Printed();
    EXPECT_NE(Printed().find("icon: 'ulmaro-assistant'"), std::string::npos) << Printed();

    desk.MovePointer({60, 40});
    desk.Button(1, true);
    desk.Button(1, false);
    EXPECT_TRUE(WaitUntil([&] { return program.Shown(); }, 5)) << "the window stays minimised";
    EXPECT_TRUE(WaitUntil([&] { return Shown() == None; }, 5)) << "the notice stays";
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheRealServer, TakesTheNoticeAwayWhenNothingIsDue) {
    Program& program = Begin({AtNine("Dentista")});
    program.Minimise();
    clock.Set(kAMinuteLater);
    ASSERT_TRUE(WaitUntil([&] { return Shown() != None; }, 10)) << Printed();

    clock.Set(kEight);

    EXPECT_TRUE(WaitUntil([&] { return Shown() == None; }, 5));
}

TEST_F(TheRealServer, ThatIsStoppedCostsNothingAndGoesOn) {
    Program& program = BeginUnpaced();
    SleepSeconds(1);
    kill(Dunst().Id(), SIGSTOP);
    ExpectNoLongFrame(program);
    clock.Set(kAMinuteLater);
    program.WaitForFrames(20);

    kill(Dunst().Id(), SIGCONT);

    EXPECT_TRUE(WaitUntil([&] { return Printed().find("summary: 'Prima'") != std::string::npos; }, 10));
    EXPECT_TRUE(WaitUntil([&] { return Shown() != None; }, 5)) << Printed();
}

}  // namespace
}  // namespace desktop
