// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/wav_file.h"

#include <AL/al.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/unit/limit_memory.h"
#include "tests/unit/little_endian.h"
#include "tests/unit/temporary_folder.h"

namespace {

// ---- Files by hand ----

/// The fields of a format chunk; at first 16-bit mono at 44100 frames a second.
struct Format {
    std::uint32_t tag = 1;
    std::uint32_t channels = 1;
    std::uint32_t rate = 44100;
    std::uint32_t block = 2;
    std::uint32_t bits = 16;
};

/// Returns a format chunk's 16 bytes. The bytes a second, which the reader has no use for, are nonsense.
std::string FormatBytes(const Format& format) {
    return Number(format.tag, 2) + Number(format.channels, 2) + Number(format.rate, 4) +
           Number(0xABCDEF01, 4) + Number(format.block, 2) + Number(format.bits, 2);
}

/// Returns the 40 bytes of a WAVE_FORMAT_EXTENSIBLE chunk whose real tag is that of the format.
std::string ExtensibleBytes(Format format) {
    const std::string rest_of_guid("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);
    const std::string tag = Number(format.tag, 2);
    const std::string valid_bits = Number(format.bits, 2);
    format.tag = 0xFFFE;
    return FormatBytes(format) + Number(22, 2) + valid_bits + Number(4, 4) + tag + rest_of_guid;
}

/// Returns a chunk that says another length than it has, without padding.
std::string ChunkThatSays(std::uint32_t length, const std::string& id, const std::string& bytes) {
    return id + Number(length, 4) + bytes;
}

/// Returns a chunk, padded if its length is odd. The padding is no zero, so that it cannot pass for one.
std::string Chunk(const std::string& id, const std::string& bytes) {
    const std::string padding(bytes.size() % 2, '\x7F');
    return ChunkThatSays(static_cast<std::uint32_t>(bytes.size()), id, bytes) + padding;
}

std::string FormatChunk(const Format& format = {}) {
    return Chunk("fmt ", FormatBytes(format));
}

/// Returns a WAVE file of these chunks, without padding after the last.
std::string Wave(const std::string& chunks) {
    return ChunkThatSays(static_cast<std::uint32_t>(4 + chunks.size()), "RIFF", "WAVE" + chunks);
}

const std::string kFourFrames = "\x01\x02\x03\x04\x05\x06\x07\xF8";

// ---- Reading ----

struct Free {
    void operator()(void* bytes) const { std::free(bytes); }
};

/// What the reader gives.
struct Outputs {
    int format = -1;
    void* data = nullptr;
    int size = -1;
    int freq = -1;
    double duration = -1;
};

int Load(Outputs& out, const std::string& path = "sound.wav") {
    return LoadWAVFile(path.c_str(), &out.format, &out.data, &out.size, &out.freq, &out.duration);
}

std::string Constant(int format) {
    switch (format) {
        case AL_FORMAT_MONO8:
            return "mono, 8 bits";
        case AL_FORMAT_MONO16:
            return "mono, 16 bits";
        case AL_FORMAT_STEREO8:
            return "stereo, 8 bits";
        case AL_FORMAT_STEREO16:
            return "stereo, 16 bits";
        default:
            return "none of OpenAL's formats";
    }
}

class WaveFileTest : public fakes::Test {
  protected:
    struct Sound {
        int returned = 0;
        std::string format;
        std::string audio;
        int freq = 0;
        double duration = 0;
    };

    /// Writes a file and reads it in this process: one that the reader should like.
    static Sound Read(const std::string& file) {
        WriteFile("sound.wav", file);
        return ReadFrom("sound.wav");
    }

    static Sound ReadFrom(const std::string& path) {
        Outputs out;
        const int returned = Load(out, path);
        const std::unique_ptr<void, Free> audio(out.data);
        EXPECT_NE(out.data, nullptr);
        return {returned, Constant(out.format),
                std::string(static_cast<const char*>(out.data), static_cast<std::size_t>(out.size)), out.freq,
                out.duration};
    }

    /// Reads the file "sound.wav" in a child process, which must end with that status and print nothing.
    static void ExpectEnd(int status, const std::string& what = "", const std::string& path = "sound.wav") {
        EXPECT_EXIT(LoadAndSay(path), testing::ExitedWithCode(status), "^$") << what;
    }

    static void ExpectEndOf(const std::string& file, int status, const std::string& what = "") {
        WriteFile("sound.wav", file);
        ExpectEnd(status, what);
    }

    TemporaryFolder folder_;

  private:
    /// Reads a file with what is printed on standard output sent to the standard error, unbuffered, where the
    /// test looks at it.
    static void LoadAndSay(const std::string& path) {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::setvbuf(stdout, nullptr, _IONBF, 0);
        Outputs out;
        Load(out, path);
        std::puts("The reader liked the file.");
        _exit(0);
    }
};

// ---- What it gives ----

TEST_F(WaveFileTest, StereoOf16BitsAt44100) {
    const Sound sound = Read(Wave(FormatChunk({1, 2, 44100, 4, 16}) + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "stereo, 16 bits");
    EXPECT_EQ(sound.audio, kFourFrames);
    EXPECT_EQ(sound.freq, 44100);
    EXPECT_DOUBLE_EQ(sound.duration, 2.0 / 44100);
}

TEST_F(WaveFileTest, MonoOf16BitsAt22050) {
    const Sound sound = Read(Wave(FormatChunk({1, 1, 22050, 2, 16}) + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "mono, 16 bits");
    EXPECT_EQ(sound.audio, kFourFrames);
    EXPECT_EQ(sound.freq, 22050);
    EXPECT_DOUBLE_EQ(sound.duration, 4.0 / 22050);
}

TEST_F(WaveFileTest, StereoOf8BitsAt8000) {
    const Sound sound = Read(Wave(FormatChunk({1, 2, 8000, 2, 8}) + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "stereo, 8 bits");
    EXPECT_EQ(sound.audio, kFourFrames);
    EXPECT_EQ(sound.freq, 8000);
    EXPECT_DOUBLE_EQ(sound.duration, 4.0 / 8000);
}

TEST_F(WaveFileTest, MonoOf8BitsAt96000) {
    const Sound sound = Read(Wave(FormatChunk({1, 1, 96000, 1, 8}) + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "mono, 8 bits");
    EXPECT_EQ(sound.audio, kFourFrames);
    EXPECT_EQ(sound.freq, 96000);
    EXPECT_DOUBLE_EQ(sound.duration, 8.0 / 96000);
}

TEST_F(WaveFileTest, EveryByteIsKeptAsItIs) {
    std::string audio;
    for (int i = 0; i < 100000; ++i) audio += static_cast<char>(i * 7 + i / 256);

    EXPECT_EQ(Read(Wave(FormatChunk() + Chunk("data", audio))).audio, audio);
}

TEST_F(WaveFileTest, TheDurationFollowsFromTheBlocksAndNotFromChannelsAndBits) {
    const Sound sound = Read(Wave(FormatChunk({1, 1, 1000, 4, 16}) + Chunk("data", kFourFrames)));

    EXPECT_DOUBLE_EQ(sound.duration, 0.002);
}

TEST_F(WaveFileTest, ADataChunkWithoutBytesIsASoundOfNoLength) {
    const Sound sound = Read(Wave(FormatChunk() + Chunk("data", "")));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.audio, "");
    EXPECT_EQ(sound.freq, 44100);
    EXPECT_EQ(sound.duration, 0);
}

TEST_F(WaveFileTest, LeavesNoFileOpen) {
    const auto open_files = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    const auto before = open_files();

    Read(Wave(FormatChunk() + Chunk("data", kFourFrames)));

    EXPECT_EQ(open_files(), before);
}

TEST_F(WaveFileTest, SaysNothingWhenAllIsWell) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();

    Read(Wave(FormatChunk() + Chunk("data", kFourFrames)));

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WaveFileTest, AsksNothingOfOpenAl) {
    Read(Wave(FormatChunk() + Chunk("data", kFourFrames)));

    EXPECT_EQ(fakes::Lines(), std::vector<std::string>{});
}

TEST_F(WaveFileTest, PathsAreRelativeOrAbsoluteAndUtf8) {
    const std::string name = "perch\xC3\xA9 no.wav";
    WriteFile(name, Wave(FormatChunk() + Chunk("data", kFourFrames)));

    EXPECT_EQ(ReadFrom(name).audio, kFourFrames);
    EXPECT_EQ(ReadFrom(folder_.Path() / name).audio, kFourFrames);
}

// ---- Chunks ----

TEST_F(WaveFileTest, OtherChunksAreSkippedWithTheirPadding) {
    const Sound sound =
        Read(Wave(Chunk("JUNK", "") + Chunk("LIST", "odd") + FormatChunk() + Chunk("fact", "even") +
                  Chunk("bext", "odd, too.") + Chunk("data", kFourFrames) + Chunk("id3 ", "after")));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "mono, 16 bits");
    EXPECT_EQ(sound.audio, kFourFrames);
}

TEST_F(WaveFileTest, WhatLooksLikeAChunkInsideAnotherIsNone) {
    const std::string inside = FormatChunk({2, 6, 1, 1, 24}) + Chunk("data", "inside");

    const Sound sound = Read(Wave(Chunk("LIST", inside) + FormatChunk() + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.freq, 44100);
    EXPECT_EQ(sound.audio, kFourFrames);
}

TEST_F(WaveFileTest, ChunkNamesAreComparedInAllFourLetters) {
    const std::string others = Chunk("fmt2", FormatBytes({2, 6, 1, 1, 24})) + Chunk("Data", "other") +
                               Chunk("datb", "other") + Chunk("FMT ", FormatBytes({2, 6, 1, 1, 24}));

    const Sound sound = Read(Wave(others + FormatChunk() + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.audio, kFourFrames);
}

TEST_F(WaveFileTest, TheFormatMayComeAfterTheData) {
    const Sound sound =
        Read(Wave(Chunk("data", "odd") + Chunk("LIST", "odd") + FormatChunk({1, 1, 11025, 1, 8})));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "mono, 8 bits");
    EXPECT_EQ(sound.audio, "odd");
    EXPECT_EQ(sound.freq, 11025);
}

TEST_F(WaveFileTest, DataOfAnOddLengthMayEndTheFileWithoutPadding) {
    const Sound sound = Read(Wave(FormatChunk({1, 1, 44100, 1, 8}) + ChunkThatSays(3, "data", "odd")));

    EXPECT_EQ(sound.audio, "odd");
}

TEST_F(WaveFileTest, TheFirstFormatAndTheFirstDataCount) {
    const Sound sound = Read(Wave(FormatChunk() + FormatChunk({2, 6, 1, 1, 24}) + Chunk("data", "first!") +
                                  Chunk("data", "second")));

    EXPECT_EQ(sound.format, "mono, 16 bits");
    EXPECT_EQ(sound.freq, 44100);
    EXPECT_EQ(sound.audio, "first!");
}

TEST_F(WaveFileTest, TheFirstFormatAndTheFirstDataCountInTheOtherOrderToo) {
    const Sound sound = Read(Wave(Chunk("data", "first!") + Chunk("data", "second") + FormatChunk() +
                                  FormatChunk({2, 6, 1, 1, 24})));

    EXPECT_EQ(sound.freq, 44100);
    EXPECT_EQ(sound.audio, "first!");
}

TEST_F(WaveFileTest, AFormatChunkMayBeLongerThanItsFields) {
    const std::string longer = FormatBytes({}) + Number(0, 2);

    EXPECT_EQ(Read(Wave(Chunk("fmt ", longer) + Chunk("data", kFourFrames))).audio, kFourFrames);
}

TEST_F(WaveFileTest, AFormatChunkMayBeLongerThanAnExtension) {
    const std::string longer = ExtensibleBytes({}) + std::string(101, 'x');

    EXPECT_EQ(Read(Wave(Chunk("fmt ", longer) + Chunk("data", kFourFrames))).audio, kFourFrames);
}

TEST_F(WaveFileTest, TheContainersLengthIsNotExamined) {
    for (const std::uint32_t length : {0U, 4U, 0xFFFFFFFFU}) {
        const std::string file =
            ChunkThatSays(length, "RIFF", "WAVE" + FormatChunk() + Chunk("data", kFourFrames));
        EXPECT_EQ(Read(file).audio, kFourFrames) << length;
    }
}

// ---- Format tags ----

TEST_F(WaveFileTest, AnExtensibleFormatIsLookedThrough) {
    const Sound sound =
        Read(Wave(Chunk("fmt ", ExtensibleBytes({1, 2, 48000, 4, 16})) + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.returned, 1);
    EXPECT_EQ(sound.format, "stereo, 16 bits");
    EXPECT_EQ(sound.audio, kFourFrames);
    EXPECT_EQ(sound.freq, 48000);
    EXPECT_DOUBLE_EQ(sound.duration, 2.0 / 48000);
}

TEST_F(WaveFileTest, OnlyAnExtensibleFormatHasItsTagInTheExtension) {
    const std::string unused = std::string(8, '\0') + Number(0x55, 2) + std::string(14, '\0');

    const Sound sound = Read(Wave(Chunk("fmt ", FormatBytes({}) + unused) + Chunk("data", kFourFrames)));

    EXPECT_EQ(sound.audio, kFourFrames);
}

TEST_F(WaveFileTest, AnExtensibleFormatThatIsCompressedEndsWith3) {
    ExpectEndOf(Wave(Chunk("fmt ", ExtensibleBytes({0x55, 2, 48000, 4, 16})) + Chunk("data", kFourFrames)),
                3);
}

TEST_F(WaveFileTest, TheTagInTheExtensionHasTwoBytes) {
    for (const std::uint32_t tag : {0x0101U, 0x0301U, 0x0103U, 0x0100U}) {
        ExpectEndOf(Wave(Chunk("fmt ", ExtensibleBytes({tag, 2, 48000, 4, 16})) + Chunk("data", kFourFrames)),
                    3, "tag " + std::to_string(tag));
    }
}

TEST_F(WaveFileTest, AnExtensibleFormatWithoutItsExtensionEndsWith3) {
    ExpectEndOf(Wave(FormatChunk({0xFFFE, 2, 48000, 4, 16}) + Chunk("data", kFourFrames)), 3);
}

TEST_F(WaveFileTest, WhatFollowsAnExtensibleFormatWithoutItsExtensionIsNotTakenForIt) {
    // Where the extension would have its tag the audio begins, with that of linear PCM.
    const std::string audio = Number(1, 2) + kFourFrames;

    ExpectEndOf(Wave(FormatChunk({0xFFFE, 2, 48000, 4, 16}) + Chunk("data", audio)), 3);
}

TEST_F(WaveFileTest, CompressedFormatsEndWith3) {
    for (const std::uint32_t tag : {0U, 2U, 6U, 7U, 0x11U, 0x55U, 0x0101U, 0x0301U, 0xFFFFU}) {
        ExpectEndOf(Wave(FormatChunk({tag, 1, 44100, 2, 16}) + Chunk("data", kFourFrames)), 3,
                    "tag " + std::to_string(tag));
    }
}

TEST_F(WaveFileTest, FloatingPointIsLinearPcmAndEndsByItsDepth) {
    const std::string audio = Chunk("data", kFourFrames);
    ExpectEndOf(Wave(FormatChunk({3, 1, 44100, 4, 32}) + audio), 6);
    ExpectEndOf(Wave(FormatChunk({3, 2, 44100, 8, 32}) + audio), 7);
    ExpectEndOf(Wave(FormatChunk({3, 6, 44100, 24, 32}) + audio), 8);
    ExpectEndOf(Wave(Chunk("fmt ", ExtensibleBytes({3, 1, 44100, 4, 32})) + audio), 6);
}

// ---- Status 1: no WAVE file ----

TEST_F(WaveFileTest, AMissingFileEndsWith1) {
    ExpectEnd(1);
    ExpectEnd(1, "no path", "");
    ExpectEnd(1, "in a folder that is not there", "missing/sound.wav");
}

TEST_F(WaveFileTest, AFolderEndsWith1) {
    std::filesystem::create_directory("sound.wav");

    ExpectEnd(1);
    ExpectEnd(1, "a path with a slash at its end", "sound.wav/");
}

TEST_F(WaveFileTest, ANamedPipeOrADeviceEndsWith1WithoutWaiting) {
    ASSERT_EQ(mkfifo("pipe", S_IRUSR | S_IWUSR), 0);
    std::filesystem::create_symlink("pipe", "link");
    for (const std::string path : {"pipe", "link", "/dev/zero", "/dev/null"}) {
        EXPECT_EXIT(
            {
                alarm(20);  // ends a process that waits
                Outputs out;
                Load(out, path);
            },
            testing::ExitedWithCode(1), "^$")
            << path;
    }
}

TEST_F(WaveFileTest, ALinkToASoundIsASound) {
    WriteFile("kept.wav", Wave(FormatChunk() + Chunk("data", kFourFrames)));
    std::filesystem::create_symlink("kept.wav", "sound.wav");

    EXPECT_EQ(ReadFrom("sound.wav").audio, kFourFrames);
}

TEST_F(WaveFileTest, AnEmptyFileEndsWith1) {
    ExpectEndOf("", 1);
}

TEST_F(WaveFileTest, OtherContainersEndWith1) {
    const std::string chunks = FormatChunk() + Chunk("data", kFourFrames);
    ExpectEndOf(Chunk("RIFX", "WAVE" + chunks), 1, "big-endian");
    ExpectEndOf(Chunk("RIFF", "AVI " + chunks), 1, "a film");
    ExpectEndOf(Chunk("RIFF", chunks), 1, "RIFF without a kind");
    ExpectEndOf(Chunk("RIFF", "wave" + chunks), 1, "small letters");
    ExpectEndOf(Chunk("riff", "WAVE" + chunks), 1, "small letters");
    ExpectEndOf(Chunk("RF64", "WAVE" + chunks), 1, "64 bits");
    ExpectEndOf(chunks, 1, "no container");
    ExpectEndOf(" " + Wave(chunks), 1, "a space before all");
    ExpectEndOf("Un file di testo, e nessun suono.\n", 1, "text");
}

// ---- Statuses 2, 4, 5: what a file lacks ----

TEST_F(WaveFileTest, AFileWithoutFormatEndsWith2) {
    ExpectEndOf(Wave(Chunk("data", kFourFrames)), 2);
    ExpectEndOf(Wave(""), 2, "no chunk at all");
    ExpectEndOf(Wave(Chunk("LIST", "odd")), 2, "none of interest");
}

TEST_F(WaveFileTest, AFormatOfLessThan16BytesEndsWith2) {
    for (std::size_t length = 0; length < 16; ++length) {
        const std::string part = FormatBytes({}).substr(0, length);
        ExpectEndOf(Wave(Chunk("fmt ", part) + Chunk("data", kFourFrames)), 2, std::to_string(length));
    }
}

TEST_F(WaveFileTest, AFileWithoutDataEndsWith4) {
    ExpectEndOf(Wave(FormatChunk()), 4);
    ExpectEndOf(Wave(FormatChunk() + Chunk("LIST", "odd") + Chunk("fact", "even")), 4, "other chunks");
    ExpectEndOf(Wave(FormatChunk() + ChunkThatSays(0xFFFFFFFF, "LIST", Chunk("data", kFourFrames))), 4,
                "a chunk before it that is longer than the file");
}

TEST_F(WaveFileTest, ARateOrBlockOfZeroEndsWith5) {
    ExpectEndOf(Wave(FormatChunk({1, 1, 0, 2, 16}) + Chunk("data", kFourFrames)), 5, "rate");
    ExpectEndOf(Wave(FormatChunk({1, 1, 44100, 0, 16}) + Chunk("data", kFourFrames)), 5, "block");
    ExpectEndOf(Wave(FormatChunk({1, 1, 44100, 0, 16}) + Chunk("data", "")), 5, "block, no bytes");
}

// ---- Statuses 6, 7, 8: what OpenAL has no format for ----

TEST_F(WaveFileTest, MonoOfOtherThan8Or16BitsEndsWith6) {
    for (const std::uint32_t bits : {0U, 1U, 4U, 7U, 9U, 12U, 15U, 17U, 24U, 32U, 64U, 0x0808U, 0x1010U}) {
        ExpectEndOf(Wave(FormatChunk({1, 1, 44100, 3, bits}) + Chunk("data", kFourFrames)), 6,
                    std::to_string(bits));
    }
}

TEST_F(WaveFileTest, StereoOfOtherThan8Or16BitsEndsWith7) {
    for (const std::uint32_t bits : {0U, 1U, 4U, 7U, 9U, 12U, 15U, 17U, 24U, 32U, 64U, 0x0808U, 0x1010U}) {
        ExpectEndOf(Wave(FormatChunk({1, 2, 44100, 6, bits}) + Chunk("data", kFourFrames)), 7,
                    std::to_string(bits));
    }
}

TEST_F(WaveFileTest, NeitherMonoNorStereoEndsWith8) {
    for (const std::uint32_t channels : {0U, 3U, 4U, 6U, 8U, 0x0101U, 0x0202U, 0xFFFFU}) {
        ExpectEndOf(Wave(FormatChunk({1, channels, 44100, 12, 16}) + Chunk("data", kFourFrames)), 8,
                    std::to_string(channels));
    }
    ExpectEndOf(Wave(FormatChunk({1, 6, 44100, 18, 24}) + Chunk("data", kFourFrames)), 8, "of 24 bits");
}

// ---- Statuses 9, 10, 11: reading ----

#ifndef __SANITIZE_ADDRESS__  // which ends the process itself where memory is short

TEST_F(WaveFileTest, MoreAudioThanThereIsMemoryForEndsWith9) {
    WriteFile("sound.wav", Wave(FormatChunk() + ChunkThatSays(0x7FFFFFFE, "data", "")));
    std::filesystem::resize_file("sound.wav", 44 + 0x7FFFFFFEULL);  // with a hole: takes no place

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte);
            Outputs out;
            Load(out);
        },
        testing::ExitedWithCode(9), "^$");
}

#endif

/// Has the system refuse every read of more than a megabyte with an input/output error, as a broken device
/// would, for the rest of the process. Only the audio bytes are read in one piece of that size.
void FailLongReads() {
    constexpr std::uint32_t kMegabyte = 1U << 20U;
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_read, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),  // how many bytes
        BPF_JUMP(BPF_JMP | BPF_JGT | BPF_K, kMegabyte, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EIO),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program = {static_cast<unsigned short>(std::size(filter)), filter};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) std::abort();
    if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) std::abort();
}

