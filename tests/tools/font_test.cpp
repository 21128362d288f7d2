// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The font as the build bakes it: the grid that the program's text relies on.
//
// The program draws a cell as a square and advances by 1.025 of half its edge, so a glyph has the left half
// of its cell to itself. Distances are in texels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>

#include "tests/tools/raw_picture.h"

namespace {

constexpr int kGrid = 16;

/// The cell after the last character; all from here on are empty.
constexpr int kFirstUnused = '~' - ' ' + 1;

/// Half an advance, where a glyph's middle stands, of a cell's edge.
constexpr double kMiddle = 1.025 / 4;

/// How many texels of the soft dark edge may stand right of the cell's half.
constexpr int kEdge = 2;

/// A part of a cell, texels from its bottom left corner; bounds are the first texel and the one after the
/// last.
struct GlyphBox {
    int left = 1000, bottom = 1000, right = 0, top = 0;

    bool Empty() const { return right <= left; }
    void Add(int x, int y) {
        left = std::min(left, x);
        right = std::max(right, x + 1);
        bottom = std::min(bottom, y);
        top = std::max(top, y + 1);
    }
};

std::ostream& operator<<(std::ostream& out, const GlyphBox& box) {
    return out << "x " << box.left << " to " << box.right << ", y " << box.bottom << " to " << box.top;
}

/// How much of a texel's square is bright: 1 for opaque white, 0 for dark or transparent.
double InkOf(const Texel& texel) {
    const double brightness = (texel.r + texel.g + texel.b) / (3 * 255.0);
    return std::max(0.0, 2 * brightness - 1) * texel.a / 255;
}

class Font : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_FALSE(font.texels.empty());
        ASSERT_EQ(font.width % kGrid, 0U);
    }

    /// Returns the edge of a cell.
    int Cell() const { return font.Width() / kGrid; }

    /// Returns a texel of a cell, counted from the cell's bottom left corner.
    const Texel& At(int index, int x, int y) const {
        const int row_from_below = kGrid - 1 - index / kGrid;
        return font.At(index % kGrid * Cell() + x, row_from_below * Cell() + y);
    }

    /// Returns the box around a cell's ink, or around everything painted in it.
    GlyphBox BoxOfInk(int index) const {
        return BoxOf(index, [](const Texel& texel) { return InkOf(texel) > 0.3; });
    }
    GlyphBox BoxOfPaint(int index) const {
        return BoxOf(index, [](const Texel& texel) { return texel.a > 0; });
    }

    /// Returns the middle of a character's ink from left to right, each column counted once.
    double MiddleX(char c) const {
        const GlyphBox ink = BoxOfInk(c - ' ');
        // The outermost columns are partly covered: by as much as their best texel is.
        const double left = ink.left + 1 - BestInColumn(c, ink.left) - BestInColumn(c, ink.left - 1);
        const double right = ink.right - 1 + BestInColumn(c, ink.right - 1) + BestInColumn(c, ink.right);
        return (left + right) / 2;
    }

    /// Returns the middle of a character's ink from below to above.
    double MiddleY(char c) const {
        const GlyphBox ink = BoxOfInk(c - ' ');
        const double bottom = ink.bottom + 1 - BestInRow(c, ink.bottom) - BestInRow(c, ink.bottom - 1);
        const double top = ink.top - 1 + BestInRow(c, ink.top - 1) + BestInRow(c, ink.top);
        return (bottom + top) / 2;
    }

    const RawPicture font = ReadRawPicture(std::string(ULMARO_DATA) + "/font");

  private:
    template <typename Condition>
    GlyphBox BoxOf(int index, Condition counts) const {
        GlyphBox box;
        for (int y = 0; y < Cell(); ++y) {
            for (int x = 0; x < Cell(); ++x) {
                if (counts(At(index, x, y))) box.Add(x, y);
            }
        }
        return box;
    }

    double BestInColumn(char c, int x) const {
        double best = 0;
        for (int y = 0; y < Cell() && x >= 0 && x < Cell(); ++y)
            best = std::max(best, InkOf(At(c - ' ', x, y)));
        return best;
    }
    double BestInRow(char c, int y) const {
        double best = 0;
        for (int x = 0; x < Cell() && y >= 0 && y < Cell(); ++x)
            best = std::max(best, InkOf(At(c - ' ', x, y)));
        return best;
    }
};

