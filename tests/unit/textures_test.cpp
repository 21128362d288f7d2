// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/textures.h"

#include <GL/gl.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"
#include "tests/unit/library_calls.h"
#include "tests/unit/limit_memory.h"

namespace {

class TexturesTest : public AppTest {
  protected:
    /// Loads the pictures in the current folder and expects that the program ends with status 1 after one
    /// line, which names the file and the reason.
    static void ExpectRefusal(const std::string& file, const std::string& reason) {
        EXPECT_EXIT(LoadTextures(), testing::ExitedWithCode(1),
                    "^Ulmaro Assistant: [^\n]*\"" + file + "\": " + reason + "\\.\n$");
    }

    /// Returns the calls from one texture's making to its upload, in order.
    static std::vector<std::string> CallsOfTexture(std::size_t number) {
        std::vector<std::string> calls;
        for (std::size_t i = fakes::IndexOf("glGenTextures", number);
             i <= fakes::IndexOf("glTexImage2D", number); ++i) {
            if (fakes::Log().at(i).name != "glGetIntegerv") calls.push_back(fakes::Log()[i].line);
        }
        return calls;
    }

    PictureFolder pictures_;
};

// ---- The table ----

TEST_F(TexturesTest, LoadsThe35FilesInTheOrderOfTheTable) {
    LoadTextures();

    const std::vector<fakes::Call> uploads = fakes::Calls("glTexImage2D");
    ASSERT_EQ(uploads.size(), 35U);
    ASSERT_EQ(Pictures().size(), 35U);
    for (std::size_t i = 0; i < uploads.size(); ++i) {
        EXPECT_EQ(uploads[i].args.at(3), static_cast<double>(i + 1))
            << "the upload in the place of " << Pictures()[i].file;
    }
}

TEST_F(TexturesTest, AnIconOfItsOwnIsTheWindows) {
    PictureFolder::Write("window_icon", 2, 1, {1, 2, 3, 4, 5, 6, 7, 8});

    SetWindowClassAndIcon();

    EXPECT_EQ(fakes::desktop().program, "ulmaro-assistant");
    EXPECT_EQ(fakes::desktop().icon_width, 2);
    EXPECT_EQ(fakes::desktop().icon_height, 1);
    EXPECT_EQ(fakes::desktop().icon, (std::vector<unsigned char>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(fakes::Count("glGenTextures"), 0U) << "it is no texture";
}

TEST_F(TexturesTest, WithoutAnIconOrWithADamagedOneTheWindowHasItsNameAlone) {
    SetWindowClassAndIcon();
    EXPECT_EQ(fakes::Lines({"SetWindowIdentity"}),
              (std::vector<std::string>{"SetWindowIdentity(0, 0, \"ulmaro-assistant\")"}));

    PictureFolder::Write("window_icon", 2, 1, {1, 2, 3});
    SetWindowClassAndIcon();
    EXPECT_EQ(fakes::desktop().icon_width, 0);
    EXPECT_EQ(fakes::desktop().program, "ulmaro-assistant");
}

TEST_F(TexturesTest, EveryFileFeedsItsGlobal) {
    LoadTextures();

    int width = 1;
    for (const Picture& picture : Pictures()) {
        const fakes::Texture& texture = fakes::gl().textures.at(*picture.name);
        EXPECT_EQ(texture.width, width) << picture.file;
        EXPECT_EQ(texture.height, 2) << picture.file;
        ++width;
    }
}

TEST_F(TexturesTest, EveryFileHasATextureOfItsOwn) {
    LoadTextures();

    EXPECT_EQ(fakes::gl().textures.size(), 35U);
    EXPECT_TRUE(fakes::gl().deleted_textures.empty());
}

TEST_F(TexturesTest, TheFileCheckFeedsTheCheckButtonAndNotTheCheckBox) {
    PictureFolder::Write("check", 40, 1, std::vector<std::uint8_t>(160));
    PictureFolder::Write("button_check", 50, 1, std::vector<std::uint8_t>(200));

    LoadTextures();

    EXPECT_EQ(fakes::gl().textures.at(button_check).width, 40);
    EXPECT_EQ(fakes::gl().textures.at(button[kChecked]).width, 50);
}

TEST_F(TexturesTest, TheEditorsAndTheViewsPanelAreOneTexture) {
    LoadTextures();

    EXPECT_EQ(GUI[kViewScreen], GUI[kEditorScreen]);
    EXPECT_NE(GUI[kListScreen], GUI[kEditorScreen]);
    EXPECT_NE(GUI[kQuizScreen], GUI[kEditorScreen]);
}

// ---- One texture ----

TEST_F(TexturesTest, ATextureIsMadeBoundFilteredAndUploadedInThisOrder) {
    LoadTextures();

    EXPECT_EQ(CallsOfTexture(1),
              (std::vector<std::string>{
                  "glGenTextures(1)",
                  "glBindTexture(GL_TEXTURE_2D, " + std::to_string(background) + ")",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                  "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE)",
              }));
}

TEST_F(TexturesTest, TheFontsTextureIsClampedBeforeItIsFiltered) {
    LoadTextures();

    EXPECT_EQ(CallsOfTexture(0),
              (std::vector<std::string>{
                  "glGenTextures(1)",
                  "glBindTexture(GL_TEXTURE_2D, " + std::to_string(font) + ")",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                  "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                  "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE)",
              }));
}

TEST_F(TexturesTest, OnlyTheFontIsClampedAndAllAreFilteredWithoutMipmaps) {
    LoadTextures();

    for (const Picture& picture : Pictures()) {
        const fakes::Texture& texture = fakes::gl().textures.at(*picture.name);
        const GLint wrap = picture.name == &font ? GL_CLAMP : GL_REPEAT;
        EXPECT_EQ(texture.wrap_s, wrap) << picture.file;
        EXPECT_EQ(texture.wrap_t, wrap) << picture.file;
        EXPECT_EQ(texture.mag_filter, GL_LINEAR) << picture.file;
        EXPECT_EQ(texture.min_filter, GL_LINEAR) << picture.file;
        EXPECT_EQ(texture.levels, (std::set<int>{0})) << picture.file;
    }
}

TEST_F(TexturesTest, UploadsTheFilesBytesAsTheyAre) {
    const std::vector<std::uint8_t> pixels = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                              13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 255};
    PictureFolder::Write("hat", 3, 2, pixels);

    LoadTextures();

    EXPECT_EQ(fakes::gl().textures.at(hat).pixels, pixels);
    EXPECT_EQ(fakes::gl().textures.at(hat).width, 3);
    EXPECT_EQ(fakes::gl().textures.at(hat).height, 2);
}

TEST_F(TexturesTest, EveryFilesBytesReachItsTexture) {
    LoadTextures();

    std::uint8_t byte = 1;
    for (const Picture& picture : Pictures()) {
        EXPECT_EQ(fakes::gl().textures.at(*picture.name).pixels, std::vector<std::uint8_t>(byte * 8UL, byte))
            << picture.file;
        ++byte;
    }
}

TEST_F(TexturesTest, ATwoByOneFileHasSixteenBytes) {
    PictureFolder::WriteBytes("hat", {2, 0, 0, 0, 1, 0, 0, 0, 11, 12, 13, 14, 21, 22, 23, 24});

    LoadTextures();

    const fakes::Texture& texture = fakes::gl().textures.at(hat);
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(texture.height, 1);
    EXPECT_EQ(texture.pixels, (std::vector<std::uint8_t>{11, 12, 13, 14, 21, 22, 23, 24}));
}

TEST_F(TexturesTest, SizesNeedNotBePowersOfTwoAndHaveFourBytes) {
    PictureFolder::Write("hat", 259, 3, std::vector<std::uint8_t>(259UL * 3 * 4, 9));

    LoadTextures();

    EXPECT_EQ(fakes::gl().textures.at(hat).width, 259);
    EXPECT_EQ(fakes::gl().textures.at(hat).height, 3);
}

TEST_F(TexturesTest, LooksItsFilesUpInTheCurrentDirectory) {
    const PictureFolder elsewhere(7);

    LoadTextures();

    for (const Picture& picture : Pictures())
        EXPECT_EQ(fakes::gl().textures.at(*picture.name).height, 7) << picture.file;
}

TEST_F(TexturesTest, ReadsEveryFileOnce) {
    LoadTextures();

    EXPECT_EQ(fakes::Count("glGenTextures"), 35U);
    EXPECT_EQ(fakes::Count("glTexImage2D"), 35U);
}

TEST_F(TexturesTest, LeavesNoFileOpen) {
    const auto open_files = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    const auto before = open_files();

    LoadTextures();

    EXPECT_EQ(open_files(), before);
}

TEST_F(TexturesTest, SaysNothingWhenAllIsWell) {
    testing::internal::CaptureStderr();

    LoadTextures();

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// ---- Files that are no pictures ----

TEST_F(TexturesTest, AnyMissingFileEndsTheProgramWithALineThatNamesIt) {
    for (const Picture& picture : Pictures()) {
        std::filesystem::rename(picture.file, "kept");
        ExpectRefusal(picture.file, "il file non c'e'");
        std::filesystem::rename("kept", picture.file);
    }
}

TEST_F(TexturesTest, TheFirstMissingFileIsTheOneNamed) {
    std::filesystem::remove("tree");
    std::filesystem::remove("sleep");

    ExpectRefusal("sleep", "il file non c'e'");
}

TEST_F(TexturesTest, AFileThatIsRefusedLeavesNoTexture) {
    std::filesystem::remove("font");  // the first

    EXPECT_EXIT(
        {
            std::atexit([] {
                std::fprintf(stderr, "%zu made, %zu deleted, named %u", fakes::Count("glGenTextures"),
                             fakes::Count("glDeleteTextures"), font);
            });
            LoadTextures();
        },
        testing::ExitedWithCode(1), "\n1 made, 1 deleted, named 0$");
}

TEST_F(TexturesTest, AnEmptyFileIsTruncated) {
    PictureFolder::WriteBytes("hat", {});

    ExpectRefusal("hat", "il file e' troncato");
}

TEST_F(TexturesTest, AFileThatEndsInItsSizesIsTruncated) {
    PictureFolder::WriteBytes("hat", {2, 0, 0});
    ExpectRefusal("hat", "il file e' troncato");

    PictureFolder::WriteBytes("hat", {2, 0, 0, 0, 1, 0, 0});
    ExpectRefusal("hat", "il file e' troncato");
}

TEST_F(TexturesTest, AFileWithoutPixelsIsTruncated) {
    PictureFolder::WriteBytes("hat", {2, 0, 0, 0, 1, 0, 0, 0});

    ExpectRefusal("hat", "il file e' troncato");
}

TEST_F(TexturesTest, AFileShortByOneByteIsTruncated) {
    PictureFolder::Write("ic7", 2, 1, std::vector<std::uint8_t>(7));

    ExpectRefusal("ic7", "il file e' troncato");
}

TEST_F(TexturesTest, AFileThatShrinksOrCannotBeOpenedAfterAllIsRefused) {
    PictureFolder::Write("longer", 2, 1, std::vector<std::uint8_t>(8));
    PictureFolder::Write("hat", 2, 1, std::vector<std::uint8_t>(7));
    const StandIn longer("hat", "longer");

    ExpectRefusal("hat", "il file non si riesce a leggere");
    std::filesystem::remove("hat");
    ExpectRefusal("hat", "il file non si riesce ad aprire");
}

TEST_F(TexturesTest, BytesBehindThePixelsAreNotLookedAt) {
    const std::vector<std::uint8_t> pixels = {1, 2, 3, 4, 5, 6, 7, 8};
    for (const std::size_t more : {1UL, 1'000'000UL}) {
        std::vector<std::uint8_t> bytes = pixels;
        bytes.resize(pixels.size() + more, 0xEE);
        PictureFolder::Write("GUI_02", 2, 1, bytes);

        LoadTextures();

        const fakes::Texture& texture = fakes::gl().textures.at(GUI[kEditorScreen]);
        EXPECT_EQ(texture.width, 2) << more;
        EXPECT_EQ(texture.height, 1) << more;
        EXPECT_EQ(texture.pixels, pixels) << more;
    }
}

#ifndef __SANITIZE_ADDRESS__  // which ends the process itself where memory is short

/// Writes a picture of 1.6 GB into the current folder, most of it a hole: it takes no place.
void WriteHugePicture(const std::string& file) {
    constexpr std::uint32_t kEdge = 20'000;
    fakes::gl().max_texture_size = kEdge;
    PictureFolder::Write(file, kEdge, kEdge, {});
    std::filesystem::resize_file(file, 8 + std::uintmax_t{4} * kEdge * kEdge);
}

TEST_F(TexturesTest, APictureLargerThanTheMemoryEndsTheProgramWithALineThatNamesIt) {
    WriteHugePicture("hat");

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte);
            LoadTextures();
        },
        testing::ExitedWithCode(1), "^Ulmaro Assistant: [^\n]*\"hat\": la memoria non basta\\.\n$");
}