TEST_F(WaveFileTest, AFailureOfTheDeviceWhileTheAudioIsReadEndsWith10) {
    WriteFile("sound.wav", Wave(FormatChunk() + Chunk("data", std::string(4U << 20U, 'x'))));

    EXPECT_EXIT(
        {
            FailLongReads();
            Outputs out;
            Load(out);
        },
        testing::ExitedWithCode(10), "^$");
}

TEST_F(WaveFileTest, ADataChunkLongerThanTheFileEndsWith11) {
    ExpectEndOf(Wave(FormatChunk() + ChunkThatSays(9, "data", kFourFrames)), 11, "by a byte");
    ExpectEndOf(Wave(FormatChunk() + ChunkThatSays(2, "data", "")), 11, "by all");
    ExpectEndOf(Wave(FormatChunk() + ChunkThatSays(0x7FFFFFFF, "data", kFourFrames)), 11, "by 2 GB");
    ExpectEndOf(Wave(FormatChunk() + ChunkThatSays(0x80000000, "data", kFourFrames)), 11, "as a negative");
    ExpectEndOf(Wave(FormatChunk() + ChunkThatSays(0xFFFFFFFF, "data", kFourFrames)), 11, "by 4 GB");
}

#ifndef __SANITIZE_ADDRESS__  // as above

