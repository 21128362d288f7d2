// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Where the users of the long runs click.
#pragma once

#include <random>

#include "tests/desktop/desktop.h"

namespace longrun {

/// How near to the canvas's edge the users never point, canvas units: there it is hard to say what is inside.
constexpr double kMargin = 24;

/// The menu's item for sound.
constexpr desktop::CanvasPoint kMenuSound = {44.5, 45};

/// Returns a number between two, the first included.
inline double Draw(std::mt19937& dice, double from, double to) {
    return std::uniform_real_distribution(from, to)(dice);
}

/// Returns a place worth a click on some screen, or in every second case any place at all.
desktop::CanvasPoint AnyPlace(std::mt19937& dice);

}  // namespace longrun
