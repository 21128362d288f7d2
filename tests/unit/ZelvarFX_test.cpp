// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the watcher, the header, textures, the lines of a block, damaged lines, sizes, files cut short, open
// files, reading again, drawing.
//
// What an effect holds shows in what it draws: it has to make the calls of emitters that the test sets up.
#include "engine/ZelvarFX.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/unit/limit_process.h"
#include "tests/unit/temporary_folder.h"

namespace {

using Texts = std::vector<std::string>;
using Texels = std::vector<std::uint8_t>;

constexpr char kHeader[] = "ZFX ver: 2\n";
constexpr char kTexture[] = "texture: 2 1 0\n11 12 13 14 21 22 23 24 \n";

// ---- The lines of a block ----

/// A line after the texels: its word, what stands there in the tests, and where the numbers go.
struct Line {
    std::string word;
    std::vector<float> numbers;
    std::function<void(ZelvarParticlesFX&, std::size_t, float)> set;
};

/// Returns what sets one number of a field.
template <typename Field>
std::function<void(ZelvarParticlesFX&, std::size_t, float)> Into(Field ZelvarParticlesFX::*field) {
    return [field](ZelvarParticlesFX& emitter, std::size_t index, float number) {
        if constexpr (std::is_array_v<Field>) {
            (emitter.*field)[index] = static_cast<std::remove_extent_t<Field>>(number);
        } else {
            emitter.*field = static_cast<Field>(number);
        }
    };
}

/// Returns the lines of a block in their order, no number of which is a default. In some seconds of
/// such an emitter every number matters, but that of the billboarding.
std::vector<Line> BlockLines() {
    using E = ZelvarParticlesFX;
    return {
        {"particles_limit:", {5}, Into(&E::particles_limit)},
        {"spawn_time:", {0.125F, 0.25F}, Into(&E::spawn_time)},
        {"spawn_particles:", {2, 3}, Into(&E::spawn_particles)},
        {"spawn_position:", {-1.5F, 2, 3.25F, 4, -5, 6}, Into(&E::spawn_position)},
        {"spawn_direction:", {0.5F, 1, -0.75F, 2, 3, -1}, Into(&E::spawn_direction)},
        {"particles_acceleration:", {7, -8, 0.125F}, Into(&E::particles_acceleration)},
        {"particles_rotation:", {15, 75}, Into(&E::particles_rotation)},
        {"particle_random_rot:", {0}, Into(&E::random_rotation)},
        {"particles_speed:", {9, 10.5F}, Into(&E::particles_speed)},
        {"particles_timelife:", {0.75F, 1.25F}, Into(&E::particles_timelife)},
        {"particles_scale:", {0.3F, 0.7F}, Into(&E::particles_scale)},
        {"particles_color_start:", {210, 220, 230, 160, 170, 180}, Into(&E::particles_color_start)},
        {"particles_color_end:", {10, 20, 30, 60, 70, 80}, Into(&E::particles_color_end)},
        {"billboarding:", {2}, Into(&E::billboarding)},
        {"time_delay:", {0.5F}, Into(&E::time_delay)},
        {"time_step:", {0.75F}, Into(&E::time_step)},
        {"loop:", {0}, Into(&E::loop)},
    };
}

std::string Shortest(float number) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

std::string TextOf(const std::vector<Line>& lines) {
    std::string text;
    for (const Line& line : lines) {
        text += line.word;
        for (const float number : line.numbers) text += ' ' + Shortest(number);
        text += '\n';
    }
    return text;
}

std::string Block(const std::string& texture = kTexture) {
    return texture + TextOf(BlockLines());
}

/// Returns an emitter as a block without lines makes it.
ZelvarParticlesFX BareEmitter(unsigned int texture = 1) {
    ZelvarParticlesFX emitter;
    emitter.active = true;
    emitter.texture = texture;
    return emitter;
}

ZelvarParticlesFX EmitterOf(const std::vector<Line>& lines, unsigned int texture = 1) {
    ZelvarParticlesFX emitter = BareEmitter(texture);
    for (const Line& line : lines) {
        for (std::size_t i = 0; i < line.numbers.size(); ++i) line.set(emitter, i, line.numbers[i]);
    }
    return emitter;
}

// ---- Effects and what they draw ----

/// Returns the calls of 20 frames, and then half the edge of each square that they drew.
Texts CallsOf(const std::function<void(float)>& frame) {
    fakes::ClearLog();
    fakes::gl().primitives.clear();
    fakes::world().rand_calls = 0;
    for (int i = 0; i < 20; ++i) frame(0.125F);
    Texts calls = fakes::Lines();
    for (const fakes::Primitive& square : fakes::gl().primitives) {
        calls.push_back(Shortest(square.vertices.at(2).object[0]));
    }
    return calls;
}

Texts CallsOf(ZelvarFX& effect) {
    effect.reset();
    return CallsOf([&effect](float dt) { effect.render(10, 20, 30, 4, dt); });
}

Texts CallsOf(std::vector<ZelvarParticlesFX> emitters) {
    return CallsOf([&emitters](float dt) {
        for (ZelvarParticlesFX& emitter : emitters) emitter.render(10, 20, 30, 2, dt);
    });
}

/// Random numbers are 50 throughout, so that both ends of every pair matter.
class EffectTest : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        fakes::world().rand_default = 50;
    }

    /// Loads a file of that text into an effect; the log has the calls of that alone.
    bool Load(const std::string& text) {
        WriteFile("test.zfx", text);
        fakes::ClearLog();
        return effect_.load("test.zfx");
    }

    /// Returns how many emitters draw.
    std::size_t Emitters() {
        fakes::ClearLog();
        effect_.render(0, 0, 0, 1, 1000);
        return fakes::Count("glBlendFunc");
    }

    TemporaryFolder folder_;
    ZelvarFX effect_;
};

