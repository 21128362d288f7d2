// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/BMP_Loader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <new>
#include <ostream>
#include <string>
#include <utility>

#include "tests/unit/bitmap_files.h"
#include "tests/unit/limit_process.h"
#include "tests/unit/temporary_folder.h"

namespace {

using bitmaps::Decoded;
using bitmaps::Header;
using bitmaps::Noise;
using bitmaps::Palette;
using bitmaps::PaletteBytes;
using bitmaps::TrueColor;
using bitmaps::WithPalette;

constexpr char kFile[] = "image.bmp";

/// A code as a letter that a failing test can print; '0' is success.
char Letter(char code) {
    return code == 0 ? '0' : code;
}

/// Returns an image's bytes, which has sizes that are not negative.
std::string BytesOf(const BMPClass& image) {
    const std::size_t count =
        3 * static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    return {reinterpret_cast<const char*>(image.bytes), count};
}

class BitmapTest : public testing::Test {
  protected:
    /// Writes a file and loads it; returns the code as a letter.
    char Load(const std::string& file) {
        WriteFile(kFile, file);
        return Letter(BMPLoad(kFile, image_));
    }

    /// Expects that a file loads with success to just those bytes, red first.
    void ExpectPixels(const std::string& file, const std::string& pixels, const std::string& what = "") {
        EXPECT_EQ(Load(file), '0') << what;
        EXPECT_EQ(BytesOf(image_), pixels) << what;
    }

    BMPClass image_;

