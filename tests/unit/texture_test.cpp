// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include <GL/gl.h>
#include <malloc.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "engine/texture.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/bitmap_files.h"
#include "tests/unit/limit_memory.h"
#include "tests/unit/temporary_folder.h"

namespace {

using bitmaps::Header;
using bitmaps::Noise;
using bitmaps::TrueColor;
using bitmaps::WithPalette;

using Lines = std::vector<std::string>;
using Texels = std::vector<std::uint8_t>;

constexpr unsigned int kUntouched = 4711;

/// Files of bitmaps in the current folder, and a context whose next texture is 7.
class TextureTest : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        fakes::gl().next_texture = 7;
        WriteFile("color.bmp", TrueColor(4, 1, "abcdefghijkl"));
        WriteFile("alpha.bmp", TrueColor(4, 1, "..A..B..C..D"));
    }

    /// Expects that neither helper makes a texture or touches GL at all for a file in the place of each.
    void ExpectRefused(const std::string& file) {
        EXPECT_FALSE(LoadTexture(&texture_, file.c_str(), false));
        EXPECT_FALSE(LoadTexture(&texture_, file.c_str(), true));
        EXPECT_FALSE(LoadTextureAlpha(&texture_, file.c_str(), "alpha.bmp"));
        EXPECT_FALSE(LoadTextureAlpha(&texture_, "color.bmp", file.c_str()));
        ExpectNothingMade();
    }

    void ExpectNothingMade() const {
        EXPECT_EQ(fakes::Lines(), Lines{});
        EXPECT_EQ(texture_, kUntouched);
    }

    /// Returns the calls that make a texture, in order: all but those that say how pixels are laid out.
    static Lines MakingCalls() {
        Lines lines;
        for (const fakes::Call& call : fakes::Log()) {
            if (call.name != "glPixelStorei" && call.name != "glGetIntegerv") lines.push_back(call.line);
        }
        return lines;
    }

    static const fakes::Texture& TextureOf(unsigned int name) { return fakes::gl().textures.at(name); }

    static Texels Bytes(const std::string& text) { return {text.begin(), text.end()}; }

    unsigned int texture_ = kUntouched;
    TemporaryFolder folder_;
};

// ---- Opaque ----

TEST_F(TextureTest, AnOpaqueTextureIsMadeByTheseCalls) {
    EXPECT_TRUE(LoadTexture(&texture_, "color.bmp", false));

    EXPECT_EQ(MakingCalls(), (Lines{
                                 "glGenTextures(1)",
                                 "glBindTexture(GL_TEXTURE_2D, 7)",
                                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
                                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                                 "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                                 "gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 4, 1, GL_RGB, GL_UNSIGNED_BYTE)",
                             }));
}

TEST_F(TextureTest, AFilterOfMipmapsChangesOneCallOnly) {
    EXPECT_TRUE(LoadTexture(&texture_, "color.bmp", true));

    EXPECT_EQ(MakingCalls(),
              (Lines{
                  "glGenTextures(1)",
                  "glBindTexture(GL_TEXTURE_2D, 7)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST)",
                  "gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 4, 1, GL_RGB, GL_UNSIGNED_BYTE)",
              }));
}

TEST_F(TextureTest, AnOpaqueTexturesNameIsWrittenAndLeftBound) {
    EXPECT_TRUE(LoadTexture(&texture_, "color.bmp", false));

    EXPECT_EQ(texture_, 7U);
    EXPECT_EQ(fakes::gl().bound_texture, 7U);
    EXPECT_TRUE(fakes::gl().deleted_textures.empty());
}

TEST_F(TextureTest, AnOpaqueTextureHasTheBitmapsPixels) {
    EXPECT_TRUE(LoadTexture(&texture_, "color.bmp", false));

    EXPECT_EQ(TextureOf(7).pixels, Bytes("cbafedihglkj"));
    EXPECT_EQ(TextureOf(7).width, 4);
    EXPECT_EQ(TextureOf(7).height, 1);
}

