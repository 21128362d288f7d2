// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What a notice of an event says outside the owl's window, where the desktop shows it: in Italian, as plain
// text in UTF-8 whatever bytes the event holds.
//
//     appointment     Oggi alle 10:15, tra 42 minuti      16/5/2012 alle 0:05, tra un minuto
//                     Oggi alle 10:15, adesso             Oggi all'1:30, 20 minuti fa
//                     16/5/2012 alle 10:15                (more than an hour away, or ago)
//     weekly event    ogni giov alle 17:30
//     reminder        promemoria: ogni 2 ore
#pragma once

#include <string>

#include "calendar/events.h"
#include "calendar/notices.h"

/// Returns the event's name; "evento senza nome" where it has none that can be read.
std::string NoticeTitle(const Event& event);

/// Returns when the event is. "Oggi" is the whole date's, unlike in the list. A kind that there is none of
/// gives an empty text, and so does a reminder with a repeat that there is none of; a weekday that there is
/// none of is left out.
std::string NoticeTime(const Event& event, const Moment& now);

/// Returns when the event is and, on a second line, the description's first line that is not blank.
std::string NoticeText(const Event& event, const Moment& now);