  private:
    TemporaryFolder folder_;
};

// ---- Messages ----

TEST(BitmapErrors, HaveTheirMessages) {
    EXPECT_EQ(TranslateBMPError(0), "No errors detected");
    EXPECT_EQ(TranslateBMPError('o'), "Failed to open the file, suspect it doesn't exist");
    EXPECT_EQ(TranslateBMPError('b'), "This file is not a bitmap, specifically it doesn't start 'BM'");
    EXPECT_EQ(TranslateBMPError('u'), "Unknown bmp format, ie not 24bit, 256,16 or 2 colour");
    EXPECT_EQ(TranslateBMPError('f'),
              "ferror said we had an error. This error seems to not always mean anything, try ignoring it");
    EXPECT_EQ(TranslateBMPError('i'),
              "sizeof(int)!=4 quite a lot of rewriting probably needs to be done on the code");
}

TEST(BitmapErrors, AllOtherCodesAreNotValid) {
    const std::string known("\0obufi", 6);

    for (int code = CHAR_MIN; code <= CHAR_MAX; ++code) {
        const char letter = static_cast<char>(code);
        if (known.find(letter) != std::string::npos) continue;
        EXPECT_EQ(TranslateBMPError(letter), "Not a valid error code") << code;
    }
    EXPECT_EQ(TranslateBMPError('x'), "Not a valid error code");
}

// ---- The image ----

TEST(BitmapImage, HasNoBytesAtFirst) {
    const BMPClass image;

    EXPECT_EQ(image.bytes, nullptr);
}

TEST(BitmapImage, GetsThreeBlackBytesAPixel) {
    BMPClass image;
    image.width = 5;
    image.height = 7;

    image.allocateMem();

    EXPECT_EQ(BytesOf(image), std::string(105, '\0'));
    EXPECT_GE(malloc_usable_size(image.bytes), 105U);
}

TEST(BitmapImage, GetsNewBytesWhereItHadSome) {
    BMPClass image;
    image.width = image.height = 1;
    image.allocateMem();
    std::fill_n(image.bytes, 3, std::uint8_t{255});
    image.width = 100;

    image.allocateMem();

    EXPECT_EQ(BytesOf(image), std::string(300, '\0'));
}

TEST(BitmapImage, ReleasesItsOldBytes) {
    constexpr std::size_t kMegabyte = 1U << 20U;
    BMPClass image;
    image.width = 1000;
    image.height = 100;
    image.allocateMem();
    const struct mallinfo2 before = mallinfo2();

    for (int i = 0; i < 100; ++i) image.allocateMem();

    const struct mallinfo2 after = mallinfo2();
    EXPECT_LT(after.uordblks + after.hblkhd, before.uordblks + before.hblkhd + kMegabyte);
}

TEST(BitmapImage, ReleasesItsBytesAtItsEnd) {
    constexpr std::size_t kMegabyte = 1U << 20U;
    const struct mallinfo2 before = mallinfo2();

    for (int i = 0; i < 100; ++i) {
        BMPClass image;
        image.width = 1000;
        image.height = 100;
        image.allocateMem();
    }

    const struct mallinfo2 after = mallinfo2();
    EXPECT_LT(after.uordblks + after.hblkhd, before.uordblks + before.hblkhd + kMegabyte);
}

TEST(BitmapImage, CanBeAsSmallAsNothing) {
    BMPClass image;

    for (const auto& [width, height] : {std::pair{0, 0}, {0, 7}, {7, 0}, {0, -7}, {-7, 0}}) {
        image.width = width;
        image.height = height;
        EXPECT_NO_THROW(image.allocateMem()) << width << " x " << height;
    }
}

TEST(BitmapImage, OfANegativeSizeHasNoMemoryAndKeepsItsSizesWithoutBytes) {
    BMPClass image;

    for (const auto& [width, height] : {std::pair{-1, 1}, {1, -1}, {INT_MIN, 1}, {INT_MAX, -1}}) {
        image.width = image.height = 2;
        image.allocateMem();
        image.width = width;
        image.height = height;
        EXPECT_THROW(image.allocateMem(), std::bad_alloc) << width << " x " << height;
        EXPECT_EQ(image.bytes, nullptr) << width << " x " << height;
        EXPECT_EQ(std::pair(image.width, image.height), std::pair(width, height));
    }
}

TEST(BitmapImage, OfMoreBytesThanCanBeCountedHasNoMemory) {
    BMPClass image;

    for (const int size : {INT_MAX, INT_MIN}) {
        image.width = image.height = size;
        EXPECT_THROW(image.allocateMem(), std::bad_alloc) << size;
        EXPECT_EQ(image.bytes, nullptr) << size;
    }
}

TEST(BitmapImage, OfTwoNegativeSizesHasTheBytesOfTheirProduct) {
    BMPClass image;
    image.width = -5;
    image.height = -7;

    image.allocateMem();

    EXPECT_GE(malloc_usable_size(image.bytes), 105U);
}

TEST(BitmapImage, FindsAPixelByColumnRowAndColor) {
    BMPClass image;
    image.width = 4;
    image.height = 3;
    image.allocateMem();

    EXPECT_EQ(&image.pixel(0, 0, 0), image.bytes);
    EXPECT_EQ(&image.pixel(0, 0, 2), image.bytes + 2);
    EXPECT_EQ(&image.pixel(1, 0, 0), image.bytes + 3);
    EXPECT_EQ(&image.pixel(0, 1, 0), image.bytes + 12);
    EXPECT_EQ(&image.pixel(3, 2, 1), image.bytes + 34);
}

TEST(BitmapImage, ChangesAPixelInPlace) {
    BMPClass image;
    image.width = image.height = 2;
    image.allocateMem();

    image.pixel(1, 0, 2) = 77;

    EXPECT_EQ(image.bytes[5], 77);
}

// ---- Files that are no bitmaps ----

TEST_F(BitmapTest, AMissingFileIsNotOpened) {
    EXPECT_EQ(BMPLoad("missing.bmp", image_), 'o');
    EXPECT_EQ(BMPLoad("", image_), 'o');
    EXPECT_EQ(image_.bytes, nullptr);
}

TEST_F(BitmapTest, AFileThatBeginsOtherwiseIsNoBitmap) {
    const Header header = {1, 1, 24, 54};
    for (const std::string magic : {"BA", "AM", "MB", "bm"}) {
        Header other = header;
        other.magic = magic;
        EXPECT_EQ(Load(other.Bytes() + "abc"), 'b') << magic;
    }
}

TEST_F(BitmapTest, AFileTooShortForTheTwoLettersIsNoBitmap) {
    EXPECT_EQ(Load(""), 'b');
    EXPECT_EQ(Load("B"), 'b');
    EXPECT_EQ(Load("M"), 'b');
}

TEST_F(BitmapTest, AFolderIsNoBitmap) {
    std::filesystem::create_directory("folder");

    EXPECT_EQ(BMPLoad("folder", image_), 'b');
}

TEST_F(BitmapTest, WhatIsNoBitmapLeavesTheImageAsItWas) {
    Load(TrueColor(1, 1, "abc"));
    const unsigned char* bytes = image_.bytes;

    EXPECT_EQ(BMPLoad("missing.bmp", image_), 'o');
    EXPECT_EQ(Load("BA" + std::string(100, 'x')), 'b');

    EXPECT_EQ(image_.width, 1);
    EXPECT_EQ(image_.height, 1);
    EXPECT_EQ(image_.bytes, bytes);
    EXPECT_EQ(BytesOf(image_), "cba");
}

TEST_F(BitmapTest, OtherDepthsAreUnknownAndLeaveAnImageOfTheFilesSize) {
    for (int bits = 0; bits < 256; ++bits) {
        if (bits == 1 || bits == 4 || bits == 8 || bits == 24) continue;
        image_.width = image_.height = 1;
        image_.allocateMem();
        EXPECT_EQ(Load(Header{30, 20, bits, 54}.Bytes() + Noise(2400)), 'u') << bits;
        EXPECT_EQ(image_.width, 30) << bits;
        EXPECT_EQ(image_.height, 20) << bits;
        ASSERT_NE(image_.bytes, nullptr) << bits;
        EXPECT_GE(malloc_usable_size(image_.bytes), 1800U) << bits;
    }
}

TEST_F(BitmapTest, TheCodeAloneIsThatOfTheWholeReader) {
    WriteFile("good.bmp", TrueColor(1, 1, "abc"));
    WriteFile("32.bmp", Header{1, 1, 32, 54}.Bytes() + "abcd");
    WriteFile("not.bmp", "BA");

    EXPECT_EQ(BMPLoad("good.bmp"), 0);
    EXPECT_EQ(BMPLoad("32.bmp"), 'u');
    EXPECT_EQ(BMPLoad("not.bmp"), 'b');
    EXPECT_EQ(BMPLoad("missing.bmp"), 'o');
}

// ---- 24 bits ----

TEST_F(BitmapTest, BlueGreenRedBecomesRedGreenBlue) {
    ExpectPixels(TrueColor(4, 1, "abcdefghijkl"), "cbafedihglkj");
    EXPECT_EQ(image_.width, 4);
    EXPECT_EQ(image_.height, 1);
}

TEST_F(BitmapTest, RowsAreInTheOrderOfTheFile) {
    ExpectPixels(TrueColor(4, 2, "abcdefghijklABCDEFGHIJKL"), "cbafedihglkjCBAFEDIHGLKJ");
}

TEST_F(BitmapTest, PaddingIsTakenForPixelsSoThatTheImageIsSheared) {
    ExpectPixels(TrueColor(2, 2, "abcdef..ABCDEF.."), "cbafedA..DCB");
}

// ---- Palettes ----

TEST_F(BitmapTest, In256ColorsEveryByteIsAColor) {
    std::string all;
    std::string colors;
    for (unsigned i = 0; i < 256; ++i) {
        all += static_cast<char>(i);
        colors += {static_cast<char>(255 - i), static_cast<char>(i * 5 + 1), static_cast<char>(i + 3)};
    }

    ExpectPixels(WithPalette(64, 4, 8, all), colors);
}

TEST_F(BitmapTest, In256ColorsPaddingIsTakenForPixels) {
    const std::string palette = Palette(8);
    const auto red = [&](char index) {
        return palette[4 * std::size_t{static_cast<unsigned char>(index)} + 2];
    };

    EXPECT_EQ(Load(WithPalette(3, 2, 8, "abc.ABC.")), '0');

    EXPECT_EQ(static_cast<char>(image_.pixel(2, 0, 0)), red('c'));
    EXPECT_EQ(static_cast<char>(image_.pixel(0, 1, 0)), red('.'));
    EXPECT_EQ(static_cast<char>(image_.pixel(1, 1, 0)), red('A'));
    EXPECT_EQ(static_cast<char>(image_.pixel(2, 1, 0)), red('B'));
}

TEST_F(BitmapTest, In16ColorsTheHighHalfOfAByteIsTheLeftPixel) {
    const std::string file = WithPalette(256, 256, 4, "\x1E" + std::string(256 * 128 - 2, '\x00') + "\xF2");

    EXPECT_EQ(Load(file), '0');

    EXPECT_EQ(image_.pixel(0, 0, 0), 255 - 1);
    EXPECT_EQ(image_.pixel(1, 0, 0), 255 - 0xE);
    EXPECT_EQ(image_.pixel(1, 0, 1), 0xE * 5 + 1);
    EXPECT_EQ(image_.pixel(1, 0, 2), 0xE + 3);
    EXPECT_EQ(image_.pixel(2, 0, 0), 255);
    EXPECT_EQ(image_.pixel(254, 255, 0), 255 - 0xF);
    EXPECT_EQ(image_.pixel(255, 255, 0), 255 - 2);
}

TEST_F(BitmapTest, In16ColorsEveryRowOfTheFileIsTakenToBe256Wide) {
    std::string pixels(256UL * 128, '\x11');
    for (std::size_t y = 0; y < 4; ++y) pixels.replace(y * 128, 2, "\x23\x45");

    EXPECT_EQ(Load(WithPalette(4, 4, 4, pixels)), '0');

    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) EXPECT_EQ(image_.pixel(x, y, 0), 255 - (2 + x)) << x << ", " << y;
    }
}

