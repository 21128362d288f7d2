// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// One emitter of a particle effect: it spawns bursts of particles with random properties, moves them, fades
// them from a start to an end colour and draws each as a textured square.
//
// All of that happens in render(), once a frame. An emitter's parameters come from one block of an effect
// file (ZelvarFX.h). A parameter with a min and a max gives each particle, or each burst, a random value
// between these two; min may be the greater one. All randomness comes from the C library's rand(), called in
// a fixed order.
//
// A burst comes in the first frame after the delay and then every `spawn_time` seconds. Without `loop` there
// are no more bursts once `time_step` seconds have passed since the delay; living particles go on.
#pragma once

#include <list>

class ZelvarParticlesFX {
  public:
    struct Vector3d {
        /// Returns the Euclidean length.
        float length() const;

        /// Makes the length 1; a zero vector stays as it is.
        void normalize();

        float x = 0, y = 0, z = 0;
    };

    /// A particle: 17 floats.
    struct Particle {
        Vector3d position;     ///< units of the caller's coordinates
        Vector3d velocity;     ///< units a second
        float rotation;        ///< roll, degrees
        float speed;           ///< at birth, units a second
        float life;            ///< seconds left
        float life_total;      ///< seconds at birth
        float scale;           ///< half the edge of the square, units
        float color_start[3];  ///< red, green, blue at birth, 0 .. 255
        float color_end[3];    ///< the same at death
    };

    /// Updates and draws one frame of `dt` seconds at (x, y, z) of the current coordinates. `size` scales
    /// positions, speeds, accelerations and squares. Does nothing while inactive.
    void render(float x, float y, float z, float size, float dt);

    /// Removes all particles and restarts the timers, so that the delay comes first.
    void reset();

    /// Spawns one burst of spawn_count particles; `scale` is twice the size that render() was given.
    ///
    /// Each particle takes 16 random numbers.
    /// Deliberate: a particle that a full list drops takes its random numbers too.
    void spawn_particle(float scale);

    /// Draws a square with its middle at the origin; `half` is half its edge.
    /// Deliberate: the vertex array stays enabled.
    void render_particle(float half) const;

    /// Deliberate: changes nothing, so squares lie in the plane z = 0 of the current coordinates.
    void apply_billboard(float x, float y, float z) const;

    /// Returns the number of particles that are alive.
    int get_active_particles() const;

    /// Returns the number of particles that are dead but not yet removed.
    int get_inactive_particles() const;

    Vector3d origin;  ///< read by nothing
    int texture_width = 0, texture_height = 0;
    unsigned int texture = 0;       ///< GL's name; nothing deletes it
    int alpha_blend = 0;            ///< 0: the colours are added to what is there; else blended over it
    int random_rotation = 0;        ///< not 0: a new random roll every frame, so that squares flicker
    int loop = 1;                   ///< not 0: spawns for ever
    int particles_limit = 999;      ///< most particles at once, read as unsigned; never more than 100,000
    float next_spawn_time = 0.02F;  ///< seconds from the last burst to the next
    float spawn_time[2] = {0.02F, 0.02F};  ///< min and max of next_spawn_time
    int spawn_count = 1;                   ///< particles in the current burst, 1 .. 100,000
    int spawn_particles[2] = {1, 1};       ///< min and max of spawn_count
    float position[3] = {};                ///< of the emitter, as last given to render()
    float spawn_position[6] = {};          ///< min x, y, z, max x, y, z, in units of twice the scale
    float spawn_direction[6] = {};         ///< min x, y, z, max x, y, z; the direction is then normalised
    float particles_acceleration[3] = {};  ///< x, y, z, in units of the size a second squared
    float particles_rotation[2] = {};      ///< degrees
    float particles_speed[2] = {};         ///< units of the scale a second
    float particles_timelife[2] = {};      ///< seconds
    float particles_scale[2] = {1, 1};     ///< half the edge, in units of the scale
    float particles_color_start[6] = {255, 255, 255, 255, 255, 255};  ///< min r, g, b, max r, g, b
    float particles_color_end[6] = {255, 255, 255, 255, 255, 255};
    int billboarding = 3;        ///< from the file; not used yet
    int reserved_counter = 0;    ///< read by nothing
    bool active = false;         ///< set by the loader
    float time_delay = 0;        ///< seconds before anything shows
    float time_step = 0;         ///< seconds of spawning after the delay, if `loop` is 0
    float time_step_loaded = 0;  ///< read by nothing
    float spawn_timer = 0, delay_timer = 0, step_timer = 0;  ///< seconds
    bool first_spawn = true;        ///< the first frame after the delay bursts at once
    std::list<Particle> particles;  ///< oldest first

  private:
    bool IsBurstDue() const;
    void Burst(float size);
    void Draw(const Particle& particle) const;
};

/// Returns the value at `percent` per cent of the way from a to b: b / 100 * percent + a - a / 100 * percent.
float rate_interpole(float a, float b, float percent);

/// Returns how many per cent of the total a value is, 0 .. 100.
float get_rate(float value, float total);

/// Returns whether a particle has no life left.
bool dead_particle(const ZelvarParticlesFX::Particle& particle);

/// Returns the Euclidean distance of two points.
float Get3dDistance(float x1, float y1, float z1, float x2, float y2, float z2);
