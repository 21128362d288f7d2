// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The reader of uncompressed WAVE files, the only sound files that the program plays.
//
// The sounds ship with the program, so the reader has no error return: a file that cannot be played ends the
// program at once with an exit status that says why, and without a word.
#pragma once

/// Exit statuses of LoadWAVFile().
enum WaveStatus {
    kNotAWaveFile = 1,        ///< missing, unreadable or no RIFF container of the kind WAVE
    kNoFormat = 2,            ///< no format chunk, or one that is too short
    kNotLinearPcm = 3,        ///< compressed
    kNoAudio = 4,             ///< no data chunk
    kNoDuration = 5,          ///< a sample rate or a block size of 0
    kBadMonoDepth = 6,        ///< mono with other than 8 or 16 bits
    kBadStereoDepth = 7,      ///< stereo with other than 8 or 16 bits
    kBadChannels = 8,         ///< neither mono nor stereo
    kOutOfMemory = 9,         ///< no memory for the audio bytes
    kReadFailed = 10,         ///< the device failed while the audio bytes were read
    kFewerBytesThanSaid = 11  ///< the data chunk is longer than the file
};

/// Reads a whole WAVE file into memory, ready for alBufferData. Returns 1, or ends the program with one of
/// the statuses above. Chunks other than format and data are skipped; WAVE_FORMAT_EXTENSIBLE is looked
/// through; floating point is linear PCM too, and fails by its depth.
///
/// path      a path, UTF-8
/// format    AL_FORMAT_MONO8, AL_FORMAT_MONO16, AL_FORMAT_STEREO8 or AL_FORMAT_STEREO16
/// data      the audio bytes as the file has them, interleaved frames, from malloc; the caller's to free
/// size      how many bytes
/// freq      sample rate, frames a second
/// duration  seconds: the bytes over those that a second takes
int LoadWAVFile(const char* path, int* format, void** data, int* size, int* freq, double* duration);
