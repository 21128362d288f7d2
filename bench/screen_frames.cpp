// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What a frame of each screen costs beyond its GL calls, and how often it waits for the X server.
//
// The real program is recorded by apitrace while it walks through its screens. Of each screen one frame is
// cut out of the recording, with the program's start ahead of it, which makes the textures. Then the program
// walks once more, and on each screen it draws frames by turns with a replayer that draws that one frame
// again and again: the same GL calls on the same X server into a window of the same size, without our
// program. The replayer's window must show what the program's does.
//
// Prints three lines a screen: real time and processor time, milliseconds a frame, program and replayer, with
// the median of the pairs' ratios; and the answers of the X server that a frame waits for. Exits with 1 where
// a limit is missed.
//
// usage: screen_frames [PAIRS]
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bench/screens.h"
#include "bench/table.h"
#include "bench/turns.h"

namespace {

using desktop::Desktop;
using desktop::Folder;
using desktop::Image;
using desktop::Probe;
using desktop::Process;
using desktop::Program;

constexpr double kLimit = 1.10;
constexpr double kMostRoundTrips = 6;
constexpr double kSliceSeconds = 0.25;

/// Where the program's window and the replayer's stand, side by side, pixels.
constexpr desktop::ScreenRect kProgramPlace = {100, 100, bench::kWindowEdge, bench::kWindowEdge};
constexpr int kReplayLeft = 700;

/// Images of one screen differ in no larger part than this: the particles' random places.
constexpr double kLooksAlike = 0.08;

/// The frames at the start of a recording that are kept: they make the textures and take the window's size.
constexpr int kFirstFrames = 6;

/// Runs a command to its end; stops the benchmark where it fails.
void Run(const std::vector<std::string>& words) {
    desktop::Command command;
    command.words = words;
    if (Process(command).WaitForEnd(60) != 0) desktop::Fail(words[0] + " failed");
}

// ---- Recording ----

/// The recordings, by the screens' names.
using Traces = std::map<std::string, std::string>;

/// Walks through all screens under apitrace. Returns the number of a frame of each, from 0.
std::map<std::string, std::uint64_t> RecordWalk(Desktop& desk, const std::string& trace) {
    desktop::Start start = bench::StartOfWalk();
    start.preload = {ULMARO_APITRACE_LIBRARY};
    start.environment["TRACE_FILE"] = trace;
    Program program(desk, start);
    program.Resize(kProgramPlace);
    std::map<std::string, std::uint64_t> frames;
    bench::WalkScreens(desk, program, [&](const std::string& screen) {
        program.WaitForFrames(4);
        frames[screen] = program.Swaps() - 2;
    });
    program.Close();
    if (!program.Child().WaitForEnd(20)) desktop::Fail("the program does not close");
    return frames;
}

/// Returns a recording for each screen that ends with a frame of it.
Traces RecordScreens(Desktop& desk, const Folder& folder) {
    const std::string walk = folder.Path("walk.trace");
    Traces traces;
    for (const auto& [screen, frame] : RecordWalk(desk, walk)) {
        std::string file = folder.Path(screen + ".trace");
        Run({"apitrace", "trim", "--frames=0-" + std::to_string(kFirstFrames) + "," + std::to_string(frame),
             "-o", file, walk});
        traces[screen] = file;
    }
    return traces;
}

// ---- Replaying ----

/// The replayer, drawing a recording's last frame again and again.
class Replay {
  public:
    Replay(Desktop& desk, const std::string& trace) : desk_(desk) {
        output_.Write("frames", std::string(sizeof(Probe), '\0'));
        const int file = open(output_.Path("frames").c_str(), O_RDWR | O_CLOEXEC);
        void* record = file < 0 ? MAP_FAILED : mmap(nullptr, sizeof(Probe), PROT_READ, MAP_SHARED, file, 0);
        if (file >= 0) close(file);
        if (record == MAP_FAILED) desktop::Fail("cannot map the replayer's record");
        record_ = static_cast<const Probe*>(record);
        StartProcess(trace);
        ShowWindow();
    }
    ~Replay() {
        Frames().Continue();
        process_.reset();
        munmap(const_cast<Probe*>(record_), sizeof(Probe));
    }
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;

    bench::Runner Frames() const {
        return {process_->Id(), [this] { return record_->frames.load(); }};
    }

