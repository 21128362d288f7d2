// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The library that makes a whole process's clocks faster, for all its threads; fast_clock.h says how.
//
// libfaketime could do the same, but it wraps dozens of functions, takes locks and allocates; when a program
// under it fails, nobody can tell whose fault that was. This library asks the kernel directly, multiplies,
// and does nothing else: it takes no lock, allocates nothing and writes nothing after its start, so that it
// cannot be what breaks the program. It bears valgrind and the sanitizers.
//
// Pauses are not shortened: a pause of a second still takes a second of real time. Only waits until a moment
// (pthread_cond_timedwait, clock_nanosleep) are turned back, because that moment was read from the fast
// clock.
#include "tests/longrun/fast_clock.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

std::int64_t RealNanoseconds(clockid_t clock) {
    timespec now{};
    syscall(SYS_clock_gettime, clock, &now);
    return now.tv_sec * kSecond + now.tv_nsec;
}

/// Written by the constructor alone, before there are threads.
struct State {
    std::int64_t factor = 1;
    std::int64_t wall_start = 0;       ///< ns since 1970
    std::int64_t monotonic_start = 0;  ///< ns
    int (*wait)(pthread_cond_t*, pthread_mutex_t*, const timespec*) = nullptr;
};

State state;

__attribute__((constructor)) void ReadFactor() {
    const char* factor = std::getenv(longrun::kFactorVariable);
    state.wall_start = RealNanoseconds(CLOCK_REALTIME);
    state.monotonic_start = RealNanoseconds(CLOCK_MONOTONIC);
    state.wait =
        reinterpret_cast<decltype(state.wait)>(dlvsym(RTLD_NEXT, "pthread_cond_timedwait", "GLIBC_2.3.2"));
    const std::int64_t number = factor == nullptr ? 1 : std::strtoll(factor, nullptr, 10);
    state.factor = number < 1 || number > longrun::kLargestFactor ? 1 : number;
}

bool IsWall(clockid_t clock) {
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
}

/// Returns whether the clock is made faster; those of processor time and the raw ones are not.
bool IsTurned(clockid_t clock) {
    return IsWall(clock) || clock == CLOCK_MONOTONIC || clock == CLOCK_MONOTONIC_COARSE;
}

std::int64_t Start(clockid_t clock) {
    return IsWall(clock) ? state.wall_start : state.monotonic_start;
}

/// Returns what a clock that is turned shows now.
std::int64_t FastNanoseconds(clockid_t clock) {
    const std::int64_t now = RealNanoseconds(clock);
    const std::int64_t start = Start(clock);
    return start + (now - start) * state.factor;
}

timespec Timespec(std::int64_t nanoseconds) {
    return {nanoseconds / kSecond, nanoseconds % kSecond};
}

/// Returns when, on the real clock, a turned one will show that moment.
timespec RealMoment(clockid_t clock, const timespec& moment) {
    const std::int64_t start = Start(clock);
    return Timespec(start + (moment.tv_sec * kSecond + moment.tv_nsec - start) / state.factor);
}

}  // namespace

extern "C" {

// The parameters have other names than the C library's.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
int clock_gettime(clockid_t clock, timespec* time) noexcept {
    if (!IsTurned(clock)) return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    *time = Timespec(FastNanoseconds(clock));
    return 0;
}

int gettimeofday(timeval* now, void* /*zone*/) noexcept {
    const timespec fast = Timespec(FastNanoseconds(CLOCK_REALTIME));
    *now = {fast.tv_sec, fast.tv_nsec / 1'000};
    return 0;
}

std::time_t time(std::time_t* result) noexcept {
    const std::time_t now = FastNanoseconds(CLOCK_REALTIME) / kSecond;
    if (result != nullptr) *result = now;
    return now;
}

/// Which clock the moment belongs to is not asked: a moment below a year is monotonic, because no machine has
/// been up that long and no wall shows 1970.
int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* moment) {
    constexpr std::time_t kYear = 31'536'000;
    const timespec real = RealMoment(moment->tv_sec < kYear ? CLOCK_MONOTONIC : CLOCK_REALTIME, *moment);
    return state.wait(condition, mutex, &real);
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* pause, timespec* left) {
    const bool turned = (flags & TIMER_ABSTIME) != 0 && IsTurned(clock);
    const timespec real = turned ? RealMoment(clock, *pause) : *pause;
    return syscall(SYS_clock_nanosleep, clock, flags, &real, left) == 0 ? 0 : errno;
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

}  // extern "C"
