// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/ZelvarParticlesFX.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

using Particle = ZelvarParticlesFX::Particle;
using Vector3d = ZelvarParticlesFX::Vector3d;

/// Limit of the particles in an emitter and in a burst, whatever its file says. A damaged file may ask for
/// billions, and the program would stand still.
constexpr float kMostParticles = 100'000;

/// Texture coordinates (u, v) of a square's two triangles, in the order of their vertices.
constexpr float plane_txtcoord_buffer[] = {0, 1, 0, 0, 1, 1, 1, 1, 1, 0, 0, 0};

// ---- Random numbers ----

/// Returns a random whole percentage, 0 .. 100.
float RandomPercent() {
    return static_cast<float>(std::rand() % 101);
}

/// Returns a random value between two ends, at a whole percentage of the way.
float RandomBetween(float min, float max) {
    return rate_interpole(min, max, RandomPercent());
}

float RandomBetween(const float (&ends)[2]) {
    return RandomBetween(ends[0], ends[1]);
}

/// Sets x, y, z or red, green, blue, in this order, each between its two ends.
void SetRandomTriple(const float (&ends)[6], float (&values)[3]) {
    for (int i = 0; i < 3; ++i) values[i] = RandomBetween(ends[i], ends[i + 3]);
}

/// Returns a random direction of length 1, or of length 0 if all components are 0.
Vector3d RandomDirection(const float (&ends)[6]) {
    float values[3];
    SetRandomTriple(ends, values);
    Vector3d direction;
    direction.x = values[0];
    direction.y = values[1];
    direction.z = values[2];
    direction.normalize();
    return direction;
}

/// Returns one coordinate of a new particle; `place` is the emitter's.
float RandomCoordinate(float min, float max, float scale, float place) {
    return RandomBetween(min, max) * scale * 2 + place;
}

// ---- Frame ----

/// Moves a particle by `dt` seconds. `size` scales the acceleration; the velocity was scaled at birth.
///
/// This is the semi-implicit Euler method: the velocity changes first, and the new velocity moves the
/// particle (https://en.wikipedia.org/wiki/Semi-implicit_Euler_method). The path depends a little on the
/// frame rate. From rest, after T seconds under an acceleration a, the way is
///
///     a T (T + dt) / 2    here
///     a T T / 2           exactly
///
/// so the error is a T dt / 2: at 60 frames a second a particle is half a frame ahead, which nobody sees. A
/// more exact method would cost more for each particle and gain nothing visible.
void Move(Particle& particle, const float (&acceleration)[3], float size, float dt) {
    particle.velocity.x += acceleration[0] * dt * size;
    particle.velocity.y += acceleration[1] * dt * size;
    particle.velocity.z += acceleration[2] * dt * size;
    particle.position.x += particle.velocity.x * dt;
    particle.position.y += particle.velocity.y * dt;
    particle.position.z += particle.velocity.z * dt;
    particle.life -= dt;
}

/// Returns the low byte of the number truncated to an integer. Returns 0 for NaN and from +-1e9 on, because
/// converting a float that does not fit the integer is undefined.
GLubyte LowByte(float value) {
    constexpr float kBound = 1e9F;
    if (!(std::fabs(value) < kBound)) return 0;
    return static_cast<GLubyte>(static_cast<std::int32_t>(value) & 0xFF);
}

/// Sets the colour for a particle: its start colour and opaque at birth, its end colour and transparent at
/// death.
void SetColor(const Particle& particle) {
    const float rate = get_rate(particle.life, particle.life_total);
    GLubyte color[3];
    for (int i = 0; i < 3; ++i) {
        color[i] = LowByte(rate_interpole(particle.color_end[i], particle.color_start[i], rate));
    }
    glColor4ub(color[0], color[1], color[2], LowByte(rate_interpole(0, 255, rate)));
}

void BeginParticles(int alpha_blend, unsigned int texture) {
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_SRC_ALPHA, alpha_blend == 0 ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA);
    glBindTexture(GL_TEXTURE_2D, texture);
}

void EndParticles() {
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

}  // namespace

// ---- Numbers ----

float rate_interpole(float a, float b, float percent) {
    return b / 100 * percent + a - a / 100 * percent;
}

float get_rate(float value, float total) {
    return std::max(std::min(value * 100 / total, 100.0F), 0.0F);
}

bool dead_particle(const Particle& particle) {
    return particle.life <= 0;
}

float Get3dDistance(float x1, float y1, float z1, float x2, float y2, float z2) {
    Vector3d way;
    way.x = x2 - x1;
    way.y = y2 - y1;
    way.z = z2 - z1;
    return way.length();
}

