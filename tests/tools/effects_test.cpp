// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The particle effects as the build bakes them, and the tool that bakes them.
//
// The files are read here word by word, independently of the program, and strictly where the program's own
// reader checks nothing.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tools/data_files.h"

namespace {

namespace fs = std::filesystem;

/// The lines of an emitter after its texels, and how many numbers each has.
struct Line {
    const char* keyword;
    std::size_t numbers;
};

constexpr std::array kLines = {Line{"particles_limit:", 1},
                               Line{"spawn_time:", 2},
                               Line{"spawn_particles:", 2},
                               Line{"spawn_position:", 6},
                               Line{"spawn_direction:", 6},
                               Line{"particles_acceleration:", 3},
                               Line{"particles_rotation:", 2},
                               Line{"particle_random_rot:", 1},
                               Line{"particles_speed:", 2},
                               Line{"particles_timelife:", 2},
                               Line{"particles_scale:", 2},
                               Line{"particles_color_start:", 6},
                               Line{"particles_color_end:", 6},
                               Line{"billboarding:", 1},
                               Line{"time_delay:", 1},
                               Line{"time_step:", 1},
                               Line{"loop:", 1}};

/// One emitter of a file.
struct Emitter {
    int width = 0, height = 0, blend = 0;
    std::vector<int> texels;                             ///< R, G, B, A; bottom row first
    std::map<std::string, std::vector<double>> numbers;  ///< by keyword

    const std::vector<double>& Of(const std::string& keyword) const { return numbers.at(keyword); }

    /// Returns a channel (0 .. 3) of the texel that holds a point of the texture, u and v 0 .. 1, v upward.
    int At(double u, double v, std::size_t channel) const {
        const auto x = static_cast<std::size_t>(u * width);
        const auto y = static_cast<std::size_t>(v * height);
        return texels.at((y * static_cast<std::size_t>(width) + x) * 4 + channel);
    }
    int Alpha(double u, double v) const { return At(u, v, 3); }

