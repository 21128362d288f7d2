// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/sounds.h"

#include "app/state.h"
#include "engine/Sound.h"

namespace {

constexpr int kSlot = 0;  ///< where the program plays everything

}  // namespace

void PlayEffect(const char* file) {
    if (enable_sfx) PlayNotice(file);
}

void PlayNotice(const char* file) {
    AudioEngine.spawn_static(kSlot, file, false);
}

void Silence() {
    AudioEngine.kill_static(kSlot);
}
