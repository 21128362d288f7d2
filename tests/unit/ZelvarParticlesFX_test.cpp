// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: numbers, vectors, particles, a fresh emitter, a burst, a frame, when bursts come, limits, colours, a
// square, reset and copies, odd numbers, cost.
#include "engine/ZelvarParticlesFX.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <iterator>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/unit/nonfinite_floats.h"

namespace {

/// How often the whole test program has asked for memory.
std::size_t allocations = 0;

void* Allocate(std::size_t size) noexcept {
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

// Replaced to count. The program's code throws nothing, so that these do not either.
void* operator new(std::size_t size) {
    void* memory = Allocate(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}

namespace {

using Particle = ZelvarParticlesFX::Particle;
using Vector3d = ZelvarParticlesFX::Vector3d;
using Lines = std::vector<std::string>;

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

/// How many random numbers a burst takes for itself, and for each of its particles.
constexpr int kDrawsOfABurst = 2;
constexpr int kDrawsOfAParticle = 16;

/// Random numbers are 0 unless a test says otherwise, so that of each pair the first is drawn.
class ParticlesTest : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        fakes::world().rand_default = 0;
    }
};

/// Returns an emitter that bursts once in a long time, into one particle that lives for ten seconds.
ZelvarParticlesFX Emitter() {
    ZelvarParticlesFX emitter;
    emitter.active = true;
    emitter.texture = 7;
    std::fill(std::begin(emitter.spawn_time), std::end(emitter.spawn_time), 1000.0F);
    std::fill(std::begin(emitter.particles_timelife), std::end(emitter.particles_timelife), 10.0F);
    return emitter;
}

/// Returns an emitter of which every value that is drawn is the percent itself.
ZelvarParticlesFX PercentEmitter() {
    ZelvarParticlesFX emitter;
    emitter.active = true;
    for (float* pair : {emitter.spawn_time, emitter.particles_rotation, emitter.particles_speed,
                        emitter.particles_timelife, emitter.particles_scale}) {
        pair[0] = 0;
        pair[1] = 100;
    }
    for (float* six : {emitter.spawn_position, emitter.spawn_direction, emitter.particles_color_start,
                       emitter.particles_color_end}) {
        std::fill(six, six + 3, 0.0F);
        std::fill(six + 3, six + 6, 100.0F);
    }
    emitter.spawn_particles[0] = 0;
    emitter.spawn_particles[1] = 100;
    return emitter;
}

template <std::size_t kSize>
void SetAll(float (&values)[kSize], float value) {
    std::fill(std::begin(values), std::end(values), value);
}

/// Sets both ends of a count.
void SetBoth(int (&ends)[2], int value) {
    ends[0] = ends[1] = value;
}

/// Sets both ends of three values.
void SetEnds(float (&ends)[6], const std::array<float, 3>& values) {
    for (std::size_t i = 0; i < 3; ++i) ends[i] = ends[i + 3] = values[i];
}

/// Renders a frame at the origin, size 1.
void Frame(ZelvarParticlesFX& emitter, float dt) {
    emitter.render(0, 0, 0, 1, dt);
}

/// Returns how many squares a frame draws.
std::size_t Squares(ZelvarParticlesFX& emitter, float dt) {
    fakes::gl().primitives.clear();
    Frame(emitter, dt);
    return fakes::gl().primitives.size();
}

/// Returns whether a frame has a burst, which it is known by the numbers that it draws.
bool Bursts(ZelvarParticlesFX& emitter, float dt) {
    const int before = fakes::world().rand_calls;
    Frame(emitter, dt);
    return fakes::world().rand_calls != before;
}

/// Returns for each of some frames whether it has a burst.
std::vector<bool> BurstsIn(ZelvarParticlesFX& emitter, int frames, float dt) {
    std::vector<bool> bursts(static_cast<std::size_t>(frames));
    for (std::size_t i = 0; i < bursts.size(); ++i) bursts[i] = Bursts(emitter, dt);
    return bursts;
}

Particle WithLife(float life) {
    Particle particle{};
    particle.life = life;
    return particle;
}

std::vector<float> Numbers(const Vector3d& vector) {
    return {vector.x, vector.y, vector.z};
}

Vector3d VectorOf(float x, float y, float z) {
    Vector3d vector;
    vector.x = x;
    vector.y = y;
    vector.z = z;
    return vector;
}

// ---- Calls ----

Lines Beginning(const std::string& destination = "GL_ONE") {
    return {"glEnable(GL_BLEND)", "glDepthMask(GL_FALSE)", "glBlendFunc(GL_SRC_ALPHA, " + destination + ")",
            "glBindTexture(GL_TEXTURE_2D, 7)"};
}

Lines Square() {
    return {"glEnableClientState(GL_VERTEX_ARRAY)", "glEnableClientState(GL_TEXTURE_COORD_ARRAY)",
            "glVertexPointer(3, GL_FLOAT, 0)",      "glTexCoordPointer(2, GL_FLOAT, 0)",
            "glDrawArrays(GL_TRIANGLES, 0, 6)",     "glDisableClientState(GL_TEXTURE_COORD_ARRAY)"};
}

Lines Ending() {
    return {"glDepthMask(GL_TRUE)", "glDisable(GL_BLEND)"};
}

/// Returns the calls that draw a particle.
Lines Drawing(const std::string& place, const std::string& roll, const std::string& color) {
    return fakes::Joined({{"glPushMatrix()", "glTranslatef(" + place + ")",
                           "glRotatef(" + roll + ", 0, 0, 1)", "glColor4ub(" + color + ")"},
                          Square(),
                          {"glColor4ub(255, 255, 255, 255)", "glPopMatrix()"}});
}

/// Returns the colours that the particles were drawn in, without the white between them.
Lines Colors() {
    const Lines all = fakes::Lines({"glColor4ub"});
    Lines colors;
    for (std::size_t i = 0; i < all.size(); i += 2) colors.push_back(all[i]);
    return colors;
}

// ---- Numbers ----

TEST(RateInterpole, GoesFromTheFirstValueToTheSecond) {
    EXPECT_EQ(rate_interpole(0, 200, 0), 0.0F);
    EXPECT_EQ(rate_interpole(0, 200, 25), 50.0F);
    EXPECT_EQ(rate_interpole(0, 200, 100), 200.0F);
    EXPECT_EQ(rate_interpole(-200, 400, 50), 100.0F);
    EXPECT_EQ(rate_interpole(200, 100, 25), 175.0F);
}

TEST(RateInterpole, GoesOnBeyondBothEnds) {
    EXPECT_EQ(rate_interpole(0, 200, -50), -100.0F);
    EXPECT_EQ(rate_interpole(0, 200, 150), 300.0F);
}

TEST(RateInterpole, RoundsToSinglePrecisionAfterEveryStep) {
    EXPECT_EQ(rate_interpole(0.7F, 1.7F, 33), 1.03000009F);  // any other order gives 1.02999997
}

TEST(GetRate, IsThePercentOfTheTotal) {
    EXPECT_EQ(get_rate(1, 4), 25.0F);
    EXPECT_EQ(get_rate(0, 4), 0.0F);
    EXPECT_EQ(get_rate(4, 4), 100.0F);
    EXPECT_EQ(get_rate(-1, -4), 25.0F);
}

TEST(GetRate, DividesLast) {
    EXPECT_EQ(get_rate(1, 3), 33.3333321F);  // the other order gives 33.3333359
}

TEST(GetRate, StaysWithin0And100) {
    EXPECT_EQ(get_rate(5, 4), 100.0F);
    EXPECT_EQ(get_rate(-0.1F, 4), 0.0F);
    EXPECT_EQ(get_rate(kInfinity, 4), 100.0F);
    EXPECT_EQ(get_rate(-kInfinity, 4), 0.0F);
    EXPECT_EQ(get_rate(1, 0), 100.0F);
    EXPECT_EQ(get_rate(-1, 0), 0.0F);
}

TEST(Get3dDistance, IsTheEuclideanDistance) {
    EXPECT_EQ(Get3dDistance(1, 2, 3, 3, 5, 9), 7.0F);
    EXPECT_EQ(Get3dDistance(3, 5, 9, 1, 2, 3), 7.0F);
    EXPECT_EQ(Get3dDistance(-1, 0, 0, 1, 0, 0), 2.0F);
    EXPECT_EQ(Get3dDistance(0, -2, 0, 0, 3, 0), 5.0F);
    EXPECT_EQ(Get3dDistance(0, 0, 4, 0, 0, -4), 8.0F);
    EXPECT_EQ(Get3dDistance(1, 2, 3, 1, 2, 3), 0.0F);
}

// ---- Vectors ----

TEST(Vector3dTest, HasTheLengthOfItsDiagonal) {
    EXPECT_EQ(VectorOf(2, 3, 6).length(), 7.0F);
    EXPECT_EQ(VectorOf(-2, -3, -6).length(), 7.0F);
    EXPECT_EQ(VectorOf(0, 0, 0).length(), 0.0F);
}

TEST(Vector3dTest, IsDividedByItsLengthWhenNormalised) {
    Vector3d vector = VectorOf(0, -3, 4);

    vector.normalize();

    EXPECT_EQ(Numbers(vector), (std::vector<float>{0, -0.6F, 0.8F}));
}

TEST(Vector3dTest, StaysAsItIsWithoutALength) {
    Vector3d vector = VectorOf(0, -0.0F, 0);

    vector.normalize();

    EXPECT_EQ(Numbers(vector), (std::vector<float>{0, 0, 0}));
}

TEST(Vector3dTest, IsNormalisedHoweverShort) {
    Vector3d vector = VectorOf(1e-15F, 0, 0);

    vector.normalize();

    EXPECT_NEAR(vector.x, 1, 1e-5);
}

// ---- Particles ----

TEST(ParticleTest, IsSeventeenFloatsInOrder) {
    Particle particle{};
    particle.position = VectorOf(1, 2, 3);
    particle.velocity = VectorOf(4, 5, 6);
    particle.rotation = 7;
    particle.speed = 8;
    particle.life = 9;
    particle.life_total = 10;
    particle.scale = 11;
    for (std::size_t i = 0; i < 3; ++i) {
        particle.color_start[i] = static_cast<float>(12 + i);
        particle.color_end[i] = static_cast<float>(15 + i);
    }
    std::array<float, 17> floats{};
    ASSERT_EQ(sizeof particle, sizeof floats);

    std::memcpy(floats.data(), &particle, sizeof floats);

    EXPECT_EQ(floats, (std::array<float, 17>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}));
}

TEST(ParticleTest, IsDeadWithoutLife) {
    EXPECT_FALSE(dead_particle(WithLife(1)));
    EXPECT_FALSE(dead_particle(WithLife(std::numeric_limits<float>::denorm_min())));
    EXPECT_TRUE(dead_particle(WithLife(0)));
    EXPECT_TRUE(dead_particle(WithLife(-1)));
}

TEST_F(ParticlesTest, AreCountedByTheirLife) {
    ZelvarParticlesFX emitter;
    EXPECT_EQ(emitter.get_active_particles(), 0);
    EXPECT_EQ(emitter.get_inactive_particles(), 0);

    for (const float life : {1.0F, 0.0F, 0.25F, -1.0F, 3.0F}) emitter.particles.push_back(WithLife(life));

    EXPECT_EQ(emitter.get_active_particles(), 3);
    EXPECT_EQ(emitter.get_inactive_particles(), 2);
    EXPECT_EQ(emitter.particles.size(), 5U);
}

// ---- A fresh emitter ----

TEST_F(ParticlesTest, AFreshEmitterHasNoTexture) {
    const ZelvarParticlesFX emitter;

    EXPECT_EQ(emitter.texture_width, 0);
    EXPECT_EQ(emitter.texture_height, 0);
    EXPECT_EQ(emitter.texture, 0U);
    EXPECT_EQ(emitter.alpha_blend, 0);
}

TEST_F(ParticlesTest, AFreshEmitterSpawnsOneParticleAFiftiethOfASecondForEver) {
    const ZelvarParticlesFX emitter;

    EXPECT_EQ(emitter.loop, 1);
    EXPECT_EQ(emitter.particles_limit, 999);
    EXPECT_EQ(emitter.next_spawn_time, 0.02F);
    EXPECT_EQ(emitter.spawn_time[0], 0.02F);
    EXPECT_EQ(emitter.spawn_time[1], 0.02F);
    EXPECT_EQ(emitter.spawn_count, 1);
    EXPECT_EQ(emitter.spawn_particles[0], 1);
    EXPECT_EQ(emitter.spawn_particles[1], 1);
    EXPECT_EQ(emitter.time_delay, 0.0F);
    EXPECT_EQ(emitter.time_step, 0.0F);
}

TEST_F(ParticlesTest, AFreshEmittersParticlesAreWhiteAndStandStill) {
    const ZelvarParticlesFX emitter;

    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(emitter.spawn_position[i], 0.0F) << i;
        EXPECT_EQ(emitter.spawn_direction[i], 0.0F) << i;
        EXPECT_EQ(emitter.particles_color_start[i], 255.0F) << i;
        EXPECT_EQ(emitter.particles_color_end[i], 255.0F) << i;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(emitter.position[i], 0.0F) << i;
        EXPECT_EQ(emitter.particles_acceleration[i], 0.0F) << i;
    }
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(emitter.particles_rotation[i], 0.0F) << i;
        EXPECT_EQ(emitter.particles_speed[i], 0.0F) << i;
        EXPECT_EQ(emitter.particles_timelife[i], 0.0F) << i;
        EXPECT_EQ(emitter.particles_scale[i], 1.0F) << i;
    }
    EXPECT_EQ(emitter.random_rotation, 0);
    EXPECT_EQ(emitter.billboarding, 3);
}

