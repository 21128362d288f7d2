// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How many instructions of our own code a frame of each screen takes: those of the program's file, without
// GL, GLUT, Xlib and the C library. Nothing is compared and no limit is set; the numbers are recorded, to see
// a change by.
//
// The program walks through its screens under callgrind. A small window spares the time of the pixels, which
// are not counted anyway.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/screens.h"
#include "bench/table.h"

namespace {

using desktop::Desktop;
using desktop::Folder;
using desktop::Process;
using desktop::Program;

constexpr std::uint64_t kFrames = 12;
constexpr int kEdge = 64;  ///< of the window, pixels

/// What callgrind has counted.
struct Count {
    double instructions = 0;  ///< of our own code
    double frames = 0;
};

/// Tells callgrind something; stops the benchmark where it does not answer.
void Tell(Program& program, const std::string& what) {
    desktop::Command command;
    command.words = {"callgrind_control", what, std::to_string(program.Child().Id())};
    if (Process(command).WaitForEnd(60) != 0) desktop::Fail("callgrind does not answer");
}

/// Reads a file of callgrind's, which names the object, the function and then each line's cost; a call is
/// followed by one line that is the called function's cost.
Count Read(const std::string& path) {
    Count count;
    std::ifstream file(path);
    bool ours = false;
    bool frame_called = false;
    bool callee = false;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("ob=", 0) == 0) {
            ours = line.ends_with("/ulmaro-assistant");
        } else if (line.rfind("cfn=", 0) == 0) {
            frame_called = line == "cfn=display()";
        } else if (line.rfind("calls=", 0) == 0) {
            if (frame_called) count.frames += std::strtod(line.c_str() + 6, nullptr);
            callee = true;
        } else if (!line.empty() && line[0] >= '0' && line[0] <= '9') {
            if (ours && !callee) count.instructions += std::strtod(line.c_str() + line.find(' '), nullptr);
            callee = false;
        }
    }
    return count;
}

/// Counts some frames of the screen that the program shows, and records it.
void CountScreen(Program& program, const std::string& screen, const Folder& output) {
    Tell(program, "--instr=on");
    program.WaitForFrames(kFrames, 60);
    Tell(program, "--instr=off");
    Tell(program, "--dump");
    Count count;
    for (const auto& file : std::filesystem::directory_iterator(output.Path())) {
        const Count part = Read(file.path().string());
        count.instructions += part.instructions;
        count.frames += part.frames;
        std::filesystem::remove(file.path());
    }
    if (count.frames < kFrames / 2.0 || count.instructions == 0) desktop::Fail("callgrind counted no frames");
    bench::PrintRecord(screen + ", instructions of our code a frame", count.instructions / count.frames);
}

void CountScreens() {
    const Folder output;
    Desktop desk;
    desktop::Start start = bench::StartOfWalk();
    start.environment["ULMARO_MEASURED"] = ULMARO_MEASURED_PROGRAM;
    start.environment["ULMARO_MEASURED_PRELOAD"] = ULMARO_PROBE_LIBRARY;
    start.environment["ULMARO_COUNTED"] = output.Path("counted");
    Program program(desk, start);
    program.Resize({100, 100, kEdge, kEdge});
    bench::WalkScreens(desk, program,
                       [&](const std::string& screen) { CountScreen(program, screen, output); });
}

}  // namespace

int main() {
    try {
        CountScreens();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "instructions: %s\n", error.what());
        return 2;
    }
}