/// Returns the bytes of the textures that were uploaded, in order.
std::vector<Texels> Uploads() {
    std::vector<Texels> uploads;
    for (const fakes::Call& call : fakes::Calls("glTexImage2D")) uploads.push_back(call.blob);
    return uploads;
}

Texts Without(const Texts& lines, const std::string& left_out) {
    Texts others;
    std::copy_if(
        lines.begin(), lines.end(), std::back_inserter(others),
        [&left_out](const std::string& line) { return line.compare(0, left_out.size(), left_out) != 0; });
    return others;
}

// ---- The watcher ----

TEST(Watcher, IsWhereItWasSet) {
    const float* const before[] = {ZFX::watcher_x, ZFX::watcher_y, ZFX::watcher_z};
    const float x = 1;
    const float y = 2;
    const float z = 3;

    ZFX::SetWatcher(&x, &y, &z);

    EXPECT_EQ(ZFX::watcher_x, &x);
    EXPECT_EQ(ZFX::watcher_y, &y);
    EXPECT_EQ(ZFX::watcher_z, &z);
    ZFX::SetWatcher(before[0], before[1], before[2]);
}

TEST_F(EffectTest, TheWatcherChangesNothingOfWhatIsDrawn) {
    const float* const before[] = {ZFX::watcher_x, ZFX::watcher_y, ZFX::watcher_z};
    ASSERT_TRUE(Load(kHeader + Block()));
    const Texts calls = CallsOf(effect_);
    const float far_away = 1e6F;

    ZFX::SetWatcher(&far_away, &far_away, &far_away);

    EXPECT_EQ(CallsOf(effect_), calls);
    ZFX::SetWatcher(nullptr, nullptr, nullptr);
    EXPECT_EQ(CallsOf(effect_), calls);
    ZFX::SetWatcher(before[0], before[1], before[2]);
}

// ---- The header ----

TEST_F(EffectTest, WithoutBlocksIsEmpty) {
    for (const char* text : {"ZFX ver: 2", "ZFX ver: 2\n", "ZFX ver: 2\n \t\r\n\n"}) {
        EXPECT_TRUE(Load(text)) << text;
        EXPECT_EQ(fakes::Lines(), Texts{}) << text;

        effect_.render(1, 2, 3, 4, 5);
        effect_.reset();

        EXPECT_EQ(fakes::Lines(), Texts{}) << text;
    }
}

TEST_F(EffectTest, NeverLoadedDrawsNothing) {
    effect_.render(1, 2, 3, 4, 5);
    effect_.reset();

    EXPECT_EQ(fakes::Lines(), Texts{});
}

TEST_F(EffectTest, MayHaveAnyWhiteSpaceOrNoneInItsHeader) {
    for (const char* header :
         {"ZFXver:2\n", "ZFX\n\n  ver:\t\n2 ", "ZFX ver: +2\n", "ZFX ver: 002\r\n", "ZFX ver: 2"}) {
        EXPECT_TRUE(Load(header + std::string(Block()))) << header;
        EXPECT_EQ(Emitters(), 1U) << header;
    }
}

