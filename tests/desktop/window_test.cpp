// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The window: its start, its size, its end, and the files that it needs.
#include <X11/keysym.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/desktop/fixture.h"
#include "tests/desktop/reading.h"
#include "tests/desktop/scene.h"

// After GoogleTest, which has a None of its own.
#include <X11/Xatom.h>
#include <X11/Xutil.h>

namespace desktop {
namespace {

class TheWindow : public OnDesktop {};

/// The canvas without the menu's column and the line of status text.
constexpr CanvasRect kScenery = {92, 40, 512, 512};

Start ClockInHand() {
    Start start;
    start.clock = Clock::kInHand;
    return start;
}

TEST_F(TheWindow, BearsTheNameOfItsDesktopEntry) {
    Program& program = Run();

    XClassHint hint = {};
    ASSERT_NE(XGetClassHint(desk.Connection(), program.Handle(), &hint), 0);
    EXPECT_STREQ(hint.res_name, "ulmaro-assistant");
    EXPECT_STREQ(hint.res_class, "Ulmaro-assistant");
    XFree(hint.res_name);
    XFree(hint.res_class);
}

/// Returns the numbers of a window's icon: width, height, then one for each pixel from the top left.
std::vector<unsigned long> IconOf(Display* connection, Window window) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* bytes = nullptr;
    XGetWindowProperty(connection, window, XInternAtom(connection, "_NET_WM_ICON", False), 0, 1 << 20, False,
                       XA_CARDINAL, &type, &format, &count, &left, &bytes);
    const auto* numbers = reinterpret_cast<const unsigned long*>(bytes);
    const std::vector<unsigned long> icon(numbers, numbers + (format == 32 ? count : 0));
    if (bytes != nullptr) XFree(bytes);
    return icon;
}

TEST_F(TheWindow, ShowsItsIconToDocksAndTaskSwitchers) {
    Program& program = Run();
    const RawPicture picture = Picture("window_icon");

    const std::vector<unsigned long> icon = IconOf(desk.Connection(), program.Handle());

    const auto width = static_cast<std::size_t>(picture.Width());
    const auto height = static_cast<std::size_t>(picture.Height());
    ASSERT_EQ(icon.size(), 2 + width * height);
    EXPECT_EQ(icon[0], width);
    EXPECT_EQ(icon[1], height);
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const Texel& texel = picture.At(static_cast<int>(x), static_cast<int>(height - 1 - y));
            const auto expected = std::uint32_t{texel.a} << 24U | std::uint32_t{texel.r} << 16U |
                                  std::uint32_t{texel.g} << 8U | texel.b;
            ASSERT_EQ(icon[2 + y * width + x] & 0xFFFFFFFFU, expected) << x << ", " << y;
        }
    }
}

TEST_F(TheWindow, DoesWithoutAnIcon) {
    Start start;
    start.missing = {"window_icon"};

    Program& program = Run(start);

    // The window manager may lend it one.
    EXPECT_NE(IconOf(desk.Connection(), program.Handle()).size(), 2 + 64UL * 64);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheWindow, IsCalledUlmaroAssistantAndMeasures300By300Pixels) {
    Program& program = Run();

    const ScreenRect place = program.Place();

    EXPECT_NE(desk.FindWindow("Ulmaro Assistant"), Window{None});
    EXPECT_EQ(place.width, 300);
    EXPECT_EQ(place.height, 300);
}

TEST_F(TheWindow, ShowsBackgroundTreeAndOwlWherePlanned) {
    desk.MovePointer({0, Desktop::kHeight / 2});
    Program& program = Run(ClockInHand());

    const Image shown = program.Look();

    // The pointer is far: the pupils are turned, and the eyes are left to the owl's own tests.
    const Image planned = Scene().Draw(300, 300, {"stand_01", 0, false, {}, {}});
    EXPECT_LT(MeanDifference(shown, planned, {92, 40, 512, 360}), 1.0);
    EXPECT_LT(MeanDifference(shown, planned, {92, 425, 512, 512}), 1.0);
}

