// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl's sounds as the build bakes them: the files that the program plays. What can be measured of how
// they sound is measured here: lengths, loudness, notes, and that the laugh goes with the owl's shaking on
// the screen. The voice by itself is tested in owl_orc_test.cpp.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tests/tools/data_files.h"
#include "tests/tools/sound_measures.h"

namespace {

using namespace sound;

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
    {"laugh", 15.4, 15.6}, {"notify", 0.5, 2.0},  {"question", 0.5, 3.0}, {"right", 0.5, 3.0},
    {"wrong_1", 0.5, 2.0}, {"wrong_2", 0.5, 2.0}, {"wrong_3", 0.5, 2.0},
};

/// Returns the baked file of a sound.
std::filesystem::path File(const std::string& name) {
    return std::filesystem::path(ULMARO_DATA) / (name + ".wav");
}

/// Returns the samples of both channels.
std::vector<Samples> Channels(const std::string& name) {
    const Stereo sound = Read(File(name));
    return {sound.left, sound.right};
}

/// Returns the two channels of a sound as one.
Samples Middle(const std::string& name) {
    return sound::Middle(Read(File(name)));
}

/// Returns the hoots of a sound that are not much softer than its loudest.
std::vector<Hoot> OwlHoots(const Samples& samples) {
    return sound::Hoots(samples, 0.28);
}

/// Returns the pitches of the hoots, every 20 ms. Where one note runs into the next there is no pitch, and so
/// no entry.
std::vector<double> Melody(const Samples& samples) {
    std::vector<double> melody;
    for (const Hoot& hoot : OwlHoots(samples)) {
        for (double time = hoot.from; time < hoot.to; time += 0.02) {
            const double hertz = Pitch(samples, time);
            if (hertz > 0) melody.push_back(hertz);
        }
    }
    return melody;
}

/// Returns the pitch of each hoot at its loudest.
std::vector<double> Notes(const Samples& samples) {
    std::vector<double> notes;
    for (const Hoot& hoot : OwlHoots(samples)) notes.push_back(Pitch(samples, hoot.loudest));
    return notes;
}

/// Returns the difference between the largest and the smallest.
double Spread(const std::vector<double>& values) {
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    return *high - *low;
}

/// Returns the second in which the n-th shake of the laughing owl begins (from 0), by its sine's angle,
/// 30 t / (1 + 0.025 t). A quarter of a shake later the owl is at its top.
double ShakeTime(double shake) {
    const double angle = 2 * std::numbers::pi * shake;
    return angle / (30 - 0.025 * angle);
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
    const double seconds = static_cast<double>(Middle(name).size()) / kRate;

    EXPECT_GE(seconds, GetParam().shortest);
    EXPECT_LE(seconds, GetParam().longest);
}

TEST_P(ASound, IsAsLoudAsADesktopsSounds) {
    EXPECT_NEAR(LoudnessOf(Read(File(name))).integrated, -20, 1.5) << "LUFS";
}

TEST_P(ASound, IsNowhereCutFlat) {
    for (const Samples& samples : Channels(name)) {
        const auto [low, high] = std::minmax_element(samples.begin(), samples.end());

        // A round top of this pitch holds its highest value for one or two samples.
        for (double extreme : {*low, *high}) {
            EXPECT_EQ(std::search_n(samples.begin(), samples.end(), 4, extreme), samples.end());
        }
    }
}

TEST_P(ASound, RestsOnZero) {
    for (const Samples& samples : Channels(name)) {
        double sum = 0;
        for (double sample : samples) sum += sample;

        EXPECT_LT(std::abs(sum / static_cast<double>(samples.size())), 0.001);
    }
}

