// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the program draws, by two OpenGL drivers that have no code for drawing in common: Mesa's llvmpipe and
// softpipe. The same screens at the same moment must look the same, but for the rounding of colours.
#include <gtest/gtest.h>  // before X11

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/desktop/desktop.h"
#include "tests/unit/temporary_folder.h"

namespace desktop {
namespace {

/// How far a channel may be off where colours are rounded, 0 to 255.
constexpr int kRounding = 3;

/// The part of the pixels that may be off by more, at edges. In the list at 400 pixels the rows begin exactly
/// in the middle of a pixel, and the drivers disagree whether that pixel is theirs.
double MostOdd(const std::string& screen) {
    return screen == "list 400" ? 0.004 : 0.0005;
}

/// The most that any pixel's channels may be off on average, 0 to 255.
constexpr double kMostOnAverage = 0.5;

constexpr char kNow[] = "2031-03-12 08:17:00";

/// A screen and what it shows.
using Looks = std::map<std::string, Image>;

std::map<std::string, std::string> Environment(const std::string& driver) {
    return {{"LIBGL_ALWAYS_SOFTWARE", "1"}, {"GALLIUM_DRIVER", driver}};
}

/// Returns what OpenGL calls its renderer.
std::string RendererOf(const Desktop& desk, const std::string& driver) {
    const TemporaryFolder folder;
    Command command;
    command.words = {ULMARO_PRINT_RENDERER};
    command.environment = Environment(driver);
    for (const auto& [name, value] : desk.ClientEnvironment()) command.environment[name] = value;
    command.error_file = "said";
    EXPECT_EQ(Process(command).WaitForEnd(60), 0);
    return ReadFile("said");
}

/// Takes pictures of the screens in a window of that edge, pixels.
void LookAround(Program& program, int edge, Looks& looks) {
    const auto look = [&](const std::string& screen) {
        program.WaitForFrames(3);
        looks.emplace(screen + " " + std::to_string(edge), program.Look());
    };
    program.Resize({100, 100, edge, edge});
    program.MovePointer(kNowhere);
    look("owl");
    program.Click(kMenuPlan);
    program.MovePointer(kNowhere);
    look("list");
    program.Click(kAdd);
    program.Click(kNameField);
    program.TypeText("Gufo: \"Quanto fa 12*(3+4)?\"");
    program.Click(kDescriptionField);
    program.TypeText(
        "abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789 !#$%&'()*+,-./:;<=>?@[]^_`{|}~");
    program.Click({480, 300});  // into no field: no caret
    program.MovePointer(kNowhere);
    look("editor");
    program.Click(kCorner);
    program.Click(kCorner);
    program.LoadDice(4);
    program.Click(kMenuAsk);
    program.ReleaseDice();
    program.MovePointer(kNowhere);
    look("quiz");
    program.Click(kCorner);
}

Looks LooksBy(const std::string& driver) {
    Desktop desk;
    EXPECT_NE(RendererOf(desk, driver).find(driver), std::string::npos) << RendererOf(desk, driver);
    Start start;
    start.clock = Clock::kInHand;
    start.environment = Environment(driver);
    start.patience = 10;  // softpipe is slow
    const WallClock clock(kNow);
    clock.Rule(start);
    Program program(desk, start);
    Looks looks;
    for (const int edge : {300, 400}) LookAround(program, edge, looks);
    return looks;
}

struct Difference {
    double average = 0;
    double odd = 0;  ///< part of the pixels
    int largest = 0;
};

Difference Compare(const Image& a, const Image& b) {
    Difference difference;
    double sum = 0;
    int odd = 0;
    for (int y = 0; y < a.Height(); ++y) {
        for (int x = 0; x < a.Width(); ++x) {
            const Colour& p = a.At(x, y);
            const Colour& q = b.At(x, y);
            const int off = std::max({std::abs(p.r - q.r), std::abs(p.g - q.g), std::abs(p.b - q.b)});
            sum += std::abs(p.r - q.r) + std::abs(p.g - q.g) + std::abs(p.b - q.b);
            odd += off > kRounding ? 1 : 0;
            difference.largest = std::max(difference.largest, off);
        }
    }
    const double pixels = static_cast<double>(a.Width()) * a.Height();
    difference.average = sum / 3 / pixels;
    difference.odd = odd / pixels;
    return difference;
}

TEST(Drivers, DrawTheSamePictures) {
    const Looks llvmpipe = LooksBy("llvmpipe");
    const Looks softpipe = LooksBy("softpipe");

    ASSERT_EQ(llvmpipe.size(), 8U);
    ASSERT_EQ(softpipe.size(), llvmpipe.size());
    for (const auto& [screen, image] : llvmpipe) {
        const Image& other = softpipe.at(screen);
        ASSERT_EQ(other.Width(), image.Width());
        ASSERT_EQ(other.Height(), image.Height());
        const Difference difference = Compare(image, other);
        EXPECT_LE(difference.average, kMostOnAverage) << screen;
        EXPECT_LE(difference.odd, MostOdd(screen)) << screen;
        std::printf("           %-10s average %.3f, odd pixels %.4f, largest %d\n", screen.c_str(),
                    difference.average, difference.odd, difference.largest);
        if (HasFailure()) {
            image.SavePpm("llvmpipe.ppm");
            other.SavePpm("softpipe.ppm");
        }
    }
}

}  // namespace
}  // namespace desktop