TEST_F(TextureTest, AnOpaqueTextureHasAllItsLevelsInEitherCase) {
    WriteFile("large.bmp", TrueColor(16, 8, Noise(384)));

    for (const bool mipmaps : {false, true}) {
        EXPECT_TRUE(LoadTexture(&texture_, "large.bmp", mipmaps));
        EXPECT_EQ(TextureOf(texture_).levels, (std::set<int>{0, 1, 2, 3, 4})) << mipmaps;
    }
}

// A row of such an image does not end where GL, as it is at first, expects the next to begin.
TEST_F(TextureTest, AnOpaqueTextureOfAnyWidthHasTheBitmapsPixels) {
    for (int width = 1; width <= 8; ++width) {
        const Header header = {width, 5, 24, 54};
        const std::string file = header.Bytes() + Noise(static_cast<std::size_t>(width) * 15);
        WriteFile("narrow.bmp", file);

        EXPECT_TRUE(LoadTexture(&texture_, "narrow.bmp", false)) << width;

        EXPECT_EQ(TextureOf(texture_).pixels, Bytes(bitmaps::Decoded(file, header))) << width;
        EXPECT_EQ(fakes::gl().unpack_alignment, 4) << "is what the program's other pictures are loaded with";
    }
}

TEST_F(TextureTest, EveryCallMakesATextureOfItsOwn) {
    unsigned int first = 0;
    unsigned int second = 0;
    unsigned int third = 0;

    EXPECT_TRUE(LoadTexture(&first, "color.bmp", false));
    EXPECT_TRUE(LoadTextureAlpha(&second, "color.bmp", "alpha.bmp"));
    EXPECT_TRUE(LoadTexture(&third, "color.bmp", true));

    EXPECT_EQ((Texels{7, 8, 9}), (Texels{static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(second),
                                         static_cast<std::uint8_t>(third)}));
    EXPECT_EQ(fakes::gl().bound_texture, third);
}

// ---- With alpha ----

TEST_F(TextureTest, ATextureWithAlphaIsMadeByTheseCalls) {
    EXPECT_TRUE(LoadTextureAlpha(&texture_, "color.bmp", "alpha.bmp"));

    EXPECT_EQ(MakingCalls(),
              (Lines{
                  "glGenTextures(1)",
                  "glBindTexture(GL_TEXTURE_2D, 7)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                  "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE)",
              }));
}

TEST_F(TextureTest, ATextureWithAlphaHasItsNameWrittenIsLeftBoundAndHasOneLevel) {
    EXPECT_TRUE(LoadTextureAlpha(&texture_, "color.bmp", "alpha.bmp"));

    EXPECT_EQ(texture_, 7U);
    EXPECT_EQ(fakes::gl().bound_texture, 7U);
    EXPECT_EQ(TextureOf(7).levels, (std::set<int>{0}));
}

TEST_F(TextureTest, AlphaIsTheRedOfTheOtherBitmap) {
    EXPECT_TRUE(LoadTextureAlpha(&texture_, "color.bmp", "alpha.bmp"));

    EXPECT_EQ(TextureOf(7).pixels, Bytes("cbaAfedBihgClkjD"));
}

TEST_F(TextureTest, GreysBecomeAlphaInTheirOrder) {
    std::string palette;
    for (const char grey : {'\0', '\x55', '\xAA', '\xFF'}) palette += std::string(3, grey) + '\0';
    palette.resize(1024);
    WriteFile("greys.bmp", Header{2, 2, 8, 54 + 1024}.Bytes() + palette + std::string("\0\1\2\3", 4));
    WriteFile("square.bmp", TrueColor(2, 2, "abcdefghijkl"));

    EXPECT_TRUE(LoadTextureAlpha(&texture_, "square.bmp", "greys.bmp"));

    EXPECT_EQ(TextureOf(7).width, 2);
    EXPECT_EQ(TextureOf(7).height, 2);
    EXPECT_EQ(TextureOf(7).pixels, (Texels{'c', 'b', 'a', 0, 'f', 'e', 'd', 85,  //
                                           'i', 'h', 'g', 170, 'l', 'k', 'j', 255}));
}

