// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The pictures as the build bakes them: the files of the manifest, and the geometry that its code
// relies on.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tools/data_files.h"
#include "tests/tools/raw_picture.h"

namespace {

/// Returns every picture of the data folder; the font is one too.
std::vector<std::string> AllPictures() {
    std::vector<std::string> pictures = NamesFrom(".ttf");
    for (const std::string& picture : NamesFrom(".svg")) pictures.push_back(picture);
    return pictures;
}

constexpr std::uintmax_t kMebibyte = 1 << 20;

/// The owl's pictures are drawn this large, canvas units.
constexpr double kOwlUnits = 500;

std::string PathOf(const std::string& picture) {
    return std::string(ULMARO_DATA) + "/" + picture;
}

/// A rectangle in canvas units from the bottom left corner of an owl's picture.
struct Box {
    double left = kOwlUnits, bottom = kOwlUnits, right = 0, top = 0;

    bool Empty() const { return right < left; }
    bool Holds(double x, double y) const { return left <= x && x <= right && bottom <= y && y <= top; }
    double Width() const { return right - left; }
    double Height() const { return top - bottom; }
};

std::ostream& operator<<(std::ostream& out, const Box& box) {
    return out << "x " << box.left << " to " << box.right << ", y " << box.bottom << " to " << box.top;
}

/// Returns how much two pixels differ to the eye: colours count as much as they cover.
int Difference(const Texel& a, const Texel& b) {
    const auto channel = [&](int ca, int cb) { return std::abs(ca * a.a - cb * b.a) / 255; };
    return std::max({channel(a.r, b.r), channel(a.g, b.g), channel(a.b, b.b), std::abs(a.a - b.a)});
}

/// Returns the box around all pixels that differ between two pictures of one size.
Box BoxOfDifferences(const RawPicture& a, const RawPicture& b) {
    Box box;
    const double unit_x = kOwlUnits / a.Width();
    const double unit_y = kOwlUnits / a.Height();
    for (int y = 0; y < a.Height(); ++y) {
        for (int x = 0; x < a.Width(); ++x) {
            if (Difference(a.At(x, y), b.At(x, y)) <= 3) continue;
            box.left = std::min(box.left, x * unit_x);
            box.right = std::max(box.right, (x + 1) * unit_x);
            box.bottom = std::min(box.bottom, y * unit_y);
            box.top = std::max(box.top, (y + 1) * unit_y);
        }
    }
    return box;
}

// ---- Files ----

class EveryPicture : public testing::TestWithParam<std::string> {};

TEST_P(EveryPicture, HasTheBytesThatItsHeaderAnnounces) {
    const RawPicture picture = ReadRawPicture(PathOf(GetParam()));

    ASSERT_GE(picture.bytes, 8U) << "the file is missing";
    EXPECT_GT(picture.width, 0U);
    EXPECT_GT(picture.height, 0U);
    EXPECT_TRUE(picture.Whole()) << picture.width << " x " << picture.height << " in " << picture.bytes
                                 << " bytes";
}

INSTANTIATE_TEST_SUITE_P(Pictures, EveryPicture, testing::ValuesIn(AllPictures()),
                         [](const auto& test) { return test.param; });

TEST(Pictures, HaveTheSizesOfTheManifest) {
    const std::vector<DataFile> files = DataFilesFrom(".svg");
    ASSERT_FALSE(files.empty());

    for (const DataFile& file : files) {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::istringstream(file.recipe) >> width >> height;
        const RawPicture picture = ReadRawPicture(PathOf(file.name));
        EXPECT_EQ(picture.width, width) << file.name;
        EXPECT_EQ(picture.height, height) << file.name;
    }
}

TEST(Pictures, TakeLessThan32MebibytesInAll) {
    std::uintmax_t total = 0;

    for (const std::string& picture : AllPictures()) total += ReadRawPicture(PathOf(picture)).bytes;

    EXPECT_GT(total, 0U);
    EXPECT_LT(total, 32 * kMebibyte);
}

// ---- The owl's lids ----

/// A picture with open eyes; its twin has them shut.
struct Twins {
    std::string open;
    Box head;  ///< what the lids must keep inside
};

std::ostream& operator<<(std::ostream& out, const Twins& twins) {
    return out << twins.open;
}

class OwlTwins : public testing::TestWithParam<Twins> {};

TEST_P(OwlTwins, DifferOnlyAtTheLids) {
    const RawPicture open = ReadRawPicture(PathOf(GetParam().open));
    const RawPicture closed = ReadRawPicture(PathOf(GetParam().open + "_close_eyes"));
    ASSERT_FALSE(open.texels.empty());
    ASSERT_EQ(open.texels.size(), closed.texels.size());

    const Box lids = BoxOfDifferences(open, closed);

    const Box& head = GetParam().head;
    ASSERT_FALSE(lids.Empty()) << "the eyes do not close";
    EXPECT_TRUE(head.Holds(lids.left, lids.bottom) && head.Holds(lids.right, lids.top)) << lids;
    EXPECT_LT(lids.Width(), 120) << lids;
    EXPECT_LT(lids.Height(), 70) << lids;  // a tilted head's lids stand one above the other
}

// The standing owl's head is known to the unit; the others' heads are somewhere in the upper half.
INSTANTIATE_TEST_SUITE_P(Poses, OwlTwins,
                         testing::Values(Twins{"stand_01", {183, 345, 292, 415}},
                                         Twins{"stand_02", {150, 250, 350, 450}},
                                         Twins{"sleep", {150, 220, 350, 450}}),
                         [](const auto& test) { return test.param.open; });

TEST(Pictures, CloseBothEyesOfTheStandingOwl) {
    const RawPicture open = ReadRawPicture(PathOf("stand_01"));
    const RawPicture closed = ReadRawPicture(PathOf("stand_01_close_eyes"));
    ASSERT_EQ(open.texels.size(), closed.texels.size());

    const Box lids = BoxOfDifferences(open, closed);

    EXPECT_TRUE(lids.Holds(212.28, 377.25)) << lids;
    EXPECT_TRUE(lids.Holds(262.52, 374.80)) << lids;
}

// ---- The owl's pupils ----

/// A pupil's picture and where the program expects the pupil in it, as fractions of the picture, v upward.
struct Pupil {
    std::string picture;
    double u = 0;
    double v = 0;
};

std::ostream& operator<<(std::ostream& out, const Pupil& pupil) {
    return out << pupil.picture;
}

class Pupils : public testing::TestWithParam<Pupil> {};

TEST_P(Pupils, StandWhereTheProgramExpectsThem) {
    const RawPicture picture = ReadRawPicture(PathOf(GetParam().picture));
    double u = 0;
    double v = 0;
    double dark = 0;

    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            const Texel& texel = picture.At(x, y);
            if (texel.a < 128 || texel.r + texel.g + texel.b > 3 * 80) continue;
            u += (x + 0.5) / picture.Width();
            v += (y + 0.5) / picture.Height();
            dark += 1;
        }
    }

    ASSERT_GT(dark, 0);
    EXPECT_NEAR(u / dark * kOwlUnits, GetParam().u * kOwlUnits, 0.5);
    EXPECT_NEAR(v / dark * kOwlUnits, GetParam().v * kOwlUnits, 0.5);
}

