// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/ZelvarFX.h"

#include <GL/gl.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <vector>

#include "engine/file.h"

namespace ZFX {

const float* watcher_x = nullptr;
const float* watcher_y = nullptr;
const float* watcher_z = nullptr;

void SetWatcher(const float* x, const float* y, const float* z) {
    watcher_x = x;
    watcher_y = y;
    watcher_z = z;
}

}  // namespace ZFX

namespace {

constexpr int kVersion = 2;

/// Limit of what a file's textures may announce beyond the file's end, in numbers (4 a texel) and over all
/// its blocks. Without it a file of a few bytes could make the program allocate and upload gigabytes.
constexpr long kMostMissingNumbers = 4'000'000;

/// A line of a block: its format, and the fields that its numbers are stored in.
struct Line {
    static constexpr int kMostNumbers = 6;

    Line(const char* text, int* numbers, int count) : format(text) { Fill(numbers, count); }
    Line(const char* text, float* numbers, int count) : format(text) { Fill(numbers, count); }

    const char* format;
    void* fields[kMostNumbers];

  private:
    /// Fills all pointers, as all are passed to fscanf(); it ignores those beyond the format's numbers.
    template <typename Number>
    void Fill(Number* numbers, int count) {
        for (int i = 0; i < kMostNumbers; ++i) fields[i] = numbers + std::min(i, count - 1);
    }
};

bool ReadHeader(std::FILE* file) {
    char magic[4] = {};
    if (std::fscanf(file, "%c%c%c", &magic[0], &magic[1], &magic[2]) != 3) return false;
    if (std::strcmp(magic, "ZFX") != 0) return false;
    int version = -1;
    return std::fscanf(file, " ver: %d\n", &version) == 1 && version == kVersion;
}

/// Returns the number of bytes from the current position of the file to its end.
long BytesLeft(std::FILE* file) {
    const long here = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    const long end = std::ftell(file);
    std::fseek(file, here, SEEK_SET);
    return end - here;
}

/// Reads the texture line. Returns false if it does not match, if GL would not take the sizes, or if
/// `missing` exceeds its limit. `missing` adds up the numbers of the textures that are larger than the rest
/// of the file.
bool ReadTextureLine(std::FILE* file, ZelvarParticlesFX& emitter, long& missing) {
    int& width = emitter.texture_width;
    int& height = emitter.texture_height;
    if (std::fscanf(file, "texture: %d %d %d ", &width, &height, &emitter.alpha_blend) != 3) return false;
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (width < 0 || height < 0 || width > largest || height > largest) return false;
    const long numbers = long{width} * height * 4;
    if (numbers > BytesLeft(file)) missing += numbers;
    return missing <= kMostMissingNumbers;
}

/// Returns whether the scan after a failed one can match. fscanf() consumes a sign before it fails: in "+-7"
/// it fails at the second sign, and the next scan reads -7. Only another sign or white space can begin a
/// number there; at any other character every further scan would fail at the same place.
bool NextScanCanMatch(std::FILE* file) {
    const int next = std::getc(file);
    std::ungetc(next, file);
    return next == '+' || next == '-' || std::isspace(next) != 0;
}

/// Reads the texels: the low byte of each number, and 0 for a number that is missing.
std::vector<unsigned char> ReadTexels(std::FILE* file, std::size_t count) {
    std::vector<unsigned char> texels(count + 1);  // never empty
    for (std::size_t i = 0; i < count; ++i) {
        int number = 0;
        const bool matched = std::fscanf(file, "%d ", &number) == 1;
        texels[i] = static_cast<unsigned char>(number & 0xFF);
        if (!matched && !NextScanCanMatch(file)) break;
    }
    return texels;
}

void UploadTexture(ZelvarParticlesFX& emitter, const std::vector<unsigned char>& texels) {
    glGenTextures(1, &emitter.texture);
    glBindTexture(GL_TEXTURE_2D, emitter.texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, emitter.texture_width, emitter.texture_height, 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, texels.data());
}

/// Reads the lines after the texels. Where a line does not match, the remaining fields keep their values and
/// the next line is tried from the position where the scan stopped.
void ReadLines(std::FILE* file, ZelvarParticlesFX& e) {
    const Line lines[] = {
        {"particles_limit: %d", &e.particles_limit, 1},
        {"\nspawn_time: %f %f", e.spawn_time, 2},
        {"\nspawn_particles: %d %d", e.spawn_particles, 2},
        {"\nspawn_position: %f %f %f %f %f %f", e.spawn_position, 6},
        {"\nspawn_direction: %f %f %f %f %f %f", e.spawn_direction, 6},
        {"\nparticles_acceleration: %f %f %f", e.particles_acceleration, 3},
        {"\nparticles_rotation: %f %f", e.particles_rotation, 2},
        {"\nparticle_random_rot: %d", &e.random_rotation, 1},
        {"\nparticles_speed: %f %f", e.particles_speed, 2},
        {"\nparticles_timelife: %f %f", e.particles_timelife, 2},
        {"\nparticles_scale: %f %f", e.particles_scale, 2},
        {"\nparticles_color_start: %f %f %f %f %f %f", e.particles_color_start, 6},
        {"\nparticles_color_end: %f %f %f %f %f %f", e.particles_color_end, 6},
        {"\nbillboarding: %d", &e.billboarding, 1},
        {"\ntime_delay: %f", &e.time_delay, 1},
        {"\ntime_step: %f", &e.time_step, 1},
        {"\nloop: %d\n", &e.loop, 1},
    };
    for (const Line& line : lines) {
        const auto& [a, b, c, d, f, g] = line.fields;
        if (std::fscanf(file, line.format, a, b, c, d, f, g) == EOF) return;
    }
}

/// Reads a block into a new emitter. Returns false if the texture line is damaged.
bool ReadEmitter(std::FILE* file, ZelvarParticlesFX& emitter, long& missing) {
    if (!ReadTextureLine(file, emitter, missing)) return false;
    const auto texels =
        static_cast<std::size_t>(emitter.texture_width) * static_cast<std::size_t>(emitter.texture_height);
    UploadTexture(emitter, ReadTexels(file, texels * 4));
    ReadLines(file, emitter);
    emitter.time_step_loaded = emitter.time_step;
    emitter.active = true;
    return true;
}

}  // namespace

bool ZelvarFX::load(const char* path) {
    const File file = OpenRegularFile(path);
    if (file == nullptr || !ReadHeader(file.get())) return false;
    emitters.clear();
    long missing = 0;
    while (std::feof(file.get()) == 0) {
        if (ReadEmitter(file.get(), emitters.emplace_back(), missing)) continue;
        emitters.pop_back();
        break;
    }
    return true;
}

void ZelvarFX::render(float x, float y, float z, float size, float dt) {
    for (ZelvarParticlesFX& emitter : emitters) emitter.render(x, y, z, size * 0.5F, dt);
}

void ZelvarFX::reset() {
    for (ZelvarParticlesFX& emitter : emitters) emitter.reset();
}
