// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The local time, cheap enough to call in every comparison of a sort.
#pragma once

#include <ctime>

/// Returns the current local time, to the second. localtime() is slow, so it is called once a second at most.
/// Midnight, a changed clock and a changed time zone (the variable TZ or the system's) show within a second.
/// The next call overwrites the record.
const std::tm& LocalTime();
