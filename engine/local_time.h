// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The local time, cheap enough to be asked at every step of a sort.
#pragma once

#include <ctime>

/// Returns the current local time, to the second. Breaking a time down is slow, so it is done once a second;
/// midnight, a changed clock and a changed time zone (the variable TZ or the system's own) are noticed within
/// that second. The record is overwritten by the next call.
const std::tm& LocalTime();