TEST_F(WaveFileTest, ADataChunkLongerThanTheFileIsToldWithoutAskingForItsMemory) {
    WriteFile("sound.wav", Wave(FormatChunk() + ChunkThatSays(0xFFFFFFFE, "data", kFourFrames)));

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte);
            Outputs out;
            Load(out);
        },
        testing::ExitedWithCode(11), "^$");
}

#endif

// ---- Several things wrong at once ----

TEST_F(WaveFileTest, TheFirstOfSeveralFaultsIsTheStatus) {
    const std::string too_long = ChunkThatSays(100, "data", kFourFrames);

    ExpectEndOf(Chunk("RIFX", "WAVE"), 1, "no WAVE file, no format, no data");
    ExpectEndOf(Wave(Chunk("fmt ", FormatBytes({2, 6, 0, 0, 24}).substr(0, 15))), 2, "no format, no data");
    ExpectEndOf(Wave(too_long), 2, "no format, data too long");
    ExpectEndOf(Wave(FormatChunk({2, 6, 0, 0, 24})), 3, "compressed, no data, no rate, 6 channels");
    ExpectEndOf(Wave(FormatChunk({2, 1, 0, 0, 24}) + too_long), 3, "compressed, no rate, 24 bits, too long");
    ExpectEndOf(Wave(FormatChunk({1, 1, 0, 0, 24})), 4, "no data, no rate, 24 bits");
    ExpectEndOf(Wave(FormatChunk({1, 6, 44100, 18, 24})), 4, "no data, 6 channels");
    ExpectEndOf(Wave(FormatChunk({1, 1, 0, 3, 24}) + too_long), 5, "no rate, 24 bits, too long");
    ExpectEndOf(Wave(FormatChunk({1, 6, 44100, 0, 24}) + too_long), 5, "no block, 6 channels, too long");
    ExpectEndOf(Wave(FormatChunk({1, 1, 44100, 3, 24}) + too_long), 6, "mono of 24 bits, too long");
    ExpectEndOf(Wave(FormatChunk({1, 2, 44100, 6, 24}) + too_long), 7, "stereo of 24 bits, too long");
    ExpectEndOf(Wave(FormatChunk({1, 6, 44100, 12, 16}) + too_long), 8, "6 channels, too long");
}