TEST_F(TextureTest, TheAlphaBitmapMayHaveAnotherShapeAndIsReadPixelByPixel) {
    WriteFile("square.bmp", TrueColor(2, 2, "abcdefghijkl"));

    EXPECT_TRUE(LoadTextureAlpha(&texture_, "square.bmp", "alpha.bmp"));

    EXPECT_EQ(TextureOf(7).pixels, Bytes("cbaAfedBihgClkjD"));
    EXPECT_EQ(TextureOf(7).width, 2);
}

TEST_F(TextureTest, TheAlphaBitmapMayHaveMorePixels) {
    WriteFile("larger.bmp", TrueColor(3, 2, "..A..B..C..D..E..F"));

    EXPECT_TRUE(LoadTextureAlpha(&texture_, "color.bmp", "larger.bmp"));

    EXPECT_EQ(TextureOf(7).pixels, Bytes("cbaAfedBihgClkjD"));
}

TEST_F(TextureTest, AnAlphaBitmapOfFewerPixelsIsRefused) {
    WriteFile("smaller.bmp", TrueColor(3, 1, "..A..B..C"));

    EXPECT_FALSE(LoadTextureAlpha(&texture_, "color.bmp", "smaller.bmp"));

    ExpectNothingMade();
}

TEST_F(TextureTest, ATextureWithAlphaOfAnyWidthHasTheBitmapsPixels) {
    for (int width = 1; width <= 8; ++width) {
        const Header header = {width, 3, 24, 54};
        const std::string file = header.Bytes() + Noise(static_cast<std::size_t>(width) * 9);
        WriteFile("narrow.bmp", file);
        const std::string rgb = bitmaps::Decoded(file, header);
        Texels texels;
        for (std::size_t i = 0; i < rgb.size(); i += 3) {
            for (const std::size_t c : {i, i + 1, i + 2, i})
                texels.push_back(static_cast<std::uint8_t>(rgb[c]));
        }

        EXPECT_TRUE(LoadTextureAlpha(&texture_, "narrow.bmp", "narrow.bmp")) << width;

        EXPECT_EQ(TextureOf(texture_).pixels, texels) << width;
    }
}

// ---- Files that give no texture ----

TEST_F(TextureTest, AMissingFileMakesNoTexture) {
    ExpectRefused("missing.bmp");
}

TEST_F(TextureTest, AFileThatIsNoBitmapMakesNoTexture) {
    WriteFile("not.bmp", "BA" + std::string(100, 'x'));

    ExpectRefused("not.bmp");
}

TEST_F(TextureTest, AnUnknownDepthMakesNoTexture) {
    WriteFile("32.bmp", Header{4, 1, 32, 54}.Bytes() + Noise(16));

    ExpectRefused("32.bmp");
}

TEST_F(TextureTest, ASizeWithoutMemoryMakesNoTexture) {
    WriteFile("negative.bmp", Header{4, -1, 24, 54}.Bytes() + Noise(12));
    WriteFile("huge.bmp", Header{INT_MAX, INT_MAX, 24, 54}.Bytes() + Noise(12));

    ExpectRefused("negative.bmp");
    ExpectRefused("huge.bmp");
}

TEST_F(TextureTest, ASizeThatGlDoesNotTakeMakesNoTextureWithAlpha) {
    fakes::gl().max_texture_size = 3;
    EXPECT_FALSE(LoadTextureAlpha(&texture_, "color.bmp", "alpha.bmp"));
    EXPECT_EQ(fakes::Count("glGenTextures"), 0U);

    fakes::gl().max_texture_size = 4;
    EXPECT_TRUE(LoadTextureAlpha(&texture_, "color.bmp", "alpha.bmp"));
}

TEST_F(TextureTest, AHeightThatGlDoesNotTakeMakesNoTextureWithAlpha) {
    WriteFile("tall.bmp", TrueColor(1, 4, "abcdefghijkl"));
    fakes::gl().max_texture_size = 3;
    EXPECT_FALSE(LoadTextureAlpha(&texture_, "tall.bmp", "alpha.bmp"));
    EXPECT_EQ(fakes::Count("glGenTextures"), 0U);
    EXPECT_EQ(texture_, kUntouched);

    fakes::gl().max_texture_size = 4;
    EXPECT_TRUE(LoadTextureAlpha(&texture_, "tall.bmp", "alpha.bmp"));
}