TEST_F(TexturesTest, AnIconLargerThanTheMemoryIsNone) {
    WriteHugePicture("window_icon");

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte);
            SetWindowClassAndIcon();
            std::exit(fakes::desktop().icon_width == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "^$");
}

#endif

void SayExit() {
    std::fputs("exit was called", stderr);
}

TEST_F(TexturesTest, WhatIsRegisteredForTheEndRunsAfterTheLine) {
    std::filesystem::remove("hat");

    EXPECT_EXIT(
        {
            std::atexit(SayExit);
            LoadTextures();
        },
        testing::ExitedWithCode(1), "^[^\n]*\"hat\"[^\n]*\nexit was called$");
}

TEST_F(TexturesTest, AWidthOrHeightOfZeroIsRefused) {
    PictureFolder::Write("cloud", 0, 1, {});
    ExpectRefusal("cloud", "le sue dimensioni sono zero");

    PictureFolder::Write("cloud", 1, 0, {});
    ExpectRefusal("cloud", "le sue dimensioni sono zero");
}

TEST_F(TexturesTest, SizesThatAFileCannotHaveAreRefusedWithoutAllocatingThem) {
    PictureFolder::Write("cloud", 0xFFFFFFFF, 0xFFFFFFFF, {});
    ExpectRefusal("cloud", "le sue dimensioni sono troppo grandi");

    PictureFolder::Write("cloud", 0x80000000, 1, {});
    ExpectRefusal("cloud", "le sue dimensioni sono troppo grandi");
}

