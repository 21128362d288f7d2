// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The reader of sounds beside libsndfile: files that libsndfile writes give the bytes, the rate and the
// length that it reads back itself; and so do the program's own sounds.
#include <AL/al.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "engine/wav_file.h"
#include "tests/unit/temporary_folder.h"

namespace {

/// What a reader finds in a sound file.
struct Contents {
    int format = 0, rate = 0;
    double seconds = 0;
    std::string bytes;
};

Contents ByTheProgram(const std::string& path) {
    Contents found;
    void* data = nullptr;
    int size = 0;
    EXPECT_EQ(LoadWAVFile(path.c_str(), &found.format, &data, &size, &found.rate, &found.seconds), 1);
    const std::unique_ptr<void, void (*)(void*)> owned(data, std::free);
    found.bytes.assign(static_cast<const char*>(data), static_cast<std::size_t>(size));
    return found;
}

struct CloseSound {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, CloseSound>;

Contents ByLibsndfile(const std::string& path) {
    SF_INFO info = {};
    const SoundFile file(sf_open(path.c_str(), SFM_READ, &info));
    EXPECT_NE(file, nullptr) << path << ": " << sf_strerror(nullptr);
    Contents found;
    if (file == nullptr) return found;
    const bool bytes8 = (info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_U8;
    const bool mono = info.channels == 1;
    found.format = mono ? (bytes8 ? AL_FORMAT_MONO8 : AL_FORMAT_MONO16)
                        : (bytes8 ? AL_FORMAT_STEREO8 : AL_FORMAT_STEREO16);
    found.rate = info.samplerate;
    found.seconds = static_cast<double>(info.frames) / info.samplerate;
    found.bytes.resize(static_cast<std::size_t>(info.frames * info.channels * (bytes8 ? 1 : 2)));
    const sf_count_t size = std::ssize(found.bytes);
    EXPECT_EQ(sf_read_raw(file.get(), found.bytes.data(), size), size);
    return found;
}

void ExpectSame(const std::string& path) {
    const Contents ours = ByTheProgram(path);
    const Contents theirs = ByLibsndfile(path);
    EXPECT_EQ(ours.format, theirs.format) << path;
    EXPECT_EQ(ours.rate, theirs.rate) << path;
    EXPECT_DOUBLE_EQ(ours.seconds, theirs.seconds) << path;
    EXPECT_TRUE(ours.bytes == theirs.bytes)
        << path << ": " << ours.bytes.size() << " and " << theirs.bytes.size();
}

/// A kind of file, as libsndfile names it.
struct SoundKind {
    const char* name;
    int format;
    int channels;
    int ends_with = 0;  ///< the status with which the program ends; 0 for a kind that it plays
};

std::ostream& operator<<(std::ostream& out, const SoundKind& kind) {
    return out << kind.name;
}

/// Writes "sound.wav", with a chunk of texts before or after the samples.
void Write(const SoundKind& kind, int rate, sf_count_t frames, std::mt19937& random) {
    SF_INFO info = {};
    info.samplerate = rate;
    info.channels = kind.channels;
    info.format = kind.format;
    const SoundFile file(sf_open("sound.wav", SFM_WRITE, &info));
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    if (frames % 2 == 0) sf_set_string(file.get(), SF_STR_TITLE, "una civetta");
    std::vector<short> samples(static_cast<std::size_t>(frames * kind.channels));
    for (short& sample : samples) sample = static_cast<short>(random());
    ASSERT_EQ(sf_writef_short(file.get(), samples.data(), frames), frames);
    if (frames % 3 == 0) sf_set_string(file.get(), SF_STR_COMMENT, "notturna");
}

class SoundsOfTheWorld : public testing::TestWithParam<SoundKind> {
    TemporaryFolder folder_;
};

using PlayedSounds = SoundsOfTheWorld;
using RefusedSounds = SoundsOfTheWorld;

TEST_P(PlayedSounds, HaveTheBytesRateAndLengthThatLibsndfileFinds) {
    std::mt19937 random(17);
    for (int i = 0; i < 60; ++i) {
        const int rate = std::uniform_int_distribution<int>(1, 192'000)(random);
        const auto frames = std::uniform_int_distribution<sf_count_t>(1, 3000)(random);
        ASSERT_NO_FATAL_FAILURE(Write(GetParam(), rate, frames, random));
        ExpectSame("sound.wav");
    }
}

TEST_P(RefusedSounds, EndTheProgramWithTheirStatus) {
    std::mt19937 random(17);
    ASSERT_NO_FATAL_FAILURE(Write(GetParam(), 22'050, 1000, random));
    SF_INFO info = {};
    ASSERT_NE(SoundFile(sf_open("sound.wav", SFM_READ, &info)), nullptr) << "it is a good file";

    EXPECT_EXIT(ByTheProgram("sound.wav"), testing::ExitedWithCode(GetParam().ends_with), "");
}

constexpr int kPlain = SF_FORMAT_WAV;
constexpr int kExtensible = SF_FORMAT_WAVEX;

INSTANTIATE_TEST_SUITE_P(Of, PlayedSounds,
                         testing::Values(SoundKind{"Mono8", kPlain | SF_FORMAT_PCM_U8, 1},
                                         SoundKind{"Mono16", kPlain | SF_FORMAT_PCM_16, 1},
                                         SoundKind{"Stereo8", kPlain | SF_FORMAT_PCM_U8, 2},
                                         SoundKind{"Stereo16", kPlain | SF_FORMAT_PCM_16, 2},
                                         SoundKind{"ExtensibleMono8", kExtensible | SF_FORMAT_PCM_U8, 1},
                                         SoundKind{"ExtensibleMono16", kExtensible | SF_FORMAT_PCM_16, 1},
                                         SoundKind{"ExtensibleStereo8", kExtensible | SF_FORMAT_PCM_U8, 2},
                                         SoundKind{"ExtensibleStereo16", kExtensible | SF_FORMAT_PCM_16, 2}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Of, RefusedSounds,
    testing::Values(SoundKind{"Mono24", kPlain | SF_FORMAT_PCM_24, 1, kBadMonoDepth},
                    SoundKind{"Stereo32", kPlain | SF_FORMAT_PCM_32, 2, kBadStereoDepth},
                    SoundKind{"MonoFloat", kPlain | SF_FORMAT_FLOAT, 1, kBadMonoDepth},
                    SoundKind{"StereoDouble", kPlain | SF_FORMAT_DOUBLE, 2, kBadStereoDepth},
                    SoundKind{"ExtensibleStereoFloat", kExtensible | SF_FORMAT_FLOAT, 2, kBadStereoDepth},
                    SoundKind{"ThreeChannels", kPlain | SF_FORMAT_PCM_16, 3, kBadChannels},
                    SoundKind{"MuLaw", kPlain | SF_FORMAT_ULAW, 1, kNotLinearPcm},
                    SoundKind{"ALaw", kPlain | SF_FORMAT_ALAW, 2, kNotLinearPcm},
                    SoundKind{"ImaAdpcm", kPlain | SF_FORMAT_IMA_ADPCM, 1, kNotLinearPcm},
                    SoundKind{"MsAdpcm", kPlain | SF_FORMAT_MS_ADPCM, 2, kNotLinearPcm},
                    SoundKind{"BigEndian", SF_FORMAT_WAV | SF_FORMAT_PCM_16 | SF_ENDIAN_BIG, 1,
                              kNotAWaveFile},
                    SoundKind{"NoWave", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 1, kNotAWaveFile}),
    [](const auto& test) { return test.param.name; });

TEST(ProgramsSounds, HaveTheBytesRateAndLengthThatLibsndfileFinds) {
    int sounds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ULMARO_DATA)) {
        if (entry.path().extension() != ".wav") continue;
        ExpectSame(entry.path());
        ++sounds;
    }
    EXPECT_EQ(sounds, 7);
}

}  // namespace
