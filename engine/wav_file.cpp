// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/wav_file.h"

#include <AL/al.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "engine/file.h"

namespace {

// Format tags.
constexpr std::uint32_t kLinearPcm = 1;
constexpr std::uint32_t kFloat = 3;  // IEEE 754 samples
constexpr std::uint32_t kExtensible = 0xFFFE;

constexpr std::size_t kFormatBytes = 16;      ///< length of a format chunk without extension
constexpr std::size_t kExtensibleBytes = 40;  ///< length of one with the extension of WAVE_FORMAT_EXTENSIBLE
constexpr std::size_t kSubFormat = 24;        ///< offset of the subformat, which begins with the tag

/// What a format chunk says.
struct Format {
    std::uint32_t tag, channels, rate, block, bits;
};

/// The position and length of the audio bytes.
struct Audio {
    long start;
    std::uint32_t bytes;
};

/// The chunks of a file; nothing for one that is missing.
struct Chunks {
    std::optional<Format> format;
    std::optional<Audio> audio;
};

/// Ends the program, after what is registered for its end.
[[noreturn]] void End(WaveStatus status) {
    std::exit(status);
}

// ---- Parts of a file ----

/// Returns the little-endian number of 2 or 4 bytes.
std::uint32_t Number(const unsigned char* bytes, int count) {
    std::uint32_t number = 0;
    for (int i = count - 1; i >= 0; --i) number = number << 8U | bytes[i];
    return number;
}

bool IsWave(std::FILE* file) {
    char head[12];
    return std::fread(head, sizeof head, 1, file) == 1 && std::memcmp(head, "RIFF", 4) == 0 &&
           std::memcmp(head + 8, "WAVE", 4) == 0;
}

/// Reads a format chunk of `bytes` bytes; nothing if it is too short.
std::optional<Format> ReadFormat(std::FILE* file, std::uint32_t bytes) {
    std::array<unsigned char, kExtensibleBytes> chunk = {};
    const std::size_t wanted = std::min<std::size_t>(bytes, chunk.size());
    const std::size_t got = std::fread(chunk.data(), 1, wanted, file);
    if (got < kFormatBytes) return std::nullopt;
    const auto field = [&](std::size_t at, int count) { return Number(chunk.data() + at, count); };
    Format format = {field(0, 2), field(2, 2), field(4, 4), field(12, 2), field(14, 2)};
    if (format.tag == kExtensible) format.tag = field(kSubFormat, 2);
    return format;
}

/// Finds the first format chunk and the first data chunk. A chunk of odd length is followed by a padding
/// byte.
Chunks FindChunks(std::FILE* file) {
    Chunks chunks;
    unsigned char head[8];
    while ((!chunks.format || !chunks.audio) && std::fread(head, sizeof head, 1, file) == 1) {
        const long start = std::ftell(file);
        const std::uint32_t bytes = Number(head + 4, 4);
        if (std::memcmp(head, "fmt ", 4) == 0 && !chunks.format) chunks.format = ReadFormat(file, bytes);
        if (std::memcmp(head, "data", 4) == 0 && !chunks.audio) chunks.audio = Audio{start, bytes};
        if (std::fseek(file, start + long{bytes} + long{bytes % 2}, SEEK_SET) != 0) break;
    }
    return chunks;
}

long Length(std::FILE* file) {
    return std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : 0;
}

// ---- OpenAL's format ----

/// Returns OpenAL's format for 8 or 16 bits; ends the program for any other depth.
int ByDepth(std::uint32_t bits, int format_8, int format_16, WaveStatus otherwise) {
    if (bits == 8) return format_8;
    if (bits == 16) return format_16;
    End(otherwise);
}

int OpenAlFormat(const Format& format) {
    switch (format.channels) {
        case 1:
            return ByDepth(format.bits, AL_FORMAT_MONO8, AL_FORMAT_MONO16, kBadMonoDepth);
        case 2:
            return ByDepth(format.bits, AL_FORMAT_STEREO8, AL_FORMAT_STEREO16, kBadStereoDepth);
        default:
            End(kBadChannels);
    }
}

/// Reads the audio bytes. A chunk that is longer than the file is rejected before anything is allocated.
void* ReadAudio(std::FILE* file, const Audio& audio) {
    if (audio.start + long{audio.bytes} > Length(file)) End(kFewerBytesThanSaid);
    void* bytes = std::malloc(std::max<std::size_t>(audio.bytes, 1));
    if (bytes == nullptr) End(kOutOfMemory);
    std::fseek(file, audio.start, SEEK_SET);
    const std::size_t got = std::fread(bytes, 1, audio.bytes, file);
    if (std::ferror(file) != 0) End(kReadFailed);
    if (got != audio.bytes) End(kFewerBytesThanSaid);
    return bytes;
}

}  // namespace

int LoadWAVFile(const char* path, int* format, void** data, int* size, int* freq, double* duration) {
    const File file = OpenRegularFile(path);
    if (file == nullptr || !IsWave(file.get())) End(kNotAWaveFile);
    const Chunks chunks = FindChunks(file.get());
    if (!chunks.format) End(kNoFormat);
    if (chunks.format->tag != kLinearPcm && chunks.format->tag != kFloat) End(kNotLinearPcm);
    if (!chunks.audio) End(kNoAudio);
    const double bytes_a_second = static_cast<double>(chunks.format->rate) * chunks.format->block;
    if (bytes_a_second == 0) End(kNoDuration);
    const int openal_format = OpenAlFormat(*chunks.format);

    *data = ReadAudio(file.get(), *chunks.audio);
    *freq = static_cast<int>(chunks.format->rate);
    *size = static_cast<int>(chunks.audio->bytes);
    *format = openal_format;
    *duration = chunks.audio->bytes / bytes_a_second;
    return 1;
}
