// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's sound files, for tests in which it plays them, and what it has played.
//
// How to use it:
//
//     WriteSounds();                                                   // into the current directory
//     spawn_laugh = true;
//     Render();
//     EXPECT_EQ(SoundsStarted(), (std::vector<std::string>{"laugh.wav"}));
//
// Each file has a sample rate of its own, which tells it from the others in the recorded calls.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/tools/data_files.h"

/// Every sound of the manifest; the sample rate of the nth file, from 0, is 1000 + n.
inline const std::vector<std::string>& SoundFiles() {
    static const std::vector<std::string> files = NamesFrom(".sco");
    return files;
}

/// Writes all of them, 8-bit mono of a single frame.
inline void WriteSounds() {
    for (std::size_t n = 0; n < SoundFiles().size(); ++n) {
        const auto rate = static_cast<char>(1000 % 256 + n);  // its low byte; the high one is 3
        const char bytes[] = {'R', 'I', 'F', 'F', 37, 0, 0,   0,   'W', 'A',  'V', 'E', 'f', 'm',  't',
                              ' ', 16,  0,   0,   0,  1, 0,   1,   0,   rate, 3,   0,   0,   rate, 3,
                              0,   0,   1,   0,   8,  0, 'd', 'a', 't', 'a',  1,   0,   0,   0,    '\x80'};
        std::ofstream(SoundFiles()[n], std::ios::binary).write(bytes, sizeof bytes);
    }
}

/// Returns the sounds started since the log was last cleared, in order. Each is played as soon as it is
/// loaded, once and in the slot's only source.
inline std::vector<std::string> SoundsStarted() {
    std::vector<std::string> started;
    for (const fakes::Call& call : fakes::Calls("alBufferData")) {
        started.push_back(SoundFiles().at(static_cast<std::size_t>(call.args.back()) - 1000));
    }
    EXPECT_EQ(fakes::Count("alSourcePlay"), started.size());
    EXPECT_LE(fakes::al().sources.size(), 1U) << "all sounds share a slot";
    for (const auto& [name, source] : fakes::al().sources) EXPECT_FALSE(source.looping);
    return started;
}

/// Returns how many sounds play now.
inline std::size_t SoundsPlaying() {
    return fakes::al().Playing().size();
}