    double MostLive() const {
        const double bursts = std::ceil(Of("particles_timelife:")[1] / Of("spawn_time:")[0]) + 1;
        return std::min(Of("particles_limit:")[0], bursts * Of("spawn_particles:")[1]);
    }
};

/// A file; `error` says where it stops being one, and is empty for a good one.
struct Effect {
    std::vector<Emitter> emitters;
    std::string error;
};

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Reads the words of one emitter, from its texture's size on. Returns the word that is wrong, or nothing.
std::string ReadEmitter(std::istream& in, Emitter& emitter) {
    if (!(in >> emitter.width >> emitter.height >> emitter.blend)) return "the texture's size";
    emitter.texels.resize(static_cast<std::size_t>(emitter.width * emitter.height) * 4);
    for (int& byte : emitter.texels) {
        if (!(in >> byte) || byte < 0 || byte > 255) return "a texel number";
    }
    for (const Line& line : kLines) {
        std::string keyword;
        if (!(in >> keyword) || keyword != line.keyword) return keyword + " for " + line.keyword;
        std::vector<double>& numbers = emitter.numbers[keyword];
        numbers.resize(line.numbers);
        for (double& number : numbers) {
            if (!(in >> number)) return "a number of " + keyword;
        }
    }
    return {};
}

Effect ParseEffect(const std::string& text) {
    Effect effect;
    std::istringstream in(text);
    std::string magic;
    std::string ver;
    int version = 0;
    if (!(in >> magic >> ver >> version) || text.rfind("ZFX ver:", 0) != 0 || version != 2) {
        effect.error = "the header";
        return effect;
    }
    for (std::string word; effect.error.empty() && in >> word;) {
        if (word != "texture:") {
            effect.error = word + " for texture:";
            break;
        }
        effect.emitters.emplace_back();
        effect.error = ReadEmitter(in, effect.emitters.back());
    }
    return effect;
}

// ---- Where particles go ----

/// How the program draws an effect: the place on the canvas and the size.
struct Showing {
    std::string file;
    double x = 0, y = 0;  ///< canvas units
    double size = 0;
    double eyes = 0;               ///< the upper edge of the owl's eyes meanwhile, canvas units
    int most_bright_at_birth = 0;  ///< of 255: the most that a particle may change the scene as it is born
};

std::ostream& operator<<(std::ostream& out, const Showing& showing) {
    return out << showing.file;
}

const Showing kSleep = {"sleep.zfx", 271 + 36, 265 + 130, 50, 352, 0};
const Showing kSmoke = {"smoke.zfx", 271 - 8, 265 + 185, 45, 418, 160};

struct Point {
    double x, y;
};

/// Half the edge of an emitter's largest particle, canvas units.
double LargestHalf(const Showing& showing, const Emitter& emitter) {
    const auto& scale = emitter.Of("particles_scale:");
    return std::max(scale[0], scale[1]) * showing.size;
}

/// Calls visit(point, age) along the ways of the particles that start from the ends of every range.
template <typename Visit>
void VisitWays(const Showing& showing, const Emitter& emitter, Visit visit) {
    const auto& position = emitter.Of("spawn_position:");
    const auto& direction = emitter.Of("spawn_direction:");
    const auto& acceleration = emitter.Of("particles_acceleration:");
    const double life = emitter.Of("particles_timelife:")[1];
    for (unsigned corner = 0; corner < 32; ++corner) {
        const auto end = [&](unsigned bit) { return (corner >> bit & 1U) * std::size_t{3}; };
        const Point start = {showing.x + position[0 + end(0)] * showing.size * 2,
                             showing.y + position[1 + end(1)] * showing.size * 2};
        const Point way = {direction[0 + end(2)], direction[1 + end(3)]};
        const double speed =
            emitter.Of("particles_speed:")[corner >> 4 & 1U] * showing.size / std::hypot(way.x, way.y);
        for (int step = 0; step <= 50; ++step) {
            const double t = life * step / 50;
            const double fall = t * t / 2 * showing.size / 2;
            visit(Point{start.x + way.x * speed * t + acceleration[0] * fall,
                        start.y + way.y * speed * t + acceleration[1] * fall},
                  step / 50.0);
        }
    }
}

Effect Load(const Showing& showing) {
    return ParseEffect(ReadFile(fs::path(ULMARO_DATA) / showing.file));
}

// ---- The files ----

class BakedEffect : public testing::TestWithParam<Showing> {
  protected:
    void SetUp() override {
        ASSERT_EQ(effect_.error, "");
        ASSERT_FALSE(effect_.emitters.empty());
    }