TEST_F(Font, IsAGridOf16By16SquareCells) {
    EXPECT_EQ(font.width, font.height);
    EXPECT_EQ(font.width % kGrid, 0U);
    EXPECT_GE(Cell(), 16) << "too coarse to read";
}

TEST_F(Font, HasInkInTheCellOfEveryCharacterButTheBlank) {
    EXPECT_TRUE(BoxOfPaint(0).Empty()) << "the blank is the first cell, at the top left";
    for (char c = '!'; c <= '~'; ++c) EXPECT_FALSE(BoxOfInk(c - ' ').Empty()) << c;
}

TEST_F(Font, IsEmptyAfterItsLastCharacter) {
    for (int index = kFirstUnused; index < kGrid * kGrid; ++index) {
        EXPECT_TRUE(BoxOfPaint(index).Empty()) << "cell " << index;
    }
}

TEST_F(Font, KeepsTheInkInTheLeftHalfOfItsCell) {
    for (char c = '!'; c <= '~'; ++c) EXPECT_LE(BoxOfInk(c - ' ').right, Cell() / 2) << c;
}

TEST_F(Font, KeepsTheDarkEdgeNearTheLeftHalfOfItsCell) {
    for (char c = '!'; c <= '~'; ++c) EXPECT_LE(BoxOfPaint(c - ' ').right, Cell() / 2 + kEdge) << c;
}

TEST_F(Font, KeepsTheInkATexelAwayFromTheNeighboursSoThatFilteringDoesNotMixThem) {
    for (char c = '!'; c <= '~'; ++c) {
        const GlyphBox ink = BoxOfInk(c - ' ');
        EXPECT_GE(ink.left, 1) << c << ": " << ink;
        EXPECT_GE(ink.bottom, 1) << c << ": " << ink;
        EXPECT_LE(ink.top, Cell() - 1) << c << ": " << ink;
    }
}

TEST_F(Font, PutsTheMiddleOfTheCapitalsAtTheMiddleOfTheCell) {
    for (const char c : std::string("ABDEFHIKLMNPRTVXYZ")) EXPECT_NEAR(MiddleY(c), Cell() / 2.0, 0.6) << c;
}

TEST_F(Font, PutsTheMiddleOfASymmetricGlyphHalfAnAdvanceFromTheCellsLeft) {
    for (const char c : std::string("H8M|")) EXPECT_NEAR(MiddleX(c), kMiddle * Cell(), 0.7) << c;
}

TEST_F(Font, StandsUprightAndTheRightWayRound) {
    const auto ink_of = [&](char c, int left, int bottom, int right, int top) {
        double ink = 0;
        for (int y = bottom; y < top; ++y) {
            for (int x = left; x < right; ++x) ink += InkOf(At(c - ' ', x, y));
        }
        return ink;
    };
    const int half = Cell() / 2;
    const auto middle = static_cast<int>(std::lround(kMiddle * Cell()));
    EXPECT_GT(ink_of('T', 0, half, half, Cell()), 1.3 * ink_of('T', 0, 0, half, half)) << "the bar is above";
    EXPECT_GT(ink_of('L', 0, 0, half, half), 1.3 * ink_of('L', 0, half, half, Cell())) << "the foot is below";
    EXPECT_GT(ink_of('F', 0, 0, middle, half), 2 * ink_of('F', middle, 0, half, half)) << "the stem is left";
    EXPECT_GT(ink_of('J', middle, half, half, Cell()), 2 * ink_of('J', 0, half, middle, Cell()))
        << "the stem is right";
}

