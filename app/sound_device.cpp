// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/sound_device.h"

#include <AL/alc.h>

#include <cstdlib>
#include <utility>

namespace {

ALCdevice* device = nullptr;    ///< written by OpenSoundDevice and CloseSoundDevice
ALCcontext* context = nullptr;  ///< likewise; null where the device has none

}  // namespace

void OpenSoundDevice() {
    device = alcOpenDevice(nullptr);
    context = alcCreateContext(device, nullptr);
    alcMakeContextCurrent(context);
    // Last: what OpenAL itself has registered while it opened the device runs after it.
    std::atexit(CloseSoundDevice);
}

void CloseSoundDevice() {
    if (device == nullptr) return;
    alcMakeContextCurrent(nullptr);
    if (context != nullptr) alcDestroyContext(std::exchange(context, nullptr));
    alcCloseDevice(std::exchange(device, nullptr));
}
