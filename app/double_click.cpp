// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/double_click.h"

#include <cmath>

#include "app/input.h"

DoubleClickState double_click;

namespace {

constexpr std::uint64_t kLongestNanoseconds = 300'000'000;
constexpr float kSameSpotPixels = 4;

bool IsAtSameSpot() {
    return std::fabs(touch_coord_x - double_click.x) <= kSameSpotPixels &&
           std::fabs(touch_coord_y - double_click.y) <= kSameSpotPixels;
}

bool IsSecondPress() {
    return double_click.changed_screen && IsAtSameSpot() &&
           press_time <= double_click.dropped_from + kLongestNanoseconds;
}

}  // namespace

void DropSecondPress() {
    if (!single_touch) return;
    if (!IsSecondPress()) {
        double_click = {touch_coord_x, touch_coord_y, false, 0};
        return;
    }
    double_click.dropped_from = press_time;
    single_touch = touch_event = false;
}

void NotePressChangedScreen(std::uint64_t now) {
    double_click.changed_screen = true;
    double_click.dropped_from = now;
}
