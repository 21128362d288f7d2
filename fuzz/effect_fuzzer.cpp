// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as an effect: the input is the file "fuzz.zfx". It is loaded, drawn for some frames, started
// again and drawn once more.
#include <GL/gl.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ZelvarFX.h"
#include "fuzz/fuzzer.h"

// ---- The GL of the fuzzer ----
//
// Without a context GL answers nothing and takes nothing. These two stand before the library's: one lets
// textures through, so that texels are read, the other looks whether as many are handed over as it was told.

namespace {

/// Just enough that a texture may have more than 4,000,000 numbers.
constexpr GLint kLargest = 1024;

unsigned char last_texel = 0;

}  // namespace

extern "C" void glGetIntegerv(GLenum what, GLint* number) {
    if (what == GL_MAX_TEXTURE_SIZE) *number = kLargest;
}

extern "C" void glTexImage2D(GLenum /*target*/, GLint /*level*/, GLint /*internal_format*/, GLsizei width,
                             GLsizei height, GLint /*border*/, GLenum /*format*/, GLenum /*type*/,
                             const void* texels) {
    fuzz::Check(width >= 0 && height >= 0 && width <= kLargest && height <= kLargest, "GL takes the size");
    const auto size = std::size_t{4} * static_cast<unsigned int>(width) * static_cast<unsigned int>(height);
    if (size != 0) last_texel = static_cast<const volatile unsigned char*>(texels)[size - 1];
}

namespace {

using fuzz::Check;

constexpr char kFile[] = "fuzz.zfx";
constexpr char kBlock[] =
    "texture: 2 1 1 \n1 2 3 4 5 6 7 255 \nparticles_limit: 20\nspawn_time: 0.1 0.3\nspawn_particles: 1 3\n"
    "spawn_position: -1 -1 0 1 1 0\nspawn_direction: -1 1 0 1 2 0\nparticles_acceleration: 0 -1 0\n"
    "particles_rotation: 0 360\nparticle_random_rot: 0\nparticles_speed: 1 2\nparticles_timelife: 0.2 0.5\n"
    "particles_scale: 0.5 1\nparticles_color_start: 255 255 255 200 200 200\n"
    "particles_color_end: 0 0 0 20 20 20\nbillboarding: 3\ntime_delay: 0.1\ntime_step: 0.5\nloop: 1\n";

// ---- What loading must give ----

/// Returns a number as the library scans it: of any length, of which it keeps the low 32 bits.
int Number(const char* text, char** end) {
    return static_cast<int>(std::strtol(text, end, 10));
}

/// Returns whether a file begins with the letters "ZFX" and version 2.
bool HasHeader(const std::string& file) {
    constexpr char kWhite[] = " \t\n\v\f\r";
    if (file.compare(0, 3, "ZFX") != 0) return false;
    const std::size_t word = file.find_first_not_of(kWhite, 3);
    if (word == std::string::npos || file.compare(word, 4, "ver:") != 0) return false;
    return Number(file.c_str() + word + 4, nullptr) == 2;
}

// ---- How much may be drawn ----

/// Returns at most how many particles a frame may bring: a burst of 100,000 takes too long for most inputs.
long MostParticles(const std::string& file) {
    constexpr std::string_view kWord = "spawn_particles:";
    constexpr int kMostOfOne = 100'000;
    long most = 0;
    for (std::size_t at = file.find(kWord); at != std::string::npos; at = file.find(kWord, at + 1)) {
        const char* number = file.c_str() + at + kWord.size();
        for (int i = 0; i < 2; ++i) {
            char* end = nullptr;
            most += std::clamp(Number(number, &end), 0, kMostOfOne);
            number = end;
        }
    }
    return most;
}

void Draw(ZelvarFX& effect) {
    for (const float dt : {0.016F, 0.1F, 0.0F, 0.3F, 5.0F}) effect.render(1, 2, 3, 4, dt);
}

// ---- Seeds ----

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    Check(at != std::string::npos, "a seed has what is to be replaced");
    return text.replace(at, from.size(), to);
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    const std::string good = std::string("ZFX ver: 2\n") + kBlock;
    return {
        "",
        "ZF",
        "ZFX ver: 2\n",
        "ZFX ver: 3\n",
        "ZFY ver: 2\n",
        "ZFX ver:",
        "ZFXver:2",
        "ZFX ver: 4294967298\n",
        good,
        good + kBlock,
        good + "garbage",
        good.substr(0, 40),
        good.substr(0, good.size() / 2),
        Replaced(good, "2 1 1", "0 0 0"),
        Replaced(good, "2 1 1", "-2 1 1"),
        Replaced(good, "2 1 1", "1024 1024 0"),
        Replaced(good, "2 1 1", "40 40 0"),
        Replaced(good, "2 1 1", "2147483647 2147483647 0"),
        Replaced(good, "1 2 3 4 5", "- 2 -300 +-4 x"),
        Replaced(good, "spawn_time: 0.1 0.3\n", ""),
        Replaced(good, "spawn_particles: 1 3", "spawn_particles: 400 -2147483648"),
        Replaced(good, "spawn_particles: 1 3", "spawn_particles: 2147483647 2147483647"),
        Replaced(good, "particles_limit: 20", "particles_limit: -1"),
        Replaced(good, "particles_timelife: 0.2 0.5", "particles_timelife: nan 0"),
        Replaced(good, "particles_speed: 1 2", "particles_speed: 1e38 -inf"),
        Replaced(good, "particles_color_start: 255 255 255", "particles_color_start: 1e39 -300 nan"),
        Replaced(good, "particle_random_rot: 0", "particle_random_rot: 1"),
        Replaced(good, "loop: 1", "loop: 0"),
    };
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr long kMostDrawn = 500;
    const fuzz::InOwnFolder here;
    const std::string file(reinterpret_cast<const char*>(data), size);
    ZelvarFX effect;
    fuzz::WriteFile(kFile, data, size);

    Check(effect.load(kFile) == HasHeader(file), "an effect is loaded exactly if its header is right");
    if (MostParticles(file) <= kMostDrawn) {
        Draw(effect);
        effect.reset();
        Draw(effect);
    }
    return 0;
}
