// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/longrun/places.h"

#include <iterator>

#include "tests/desktop/calendar.h"

namespace longrun {

using desktop::CanvasPoint;

namespace {

constexpr CanvasPoint kMenuBrowser = {44.5, 255}, kMenuSite = {44.5, 150};

/// Places worth a click, on whatever screen.
constexpr CanvasPoint kPlaces[] = {
    desktop::kMenuPlan,
    desktop::kMenuAsk,
    kMenuBrowser,
    kMenuSite,
    kMenuSound,
    desktop::kBell,
    desktop::kKindTabs[desktop::kAppointment],
    desktop::kKindTabs[desktop::kWeekly],
    desktop::kKindTabs[desktop::kReminder],
    desktop::kCorner,
    desktop::kConfirm,
    desktop::kAdd,
    desktop::kScrollUp,
    desktop::kScrollDown,
    desktop::Row(0),
    desktop::Row(1),
    desktop::Row(5),
    desktop::kAnswers[0],
    desktop::kAnswers[1],
    desktop::kAnswers[2],
    desktop::kAnswers[3],
    desktop::kNameField,
    desktop::kDayUp,
    desktop::kHourUp,
    desktop::kHourDown,
    desktop::kMinuteUp,
    desktop::kMinuteDown,
    desktop::kRepeatUp,
};

}  // namespace

CanvasPoint AnyPlace(std::mt19937& dice) {
    if (Draw(dice, 0, 1) < 0.5) {
        const double x = Draw(dice, kMargin, 512 - kMargin);
        return {x, Draw(dice, kMargin, 512 - kMargin)};
    }
    const auto last = static_cast<double>(std::size(kPlaces)) - 0.001;
    return kPlaces[static_cast<std::size_t>(Draw(dice, 0, last))];
}

}  // namespace longrun
