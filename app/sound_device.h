// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The sound device: opened once at start, closed when the program ends by exit(), however that comes about.
// OpenAL prints a line about a device that is still open when its library is unloaded.
#pragma once

/// Opens the default device and makes a plain context on it current; registers CloseSoundDevice() for the
/// program's end. Without a device all sound stays silent.
void OpenSoundDevice();

/// Closes the device and its context. Does nothing where none is open.
void CloseSoundDevice();