float ZelvarParticlesFX::Vector3d::length() const {
    return std::sqrt(x * x + y * y + z * z);
}

void ZelvarParticlesFX::Vector3d::normalize() {
    const float l = length();
    if (l == 0) return;
    x /= l;
    y /= l;
    z /= l;
}

// ---- The emitter ----

void ZelvarParticlesFX::render(float x, float y, float z, float size, float dt) {
    if (!active) return;
    position[0] = x;
    position[1] = y;
    position[2] = z;
    spawn_timer += dt;
    delay_timer += dt;
    if (delay_timer < time_delay) return;
    step_timer += dt;
    if (IsBurstDue()) Burst(size);

    BeginParticles(alpha_blend, texture);
    // Before they move: a particle that dies in this frame is still drawn once, fully transparent.
    particles.remove_if(dead_particle);
    for (Particle& particle : particles) {
        Move(particle, particles_acceleration, size, dt);
        Draw(particle);
    }
    EndParticles();
}

void ZelvarParticlesFX::reset() {
    particles.clear();
    spawn_timer = delay_timer = step_timer = 0;
    reserved_counter = 0;
    first_spawn = true;
}

bool ZelvarParticlesFX::IsBurstDue() const {
    const bool spawning = step_timer <= time_step || loop != 0;
    return spawning && (spawn_timer >= next_spawn_time || first_spawn);
}

void ZelvarParticlesFX::Burst(float size) {
    next_spawn_time = RandomBetween(spawn_time);
    const float count =
        RandomBetween(static_cast<float>(spawn_particles[0]), static_cast<float>(spawn_particles[1]));
    spawn_count = static_cast<int>(std::clamp(count, 1.0F, kMostParticles));
    spawn_timer = 0;
    first_spawn = false;
    spawn_particle(size * 2);
}

void ZelvarParticlesFX::spawn_particle(float scale) {
    const auto limit = std::min(static_cast<std::size_t>(static_cast<unsigned int>(particles_limit)),
                                static_cast<std::size_t>(kMostParticles));
    for (int i = 0; i < spawn_count; ++i) {
        Particle born;
        born.position.x = RandomCoordinate(spawn_position[0], spawn_position[3], scale, position[0]);
        born.position.y = RandomCoordinate(spawn_position[1], spawn_position[4], scale, position[1]);
        born.position.z = RandomCoordinate(spawn_position[2], spawn_position[5], scale, position[2]);
        born.rotation = RandomBetween(particles_rotation);
        const Vector3d direction = RandomDirection(spawn_direction);
        born.speed = RandomBetween(particles_speed) * scale;
        born.velocity.x = direction.x * born.speed;
        born.velocity.y = direction.y * born.speed;
        born.velocity.z = direction.z * born.speed;
        born.life = born.life_total = RandomBetween(particles_timelife);
        born.scale = RandomBetween(particles_scale) * scale;
        SetRandomTriple(particles_color_start, born.color_start);
        SetRandomTriple(particles_color_end, born.color_end);
        if (particles.size() < limit) particles.push_back(born);
    }
}

void ZelvarParticlesFX::Draw(const Particle& particle) const {
    const Vector3d& at = particle.position;
    glPushMatrix();
    glTranslatef(at.x, at.y, at.z);
    apply_billboard(at.x, at.y, at.z);
    glRotatef(random_rotation == 0 ? particle.rotation : static_cast<float>(std::rand() % 360), 0, 0, 1);
    SetColor(particle);
    render_particle(particle.scale);
    glColor4ub(255, 255, 255, 255);
    glPopMatrix();
}

void ZelvarParticlesFX::render_particle(float half) const {
    const float h = half;
    const float vertices[] = {-h, h, 0, -h, -h, 0, h, h, 0, h, h, 0, h, -h, 0, -h, -h, 0};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, vertices);
    glTexCoordPointer(2, GL_FLOAT, 0, plane_txtcoord_buffer);
    glDrawArrays(GL_TRIANGLES, 0, 6);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

void ZelvarParticlesFX::apply_billboard(float /*x*/, float /*y*/, float /*z*/) const {}

int ZelvarParticlesFX::get_active_particles() const {
    return static_cast<int>(std::count_if(particles.begin(), particles.end(),
                                          [](const Particle& particle) { return particle.life > 0; }));
}

int ZelvarParticlesFX::get_inactive_particles() const {
    return static_cast<int>(std::count_if(particles.begin(), particles.end(), dead_particle));
}
