// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The library that the desktop tests load into the program; probe.h says what for.
#include "tests/desktop/probe.h"

#include <X11/Xlib.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>

using desktop::Probe;
using desktop::Wall;

namespace {

Probe* probe = nullptr;
const Wall* wall = nullptr;

/// Whether the frame that is being drawn touches pixels.
bool touches_pixels = true;

/// Returns the function that the program would have called without this library.
template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// Maps the file that an environment variable names; returns null where it cannot.
template <typename Record>
Record* MapRecord(const char* variable) {
    const char* path = std::getenv(variable);
    const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
    if (file < 0) return nullptr;
    void* record = mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return record == MAP_FAILED ? nullptr : static_cast<Record*>(record);
}

/// Maps the records, and hides the library from what the program starts itself.
__attribute__((constructor)) void OpenProbe() {
    unsetenv("LD_PRELOAD");
    wall = MapRecord<Wall>(desktop::kWallVariable);
    probe = MapRecord<Probe>(desktop::kProbeVariable);
}

constexpr std::int64_t kSecond = 1'000'000'000;

using ClockGetTime = int (*)(clockid_t, timespec*);

int RealClock(clockid_t clock, timespec* time) {
    static const auto next = Next<ClockGetTime>("clock_gettime");
    return next(clock, time);
}

bool IsMainThread() {
    return gettid() == getpid();
}

/// Returns the clock on the wall, in nanoseconds since 1970. `wall` must be mapped.
std::int64_t WallTime() {
    if (wall->stands) return wall->seconds * kSecond;
    timespec time{};
    RealClock(CLOCK_REALTIME, &time);
    return (time.tv_sec + wall->seconds) * kSecond + time.tv_nsec;
}

/// Returns the program's own clock in nanoseconds from its start. Main thread only.
std::int64_t ProgramClock() {
    static std::int64_t last = -1;
    timespec time{};
    RealClock(CLOCK_MONOTONIC, &time);
    const std::int64_t now = time.tv_sec * kSecond + time.tv_nsec;
    const std::int64_t passed = last < 0 || probe->clock_in_hand ? 0 : now - last;
    last = now;
    return probe->clock += passed;
}

/// Waits for an answer of the X server and counts it. Xlib waits for requests without an answer too, to learn
/// of their errors; that costs no round trip of its own and gives null.
template <typename Request>
void* AwaitReply(const char* name, void* connection, Request request, void* error) {
    void* reply = Next<void* (*)(void*, Request, void*)>(name)(connection, request, error);
    if (probe != nullptr && reply != nullptr) ++probe->round_trips;
    return reply;
}

/// Adds up the frames that the program takes for stalls, much as it does: from one frame's glFinish to the
/// next one's.
void CountStall() {
    static std::int64_t last = 0;
    const std::int64_t now = ProgramClock();
    if (now - last > desktop::kStallNanoseconds) probe->stalled += now - last;
    last = now;
}

/// Rests after a frame of a clock in hand, until the test wants another one. A frame without pixels takes
/// less than the moment after which the test asks again whether it came.
void Rest() {
    constexpr timespec kMoment = {0, 1'000'000};
    for (std::int64_t rested = 0; rested < desktop::kRestNanoseconds; rested += kMoment.tv_nsec) {
        if (!probe->clock_in_hand || probe->to_pass > 0) return;
        if (probe->waiting > 0 && (touches_pixels || rested > 0)) return;
        nanosleep(&kMoment, nullptr);
    }
}

/// Sleeps as long as the test wants in each frame.
void Breathe() {
    const std::int64_t breath = probe->breath;
    const timespec time = {breath / kSecond, breath % kSecond};
    if (breath > 0) nanosleep(&time, nullptr);
}

/// Begins a frame. Where nobody will look at it, it is drawn into an empty scissor, as the program itself
/// draws a hidden window's, and is not swapped.
void ChoosePixels() {
    constexpr unsigned int kScissorTest = 0x0C11;
    touches_pixels = !probe->on_demand || !probe->clock_in_hand || probe->looking > 0;
    if (touches_pixels) {
        Next<void (*)(unsigned int)>("glDisable")(kScissorTest);
    } else {
        Next<void (*)(unsigned int)>("glEnable")(kScissorTest);
        Next<void (*)(int, int, int, int)>("glScissor")(0, 0, 0, 0);
    }
}

}  // namespace