TEST_F(WaveFileTest, AFileCutAnywhereEndsWithTheStatusOfWhatItLacks) {
    constexpr std::size_t kFormat = 12;  // where the format's and the data's chunk begin, and its bytes
    constexpr std::size_t kData = kFormat + 8 + 16;
    constexpr std::size_t kAudio = kData + 8;
    const std::string file = Wave(FormatChunk() + Chunk("data", kFourFrames));
    ASSERT_EQ(file.size(), kAudio + 8);

    for (std::size_t length = 0; length < file.size(); ++length) {
        const int status = length < kFormat ? 1 : length < kData ? 2 : length < kAudio ? 4 : 11;
        ExpectEndOf(file.substr(0, length), status, std::to_string(length) + " bytes");
    }
    EXPECT_EQ(Read(file).audio, kFourFrames);
}

TEST_F(WaveFileTest, AnExtensibleFileCutAnywhereEndsWithTheStatusOfWhatItLacks) {
    constexpr std::size_t kFormat = 12;
    constexpr std::size_t kFields = kFormat + 8 + 16;  // where the fields and the tag of the extension end
    constexpr std::size_t kTag = kFormat + 8 + 25;     // its second byte is 0
    constexpr std::size_t kAudio = kFormat + 8 + 40 + 8;
    const std::string file = Wave(Chunk("fmt ", ExtensibleBytes({})) + Chunk("data", kFourFrames));
    ASSERT_EQ(file.size(), kAudio + 8);

    for (std::size_t length = kFormat; length < file.size(); ++length) {
        const int status = length < kFields ? 2 : length < kTag ? 3 : length < kAudio ? 4 : 11;
        ExpectEndOf(file.substr(0, length), status, std::to_string(length) + " bytes");
    }
}