TEST_F(TexturesTest, SizesWhoseProductWrapsIn32BitsAreRefused) {
    fakes::gl().max_texture_size = 1 << 16;
    PictureFolder::Write("cloud", 1U << 15U, 1U << 15U, {});  // 2^32 bytes

    ExpectRefusal("cloud", "il file e' troncato");
}

TEST_F(TexturesTest, ThePictureMayBeAsLargeAsTheDriverTakes) {
    fakes::gl().max_texture_size = 40;
    PictureFolder::Write("hat", 40, 40, std::vector<std::uint8_t>(6400));

    LoadTextures();

    EXPECT_EQ(fakes::gl().textures.at(hat).width, 40);
}

TEST_F(TexturesTest, APictureLargerThanTheDriverTakesIsRefused) {
    fakes::gl().max_texture_size = 40;

    PictureFolder::Write("hat", 41, 1, std::vector<std::uint8_t>(164));
    ExpectRefusal("hat", "le sue dimensioni sono troppo grandi");

    PictureFolder::Write("hat", 1, 41, std::vector<std::uint8_t>(164));
    ExpectRefusal("hat", "le sue dimensioni sono troppo grandi");
}

TEST_F(TexturesTest, AFolderIsNoPicture) {
    std::filesystem::remove("font");
    std::filesystem::create_directory("font");

    ExpectRefusal("font", "non e' un file");
}

TEST_F(TexturesTest, ALinkToAPictureIsAPicture) {
    std::filesystem::rename("font", "kept");
    std::filesystem::create_symlink("kept", "font");

    LoadTextures();

    EXPECT_EQ(fakes::gl().textures.at(font).width, 1);
}

}  // namespace