TEST_P(ASound, FadesInAndOutWithoutAClick) {
    for (const Samples& samples : Channels(name)) {
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
    for (const Samples& samples : Channels(name)) {
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
    const Samples air = HighPassed(HighPassed(samples, 2500), 2500);

    // Above 2.5 kHz the voice has nothing worth mentioning: what is there is breath.
    const double breath = Level(air) - Level(samples);
    EXPECT_GT(breath, -45);
    EXPECT_LT(breath, -25);
}

TEST(Sounds, AreEquallyLoudOnGoodSpeakersAndOnALaptops) {
    std::vector<double> good, laptop;
    for (const Limits& limits : kSounds) {
        const Stereo sound = Read(File(limits.name));
        good.push_back(LoudnessOf(sound).integrated);
        laptop.push_back(LoudnessOf(OnALaptop(sound)).integrated);
    }

    EXPECT_LE(Spread(good), 2) << testing::PrintToString(good);
    EXPECT_LE(Spread(laptop), 3) << testing::PrintToString(laptop);
}

TEST(Sounds, ThatComeUnaskedAreNowhereLoud) {
    EXPECT_LE(LoudnessOf(Read(File("notify"))).momentary, -16) << "LUFS";
    EXPECT_LE(LoudnessOf(Read(File("question"))).momentary, -16) << "LUFS";
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

/// The owl fades from here on, and from kBreath on there is only its last breath.
constexpr double kFaded = 13.5, kBreath = 14.1;

TEST(TheLaugh, HootsOnEveryShakeOfTheOwlUntilItFades) {
    const std::vector<Hoot> hoots = sound::Hoots(Middle("laugh"), 0.1);
    ASSERT_FALSE(hoots.empty());

    for (int shake = 0; ShakeTime(shake) < kFaded; ++shake) {
        const double start = ShakeTime(shake), top = ShakeTime(shake + 0.25);
        const auto off = [&](const Hoot& hoot) {
            return std::max(std::abs(hoot.begin - start), std::abs(hoot.loudest - top));
        };
        double closest = 1;
        for (const Hoot& hoot : hoots) closest = std::min(closest, off(hoot));

        EXPECT_LE(closest, 0.06) << "shake " << shake << ", at " << start << " s";
    }
}

TEST(TheLaugh, HasNoHootBesideTheShakes) {
    for (const Hoot& hoot : sound::Hoots(Middle("laugh"), 0.1)) {
        int shake = 0;
        while (ShakeTime(shake + 0.5) < hoot.begin) ++shake;

        EXPECT_NEAR(hoot.begin, ShakeTime(shake), 0.06);
    }
}

TEST(TheLaugh, ChucklesBetweenItsBouts) {
    const std::vector<Hoot> hoots = sound::Hoots(Middle("laugh"), 0.1);

    // A chuckle is at most two thirds as high as the loud hoots around it. It fades after 10 s.
    int chuckles = 0, gaps = 0;
    bool before = false;
    for (const Hoot& hoot : hoots) {
        if (hoot.begin > 10) break;
        double around = 0;
        for (const Hoot& other : hoots) {
            if (std::abs(other.begin - hoot.begin) < 1) around = std::max(around, other.level);
        }
        const bool chuckle = hoot.level < 0.67 * around;
        chuckles += chuckle ? 1 : 0;
        gaps += chuckle && !before ? 1 : 0;
        before = chuckle;
    }
    EXPECT_GE(gaps, 3);
    EXPECT_GE(chuckles, 6);
}

TEST(TheLaugh, IsNeverSilentForLongBeforeItsLastBreath) {
    const Samples swell = Swell(Part(Middle("laugh"), 0, kBreath));
    const double loudest = *std::max_element(swell.begin(), swell.end());

    double silence = 0, longest = 0;
    for (const double value : swell) {
        silence = value < 0.03 * loudest ? silence + 1 / kSwellRate : 0;
        longest = std::max(longest, silence);
    }
    EXPECT_LE(longest, 0.7);
}

TEST(TheLaugh, SwellsAndSinksAtTheShakesPaceAboveAll) {
    EXPECT_GE(ShareOfModulation(Part(Middle("laugh"), 0, 5), 3, 6), 0.4);
}

TEST(TheLaugh, IsOfHootsThatAreNotAlike) {
    const Samples laugh = Middle("laugh");
    const std::vector<Hoot> hoots = OwlHoots(laugh);
    ASSERT_GE(hoots.size(), 20U);

    EXPECT_LE(LikenessOfTunes(laugh, hoots), 0.75);
}

TEST(TheLaugh, SlowsDown) {
    std::vector<double> gaps;
    const std::vector<Hoot> hoots = OwlHoots(Middle("laugh"));
    for (std::size_t i = 1; i < hoots.size(); ++i) gaps.push_back(hoots[i].begin - hoots[i - 1].begin);
    ASSERT_GE(gaps.size(), 14U);

    // The medians of the first and the last seven.
    std::nth_element(gaps.begin(), gaps.begin() + 3, gaps.begin() + 7);
    std::nth_element(gaps.end() - 7, gaps.end() - 4, gaps.end());
    const double early = gaps[3], late = *(gaps.end() - 4);

    EXPECT_NEAR(early, 0.215, 0.02);
    EXPECT_GT(late, 1.5 * early);
}

TEST(TheLaugh, EndsWithABreathOut) {
    const Samples laugh = Middle("laugh");
    const std::vector<Hoot> hoots = sound::Hoots(laugh, 0.1);
    ASSERT_FALSE(hoots.empty());

    EXPECT_LT(hoots.back().to, kBreath);
    const double breath = Level(Part(laugh, kBreath + 0.2, kBreath + 0.6));
    EXPECT_GT(breath, -55);
    EXPECT_LT(breath, -30);
    EXPECT_EQ(Pitch(laugh, kBreath + 0.4), 0) << "a breath has no pitch";
}

TEST(TheNotification, IsACallOfTwoPitches) {
    const std::vector<double> notes = Notes(Middle("notify"));
    ASSERT_GE(notes.size(), 2U);

    std::set<double> pitches;
    for (const double note : notes) pitches.insert(ClosestNote(note));
    EXPECT_EQ(pitches.size(), 2U) << testing::PrintToString(notes);
}

TEST(TheNotification, EndsOnALevelNoteThatIsInTune) {
    const Samples notify = Middle("notify");
    const std::vector<Hoot> hoots = OwlHoots(notify);
    ASSERT_FALSE(hoots.empty());
    const double note = ClosestNote(Pitch(notify, hoots.back().loudest));

    for (double time = hoots.back().from; time < hoots.back().to; time += 0.01) {
        EXPECT_LE(std::abs(Cents(Pitch(notify, time), note)), 20) << "at " << time << " s";
    }
}

TEST(TheQuestion, EndsRising) {
    const Samples question = Middle("question");
    const std::vector<Hoot> hoots = OwlHoots(question);
    ASSERT_GE(hoots.size(), 2U);

    const auto rise = [&](const Hoot& hoot) {
        return Cents(Pitch(question, hoot.to), Pitch(question, hoot.from));
    };
    EXPECT_GT(rise(hoots[hoots.size() - 2]), 400) << "the long hoot, in cents";
    EXPECT_GT(rise(hoots.back()), 50) << "the hop that is the hat, in cents";

    const std::vector<double> melody = Melody(question);
    EXPECT_GT(melody.back(), 0.95 * *std::max_element(melody.begin(), melody.end()));
}

TEST(TheQuestion, OpensUnlikeARightAnswer) {
    const std::vector<double> question = Notes(Middle("question")), right = Notes(Middle("right"));
    ASSERT_GE(question.size(), 2U);
    ASSERT_GE(right.size(), 2U);

    EXPECT_GT(std::abs(Cents(question[0], right[0])), 200);
    EXPECT_GT(std::abs(Cents(question[1], question[0]) - Cents(right[1], right[0])), 200) << "the first step";
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
