// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What can be measured of how a sound sounds: loudness, pitch, hoots and their tunes, the color of a voice,
// the pace of a laugh. The tests of the baked sounds and of the owl's voice ask these functions, which have a
// test of their own on sounds whose figures are known.
//
// Times are in seconds from the start of the sound, frequencies and pitches in Hz, levels in dB of full
// scale.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace sound {

constexpr int kRate = 44100;           // samples a second
constexpr std::size_t kHeader = 44;    // bytes before the samples of a plain WAVE file
constexpr std::size_t kFrameSize = 4;  // bytes of a left and a right sample

/// One channel of a sound, or the two as one; 1 is full scale.
using Samples = std::vector<double>;

/// A sound of two channels of the same length.
struct Stereo {
    Samples left;
    Samples right;
};

/// Reads a whole file; one that is not there reads as empty.
std::string Bytes(const std::filesystem::path& file);

/// Returns the little-endian number of `size` bytes at `place`; throws where there are none.
unsigned Number(const std::string& bytes, std::size_t place, std::size_t size);

/// Reads a plain WAVE file of 16 bits, two channels and 44.1 kHz. One that has no samples gives a second of
/// silence, which no test takes for a sound.
Stereo Read(const std::filesystem::path& file);

/// Returns the mean of the two channels: the owl's voice, which is in the middle, and half the trees.
Samples Middle(const Stereo& sound);

/// Returns the sample's number at a time.
std::size_t At(double time);

/// Returns the samples from `begin` up to `end`, or as many of them as there are.
Samples Part(const Samples& samples, double begin, double end);

// ---- Levels ----

double Decibels(double power);

/// Returns the mean power of `count` samples from `begin` on.
double Power(const Samples& samples, std::size_t begin, std::size_t count);

/// Returns the mean power of all samples in dB.
double Level(const Samples& samples);

/// Returns the largest magnitude from `begin` up to `end`.
double Peak(const Samples& samples, double begin = 0, double end = 1000);

/// Loudness after ITU-R BS.1770-4 in LUFS.
struct Loudness {
    double integrated;  ///< gated, so that the silence between hoots does not count
    double momentary;   ///< the loudest 400 ms
};

/// Measures the loudness of a sound; of one too short for it (0.4 s), minus infinity.
Loudness LoudnessOf(const Stereo& sound);

// ---- Filters ----

/// Returns what is above a frequency (Butterworth, 12 dB an octave, like a small closed loudspeaker).
Samples HighPassed(const Samples& samples, double hertz);

/// Returns what a laptop's speakers let through: both channels above 500 Hz.
Stereo OnALaptop(const Stereo& sound);

// ---- Hoots and tunes ----

/// The swelling of a sound: its RMS through a window of 40 ms (Hann), 200 values a second.
Samples Swell(const Samples& samples);
constexpr double kSwellRate = 200;

/// A swelling and sinking of the voice.
struct Hoot {
    double begin;    ///< where it swells fastest
    double loudest;  ///< where it is loudest
    double from;     ///< where it passes half its loudest on the way up,
    double to;       ///< and on the way down
    double level;    ///< the loudest's RMS
};

/// Returns the hoots: all tops of the swell that are louder than a share of the sound's loudest, with dips
/// below half their own loudness on both sides.
std::vector<Hoot> Hoots(const Samples& samples, double share);

/// Returns the pitch at the middle of 30 ms, or 0 where there is none between 180 and 800 Hz: that of the
/// shortest shift at which the sound is almost as alike to itself as at any.
double Pitch(const Samples& samples, double time);

/// Returns the pitches of a hoot at so many places from its `from` to its `to`; 0 where there is none.
std::vector<double> Tune(const Samples& samples, const Hoot& hoot, int places);

/// Returns the mean correlation of the tunes (the logarithms of the pitches) of every two hoots: 1 for hoots
/// that differ at most in key and range. Hoots without a pitch throughout are left out; with fewer than two
/// left, not a number.
double LikenessOfTunes(const Samples& samples, const std::vector<Hoot>& hoots);

/// Returns how far a pitch is from another in hundredths of a semitone.
double Cents(double hertz, double from);

/// Returns the note of equal temperament (A4 is 440 Hz) that is closest to a pitch.
double ClosestNote(double hertz);

// ---- Color and pace ----

/// Returns the magnitude of a sound at a frequency, through a Hann window over all of it.
double Magnitude(const Samples& samples, double hertz);

/// Returns the level of the n-th harmonic (1 is the fundamental itself) of a steady note, in dB: the largest
/// within 3 % of the fundamental.
double HarmonicLevel(const Samples& samples, double fundamental, int n);

/// Returns the mean frequency of a sound between 50 Hz and 8 kHz, each weighted by its power.
double Centroid(const Samples& samples);

/// Returns the share of the swell's changes (the power of its spectrum above 0 Hz) that is between two
/// frequencies.
double ShareOfModulation(const Samples& samples, double low, double high);

/// Returns how deeply what is above 2.5 kHz pulses with a frequency: 0 not at all, 1 as a raised cosine does.
double BreathPulse(const Samples& samples, double hertz);

}  // namespace sound