TEST_F(ParticlesTest, AFreshEmitterIsInactiveAndAtItsStart) {
    const ZelvarParticlesFX emitter;

    EXPECT_FALSE(emitter.active);
    EXPECT_TRUE(emitter.first_spawn);
    EXPECT_EQ(emitter.spawn_timer, 0.0F);
    EXPECT_EQ(emitter.delay_timer, 0.0F);
    EXPECT_EQ(emitter.step_timer, 0.0F);
    EXPECT_EQ(emitter.reserved_counter, 0);
    EXPECT_TRUE(emitter.particles.empty());
}

// ---- A burst ----

TEST_F(ParticlesTest, ABurstDrawsItsNumbersInTheOrderOfAParticlesProperties) {
    ZelvarParticlesFX emitter = PercentEmitter();
    emitter.spawn_count = 1;
    emitter.position[0] = 1000;
    emitter.position[1] = 2000;
    emitter.position[2] = 3000;
    fakes::world().rand_values = {1, 2, 3, 4, 0, 6, 8, 5, 9, 10, 11, 12, 13, 14, 15, 16};

    emitter.spawn_particle(4);

    ASSERT_EQ(emitter.particles.size(), 1U);
    const Particle& born = emitter.particles.front();
    EXPECT_EQ(Numbers(born.position), (std::vector<float>{1008, 2016, 3024}));  // twice the scale a unit
    EXPECT_EQ(born.rotation, 4.0F);
    EXPECT_EQ(born.speed, 20.0F);
    EXPECT_EQ(Numbers(born.velocity), (std::vector<float>{0, 0.6F * 20, 0.8F * 20}));
    EXPECT_EQ(born.life, 9.0F);
    EXPECT_EQ(born.life_total, 9.0F);
    EXPECT_EQ(born.scale, 40.0F);
    EXPECT_EQ(std::vector<float>(born.color_start, born.color_start + 3), (std::vector<float>{11, 12, 13}));
    EXPECT_EQ(std::vector<float>(born.color_end, born.color_end + 3), (std::vector<float>{14, 15, 16}));
    EXPECT_EQ(fakes::world().rand_calls, kDrawsOfAParticle);
    EXPECT_EQ(fakes::Lines(), Lines{});
}

