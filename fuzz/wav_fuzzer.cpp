// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as a sound: the input is the file "sound.wav". What the reader gives, or the status with which it
// would end the program, is compared with what a second, simple-minded parser finds in the same bytes.
#include <AL/al.h>
#include <dlfcn.h>
#include <fcntl.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "engine/wav_file.h"
#include "fuzz/fuzzer.h"

// ---- Surviving the reader ----
//
// The reader ends the program where it does not like a file. Here the end is a jump back to the input, past
// the reader's own tidying up: hence the file that it has opened is closed here. An exception would do that,
// but cannot leave exit, which the C library declares as one that throws none.

namespace {

std::jmp_buf back;
bool reading = false;
int ended_with = 0;           ///< the status; 0 while the reader goes on
std::FILE* opened = nullptr;  ///< the reader's file
int opened_as = -1;           ///< and its descriptor

bool IsOpen() {
    return opened_as >= 0 && fcntl(opened_as, F_GETFD) >= 0;
}

}  // namespace

/// Stands before the C library's: jumps out of the reader. Whoever else calls it ends the fuzzer as usual.
extern "C" void exit(int status) noexcept {
    if (!reading) fuzz::EndAsUsual(status);
    ended_with = status;
    std::longjmp(back, 1);
}

/// Stands before the C library's: notes the reader's file. Serves libFuzzer, too.
extern "C" std::FILE* fdopen(int descriptor, const char* mode) noexcept {
    using Function = std::FILE*(int, const char*);
    static auto* const of_the_library = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "fdopen"));
    std::FILE* file = of_the_library(descriptor, mode);
    if (!reading) return file;
    fuzz::Check(opened == nullptr, "the file is opened once");
    opened = file;
    opened_as = descriptor;
    return file;
}

namespace {

using fuzz::Check;

constexpr char kFile[] = "sound.wav";

// ---- What the reader gives ----

/// The reader's outputs, at first values that it never gives.
struct Outputs {
    int format = -1;
    void* data = nullptr;
    int size = -1;
    int freq = -1;
    double duration = -1;
    int returned = -1;
};

/// Reads the file; returns the status with which the program would have ended, 0 for none.
int Read(Outputs& out) {
    opened = nullptr;
    opened_as = -1;
    ended_with = 0;
    reading = true;
    if (setjmp(back) == 0) {
        out.returned = LoadWAVFile(kFile, &out.format, &out.data, &out.size, &out.freq, &out.duration);
    }
    reading = false;
    Check(ended_with != 0 || !IsOpen(), "a file that was read is closed");
    if (IsOpen()) std::fclose(opened);
    return ended_with;
}

// ---- What it has to give ----

/// Returns the little-endian number at a place; bytes beyond the end count as 0.
std::uint64_t At(std::string_view bytes, std::size_t place, std::size_t count) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < count && place + i < bytes.size(); ++i) {
        number |= std::uint64_t{static_cast<unsigned char>(bytes[place + i])} << (8 * i);
    }
    return number;
}

struct Chunk {
    std::string_view id;
    std::uint64_t says;      ///< bytes
    std::string_view bytes;  ///< those of them that are there
};

/// Returns all the chunks of a WAVE file.
std::vector<Chunk> Chunks(std::string_view file) {
    std::vector<Chunk> chunks;
    std::uint64_t place = 12;
    while (place + 8 <= file.size()) {
        const std::uint64_t says = At(file, place + 4, 4);
        chunks.push_back({file.substr(place, 4), says, file.substr(place + 8, says)});
        place += 8 + says + says % 2;
    }
    return chunks;
}

/// Returns the first chunk of a name with so many bytes in the file, or null.
const Chunk* Find(const std::vector<Chunk>& chunks, std::string_view id, std::size_t least) {
    const auto found = std::find_if(chunks.begin(), chunks.end(), [&](const Chunk& chunk) {
        return chunk.id == id && chunk.bytes.size() >= least;
    });
    return found == chunks.end() ? nullptr : &*found;
}

/// What is to be read, or the status, 1 .. 11, of why it cannot.
struct Expected {
    int status = 0;
    int format = 0;
    std::uint64_t rate = 0;
    std::uint64_t block = 0;
    std::string_view audio;
};

Expected Refusal(int status) {
    Expected refusal;
    refusal.status = status;
    return refusal;
}

Expected ExpectedOf(std::string_view file) {
    if (file.size() < 12 || file.substr(0, 4) != "RIFF" || file.substr(8, 4) != "WAVE") return Refusal(1);
    const std::vector<Chunk> chunks = Chunks(file);
    const Chunk* format = Find(chunks, "fmt ", 16);
    if (format == nullptr) return Refusal(2);
    const std::uint64_t plain_tag = At(format->bytes, 0, 2);
    const std::uint64_t tag = plain_tag == 0xFFFE ? At(format->bytes, 24, 2) : plain_tag;
    if (tag != 1 && tag != 3) return Refusal(3);
    const Chunk* audio = Find(chunks, "data", 0);
    if (audio == nullptr) return Refusal(4);
    const std::uint64_t rate = At(format->bytes, 4, 4);
    const std::uint64_t block = At(format->bytes, 12, 2);
    if (rate == 0 || block == 0) return Refusal(5);

    const std::uint64_t channels = At(format->bytes, 2, 2);
    const std::uint64_t bits = At(format->bytes, 14, 2);
    if (channels != 1 && channels != 2) return Refusal(8);
    if (bits != 8 && bits != 16) return Refusal(channels == 1 ? 6 : 7);
    if (audio->bytes.size() != audio->says) return Refusal(11);
    const int of_mono = bits == 8 ? AL_FORMAT_MONO8 : AL_FORMAT_MONO16;
    const int of_stereo = bits == 8 ? AL_FORMAT_STEREO8 : AL_FORMAT_STEREO16;
    return {0, channels == 1 ? of_mono : of_stereo, rate, block, audio->bytes};
}

