// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Particle effects: ordered lists of emitters (ZelvarParticlesFX.h), read from ".zfx" text files.
//
// A file begins with "ZFX ver: 2"; then come blocks, one for each emitter, up to its end:
//
//     texture: WIDTH HEIGHT BLEND         pixels; BLEND 0 adds colours, any other value blends them
//     R G B A R G B A ...                 WIDTH x HEIGHT texels, 0 .. 255 each, first row at t = 0
//     particles_limit: 40
//     spawn_time: 0.8 1.2                 and so on, in the order of the table in ZelvarFX.cpp
//
// The words must stand as they are; white space is free. The emitters' fields say what the numbers mean.
#pragma once

#include <list>

#include "engine/ZelvarParticlesFX.h"

namespace ZFX {

/// Where the effects are watched from; null until it is set. Nothing reads it yet: squares do not turn.
extern const float* watcher_x;
extern const float* watcher_y;
extern const float* watcher_z;

/// Sets from where effects are watched; the numbers must outlive the effects.
void SetWatcher(const float* x, const float* y, const float* z);

}  // namespace ZFX

class ZelvarFX {
  public:
    /// Replaces the emitters by those of a file. Returns whether its header was accepted; if not, the effect
    /// stays as it was. A block with a damaged texture line ends the reading, and what was read before stays;
    /// other damage leaves fields at their defaults. Missing texels are 0, but textures that the rest of the
    /// file cannot hold may have 4,000,000 numbers altogether: the one that goes beyond counts as damaged.
    /// The old emitters' textures are not deleted.
    bool load(const char* path);

    /// Updates and draws a frame of `dt` seconds at a place of the current frame; `size` in its units.
    void render(float x, float y, float z, float size, float dt);

    /// Starts all emitters again, without particles.
    void reset();

    std::list<ZelvarParticlesFX> emitters;  ///< in file order
};
