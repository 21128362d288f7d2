// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/sounds.h"

#include "app/state.h"
#include "engine/Sound.h"

namespace {

constexpr int kSlot = 0;  ///< where the program plays everything

void Play(const char* file) {
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
