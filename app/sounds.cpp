// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/sounds.h"

#include <optional>

#include "app/sound_device.h"
#include "app/state.h"
#include "engine/Sound.h"

namespace {

constexpr int kSlot = 0;  ///< where the program plays everything

constexpr std::uint64_t kQuietBeforeRest = 2'000'000'000;  ///< nanoseconds

/// Since when nothing has been playing, as far as RestSoundWhenQuiet() has seen; nothing while the device
/// sleeps or plays.
std::optional<std::uint64_t> quiet_since;

void Play(const char* file) {
    if (WakeSoundDevice()) AudioEngine.ForgetNames();
    quiet_since.reset();
    AudioEngine.spawn_static(kSlot, file, false);
}

}  // namespace

void PlayEffect(const char* file) {
    if (enable_sfx) Play(file);
}

void PlayNotice(const char* file) {
    Play(file);
}

void Silence() {
    AudioEngine.kill_static(kSlot);
}

void RestSoundWhenQuiet(std::uint64_t now) {
    if (!IsSoundDeviceAwake() || AudioEngine.statics[kSlot].IsPlaying()) {
        quiet_since.reset();
        return;
    }
    if (!quiet_since) quiet_since = now;
    if (now - *quiet_since >= kQuietBeforeRest) RestSoundDevice();
}