TEST_F(EffectTest, StaysAsItWasWithoutTheRightHeader) {
    ASSERT_TRUE(Load(kHeader + Block()));
    const Texts calls = CallsOf(effect_);

    for (const char* header : {"",
                               "Z",
                               "ZF",
                               "ZFX",
                               "ZFX ",
                               "ZFX ver:",
                               "ZFX ver: ",
                               "ZFX ver: 3\n",
                               "ZFX ver: 1\n",
                               "ZFX ver: 0\n",
                               "ZFX ver: -2\n",
                               "ZFX ver: 22\n",
                               "ZFX ver: x\n",
                               "ZFX ver 2\n",
                               "ZFX Ver: 2\n",
                               "ZFX 2\n",
                               "ZFY ver: 2\n",
                               "zfx ver: 2\n",
                               " ZFX ver: 2\n",
                               "\nZFX ver: 2\n",
                               "Z FX ver: 2\n",
                               "XFX ver: 2\n",
                               "ZXX ver: 2\n",
                               "\xEF\xBB\xBFZFX ver: 2\n"}) {
        EXPECT_FALSE(Load(header + std::string(Block()))) << header;
        EXPECT_EQ(fakes::Lines(), Texts{}) << header;
        EXPECT_EQ(CallsOf(effect_), calls) << header;
    }
}

TEST_F(EffectTest, StaysAsItWasWithoutAFile) {
    ASSERT_TRUE(Load(kHeader + Block()));
    const Texts calls = CallsOf(effect_);
    fakes::ClearLog();

    EXPECT_FALSE(effect_.load("missing.zfx"));
    EXPECT_FALSE(effect_.load(""));
    EXPECT_FALSE(effect_.load("."));

    EXPECT_EQ(fakes::Lines(), Texts{});
    EXPECT_EQ(CallsOf(effect_), calls);
}

TEST_F(EffectTest, IsNeverReadFromANamedPipeOrADevice) {
    ASSERT_EQ(mkfifo("pipe", S_IRUSR | S_IWUSR), 0);
    std::filesystem::create_symlink("pipe", "link");
    for (const char* path : {"pipe", "link", "/dev/zero", "/dev/null"}) {
        EXPECT_EXIT(
            {
                alarm(20);  // ends a process that waits
                std::exit(effect_.load(path) ? 1 : 0);
            },
            testing::ExitedWithCode(0), "^$")
            << path;
    }
}

TEST_F(EffectTest, MayLieBehindALink) {
    WriteFile("kept.zfx", kHeader + Block());
    std::filesystem::create_symlink("kept.zfx", "link");

    EXPECT_TRUE(effect_.load("link"));
    EXPECT_EQ(effect_.emitters.size(), 1U);
}

TEST_F(EffectTest, IsLoadedWithoutAWord) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();

    Load(kHeader + Block());
    Load("ZFX ver: 3\n");
    Load(kHeader + std::string("texture: -1 1 0\n"));
    effect_.load("missing.zfx");

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// ---- Textures ----

TEST_F(EffectTest, TheTextureIsMadeBoundFilteredAndUploadedInThisOrder) {
    ASSERT_TRUE(Load(kHeader + Block()));

    EXPECT_EQ(Without(fakes::Lines(), "glGetIntegerv"),
              (Texts{"glGenTextures(1)", "glBindTexture(GL_TEXTURE_2D, 1)",
                     "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                     "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                     "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE)"}));
    const fakes::Texture& texture = fakes::gl().textures.at(1);
    EXPECT_EQ(texture.pixels, (Texels{11, 12, 13, 14, 21, 22, 23, 24}));
    EXPECT_EQ(texture.levels, (std::set<int>{0}));
    EXPECT_FALSE(texture.mipmaps);
    EXPECT_EQ(texture.wrap_s, GL_REPEAT);
    EXPECT_EQ(texture.wrap_t, GL_REPEAT);
}

TEST_F(EffectTest, TheTexelsStandRowByRow) {
    ASSERT_TRUE(
        Load(std::string(kHeader) + "texture: 1 3 0 1 2 3 4\n5 6 7 8\n9 10 11 12 " + TextOf(BlockLines())));

    const fakes::Texture& texture = fakes::gl().textures.at(1);
    EXPECT_EQ(texture.width, 1);
    EXPECT_EQ(texture.height, 3);
    EXPECT_EQ(texture.pixels, (Texels{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST_F(EffectTest, OfATexelTheLowByteCounts) {
    ASSERT_TRUE(Load(kHeader + Block("texture: 2 1 0\n300 256 255 -1 1000 -300 2147483647 -2147483648\n")));

    EXPECT_EQ(Uploads(), (std::vector<Texels>{{44, 0, 255, 255, 232, 212, 255, 0}}));
    EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines())}));
}

TEST_F(EffectTest, TheTextureLineSaysHowToBlend) {
    for (const auto& [blend, destination] :
         std::vector<std::pair<std::string, std::string>>{{"0", "GL_ONE"},
                                                          {"1", "GL_ONE_MINUS_SRC_ALPHA"},
                                                          {"7", "GL_ONE_MINUS_SRC_ALPHA"},
                                                          {"-1", "GL_ONE_MINUS_SRC_ALPHA"}}) {
        ASSERT_TRUE(Load(kHeader + Block("texture: 2 1 " + blend + "\n1 2 3 4 5 6 7 8\n")));
        fakes::ClearLog();

        effect_.render(0, 0, 0, 1, 1);

        EXPECT_EQ(fakes::Lines({"glBlendFunc"}), (Texts{"glBlendFunc(GL_SRC_ALPHA, " + destination + ")"}));
    }
}

