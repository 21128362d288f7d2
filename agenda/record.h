// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// An event of the store on its way through an iCalendar file: what tells two events apart, and what of a
// record has no place in iCalendar and is kept beside it.
//
// Kept is one property of our own, X-ULMARO-RECORD: numbers with blanks between them. With it an export that
// is imported again gives the same bytes. It counts only as long as the event is what it was: where another
// calendar has moved it, the marks of what has been announced would be wrong.
#pragma once

#include <string>

#include "calendar/events.h"

inline constexpr char kRecordProperty[] = "X-ULMARO-RECORD";

/// What an event without name is called, here as on screen.
inline constexpr char kUnnamed[] = "evento senza nome";

/// Returns a text of all that makes an event this one: name, description and when it takes place. What has
/// been announced of it does not count. Two events with the same text are the same event.
std::string IdentityOf(const Event& event);

/// Puts a text into a field of an event, as far as it fits, and clears the rest of the field.
template <int kBytes>
void SetField(char (&field)[kBytes], const std::string& text) {
    std::size_t i = 0;
    for (char& c : field) c = i < text.size() ? text[i++] : '\0';
}

/// Returns a text without the blanks at its ends, which libical does not keep.
std::string WithoutBlanks(const std::string& text);

/// Returns what is kept of an event.
std::string KeptOf(const Event& event);

/// Restores what was kept, as a text, to an event that was made of the rest. Leaves the event alone where the
/// text is none of KeptOf(), or of another day, time or repetition.
void Restore(const std::string& text, Event& event);