TEST_F(ParticlesTest, APercentIsTheRemainderOf101) {
    ZelvarParticlesFX emitter = PercentEmitter();
    emitter.spawn_count = 1;
    fakes::world().rand_values = {100, 101, 138, 202 + 99};

    emitter.spawn_particle(0.5F);

    EXPECT_EQ(Numbers(emitter.particles.front().position), (std::vector<float>{100, 0, 37}));
    EXPECT_EQ(emitter.particles.front().rotation, 99.0F);
}

TEST_F(ParticlesTest, EveryPropertyHasItsOwnPairOfEnds) {
    for (const int percent : {0, 100}) {
        SCOPED_TRACE(percent);
        const float end = percent == 0 ? 0 : 1;
        ZelvarParticlesFX emitter;
        for (int i = 0; i < 6; ++i) {
            const auto value = static_cast<float>(i);
            emitter.spawn_position[i] = 100 + 100 * value;
            emitter.spawn_direction[i] = i == 0 || i == 4 ? 1.0F : 0.0F;
            emitter.particles_color_start[i] = 1000 + 100 * value;
            emitter.particles_color_end[i] = 2000 + 100 * value;
        }
        for (int i = 0; i < 2; ++i) {
            const auto value = static_cast<float>(i);
            emitter.particles_rotation[i] = 3000 + 100 * value;
            emitter.particles_speed[i] = 4000 + 100 * value;
            emitter.particles_timelife[i] = 5000 + 100 * value;
            emitter.particles_scale[i] = 6000 + 100 * value;
        }
        fakes::world().rand_default = percent;

        emitter.spawn_particle(1);

        const Particle& born = emitter.particles.front();
        EXPECT_FLOAT_EQ(born.position.x, 200 + end * 600);
        EXPECT_FLOAT_EQ(born.position.y, 400 + end * 600);
        EXPECT_FLOAT_EQ(born.position.z, 600 + end * 600);
        EXPECT_FLOAT_EQ(born.rotation, 3000 + end * 100);
        EXPECT_FLOAT_EQ(born.speed, 4000 + end * 100);
        EXPECT_FLOAT_EQ(born.velocity.x, percent == 0 ? 4000.0F : 0.0F);
        EXPECT_FLOAT_EQ(born.velocity.y, percent == 0 ? 0.0F : 4100.0F);
        EXPECT_FLOAT_EQ(born.velocity.z, 0);
        EXPECT_FLOAT_EQ(born.life, 5000 + end * 100);
        EXPECT_FLOAT_EQ(born.scale, 6000 + end * 100);
        for (int i = 0; i < 3; ++i) {
            const auto value = static_cast<float>(i);
            EXPECT_FLOAT_EQ(born.color_start[i], 1000 + 100 * value + end * 300) << i;
            EXPECT_FLOAT_EQ(born.color_end[i], 2000 + 100 * value + end * 300) << i;
        }
    }
}

TEST_F(ParticlesTest, APairMayHaveItsGreaterEndFirst) {
    ZelvarParticlesFX emitter;
    emitter.particles_rotation[0] = 100;
    emitter.particles_rotation[1] = 0;
    fakes::world().rand_default = 25;

    emitter.spawn_particle(1);

    EXPECT_EQ(emitter.particles.front().rotation, 75.0F);
}

TEST_F(ParticlesTest, ADirectionOfNothingGivesNoVelocityWhateverTheSpeed) {
    ZelvarParticlesFX emitter;
    SetAll(emitter.particles_speed, 50);

    emitter.spawn_particle(1);

    EXPECT_EQ(Numbers(emitter.particles.front().velocity), (std::vector<float>{0, 0, 0}));
    EXPECT_EQ(emitter.particles.front().speed, 50.0F);
}