TEST_F(BitmapTest, In16ColorsWhatIsBeyond256StaysBlack) {
    EXPECT_EQ(Load(WithPalette(300, 260, 4, std::string(300UL * 260, '\x33'))), '0');

    EXPECT_EQ(image_.pixel(255, 255, 0), 255 - 3);
    EXPECT_EQ(image_.pixel(256, 0, 0), 0);
    EXPECT_EQ(image_.pixel(299, 0, 0), 0);
    EXPECT_EQ(image_.pixel(0, 256, 0), 0);
    EXPECT_EQ(image_.pixel(299, 259, 0), 0);
}

TEST_F(BitmapTest, In2ColorsTheHighestBitIsTheLeftmostPixel) {
    EXPECT_EQ(Load(WithPalette(8, 1, 1, "\xA1")), '0');

    const int bits[] = {1, 0, 1, 0, 0, 0, 0, 1};
    for (int x = 0; x < 8; ++x) EXPECT_EQ(image_.pixel(x, 0, 2), bits[x] + 3) << x;
}

TEST_F(BitmapTest, In2ColorsARowBeginsWithANewByte) {
    EXPECT_EQ(Load(WithPalette(10, 2, 1, std::string("\xFF\xBF\x00\x40", 4))), '0');

    EXPECT_EQ(image_.pixel(8, 0, 2), 1 + 3);
    EXPECT_EQ(image_.pixel(9, 0, 2), 0 + 3);
    EXPECT_EQ(image_.pixel(0, 1, 2), 0 + 3);
    EXPECT_EQ(image_.pixel(8, 1, 2), 0 + 3);
    EXPECT_EQ(image_.pixel(9, 1, 2), 1 + 3);
}

