// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the user is told where the memory is not enough.
//
// Readers and the store report a lack of memory as any other failure. Everything else that allocates, such as
// the sorting of the list and the queue of strokes, leaves what it works on whole and lets std::bad_alloc
// out. Between it and main() stand GLUT's functions, which are C: so nothing catches it, and it ends the
// program.
#pragma once

/// Lets a std::bad_alloc that nobody catches end the program with status 1, after one line on standard error.
/// Nothing is saved at that moment: the store is saved at every change anyway.
void EndClearlyWithoutMemory();