TEST_F(ParticlesTest, ABurstAppendsItsParticlesOldestFirst) {
    ZelvarParticlesFX emitter = PercentEmitter();
    emitter.spawn_count = 3;
    fakes::world().rand_values.assign(std::size_t{3} * kDrawsOfAParticle, 0);
    for (std::size_t i = 0; i < 3; ++i) {
        fakes::world().rand_values[i * std::size_t{kDrawsOfAParticle} + 3] = static_cast<int>(i + 1);
    }

    emitter.spawn_particle(1);

    std::vector<float> rotations;
    for (const Particle& particle : emitter.particles) rotations.push_back(particle.rotation);
    EXPECT_EQ(rotations, (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(fakes::world().rand_calls, 3 * kDrawsOfAParticle);
}

// ---- A frame ----

TEST_F(ParticlesTest, AnInactiveEmitterDoesNothing) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.active = false;
    emitter.particles.push_back(WithLife(1));

    emitter.render(1, 2, 3, 4, 0.5F);

    EXPECT_EQ(fakes::Lines(), Lines{});
    EXPECT_EQ(fakes::world().rand_calls, 0);
    EXPECT_EQ(emitter.spawn_timer, 0.0F);
    EXPECT_EQ(emitter.delay_timer, 0.0F);
    EXPECT_EQ(emitter.position[0], 0.0F);
    EXPECT_EQ(emitter.particles.front().life, 1.0F);
}

TEST_F(ParticlesTest, AFrameBurstsMovesAndDrawsInThisOrder) {
    ZelvarParticlesFX emitter = Emitter();
    SetBoth(emitter.spawn_particles, 2);
    SetEnds(emitter.spawn_position, {1, 2, 3});
    SetEnds(emitter.spawn_direction, {0, 2, 0});
    SetAll(emitter.particles_speed, 3);
    SetAll(emitter.particles_rotation, 30);
    emitter.particles_acceleration[0] = 1;
    emitter.particles_acceleration[1] = 2;
    emitter.particles_acceleration[2] = 3;

    emitter.render(10, 20, 30, 4, 0.5F);

    // Born at the place and 16 units for each of the offset; 24 + 4 units a second upwards.
    const Lines particle = Drawing("27, 66, 81", "30", "255, 255, 255, 242");
    EXPECT_EQ(fakes::Lines(), fakes::Joined({Beginning(), particle, particle, Ending()}));
    EXPECT_EQ(emitter.position[0], 10.0F);
    EXPECT_EQ(emitter.position[1], 20.0F);
    EXPECT_EQ(emitter.position[2], 30.0F);
    for (const Particle& moved : emitter.particles) {
        EXPECT_EQ(Numbers(moved.velocity), (std::vector<float>{2, 28, 6}));
        EXPECT_EQ(Numbers(moved.position), (std::vector<float>{27, 66, 81}));
        EXPECT_EQ(moved.life, 9.5F);
        EXPECT_EQ(moved.life_total, 10.0F);
        EXPECT_EQ(moved.scale, 8.0F);
    }
}

TEST_F(ParticlesTest, AFrameDrawsSquaresOfTheParticlesSizeAtTheirPlaces) {
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.particles_scale, 3);
    SetAll(emitter.particles_rotation, 90);

    emitter.render(10, 20, 30, 4, 0.5F);

    ASSERT_EQ(fakes::gl().primitives.size(), 1U);
    const fakes::Primitive& square = fakes::gl().primitives[0];
    EXPECT_EQ(square.texture, 7U);
    EXPECT_TRUE(square.blend);
    EXPECT_FALSE(square.depth_mask);
    EXPECT_EQ(square.vertices.at(0).object, (fakes::Vec3{-24, 24, 0}));
    EXPECT_NEAR(square.vertices.at(0).eye[0], 10 - 24, 1e-3);  // rolled by a quarter to the left
    EXPECT_NEAR(square.vertices.at(0).eye[1], 20 - 24, 1e-3);
    EXPECT_NEAR(square.vertices.at(0).eye[2], 30, 1e-3);
}

TEST_F(ParticlesTest, AFrameLeavesDepthWrittenBlendingOffColorWhiteAndTheMatrixAsItWas) {
    ZelvarParticlesFX emitter = Emitter();
    glTranslatef(5, 6, 7);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glColor4ub(1, 2, 3, 4);
    const std::vector<fakes::Mat4> matrices = fakes::gl().modelview;

    emitter.render(10, 20, 30, 4, 0.5F);

    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
    EXPECT_TRUE(fakes::gl().depth_mask);
    EXPECT_EQ(fakes::gl().color, (fakes::Rgba{1, 1, 1, 1}));
    EXPECT_EQ(fakes::gl().modelview, matrices);
    EXPECT_EQ(fakes::gl().bound_texture, 7U);
}

TEST_F(ParticlesTest, BlendAsTheEmitterSays) {
    for (const auto& [alpha_blend, destination] : std::vector<std::pair<int, std::string>>{
             {0, "GL_ONE"}, {1, "GL_ONE_MINUS_SRC_ALPHA"}, {-1, "GL_ONE_MINUS_SRC_ALPHA"}}) {
        fakes::ClearLog();
        ZelvarParticlesFX emitter = Emitter();
        emitter.alpha_blend = alpha_blend;

        Frame(emitter, 0.5F);

        EXPECT_EQ(fakes::Lines({"glBlendFunc"}), (Lines{"glBlendFunc(GL_SRC_ALPHA, " + destination + ")"}));
    }
}

TEST_F(ParticlesTest, AFrameWithoutParticlesSetsAndRestoresTheStateAllTheSame) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.particles_limit = 0;

    Frame(emitter, 0.5F);

    EXPECT_EQ(fakes::Lines(), fakes::Joined({Beginning(), Ending()}));
}

TEST_F(ParticlesTest, MoveOnFromFrameToFrame) {
    ZelvarParticlesFX emitter = Emitter();
    SetEnds(emitter.spawn_direction, {1, 0, 0});
    SetAll(emitter.particles_speed, 1);
    emitter.particles_acceleration[0] = 1;
    emitter.particles_acceleration[1] = -2;

    for (int i = 0; i < 3; ++i) Frame(emitter, 0.5F);

    EXPECT_EQ(
        fakes::Lines({"glTranslatef"}),
        (Lines{"glTranslatef(1.25, -0.5, 0)", "glTranslatef(2.75, -1.5, 0)", "glTranslatef(4.5, -3, 0)"}));
    EXPECT_EQ(emitter.particles.front().speed, 2.0F);  // stays that at birth
}

TEST_F(ParticlesTest, AreAcceleratedByTheAccelerationTimesTheTimeTimesTheSize) {
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.particles_acceleration, 0.1F);

    emitter.render(0, 0, 0, 0.7F, 0.3F);

    // Any other order gives 0.0210000016.
    EXPECT_EQ(Numbers(emitter.particles.front().velocity),
              (std::vector<float>{0.0209999997F, 0.0209999997F, 0.0209999997F}));
}

TEST_F(ParticlesTest, StayWhereTheyWereBornWhenTheEmitterMoves) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.render(10, 20, 30, 1, 0.5F);
    fakes::ClearLog();

    emitter.render(40, 50, 60, 1, 0.5F);

    EXPECT_EQ(fakes::Lines({"glTranslatef"}), (Lines{"glTranslatef(10, 20, 30)"}));
}