TEST_F(EffectTest, EveryBlockHasATextureOfItsOwn) {
    ASSERT_TRUE(Load(kHeader + Block("texture: 1 1 0 1 2 3 4 ") + Block("texture: 1 1 1 5 6 7 8 ")));

    EXPECT_EQ(Uploads(), (std::vector<Texels>{{1, 2, 3, 4}, {5, 6, 7, 8}}));
    EXPECT_EQ(fakes::gl().textures.at(1).pixels, (Texels{1, 2, 3, 4}));
    EXPECT_EQ(fakes::gl().textures.at(2).pixels, (Texels{5, 6, 7, 8}));
}

// ---- The lines of a block ----

TEST_F(EffectTest, ABlockMakesAnEmitter) {
    ASSERT_TRUE(Load(kHeader + Block()));

    const Texts calls = CallsOf(effect_);

    const int random = fakes::world().rand_calls;
    EXPECT_GT(std::count(calls.begin(), calls.end(), "glDrawArrays(GL_TRIANGLES, 0, 6)"), 20);
    EXPECT_EQ(calls, CallsOf({EmitterOf(BlockLines())}));
    EXPECT_EQ(random, fakes::world().rand_calls);
}

TEST_F(EffectTest, EveryNumberOfEveryLineGoesToItsField) {
    const std::vector<Line> lines = BlockLines();
    const Texts unchanged = CallsOf({EmitterOf(lines)});
    for (std::size_t line = 0; line < lines.size(); ++line) {
        for (std::size_t number = 0; number < lines[line].numbers.size(); ++number) {
            SCOPED_TRACE(lines[line].word + ' ' + std::to_string(number));
            std::vector<Line> changed = lines;
            changed[line].numbers[number] += 4;

            fakes::gl().next_texture = 1;
            fakes::gl().textures.clear();
            ASSERT_TRUE(Load(kHeader + std::string(kTexture) + TextOf(changed)));

            const Texts calls = CallsOf(effect_);
            EXPECT_EQ(calls == unchanged, lines[line].word == "billboarding:");
            EXPECT_EQ(calls, CallsOf({EmitterOf(changed)}));
        }
    }
}

TEST_F(EffectTest, TheBillboardingIsStoredThoughNothingReadsIt) {
    ASSERT_TRUE(Load(kHeader + Block()));

    ASSERT_EQ(effect_.emitters.size(), 1U);
    EXPECT_EQ(effect_.emitters.front().billboarding, 2);
    EXPECT_EQ(effect_.emitters.front().time_delay, 0.5F);
    EXPECT_EQ(effect_.emitters.front().time_step, 0.75F);
    EXPECT_EQ(effect_.emitters.front().loop, 0);
}

TEST_F(EffectTest, EveryEmitterKeepsACopyOfItsTimeStepAsLoaded) {
    std::vector<Line> longer = BlockLines();
    for (Line& line : longer) {
        if (line.word == "time_step:") line.numbers = {1.5F};
    }
    ASSERT_TRUE(Load(kHeader + Block() + kTexture + TextOf(longer)));

    effect_.render(0, 0, 0, 1, 10);
    effect_.reset();

    ASSERT_EQ(effect_.emitters.size(), 2U);
    EXPECT_EQ(effect_.emitters.front().time_step_loaded, 0.75F);
    EXPECT_EQ(effect_.emitters.front().time_step, 0.75F);
    EXPECT_EQ(effect_.emitters.back().time_step_loaded, 1.5F);
    EXPECT_EQ(effect_.emitters.back().time_step, 1.5F);
}

TEST_F(EffectTest, WhiteSpaceBetweenWordsAndNumbersIsFree) {
    std::string text = kHeader + Block() + Block();
    std::string wide;
    for (const char c : text) wide += c == ' ' || c == '\n' ? " \t\r\n\n " : std::string(1, c);
    ASSERT_TRUE(Load(wide));
    EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines(), 1), EmitterOf(BlockLines(), 2)}));

    fakes::gl().next_texture = 1;
    fakes::gl().textures.clear();
    std::replace(text.begin(), text.end(), '\n', ' ');
    ASSERT_TRUE(Load(text));
    EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines(), 1), EmitterOf(BlockLines(), 2)}));
}