// ---- Comparing ----

void CheckUntouched(const Outputs& out) {
    const Outputs fresh;
    Check(out.format == fresh.format && out.data == fresh.data && out.size == fresh.size &&
              out.freq == fresh.freq && out.duration == fresh.duration && out.returned == fresh.returned,
          "outputs are written only on success");
}

void CheckOutputs(const Outputs& out, const Expected& expected) {
    Check(out.returned == 1, "success is 1");
    Check(out.format == expected.format, "the format is that of the channels and bits");
    Check(out.freq == static_cast<int>(expected.rate), "the rate is the file's");
    Check(out.data != nullptr, "there is a block of bytes");
    Check(out.size >= 0 && std::string_view(static_cast<const char*>(out.data),
                                            static_cast<std::size_t>(out.size)) == expected.audio,
          "the bytes are those of the data chunk");
    const double frames = static_cast<double>(expected.audio.size()) / static_cast<double>(expected.block);
    const double duration = frames / static_cast<double>(expected.rate);
    Check(out.duration >= duration * (1 - 1e-12) && out.duration <= duration * (1 + 1e-12),
          "the duration is that of the blocks at the rate");
}

// ---- Seeds ----

std::string Number(std::uint64_t number, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i));
    return text;
}

std::string Piece(const std::string& id, const std::string& bytes) {
    return id + Number(bytes.size(), 4) + bytes + std::string(bytes.size() % 2, '\0');
}

std::string Format(unsigned tag, unsigned channels, unsigned rate, unsigned bits) {
    const unsigned block = channels * bits / 8;
    return Number(tag, 2) + Number(channels, 2) + Number(rate, 4) + Number(rate * block, 4) +
           Number(block, 2) + Number(bits, 2);
}

std::string Wave(const std::string& pieces) {
    return Piece("RIFF", "WAVE" + pieces);
}

std::string Sound(unsigned tag, unsigned channels, unsigned rate, unsigned bits) {
    return Wave(Piece("fmt ", Format(tag, channels, rate, bits)) + Piece("data", "abcdefgh"));
}

std::string Extensible(unsigned tag) {
    const std::string extension =
        Number(22, 2) + Number(16, 2) + Number(3, 4) + Number(tag, 2) + std::string(14, 'g');
    return Wave(Piece("fmt ", Format(0xFFFE, 2, 48000, 16) + extension) + Piece("data", "abcdefgh"));
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    const std::string format = Piece("fmt ", Format(1, 1, 44100, 16));
    const std::string audio = Piece("data", "abcdefgh");
    std::vector<std::string> seeds = {
        "",
        "RIFF",
        Piece("RIFX", "WAVE" + format + audio),
        Piece("RIFF", "AVI " + format + audio),
        Wave(""),
        Wave(audio),
        Wave(format),
        Wave(audio + format),
        Wave(Piece("JUNK", "odd") + format + Piece("LIST", "odd") + Piece("data", "odd") +
             Piece("id3 ", "x")),
        Wave(Piece("fmt ", "too short") + format + audio),
        Wave(format + Piece("data", "")),
        Wave(format + Piece("data", std::string(10000, 'x'))),
        Wave(format + "data" + Number(9, 4) + "abcdefgh"),           // one byte promised in vain
        Wave(format + "data" + Number(0xFFFFFFFF, 4) + "abcdefgh"),  // and four billion
        Wave("LIST" + Number(0xFFFFFFFF, 4) + format + audio),
        Extensible(1),
        Extensible(3),
        Extensible(0x55),
    };
    for (const unsigned channels : {0U, 1U, 2U, 6U}) {
        for (const unsigned bits : {8U, 16U, 24U}) seeds.push_back(Sound(1, channels, 44100, bits));
    }
    for (const unsigned tag : {2U, 3U, 0x55U, 0xFFFEU}) seeds.push_back(Sound(tag, 2, 44100, 32));
    seeds.push_back(Sound(1, 1, 0, 16));
    seeds.push_back(Sound(1, 1, 0xFFFFFFFF, 16));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::InOwnFolder here;
    fuzz::WriteFile(kFile, data, size);
    const Expected expected = ExpectedOf({reinterpret_cast<const char*>(data), size});

    Outputs out;
    const int status = Read(out);
    Check(status == expected.status, "the status is that of the first thing wrong");
    if (status == 0)
        CheckOutputs(out, expected);
    else
        CheckUntouched(out);
    std::free(out.data);
    return 0;
}
