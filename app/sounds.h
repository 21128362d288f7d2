// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's sounds by what they mean: an effect, a notice, silence.
//
// All of them share one slot of the sound table, so there is one sound at a time, the latest. A sound file
// that cannot be played ends the program (engine/wav_file.h).
//
// A device that is lost while a sound is played loses that sound; the next one opens it again.
#pragma once

#include <cstdint>

/// Plays a sound file as an effect: not at all while sound is switched off.
void PlayEffect(const char* file);

/// Plays a sound file as a notice. Deliberate: it sounds with sound switched off too, because a notice is not
/// to be missed.
void PlayNotice(const char* file);

/// Stops whatever is playing.
void Silence();

/// Puts the sound device to sleep when two seconds have passed since the last sound ended, or since the start
/// where there was none; called once a frame. `now` is the monotonic clock, nanoseconds.
void RestSoundWhenQuiet(std::uint64_t now);