TEST_F(EffectTest, BlocksMakeEmittersInTheirOrder) {
    std::vector<Line> others = BlockLines();
    for (Line& line : others) {
        for (float& number : line.numbers) number += 1;
    }
    ASSERT_TRUE(Load(kHeader + Block() + kTexture + TextOf(others) + Block()));

    EXPECT_EQ(Uploads().size(), 3U);
    EXPECT_EQ(CallsOf(effect_),
              CallsOf({EmitterOf(BlockLines(), 1), EmitterOf(others, 2), EmitterOf(BlockLines(), 3)}));
}

TEST_F(EffectTest, MayEndWithOrWithoutWhiteSpace) {
    for (const std::string end : {"", "\n\n", " \t\r\n ", "\v\f"}) {
        std::string text = kHeader + Block();
        text.pop_back();

        ASSERT_TRUE(Load(text + end));

        EXPECT_EQ(fakes::Count("glGenTextures"), 1U);
        EXPECT_EQ(Emitters(), 1U);
    }
}

// ---- Damaged lines ----

/// Returns the lines of a block, one of them with another text.
std::string With(const std::string& word, const std::string& text) {
    std::string all;
    for (const Line& line : BlockLines()) all += line.word == word ? text : TextOf({line});
    return all;
}

/// Returns the lines of a block as they are read where some are not.
std::vector<Line> LinesBut(const Texts& words) {
    std::vector<Line> lines = BlockLines();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [&words](const Line& line) {
                                   return std::find(words.begin(), words.end(), line.word) != words.end();
                               }),
                lines.end());
    return lines;
}

TEST_F(EffectTest, ALineThatIsMissingKeepsItsDefaultsAndTheNextIsRead) {
    for (const char* word : {"particles_limit:", "billboarding:"}) {
        SCOPED_TRACE(word);
        fakes::gl().next_texture = 1;
        fakes::gl().textures.clear();

        ASSERT_TRUE(Load(kHeader + std::string(kTexture) + With(word, "")));

        EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(LinesBut({word}))}));
    }
}

TEST_F(EffectTest, TheLastLineMayBeMissing) {
    ASSERT_TRUE(Load(kHeader + std::string(kTexture) + With("loop:", "") + Block()));

    EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(LinesBut({"loop:"}), 1), EmitterOf(BlockLines(), 2)}));
}

TEST_F(EffectTest, AfterAWordThatBeginsLikeTheOneExpectedTheRestIsNotFound) {
    // "spawn_" is taken for the missing line's, and "particles: 2 3" fits nothing that follows.
    ASSERT_TRUE(Load(kHeader + std::string(kTexture) + With("spawn_time:", "") + Block()));

    ZelvarParticlesFX expected = BareEmitter();
    expected.particles_limit = 5;
    EXPECT_EQ(Uploads().size(), 1U);  // nor is the next block
    EXPECT_EQ(CallsOf(effect_), CallsOf({expected}));
}

TEST_F(EffectTest, ALineWithTooFewNumbersSetsThoseThatItHas) {
    ASSERT_TRUE(Load(kHeader + std::string(kTexture) + With("spawn_time:", "spawn_time: 0.375\n") + Block()));

    ZelvarParticlesFX expected = EmitterOf(BlockLines());
    expected.spawn_time[0] = 0.375F;
    expected.spawn_time[1] = 0.02F;
    EXPECT_EQ(CallsOf(effect_), CallsOf({expected, EmitterOf(BlockLines(), 2)}));
}

TEST_F(EffectTest, ALineWithTooManyNumbersEndsTheReading) {
    ASSERT_TRUE(
        Load(kHeader + std::string(kTexture) + With("spawn_time:", "spawn_time: 0.25 0.5 0.75\n") + Block()));

    ZelvarParticlesFX expected = BareEmitter();
    expected.particles_limit = 5;
    expected.spawn_time[0] = 0.25F;
    expected.spawn_time[1] = 0.5F;
    EXPECT_EQ(Uploads().size(), 1U);
    EXPECT_EQ(CallsOf(effect_), CallsOf({expected}));
}

TEST_F(EffectTest, AWordInPlaceOfANumberEndsTheReading) {
    ASSERT_TRUE(Load(kHeader + std::string(kTexture) + With("particles_limit:", "particles_limit: many\n") +
                     Block()));

    EXPECT_EQ(Uploads().size(), 1U);
    EXPECT_EQ(CallsOf(effect_), CallsOf({BareEmitter()}));
}

TEST_F(EffectTest, ABlockOfATextureAloneMakesAnEmitterOfDefaults) {
    ASSERT_TRUE(Load(kHeader + std::string(kTexture)));

    EXPECT_EQ(CallsOf(effect_), CallsOf({BareEmitter()}));
}

