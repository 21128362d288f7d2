// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the library inside the program (witness.cpp) tells the long run: a file with one record a frame.
//
// The witness sees which data files' textures the program binds and which sounds it opens. A picture that is
// bound counts as shown: the program binds nothing that it does not draw at once.
//
// The witness is a part of the program's world too, by a record in a file that both map: its clock on the
// wall, its disk, which may be full, and its sound device, which may be gone. That is simpler than libraries
// that do these things for any program, and no sanitizer minds it.
#pragma once

#include <atomic>
#include <cstdint>

namespace longrun {

/// The environment variable with the path of the file.
constexpr char kWitnessVariable[] = "ULMARO_WITNESS";

/// The environment variable with the path of the mapped file, which holds a World.
constexpr char kWorldVariable[] = "ULMARO_WITNESS_WORLD";

/// What the program lives in; the first four are written by the run, the others counted by the witness.
struct World {
    std::atomic<std::int64_t> seconds;         ///< of the clock on the wall, since 1970
    std::atomic<std::int32_t> calls_to_live;   ///< the call of a save (open, write, fsync, rename) at which
                                               ///< the program is killed, from 1 on, counted down; 0: at none
    std::atomic<bool> disk_full;               ///< writing the store fails with ENOSPC
    std::atomic<bool> device_gone;             ///< the sound device is lost, and none can be opened
    std::atomic<std::int32_t> refused_writes;  ///< of the store
    std::atomic<std::int32_t> refused_devices;
    std::atomic<std::int32_t> opened_devices;
    std::atomic<std::int32_t> sounds;  ///< that a device began to play
};

/// What a frame did; a bit each.
enum Mark : std::uint32_t {
    kOwlScreen = 1U << 0,
    kListScreen = 1U << 1,
    kEventScreen = 1U << 2,  ///< the editor or the view of an event
    kEditor = 1U << 3,       ///< of the two the editor: only it has a bin
    kQuizScreen = 1U << 4,
    kStands = 1U << 5,
    kPerches = 1U << 6,
    kSleeps = 1U << 7,  ///< from falling asleep to waking
    kHat = 1U << 8,
    kBubble = 1U << 9,
    kBadge = 1U << 10,
    kOfferButton = 1U << 11,
    kOfferSound = 1U << 12,
    kNoticeSound = 1U << 13,
    kLaughSound = 1U << 14,
    kQuizSound = 1U << 15,
    kLetters = 1U << 16,  ///< the z's of a sleeping owl
    kSmoke = 1U << 17,    ///< out of the hat of an offer
    kSaved = 1U << 18,    ///< a save took effect, before this frame's step was added to any timer
};

struct FrameRecord {
    std::int64_t clock = 0;   ///< the program's clock, ns; less the record before's: the step of its timers
    std::uint32_t marks = 0;  ///< of Mark
    std::uint16_t width = 0, height = 0;  ///< of the viewport that was drawn into, pixels
};

static_assert(std::atomic<std::int64_t>::is_always_lock_free, "the clock is shared by two processes");

}  // namespace longrun