    const Effect effect_ = Load(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Effects, BakedEffect, testing::Values(kSleep, kSmoke),
                         [](const auto& test) { return fs::path(test.param.file).stem().string(); });

TEST(BakedEffects, AreAllTestedHere) {
    std::set<std::string> tested;
    for (const Showing& showing : {kSleep, kSmoke}) tested.insert(showing.file);

    std::set<std::string> baked;
    for (const DataFile& file : DataFilesFrom(".txt")) baked.insert(file.name);
    EXPECT_EQ(baked, tested);
}

TEST_P(BakedEffect, HasAllLinesOfEveryEmitterInOrder) {
    EXPECT_EQ(effect_.error, "");
    for (const Emitter& emitter : effect_.emitters) EXPECT_EQ(emitter.numbers.size(), kLines.size());
}

TEST_P(BakedEffect, NeverEnds) {
    for (const Emitter& emitter : effect_.emitters) EXPECT_EQ(emitter.Of("loop:")[0], 1);
}

TEST_P(BakedEffect, KeepsItsParticlesRollsStill) {
    for (const Emitter& emitter : effect_.emitters) EXPECT_EQ(emitter.Of("particle_random_rot:")[0], 0);
}

TEST_P(BakedEffect, ReachesNoEmittersLimitAndHas40LiveParticlesAtMost) {
    double live = 0;

    for (const Emitter& emitter : effect_.emitters) {
        const double needed = std::ceil(emitter.Of("particles_timelife:")[1] / emitter.Of("spawn_time:")[0]) *
                              emitter.Of("spawn_particles:")[1];
        EXPECT_GT(emitter.Of("spawn_time:")[0], 0);
        EXPECT_GE(emitter.Of("particles_limit:")[0], needed);
        live += emitter.MostLive();
    }

    EXPECT_LE(live, 40);
}

TEST_P(BakedEffect, HasColoursThatDoNotWrapRound) {
    for (const Emitter& emitter : effect_.emitters) {
        for (const char* keyword : {"particles_color_start:", "particles_color_end:"}) {
            for (const double value : emitter.Of(keyword)) {
                EXPECT_GE(value, 0);
                EXPECT_LE(value, 255);
            }
        }
    }
}

TEST_P(BakedEffect, HasSmallTextures) {
    int texels = 0;

    for (const Emitter& emitter : effect_.emitters) texels += emitter.width * emitter.height;

    EXPECT_LE(texels, 2 * 64 * 64) << "its numbers are read one by one at start-up";
}

// The texture begins again beyond its edges.
TEST_P(BakedEffect, HasClearEdgesRoundEveryTexture) {
    for (const Emitter& emitter : effect_.emitters) {
        for (double t = 0; t < 1; t += 1.0 / emitter.width) {
            const std::array edge = {emitter.Alpha(t, 0), emitter.Alpha(t, 0.999), emitter.Alpha(0, t),
                                     emitter.Alpha(0.999, t)};
            EXPECT_LE(*std::max_element(edge.begin(), edge.end()), 1) << emitter.width << " pixels, at " << t;
        }
    }
}

// The particles' drawing is white, so every texel is: darker ones would be premultiplied or not bled.
TEST_P(BakedEffect, HasStraightAlphaAndColourInClearTexels) {
    for (const Emitter& emitter : effect_.emitters) {
        int clear = 0;
        int faint = 0;
        for (std::size_t i = 0; i < emitter.texels.size(); i += 4) {
            for (std::size_t c = 0; c < 3; ++c) EXPECT_GE(emitter.texels[i + c], 254);
            if (emitter.texels[i + 3] == 0) ++clear;
            if (emitter.texels[i + 3] > 0 && emitter.texels[i + 3] < 250) ++faint;
        }
        EXPECT_GT(clear, 0);
        EXPECT_GT(faint, 0);
    }
}

// ---- What they look like ----

TEST_P(BakedEffect, IsNeverOverTheEyes) {
    for (const Emitter& emitter : effect_.emitters) {
        const double half = LargestHalf(GetParam(), emitter);
        VisitWays(GetParam(), emitter, [&](Point point, double age) {
            EXPECT_GT(point.y - half, GetParam().eyes) << "x " << point.x << ", age " << age;
        });
    }
}

TEST_P(BakedEffect, StaysOnTheCanvasAsLongAsItCanBeSeen) {
    for (const Emitter& emitter : effect_.emitters) {
        VisitWays(GetParam(), emitter, [&](Point point, double age) {
            if (age > 0.5) return;
            EXPECT_TRUE(0 < point.x && point.x < 512 && point.y < 512) << point.x << ", " << point.y;
        });
    }
}

// A particle is born with full alpha. So its light begins black, or its texture is thin.
TEST_P(BakedEffect, BringsItsParticlesInSoftly) {
    for (const Emitter& emitter : effect_.emitters) {
        const auto& start = emitter.Of("particles_color_start:");
        int alpha = 0;
        for (std::size_t i = 3; i < emitter.texels.size(); i += 4) alpha = std::max(alpha, emitter.texels[i]);
        const double light = *std::max_element(start.begin(), start.end()) * alpha / 255;
        EXPECT_LE(light, GetParam().most_bright_at_birth);
    }
}

/// A letter's way is made of three thirds of three emitters each; the last emitter is that of the stars.
class SleepEffect : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(effect_.error, "");
        ASSERT_EQ(effect_.emitters.size(), kLetters + 1);
    }

    static constexpr std::size_t kLetters = 9;
    const Effect effect_ = Load(kSleep);
};