extern "C" {

void glFinish();
void glXSwapBuffers(void* display, unsigned long drawable);
void* xcb_wait_for_reply(void* connection, unsigned int request, void* error);
void* xcb_wait_for_reply64(void* connection, std::uint64_t request, void* error);

// The parameters have other names than the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const bool is_wall = wall != nullptr && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE);
    const bool is_own = probe != nullptr && clock == CLOCK_MONOTONIC;
    if (!IsMainThread() || !(is_wall || is_own)) return RealClock(clock, time);
    const std::int64_t now = is_wall ? WallTime() : ProgramClock();
    time->tv_sec = now / kSecond;
    time->tv_nsec = now % kSecond;
    return 0;
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int gettimeofday(timeval* now, void* zone) noexcept {
    static const auto next = Next<int (*)(timeval*, void*)>("gettimeofday");
    if (wall == nullptr || !IsMainThread()) return next(now, zone);
    const std::int64_t time = WallTime();
    *now = {time / kSecond, time % kSecond / 1'000};
    return 0;
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
std::time_t time(std::time_t* result) noexcept {
    static const auto next = Next<std::time_t (*)(std::time_t*)>("time");
    if (wall == nullptr || !IsMainThread()) return next(result);
    const std::time_t now = WallTime() / kSecond;
    if (result != nullptr) *result = now;
    return now;
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int open(const char* path, int flags, ...) {
    static const auto next = Next<int (*)(const char*, int, ...)>("open");
    if (probe != nullptr && std::strcmp(path, "notify.wav") == 0) ++probe->notices;
    std::va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return next(path, flags, mode);
}

int rand() noexcept {
    static const auto next = Next<int (*)()>("rand");
    return probe != nullptr && probe->dice_in_hand ? probe->dice.load() : next();
}

/// A frame calls this once, whether anybody sees it or not.
void glFinish() {
    static const auto next = Next<void (*)()>("glFinish");
    next();
    if (probe == nullptr) return;
    const std::int64_t step = std::min(probe->to_pass.load(), probe->longest_step.load());
    probe->clock += step + probe->to_jump.exchange(0);
    probe->to_pass -= step;
    CountStall();
    ++probe->frames;
    Breathe();
}

void glXSwapBuffers(void* display, unsigned long drawable) {
    static const auto next = Next<void (*)(void*, unsigned long)>("glXSwapBuffers");
    if (touches_pixels) next(display, drawable);
    if (probe == nullptr) return;
    ++probe->swaps;
    Next<int (*)(void*)>("XFlush")(display);  // what the test looks at
    if (touches_pixels) ++probe->drawn;
    Rest();
    if (probe->on_demand) ChoosePixels();
}

// OpenAL's wave backend goes back to the header's sizes whenever the device is put to sleep, and when woken
// it goes on there, over what it has played. In a recording it stays at the end instead: the sizes become two
// frames of noise there.
int fseek(FILE* file, long offset, int whence) {
    static const auto next = Next<int (*)(FILE*, long, int)>("fseek");
    if (whence != SEEK_SET || offset == 0) return next(file, offset, whence);
    char name[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(fileno(file));
    const ssize_t length = readlink(link.c_str(), name, sizeof name);
    const std::string_view path(name, length > 0 ? static_cast<std::size_t>(length) : 0);
    return path.ends_with("/played.wav") ? 0 : next(file, offset, whence);
}

int XNextEvent(Display* connection, XEvent* event) {
    static const auto next = Next<int (*)(Display*, XEvent*)>("XNextEvent");
    const int result = next(connection, event);
    if (probe != nullptr && event->type == ClientMessage && event->xclient.format == 32 &&
        event->xclient.data.l[0] == desktop::kMarkWord) {
        probe->mark = static_cast<std::uint64_t>(event->xclient.data.l[1]);
    }
    return result;
}

void* xcb_wait_for_reply(void* connection, unsigned int request, void* error) {
    return AwaitReply("xcb_wait_for_reply", connection, request, error);
}

void* xcb_wait_for_reply64(void* connection, std::uint64_t request, void* error) {
    return AwaitReply("xcb_wait_for_reply64", connection, request, error);
}

}  // extern "C"
