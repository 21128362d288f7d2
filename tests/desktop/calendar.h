// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The calendar as its user sees it: the store's file, the clock on the wall, and the places of the screens.
//
// Shared by the tests of the screens and by what takes pictures of them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/desktop/desktop.h"

namespace desktop {

// ---- The store ----

constexpr char kStoreFile[] = "database.bin";

/// The kinds of events, as the store has them.
constexpr int kAppointment = 0, kWeekly = 1, kReminder = 2;

/// An event as the store's file has it, written and read here by hand and not by the program's own code.
struct Record {
    std::string name;
    std::string description;
    std::int32_t day = 0, month = 0, year = 0;
    std::int32_t hour = 0, minute = 0;
    std::int32_t wday = 0;  ///< 0 = Sunday
    std::int32_t kind = kAppointment;
    std::int32_t repeat = 0;
    float elapsed = 0;  ///< seconds
    std::uint8_t warned_60 = 0, warned_30 = 0, done = 0;
};

/// Returns the bytes of a store with these events.
std::string StoreBytes(const std::vector<Record>& records);

/// Returns the events of a store; nothing but whole records.
std::vector<Record> ReadStore(const std::string& bytes);

// ---- The clock on the wall ----

/// The date and time that the program reads. The program's own clock, which its movements go by, is another
/// one (see Clock).
class WallClock {
  public:
    /// Takes a local time such as "2031-03-12 08:17:00", where it stands still until it is set, or how far it
    /// is from the real one, such as "-2h".
    explicit WallClock(const std::string& time);
    ~WallClock();
    WallClock(const WallClock&) = delete;
    WallClock& operator=(const WallClock&) = delete;

    /// Puts the clock on another time; the program's next frame sees it.
    void Set(const std::string& time) const;

    /// Makes a program that is about to start go by this clock, in Italian time.
    void Rule(Start& start) const;

  private:
    Folder folder_;
    Wall* wall_ = nullptr;
};

// ---- The screens, canvas units ----

/// A place that no screen has anything to click in.
constexpr CanvasPoint kNowhere = {200, 440};

// The owl's screen.
constexpr CanvasPoint kMenuPlan = {44.5, 465};
constexpr CanvasPoint kMenuAsk = {44.5, 360};
constexpr CanvasPoint kBell = {435, 440};

/// Where the number on the badge is centred.
constexpr CanvasPoint kBadgeNumber = {459, 401};

// The band of the panel screens.
constexpr std::array<CanvasPoint, 3> kKindTabs = {{{87, 486}, {243.5, 486}, {391.5, 486}}};
constexpr CanvasPoint kCorner = {485.12, 486};     ///< closes the list or the view; the editor's trash
constexpr CanvasPoint kConfirm = {476.62, 436.5};  ///< the editor's

// The list.
constexpr CanvasPoint kAdd = {447.12, 436.5};
constexpr CanvasPoint kScrollUp = {485, 389};
constexpr CanvasPoint kScrollDown = {485, 40};
constexpr int kRows = 12;

/// Returns the middle of a row, 0 at the top.
constexpr CanvasPoint Row(int row) {
    return {241.5, 390.0 - 32 * row};
}

// The quiz: the answers, in pairs from left to right.
constexpr std::array<CanvasPoint, 4> kAnswers = {{{138, 110}, {374, 110}, {138, 52}, {374, 52}}};

// The editor.
constexpr CanvasPoint kNameField = {120, 220};
constexpr CanvasPoint kDescriptionField = {256, 108};
constexpr CanvasPoint kWeekdayUp = {150, 410}, kWeekdayDown = {150, 362};
constexpr CanvasPoint kDayUp = {105, 410}, kDayDown = {105, 362};
constexpr CanvasPoint kMonthUp = {150, 410}, kYearUp = {210, 410};
constexpr CanvasPoint kHourUp = {105, 314}, kHourDown = {105, 266};
constexpr CanvasPoint kMinuteUp = {150, 314}, kMinuteDown = {150, 266};
constexpr CanvasPoint kRepeatUp = {215, 365}, kRepeatDown = {215, 315};

}  // namespace desktop
