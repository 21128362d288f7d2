// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl's voice, assets/sounds/owl.orc, by itself: csound bakes scores of a hoot or two, and what they
// sound like is measured.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/tools/sound_measures.h"

namespace {

using namespace sound;

constexpr double kStart = 0.02;  // s: where the hoots of the scores begin

/// A folder that goes with the test.
class Workshop {
  public:
    Workshop() {
        std::string folder = testing::TempDir() + "voice.XXXXXX";
        if (mkdtemp(folder.data()) != nullptr) folder_ = folder;
    }
    ~Workshop() { std::filesystem::remove_all(folder_); }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    [[nodiscard]] std::string Path(const std::string& name) const { return folder_ + "/" + name; }

  private:
    std::string folder_;
};

/// Bakes a score in the wood, which lasts that many seconds.
Stereo Baked(const std::string& score, double length) {
    const Workshop workshop;
    std::ofstream(workshop.Path("test.sco")) << score << "\ni \"Wood\" 0 " << length << " -6 0.05\ne\n";
    const std::string command = "cd '" + workshop.Path("") +
                                "' && HOME=. '" ULMARO_CSOUND
                                "' --nodisplays --messagelevel=0 --wave --format=short --nopeaks -o test.wav "
                                "'" ULMARO_ORCHESTRA "' test.sco >log 2>&1 </dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << Bytes(workshop.Path("log"));
    return Read(workshop.Path("test.wav"));
}

/// A hoot of the score, at one pitch throughout.
struct Steady {
    double length = 1;
    double hertz = 400;
    double mouth = 0;
    double start = kStart;
};

std::string Line(const Steady& hoot) {
    const std::string hertz = std::to_string(hoot.hertz) + " ";
    return "i \"Hoot\" " + std::to_string(hoot.start) + " " + std::to_string(hoot.length) + " " + hertz +
           hertz + hertz + "0 " + std::to_string(hoot.mouth) + " 0\n";
}

/// Bakes a hoot of a second by itself.
Stereo BakedHoot(const Steady& hoot) {
    return Baked(Line(hoot), 1.5);
}

/// Returns the hoot where it is held, in the middle.
Samples Held(const Stereo& sound) {
    return Part(Middle(sound), kStart + 0.25, kStart + 0.65);
}

TEST(TheVoice, GetsBrighterAsTheMouthOpens) {
    const double closed = Centroid(Held(BakedHoot({.mouth = 0})));
    const double half = Centroid(Held(BakedHoot({.mouth = 0.5})));
    const double open = Centroid(Held(BakedHoot({.mouth = 1})));

    EXPECT_GE(open - closed, 150) << "from " << closed << " Hz to " << open;
    EXPECT_GT(half, closed + 30);
    EXPECT_LT(half, open - 30);
}

TEST(TheVoice, GetsNoSofterAsTheMouthOpens) {
    double level = -100, loudness = -100;
    for (const double mouth : {0.0, 0.5, 1.0}) {
        const Stereo hoot = BakedHoot({.mouth = mouth});

        EXPECT_GE(Level(Held(hoot)), level) << "mouth " << mouth;
        EXPECT_GE(LoudnessOf(hoot).integrated, loudness) << "mouth " << mouth;
        level = Level(Held(hoot));
        loudness = LoudnessOf(hoot).integrated;
    }
}

TEST(TheVoice, HasAThroatThatIsTunedToTheOctaveAboveTheNote) {
    for (const double hertz : {280.0, 400.0, 540.0}) {
        const Samples hoot = Held(BakedHoot({.hertz = hertz}));
        const double octave = HarmonicLevel(hoot, hertz, 2) - HarmonicLevel(hoot, hertz, 1);

        // Pulses alone would have it 9 to 12 dB below the note.
        EXPECT_GT(octave, -9) << hertz << " Hz";
        EXPECT_LT(octave, -4) << hertz << " Hz";
    }
}

TEST(TheVoice, HasMostOfItsPowerWhereOwlsHaveIt) {
    for (const double hertz : {280.0, 400.0, 540.0}) {
        const Samples hoot = Held(BakedHoot({.hertz = hertz, .mouth = 0.2}));

        // The fundamental leads, and from the third harmonic on there is little: an owl is no reed.
        EXPECT_LT(HarmonicLevel(hoot, hertz, 2), HarmonicLevel(hoot, hertz, 1)) << hertz << " Hz";
        for (const int n : {3, 4, 5}) {
            EXPECT_LT(HarmonicLevel(hoot, hertz, n) - HarmonicLevel(hoot, hertz, 1), -15)
                << hertz << " Hz, " << n;
        }
    }
}

TEST(TheVoice, LetsTheBreathPulse) {
    for (const double hertz : {280.0, 400.0, 540.0}) {
        EXPECT_GT(BreathPulse(Held(BakedHoot({.hertz = hertz})), hertz), 0.3) << hertz << " Hz";
    }
}

TEST(TheVoice, VariesFromHootToHoot) {
    constexpr int kHoots = 8;
    std::string score;
    for (int i = 0; i < kHoots; ++i) score += Line({.length = 0.4, .mouth = 0.3, .start = kStart + i});
    const Samples hoots = Middle(Baked(score, kHoots));

    std::vector<double> levels, lengths, colors;
    for (int i = 0; i < kHoots; ++i) {
        const Samples one = Part(hoots, i, i + 0.9);
        const std::vector<Hoot> found = Hoots(one, 0.5);
        ASSERT_EQ(found.size(), 1U);
        levels.push_back(Level(Part(one, 0.1, 0.3)));
        lengths.push_back(found[0].to - found[0].from);
        colors.push_back(Centroid(Part(one, 0.1, 0.3)));
    }
    const auto spread = [](const std::vector<double>& values) {
        const auto [low, high] = std::minmax_element(values.begin(), values.end());
        return *high - *low;
    };
    // Noise alone spreads them by 0.4 dB, 14 ms and 17 Hz.
    EXPECT_GT(spread(levels), 0.8) << "dB";
    EXPECT_LT(spread(levels), 3) << "dB";
    EXPECT_GT(spread(lengths), 0.03) << "s";
    EXPECT_GT(spread(colors), 25) << "Hz";
}

TEST(TheVoice, SoundsWholeHoweverShortTheHoot) {
    const double long_peak = Peak(Middle(BakedHoot({})));
    for (const double length : {0.02, 0.05, 0.1, 0.15, 0.18, 0.187, 0.19, 0.25}) {
        const Samples hoot = Middle(BakedHoot({.length = length}));
        const Samples swell = Swell(hoot);
        const double loudest = *std::max_element(swell.begin(), swell.end());
        const auto at = [&](double time) { return swell.at(static_cast<std::size_t>(time * kSwellRate)); };

        EXPECT_GT(Peak(hoot), 0.5 * long_peak) << length << " s";
        EXPECT_LT(Peak(hoot), 1.5 * long_peak) << length << " s";
        EXPECT_LT(at(kStart + length + 0.05), 0.3 * loudest) << length << " s: the wood's echoes alone";
        EXPECT_LT(Peak(hoot, kStart + length - 0.002, kStart + length + 0.002), 0.35 * Peak(hoot))
            << length << " s: the voice is cut off";
    }
}

}  // namespace
