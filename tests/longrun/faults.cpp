// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/longrun/faults.h"

#include <algorithm>
#include <cstdio>

#include "tests/desktop/calendar.h"
#include "tests/longrun/places.h"

namespace longrun {

namespace {

constexpr char kUnsavedTitle[] = "*Ulmaro Assistant";

constexpr double kOfferSeconds = 21;  ///< after which an offer has lapsed
constexpr double kLongestRetry = 60;  ///< seconds between two tries to save

/// What the program says of a full disk.
constexpr char kDiskFull[] =
    "Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": il disco e' pieno.\n";

}  // namespace

Faults::Faults(Course& course, double seconds)
    // The kill comes first: what later faults cost once, such as the memory of the largest window, is then
    // spent in the process whose memory is judged.
    : course_(course), kinds_{{"the program is killed", &Faults::KillAndStartAgain},
                              {"the window is hidden", &Faults::Hide},
                              {"other sizes of the window", &Faults::OtherSizes},
                              {"the disk is full", &Faults::FullDisk},
                              {"daylight saving begins", &Faults::SpringNight},
                              {"the sound device is lost", &Faults::LostDevice},
                              {"the clock is set ahead", &Faults::WallAhead},
                              {"ten hours of sleep", &Faults::Suspend},
                              {"daylight saving ends", &Faults::AutumnNight},
                              {"the clock is set back", &Faults::WallBack}} {
    constexpr double kLeast = 60;
    constexpr double kMost = 1800;
    // Each takes up to some minutes itself.
    period_ = std::clamp(seconds / static_cast<double>(2 * kinds_.size()), kLeast, kMost);
    // All of the first round lie within the first hour where it has room for them.
    period_ = std::min(period_, 3600 / static_cast<double>(2 * kinds_.size()));
    next_ = period_;
}

void Faults::HappenIfDue() {
    if (course_.now < next_) return;
    Kind& kind = kinds_[turn_];
    turn_ = (turn_ + 1) % kinds_.size();
    if (turn_ == 0) period_ = std::max(period_, 1800.0);
    next_ = course_.now + period_;
    constexpr double kHour = 3600;
    if (kind.happen == &Faults::KillAndStartAgain && course_.now > kHour) return;
    happening_ = kind.name;
    ++kind.times;
    ++count_;
    std::printf("%.0f s: %s\n", course_.now, kind.name);
    std::fflush(stdout);
    course_.judge.Disturb();
    DealWithAll();
    course_.user.Leave();
    (this->*kind.happen)();
    course_.judge.Disturb();
}

std::vector<std::string> Faults::Missing() const {
    std::vector<std::string> names;
    for (const Kind& kind : kinds_) {
        if (kind.times == 0) names.emplace_back(kind.name);
    }
    return names;
}

void Faults::Expect(bool holds, const std::string& text) {
    if (!holds) course_.judge.Complain(std::string(happening_) + ": " + text);
}

/// Deals with all that is due. A weekly event in its very minute is due again at once: then it waits.
void Faults::DealWithAll() {
    constexpr int kMostTries = 4;
    for (int tries = 0; tries < kMostTries; ++tries) {
        course_.user.GoHome();
        course_.user.Acknowledge();
        if ((course_.follower.Marks() & kBadge) == 0) return;
        course_.Pass(30);
    }
}

std::string Faults::Store() const {
    return course_.program.Files().Read(desktop::kStoreFile);
}

// ---- The window ----

/// While it is hidden all timers go on, which the judge follows; nothing is swapped.
void Faults::Hide() {
    course_.program.Minimise();
    LookAgain();
    const std::uint64_t swaps = course_.program.Swaps();
    course_.Pass(200);
    Expect(course_.program.Swaps() == swaps, "hidden frames are swapped");
    course_.program.Restore();
    LookAgain();
    const std::uint64_t hidden = course_.program.Swaps();
    course_.Pass(5);
    Expect(course_.program.Swaps() > hidden, "no frame is swapped when it is shown again");
}

/// Lets the program find out whether it is seen: what the X server and the window manager do takes real time,
/// and the program looks at it a tenth of a second of its own later.
void Faults::LookAgain() {
    for (int looks = 0; looks < 5; ++looks) {
        desktop::SleepSeconds(0.1);
        course_.Pass(0.5);
    }
}

/// Narrow, flat, usual, of one line; the last one is the run's own.
void Faults::OtherSizes() {
    constexpr struct {
        int width, height;
        bool clickable;  ///< fine enough to hit what is meant
    } kSizes[] = {
        {128, 512, true}, {512, 96, true}, {300, 300, true}, {300, 1, false}, {kUsualEdge, kUsualEdge, true}};
    for (const auto& size : kSizes) {
        course_.user.Leave();
        course_.program.Resize({40, 60, size.width, size.height});
        course_.Pass(5);
        Expect(course_.follower.Width() == size.width && course_.follower.Height() == size.height,
               "the viewport has another size than the window");
        if (!size.clickable) continue;
        course_.user.Wander();
        course_.Pass(2);
        course_.user.Click(desktop::kMenuPlan);
        Expect((course_.follower.Marks() & kListScreen) != 0, "a click does not open the list");
        course_.user.GoHome();
    }
    course_.user.Leave();
}

// ---- Clocks ----

/// All that is due ten minutes before the change is dealt with, so that the event of that night (longrun.cpp)
/// decides alone whether there is a badge.
void Faults::Night(std::int64_t change) {
    const std::int64_t before = course_.wall_offset;
    course_.TurnWall(change - 600 - course_.world->seconds);
    course_.user.Acknowledge();
    course_.user.GoHome();
    course_.user.Leave();
    course_.TurnWall(change - 120 - course_.world->seconds);
    course_.Pass(300);
    course_.TurnWall(before - course_.wall_offset);
}

void Faults::SpringNight() {
    Night(kSummerBegins);
}

void Faults::AutumnNight() {
    Night(kSummerEnds);
}

/// Makes an event of the next full hour, which is today, and deals with nothing that is due.
void Faults::MeetInAnHour() {
    DealWithAll();
    course_.user.Click(desktop::kMenuPlan);
    course_.user.Click(desktop::kAdd);
    course_.user.Click(desktop::kHourUp);
    course_.user.Click(desktop::kConfirm);
    course_.user.GoHome();
}

/// An hour later or sooner there is something else due: the event that comes within the hour, which was
/// announced, has come then, and one that is being announced is not near yet.
void Faults::WallAhead() {
    const std::int64_t ahead = AvoidMidnight();
    MeetInAnHour();
    course_.user.Acknowledge();
    course_.user.Leave();
    course_.Pass(1);
    course_.TurnWall(3600);
    course_.Pass(120);
    Expect((course_.follower.Marks() & kBadge) != 0, "what has come is not due");
    course_.TurnWall(-3600);
    course_.Pass(120);
    course_.TurnWall(-ahead);
}

void Faults::WallBack() {
    const std::int64_t ahead = AvoidMidnight();
    MeetInAnHour();
    course_.user.Leave();
    course_.Pass(1);
    Expect((course_.follower.Marks() & kBadge) != 0, "what comes within the hour is not due");
    course_.TurnWall(-3600);
    course_.Pass(120);
    course_.TurnWall(3600);
    course_.Pass(120);
    course_.TurnWall(-ahead);
}

/// Sets the clock some hours ahead where the next full hour is tomorrow's. Returns by how many seconds.
std::int64_t Faults::AvoidMidnight() {
    constexpr int kLastHour = 23;
    if (ItalianTime(course_.world->seconds).tm_hour < kLastHour) return 0;
    constexpr std::int64_t kFourHours = 14'400;
    course_.TurnWall(kFourHours);
    return kFourHours;
}

/// In the middle of a frame: frames are under way while the clock jumps. No timer goes on by it.
void Faults::Suspend() {
    constexpr double kTenHours = 36'000;
    course_.program.BeginToPass(5);
    course_.program.JumpClock(kTenHours);
    course_.now += 5;
    course_.Pass(1);
    course_.TurnWall(static_cast<std::int64_t>(kTenHours));
    course_.Pass(30);
}

// ---- Disk and device ----

/// A new event cannot be saved: the old store stays, the title says so. When there is room again it is saved
/// by itself within a minute.
void Faults::FullDisk() {
    const auto title_is = [&](const char* title) {
        return course_.desk.FindWindow(title) == course_.program.Handle();
    };
    const std::string old = Store();
    const int refused = course_.world->refused_writes;
    course_.judge.TrustStore(false);
    course_.world->disk_full = true;
    course_.user.Click(desktop::kMenuPlan);
    course_.user.Click(desktop::kAdd);
    course_.user.Click(desktop::kConfirm);
    course_.user.GoHome();
    course_.Pass(3 * kLongestRetry);
    Expect(Store() == old, "the store has changed");
    Expect(course_.world->refused_writes > refused + 1, "saving is not tried again");
    Expect(title_is(kUnsavedTitle), "the title does not say that something is unsaved");

    course_.world->disk_full = false;
    course_.Pass(kLongestRetry + 2);
    course_.judge.TrustStore(true);
    Expect(desktop::ReadStore(Store()).size() == desktop::ReadStore(old).size() + 1,
           "the event is not in the store: " + std::to_string(desktop::ReadStore(old).size()) +
               " events before, " + std::to_string(desktop::ReadStore(Store()).size()) + " now");
    Expect(title_is(desktop::Program::kTitle), "the title says that something is unsaved");
    sayings_ += kDiskFull;
}

/// Asks for an offer and lets it lapse; returns the marks of what was seen and heard.
std::string Faults::Offer() {
    course_.user.Wander();  // an owl that sleeps wakes
    course_.Pass(2);
    course_.user.Acknowledge();
    course_.user.GoHome();
    course_.follower.TakeMarks();
    course_.user.Click(desktop::kMenuAsk);
    course_.Pass(kOfferSeconds);
    const std::uint32_t marks = course_.follower.TakeMarks();
    return (marks & kOfferSound) != 0 ? "sound" : (marks & kOfferButton) != 0 ? "silent" : "none";
}

/// Without a device each sound looks for one; with the first sound after it is back there is one again, once.
void Faults::LostDevice() {
    World& world = *course_.world;
    if (Offer() != "sound") course_.user.Click(kMenuSound);
    const int refused = world.refused_devices;
    world.device_gone = true;
    Expect(Offer() == "sound", "an offer does not try to sound");
    Expect(world.refused_devices > refused, "no device is looked for");

    world.device_gone = false;
    const int opened = world.opened_devices;
    const int sounds = world.sounds;
    Expect(Offer() == "sound", "an offer does not sound");
    Expect(world.opened_devices == opened + 1, "the device is not opened again");
    Expect(world.sounds > sounds, "nothing is played on the device");
    Offer();
    Expect(world.opened_devices == opened + 1, "the device is opened more than once");
    course_.user.Leave();
}

// ---- The program ----

/// Killed while it saves a new event: the store holds the events of before, with it or without it. At each
/// call of a save once, and at last wherever chance says.
void Faults::KillAndStartAgain() {
    constexpr int kMostCalls = 20;
    int calls = 0;
    for (bool dies = true; dies && calls < kMostCalls; calls += dies ? 1 : 0) {
        const std::string old = GetReadyToSave();
        dies = DiesAtCall(calls + 1);
        if (dies) StartAgain(old);
    }
    Expect(calls > 0 && calls < kMostCalls, "killed at " + std::to_string(calls) + " calls of a save");

    const std::string old = GetReadyToSave();
    course_.desk.Button(1, true);
    desktop::SleepSeconds(course_.user.Chance(0, 0.02));
    course_.program.Kill();
    course_.desk.Button(1, false);
    StartAgain(old);
}

/// Puts the pointer on what saves a new event. Returns the store.
std::string Faults::GetReadyToSave() {
    DealWithAll();
    course_.user.Click(desktop::kMenuPlan);
    course_.user.Click(desktop::kAdd);
    course_.program.MovePointer(desktop::kConfirm);
    course_.Pass(1);  // a press sooner would be the second one of a double click, which does nothing here
    return Store();
}

/// Presses there. Returns whether the program was killed at that call of the save; false where the save
/// has fewer.
bool Faults::DiesAtCall(int call) {
    course_.world->calls_to_live = call;
    const std::uint64_t frames = course_.program.Frames();
    course_.desk.Button(1, true);
    const auto over = [&] {
        return !course_.program.Child().Running() || course_.program.Frames() > frames + 20;
    };
    if (!desktop::WaitUntil(over, 60)) desktop::Fail("a save does not end");
    course_.desk.Button(1, false);
    course_.world->calls_to_live = 0;
    return !course_.program.Child().Running();
}

/// Looks at what a killed program has left, and starts it again.
void Faults::StartAgain(const std::string& old_store) {
    const std::vector<desktop::Record> events = desktop::ReadStore(Store());
    const std::size_t before = desktop::ReadStore(old_store).size();
    Expect(Store() == desktop::StoreBytes(events), "the store does not hold whole records");
    Expect(events.size() == before || events.size() == before + 1,
           "the store had " + std::to_string(before) + " events and has " + std::to_string(events.size()));

    course_.follower.CatchUp();
    course_.judge.Restart();
    course_.follower.Restart();
    course_.program.StartAgain();
    ++course_.restarts;
    course_.program.Resize({40, 60, kUsualEdge, kUsualEdge});
    course_.user.Leave();
    course_.Pass(5);
    Expect((course_.follower.Marks() & kOwlScreen) != 0, "it does not begin with the owl");
}

}  // namespace longrun
