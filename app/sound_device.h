// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The sound device: opened once at start, closed when the program ends by exit(), however that comes about.
// OpenAL prints a line about a device that is still open when its library is unloaded.
//
// An open device wakes the process dozens of times a second, also while nothing is played. So it is put to
// sleep when it has been quiet for a while, and woken for the next sound (sounds.h). Where OpenAL cannot do
// that, it stays awake.
#pragma once

/// Opens the default device and makes a plain context on it current; registers CloseSoundDevice() for the
/// program's end. Without a device all sound stays silent.
void OpenSoundDevice();

/// Wakes the device for a sound that is about to be played. Where it was lost since, or could not be opened,
/// it is opened again; does nothing before OpenSoundDevice(). Returns whether this is another device now:
/// every source and buffer has gone with the old one.
bool WakeSoundDevice();

/// Returns whether there is a device that is awake and can be put to sleep.
bool IsSoundDeviceAwake();

/// Puts the device to sleep until WakeSoundDevice(); what is playing is held. Only while
/// IsSoundDeviceAwake().
void RestSoundDevice();

/// Closes the device and its context. Does nothing where none is open.
void CloseSoundDevice();
