// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The store: all events in one file, "database.bin" in the working directory.
//
// The file is a count (32-bit, little-endian) and that many records of 572 bytes, the memory images of the
// events. It is read once at start and written whole whenever an event is confirmed, deleted, closed or
// re-armed.
//
// A save is all or nothing: whatever happens to the machine, the file is the complete old one or the complete
// new one. The new one is written beside it as "database.bin.new" and then takes its name. While it is
// written it is locked: so a save can tell a new file that another program is writing, for which it waits,
// from one that was left behind when a program was killed, which it removes. engine/replace_file.h tells
// every step.
//
// A file that does not hold what its count says is damaged. It is kept as "database.bin.bak" (or ".bak.1",
// ".bak.2" ...) before the first save replaces it; both the damage and the name are told on standard error.
//
// A file that cannot be read for another reason (the disk's error, too many open files, no permission) may be
// in good order. It is never replaced unread: each save tries to read it again and, where that works, joins
// its events with those that were added since; otherwise the save fails.
//
// A save that failed is to be tried again, once the shell finds EventsAreUnsaved(), by RetrySave().
#pragma once

#include <cstdint>

/// Reads `events` from the file; a missing or unreadable file is an empty list. A damaged or unreadable one
/// is told in one line on standard error. Where the memory is not enough, this says so and ends the program
/// with status 1.
/// Deliberate: every reminder starts out due.
///
/// A record cut short keeps the bytes it has over those of a fresh event. Up to 1,000 records that the count
/// promises and the file does not hold are fresh events; beyond that the count is taken as damaged and only
/// what is there is loaded. A negative count loads nothing.
void LoadEvents();

/// Writes `events` to the file and returns whether that worked. A save that fails leaves the old file whole,
/// or the new one where only its name may not be on the disk yet, and says why in one line on standard error.
/// While another program is saving, it waits for that save to end, at most about a second.
///
/// Where the file could not be read before and now can, its events come before those of the list. No event is
/// moved in memory, so `edit_event` stays valid.
bool SaveEvents();

/// Returns whether the last save failed.
bool EventsAreUnsaved();

/// Saves again what is unsaved, when its time has come: a second after the save that failed, then after
/// pauses that double up to a minute. To be called in every frame; `now` are nanoseconds of a clock that
/// never goes back. Does nothing where nothing is unsaved. A failure for the same reason as the last is not
/// told again.
void RetrySave(std::uint64_t now);

/// Empties `events` and the file; a file that could not be read is kept as a damaged one is. Kept as part of
/// the store: the program never calls it.
void ResetEvents();