TEST_F(EffectTest, MissingTexelsAre0AndTheLinesAreRead) {
    ASSERT_TRUE(Load(kHeader + Block("texture: 2 1 0\n1 2 3 4 5\n")));

    EXPECT_EQ(Uploads(), (std::vector<Texels>{{1, 2, 3, 4, 5, 0, 0, 0}}));
    EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines())}));
}

TEST_F(EffectTest, ASignThatBelongsToNoTexelStandsForOneOf0) {
    for (const auto& [texels, expected] :
         std::vector<std::pair<std::string, Texels>>{{"- 5 6 7\n", {0, 5, 6, 7}},
                                                     {"-+5 6 7\n", {0, 5, 6, 7}},
                                                     {"+-5 6 7\n", {0, 251, 6, 7}},
                                                     {"+ \n 5 6 7\n", {0, 5, 6, 7}}}) {
        fakes::gl().next_texture = 1;
        fakes::gl().textures.clear();

        ASSERT_TRUE(Load(kHeader + Block("texture: 1 1 0\n" + texels)));

        EXPECT_EQ(Uploads(), std::vector<Texels>{expected}) << texels;
        EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines())})) << texels;
    }
}

TEST_F(EffectTest, MoreTexelsThanTheSizeSaysEndTheReading) {
    ASSERT_TRUE(Load(kHeader + Block("texture: 1 1 0\n1 2 3 4 5\n") + Block()));

    EXPECT_EQ(Uploads(), (std::vector<Texels>{{1, 2, 3, 4}}));
    EXPECT_EQ(CallsOf(effect_), CallsOf({BareEmitter()}));
}

TEST_F(EffectTest, ADamagedTextureLineEndsTheReadingAndWhatWasBeforeStays) {
    for (const char* damaged :
         {"x", "texture", "texture:", "texture: ", "texture: 2", "texture: 2 1", "texture: 2 1 ",
          "texture: 2 1 x", "texture: 2 x 0 1 2 3 4 ", "texture: 2.5 1 0 1 2 3 4 ", "Texture: 1 1 0 1 2 3 4 ",
          "loop: 1\n", "texture 1 1 0 1 2 3 4 "}) {
        SCOPED_TRACE(damaged);
        fakes::gl().next_texture = 1;
        fakes::gl().textures.clear();

        EXPECT_TRUE(Load(kHeader + Block() + damaged + TextOf(BlockLines()) + Block()));

        EXPECT_EQ(Uploads().size(), 1U);
        EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines())}));
    }
}

TEST_F(EffectTest, WithADamagedFirstTextureLineIsEmpty) {
    ASSERT_TRUE(Load(kHeader + Block()));

    EXPECT_TRUE(Load(kHeader + std::string("garbage ") + Block()));

    EXPECT_EQ(Uploads().size(), 0U);
    EXPECT_EQ(CallsOf(effect_), Texts{});
}

// ---- Sizes ----

TEST_F(EffectTest, ATextureWithoutTexelsIsMadeAllTheSame) {
    for (const auto& [width, height] : std::vector<std::pair<int, int>>{{0, 0}, {0, 5}, {5, 0}}) {
        SCOPED_TRACE(testing::PrintToString(width) + " x " + testing::PrintToString(height));
        const std::string size = std::to_string(width) + ' ' + std::to_string(height);

        ASSERT_TRUE(Load(kHeader + Block("texture: " + size + " 0\n")));

        EXPECT_EQ(fakes::Count("glGenTextures"), 1U);
        const std::vector<fakes::Call> uploads = fakes::Calls("glTexImage2D");
        ASSERT_EQ(uploads.size(), 1U);
        EXPECT_EQ(uploads[0].args.at(3), width);
        EXPECT_EQ(uploads[0].args.at(4), height);
        EXPECT_EQ(Emitters(), 1U);
    }
}

TEST_F(EffectTest, SizesThatGlDoesNotTakeEndTheReading) {
    fakes::gl().max_texture_size = 8;
    for (const char* size : {"-1 1", "1 -1", "-1 -1", "9 1", "1 9", "9 0", "0 -1", "2147483647 2147483647",
                             "-2147483648 1", "65536 65536", "1 1000000"}) {
        SCOPED_TRACE(size);

        EXPECT_TRUE(
            Load(kHeader + Block() + Block("texture: " + std::string(size) + " 0\n1 2 3 4\n") + Block()));

        EXPECT_EQ(fakes::Count("glGenTextures"), 1U);
        EXPECT_EQ(Uploads().size(), 1U);
        EXPECT_EQ(Emitters(), 1U);
    }
}

TEST_F(EffectTest, SizesUpToWhatGlTakesAreRead) {
    fakes::gl().max_texture_size = 8;
    for (const char* size : {"8 1", "1 8", "8 8"}) {
        ASSERT_TRUE(Load(kHeader + Block("texture: " + std::string(size) + " 0\n1 2 3 4\n")));

        EXPECT_EQ(Uploads().size(), 1U) << size;
        EXPECT_EQ(Emitters(), 1U) << size;
    }
}

