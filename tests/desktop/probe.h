// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the tests and the library inside the program (probe.cpp) say to each other: a record in a file that
// both map.
//
// The library is loaded into the program ahead of its own. It counts the frames and the round trips to the X
// server, and it can take the program's monotonic clock in hand, so that a test moves the owl through minutes
// in moments and measures an owl that holds still, and its dice, so that it asks the question wanted. The
// clock on the wall is in a record of its own. Only the program's main thread sees these clocks.
//
// Nearly all of a test's processor time would go into the pixels of frames that nobody looks at. So a test
// may have pixels drawn on demand: the program calls GL as ever in every frame, but while its clock is in
// hand this touches no pixel, unless the test is about to look.
#pragma once

#include <atomic>
#include <cstdint>

namespace desktop {

/// The environment variable with the path of the mapped file.
constexpr char kProbeVariable[] = "ULMARO_PROBE";

/// The usual longest step of a clock in the test's hand, nanoseconds; one frame takes one step. A test may
/// set another below the 0.25 seconds above which the program takes a frame for a stall.
constexpr std::int64_t kLongestStepNanoseconds = 100'000'000;

/// A client message of format 32 with this first word is a mark: its second word, a number, is noted when the
/// program reads the message, and so has read all events that were sent before it. To the program it means
/// nothing.
constexpr long kMarkWord = 0x6D61726B;

/// The longest rest after a frame of a clock in hand, nanoseconds. In such a frame nothing moves, so it is
/// only drawn to show what the test did; programs that draw them without a rest would take all processors
/// from the tests beside them. The rest ends as soon as the test waits for a frame, or lets time pass.
constexpr std::int64_t kRestNanoseconds = 50'000'000;

/// A longer frame advances no timer of the program, nanoseconds.
constexpr std::int64_t kStallNanoseconds = 250'000'000;

struct Probe {
    std::atomic<std::uint64_t> frames;  ///< frames drawn so far, seen or not; written by the library
    std::atomic<std::uint64_t>
        notices;  ///< times that the sound of a notice was opened; written by the library
    std::atomic<std::uint64_t> swaps;  ///< buffer swaps so far; written by the library
    std::atomic<std::uint64_t>
        round_trips;                    ///< answers awaited from the X server so far; written by the library
    std::atomic<std::int64_t> clock;    ///< the program's clock since its start, ns; written by the library
    std::atomic<std::int64_t> stalled;  ///< length of all frames that the program took for stalls, ns
    std::atomic<bool> clock_in_hand;    ///< the clock moves by `to_pass` alone; written by the test
    std::atomic<std::uint64_t> mark;    ///< the last mark read; written by the library
    std::atomic<bool> dice_in_hand;     ///< the program draws `dice` only; written by the test
    std::atomic<std::int32_t> dice;     ///< the random number that it draws then, 0 .. RAND_MAX
    std::atomic<std::int64_t> to_pass;  ///< time yet to pass, ns; raised by the test, used up by the frames
    std::atomic<std::int64_t> longest_step;  ///< of a clock in hand, ns; written by the test
    std::atomic<std::int64_t> to_jump;       ///< by how much the clock jumps in the next frame, ns
    std::atomic<std::int32_t> waiting;  ///< the test waits for frames: those of a clock in hand take no rest
    std::atomic<bool> on_demand;        ///< pixels are drawn on demand; written by the test
    std::atomic<std::int32_t> looking;  ///< the test is about to look; written by it
    std::atomic<std::uint64_t> drawn;   ///< swaps so far of frames with pixels; written by the library
    std::atomic<std::int64_t> breath;   ///< the program sleeps so long in each frame, ns; written by the test
};

/// The environment variable with the path of the mapped file of the clock on the wall. Without it that clock
/// is the real one.
constexpr char kWallVariable[] = "ULMARO_PROBE_WALL";

/// The clock on the wall; written by the test.
struct Wall {
    std::atomic<bool> stands;           ///< it stands still at `seconds`; else it goes, off by them
    std::atomic<std::int64_t> seconds;  ///< since 1970, or from the real time
};

static_assert(std::atomic<std::int64_t>::is_always_lock_free, "the record is shared by two processes");

}  // namespace desktop