TEST_F(SleepEffect, ShowsLettersThatStandUpright) {
    for (std::size_t i = 0; i < kLetters; ++i) {
        const Emitter& letter = effect_.emitters[i];
        EXPECT_GT(letter.Alpha(0.5, 0.67), 160) << "the upper bar, size " << letter.width;
        EXPECT_GT(letter.Alpha(0.5, 0.32), 160) << "the lower bar, size " << letter.width;
        EXPECT_GT(letter.Alpha(0.5, 0.5), 160) << "the stroke between them";
        EXPECT_GT(letter.Alpha(0.6, 0.58), letter.Alpha(0.6, 0.42)) << "the stroke falls to the left";
        EXPECT_GT(letter.Alpha(0.4, 0.42), letter.Alpha(0.4, 0.58));
        EXPECT_LT(letter.Alpha(0.27, 0.53), 110) << "left of it";
        EXPECT_LT(letter.Alpha(0.75, 0.47), 110) << "right of it";
    }
}

TEST_F(SleepEffect, KeepsTheThreeParticlesOfALetterTogether) {
    for (std::size_t i = 0; i < kLetters; ++i) {
        const Emitter& first = effect_.emitters[i - i % 3];
        const Emitter& emitter = effect_.emitters[i];
        for (const char* keyword :
             {"spawn_time:", "spawn_position:", "spawn_direction:", "particles_acceleration:",
              "particles_rotation:", "particles_speed:", "time_delay:"}) {
            EXPECT_EQ(emitter.Of(keyword), first.Of(keyword)) << keyword;
        }
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(emitter.Of("spawn_position:")[axis], emitter.Of("spawn_position:")[axis + 3]);
            EXPECT_EQ(emitter.Of("spawn_direction:")[axis], emitter.Of("spawn_direction:")[axis + 3]);
        }
        for (const char* keyword : {"spawn_time:", "particles_speed:", "particles_timelife:"})
            EXPECT_EQ(emitter.Of(keyword)[0], emitter.Of(keyword)[1]) << keyword;
    }
}

TEST_F(SleepEffect, LetsALetterSwell) {
    for (std::size_t i = 1; i < kLetters; ++i) {
        const Emitter& before = effect_.emitters[i - 1];
        const Emitter& after = effect_.emitters[i];
        EXPECT_GE(after.Of("particles_scale:")[0], before.Of("particles_scale:")[0]) << i;
        if (i % 3 == 0) continue;
        EXPECT_GT(after.Of("particles_scale:")[0], before.Of("particles_scale:")[0]) << i;
        EXPECT_GT(after.Of("particles_timelife:")[0], before.Of("particles_timelife:")[0]) << i;
    }
}

TEST_F(SleepEffect, LetsTheThirdsOfALettersWayMeet) {
    const auto place = [](const Emitter& e, double t, std::size_t axis) {
        const auto& direction = e.Of("spawn_direction:");
        const double speed = e.Of("particles_speed:")[0] / std::hypot(direction[0], direction[1]);
        return e.Of("spawn_position:")[axis] * 100 + direction[axis] * speed * 50 * t +
               e.Of("particles_acceleration:")[axis] * 25 * t * t / 2;
    };

    for (std::size_t i = 3; i < kLetters; i += 3) {
        const Emitter& before = effect_.emitters[i - 3];
        const Emitter& after = effect_.emitters[i];
        EXPECT_EQ(after.Of("spawn_time:"), before.Of("spawn_time:"));
        const double later = after.Of("time_delay:")[0] - before.Of("time_delay:")[0];
        for (std::size_t axis = 0; axis < 2; ++axis) {
            EXPECT_NEAR(place(before, later + 0.3, axis), place(after, 0.3, axis), 0.1) << "third " << i / 3;
            EXPECT_GT(place(after, 0.3, axis), place(before, 0.3, axis) + 20) << "up and to the right";
        }
    }
}

