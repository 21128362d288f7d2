// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's two effect files, reduced to what shows in a test: one particle that stays where it is born,
// or moves to the right.
#pragma once

#include <fstream>
#include <string>

/// Writes an effect of one emitter into the current directory. Its particle is born at once, at the effect's
/// place, and lives for 100 seconds; its square is twice the emitter's size wide. `speed` is units of that a
/// second to the right. Its texture is `width` texels wide and one high.
inline void WriteEffect(const std::string& file, int width, int speed) {
    std::ofstream out(file);
    out << "ZFX ver: 2\ntexture: " << width << " 1 1\n";
    for (int i = 0; i < 4 * width; ++i) out << "255 ";
    out << "\nparticles_limit: 1\nspawn_time: 1000 1000\nspawn_particles: 1 1\n"
        << "spawn_position: 0 0 0 0 0 0\nspawn_direction: 1 0 0 1 0 0\nparticles_acceleration: 0 0 0\n"
        << "particles_rotation: 0 0\nparticle_random_rot: 0\nparticles_speed: " << speed << ' ' << speed
        << "\nparticles_timelife: 100 100\nparticles_scale: 1 1\n"
        << "particles_color_start: 255 255 255 255 255 255\nparticles_color_end: 255 255 255 255 255 255\n"
        << "billboarding: 0\ntime_delay: 0\ntime_step: 0\nloop: 1\n";
}
