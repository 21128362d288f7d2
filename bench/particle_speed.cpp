// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What a particle costs a frame, by the number of particles: it should not depend on it.
//
// One emitter for each number, all particles alive, no new ones. GL is replaced by functions that do nothing,
// so that only our own code counts. Prints nanoseconds a particle and frame; exits with 1 where a limit is
// missed.
//
// usage: particle_speed [ROUNDS]
#include <GL/gl.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/table.h"
#include "engine/ZelvarParticlesFX.h"

// ---- GL that does nothing ----

extern "C" {
void glBindTexture(GLenum, GLuint) {}
void glBlendFunc(GLenum, GLenum) {}
void glColor4ub(GLubyte, GLubyte, GLubyte, GLubyte) {}
void glDepthMask(GLboolean) {}
void glDisable(GLenum) {}
void glDisableClientState(GLenum) {}
void glDrawArrays(GLenum, GLint, GLsizei) {}
void glEnable(GLenum) {}
void glEnableClientState(GLenum) {}
void glPopMatrix() {}
void glPushMatrix() {}
void glRotatef(GLfloat, GLfloat, GLfloat, GLfloat) {}
void glTexCoordPointer(GLint, GLenum, GLsizei, const void*) {}
void glTranslatef(GLfloat, GLfloat, GLfloat) {}
void glVertexPointer(GLint, GLenum, GLsizei, const void*) {}
}

namespace {

constexpr double kLimit = 1.25;
constexpr std::array<int, 3> kNumbers = {100, 1'000, 10'000};
constexpr int kDrawn = 1'000'000;  ///< particles a turn
constexpr float kFrameSeconds = 0.001F;

/// Makes an emitter with so many particles that outlive the benchmark.
ZelvarParticlesFX Emitter(int number) {
    constexpr float kForever = 1e9F;
    ZelvarParticlesFX emitter;
    emitter.active = true;
    emitter.particles_limit = number;
    emitter.spawn_particles[0] = emitter.spawn_particles[1] = number;
    emitter.spawn_time[0] = emitter.spawn_time[1] = kForever;
    emitter.particles_timelife[0] = emitter.particles_timelife[1] = kForever;
    emitter.particles_speed[1] = 1;
    emitter.spawn_direction[4] = 1;
    emitter.particles_acceleration[1] = 0.1F;
    emitter.particles_rotation[1] = 360;
    emitter.render(0, 0, 0, 1, kFrameSeconds);
    return emitter;
}

/// Draws frames until so many particles were drawn. Returns nanoseconds a particle.
double Nanoseconds(ZelvarParticlesFX& emitter, int number) {
    using Nano = std::chrono::duration<double, std::nano>;
    const auto start = std::chrono::steady_clock::now();
    for (int drawn = 0; drawn < kDrawn; drawn += number) emitter.render(0, 0, 0, 1, kFrameSeconds);
    return Nano(std::chrono::steady_clock::now() - start).count() / kDrawn;
}

/// Prints how one column of times compares with another.
bool Print(const char* what, const std::vector<double>& times, const std::vector<double>& compared) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < times.size(); ++i) ratios.push_back(times[i] / compared[i]);
    return bench::PrintRow(what, bench::Median(times), bench::Median(compared), bench::Median(ratios), kLimit,
                           "ns");
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 31, 1);
    std::array<ZelvarParticlesFX, kNumbers.size()> emitters;
    std::array<std::vector<double>, kNumbers.size()> times;
    for (std::size_t i = 0; i < kNumbers.size(); ++i) {
        emitters[i] = Emitter(kNumbers[i]);
        if (emitters[i].get_active_particles() == kNumbers[i]) continue;
        std::fprintf(stderr, "particle_speed: the emitter has %d particles\n",
                     emitters[i].get_active_particles());
        return 2;
    }
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < kNumbers.size(); ++i) {
            times[i].push_back(Nanoseconds(emitters[i], kNumbers[i]));
        }
    }
    bool good = Print("a particle of 1,000 : of 100", times[1], times[0]);
    good &= Print("a particle of 10,000 : of 100", times[2], times[0]);
    good &= Print("a particle of 10,000 : of 1,000", times[2], times[1]);
    return good ? 0 : 1;
}