TEST_F(ParticlesTest, RollAnewEveryFrameOnDemand) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.random_rotation = 1;
    SetAll(emitter.particles_rotation, 30);
    SetBoth(emitter.spawn_particles, 2);
    fakes::world().rand_values.assign(std::size_t{kDrawsOfABurst + 2 * kDrawsOfAParticle}, 0);
    for (const int roll : {359, 360, 361, 720 + 45}) fakes::world().rand_values.push_back(roll);

    Frame(emitter, 0.25F);
    Frame(emitter, 0.25F);

    EXPECT_EQ(fakes::Lines({"glRotatef"}), (Lines{"glRotatef(359, 0, 0, 1)", "glRotatef(0, 0, 0, 1)",
                                                  "glRotatef(1, 0, 0, 1)", "glRotatef(45, 0, 0, 1)"}));
    EXPECT_EQ(fakes::world().rand_calls, kDrawsOfABurst + 2 * kDrawsOfAParticle + 4);
    EXPECT_EQ(emitter.particles.front().rotation, 30.0F);
}

TEST_F(ParticlesTest, RandomNumbersAreDrawnForTheIntervalTheCountTheParticlesAndThenTheRolls) {
    ZelvarParticlesFX emitter = PercentEmitter();
    emitter.random_rotation = 5;
    std::deque<int>& random = fakes::world().rand_values;
    const auto add = [&random](const std::vector<int>& numbers) {
        random.insert(random.end(), numbers.begin(), numbers.end());
    };
    const auto particle_of = [](int rotation) {
        return std::vector<int>{0, 0, 0, rotation, 1, 0, 0, 0, 90, 1, 0, 0, 0, 0, 0, 0};
    };
    add({1, 2});  // the first frame: seconds to the next burst, count
    add(particle_of(50));
    add(particle_of(51));
    add({101, 102});  // their rolls
    add({103, 104});  // the second frame has no burst
    add({7, 1});      // the third has one
    add(particle_of(60));
    add({105, 106, 107});

    for (int i = 0; i < 3; ++i) Frame(emitter, 0.5F);

    EXPECT_EQ(fakes::world().rand_calls, 2 + 2 * 16 + 2 + 2 + 2 + 16 + 3);
    EXPECT_TRUE(random.empty());
    EXPECT_EQ(emitter.next_spawn_time, 7.0F);
    std::vector<double> rolls;
    for (const fakes::Call& call : fakes::Calls("glRotatef")) rolls.push_back(call.args.at(0));
    EXPECT_EQ(rolls, (std::vector<double>{101, 102, 103, 104, 105, 106, 107}));
    std::vector<float> rotations;
    for (const Particle& particle : emitter.particles) rotations.push_back(particle.rotation);
    EXPECT_EQ(rotations, (std::vector<float>{50, 51, 60}));
}

// ---- Death ----

TEST_F(ParticlesTest, ThatDieAreDrawnOnceMoreInTheirEndColorWithNothingOfItAndThenRemoved) {
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.particles_timelife, 1);
    SetAll(emitter.particles_color_start, 100);
    SetAll(emitter.particles_color_end, 200);

    EXPECT_EQ(Squares(emitter, 0.5F), 1U);
    EXPECT_EQ(Squares(emitter, 0.5F), 1U);
    EXPECT_EQ(Colors(), (Lines{"glColor4ub(150, 150, 150, 127)", "glColor4ub(200, 200, 200, 0)"}));
    EXPECT_EQ(emitter.get_inactive_particles(), 1);

    EXPECT_EQ(Squares(emitter, 0.5F), 0U);
    EXPECT_TRUE(emitter.particles.empty());
}

TEST_F(ParticlesTest, ThatDieAmongOthersLeaveThoseInTheirOrder) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.first_spawn = false;
    emitter.next_spawn_time = 1000;
    for (const float life : {5.0F, 0.0F, 6.0F, -1.0F, -1.0F, 7.0F})
        emitter.particles.push_back(WithLife(life));

    Frame(emitter, 0);

    std::vector<float> lives;
    for (const Particle& particle : emitter.particles) lives.push_back(particle.life);
    EXPECT_EQ(lives, (std::vector<float>{5, 6, 7}));
    EXPECT_EQ(fakes::gl().primitives.size(), 3U);
}

TEST_F(ParticlesTest, BornWithoutLifeAreRemovedBeforeTheyAreDrawn) {
    for (const float life : {0.0F, -1.0F}) {
        ZelvarParticlesFX emitter = Emitter();
        SetAll(emitter.particles_timelife, life);
        fakes::world().rand_calls = 0;

        EXPECT_EQ(Squares(emitter, 0.5F), 0U) << life;

        EXPECT_TRUE(emitter.particles.empty()) << life;
        EXPECT_EQ(fakes::world().rand_calls, kDrawsOfABurst + kDrawsOfAParticle) << life;
    }
}

// ---- When bursts come ----

TEST_F(ParticlesTest, AreShownFromTheFrameInWhichTheDelayIsOver) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.time_delay = 1;

    for (int i = 0; i < 3; ++i) Frame(emitter, 0.25F);
    EXPECT_EQ(fakes::Lines(), Lines{});
    EXPECT_EQ(fakes::world().rand_calls, 0);

    EXPECT_EQ(Squares(emitter, 0.25F), 1U);
    EXPECT_EQ(emitter.particles.front().life, 9.75F);
}

TEST_F(ParticlesTest, InTheDelayAreNeitherMovedNorRemoved) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.time_delay = 1;
    emitter.particles.push_back(WithLife(0));

    Frame(emitter, 0.5F);

    ASSERT_EQ(emitter.particles.size(), 1U);
    EXPECT_EQ(emitter.particles.front().life, 0.0F);
}

TEST_F(ParticlesTest, TheDelayHoldsBackTheStepTimerAlone) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.time_delay = 1;

    emitter.render(1, 2, 3, 4, 0.75F);

    EXPECT_EQ(emitter.position[0], 1.0F);
    EXPECT_EQ(emitter.position[1], 2.0F);
    EXPECT_EQ(emitter.position[2], 3.0F);
    EXPECT_EQ(emitter.spawn_timer, 0.75F);
    EXPECT_EQ(emitter.delay_timer, 0.75F);
    EXPECT_EQ(emitter.step_timer, 0.0F);

    Frame(emitter, 0.5F);

    EXPECT_EQ(emitter.spawn_timer, 0.0F);  // there was a burst
    EXPECT_EQ(emitter.delay_timer, 1.25F);
    EXPECT_EQ(emitter.step_timer, 0.5F);
    EXPECT_FALSE(emitter.first_spawn);
}

