// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What a second start does to the window of the running owl, under every window manager.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/desktop/fixture.h"

// After GoogleTest, which has a None of its own.
#include <X11/Xatom.h>

namespace desktop {
namespace {

/// Raises the window of the owl that runs in a folder and returns the status of what does it; 255 where that
/// does not end.
int RaiseWindow(const Desktop& desk, const std::string& folder) {
    Command command;
    command.words = {ULMARO_RAISE_WINDOW, folder};
    command.environment = desk.ClientEnvironment();
    Process process(command);
    return process.WaitForEnd(20).value_or(255);
}

class RaisedUnder : public OnDesktop, public testing::WithParamInterface<WindowManager> {
  protected:
    RaisedUnder() : OnDesktop(GetParam()) {}

    bool IsShown(Window window) const {
        XWindowAttributes attributes{};
        return XGetWindowAttributes(desk.Connection(), window, &attributes) != 0 &&
               attributes.map_state == IsViewable;
    }

    /// Returns whether no other window is above the owl's: none that the window manager shows or, where it
    /// tells none, none in the middle of the owl's.
    bool IsOnTop(const Program& program) const {
        const Window root = DefaultRootWindow(desk.Connection());
        auto managed = desk.Property(root, "_NET_CLIENT_LIST_STACKING");
        std::erase_if(managed, [this](Window window) { return !IsShown(window); });
        return managed.empty() ? IsInTheMiddle(program) : managed.back() == program.Handle();
    }

    /// Returns whether what is in the middle of the owl's window is that itself.
    bool IsInTheMiddle(const Program& program) const {
        const ScreenRect place = program.Place();
        const Window root = DefaultRootWindow(desk.Connection());
        for (Window at = root, inside = None;; at = inside) {
            int x = 0;
            int y = 0;
            if (XTranslateCoordinates(desk.Connection(), root, at, place.x + place.width / 2,
                                      place.y + place.height / 2, &x, &y, &inside) == False)
                return false;
            if (inside == None || inside == program.Handle()) return inside != None;
        }
    }

    /// Waits until another window than the owl's has the focus, as far as there is a window manager.
    bool AwaitAnothersFocus(const Program& program) const {
        const Window root = DefaultRootWindow(desk.Connection());
        return WaitUntil(
            [&] {
                const auto active = desk.Property(root, "_NET_ACTIVE_WINDOW");
                return active.empty() || active.front() != program.Handle();
            },
            10);
    }

    unsigned long CurrentDesktop() const {
        const auto current = desk.Property(DefaultRootWindow(desk.Connection()), "_NET_CURRENT_DESKTOP");
        return current.empty() ? 0 : current.front();
    }

    bool IsOnCurrentDesktop(const Program& program) const {
        constexpr unsigned long kAllDesktops = 0xFFFFFFFF;
        const auto its = desk.Property(program.Handle(), "_NET_WM_DESKTOP");
        return its.empty() || its.front() == kAllDesktops || its.front() == CurrentDesktop();
    }

    void ExpectRaised(Program& program) {
        EXPECT_EQ(RaiseWindow(desk, program.Files().Path()), 0);
        EXPECT_TRUE(WaitUntil([&] { return program.Shown() && IsOnTop(program); }, 5))
            << testing::PrintToString(
                   desk.Property(DefaultRootWindow(desk.Connection()), "_NET_CLIENT_LIST_STACKING"))
            << " has not " << program.Handle() << " on top";
        EXPECT_TRUE(IsOnCurrentDesktop(program));
    }
};

TEST_P(RaisedUnder, ComesUpFromBehindAWindow) {
    Program& program = Run();
    desk.CoverByMaximisedWindow();
    ASSERT_TRUE(AwaitAnothersFocus(program));
    ASSERT_TRUE(WaitUntil([&] { return !IsOnTop(program); }, 10));
    ExpectRaised(program);
}

TEST_P(RaisedUnder, ComesUpFromBeingMinimised) {
    if (GetParam() == WindowManager::kNone) GTEST_SKIP() << "nothing is minimised without a window manager";
    Program& program = Run();
    program.Minimise();
    ExpectRaised(program);
}

TEST_P(RaisedUnder, ComesUpFromAnotherDesktopMinimisedOrNot) {
    if (!desk.HasSeveralDesktops()) GTEST_SKIP() << "there is one desktop only";
    Program& program = Run();
    program.MoveToDesktop(1);
    ASSERT_FALSE(IsOnCurrentDesktop(program));
    ExpectRaised(program);

    desk.AskRoot(DefaultRootWindow(desk.Connection()), "_NET_CURRENT_DESKTOP", 0);
    ASSERT_TRUE(WaitUntil([&] { return CurrentDesktop() == 0; }, 10));
    program.MoveToDesktop(1);
    program.Minimise();
    ExpectRaised(program);
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, RaisedUnder, testing::ValuesIn(kWindowManagers),
                         [](const auto& manager) { return NameOf(manager.param); });

class TheRaiser : public OnDesktop {};

TEST_F(TheRaiser, LeavesTheOwlOfAnotherFolderAlone) {
    Program& program = Run();
    program.Minimise();
    const Folder another;

    EXPECT_EQ(RaiseWindow(desk, another.Path()), 1);

    EXPECT_TRUE(program.IsMinimised());
}

TEST_F(TheRaiser, AwaitsTheWindowOfAnOwlThatHasJustBeenStarted) {
    Start start;
    start.wait_for_window = false;
    Program& program = Run(start);
    EXPECT_EQ(RaiseWindow(desk, program.Files().Path()), 0);
}

TEST_F(TheRaiser, SaysThatThereIsNoScreen) {
    Command command;
    command.words = {ULMARO_RAISE_WINDOW, "."};
    command.environment = {{"DISPLAY", ":77777"}};
    EXPECT_EQ(Process(command).WaitForEnd(20), 1);
}

}  // namespace
}  // namespace desktop
