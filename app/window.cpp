// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/window.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/desktop.h"

WindowState window;

namespace {

constexpr std::uint64_t kMillisecond = 1'000'000;

/// From one frame that nobody sees to the next: ten a second. Far below the 0.25 seconds above which a frame
/// advances no timer, and cheap enough to go unnoticed.
constexpr std::uint64_t kHiddenFrame = 100 * kMillisecond;

/// A frame waits no longer than this for its refresh.
constexpr std::uint64_t kLongestWait = 100 * kMillisecond;

/// A swap that takes longer than this is not made again for kSlowSwapPause times as long. So swaps of any
/// length cost less than a hundredth of the time that timers count.
constexpr std::uint64_t kSlowSwap = 100 * kMillisecond;
constexpr std::uint64_t kSlowSwapPause = 128;

/// But the pause is never longer than this, whatever held a swap up: a stopped process, a switch to a text
/// console.
constexpr std::uint64_t kLongestPause = 300'000 * kMillisecond;

/// The owl is at rest this long after the user's last doing.
constexpr std::uint64_t kRestAfter = 1000 * kMillisecond;

/// How much of the mean a new frame's cost is.
constexpr double kNewCostShare = 1.0 / 16;

bool start_minimised = false;  ///< written by ReadOptions

// ---- Start ----

/// Ends the program after a line that says what is wrong with "-geometry".
[[noreturn]] void RejectGeometry(const char* text) {
    std::fprintf(stderr,
                 "Ulmaro Assistant: \"%s\" non e' una posizione o una dimensione della finestra: "
                 "scrivi per esempio -geometry 300x300+10+10.\n",
                 text);
    std::exit(EXIT_FAILURE);
}

/// Returns the place and size in the form that GLUT takes: it needs a size, and takes whatever lies in memory
/// for one that is not given.
std::string WithSize(const char* geometry) {
    return geometry[0] == '+' || geometry[0] == '-' ? "300x300" + std::string(geometry) : geometry;
}

/// GLUT's error callback: its own words are English.
void EndWithoutWindow(const char* format, std::va_list arguments) {
    char reason[256];
    if (std::vsnprintf(reason, sizeof reason, format, arguments) < 0) reason[0] = '\0';
    std::fprintf(
        stderr,
        "Ulmaro Assistant: non riesco ad aprire la finestra, serve uno schermo X11 con OpenGL (%s).\n",
        reason);
    std::exit(EXIT_FAILURE);
}

/// GLUT's idle callback. It comes after every round of GLUT's loop; where that has drawn no frame, GLUT takes
/// the window for hidden.
void DrawFrameIfNoneCame() {
    if (!window.drawn) {
        window.glut_draws = false;
        window.frame();
        window.glut_draws = true;
    }
    window.drawn = false;
}

// ---- A frame ----

/// Lets GL go through all drawing and clearing without touching a pixel. GL's selection mode would do that
/// without waking the driver's threads, but Mesa keeps some megabytes for each time that the window is
/// hidden.
void TouchNoPixels() {
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 0, 0);
}

void TouchPixels() {
    glDisable(GL_SCISSOR_TEST);
}

/// Notes whether somebody may see the window. Where that has just begun, everything that kept frames hidden
/// is forgotten.
void UpdateSight() {
    const bool seen = IsWindowSeen();
    if (seen && !window.seen) {
        window.refresh_late = false;
        window.swap_again = 0;
    }
    window.seen = seen;
}

/// Returns whether the owl is at rest and a frame is so costly that it then need not be drawn at every
/// refresh.
bool MayRest() {
    if (window.active || RefreshPeriod() == 0) return false;
    return window.frame_begin - window.last_activity > kRestAfter &&
           window.frame_cost > static_cast<double>(RefreshPeriod()) / 3;
}

/// Waits for the refresh that was asked for, and at rest for one more, both together no longer than
/// kLongestWait. Returns whether the frame may be shown; otherwise the refresh is late.
bool WaitForRefresh() {
    if (!window.paced) return true;
    const std::uint64_t start = MonotonicNanoseconds();
    window.refresh_late = !AwaitRefresh(kLongestWait, false);
    if (window.refresh_late) return false;
    if (MayRest() && RequestRefresh()) {
        const std::uint64_t passed = MonotonicNanoseconds() - start;
        AwaitRefresh(kLongestWait - std::min(passed, kLongestWait), true);
    }
    return true;
}