TEST_F(TheWindow, ShowsAnotherPictureWheneverItIsLookedAt) {
    Program& program = Run();

    const Image first = program.Look();
    SleepSeconds(0.3);
    const Image second = program.Look();
    SleepSeconds(0.3);
    const Image third = program.Look();

    EXPECT_GT(MeanDifference(first, second, kOwlPart), 0.1);
    EXPECT_GT(MeanDifference(second, third, kOwlPart), 0.1);
}

TEST_F(TheWindow, ScalesThePictureWithItsSize) {
    Program& program = Run(ClockInHand());
    desk.MovePointer({0, 600});
    program.WaitForFrames(2);
    const Image small = program.Look();

    program.Resize({200, 60, 900, 600});
    const Image wide = program.Look();
    program.Resize({400, 300, 300, 300});
    const Image small_again = program.Look();

    EXPECT_EQ(wide.Width(), 900);
    EXPECT_EQ(wide.Height(), 600);
    EXPECT_LT(MeanDifference(small, wide, kScenery), 6);
    EXPECT_LT(MeanDifference(small, small_again, kScenery), 1);
}

TEST_F(TheWindow, OutlivesAHeightOfOnePixel) {
    Program& program = Run();

    program.Resize({400, 300, 300, 1});
    program.WaitForFrames(5);
    program.Resize({400, 300, 300, 300});
    const Image restored = program.Look();

    const Image planned = Scene().Draw(300, 300, {});
    EXPECT_LT(MeanDifference(restored, planned, {340, 100, 512, 300}), 1) << "a part that nothing moves in";
}

TEST_F(TheWindow, EndsTheProgramWithStatus0WhenItIsClosed) {
    Program& program = Run();

    program.Close();

    EXPECT_EQ(program.Child().WaitForEnd(5), 0);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheWindow, TakesKeysAndClicksBesideTheMenuWithoutHarm) {
    Program& program = Run();
    constexpr CanvasPoint kBesideTheMenu = {256, 60};

    for (const unsigned int button : {1U, 2U, 3U, 4U}) program.Click(kBesideTheMenu, button);
    for (const KeySym key : {XK_Left, XK_F12, XK_Insert, XK_a, XK_Escape, XK_Return}) program.Type(key);

    EXPECT_TRUE(program.Child().Running());
    EXPECT_EQ(Scene().BodyIn(program.Look()).substr(0, 8), "stand_01");
}

// ---- Options ----

/// Returns the start with "-geometry" and that.
Start WithGeometry(const std::string& geometry) {
    Start start;
    start.options = {"-geometry", geometry};
    return start;
}

TEST_F(TheWindow, TakesASizeAndAPlace) {
    const ScreenRect place = Run(WithGeometry("200x200+10+10")).Place();

    EXPECT_EQ(place.width, 200);
    EXPECT_EQ(place.height, 200);
    EXPECT_NEAR(place.x, 10, 40) << "the window manager's frame may count";
    EXPECT_NEAR(place.y, 10, 40);
}

TEST_F(TheWindow, TakesAPlaceAlone) {
    const ScreenRect place = Run(WithGeometry("+10+10")).Place();

    EXPECT_EQ(place.width, 300);
    EXPECT_EQ(place.height, 300);
    EXPECT_NEAR(place.x, 10, 40);
    EXPECT_NEAR(place.y, 10, 40);
}

TEST_F(TheWindow, TakesASizeAlone) {
    const ScreenRect place = Run(WithGeometry("200x250")).Place();

    EXPECT_EQ(place.width, 200);
    EXPECT_EQ(place.height, 250);
}

class TheWrongGeometry : public OnDesktop, public testing::WithParamInterface<const char*> {};