// ---- All depths ----

/// An image of noise.
struct Shape {
    int width, height, bits;

    /// Returns the file, with `gap` bytes between palette and pixels.
    std::string File(int gap = 0) const {
        return HeaderOf(gap).Bytes() + Palette(bits) + std::string(static_cast<std::size_t>(gap), '\x5A') +
               Noise(bits == 4 ? std::size_t{256} * 128 : static_cast<std::size_t>(width * height * 3));
    }
    Header HeaderOf(int gap = 0) const { return {width, height, bits, 54 + PaletteBytes(bits) + gap}; }
};

std::ostream& operator<<(std::ostream& out, const Shape& shape) {
    return out << shape.width << " x " << shape.height << " of " << shape.bits << " bits";
}

class BitmapShapes : public BitmapTest, public testing::WithParamInterface<Shape> {};

TEST_P(BitmapShapes, EveryPixelIsFromItsPlaceInTheFile) {
    const std::string file = GetParam().File();

    ExpectPixels(file, Decoded(file, GetParam().HeaderOf()));

    EXPECT_EQ(image_.width, GetParam().width);
    EXPECT_EQ(image_.height, GetParam().height);
}

TEST_P(BitmapShapes, ThePixelsBeginWhereTheHeaderSays) {
    for (const int gap : {1, 2, 1000, 5000}) {
        const std::string file = GetParam().File(gap);
        ExpectPixels(file, Decoded(file, GetParam().HeaderOf(gap)), std::to_string(gap));
    }
}

