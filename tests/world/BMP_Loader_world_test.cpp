// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The reader of bitmaps beside ImageMagick: files of random sizes and pixels of every kind that it takes, as
// convert writes them, give the pixels that convert reads back itself. Only sizes whose rows need no padding:
// padding is read as pixels, which is meant. Fixed pictures, and textures of them, are in
// tests/tools/bitmap_tools_test.cpp.
#include "engine/BMP_Loader.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/desktop/process.h"
#include "tests/unit/temporary_folder.h"

namespace {

void Convert(std::vector<std::string> words) {
    words.insert(words.begin(), "convert");
    desktop::Command command;
    command.words = std::move(words);
    command.error_file = "said";
    ASSERT_EQ(desktop::Process(command).WaitForEnd(60), 0) << ReadFile("said");
}

/// A kind of bitmap: its depth, what makes convert write it, and the widths that need no padding.
struct Kind {
    const char* name;
    int bits;
    std::vector<std::string> words;
    int width_step;
    int only_edge = 0;  ///< the only width and height; 0: any
};

std::ostream& operator<<(std::ostream& out, const Kind& kind) {
    return out << kind.name;
}

class BitmapsOfTheWorld : public testing::TestWithParam<Kind> {
    TemporaryFolder folder_;

  protected:
    std::mt19937 random_{17};

    int Choose(int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(random_);
    }

    /// Writes "image.bmp" and, as convert reads it back, "pixels": red first, the bottom row first.
    void Write(int width, int height) {
        std::vector<std::string> words = {"-seed", std::to_string(Choose(1, 1000)), "-size",
                                          std::to_string(width) + "x" + std::to_string(height)};
        words.insert(words.end(), GetParam().words.begin(), GetParam().words.end());
        for (const char* word : {"-compress", "none", "BMP3:image.bmp"}) words.emplace_back(word);
        ASSERT_NO_FATAL_FAILURE(Convert(words));
        ASSERT_NO_FATAL_FAILURE(Convert({"image.bmp", "-flip", "-depth", "8", "rgb:pixels"}));
    }
};

TEST_P(BitmapsOfTheWorld, DecodeToThePixelsThatConvertFinds) {
    const Kind& kind = GetParam();
    int of_the_kind = 0;
    for (int i = 0; i < 8; ++i) {
        const int width =
            kind.only_edge != 0 ? kind.only_edge : kind.width_step * Choose(1, 160 / kind.width_step);
        const int height = kind.only_edge != 0 ? kind.only_edge : Choose(1, 120);
        ASSERT_NO_FATAL_FAILURE(Write(width, height));
        const std::string file = ReadFile("image.bmp");
        // Convert takes a lower depth where the colours are few.
        if (file.at(28) != kind.bits) continue;
        ++of_the_kind;
        BMPClass image;
        ASSERT_EQ(BMPLoad("image.bmp", image), 0);
        ASSERT_EQ(image.width, width);
        ASSERT_EQ(image.height, height);
        const auto count = 3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        EXPECT_TRUE(ReadFile("pixels") == std::string(reinterpret_cast<const char*>(image.bytes), count))
            << width << " x " << height;
    }
    EXPECT_GE(of_the_kind, 5) << "convert has written other depths";
}

const std::vector<std::string> kNoise = {"xc:", "+noise", "Random"};

std::vector<std::string> Noise(const std::vector<std::string>& words) {
    std::vector<std::string> all = kNoise;
    all.insert(all.end(), words.begin(), words.end());
    return all;
}

INSTANTIATE_TEST_SUITE_P(
    Of, BitmapsOfTheWorld,
    testing::Values(Kind{"Bits24", 24, Noise({"-type", "TrueColor"}), 4},
                    Kind{"Bits8", 8, Noise({"+dither", "-colors", "256", "-type", "Palette"}), 4},
                    Kind{"Bits8Grey", 8,
                         Noise({"-colorspace", "Gray", "+dither", "-colors", "200", "-type", "Palette"}), 4},
                    Kind{"Bits4", 4, Noise({"+dither", "-colors", "16", "-type", "Palette"}), 256, 256},
                    Kind{"Bits1", 1, Noise({"-threshold", "50%", "-type", "Bilevel"}), 32}),
    [](const auto& test) { return test.param.name; });

}  // namespace