TEST_P(TheWrongGeometry, IsSaidInOneLineThatEndsTheProgram) {
    Start start = WithGeometry(GetParam());
    start.wait_for_window = false;
    Program& program = Run(start);

    EXPECT_EQ(program.Child().WaitForEnd(10), 1);
    EXPECT_EQ(program.Said(), std::string("Ulmaro Assistant: \"") + GetParam() +
                                  "\" non e' una posizione o una dimensione della finestra: scrivi per "
                                  "esempio -geometry 300x300+10+10.\n");
}

INSTANTIATE_TEST_SUITE_P(Forms, TheWrongGeometry,
                         testing::Values("foo", "0x300", "300x0", "x300", "300x300+10"),
                         [](const auto& test) { return "Form" + std::to_string(test.index); });

// ---- Files ----

TEST_F(TheWindow, FindsItsFilesInTheCurrentDirectoryAlone) {
    Start start;
    start.all_files = false;
    start.wait_for_window = false;
    Program& program = Run(start);

    const std::optional<int> status = program.Child().WaitForEnd(10);

    EXPECT_EQ(status, 1);
    EXPECT_NE(program.Said().find("\"font\""), std::string::npos)
        << "the first file of all: " << program.Said();
}

/// A picture file that cannot be used.
struct BadPicture {
    std::string what;    ///< names the test
    std::string file;    ///< the picture's file
    std::string bytes;   ///< what it holds
    std::string reason;  ///< what the program says of it
};

std::ostream& operator<<(std::ostream& out, const BadPicture& bad) {
    return out << bad.what;
}

class BadPictures : public OnDesktop, public testing::WithParamInterface<BadPicture> {
  protected:
    /// Runs the program to its end with a start and checks that it complained of the file as it should.
    void ExpectComplaint(Start start, const std::string& file, const std::string& reason) {
        start.wait_for_window = false;
        Program& program = Run(start);

        const std::optional<int> status = program.Child().WaitForEnd(10);

        EXPECT_EQ(status, 1);
        const std::string line =
            "Ulmaro Assistant: non riesco a usare l'immagine \"" + file + "\": " + reason + ".\n";
        EXPECT_EQ(program.Said(), line);
    }
};

TEST_P(BadPictures, EndTheProgramWithOneLineThatNamesTheFile) {
    const BadPicture& bad = GetParam();
    Start start;
    start.spoilt[bad.file] = bad.bytes;

    ExpectComplaint(start, bad.file, bad.reason);
}

TEST_F(TheWindow, SaysInOneLineThatThereIsNoScreen) {
    Start start;
    start.wait_for_window = false;
    start.environment["DISPLAY"] = ":987";
    Program& program = Run(start);

    EXPECT_EQ(program.Child().WaitForEnd(10), 1);
    EXPECT_EQ(program.Said(),
              "Ulmaro Assistant: non riesco ad aprire la finestra, serve uno schermo X11 con OpenGL "
              "(failed to open display ':987').\n");
}

/// Returns a picture file's header for a square of `edge` pixels.
std::string Header(std::uint32_t edge) {
    std::string size;
    for (int shift = 0; shift < 32; shift += 8) size += static_cast<char>((edge >> shift) & 0xFF);
    return size + size;
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadPictures,
    testing::Values(
        BadPicture{"Empty", "font", "", "il file e' troncato"},
        BadPicture{"CutInTheHeader", "sleep", std::string(5, '\x01'), "il file e' troncato"},
        BadPicture{"CutInThePixels", "stand_02", Header(8) + std::string(255, 'x'), "il file e' troncato"},
        BadPicture{"OfNoSize", "GUI_03", Header(0), "le sue dimensioni sono zero"},
        BadPicture{"OfAbsurdSize", "notify", Header(0xFFFFFFFF), "le sue dimensioni sono troppo grandi"}),
    [](const auto& test) { return test.param.what; });

using MissingPicture = BadPictures;

TEST_F(MissingPicture, EndsTheProgramWithOneLineThatNamesTheFile) {
    Start start;
    start.missing = {"arrow_down"};

    ExpectComplaint(start, "arrow_down", "il file non c'e'");
}

}  // namespace
}  // namespace desktop
