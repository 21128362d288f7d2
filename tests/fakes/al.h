// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fake of OpenAL: keeps devices, contexts, sources and buffers, and never makes a sound.
//
// A context is current from the start, so that tests of single sounds need no set-up. Without a
// current context OpenAL's calls do nothing: names asked for are left unwritten.
//
// How to use it:
//
//     AudioEngine.spawn_static(0, "notify.wav", false);
//     const fakes::Source& source = fakes::al().sources.at(1);
//     EXPECT_EQ(source.state, AL_PLAYING);
//     EXPECT_EQ(fakes::al().buffers.at(source.buffer).frequency, 44100);
//     EXPECT_EQ(fakes::al().Playing(), (std::vector<ALuint>{1}));
//     fakes::al().sources.at(1).state = AL_STOPPED;        // the sound has come to its end
//     fakes::al().has_device = false;                      // alcOpenDevice gives null
//     fakes::al().connected = false;                       // the device has been pulled out
//
// With a context go its sources and buffers, and the next context counts its names from 1 again.
//
// Errors (a name that does not exist ...) set the flag that alGetError returns and add a sentence to
// `errors`; the program may provoke some on purpose (it deletes the name 0), so no test fails by them.

#pragma once

#include <AL/al.h>
#include <AL/alc.h>

#include <array>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace fakes {

struct Source {
    ALuint buffer = 0;
    ALint state = AL_INITIAL;  ///< AL_PLAYING, AL_STOPPED ... tests may set it
    bool looping = false;
    bool relative = false;
    float gain = 1;
    float pitch = 1;
    std::array<float, 3> position{};
    std::array<float, 3> velocity{};
    std::map<ALenum, float> other;  ///< any other parameter set, by its enum
};

struct Buffer {
    ALenum format = 0;
    ALsizei frequency = 0;           ///< frames a second
    std::vector<std::uint8_t> data;  ///< bytes as handed to alBufferData
};

struct Listener {
    float gain = 1;
    std::array<float, 3> position{};
    std::array<float, 3> velocity{};
    std::array<float, 6> orientation{0, 0, -1, 0, 1, 0};
};

struct Al {
    // What tests read.
    std::map<ALuint, Source> sources;  ///< live names only; names are 1, 2, ... never used twice in a context
    std::map<ALuint, Buffer> buffers;
    Listener listener;
    int open_devices = 0;  ///< opened and not closed
    int contexts = 0;      ///< made by alcCreateContext and not destroyed
    bool paused = false;   ///< the device sleeps
    std::vector<std::string> errors;

    // What tests set.
    bool has_device = true;
    bool has_context = true;      ///< alcCreateContext works
    bool can_pause = true;        ///< there is ALC_SOFT_pause_device
    bool tells_loss = true;       ///< there is ALC_EXT_disconnect
    bool connected = true;        ///< false: the device is lost; true again when one is opened
    bool context_current = true;  ///< set by alcMakeContextCurrent; tests may preset it
    ALenum error = AL_NO_ERROR;   ///< what alGetError returns next
    ALuint next_source = 1;
    ALuint next_buffer = 1;

    /// Returns the names of the sources that play, in order of their names.
    std::vector<ALuint> Playing() const;
};

/// Returns the model that the OpenAL fakes work on.
Al& al();

/// Puts everything back. Reset() in fakes.h calls it.
void ResetAl();

}  // namespace fakes