// Two negative sizes have a product, and so an image.
TEST_F(TextureTest, NegativeSizesMakeNoTextureWithAlpha) {
    WriteFile("negative.bmp", Header{-2, -2, 24, 54}.Bytes() + Noise(12));

    EXPECT_FALSE(LoadTextureAlpha(&texture_, "negative.bmp", "alpha.bmp"));

    EXPECT_EQ(fakes::Count("glGenTextures"), 0U);
    EXPECT_EQ(texture_, kUntouched);
}

TEST_F(TextureTest, TheAlphaBitmapsOwnSizesMayBeNegative) {
    WriteFile("negative.bmp", Header{-2, -2, 24, 54}.Bytes() + "..A..B..C..D");

    EXPECT_TRUE(LoadTextureAlpha(&texture_, "color.bmp", "negative.bmp"));

    EXPECT_EQ(TextureOf(7).pixels, Bytes("cbaAfedBihgClkjD"));
}

TEST_F(TextureTest, AnImageWithoutPixelsOrOfNegativeSizesMakesAnOpaqueTextureWithoutAPicture) {
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 5}, {5, 0}, {-2, -2}}) {
        WriteFile("odd.bmp", Header{width, height, 24, 54}.Bytes() + Noise(12));

        EXPECT_TRUE(LoadTexture(&texture_, "odd.bmp", true)) << width << " x " << height;

        EXPECT_EQ(TextureOf(texture_).levels, std::set<int>{}) << width << " x " << height;
    }
}

#ifndef __SANITIZE_ADDRESS__  // which ends the process itself where memory is short

// Such an image takes no real memory as long as nobody reads it: its file has no pixels.
TEST_F(TextureTest, AnImageOfMoreBytesThanAnIntCountsMakesNoOpaqueTexture) {
    WriteFile("large.bmp", Header{30'000, 30'000, 24, 54}.Bytes());
    WriteFile("least.bmp", Header{INT_MAX / 3 + 1, 1, 24, 54}.Bytes());
    WriteFile("negative.bmp", Header{-30'000, -30'000, 24, 54}.Bytes());

    EXPECT_EXIT(
        {
            LimitMemory(4 * kGigabyte);  // for 2.7 GB, but not twice
            bool made = false;
            for (const char* file : {"large.bmp", "least.bmp", "negative.bmp"}) {
                made = LoadTexture(&texture_, file, false) || LoadTexture(&texture_, file, true) || made;
            }
            std::exit(made || !fakes::Lines().empty() || texture_ != kUntouched ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(TextureTest, TwoBitmapsWithoutMemoryForTheirTexelsMakeNoTexture) {
    // 300 MB each, and 400 MB for the texels.
    WriteFile("large.bmp", Header{10'000, 10'000, 24, 54}.Bytes());

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte);
            const bool made = LoadTextureAlpha(&texture_, "large.bmp", "large.bmp");
            std::exit(made || fakes::Count("glGenTextures") > 0 ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

#endif

// ---- What is left ----

TEST_F(TextureTest, LeavesNoFileOpenAndNoMemoryTaken) {
    constexpr std::size_t kMegabyte = 1U << 20U;
    const auto open_files = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    const auto memory = [] {
        const struct mallinfo2 in_use = mallinfo2();
        return in_use.uordblks + in_use.hblkhd;
    };
    WriteFile("large.bmp", WithPalette(200, 200, 8, Noise(40'000)));
    const auto files_before = open_files();
    const auto memory_before = memory();

    for (int i = 0; i < 50; ++i) {
        LoadTexture(&texture_, "large.bmp", true);
        LoadTextureAlpha(&texture_, "large.bmp", "large.bmp");
        LoadTextureAlpha(&texture_, "large.bmp", "color.bmp");
        fakes::Reset();
    }

    EXPECT_EQ(open_files(), files_before);
    EXPECT_LT(memory(), memory_before + kMegabyte);
}

}  // namespace