    /// Returns what the window shows.
    Image Look() const {
        constexpr unsigned int kEdge = bench::kWindowEdge;
        XImage* pixels = XGetImage(desk_.Connection(), window_, 0, 0, kEdge, kEdge, AllPlanes, ZPixmap);
        if (pixels == nullptr) desktop::Fail("the replayer's window cannot be looked at");
        Image image(pixels->width, pixels->height);
        for (int y = 0; y < image.Height(); ++y) {
            for (int x = 0; x < image.Width(); ++x) {
                const unsigned long pixel = XGetPixel(pixels, x, y);  // 24 bits: red, green, blue
                image.At(x, y) = {static_cast<std::uint8_t>(pixel >> 16),
                                  static_cast<std::uint8_t>(pixel >> 8), static_cast<std::uint8_t>(pixel)};
            }
        }
        XDestroyImage(pixels);
        return image;
    }

  private:
    void StartProcess(const std::string& trace) {
        desktop::Command command;
        command.words = {"glretrace", "--benchmark", "--loop=-1", trace};
        command.environment = {{"LD_PRELOAD", ULMARO_COUNT_SWAPS},
                               {"vblank_mode", "0"},
                               {desktop::kProbeVariable, output_.Path("frames")}};
        command.environment.insert(desk_.ClientEnvironment().begin(), desk_.ClientEnvironment().end());
        command.error_file = output_.Path("said");
        process_.emplace(command);
    }

    /// Waits until the last frame is being repeated and puts the window in its place.
    void ShowWindow() {
        constexpr std::uint64_t kRepeating = kFirstFrames + 10;
        if (!desktop::WaitUntil([&] { return record_->frames > kRepeating || !process_->Running(); }, 30) ||
            !process_->Running()) {
            desktop::Fail("the replayer draws no frames; it said: " + output_.Read("said"));
        }
        window_ = desk_.FindWindow("glretrace");
        if (window_ == None) desktop::Fail("the replayer has no window");
        XWindowAttributes attributes{};
        XGetWindowAttributes(desk_.Connection(), window_, &attributes);
        if (attributes.width != bench::kWindowEdge || attributes.height != bench::kWindowEdge) {
            desktop::Fail("the replayer's window has another size: " + std::to_string(attributes.width));
        }
        XMoveWindow(desk_.Connection(), window_, kReplayLeft, kProgramPlace.y);
        XSync(desk_.Connection(), False);
        const std::uint64_t goal = record_->frames + 5;
        desktop::WaitUntil([&] { return record_->frames > goal; }, 10);
    }

    Desktop& desk_;
    Folder output_;
    const Probe* record_ = nullptr;
    std::optional<Process> process_;
    Window window_ = None;
};

// ---- Comparing ----

/// Measures the screen that the program shows. Returns whether all is within the limits.
bool CompareScreen(Desktop& desk, Program& program, const std::string& screen, const std::string& trace,
                   int pairs) {
    const double trips = program.RoundTripsPerFrame(100);
    const Replay replay(desk, trace);
    program.WaitForFrames(3);
    const double difference = bench::Difference(program.Look(), replay.Look());
    if (difference > kLooksAlike) {
        program.Look().SavePpm("program.ppm");
        replay.Look().SavePpm("replay.ppm");
        desktop::Fail("the replayer shows another picture than the " + screen + ": " +
                      std::to_string(difference));
    }
    const bench::Runner ours = {program.Child().Id(), [&] { return program.Frames(); }};
    bool good = bench::CompareFrames(screen + ", frame : its GL calls replayed", ours, replay.Frames(), pairs,
                                     kSliceSeconds, kLimit);
    good &= bench::PrintCount(screen + ", round trips a frame", trips, kMostRoundTrips);
    ours.Continue();
    return good;
}

bool CompareScreens(int pairs) {
    Desktop desk;
    const Folder folder;
    const Traces traces = RecordScreens(desk, folder);
    Program program(desk, bench::StartOfWalk());
    program.Resize(kProgramPlace);
    bool good = true;
    bench::WalkScreens(desk, program, [&](const std::string& screen) {
        good &= CompareScreen(desk, program, screen, traces.at(screen), pairs);
    });
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunComparison(argc, argv, 15, CompareScreens);
}