// ---- How it ends ----

/// What the reader is given to write to, where a handler can look at it.
Outputs kept;

/// Says whether the outputs are what they were, as the reader ends the process.
void SayWhatWasWritten() {
    const Outputs fresh;
    const bool untouched = kept.format == fresh.format && kept.data == fresh.data &&
                           kept.size == fresh.size && kept.freq == fresh.freq &&
                           kept.duration == fresh.duration;
    std::fputs(untouched ? "nothing written" : "something written", stderr);
}

TEST_F(WaveFileTest, OutputsAreWrittenOnlyOnSuccess) {
    WriteFile("sound.wav", Wave(FormatChunk() + ChunkThatSays(9, "data", kFourFrames)));

    EXPECT_EXIT(
        {
            std::atexit(SayWhatWasWritten);
            Load(kept);
        },
        testing::ExitedWithCode(11), "^nothing written$");
}

void SayThatExitRan() {
    std::fputs("exit was called", stderr);
}

TEST_F(WaveFileTest, WhatIsRegisteredForTheEndRunsWhateverTheStatus) {
    const std::string audio = Chunk("data", kFourFrames);
    const struct {
        int status;
        std::string file;
    } ends[] = {
        {1, ""},
        {2, Wave(audio)},
        {3, Wave(FormatChunk({2, 1, 44100, 2, 16}) + audio)},
        {4, Wave(FormatChunk())},
        {5, Wave(FormatChunk({1, 1, 0, 2, 16}) + audio)},
        {6, Wave(FormatChunk({1, 1, 44100, 3, 24}) + audio)},
        {7, Wave(FormatChunk({1, 2, 44100, 6, 24}) + audio)},
        {8, Wave(FormatChunk({1, 6, 44100, 12, 16}) + audio)},
        {11, Wave(FormatChunk() + ChunkThatSays(9, "data", kFourFrames))},
    };
    for (const auto& end : ends) {
        WriteFile("sound.wav", end.file);
        EXPECT_EXIT(
            {
                std::atexit(SayThatExitRan);
                Outputs out;
                Load(out);
            },
            testing::ExitedWithCode(end.status), "^exit was called$")
            << end.status;
    }
}

}  // namespace
