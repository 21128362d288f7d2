// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's sounds: ten numbered slots, each an OpenAL source with a buffer filled from a WAVE file.
//
// A slot is loaded anew from its file whenever it is started, and a new sound cuts off the slot's old one.
// The program plays everything in slot 0. Whether to play at all is the callers' decision. Nothing here asks
// whether there is a sound device: without one OpenAL's calls do nothing.
#pragma once

#include <vector>

/// One sound. All zero: an empty slot.
struct Sound {
    /// Loads a WAVE file and makes the source that plays it, relative to the listener. A file that cannot be
    /// played ends the program (wav_file.h).
    void Load(const char* file, bool loop);

    /// Makes positions relative to the listener.
    void SetSourceRelative() const;

    /// Sets where the source is and how it moves, in OpenAL's units and units a second.
    void SetProperties(float px, float py, float pz, float vx, float vy, float vz) const;

    /// Plays from the start, or goes on after a pause.
    void Play() const;

    /// Stops; the next start is from the beginning.
    void Stop() const;

    /// Holds the sound where it is.
    void Pause() const;

    /// Returns whether the source is playing. Asks OpenAL only where there is a source.
    bool IsPlaying() const;

    /// Deletes source and buffer and forgets their names: OpenAL may give them to another sound.
    void Destroy();

    void* data = nullptr;  ///< the audio bytes while they are being loaded; OpenAL has a copy afterwards
    int format = 0;        ///< OpenAL's constant
    int freq = 0;          ///< frames a second
    int size = 0;          ///< bytes
    unsigned int source = 0;
    unsigned int buffer = 0;
};

/// The table of sound slots.
struct AudioEngine {
    static constexpr int kSlots = 10;

    /// Notes that OpenAL's context is current.
    void initialize();

    /// Starts a sound in a slot, 0 .. 9, in place of what it held. Other slots are ignored. A file that
    /// cannot be played ends the program (wav_file.h).
    void spawn_static(int slot, const char* file, bool loop);

    /// Stops a slot's sound, 0 .. 9. Other slots are ignored.
    void kill_static(int slot);

    /// Empties all slots without a call of OpenAL: their sources and buffers have gone with their device, and
    /// another device may give the names to others.
    void ForgetNames();

    Sound statics[kSlots];
    std::vector<Sound> sounds;  ///< an engine leftover, never used
    bool initialized = false;
};

/// The one table.
/// Deliberate: its name hides the type's.
extern struct AudioEngine AudioEngine;

/// Sets where the listener is, in OpenAL's units.
void SetListenerPosition(float x, float y, float z);

/// Sets which way the listener looks and which way is up.
void SetListenerOrientation(float atx, float aty, float atz, float upx, float upy, float upz);

/// A folder's path with its slash at the end, put before names by GetAbsPath(); empty at start.
extern char curr_absolute_path[512];

/// The path that GetAbsPath() returned last, with nothing but zeros behind it; empty at start.
extern char retv_absolute_path[512];

/// Returns the name with that folder before it, glued without a separator and cut to 511 bytes. Overwritten
/// by the next call.
char* GetAbsPath(const char* name);