INSTANTIATE_TEST_SUITE_P(Eyes, Pupils,
                         testing::Values(Pupil{"eye_left", 0.42456, 0.75450},
                                         Pupil{"eye_right", 0.52504, 0.74960}),
                         [](const auto& test) { return test.param.picture; });

// ---- The editor's panel ----

// The description holds 345 characters: a line of 44 and seven of 43. The caret behind them stands in a ninth
// line.
TEST(Pictures, GiveEachLineOfTheDescriptionAndTheCaretBehindItTheSameGround) {
    constexpr double kCanvas = 512;
    constexpr double kLineHeight = 20.5;
    constexpr int kLines = 9;
    constexpr int kShades = 24;  // how much the ground may change from its top to its bottom, of 255
    const RawPicture panel = ReadRawPicture(PathOf("GUI_02"));
    ASSERT_FALSE(panel.texels.empty());
    const double unit = panel.Width() / kCanvas;
    const Texel& ground = panel.At(static_cast<int>(256 * unit), static_cast<int>(180 * unit));

    for (int line = 0; line < kLines; ++line) {
        const bool last = line == kLines - 1;
        const double left = 28;
        const double right = last ? 38 : 479;  // the last has room for the caret alone
        const double bottom = 170 - kLineHeight * line;
        int other = 0;
        for (int y = static_cast<int>(bottom * unit); y < static_cast<int>((bottom + 20) * unit); ++y) {
            for (int x = static_cast<int>(left * unit); x < static_cast<int>(right * unit); ++x) {
                if (Difference(ground, panel.At(x, y)) > kShades) ++other;
            }
        }
        EXPECT_EQ(other, 0) << "pixels behind line " << line + 1;
    }
}

// ---- Edges ----

/// The least and the greatest value of each channel among some pixels.
struct ColourRange {
    std::array<int, 3> low = {255, 255, 255};
    std::array<int, 3> high = {0, 0, 0};
    bool opaque = false;  ///< one of the pixels covers more than half

    void Add(const Texel& texel) {
        const std::array<int, 3> channels = {texel.r, texel.g, texel.b};
        for (std::size_t c = 0; c < 3; ++c) {
            low[c] = std::min(low[c], channels[c]);
            high[c] = std::max(high[c], channels[c]);
        }
        opaque = opaque || texel.a >= 128;
    }

    bool Near(const Texel& texel) const {
        constexpr int kRounding = 4;
        const std::array<int, 3> channels = {texel.r, texel.g, texel.b};
        for (std::size_t c = 0; c < 3; ++c) {
            if (channels[c] < low[c] - kRounding || channels[c] > high[c] + kRounding) return false;
        }
        return true;
    }
};

/// Returns the colours of the painted pixels around a pixel. Barely painted ones are left out: their colour
/// is coarse.
ColourRange PaintedAround(const RawPicture& picture, int x, int y) {
    constexpr int kTrustedAlpha = 24;
    ColourRange range;
    for (int ny = std::max(0, y - 1); ny <= std::min(picture.Height() - 1, y + 1); ++ny) {
        for (int nx = std::max(0, x - 1); nx <= std::min(picture.Width() - 1, x + 1); ++nx) {
            if (picture.At(nx, ny).a >= kTrustedAlpha) range.Add(picture.At(nx, ny));
        }
    }
    return range;
}

TEST_P(EveryPicture, HasNoFringeOfAnotherColour) {
    const RawPicture picture = ReadRawPicture(PathOf(GetParam()));
    ASSERT_FALSE(picture.texels.empty());
    int fringe = 0;

    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            if (picture.At(x, y).a != 0) continue;
            const ColourRange around = PaintedAround(picture, x, y);
            if (around.opaque && !around.Near(picture.At(x, y))) ++fringe;
        }
    }

    EXPECT_EQ(fringe, 0) << "transparent pixels whose colour would show at the picture's edge";
}

}  // namespace
