// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What becomes of memory that is freed. The C library's allocator learns from large buffers to keep them,
// which suits programs that live for minutes; the owl lives for weeks and must not grow with every sound it
// plays.
#pragma once

/// Lets large buffers, such as those of sounds, go back to the system as soon as they are freed.
void ReturnFreedMemory();

/// Keeps what is freed from here on, for what is allocated next, until ReturnFreedMemory() is called again.
void KeepFreedMemory();