TEST_F(EffectTest, ATextureOfMoreThanFourMillionNumbersThatTheFileCannotHoldEndsTheReading) {
    ASSERT_TRUE(Load(kHeader + Block() + Block("texture: 1001 1000 0\n1 2 3 4\n")));

    EXPECT_EQ(Uploads().size(), 1U);
    EXPECT_EQ(Emitters(), 1U);
}

TEST_F(EffectTest, ATextureOfFourMillionNumbersMayLackMostOfThem) {
    ASSERT_TRUE(Load(kHeader + Block("texture: 1000 1000 0\n1 2 3 4\n")));

    const std::vector<Texels> uploads = Uploads();
    ASSERT_EQ(uploads.size(), 1U);
    Texels expected(4'000'000, 0);
    std::copy_n(Texels{1, 2, 3, 4}.begin(), 4, expected.begin());
    EXPECT_TRUE(uploads[0] == expected);
    EXPECT_EQ(Emitters(), 1U);
}

TEST_F(EffectTest, TheNumbersThatTheFileCannotHoldAreAddedUp) {
    const std::string half = "texture: 1000 500 0\n1 2 3 4\n";

    ASSERT_TRUE(Load(kHeader + Block(half) + Block(half) + Block(half)));

    EXPECT_EQ(Uploads().size(), 2U);
}

TEST_F(EffectTest, AVeryLargeTextureThatTheFileHoldsIsRead) {
    std::string texture = "texture: 1001 1000 0\n";
    for (int i = 0; i < 1001 * 1000 * 4; ++i) texture += "7 ";

    ASSERT_TRUE(Load(kHeader + Block(texture) + Block()));

    const std::vector<Texels> uploads = Uploads();
    ASSERT_EQ(uploads.size(), 2U);
    EXPECT_TRUE(uploads[0] == Texels(std::size_t{1001} * 1000 * 4, 7));
    EXPECT_EQ(CallsOf(effect_), CallsOf({EmitterOf(BlockLines(), 1), EmitterOf(BlockLines(), 2)}));
}

TEST_F(EffectTest, AVeryLargeTextureIsHeldByAFileOfAsManyBytesAndNotByOneOfAByteLess) {
    const std::string line = std::string(kHeader) + "texture: 1001 1000 0\n";
    constexpr std::size_t kNumbers = std::size_t{1001} * 1000 * 4;

    ASSERT_TRUE(Load(line + std::string(kNumbers - 1, 'x')));
    EXPECT_EQ(Uploads().size(), 0U);

    ASSERT_TRUE(Load(line + std::string(kNumbers, 'x')));
    EXPECT_EQ(Uploads().size(), 1U);
}

// ---- Files cut short ----

TEST_F(EffectTest, CutAnywhereHasTheEmittersWhoseTextureLineIsThere) {
    const std::string first = kHeader + Block();
    const std::string whole = first + Block();
    const std::size_t header = std::string("ZFX ver: 2").size();
    const std::size_t texture_line = std::string("texture: 2 1 0").size();
    const std::size_t first_block = std::string(kHeader).size();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        std::size_t expected = 0;
        for (const std::size_t block : {first_block, first.size()}) {
            if (length >= block + texture_line) ++expected;
        }
        effect_ = ZelvarFX();

        EXPECT_EQ(Load(whole.substr(0, length)), length >= header);

        EXPECT_EQ(fakes::Count("glGenTextures"), expected);
        for (const Texels& bytes : Uploads()) EXPECT_EQ(bytes.size(), 8U);
        EXPECT_EQ(Emitters(), expected);
    }
}

TEST_F(EffectTest, OfAnyBytesDoesNoHarm) {
    std::uint32_t random = 1;
    const std::string whole = kHeader + Block() + Block();
    for (int i = 0; i < 500; ++i) {
        std::string text = whole;
        for (int change = 0; change < 3; ++change) {
            random = random * 1664525U + 1013904223U;
            text[11 + (random >> 16U) % (text.size() - 11)] = static_cast<char>(random >> 8U & 0x7FU);
        }

        EXPECT_TRUE(Load(text)) << text;

        EXPECT_EQ(fakes::Count("glGenTextures"), fakes::Count("glTexImage2D"));
        EXPECT_LE(fakes::Count("glGenTextures"), 2U);
        effect_.reset();
    }
}

// ---- Open files ----