TEST(SmokeEffect, BeginsAtTheHoleInTheHat) {
    const Effect effect = Load(kSmoke);
    ASSERT_EQ(effect.error, "");

    const Emitter& body = effect.emitters.front();

    EXPECT_NE(body.blend, 0) << "smoke covers";
    EXPECT_EQ(body.Of("time_delay:")[0], 0) << "smoke rises at once";
    for (const double place : body.Of("spawn_position:")) EXPECT_LT(std::abs(place * kSmoke.size * 2), 5);
    EXPECT_GT(body.Of("spawn_direction:")[1], 0) << "smoke rises";
}

// The bubble with the button that opens the quiz is at (435, 440), its radius 75.
TEST(SmokeEffect, KeepsOffTheThoughtBubble) {
    const Effect effect = Load(kSmoke);
    ASSERT_FALSE(effect.emitters.empty());

    for (const Emitter& emitter : effect.emitters) {
        const double half = LargestHalf(kSmoke, emitter);
        VisitWays(kSmoke, emitter, [&](Point point, double age) {
            EXPECT_GT(std::hypot(point.x - 435, point.y - 440), 75 + half) << "age " << age;
        });
    }
}

// ---- The tool ----

constexpr const char* kFields =
    "particles_limit: 3\nspawn_time: 1 2\nspawn_particles: 1 1\nspawn_position: 0 0 0 0 0 0\n"
    "spawn_direction: 0 1 0 0 1 0\nparticles_acceleration: 0 -0.5 0\nparticles_rotation: 0 0\n"
    "particle_random_rot: 0\nparticles_speed: 1 1\nparticles_timelife: 1 1\nparticles_scale: 1 1\n"
    "particles_color_start: 0 0 0 0 0 0\nparticles_color_end: 255 255 255 255 255 255\nbillboarding: 3\n"
    "time_delay: 0\ntime_step: 0\nloop: 1\n";

// Four squares: red and half-covering green above, blue and nothing below.
constexpr const char* kDrawing =
    "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8' width='8' height='8'>"
    "<g id='flags'><rect width='4' height='4' fill='#f00'/>"
    "<rect x='4' width='4' height='4' fill='#0f0' fill-opacity='0.502'/>"
    "<rect y='4' width='4' height='4' fill='#00f'/></g>"
    "<g id='other'><rect width='8' height='8' fill='#fff'/></g></svg>";

/// Runs the tool on a source of its own in a folder of its own.
class BakeEffects : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(folder_);
        Write("drawing.svg", kDrawing);
    }
    void TearDown() override { fs::remove_all(folder_); }

    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    /// Bakes a source file; what the tool says is in `said_`. Returns its status.
    int Bake(const fs::path& source, const fs::path& drawings) {
        const std::string command = std::string("'") + ULMARO_BAKE_EFFECTS + "' '" + source.string() + "' '" +
                                    drawings.string() + "' '" + Baked().string() + "' 2> '" +
                                    (folder_ / "said").string() + "'";
        const int status = std::system(command.c_str());
        said_ = ReadFile(folder_ / "said");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int Bake(const std::string& text) {
        Write("source.txt", text);
        return Bake(folder_ / "source.txt", folder_);
    }

    /// Expects that the source is refused with one line, which ends in the given words.
    void ExpectRefused(const std::string& text, const std::string& words) {
        EXPECT_EQ(Bake(text), 1);
        EXPECT_EQ(std::count(said_.begin(), said_.end(), '\n'), 1) << said_;
        EXPECT_EQ(said_.rfind("bake_effects: ", 0), 0U) << said_;
        EXPECT_NE(said_.find(words), std::string::npos) << said_;
        EXPECT_FALSE(fs::exists(Baked())) << "half a file must not be left";
    }

    fs::path Baked() const { return folder_ / "baked.zfx"; }

    const fs::path folder_ = fs::path(testing::TempDir()) / ("bake_effects_" + std::to_string(getpid()));
    std::string said_;
    const std::string header_ = "ZFX ver: 2\n";
    const std::string texture_ = "texture: 2 2 1\npicture: drawing.svg 0 0 8 8 flags\n";
};