TEST_F(ParticlesTest, BurstAtOnceAndThenWheneverTheIntervalIsOver) {
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.spawn_time, 0.5F);

    EXPECT_EQ(BurstsIn(emitter, 7, 0.25F), (std::vector<bool>{true, false, true, false, true, false, true}));
    EXPECT_EQ(emitter.particles.size(), 4U);
}

TEST_F(ParticlesTest, BurstOnceAFrameHoweverLongItIs) {
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.spawn_time, 0.5F);
    Frame(emitter, 2);

    Frame(emitter, 2);

    EXPECT_EQ(emitter.particles.size(), 2U);
    EXPECT_EQ(emitter.spawn_timer, 0.0F);  // what is over is lost
}

TEST_F(ParticlesTest, TheIntervalIsDrawnAtEveryBurst) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.spawn_time[0] = 1;
    emitter.spawn_time[1] = 3;
    for (const int percent : {0, 50, 100}) {
        emitter.first_spawn = true;
        fakes::world().rand_default = percent;

        Frame(emitter, 0.25F);

        EXPECT_FLOAT_EQ(emitter.next_spawn_time, 1 + static_cast<float>(percent) / 50);
    }
}

TEST_F(ParticlesTest, TheCountIsDrawnAndCutToAWholeNumber) {
    struct Draw {
        int min, max, percent, count;
    };
    for (const auto& [min, max, percent, count] : std::vector<Draw>{{1, 4, 50, 2},
                                                                    {1, 4, 99, 3},
                                                                    {1, 4, 0, 1},
                                                                    {0, 200, 100, 200},
                                                                    {5, 2, 0, 5},
                                                                    {5, 2, 50, 3},
                                                                    {0, 0, 50, 1},
                                                                    {0, 1, 99, 1},
                                                                    {-5, -5, 50, 1},
                                                                    {-100, 100, 51, 2}}) {
        ZelvarParticlesFX emitter = Emitter();
        emitter.spawn_particles[0] = min;
        emitter.spawn_particles[1] = max;
        fakes::world().rand_default = percent;

        Frame(emitter, 0.25F);

        EXPECT_EQ(emitter.spawn_count, count) << min << " to " << max << " at " << percent;
        EXPECT_EQ(emitter.particles.size(), static_cast<std::size_t>(count));
    }
}

TEST_F(ParticlesTest, ThatDoNotLoopBurstUntilTheirStepIsOverFromTheEndOfTheDelay) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.loop = 0;
    emitter.time_step = 1;
    emitter.time_delay = 0.5F;
    SetAll(emitter.spawn_time, 0);

    EXPECT_EQ(BurstsIn(emitter, 8, 0.25F),
              (std::vector<bool>{false, true, true, true, true, false, false, false}));
    EXPECT_EQ(Squares(emitter, 0.25F), 4U);  // which live on
}

TEST_F(ParticlesTest, WithoutLoopAndStepNeverBurst) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.loop = 0;
    emitter.time_step = 0;
    SetAll(emitter.spawn_time, 0);

    EXPECT_EQ(BurstsIn(emitter, 3, 0.25F), (std::vector<bool>{false, false, false}));
    EXPECT_EQ(fakes::Lines(),
              fakes::Joined({Beginning(), Ending(), Beginning(), Ending(), Beginning(), Ending()}));
    EXPECT_TRUE(emitter.first_spawn);
}

TEST_F(ParticlesTest, ThatLoopBurstWhateverTheirStep) {
    for (const int loop : {1, 2, -1}) {
        ZelvarParticlesFX emitter = Emitter();
        emitter.loop = loop;
        SetAll(emitter.spawn_time, 0);

        EXPECT_EQ(BurstsIn(emitter, 3, 10), (std::vector<bool>{true, true, true})) << loop;
    }
}

// ---- Limits ----

TEST_F(ParticlesTest, ABurstAddsNoMoreThanTheLimitAllowsAndDrawsAllItsNumbers) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.particles_limit = 3;
    SetBoth(emitter.spawn_particles, 5);
    SetAll(emitter.spawn_time, 0);

    Frame(emitter, 0.25F);
    EXPECT_EQ(emitter.particles.size(), 3U);
    EXPECT_EQ(fakes::world().rand_calls, kDrawsOfABurst + 5 * kDrawsOfAParticle);

    Frame(emitter, 0.25F);
    EXPECT_EQ(emitter.particles.size(), 3U);
    EXPECT_EQ(fakes::world().rand_calls, 2 * (kDrawsOfABurst + 5 * kDrawsOfAParticle));
    EXPECT_EQ(emitter.particles.front().life, 9.5F);  // the old ones stay
}

TEST_F(ParticlesTest, TheDeadCountToTheLimitUntilTheyAreRemoved) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.particles_limit = 1;
    SetAll(emitter.spawn_time, 0);
    SetAll(emitter.particles_timelife, 0.5F);

    EXPECT_EQ(Squares(emitter, 0.5F), 1U);
    EXPECT_EQ(Squares(emitter, 0.5F), 0U);  // the burst found the list full
    EXPECT_EQ(Squares(emitter, 0.5F), 1U);
}

TEST_F(ParticlesTest, ANegativeLimitIsAVeryHighOne) {
    ZelvarParticlesFX emitter;
    emitter.particles_limit = -1;
    emitter.spawn_count = 1500;

    emitter.spawn_particle(1);

    EXPECT_EQ(emitter.particles.size(), 1500U);
}

