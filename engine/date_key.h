// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A date and time as one number, by which events are sorted.
#pragma once

/// Returns a date and time as minutes since the start of 1900 in a calendar whose months all have 31 days.
///
/// Keys order moments; their differences are not durations. `year` is the full year, and years before 1900
/// give negative keys. Day and month are not checked.
double ConvertDAM(int day, int month, int year, int hour, int minute);