/// Tells the driver only when the answer changes: a swap waits by itself only where the desktop does not tell
/// of refreshes.
void ChooseSwapInterval() {
    const int refreshes = window.waits && !window.told ? 1 : 0;
    if (window.swap_interval == refreshes) return;
    window.swap_interval = refreshes;
    SetSwapInterval(refreshes);
}

/// Shows the frame. A swap that takes too long, as it may do while nobody sees the window, is not made again
/// soon.
void Swap() {
    ChooseSwapInterval();
    const std::uint64_t start = MonotonicNanoseconds();
    glutSwapBuffers();
    const std::uint64_t end = MonotonicNanoseconds();
    if (end - start <= kSlowSwap) return;
    window.swap_again = end + std::min(kSlowSwapPause * (end - start), kLongestPause);
    // What was noted while the frame was drawn is the pointer, which moves anywhere on the screen: no sign
    // that somebody sees the window.
    window.active = false;
}

void MeasureCost() {
    const std::uint64_t processor = ProcessorNanoseconds();
    const auto cost = static_cast<double>(processor - window.processor);
    const bool first = window.processor == 0;  // its cost is that of the program's start
    if (!window.hidden && !first) window.frame_cost += kNewCostShare * (cost - window.frame_cost);
    window.processor = processor;
}

/// Waits until the next frame that nobody sees is due, or somebody may see it.
void WaitHidden() {
    const std::uint64_t passed = MonotonicNanoseconds() - window.last_frame;
    if (window.waits && passed < kHiddenFrame) AwaitSight(kHiddenFrame - passed);
}

}  // namespace

// ---- Start ----

void ReadOptions(int* argc, char** argv) {
    static std::string geometry;  // GLUT keeps the pointer
    int kept = 0;
    for (int i = 0; i < *argc; ++i) {
        if (i > 0 && std::strcmp(argv[i], "-iconic") == 0) {
            start_minimised = true;
            continue;
        }
        argv[kept++] = argv[i];
        if (i == 0 || std::strcmp(argv[i], "-geometry") != 0) continue;
        if (++i == *argc) RejectGeometry("");
        geometry = WithSize(argv[i]);
        if (!IsGeometry(geometry.c_str())) RejectGeometry(argv[i]);
        argv[kept++] = geometry.data();
    }
    argv[kept] = nullptr;
    *argc = kept;
}

void ExplainMissingWindow() {
    glutInitErrorFunc(EndWithoutWindow);
}

void MinimiseAtStart() {
    if (start_minimised) MinimiseWindow();
}

void SetFrame(void (*frame)()) {
    window.frame = frame;
}

void WatchFrames() {
    if (window.watching) return;
    window.watching = true;
    const char* mode = std::getenv("vblank_mode");
    window.waits = mode == nullptr || std::strcmp(mode, "0") != 0;
    glutIdleFunc(DrawFrameIfNoneCame);
}

// ---- A frame ----

void BeginFrame() {
    UpdateSight();
    const std::uint64_t now = MonotonicNanoseconds();
    if (window.active) {
        window.last_activity = now;
        window.swap_again = 0;
    }
    window.active = false;
    window.frame_begin = now;
    const bool came_late = window.refresh_late && AwaitRefresh(0, false);
    if (came_late) {
        window.refresh_late = false;
    } else if (window.refresh_late) {
        RequestRefresh();  // the one that was asked for may have been lost
    }
    window.hidden = !window.glut_draws || !window.seen || window.refresh_late || now < window.swap_again;
    if (window.hidden) TouchNoPixels();
    window.told = !window.hidden && window.waits && RequestRefresh();
    window.paced = window.told && !came_late;  // a frame that was waited for so long is shown at once
    if (window.paced) AwaitDrawing();
}

bool IsFrameHidden() {
    return window.hidden;
}

void PresentFrame() {
    glFlush();
    glFinish();
    if (window.hidden) {
        TouchPixels();
        WaitHidden();
    } else if (WaitForRefresh()) {
        Swap();
    }
    MeasureCost();
    window.drawn = true;
    window.last_frame = MonotonicNanoseconds();
}

void NoteActivity() {
    window.active = true;
}

void ShowUnsaved(bool unsaved) {
    if (window.unsaved == unsaved) return;
    window.unsaved = unsaved;
    glutSetWindowTitle((unsaved ? "*" + std::string(kWindowTitle) : kWindowTitle).c_str());
}
