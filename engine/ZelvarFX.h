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
// Words must match exactly; white space is free. The fields of ZelvarParticlesFX say what the numbers mean.
#pragma once

#include <list>

#include "engine/ZelvarParticlesFX.h"

namespace ZFX {

/// Coordinates of the viewer; null until SetWatcher(). Squares do not turn to the viewer yet, so nothing
/// reads them.
extern const float* watcher_x;
extern const float* watcher_y;
extern const float* watcher_z;

/// Sets the viewer's coordinates. The pointers are kept: what they point to must outlive the effects.
void SetWatcher(const float* x, const float* y, const float* z);

}  // namespace ZFX

class ZelvarFX {
  public:
    /// Replaces the emitters by those of a file. Returns whether it is a regular file whose header was
    /// accepted; if not, the effect is unchanged. A block with a damaged texture line ends the reading; the
    /// blocks before it stay. Other damage leaves fields at their defaults. Missing texels are 0.
    ///
    /// A texture line counts as damaged if it does not match, or if its sizes are negative or too large for
    /// GL. Textures that announce more numbers than there are bytes left in the file may announce 4,000,000
    /// numbers together; the one that exceeds this counts as damaged too.
    ///
    /// Deliberate: the old emitters' textures are not deleted.
    bool load(const char* path);

    /// Updates and draws a frame of `dt` seconds at (x, y, z). These and `size` are in the units of the
    /// current coordinates; the emitters get half of `size`.
    void render(float x, float y, float z, float size, float dt);

    /// Restarts all emitters, without particles.
    void reset();

    std::list<ZelvarParticlesFX> emitters;  ///< in file order
};