TEST_P(BitmapShapes, ThePixelsMayBeginInThePaletteOrTheHeader) {
    const int palette = PaletteBytes(GetParam().bits);
    for (const int gap : {-1, -palette, -palette - 1, -palette - 54}) {
        const Header header = GetParam().HeaderOf(gap);
        const std::string file = header.Bytes() + Palette(header.bits) + Noise(1000);
        ExpectPixels(file, Decoded(file, header), std::to_string(gap));
    }
}

TEST_P(BitmapShapes, PixelsThatWouldBeginBeforeTheFileFollowThePalette) {
    for (const int start : {-1, INT_MIN}) {
        Header header = GetParam().HeaderOf();
        header.start = start;
        const std::string rest = Palette(header.bits) + Noise(1000);
        ExpectPixels(header.Bytes() + rest, Decoded(header.Bytes() + rest, GetParam().HeaderOf()));
    }
}

TEST_P(BitmapShapes, PixelsThatWouldBeginPastTheFileAreBlack) {
    Header header = GetParam().HeaderOf();
    const std::string black(3 * static_cast<std::size_t>(header.width * header.height), '\0');
    for (const int start : {100'000, INT_MAX}) {
        header.start = start;
        ExpectPixels(header.Bytes() + Palette(header.bits) + Noise(1000), black, std::to_string(start));
    }
}

TEST_P(BitmapShapes, AFileCutAfterItsHeaderIsBlackWhereItIsCut) {
    const Header header = GetParam().HeaderOf();
    const std::string file = GetParam().File();
    const std::size_t end = std::min<std::size_t>(file.size(), 54 + 1024 + 600);
    const std::size_t step = header.width * header.height > 10'000 ? 97 : 1;

    WriteFile(kFile, file.substr(0, end));

    for (std::size_t length = end; length >= 54; length -= step) {
        std::filesystem::resize_file(kFile, length);
        EXPECT_EQ(Letter(BMPLoad(kFile, image_)), '0') << length;
        ASSERT_EQ(BytesOf(image_), Decoded(file.substr(0, length), header)) << length;
    }
}

TEST_P(BitmapShapes, AFileCutInItsHeaderHasNoDepthOrLacksTheRest) {
    const std::string file = GetParam().File();

    for (std::size_t length = 0; length < 54; ++length) {
        const char code = length < 2 ? 'b' : length <= 28 ? 'u' : '0';
        EXPECT_EQ(Load(file.substr(0, length)), code) << length;
        if (code != '0') continue;
        EXPECT_EQ(BytesOf(image_).find_first_not_of('\0'), std::string::npos) << length;
    }
}

TEST_P(BitmapShapes, AnImageOfNoPixelsIsLoaded) {
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 5}, {5, 0}, {0, -5}, {-5, 0}}) {
        const Header header = {width, height, GetParam().bits, 54 + PaletteBytes(GetParam().bits)};
        EXPECT_EQ(Load(header.Bytes() + Palette(header.bits) + Noise(1000)), '0') << width << " x " << height;
    }
}

