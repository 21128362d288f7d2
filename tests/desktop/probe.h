// What the tests and the library inside the program (probe.cpp) say to each other: a record in a file that
// both map.
//
// The library is loaded into the program ahead of its own. It counts the frames and the round trips to the X
// server, and it can take the program's monotonic clock in hand, so that a test moves the owl through minutes
// in moments and measures an owl that holds still. Only the program's main thread sees that clock.
#pragma once

#include <atomic>
#include <cstdint>

namespace desktop {

/// The environment variable with the path of the mapped file.
constexpr char kProbeVariable[] = "ULMARO_PROBE";

/// The longest step of a clock in the test's hand, nanoseconds; one frame takes one step. Below the 0.25
/// seconds above which the program takes a frame for a stall.
constexpr std::int64_t kLongestStepNanoseconds = 100'000'000;

struct Probe {
    std::atomic<std::uint64_t> frames;  ///< buffer swaps so far; written by the library
    std::atomic<std::uint64_t>
        round_trips;                    ///< answers awaited from the X server so far; written by the library
    std::atomic<std::int64_t> clock;    ///< the program's clock since its start, ns; written by the library
    std::atomic<bool> clock_in_hand;    ///< the clock moves by `to_pass` alone; written by the test
    std::atomic<std::int64_t> to_pass;  ///< time yet to pass, ns; raised by the test, used up by the frames
};

static_assert(std::atomic<std::int64_t>::is_always_lock_free, "the record is shared by two processes");

}  // namespace desktop
