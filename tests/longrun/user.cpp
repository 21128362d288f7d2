// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/longrun/user.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "tests/desktop/calendar.h"
#include "tests/longrun/places.h"

namespace longrun {

using desktop::CanvasPoint;

namespace {

/// With more events than this the user throws some away.
constexpr std::size_t kMostEvents = 40;

}  // namespace

void Follower::CatchUp() {
    std::ifstream in(file_, std::ios::binary);
    in.seekg(read_);
    FrameRecord record;
    while (in.read(reinterpret_cast<char*>(&record), sizeof record)) {
        read_ += static_cast<long>(sizeof record);
        judge_.Follow(record);
        last_ = record;
        all_marks_ |= record.marks;
    }
    const std::string store = program_.Files().Read(desktop::kStoreFile);
    if (store == store_) return;
    if (!store_.empty()) ++saves_;
    const std::vector<desktop::Record> events = desktop::ReadStore(store);
    events_ = events.size();
    if (store != desktop::StoreBytes(events)) desktop::Fail("the store does not hold whole records");
    // The first is what the program was started with; it takes every reminder for due.
    std::vector<desktop::Record> known = events;
    if (store_.empty()) {
        for (desktop::Record& event : known) {
            if (event.kind == desktop::kReminder) event.elapsed = 10800;
        }
    }
    judge_.SetEvents(known);
    store_ = store;
}

double User::Act() {
    if (present_ > 0) {
        if (Chance(0, 1) < 0.5) {
            Wander();
        } else {
            ClickSomething();
        }
        const double pause = Chance(1, 6);
        present_ -= pause;
        if (present_ > 0) return pause;
        present_ = 0;
        away_ = Chance(60, 20 * 60);
        GoHome();
        if (Chance(0, 1) < 0.7) Acknowledge();
        if (follower_.Events() > kMostEvents) Tidy();
        Leave();
        return pause;
    }
    const double pause = std::min(30.0, away_);
    away_ -= pause;
    if (away_ > 0) {
        if (Chance(0, 1) < 0.15) Leave();  // elsewhere on the desk
        return pause;
    }
    present_ = Chance(20, 120);
    Wander();
    if (Chance(0, 1) < 0.5) Acknowledge();
    return pause;
}

void User::Settle() {
    GoHome();
    Acknowledge();
    Click(kMenuSound);  // twice: sound stays as it was, and what was playing has gone
    Click(kMenuSound);
    Leave();
}

void User::TryEverything() {
    GoHome();
    Acknowledge();
    Click(desktop::kMenuPlan);
    Click(desktop::kAdd);
    for (const CanvasPoint tab : desktop::kKindTabs) Click(tab);
    Click(desktop::kCorner);
    for (int questions = 0; questions < 20; ++questions) {
        GoHome();
        Click(desktop::kMenuAsk);
        Click(desktop::kBell);
        Click(desktop::kAnswers[static_cast<std::size_t>(questions % 4)]);
    }
    GoHome();
}

void User::Wander() {
    judge_.SetPointer(true);
    program_.MovePointer({Chance(kMargin, 512 - kMargin), Chance(kMargin, 512 - kMargin)});
    follower_.CatchUp();
}

void User::Leave() {
    const desktop::ScreenRect place = program_.Place();
    const int right = place.x + place.width + 40;
    desk_.MovePointer({static_cast<int>(Chance(right, desktop::Desktop::kWidth - 1)),
                       static_cast<int>(Chance(0, desktop::Desktop::kHeight - 1))});
    program_.WaitForFrames(2);
    follower_.CatchUp();
    judge_.SetPointer(false);
}

void User::Click(CanvasPoint point) {
    judge_.SetPointer(true);
    judge_.Disturb();
    program_.Click(point);
    ++clicks_;
    follower_.CatchUp();
}

/// Clicks any of the places above, or anywhere. Offers and questions tempt the user more than all else.
void User::ClickSomething() {
    const bool tempted = Chance(0, 1) < 0.5;
    if (Chance(0, 1) < 0.05 && (follower_.Marks() & kOwlScreen) != 0) {
        Click(desktop::kMenuAsk);
        Click(desktop::kBell);
        return;
    }
    if (tempted && (follower_.Marks() & kOfferButton) != 0) {
        Click(desktop::kBell);
        return;
    }
    if (tempted && (follower_.Marks() & kQuizScreen) != 0) {
        Click(desktop::kAnswers[static_cast<std::size_t>(Chance(0, 3.999))]);
        return;
    }
    Click(AnyPlace(dice_));
}

void User::GoHome() {
    for (int screens = 0; screens < 10; ++screens) {
        follower_.CatchUp();
        if ((follower_.Marks() & kOwlScreen) != 0) return;
        Click((follower_.Marks() & kEditor) != 0 ? desktop::kConfirm : desktop::kCorner);
    }
    desktop::Fail("the user does not find the way back to the owl");
}

void User::Acknowledge() {
    for (int events = 0; events < 60; ++events) {
        GoHome();
        if ((follower_.Marks() & kBadge) == 0) return;
        Click(desktop::kBell);
    }
    // An event in its very minute is due again at once; so is a moment of time what is wanted.
}

/// Throws events away until few are left.
void User::Tidy() {
    for (std::size_t left = follower_.Events(); left > kMostEvents / 2; --left) {
        GoHome();
        Acknowledge();
        Click(desktop::kMenuPlan);
        Click(desktop::Row(static_cast<int>(Chance(0, 11.9))));
        if ((follower_.Marks() & kEditor) != 0) Click(desktop::kCorner);
    }
    GoHome();
}

}  // namespace longrun
