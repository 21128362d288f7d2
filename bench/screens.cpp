// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "bench/screens.h"

#include <cmath>
#include <ctime>
#include <numbers>
#include <vector>

#include "bench/waiting.h"
#include "tests/desktop/calendar.h"
#include "tests/desktop/scene.h"

namespace bench {

using desktop::CanvasPoint;
using desktop::Desktop;
using desktop::Image;
using desktop::Program;
using desktop::Record;

namespace {

constexpr int kSleepingPose = 2;
constexpr int kFirstQuestion = 0;

/// A place over the window in which no screen has anything to light up, and one far from the window.
constexpr CanvasPoint kOver = {200, 440};
constexpr desktop::ScreenPoint kOutside = {Desktop::kWidth - 1, Desktop::kHeight - 1};

Record AppointmentAt(std::time_t when, const std::string& name) {
    const std::tm time = *std::localtime(&when);
    Record record;
    record.name = name;
    record.description = "Una descrizione come se ne scrivono, di due righe o poco meno.";
    record.day = time.tm_mday;
    record.month = time.tm_mon + 1;
    record.year = time.tm_year + 1900;
    record.hour = time.tm_hour;
    record.minute = time.tm_min;
    record.wday = time.tm_wday;
    return record;
}

/// Returns an appointment of the next hour, which the owl gives notice of, and a page of later ones.
std::vector<Record> Events() {
    constexpr std::time_t kMinute = 60;
    constexpr std::time_t kDay = kMinute * 60 * 24;
    const std::time_t now = std::time(nullptr);
    std::vector<Record> records = {AppointmentAt(now + 40 * kMinute, "Dentista")};
    for (std::time_t i = 1; i <= desktop::kRows; ++i) {
        records.push_back(AppointmentAt(now + kDay * (10 + i), "Turno numero " + std::to_string(i)));
    }
    return records;
}

/// Clicks a button that leads to another screen, and makes sure that it did.
void Go(Program& program, CanvasPoint button) {
    program.MovePointer(kOver);
    const Image before = program.Look();
    program.Click(button);
    program.MovePointer(kOver);
    program.WaitForFrames(2);
    if (Difference(before, program.Look()) < 0.3) desktop::Fail("a click leads nowhere");
}

/// Lets time pass until the owl sleeps, and for some z's to rise; in all so long that it has breathed in and
/// out wholly, so that its head is always as high. Meanwhile the dice know no other pose.
void FallAsleep(Desktop& desk, Program& program) {
    desktop::Scene scene;
    desk.MovePointer(kOutside);
    program.AwaitEvents();
    program.LoadDice(kSleepingPose);
    int seconds = 0;
    while (scene.BodyIn(program.Look()) != "sleep_close_eyes") {
        program.LetTimePass(1);
        if (++seconds > 120) desktop::Fail("the owl does not sleep");
    }
    program.ReleaseDice();
    constexpr double kBreath = std::numbers::pi;  // seconds
    constexpr double kAsleep = 6;                 // seconds, at least
    program.LetTimePass(std::ceil((seconds + kAsleep) / kBreath) * kBreath - seconds);
}

}  // namespace

desktop::Start StartOfWalk() {
    desktop::Start start;
    start.clock = desktop::Clock::kInHand;
    SwitchWaitingOff(start);
    start.spoilt[desktop::kStoreFile] = desktop::StoreBytes(Events());
    return start;
}

void WalkScreens(Desktop& desk, Program& program,
                 const std::function<void(const std::string& screen)>& stop) {
    Go(program, desktop::kBell);
    stop("view");
    Go(program, desktop::kCorner);
    stop("owl");
    Go(program, desktop::kMenuPlan);
    stop("list");
    Go(program, desktop::kAdd);
    stop("editor");
    Go(program, desktop::kConfirm);
    Go(program, desktop::kCorner);

    program.Click(desktop::kMenuAsk);
    program.MovePointer(kOver);
    program.LetTimePass(1.2);
    stop("owl with an offer");
    program.LoadDice(kFirstQuestion);
    Go(program, desktop::kBell);
    program.ReleaseDice();
    stop("quiz");
    Go(program, desktop::kCorner);

    FallAsleep(desk, program);
    stop("owl asleep");
}

double Difference(const Image& a, const Image& b) {
    if (a.Width() != b.Width() || a.Height() != b.Height()) return 1;
    constexpr double kVisible = 3;  // luminance, of 255
    int different = 0;
    for (int y = 0; y < a.Height(); ++y) {
        for (int x = 0; x < a.Width(); ++x) {
            if (std::abs(a.At(x, y).Luminance() - b.At(x, y).Luminance()) > kVisible) ++different;
        }
    }
    return static_cast<double>(different) / a.Width() / a.Height();
}

}  // namespace bench