TEST_F(ParticlesTest, AreNeverMoreThan100000) {
    ZelvarParticlesFX emitter;
    for (const int limit : {-1, 2'000'000'000}) {
        emitter.reset();
        emitter.particles_limit = limit;
        emitter.spawn_count = 100'001;

        emitter.spawn_particle(1);

        EXPECT_EQ(emitter.particles.size(), 100'000U) << limit;
    }
}

TEST_F(ParticlesTest, ABurstIsNeverOfMoreThan100000) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.particles_limit = 2;
    SetBoth(emitter.spawn_particles, std::numeric_limits<int>::max());

    Frame(emitter, 0.25F);

    EXPECT_EQ(emitter.spawn_count, 100'000);
    EXPECT_EQ(fakes::world().rand_calls, kDrawsOfABurst + 100'000 * kDrawsOfAParticle);
}

// ---- Colours ----

/// Returns the colour of a particle that has a quarter of its life left.
std::string ColorOfAQuarter(const std::array<float, 3>& start, const std::array<float, 3>& end) {
    fakes::ClearLog();
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.particles_timelife, 4);
    SetEnds(emitter.particles_color_start, start);
    SetEnds(emitter.particles_color_end, end);
    Frame(emitter, 3);
    return Colors().at(0);
}

TEST_F(ParticlesTest, FadeFromTheStartColorToTheEndColorAndToNothing) {
    EXPECT_EQ(ColorOfAQuarter({200, 100, 0}, {0, 100, 200}), "glColor4ub(50, 100, 150, 63)");
}

TEST_F(ParticlesTest, ColorsAreCutToWholeNumbers) {
    EXPECT_EQ(ColorOfAQuarter({3, 6, 7}, {0, 0, 0}), "glColor4ub(0, 1, 1, 63)");
}

TEST_F(ParticlesTest, ColorsBeyondAByteKeepItsLowBits) {
    EXPECT_EQ(ColorOfAQuarter({300, 256, 1000}, {300, 256, 1000}), "glColor4ub(44, 0, 232, 63)");
    EXPECT_EQ(ColorOfAQuarter({-1, -300, -256}, {-1, -300, -256}), "glColor4ub(255, 212, 0, 63)");
}

TEST_F(ParticlesTest, ColorsThatAreNoNumberOrBeyondAllBoundsAre0) {
    EXPECT_EQ(ColorOfAQuarter({kNotANumber, kInfinity, -kInfinity}, {1, 1, 1}), "glColor4ub(0, 0, 0, 63)");
    EXPECT_EQ(ColorOfAQuarter({1, 1, 1}, {kNotANumber, 2e9F, -2e9F}), "glColor4ub(0, 0, 0, 63)");
    EXPECT_EQ(ColorOfAQuarter({3.4e38F, 1e30F, -1e30F}, {0, 0, 0}), "glColor4ub(0, 0, 0, 63)");
}

TEST_F(ParticlesTest, OfFullLifeAreInTheirStartColor) {
    ZelvarParticlesFX emitter = Emitter();
    SetEnds(emitter.particles_color_start, {200, 100, 50});
    SetEnds(emitter.particles_color_end, {0, 0, 0});

    Frame(emitter, 0);

    EXPECT_EQ(Colors(), (Lines{"glColor4ub(200, 100, 50, 255)"}));
}

// ---- A square ----

TEST_F(ParticlesTest, ASquareIsTwoTrianglesAroundTheOriginThatShowTheWholeTexture) {
    ZelvarParticlesFX emitter;

    emitter.render_particle(2.5F);

    EXPECT_EQ(fakes::Lines(), Square());
    ASSERT_EQ(fakes::gl().primitives.size(), 1U);
    const fakes::Primitive& square = fakes::gl().primitives[0];
    std::vector<fakes::Vec3> places;
    std::vector<fakes::Vec2> texcoords;
    for (const fakes::Vertex& vertex : square.vertices) {
        places.push_back(vertex.object);
        texcoords.push_back(vertex.texcoord);
    }
    EXPECT_EQ(places, (std::vector<fakes::Vec3>{{-2.5F, 2.5F, 0},
                                                {-2.5F, -2.5F, 0},
                                                {2.5F, 2.5F, 0},
                                                {2.5F, 2.5F, 0},
                                                {2.5F, -2.5F, 0},
                                                {-2.5F, -2.5F, 0}}));
    EXPECT_EQ(texcoords, (std::vector<fakes::Vec2>{{0, 1}, {0, 0}, {1, 1}, {1, 1}, {1, 0}, {0, 0}}));
}

TEST_F(ParticlesTest, ASquareLeavesTheVertexArrayEnabledAndTheTextureArrayNot) {
    ZelvarParticlesFX emitter;

    emitter.render_particle(1);

    EXPECT_TRUE(fakes::gl().vertex_array.enabled);
    EXPECT_FALSE(fakes::gl().texcoord_array.enabled);
}

TEST_F(ParticlesTest, TheBillboardHookChangesNothing) {
    ZelvarParticlesFX emitter = Emitter();

    emitter.apply_billboard(1, 2, 3);

    EXPECT_EQ(fakes::Lines(), Lines{});
    EXPECT_EQ(fakes::world().rand_calls, 0);
}

TEST_F(ParticlesTest, AreDrawnAlikeWhateverTheBillboarding) {
    ZelvarParticlesFX emitter = Emitter();
    Frame(emitter, 0.5F);
    const Lines calls = fakes::Lines();

    for (const int mode : {0, 1, 2, 99}) {
        fakes::ClearLog();
        emitter = Emitter();
        emitter.billboarding = mode;

        Frame(emitter, 0.5F);

        EXPECT_EQ(fakes::Lines(), calls) << mode;
    }
}

// ---- Reset and copies ----

TEST_F(ParticlesTest, ResetRemovesThemAndStartsTheTimersAgain) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.time_delay = 0.25F;
    for (int i = 0; i < 3; ++i) Frame(emitter, 0.25F);
    emitter.reserved_counter = 5;
    fakes::ClearLog();
    const int random = fakes::world().rand_calls;

    emitter.reset();

    EXPECT_TRUE(emitter.particles.empty());
    EXPECT_EQ(emitter.spawn_timer, 0.0F);
    EXPECT_EQ(emitter.delay_timer, 0.0F);
    EXPECT_EQ(emitter.step_timer, 0.0F);
    EXPECT_EQ(emitter.reserved_counter, 0);
    EXPECT_TRUE(emitter.first_spawn);
    EXPECT_EQ(fakes::Lines(), Lines{});
    EXPECT_EQ(fakes::world().rand_calls, random);
}

TEST_F(ParticlesTest, ResetKeepsWhatTheEmitterIs) {
    ZelvarParticlesFX emitter = Emitter();
    Frame(emitter, 0.25F);

    emitter.reset();

    EXPECT_TRUE(emitter.active);
    EXPECT_EQ(emitter.texture, 7U);
    EXPECT_EQ(emitter.next_spawn_time, 1000.0F);
    EXPECT_EQ(emitter.particles_timelife[0], 10.0F);

    emitter.active = false;
    emitter.reset();

    EXPECT_FALSE(emitter.active);
}

TEST_F(ParticlesTest, AfterAResetTheDelayPassesAgainAndABurstComesAtOnce) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.time_delay = 0.5F;
    const std::vector<bool> first = BurstsIn(emitter, 4, 0.25F);
    EXPECT_EQ(first, (std::vector<bool>{false, true, false, false}));

    emitter.reset();

    EXPECT_EQ(BurstsIn(emitter, 4, 0.25F), first);
}

TEST_F(ParticlesTest, ACopyHasEveryFieldAndParticlesOfItsOwn) {
    ZelvarParticlesFX emitter = PercentEmitter();
    emitter.texture = 7;
    emitter.time_delay = 0.25F;
    fakes::world().rand_default = 3;
    for (int i = 0; i < 3; ++i) Frame(emitter, 0.25F);

    ZelvarParticlesFX copy = emitter;

    ASSERT_EQ(copy.particles.size(), 3U);
    EXPECT_NE(&copy.particles.front(), &emitter.particles.front());
    fakes::ClearLog();
    for (int i = 0; i < 20; ++i) Frame(emitter, 0.25F);
    const Lines calls = fakes::Lines();
    EXPECT_EQ(copy.particles.front().life, 2.25F);  // untouched by the emitter's frames
    fakes::ClearLog();
    for (int i = 0; i < 20; ++i) Frame(copy, 0.25F);
    EXPECT_EQ(fakes::Lines(), calls);
}

