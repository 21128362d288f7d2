// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The library that makes system calls of a save fail, preloaded into the worker.
//
// Between WatchCalls() and ReleaseCalls() it counts the calls that touch files and spoils the one whose
// number, from 1, stands in the environment variable ULMARO_SPOIL_CALL, or the first of the name that stands
// there, in the way that ULMARO_SPOIL_WAY names:
//
//   eio, enospc, eintr,  it does nothing but fail with that error; close closes all the same
//   emfile, eacces
//   short                a write takes half of its bytes, at least one; other calls are left alone
//   full                 as short, and every later write finds no space
//   kill                 the process is killed instead
//   kill-after           it is killed once the call has been done; a write by half
//   steal                before the call another program, which knows no locks, puts half a file of its own
//   in
//                        the place of "database.bin.new"
//   steal-locked         as steal, but it locks its file, until ReleaseCalls()
//
// Where ULMARO_SPOIL_MEMORY has a number from 1, the allocation of that number throws std::bad_alloc.
//
// Where ULMARO_NO_LINKS is set, every hard link fails: the file system has none. Where ULMARO_NO_LOCKS is
// set, every lock fails. Where ULMARO_NO_FOLDER_FLUSH is set, so does every flush of a folder.
#pragma once

/// Starts to count.
void WatchCalls();

/// Stops; returns how many calls there were.
int ReleaseCalls();

/// Returns how many allocations there were.
int AllocationsMade();

/// Returns the name of the call that was spoilt; "none" where none was. "late " precedes the name
/// where it came after a rename.
const char* SpoiltCall();

/// Returns the calls that were counted, one a line: the name, a space and the inode number of the file that
/// it is about; 0 where there is none yet. A rename or a link is about the file that gets the name.
const char* CallsMade();
