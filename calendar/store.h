// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The store: all events in one file, "database.bin" in the working directory.
//
// The file is a count (32-bit, little-endian) and that many records of 572 bytes, the memory images of the
// events. It is read once at start and written whole whenever an event is confirmed, deleted, closed or
// re-armed.
//
// A save is all or nothing: whatever happens to the machine, the file is the complete old one or the complete
// new one. It is written beside the old one as "database.bin.new", locked for as long as that takes, which
// tells a save that another program is at from one that broke off; then it takes the old one's place. A file
// that could not be read as its count says is set aside as "database.bin.bak" (".bak.1" ...) before the first
// save replaces it.
#pragma once

/// Reads `events` from the file; a missing or unreadable file is an empty list. Every reminder starts out
/// due, which is meant.
///
/// A record cut short keeps the bytes it has over those of a fresh event. Up to 1,000 records that the count
/// promises and the file does not hold are fresh events; beyond that the count is taken as damaged and only
/// what is there is loaded. A negative count loads nothing.
void LoadEvents();

/// Writes `events` to the file. A save that fails leaves the old file whole and says why in one line on
/// standard error. Where another program is saving, it waits for that save to end, at most about a second.
void SaveEvents();

/// Empties `events` and the file. Kept as part of the store: the program never calls it.
void ResetEvents();
