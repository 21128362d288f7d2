// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Replaces the C library's gettimeofday for the whole process by a clock that never goes back.
//
// Whom it is for: freeglut, which asks for the time of day to tell when a timer is due. When the user set the
// clock back by an hour, a hidden owl would get no frame, and so no notice, for that hour.
//
// Whom else it touches: every library in the process that calls gettimeofday, libasound and libstdc++ among
// them, which measure durations by it. They see the time of the program's start and what has passed since.
// The program itself takes dates from time() and durations from CLOCK_MONOTONIC and is not touched.
#include <sys/time.h>

#include <cstdint>
#include <ctime>

namespace {

std::uint64_t Nanoseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

}  // namespace

// The parameters have other names than the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int gettimeofday(timeval* now, void* /*zone*/) noexcept {
    static const std::uint64_t start = Nanoseconds(CLOCK_REALTIME) - Nanoseconds(CLOCK_MONOTONIC);
    const std::uint64_t microseconds = (start + Nanoseconds(CLOCK_MONOTONIC)) / 1'000;
    *now = {static_cast<std::time_t>(microseconds / 1'000'000),
            static_cast<suseconds_t>(microseconds % 1'000'000)};
    return 0;
}