TEST_P(BitmapShapes, AnImageWithOneNegativeSizeHasNoMemoryAndKeepsItsSizesWithoutBytes) {
    for (const auto& [width, height] : {std::pair{-4, 4}, {4, -4}, {INT_MIN, INT_MAX}}) {
        Load(TrueColor(1, 1, "abc"));
        const Header header = {width, height, GetParam().bits, 54};
        WriteFile(kFile, header.Bytes() + Noise(2000));
        EXPECT_THROW(BMPLoad(kFile, image_), std::bad_alloc) << width << " x " << height;
        EXPECT_EQ(image_.bytes, nullptr) << width << " x " << height;
        EXPECT_EQ(std::pair(image_.width, image_.height), std::pair(width, height));
        EXPECT_THROW(BMPLoad(kFile), std::bad_alloc) << width << " x " << height;
    }
}

TEST_P(BitmapShapes, AnImageWithTwoNegativeSizesIsLoaded) {
    const Header header = {-4, -1, GetParam().bits, 54 + PaletteBytes(GetParam().bits)};

    EXPECT_EQ(Load(header.Bytes() + Palette(header.bits) + "abcdefghijkl" + Noise(1000)), '0');

    const std::string pixels(reinterpret_cast<const char*>(image_.bytes), 12);
    EXPECT_EQ(pixels, header.bits == 24 ? "cbafedihglkj" : std::string(12, '\0'));
}

TEST_P(BitmapShapes, LoadingAgainReplacesTheImage) {
    Load(TrueColor(50, 50, Noise(7500)));
    const std::string file = GetParam().File();

    ExpectPixels(file, Decoded(file, GetParam().HeaderOf()));
}

// ---- Where reading fails ----

