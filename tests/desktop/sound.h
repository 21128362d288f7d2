// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Hearing: what the program plays, recorded by OpenAL into a WAVE file, and which of its sounds is in it.
//
// OpenAL plays in real time, whatever the program's own clock does.
#pragma once

#include <string>
#include <vector>

#include "tests/desktop/desktop.h"

namespace desktop {

/// A recording or a sound: frames of all channels together, -1 .. 1, 44100 a second.
using Waveform = std::vector<float>;

/// Reads a WAVE file of 16 bits and 44.1 kHz, also one that is still being written; empty if there is none.
Waveform ReadWaveform(const std::string& path);

/// A file that a program's OpenAL plays into.
class Recorder {
  public:
    Recorder();

    /// Makes a program that is about to start play into the file.
    void Record(Start& start) const;

    /// Returns what has been played so far, silence included.
    Waveform Played() const { return ReadWaveform(folder_.Path(kFile)); }

    /// Waits until so many more seconds are in the file, or the program's device sleeps.
    void Wait(double seconds) const;

  private:
    static constexpr char kFile[] = "played.wav";

    Folder folder_;
};

/// Where a sound begins in a recording, seconds, and how alike they are there: 1 for the same waveform at any
/// loudness, near 0 for another.
struct Match {
    double start = 0;
    double likeness = 0;
};

/// Finds the best match of the first 1.3 seconds of a sound of the data folder, such as "right.wav", from
/// some second of a recording on.
Match Find(const Waveform& recording, const std::string& sound, double from = 0);

/// Returns the sounds that are in a recording from some second on, in the order of their starts.
std::vector<std::string> SoundsIn(const Waveform& recording, double from = 0);

}  // namespace desktop
