// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How soon the eyes follow the pointer: the owl's, compared with those of xeyes.
//
// The pointer jumps between two corners of the screen, outside both windows, and the eyes' part of the window
// is read again and again until its pixels have changed: the same way for both, by turns, the other one
// stopped meanwhile. The owl's clock is in the benchmark's hand, so that nothing but the pointer moves its
// eyes. Prints one line; exits with 1 where the limit is missed.
//
// usage: eye_speed [PAIRS]
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <csignal>
#include <cstring>
#include <random>
#include <string>

#include "bench/table.h"
#include "bench/turns.h"
#include "tests/desktop/desktop.h"

namespace {

using desktop::Desktop;
using desktop::Process;
using desktop::Program;
using desktop::ScreenPoint;

constexpr double kLimit = 0.5;
constexpr int kMoves = 6;                ///< in a turn
constexpr double kRestSeconds = 0.12;    ///< between moves, at least
constexpr double kPhaseSeconds = 0.06;   ///< more at random, so that no polling is met in step
constexpr double kLookSeconds = 0.0002;  ///< between looks

constexpr ScreenPoint kCorners[] = {{30, 30}, {Desktop::kWidth - 30, Desktop::kHeight - 30}};

/// A part of a window, pixels.
struct Part {
    Window window = None;
    int x = 0, y = 0;
    unsigned int width = 0, height = 0;
};

std::string PixelsOf(Display* connection, const Part& part) {
    XImage* image =
        XGetImage(connection, part.window, part.x, part.y, part.width, part.height, AllPlanes, ZPixmap);
    if (image == nullptr) desktop::Fail("the eyes cannot be looked at");
    std::string pixels(image->data, static_cast<std::size_t>(image->bytes_per_line) *
                                        static_cast<std::size_t>(image->height));
    XDestroyImage(image);
    return pixels;
}

/// Someone with eyes.
struct Watcher {
    pid_t process = -1;
    Part eyes;
};

/// Moves the pointer to and fro. Returns how long the eyes take to move, the median, milliseconds.
double Milliseconds(Display* connection, const Watcher& watcher) {
    static std::mt19937 random(1);
    std::uniform_real_distribution<double> phase(0, kPhaseSeconds);
    kill(watcher.process, SIGCONT);
    desktop::SleepSeconds(3 * kRestSeconds);
    std::vector<double> times;
    for (int i = 0; i < kMoves; ++i) {
        desktop::SleepSeconds(kRestSeconds + phase(random));
        const std::string before = PixelsOf(connection, watcher.eyes);
        const ScreenPoint corner = kCorners[i % 2];
        const double start = desktop::Now();
        XTestFakeMotionEvent(connection, DefaultScreen(connection), corner.x, corner.y, CurrentTime);
        while (PixelsOf(connection, watcher.eyes) == before) {
            if (desktop::Now() - start > 5) desktop::Fail("the eyes do not move");
            desktop::SleepSeconds(kLookSeconds);
        }
        times.push_back(1000 * (desktop::Now() - start));
    }
    kill(watcher.process, SIGSTOP);
    return bench::Median(times);
}

/// Returns the owl's eyes: the part of its window that both pupils move in.
Part OwlsEyes(const Program& program) {
    constexpr double kLeft = 222, kRight = 296, kTop = 404, kBottom = 378;  // canvas units
    const desktop::ScreenRect place = program.Place();
    const double scale = place.width / desktop::kCanvas;
    Part part;
    part.window = program.Handle();
    part.x = static_cast<int>(kLeft * scale);
    part.y = static_cast<int>((desktop::kCanvas - kTop) * scale);
    part.width = static_cast<unsigned int>((kRight - kLeft) * scale);
    part.height = static_cast<unsigned int>((kTop - kBottom) * scale);
    return part;
}

/// Returns a window's middle, of the size of the owl's eyes; xeyes' pupils move there.
Part MiddleOf(Display* connection, Window window, const Part& like) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(connection, window, &attributes);
    Part part = like;
    part.window = window;
    part.x = (attributes.width - static_cast<int>(like.width)) / 2;
    part.y = (attributes.height - static_cast<int>(like.height)) / 2;
    return part;
}

bool Compare(int pairs) {
    Desktop desk;
    desk.MovePointer(kCorners[1]);
    desktop::Start start;
    start.clock = desktop::Clock::kInHand;
    Program owl(desk, start);
    owl.Resize({150, 300, 300, 300});
    desktop::Command command;
    command.words = {"xeyes", "-geometry", "80x50+800+450"};
    command.environment["DISPLAY"] = desk.Name();
    Process xeyes(command);
    if (!desktop::WaitUntil([&] { return desk.FindWindow("xeyes") != None; }, 20)) {
        desktop::Fail("xeyes shows no window");
    }
    desktop::SleepSeconds(1);
    const Part eyes = OwlsEyes(owl);
    const Watcher ours = {owl.Child().Id(), eyes};
    const Watcher theirs = {xeyes.Id(), MiddleOf(desk.Connection(), desk.FindWindow("xeyes"), eyes)};
    kill(ours.process, SIGSTOP);
    kill(theirs.process, SIGSTOP);
    bench::Series series;
    for (int i = 0; i < pairs; ++i) {
        const double a = Milliseconds(desk.Connection(), ours);
        series.Add(a, Milliseconds(desk.Connection(), theirs));
    }
    kill(ours.process, SIGCONT);
    kill(theirs.process, SIGCONT);
    return series.Print("pointer moved to eyes moved : xeyes", kLimit);
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 9, Compare);
}
