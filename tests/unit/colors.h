// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The colors of buttons and texts, for tests of what is drawn.
#pragma once

#include "tests/fakes/fakes.h"

inline constexpr fakes::Rgba kWhite{1, 1, 1, 1};
inline constexpr fakes::Rgba kYellow{1, 1, 0.5F, 1};
inline constexpr fakes::Rgba kGrey{0.5F, 0.5F, 0.5F, 1};
inline constexpr fakes::Rgba kGreen{0, 1, 0, 1};
