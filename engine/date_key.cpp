// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/date_key.h"

double ConvertDAM(int day, int month, int year, int hour, int minute) {
    // All in double precision, the difference of the years too: no int overflows.
    const double years = static_cast<double>(year) - 1900.0;
    return static_cast<double>(minute) + static_cast<double>(hour) * 60.0 +
           static_cast<double>(day) * 24.0 * 60.0 + static_cast<double>(month) * 31.0 * 24.0 * 60.0 +
           years * 12.0 * 31.0 * 24.0 * 60.0;
}
