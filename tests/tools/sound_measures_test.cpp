// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The measures of sounds, on sounds whose figures are known.
#include "tests/tools/sound_measures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>

namespace {

using namespace sound;

/// Returns so many seconds of what a function of the time gives.
Samples Made(double seconds, const std::function<double(double)>& wave) {
    Samples samples(At(seconds));
    for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = wave(static_cast<double>(i) / kRate);
    return samples;
}

double Tone(double time, double hertz) {
    return std::sin(2 * std::numbers::pi * hertz * time);
}

/// Returns a tone at a tenth of full scale.
Samples SoftTone(double seconds, double hertz) {
    return Made(seconds, [&](double time) { return 0.1 * Tone(time, hertz); });
}

/// Returns hoots of 0.3 s, one a second. Half of them rise by an octave in their middle, by `second` the
/// other half.
Samples TwoKindsOfHoots(double second) {
    double phase = 0;
    return Made(6, [&, second](double time) {
        const double within = std::min(1.0, (time - std::floor(time)) / 0.3);
        const double direction = static_cast<int>(time) % 2 == 0 ? 1 : second;
        phase += 300 * std::exp2(direction * (within - 0.5)) / kRate;
        return 0.5 * std::sin(std::numbers::pi * within) * std::sin(2 * std::numbers::pi * phase);
    });
}

TEST(Loudness, IsThatOfTheStandardsTone) {
    // BS.1770: 997 Hz at full scale in one of the front channels is -3.01 LUFS; in both it is 3.01 more.
    const Samples tone = SoftTone(2, 997);
    const Samples nothing(tone.size());

    EXPECT_NEAR(LoudnessOf({tone, nothing}).integrated, -23.01, 0.1);
    EXPECT_NEAR(LoudnessOf({tone, tone}).integrated, -20, 0.1);
    EXPECT_NEAR(LoudnessOf({tone, tone}).momentary, -20, 0.1);
}

TEST(Loudness, LeavesOutSilenceButNotItsMoment) {
    Samples tone = SoftTone(6, 997);
    for (std::size_t i = At(1); i < At(5); ++i) tone[i] = 0;
    for (std::size_t i = At(5); i < tone.size(); ++i) tone[i] *= 2;

    const Loudness loudness = LoudnessOf({tone, tone});
    EXPECT_NEAR(loudness.momentary, -20 + 6.02, 0.1);
    EXPECT_GT(loudness.integrated, -20);
    EXPECT_LT(loudness.integrated, loudness.momentary);
}

TEST(Loudness, OfASoundThatIsTooShortIsNone) {
    const Samples tone = SoftTone(0.3, 997);

    EXPECT_EQ(LoudnessOf({tone, tone}).integrated, -HUGE_VAL);
    EXPECT_EQ(LoudnessOf({tone, tone}).momentary, -HUGE_VAL);
}

TEST(ALaptop, LetsThroughWhatIsAbove500Hertz) {
    const auto level = [](double hertz) {
        const Samples tone = SoftTone(1, hertz);
        return Level(OnALaptop({tone, tone}).right) - Level(tone);
    };
    EXPECT_NEAR(level(500), -3, 0.1);
    EXPECT_NEAR(level(250), -12.3, 0.1);
    EXPECT_NEAR(level(4000), 0, 0.1);
}

TEST(APitch, IsExactToAFewCents) {
    for (const double hertz : {262.0, 441.7, 560.0}) {
        const Samples rich = Made(0.2, [&](double time) {
            return 0.2 * Tone(time, hertz) + 0.3 * Tone(time, 2 * hertz) + 0.1 * Tone(time, 3 * hertz);
        });
        EXPECT_NEAR(Cents(Pitch(rich, 0.1), hertz), 0, 4);
    }
}

TEST(APitch, IsNotInNoise) {
    std::minstd_rand random;
    std::uniform_real_distribution<double> uniform(-1, 1);
    const Samples noise = Made(0.2, [&](double) { return uniform(random); });

    EXPECT_EQ(Pitch(noise, 0.1), 0);
}

TEST(ANote, IsTheClosestOfEqualTemperament) {
    EXPECT_NEAR(ClosestNote(445), 440, 0.01);
    EXPECT_NEAR(ClosestNote(331), 329.63, 0.01);
    EXPECT_NEAR(Cents(880, 440), 1200, 0.01);
}

TEST(Hoots, AreFoundWhereTheyAre) {
    const std::vector<Hoot> hoots = Hoots(TwoKindsOfHoots(1), 0.3);

    ASSERT_EQ(hoots.size(), 6U);
    for (std::size_t i = 0; i < hoots.size(); ++i) {
        const auto second = static_cast<double>(i);
        EXPECT_NEAR(hoots[i].loudest, second + 0.15, 0.01);
        EXPECT_NEAR(hoots[i].begin, second + 0.02, 0.02);
        EXPECT_NEAR(hoots[i].from, second + 0.05, 0.02);
        EXPECT_NEAR(hoots[i].to, second + 0.25, 0.02);
        EXPECT_NEAR(hoots[i].level, 0.5 / std::numbers::sqrt2, 0.02);
    }
}

TEST(Tunes, AreAlikeOrContrary) {
    const Samples alike = TwoKindsOfHoots(0.5), contrary = TwoKindsOfHoots(-1);

    EXPECT_GT(LikenessOfTunes(alike, Hoots(alike, 0.3)), 0.98);
    // Of the 15 pairs 6 are alike and 9 contrary.
    EXPECT_NEAR(LikenessOfTunes(contrary, Hoots(contrary, 0.3)), -0.2, 0.02);
}

TEST(Harmonics, HaveTheirLevels) {
    const Samples rich = Made(0.5, [](double time) { return 0.4 * Tone(time, 303) + 0.1 * Tone(time, 606); });

    EXPECT_NEAR(HarmonicLevel(rich, 300, 2) - HarmonicLevel(rich, 300, 1), -12.04, 0.2);
    EXPECT_LT(HarmonicLevel(rich, 300, 3) - HarmonicLevel(rich, 300, 1), -60);
}

TEST(TheCentroid, IsTheMeanWeightedByPower) {
    const Samples two = Made(0.5, [](double time) { return 0.1 * Tone(time, 400) + 0.1 * Tone(time, 1200); });
    const Samples low = Made(0.5, [](double time) { return 0.2 * Tone(time, 400) + 0.1 * Tone(time, 1200); });

    EXPECT_NEAR(Centroid(two), 800, 2);
    EXPECT_NEAR(Centroid(low), 560, 2);
}

TEST(Modulation, IsSharedOutByItsFrequencies) {
    const Samples samples = Made(
        5, [](double time) { return (0.5 + 0.2 * Tone(time, 4) + 0.1 * Tone(time, 9)) * Tone(time, 400); });

    EXPECT_NEAR(ShareOfModulation(samples, 3, 6), 0.8, 0.05);
    EXPECT_NEAR(ShareOfModulation(samples, 8, 10), 0.2, 0.05);
}

TEST(Breath, PulsesOrDoesNot) {
    std::minstd_rand random;
    std::uniform_real_distribution<double> uniform(-0.1, 0.1);
    const auto blown = [&](double depth) {
        return Made(1, [&](double time) {
            return 0.5 * Tone(time, 400) + std::sqrt(1 + depth * Tone(time, 400)) * uniform(random);
        });
    };

    EXPECT_NEAR(BreathPulse(blown(1), 400), 1, 0.1);
    EXPECT_NEAR(BreathPulse(blown(0.5), 400), 0.5, 0.1);
    EXPECT_LT(BreathPulse(blown(0), 400), 0.1);
}

}  // namespace