// ---- Odd numbers ----

TEST_F(ParticlesTest, WithoutANumberForALifeStayUnseenUpToTheLimit) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.particles_limit = 2;
    SetAll(emitter.particles_timelife, kNotANumber);
    SetAll(emitter.spawn_time, 0);

    for (int i = 0; i < 4; ++i) Frame(emitter, 0.5F);

    EXPECT_EQ(emitter.particles.size(), 2U);
    EXPECT_EQ(Colors(), Lines(7, "glColor4ub(0, 0, 0, 0)"));
}

TEST_F(ParticlesTest, WithOddNumbersEverywhereDoNoHarm) {
    for (const float odd : {kNotANumber, kInfinity, -kInfinity, 3.4e38F, -3.4e38F, 1e-40F}) {
        SCOPED_TRACE(odd);
        ZelvarParticlesFX emitter = Emitter();
        for (float* pair : {emitter.particles_rotation, emitter.particles_speed, emitter.particles_scale}) {
            pair[1] = odd;
        }
        for (float* six : {emitter.spawn_position, emitter.spawn_direction, emitter.particles_color_start,
                           emitter.particles_color_end}) {
            std::fill(six, six + 6, odd);
        }
        SetAll(emitter.particles_acceleration, odd);
        fakes::world().rand_default = 50;

        EXPECT_EQ(Squares(emitter, 0.5F), 1U);
        EXPECT_EQ(Squares(emitter, 0.5F), 1U);

        EXPECT_EQ(fakes::gl().modelview.size(), 1U);
    }
}

TEST_F(ParticlesTest, WithATimeThatIsNoNumberNeverBurstAgain) {
    ZelvarParticlesFX emitter = Emitter();
    SetAll(emitter.spawn_time, kNotANumber);

    EXPECT_EQ(BurstsIn(emitter, 3, 100), (std::vector<bool>{true, false, false}));
}

TEST_F(ParticlesTest, WithADelayThatIsNoNumberDoNotWait) {
    ZelvarParticlesFX emitter = Emitter();
    emitter.time_delay = kNotANumber;

    EXPECT_EQ(Squares(emitter, 0.25F), 1U);
}

TEST_F(ParticlesTest, AFrameOfNoTimeMovesNothing) {
    ZelvarParticlesFX emitter = Emitter();
    SetEnds(emitter.spawn_direction, {1, 1, 1});
    SetAll(emitter.particles_speed, 5);
    SetAll(emitter.particles_acceleration, 5);

    for (int i = 0; i < 2; ++i) EXPECT_EQ(Squares(emitter, 0), 1U);

    EXPECT_EQ(fakes::Lines({"glTranslatef"}), (Lines{"glTranslatef(0, 0, 0)", "glTranslatef(0, 0, 0)"}));
    EXPECT_EQ(emitter.particles.front().life, 10.0F);
}

// ---- Cost ----

/// Makes the calls of a frame of particles at the origin in full life.
void DrawByHand(int count) {
    constexpr float kPlaces[] = {-2, 2, 0, -2, -2, 0, 2, 2, 0, 2, 2, 0, 2, -2, 0, -2, -2, 0};
    constexpr float kTexcoords[] = {0, 1, 0, 0, 1, 1, 1, 1, 1, 0, 0, 0};
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glBindTexture(GL_TEXTURE_2D, 7);
    for (int i = 0; i < count; ++i) {
        glPushMatrix();
        glTranslatef(0, 0, 0);
        glRotatef(0, 0, 0, 1);
        glColor4ub(255, 255, 255, 255);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, kPlaces);
        glTexCoordPointer(2, GL_FLOAT, 0, kTexcoords);
        glDrawArrays(GL_TRIANGLES, 0, 6);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
        glColor4ub(255, 255, 255, 255);
        glPopMatrix();
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

/// Returns how often a frame asks for memory, with that of the fakes, whose own lists have grown before.
std::size_t AllocationsOf(const std::function<void()>& frame) {
    std::size_t count = 0;
    for (int i = 0; i < 2; ++i) {
        fakes::ClearLog();
        fakes::gl().primitives.clear();
        const std::size_t before = allocations;
        frame();
        count = allocations - before;
    }
    return count;
}

TEST_F(ParticlesTest, AFrameAsksForNoMemoryBeyondWhatTheFakesTakeForItsCalls) {
    ZelvarParticlesFX emitter = Emitter();
    SetBoth(emitter.spawn_particles, 20);
    Frame(emitter, 0);

    const std::size_t by_hand = AllocationsOf([] { DrawByHand(20); });
    const Lines calls = fakes::Lines();

    EXPECT_EQ(AllocationsOf([&emitter] { Frame(emitter, 0); }), by_hand);
    EXPECT_EQ(fakes::Lines(), calls);
}

TEST_F(ParticlesTest, ABurstAsksForMemoryOnceAParticle) {
    ZelvarParticlesFX emitter;
    emitter.spawn_count = 30;
    emitter.particles_limit = 20;
    const std::size_t before = allocations;

    emitter.spawn_particle(1);

    EXPECT_EQ(allocations - before, 20U);
}

TEST_F(ParticlesTest, AFrameCostsTheSameCallsForEachOfThem) {
    for (const int count : {1, 10, 100, 1000}) {
        ZelvarParticlesFX emitter = Emitter();
        emitter.particles_limit = 1000;
        SetBoth(emitter.spawn_particles, count);
        Frame(emitter, 0.25F);
        fakes::ClearLog();
        fakes::world().rand_calls = 0;

        Frame(emitter, 0.25F);

        EXPECT_EQ(fakes::Log().size(), 6U + 12U * static_cast<std::size_t>(count));
        EXPECT_EQ(fakes::world().rand_calls, 0);
    }
}

TEST_F(ParticlesTest, StayInTheirNodesFromFrameToFrame) {
    ZelvarParticlesFX emitter = Emitter();
    SetBoth(emitter.spawn_particles, 5);
    Frame(emitter, 0.25F);
    std::vector<const Particle*> nodes;
    for (const Particle& particle : emitter.particles) nodes.push_back(&particle);

    for (int i = 0; i < 3; ++i) Frame(emitter, 0.25F);

    std::vector<const Particle*> later;
    for (const Particle& particle : emitter.particles) later.push_back(&particle);
    EXPECT_EQ(later, nodes);
}

}  // namespace
