// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The reader of uncompressed WAVE files, the only sound files that the program plays.
//
// A WAVE file is a RIFF container: a list of chunks, each with a name, a length and its bytes. The layout:
//   https://learn.microsoft.com/en-us/windows/win32/xaudio2/resource-interchange-file-format--riff-
//   https://learn.microsoft.com/en-us/windows/win32/api/mmreg/ns-mmreg-waveformatextensible
//   https://www.rfc-editor.org/rfc/rfc2361 (the format tags)
//
// The sounds ship with the program. A file that cannot be played ends it by exit(); the status says why, and
// nothing is printed.
// Deliberate: there is no error return.
#pragma once

/// Exit statuses of LoadWAVFile().
enum WaveStatus {
    kNotAWaveFile = 1,        ///< missing, unreadable, no regular file, or no RIFF container of the type WAVE
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
/// the statuses above. Chunks other than format and data are skipped. For WAVE_FORMAT_EXTENSIBLE the tag of
/// the subformat counts. Floating-point samples pass as linear PCM, and then fail because of their 32 or 64
/// bits.
///
/// path      a path, UTF-8
/// format    AL_FORMAT_MONO8, AL_FORMAT_MONO16, AL_FORMAT_STEREO8 or AL_FORMAT_STEREO16
/// data      the audio bytes of the file, frames interleaved; allocated by malloc, freed by the caller
/// size      number of audio bytes
/// freq      sample rate, frames a second
/// duration  seconds: `size` divided by the bytes a second
int LoadWAVFile(const char* path, int* format, void** data, int* size, int* freq, double* duration);
