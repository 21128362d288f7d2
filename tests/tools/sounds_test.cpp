// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl's sounds as the build bakes them: the files that the program plays. What can be measured of how
// they sound is measured here: lengths, levels, notes, and that the laugh goes with the owl's shaking on the
// screen.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tests/tools/data_files.h"

namespace {

constexpr int kRate = 44100;           // samples a second
constexpr std::size_t kHeader = 44;    // bytes before the samples of a plain WAVE file
constexpr std::size_t kFrameSize = 4;  // bytes of a left and a right sample

/// A sound and how long it may be, in seconds.
struct Limits {
    std::string name;
    double shortest;
    double longest;
};

/// Prints the sound's name where a test fails.
void PrintTo(const Limits& limits, std::ostream* out) {
    *out << limits.name;
}

/// How long each sound of the manifest may be. A table of its own on purpose: a new sound needs its limits.
const std::vector<Limits> kSounds = {
    {"laugh", 15.4, 15.6}, {"notify", 0.5, 3.0},  {"question", 0.5, 3.0}, {"right", 0.5, 3.0},
    {"wrong_1", 0.5, 2.0}, {"wrong_2", 0.5, 2.0}, {"wrong_3", 0.5, 2.0},
};

/// Reads a whole file; one that is not there reads as empty.
std::string Bytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Returns the baked file of a sound.
std::filesystem::path File(const std::string& name) {
    return std::filesystem::path(ULMARO_DATA) / (name + ".wav");
}

/// Returns the little-endian number of `size` bytes at `place`.
unsigned Number(const std::string& bytes, std::size_t place, std::size_t size) {
    unsigned number = 0;
    for (std::size_t i = size; i-- > 0;) {
        number = number << 8 | static_cast<unsigned char>(bytes.at(place + i));
    }
    return number;
}

/// One channel of a sound, or the two as one; 1 is full scale.
using Samples = std::vector<double>;

/// Returns the left (0) or right (1) channel of a sound; of a file that has none, a second of silence, which
/// no test takes for a sound.
Samples Channel(const std::string& name, std::size_t channel) {
    const std::string bytes = Bytes(File(name));
    Samples samples;
    for (std::size_t i = kHeader + 2 * channel; i + 2 <= bytes.size(); i += kFrameSize) {
        samples.push_back(static_cast<std::int16_t>(Number(bytes, i, 2)) / 32768.0);
    }
    if (samples.empty()) samples.resize(kRate);
    return samples;
}

/// Returns the mean of the two channels of a sound: the owl's voice, which is in the middle, and half the
/// trees.
Samples Middle(const std::string& name) {
    Samples middle = Channel(name, 0);
    const Samples right = Channel(name, 1);
    for (std::size_t i = 0; i < middle.size(); ++i) middle[i] = 0.5 * (middle[i] + right.at(i));
    return middle;
}

/// Returns the largest magnitude from `begin` up to `end`, both in seconds.
double Peak(const Samples& samples, double begin = 0, double end = 1000) {
    double peak = 0;
    const auto last = std::min(samples.size(), static_cast<std::size_t>(end * kRate));
    for (auto i = static_cast<std::size_t>(begin * kRate); i < last; ++i) {
        peak = std::max(peak, std::abs(samples[i]));
    }
    return peak;
}

/// Returns the mean power of `count` samples from `begin` on.
double Power(const Samples& samples, std::size_t begin, std::size_t count) {
    double sum = 0;
    for (std::size_t i = begin; i < begin + count; ++i) sum += samples[i] * samples[i];
    return sum / static_cast<double>(count);
}

double Decibels(double power) {
    return 10 * std::log10(power);
}

/// A filter of second order: y = b0 x + b1 x' + b2 x'' - a1 y' - a2 y''.
struct Filter {
    double b0, b1, b2, a1, a2;
};

/// Returns the samples as the filter lets them through.
Samples Filtered(const Samples& in, const Filter& f) {
    Samples out(in.size());
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    for (std::size_t i = 0; i < in.size(); ++i) {
        out[i] = f.b0 * in[i] + f.b1 * x1 + f.b2 * x2 - f.a1 * y1 - f.a2 * y2;
        x2 = x1;
        x1 = in[i];
        y2 = y1;
        y1 = out[i];
    }
    return out;
}

/// Returns a filter that lets through what is above a frequency in Hz (bilinear transform of the analogue
/// one).
Filter HighPass(double hertz, double q) {
    const double k = std::tan(std::numbers::pi * hertz / kRate);
    const double a0 = 1 + k / q + k * k;
    return {1 / a0, -2 / a0, 1 / a0, 2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0};
}

/// Returns the filter that lifts what is above about 1.7 kHz by 4 dB, as a head in the sound's way does. It
/// is the first stage of ITU-R BS.1770's K-weighting, whose table for 48 kHz is redesigned here for 44.1 kHz.
Filter HeadShelf() {
    const double k = std::tan(std::numbers::pi * 1681.974450955533 / kRate);
    const double q = 0.7071752369554196;
    const double high = std::pow(10, 3.999843853973347 / 20);
    const double band = std::pow(high, 0.4996667741545416);
    const double a0 = 1 + k / q + k * k;
    return {(high + band * k / q + k * k) / a0, 2 * (k * k - high) / a0, (high - band * k / q + k * k) / a0,
            2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0};
}

/// Returns the K-weighted power of every block of 400 ms (a new one every 100 ms), left and right together.
std::vector<double> LoudnessBlocks(const std::string& name) {
    constexpr std::size_t block = kRate * 4 / 10, step = kRate / 10;
    std::vector<double> blocks;
    for (std::size_t channel : {0U, 1U}) {
        // BS.1770 writes the second stage, a high pass, with 1, -2, 1 above the line: 0.05 dB more.
        const Samples samples = Filtered(Filtered(Channel(name, channel), HeadShelf()),
                                         HighPass(38.13547087602444, 0.5003270373238773));
        for (std::size_t i = 0; i * step + block <= samples.size(); ++i) {
            if (i == blocks.size()) blocks.push_back(0);
            blocks[i] += Power(samples, i * step, block);
        }
    }
    return blocks;
}

/// Returns the mean of those blocks that are louder than a gate in LUFS.
double GatedPower(const std::vector<double>& blocks, double gate) {
    double sum = 0;
    int count = 0;
    for (double power : blocks) {
        if (Decibels(power) - 0.691 <= gate) continue;
        sum += power;
        ++count;
    }
    return sum / count;
}

/// Returns the integrated loudness in LUFS after ITU-R BS.1770-4: K-weighted, gated at -70 LUFS and at 10 LU
/// below what that leaves. So the silence between hoots does not count.
double Loudness(const std::string& name) {
    const std::vector<double> blocks = LoudnessBlocks(name);
    const double gate = Decibels(GatedPower(blocks, -70)) - 0.691 - 10;
    return Decibels(GatedPower(blocks, gate)) - 0.691;
}

/// When a hoot begins and ends, in seconds.
struct Hoot {
    double begin;
    double end;
};

/// Returns the hoots: what rises above 28 % of the loudest, until it falls under 12 %, by the RMS of 20 ms.
std::vector<Hoot> Hoots(const Samples& samples) {
    constexpr std::size_t window = kRate / 50, step = kRate / 200;
    std::vector<double> swell;
    for (std::size_t i = 0; i + window <= samples.size(); i += step) {
        swell.push_back(std::sqrt(Power(samples, i, window)));
    }
    const double loudest = *std::max_element(swell.begin(), swell.end());

    std::vector<Hoot> hoots;
    bool sounding = false;
    for (std::size_t i = 0; i < swell.size(); ++i) {
        const double time = (static_cast<double>(i * step) + window / 2.0) / kRate;
        if (!sounding && swell[i] > 0.28 * loudest) {
            hoots.push_back({time, time});
            sounding = true;
        }
        if (sounding) hoots.back().end = time;
        if (swell[i] < 0.12 * loudest) sounding = false;
    }
    return hoots;
}

/// Returns how alike 40 ms of the samples at a time in seconds are to what comes `lag` samples later, 1 being
/// the same.
double Likeness(const Samples& samples, double time, std::size_t lag) {
    const auto begin = static_cast<std::size_t>(time * kRate);
    double product = 0, here = 0, there = 0;
    for (std::size_t i = begin; i < begin + kRate / 25; i += 2) {
        product += samples[i] * samples[i + lag];
        here += samples[i] * samples[i];
        there += samples[i + lag] * samples[i + lag];
    }
    return product / std::sqrt(here * there);
}

/// Returns the pitch in Hz at a time in seconds, or 0 where there is none between 100 and 1500 Hz: that of
/// the shortest shift at which the sound is almost as alike to itself as at any.
double Pitch(const Samples& samples, double time) {
    constexpr std::size_t shortest = kRate / 1500, longest = kRate / 100;
    std::vector<double> likeness;
    for (std::size_t lag = shortest; lag <= longest; ++lag) likeness.push_back(Likeness(samples, time, lag));

    const double best = *std::max_element(likeness.begin(), likeness.end());
    if (best < 0.8) return 0;
    for (std::size_t i = 1; i + 1 < likeness.size(); ++i) {
        const bool top = likeness[i] >= likeness[i - 1] && likeness[i] > likeness[i + 1];
        if (top && likeness[i] > best - 0.08)
            return static_cast<double>(kRate) / static_cast<double>(shortest + i);
    }
    return 0;
}

/// Returns the pitches in Hz of the hoots' middles (from a fifth to four fifths of each), every 20 ms. Where
/// one note runs into the next there is no pitch, and so no entry.
std::vector<double> Melody(const Samples& samples) {
    std::vector<double> melody;
    for (const Hoot& hoot : Hoots(samples)) {
        const double length = hoot.end - hoot.begin;
        for (double time = hoot.begin + 0.2 * length; time < hoot.begin + 0.8 * length; time += 0.02) {
            const double hertz = Pitch(samples, time);
            if (hertz > 0) melody.push_back(hertz);
        }
    }
    return melody;
}

/// Returns the second in which the n-th shake of the laughing owl begins (from 0), by its sine's angle,
/// 30 t / (1 + 0.025 t).
double ShakeTime(int shake) {
    const double angle = 2 * std::numbers::pi * shake;
    return angle / (30 - 0.025 * angle);
}

/// Returns the number of shakes of the laughing owl until a second.
double Shakes(double time) {
    return 30 * time / (1 + 0.025 * time) / (2 * std::numbers::pi);
}

class ASound : public testing::TestWithParam<Limits> {
  protected:
    const std::string name = GetParam().name;
};

INSTANTIATE_TEST_SUITE_P(Each, ASound, testing::ValuesIn(kSounds),
                         [](const auto& sound) { return sound.param.name; });

TEST_P(ASound, IsAPlainWaveFileOf44100HzAnd16BitsAndNothingElse) {
    const std::string bytes = Bytes(File(name));

    ASSERT_GT(bytes.size(), kHeader);
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    EXPECT_EQ(Number(bytes, 4, 4), bytes.size() - 8);
    EXPECT_EQ(bytes.substr(8, 8), "WAVEfmt ");
    EXPECT_EQ(Number(bytes, 16, 4), 16U) << "bytes of the format chunk";
    EXPECT_EQ(Number(bytes, 20, 2), 1U) << "linear PCM";
    EXPECT_EQ(Number(bytes, 22, 2), 2U) << "channels";
    EXPECT_EQ(Number(bytes, 24, 4), 44100U) << "samples a second";
    EXPECT_EQ(Number(bytes, 28, 4), 44100U * kFrameSize) << "bytes a second";
    EXPECT_EQ(Number(bytes, 32, 2), kFrameSize) << "bytes a frame";
    EXPECT_EQ(Number(bytes, 34, 2), 16U) << "bits";
    EXPECT_EQ(bytes.substr(36, 4), "data");
    EXPECT_EQ(Number(bytes, 40, 4), bytes.size() - kHeader);
    EXPECT_EQ((bytes.size() - kHeader) % kFrameSize, 0U);
}

TEST_P(ASound, LastsAsLongAsItsMoment) {
    const double seconds = static_cast<double>(Channel(name, 0).size()) / kRate;

    EXPECT_GE(seconds, GetParam().shortest);
    EXPECT_LE(seconds, GetParam().longest);
}

TEST_P(ASound, PeaksBetweenMinus6AndMinus1Decibels) {
    const double peak = std::max(Peak(Channel(name, 0)), Peak(Channel(name, 1)));

    EXPECT_GE(20 * std::log10(peak), -6);
    EXPECT_LE(20 * std::log10(peak), -1);
}

TEST_P(ASound, IsNowhereCutFlat) {
    for (std::size_t channel : {0U, 1U}) {
        const Samples samples = Channel(name, channel);
        const auto [low, high] = std::minmax_element(samples.begin(), samples.end());

        // A round top of this pitch holds its highest value for one or two samples.
        for (double extreme : {*low, *high}) {
            EXPECT_EQ(std::search_n(samples.begin(), samples.end(), 4, extreme), samples.end());
        }
    }
}

TEST_P(ASound, RestsOnZero) {
    for (std::size_t channel : {0U, 1U}) {
        double sum = 0;
        const Samples samples = Channel(name, channel);
        for (double sample : samples) sum += sample;

        EXPECT_LT(std::abs(sum / static_cast<double>(samples.size())), 0.001);
    }
}

TEST_P(ASound, FadesInAndOutWithoutAClick) {
    for (std::size_t channel : {0U, 1U}) {
        const Samples samples = Channel(name, channel);
        const double end = static_cast<double>(samples.size()) / kRate;

        EXPECT_LE(std::abs(samples.front()), 2 / 32768.0);
        EXPECT_LE(std::abs(samples.back()), 2 / 32768.0);
        EXPECT_LT(Peak(samples, 0, 0.005), 0.01) << "the first 5 ms";
        EXPECT_LT(Peak(samples, end - 0.02), 0.001) << "the last 20 ms";
        for (double time = end - 0.3; time < end - 0.1; time += 0.05) {
            // The trees' echoes may make up to a quarter of a ripple.
            EXPECT_LT(Peak(samples, time + 0.05, time + 0.1), 1.25 * Peak(samples, time, time + 0.05))
                << "louder again " << end - time << " s before the end";
        }
    }
}

TEST_P(ASound, HasNoClickWithin) {
    for (std::size_t channel : {0U, 1U}) {
        const Samples samples = Channel(name, channel);
        double step = 0;
        for (std::size_t i = 1; i < samples.size(); ++i)
            step = std::max(step, std::abs(samples[i] - samples[i - 1]));

        // The steepest that the voice gets: a tone of 1.3 kHz at its peak would step by this.
        EXPECT_LT(step, 0.18 * Peak(samples));
    }
}

TEST_P(ASound, IsSungInAnOwlsRange) {
    const std::vector<double> melody = Melody(Middle(name));

    ASSERT_GE(melody.size(), 10U);
    for (double hertz : melody) {
        EXPECT_GE(hertz, 250);
        EXPECT_LE(hertz, 600);
    }
}

TEST_P(ASound, HasSoftBreathInTheVoice) {
    const Samples samples = Middle(name);
    const Samples air = Filtered(Filtered(samples, HighPass(2500, 0.71)), HighPass(2500, 0.71));

    // Above 2.5 kHz the voice has nothing worth mentioning: what is there is breath.
    const double breath = Decibels(Power(air, 0, air.size()) / Power(samples, 0, samples.size()));
    EXPECT_GT(breath, -45);
    EXPECT_LT(breath, -25);
}

TEST(Sounds, AreWithin3DecibelsOfOneAnothersLoudness) {
    std::vector<double> loudness;
    loudness.reserve(kSounds.size());
    for (const Limits& sound : kSounds) loudness.push_back(Loudness(sound.name));

    const auto [low, high] = std::minmax_element(loudness.begin(), loudness.end());
    EXPECT_LE(*high - *low, 3) << testing::PrintToString(loudness);
}

TEST(Sounds, AllHaveLimits) {
    std::set<std::string> known;
    for (const Limits& sound : kSounds) known.insert(sound.name + ".wav");

    const std::vector<std::string> baked = NamesFrom(".sco");
    EXPECT_EQ(std::set<std::string>(baked.begin(), baked.end()), known);
}

TEST(Sounds, AllDiffer) {
    for (const Limits& one : kSounds) {
        for (const Limits& other : kSounds) {
            if (one.name == other.name) continue;
            EXPECT_NE(Bytes(File(one.name)), Bytes(File(other.name))) << one.name << " and " << other.name;
        }
    }
}

TEST(Sounds, AreTheSameBytesAtEveryBake) {
    std::string folder = testing::TempDir() + "sounds.XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);

    const std::string command = "'" ULMARO_BAKE_SOUNDS "' '" + folder + "'";
    const int status = std::system(command.c_str());

    EXPECT_EQ(status, 0);
    for (const Limits& sound : kSounds) {
        const std::string again = Bytes(std::filesystem::path(folder) / (sound.name + ".wav"));
        EXPECT_FALSE(again.empty()) << sound.name;
        EXPECT_TRUE(again == Bytes(File(sound.name))) << sound.name;
    }
    std::filesystem::remove_all(folder);
}

TEST(TheLaugh, HootsOnEverySecondShakeOfTheOwl) {
    const std::vector<Hoot> hoots = Hoots(Middle("laugh"));

    EXPECT_GE(hoots.size(), 15U);
    for (const Hoot& hoot : hoots) {
        // A hoot swells for up to 0.12 s before it counts as begun.
        const int shake = 2 * static_cast<int>(Shakes(hoot.begin) / 2);
        EXPECT_LT(hoot.begin - ShakeTime(shake), 0.12) << "the hoot at " << hoot.begin << " s";
    }
}

TEST(TheLaugh, SlowsDown) {
    std::vector<double> gaps;
    const std::vector<Hoot> hoots = Hoots(Middle("laugh"));
    for (std::size_t i = 1; i < hoots.size(); ++i) gaps.push_back(hoots[i].begin - hoots[i - 1].begin);
    ASSERT_GE(gaps.size(), 14U);

    // The medians of the first and the last seven, so that the gasps between the bouts do not count.
    std::nth_element(gaps.begin(), gaps.begin() + 3, gaps.begin() + 7);
    std::nth_element(gaps.end() - 7, gaps.end() - 4, gaps.end());
    const double early = gaps[3], late = *(gaps.end() - 4);

    EXPECT_NEAR(early, 0.45, 0.05);
    EXPECT_GT(late, 1.4 * early);
}

TEST(TheLaugh, EndsWithABreathOut) {
    const Samples laugh = Middle("laugh");
    const std::vector<Hoot> hoots = Hoots(laugh);
    ASSERT_FALSE(hoots.empty());
    const double last = hoots.back().end;
    const auto second = [](double time) { return static_cast<std::size_t>(time * kRate); };

    EXPECT_LT(last, 14.2);
    const double breath = Decibels(Power(laugh, second(last + 0.3), second(0.4)));
    EXPECT_GT(breath, -50);
    EXPECT_LT(breath, -25);
    EXPECT_EQ(Pitch(laugh, last + 0.5), 0) << "a breath has no pitch";
}

TEST(TheNotification, IsACallOfTwoOrThreeNotes) {
    const std::size_t notes = Hoots(Middle("notify")).size();

    EXPECT_GE(notes, 2U);
    EXPECT_LE(notes, 3U);
}

TEST(TheQuestion, RisesAsAQuestionDoes) {
    const std::vector<double> melody = Melody(Middle("question"));
    ASSERT_FALSE(melody.empty());

    EXPECT_GT(melody.back(), 1.5 * melody.front());
}

TEST(ARightAnswer, ClimbsAMajorChord) {
    const std::vector<double> melody = Melody(Middle("right"));
    ASSERT_FALSE(melody.empty());

    // An octave up, and then to rest a fifth above where it began.
    EXPECT_NEAR(*std::max_element(melody.begin(), melody.end()) / melody.front(), 2, 0.1);
    EXPECT_NEAR(melody.back() / melody.front(), 1.5, 0.1);
}

TEST(AWrongAnswer, IsMetByThreeMelodiesThatSink) {
    for (const char* name : {"wrong_1", "wrong_2", "wrong_3"}) {
        const std::vector<double> melody = Melody(Middle(name));
        ASSERT_FALSE(melody.empty());

        EXPECT_LT(melody.back(), 0.9 * melody.front()) << name;
    }
}

}  // namespace