/// A pipe with a name that holds the beginning of a file and is never closed, and a timer that interrupts
/// whoever waits for more of it: the reader's next read after those bytes fails.
class InterruptedPipe {
  public:
    explicit InterruptedPipe(const std::string& bytes) {
        EXPECT_EQ(mkfifo(kFile, 0600), 0);
        pipe_ = open(kFile, O_RDWR | O_CLOEXEC);
        EXPECT_EQ(write(pipe_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        struct sigaction action {};  // without SA_RESTART
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, &old_);
        const itimerval often = {{0, 20'000}, {0, 20'000}};
        setitimer(ITIMER_REAL, &often, nullptr);
    }
    ~InterruptedPipe() {
        const itimerval never = {};
        setitimer(ITIMER_REAL, &never, nullptr);
        sigaction(SIGALRM, &old_, nullptr);
        close(pipe_);
    }
    InterruptedPipe(const InterruptedPipe&) = delete;
    InterruptedPipe& operator=(const InterruptedPipe&) = delete;

  private:
    int pipe_ = -1;
    struct sigaction old_ {};
};

TEST_P(BitmapShapes, AReadThatFailsIsTold) {
    const std::string file = GetParam().File();
    const std::size_t pixels = 54 + static_cast<std::size_t>(PaletteBytes(GetParam().bits));
    const InterruptedPipe pipe(file.substr(0, pixels + 5));

    EXPECT_EQ(Letter(BMPLoad(kFile, image_)), 'f');
}

TEST_P(BitmapShapes, LeavesNoFileOpenHoweverItEnds) {
    const std::string file = GetParam().File();
    const auto before = OpenFiles();

    EXPECT_EQ(Load(file), '0');
    EXPECT_EQ(OpenFiles(), before) << "success";
    EXPECT_EQ(Load("BA" + file.substr(2)), 'b');
    EXPECT_EQ(OpenFiles(), before) << "no bitmap";
    EXPECT_EQ(Load(Header{4, 4, 32, 54}.Bytes() + file), 'u');
    EXPECT_EQ(OpenFiles(), before) << "unknown depth";
    WriteFile(kFile, Header{-4, 4, GetParam().bits, 54}.Bytes());
    EXPECT_THROW(BMPLoad(kFile, image_), std::bad_alloc);
    EXPECT_EQ(OpenFiles(), before) << "no memory";
    std::filesystem::remove(kFile);
    {
        const InterruptedPipe pipe(
            file.substr(0, 54 + static_cast<std::size_t>(PaletteBytes(GetParam().bits))));
        EXPECT_EQ(Letter(BMPLoad(kFile, image_)), 'f');
    }
    EXPECT_EQ(OpenFiles(), before) << "failed read";
}

// Widths of all rests by 4 and 8; of 16 colours also others than 256 x 256.
INSTANTIATE_TEST_SUITE_P(Depths, BitmapShapes,
                         testing::Values(Shape{4, 4, 24}, Shape{5, 3, 24}, Shape{6, 5, 24}, Shape{7, 3, 24},
                                         Shape{16, 8, 8}, Shape{13, 7, 8}, Shape{1, 50, 8},
                                         Shape{256, 256, 4}, Shape{64, 30, 4}, Shape{7, 5, 4},
                                         Shape{261, 3, 4}, Shape{3, 300, 4}, Shape{32, 8, 1}, Shape{9, 6, 1},
                                         Shape{15, 6, 1}, Shape{1, 9, 1}),
                         [](const auto& test) {
                             const Shape& shape = test.param;
                             return "Bits" + std::to_string(shape.bits) + "_" + std::to_string(shape.width) +
                                    "x" + std::to_string(shape.height);
                         });

// ---- Sizes beyond what a file holds ----

#ifndef __SANITIZE_ADDRESS__  // whose memory is another

/// Returns how much real memory the process has in use, bytes.
std::size_t ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST_F(BitmapTest, AnImageMuchLargerThanItsFileTakesLittleRealMemory) {
    constexpr int kEdge = 30'000;  // 2.7 GB, more bytes than an int can count
    constexpr std::size_t kAllowed = 64U << 20U;
    for (const int bits : {24, 8, 4, 1}) {
        const std::size_t before = ResidentBytes();

        EXPECT_EQ(Load(WithPalette(kEdge, kEdge, bits, Noise(1000))), '0') << bits;

        EXPECT_LT(ResidentBytes(), before + kAllowed) << bits;
        EXPECT_EQ(image_.pixel(kEdge - 1, kEdge - 1, 2), 0) << bits;
        EXPECT_NE(image_.pixel(0, 0, 0) + image_.pixel(0, 0, 1) + image_.pixel(0, 0, 2), 0) << bits;
    }
}

#endif

TEST_F(BitmapTest, AnImageOfMoreBytesThanThereCanBeHasNoMemory) {
    for (const int size : {INT_MAX, INT_MIN}) {
        WriteFile(kFile, Header{size, size, 24, 54}.Bytes() + Noise(100));
        EXPECT_THROW(BMPLoad(kFile, image_), std::bad_alloc) << size;
        EXPECT_EQ(image_.bytes, nullptr) << size;
    }
}

TEST_F(BitmapTest, LoadingOftenDoesNotPileUpMemory) {
    constexpr std::size_t kMegabyte = 1U << 20U;
    const std::string file = Shape{256, 256, 8}.File();
    Load(file);
    const struct mallinfo2 before = mallinfo2();

    for (int i = 0; i < 30; ++i) {
        Load(file);
        BMPLoad(kFile);
    }

    const struct mallinfo2 after = mallinfo2();
    EXPECT_LT(after.uordblks + after.hblkhd, before.uordblks + before.hblkhd + kMegabyte);
}

}  // namespace