TEST_F(BakeEffects, GivesTheTexelsOfTheLayerBottomRowFirst) {
    ASSERT_EQ(Bake(header_ + texture_ + kFields), 0) << said_;

    const Effect effect = ParseEffect(ReadFile(Baked()));

    ASSERT_EQ(effect.error, "");
    ASSERT_EQ(effect.emitters.size(), 1U);
    const std::vector<int>& texels = effect.emitters[0].texels;
    const std::vector<int> blue(texels.begin(), texels.begin() + 4);
    const std::vector<int> upper(texels.begin() + 8, texels.end());
    EXPECT_EQ(blue, (std::vector<int>{0, 0, 255, 255}));
    EXPECT_EQ(upper, (std::vector<int>{255, 0, 0, 255, 0, 255, 0, 128}));
}

TEST_F(BakeEffects, GivesAClearTexelTheColourOfItsNeighbours) {
    ASSERT_EQ(Bake(header_ + texture_ + kFields), 0) << said_;

    const Effect effect = ParseEffect(ReadFile(Baked()));

    ASSERT_EQ(effect.emitters.size(), 1U);
    const std::vector<int>& texels = effect.emitters[0].texels;
    const std::vector<int> clear(texels.begin() + 4, texels.begin() + 8);
    EXPECT_EQ(clear, (std::vector<int>{85, 85, 85, 0})) << "the mean of red, green and blue";
}

TEST_F(BakeEffects, TakesTheCropOfTheDrawing) {
    ASSERT_EQ(Bake(header_ + "texture: 1 1 0\npicture: drawing.svg 0 4 4 4 flags\n" + kFields), 0) << said_;

    const Effect effect = ParseEffect(ReadFile(Baked()));

    ASSERT_EQ(effect.emitters.size(), 1U);
    EXPECT_EQ(effect.emitters[0].texels, (std::vector<int>{0, 0, 255, 255}));
}

TEST_F(BakeEffects, PaintsLayersOneOverAnother) {
    ASSERT_EQ(Bake(header_ + "texture: 1 1 0\npicture: drawing.svg 4 4 4 4 flags other\n" + kFields), 0)
        << said_;

    const Effect effect = ParseEffect(ReadFile(Baked()));

    ASSERT_EQ(effect.emitters.size(), 1U);
    EXPECT_EQ(effect.emitters[0].texels, (std::vector<int>{255, 255, 255, 255}));
}

TEST_F(BakeEffects, CopiesTheLinesAndLeavesCommentsOut) {
    ASSERT_EQ(Bake("# a source\n" + header_ + "\n" + texture_ + "# more\n" + kFields + "   # end\n"), 0)
        << said_;

    const std::string baked = ReadFile(Baked());

    EXPECT_EQ(baked.find('#'), std::string::npos);
    EXPECT_EQ(baked.rfind("ZFX ver: 2\ntexture: 2 2 1\n", 0), 0U);
    ASSERT_GE(baked.size(), std::string(kFields).size());
    EXPECT_EQ(baked.substr(baked.size() - std::string(kFields).size()), kFields);
}

TEST_F(BakeEffects, BakesEmittersOneAfterAnother) {
    ASSERT_EQ(Bake(header_ + texture_ + kFields + texture_ + kFields), 0) << said_;

    EXPECT_EQ(ParseEffect(ReadFile(Baked())).emitters.size(), 2U);
}

TEST_F(BakeEffects, GivesTheSameBytesAgain) {
    for (const Showing& showing : {kSleep, kSmoke}) {
        const fs::path sources = ULMARO_EFFECTS;
        const fs::path source = sources / fs::path(showing.file).replace_extension(".txt");

        ASSERT_EQ(Bake(source, sources), 0) << said_;

        EXPECT_EQ(ReadFile(Baked()), ReadFile(fs::path(ULMARO_DATA) / showing.file)) << showing.file;
    }
}

TEST_F(BakeEffects, RefusesASourceThatIsMissing) {
    EXPECT_EQ(Bake(folder_ / "none.txt", folder_), 1);
    EXPECT_EQ(said_, "bake_effects: cannot read " + (folder_ / "none.txt").string() + "\n");
}

TEST_F(BakeEffects, RefusesADrawingThatIsMissing) {
    ExpectRefused(header_ + "texture: 2 2 1\npicture: none.svg 0 0 8 8 flags\n" + kFields, "none.svg: ");
}