TEST_F(Font, HasWhiteInkSoThatTheProgramCanTintIt) {
    for (char c = '!'; c <= '~'; ++c) {
        Texel brightest;
        for (int y = 0; y < Cell(); ++y) {
            for (int x = 0; x < Cell(); ++x) {
                const Texel& texel = At(c - ' ', x, y);
                if (InkOf(texel) > InkOf(brightest)) brightest = texel;
                // Between the white ink and the dark edge there are only greys, at most a little blue.
                if (texel.a <= 128) continue;
                EXPECT_LE(std::abs(texel.r - texel.b), 24) << c << ": " << x << ", " << y;
            }
        }
        EXPECT_GE(std::min({brightest.r, brightest.g, brightest.b}), 200) << c;
        EXPECT_GE(brightest.a, 250) << c;
    }
}

TEST_F(Font, HasADarkEdgeAroundTheInkSoThatItReadsOnAnyBackground) {
    for (char c = '!'; c <= '~'; ++c) {
        const GlyphBox ink = BoxOfInk(c - ' ');
        const GlyphBox paint = BoxOfPaint(c - ' ');
        EXPECT_LE(paint.left, ink.left) << c;  // the widest reach to the clear texel at their cell's left
        EXPECT_GT(paint.right, ink.right) << c;
        EXPECT_LT(paint.bottom, ink.bottom) << c;
        EXPECT_GT(paint.top, ink.top) << c;
    }
}

TEST_F(Font, LeavesAClearTexelAroundEveryCellSoThatNeighboursDoNotShow) {
    for (char c = '!'; c <= '~'; ++c) {
        const GlyphBox paint = BoxOfPaint(c - ' ');
        EXPECT_GE(paint.left, 1) << c;
        EXPECT_GE(paint.bottom, 1) << c;
    }
}

// ---- The count of notices ----

/// The badge behind the count of notices and its line, canvas units; x and y from the badge's middle
/// (app/notifications.cpp).
constexpr double kBadgeEdge = 40;
constexpr double kCountX = -6;    // the line's middle
constexpr double kCountY = -9;    // its lower edge
constexpr double kTextSize = 10;  // half a cell's edge
constexpr double kLetter = 1.025 * kTextSize;

TEST_F(Font, LetsCountsOfOneTwoAndThreeDigitsStandOnTheirBadge) {
    const RawPicture badge = ReadRawPicture(std::string(ULMARO_DATA) + "/notify");
    ASSERT_FALSE(badge.texels.empty());
    const auto is_red = [&](double x, double y) {
        const int column = static_cast<int>(std::floor((x / kBadgeEdge + 0.5) * badge.Width()));
        const int row = static_cast<int>(std::floor((y / kBadgeEdge + 0.5) * badge.Height()));
        if (column < 0 || column >= badge.Width() || row < 0 || row >= badge.Height()) return false;
        const Texel& texel = badge.At(column, row);
        return texel.a > 250 && texel.r > 2 * texel.g && texel.r > 100;
    };
    for (const std::string count : {"7", "42", "128"}) {
        double left = kCountX - kLetter * static_cast<double>(count.size()) / 2;
        for (const char digit : count) {
            int off = 0;
            for (int y = 0; y < Cell(); ++y) {
                for (int x = 0; x < Cell(); ++x) {
                    if (InkOf(At(digit - ' ', x, y)) < 0.5) continue;
                    const double unit = 2 * kTextSize / Cell();
                    off += is_red(left + (x + 0.5) * unit, kCountY + (y + 0.5) * unit) ? 0 : 1;
                }
            }
            EXPECT_EQ(off, 0) << "texels of " << digit << " in " << count << " beside the badge's red";
            left += kLetter;
        }
    }
}

}  // namespace