TEST_F(EffectTest, LeavesNoFileOpen) {
    Load(kHeader + Block());
    const std::ptrdiff_t before = OpenFiles();

    for (const std::string& text :
         {kHeader + Block(), std::string(), std::string("ZFY"), std::string("ZFX ver: 3\n"),
          std::string("ZFX ver: x"), kHeader + std::string("garbage"),
          kHeader + std::string("texture: -1 1 0\n"), kHeader + std::string("texture: 9999 9999 0\n"),
          kHeader + std::string("texture: 1 1 0\n1 2 3")}) {
        Load(text);
        EXPECT_EQ(OpenFiles(), before) << text;
    }
    effect_.load("missing.zfx");
    effect_.load(".");

    EXPECT_EQ(OpenFiles(), before);
}

// ---- Reading again ----

TEST_F(EffectTest, LoadedAgainHasTheNewEmittersAlone) {
    ASSERT_TRUE(Load(kHeader + Block() + Block()));
    effect_.render(0, 0, 0, 1, 1);

    ASSERT_TRUE(Load(kHeader + Block("texture: 1 1 1 5 6 7 8 ")));

    ZelvarParticlesFX expected = EmitterOf(BlockLines(), 3);
    expected.alpha_blend = 1;
    EXPECT_EQ(fakes::Count("glDeleteTextures"), 0U);
    EXPECT_EQ(fakes::gl().textures.size(), 3U);  // the old ones are not deleted
    EXPECT_EQ(CallsOf(effect_), CallsOf({expected}));
}

TEST_F(EffectTest, LoadedAgainWithoutBlocksIsEmpty) {
    ASSERT_TRUE(Load(kHeader + Block()));

    ASSERT_TRUE(Load(kHeader));

    EXPECT_EQ(CallsOf(effect_), Texts{});
}

TEST_F(EffectTest, StartsAtItsDelayWhenItIsLoaded) {
    ASSERT_TRUE(Load(kHeader + Block()));
    effect_.render(0, 0, 0, 1, 1);
    ASSERT_TRUE(Load(kHeader + Block()));
    fakes::ClearLog();

    effect_.render(0, 0, 0, 1, 0.25F);
    EXPECT_EQ(fakes::Lines(), Texts{});
    effect_.render(0, 0, 0, 1, 0.25F);
    EXPECT_EQ(fakes::Count("glDrawArrays"), 2U);
}

TEST_F(EffectTest, LeavesTexturesWhenItGoes) {
    {
        ZelvarFX effect;
        WriteFile("test.zfx", kHeader + Block());
        ASSERT_TRUE(effect.load("test.zfx"));
        fakes::ClearLog();
    }

    EXPECT_EQ(fakes::Lines(), Texts{});
    EXPECT_EQ(fakes::gl().textures.size(), 1U);
}

// ---- Drawing ----

TEST_F(EffectTest, DrawsItsEmittersInOrderInHalfTheSize) {
    std::vector<Line> lines = BlockLines();
    for (Line& line : lines) {
        if (line.word == "particles_scale:") line.numbers = {3, 3};
        if (line.word == "spawn_position:") line.numbers = {1, 0, 0, 1, 0, 0};
        if (line.word == "particles_speed:") line.numbers = {0, 0};
        if (line.word == "particles_acceleration:") line.numbers = {0, 0, 0};
        if (line.word == "spawn_particles:") line.numbers = {1, 1};
    }
    ASSERT_TRUE(Load(kHeader + std::string(kTexture) + TextOf(lines) + kTexture + TextOf(lines)));
    fakes::ClearLog();

    effect_.render(100, 200, 300, 10, 0.5F);

    EXPECT_EQ(fakes::Lines({"glBindTexture", "glTranslatef"}),
              (Texts{"glBindTexture(GL_TEXTURE_2D, 1)", "glTranslatef(120, 200, 300)",
                     "glBindTexture(GL_TEXTURE_2D, 2)", "glTranslatef(120, 200, 300)"}));
    ASSERT_EQ(fakes::gl().primitives.size(), 2U);
    EXPECT_EQ(fakes::gl().primitives[0].vertices.at(0).object, (fakes::Vec3{-30, 30, 0}));
}

TEST_F(EffectTest, ResetStartsEveryEmitterAgain) {
    ASSERT_TRUE(Load(kHeader + Block() + Block()));
    effect_.render(0, 0, 0, 1, 0.5F);
    EXPECT_EQ(fakes::gl().primitives.size(), 4U);
    fakes::ClearLog();

    effect_.reset();

    EXPECT_EQ(fakes::Lines(), Texts{});
    effect_.render(0, 0, 0, 1, 0.25F);
    EXPECT_EQ(fakes::Lines(), Texts{});  // the delay again
    effect_.render(0, 0, 0, 1, 0.25F);
    EXPECT_EQ(fakes::Count("glDrawArrays"), 4U);
}

}  // namespace