TEST_F(BakeEffects, RefusesALayerThatTheDrawingHasNot) {
    ExpectRefused(header_ + "texture: 2 2 1\npicture: drawing.svg 0 0 8 8 none\n" + kFields,
                  "drawing.svg has no layer #none\n");
}

TEST_F(BakeEffects, RefusesAnotherVersion) {
    ExpectRefused("ZFX ver: 3\n" + texture_ + kFields, "source.txt:1: not 'ZFX ver: 2'\n");
}

TEST_F(BakeEffects, RefusesATextureWithoutAPicture) {
    ExpectRefused(header_ + "texture: 2 2 1\n" + kFields,
                  "source.txt:3: 'particles_limit:' where 'picture:'");
}

TEST_F(BakeEffects, RefusesAPictureWithoutALayer) {
    ExpectRefused(header_ + "texture: 2 2 1\npicture: drawing.svg 0 0 8 8\n" + kFields, "source.txt:3: ");
}

TEST_F(BakeEffects, RefusesACropWithoutASize) {
    ExpectRefused(header_ + "texture: 2 2 1\npicture: drawing.svg 0 0 0 8 flags\n" + kFields,
                  "source.txt:3: ");
}

TEST_F(BakeEffects, RefusesATextureThatIsTooLarge) {
    ExpectRefused(header_ + "texture: 129 2 1\npicture: drawing.svg 0 0 8 8 flags\n" + kFields,
                  "source.txt:2: the texture's edges");
}

TEST_F(BakeEffects, RefusesAFileThatEndsEarly) {
    std::string fields = kFields;
    fields.resize(fields.find("loop:"));
    ExpectRefused(header_ + texture_ + fields, "where 'loop:' should be\n");
}

TEST_F(BakeEffects, RefusesAPlaceWhereItCannotWrite) {
    Write("source.txt", header_);
    fs::create_directories(Baked());

    EXPECT_EQ(Bake(folder_ / "source.txt", folder_), 1);
    EXPECT_EQ(said_, "bake_effects: cannot write " + Baked().string() + "\n");
}

/// A change to the lines of a good source that makes it bad, and what the tool says of it.
struct BadLine {
    const char* name;
    const char* good;
    const char* bad;
    const char* said;
};

std::ostream& operator<<(std::ostream& out, const BadLine& line) {
    return out << line.name;
}

class BakeEffectsLine : public BakeEffects, public testing::WithParamInterface<BadLine> {};

TEST_P(BakeEffectsLine, IsRefusedWithItsNumber) {
    std::string fields = kFields;
    const std::size_t at = fields.find(GetParam().good);
    ASSERT_NE(at, std::string::npos);
    fields.replace(at, std::string(GetParam().good).size(), GetParam().bad);

    ExpectRefused(header_ + texture_ + fields, GetParam().said);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, BakeEffectsLine,
    testing::Values(
        BadLine{"LeftOut", "spawn_time: 1 2\n", "",
                "source.txt:5: 'spawn_particles:' where 'spawn_time:' should"},
        BadLine{"Misspelt",
                "spawn_time:", "spawntime:", "source.txt:5: 'spawntime:' where 'spawn_time:' should"},
        BadLine{"TooShort", "spawn_time: 1 2", "spawn_time: 1",
                "source.txt:5: 'spawn_time:' needs 2 numbers\n"},
        BadLine{"TooLong", "spawn_time: 1 2", "spawn_time: 1 2 3",
                "source.txt:5: 'spawn_time:' needs 2 numbers\n"},
        BadLine{"NotANumber", "spawn_time: 1 2", "spawn_time: 1 2s", "source.txt:5: '2s' is not a number\n"},
        BadLine{"NotFinite", "spawn_time: 1 2", "spawn_time: 1 inf", "source.txt:5: 'inf' is not a number\n"},
        BadLine{"NotWhole", "particles_limit: 3", "particles_limit: 3.5",
                "source.txt:4: '3.5' is not a whole number\n"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
