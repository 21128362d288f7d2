// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/sound_device.h"

#include <AL/alc.h>
#include <AL/alext.h>

#include <cstdlib>
#include <utility>

namespace {

ALCdevice* device = nullptr;    ///< written by Open and CloseSoundDevice
ALCcontext* context = nullptr;  ///< likewise; null where the device has none
bool wanted = false;            ///< from OpenSoundDevice to CloseSoundDevice
bool asleep = false;            ///< the device is paused

// The device's extensions, written by Open.
LPALCDEVICEPAUSESOFT pause_device = nullptr;    ///< null where it cannot sleep
LPALCDEVICERESUMESOFT resume_device = nullptr;  ///< likewise
bool tells_loss = false;                        ///< it can say that it is lost

void FindExtensions() {
    tells_loss = alcIsExtensionPresent(device, "ALC_EXT_disconnect") == ALC_TRUE;
    if (alcIsExtensionPresent(device, "ALC_SOFT_pause_device") == ALC_FALSE) return;
    pause_device = reinterpret_cast<LPALCDEVICEPAUSESOFT>(alcGetProcAddress(device, "alcDevicePauseSOFT"));
    resume_device = reinterpret_cast<LPALCDEVICERESUMESOFT>(alcGetProcAddress(device, "alcDeviceResumeSOFT"));
}

void Open() {
    device = alcOpenDevice(nullptr);
    context = alcCreateContext(device, nullptr);
    alcMakeContextCurrent(context);
    if (device == nullptr) return;
    FindExtensions();
    // Last: what OpenAL itself has registered while it opened the device runs after it.
    std::atexit(CloseSoundDevice);
}

void Close() {
    pause_device = nullptr;
    resume_device = nullptr;
    asleep = false;
    if (device == nullptr) return;
    alcMakeContextCurrent(nullptr);
    if (context != nullptr) alcDestroyContext(std::exchange(context, nullptr));
    alcCloseDevice(std::exchange(device, nullptr));
}

bool IsLost() {
    if (device == nullptr) return true;
    if (!tells_loss) return false;
    ALCint connected = ALC_TRUE;
    alcGetIntegerv(device, ALC_CONNECTED, 1, &connected);
    return connected == ALC_FALSE;
}

}  // namespace

void OpenSoundDevice() {
    wanted = true;
    Open();
}

bool WakeSoundDevice() {
    if (!wanted) return false;
    if (std::exchange(asleep, false)) resume_device(device);
    // Asked after it was woken, which fails where the device is gone.
    if (!IsLost()) return false;
    Close();
    Open();
    return true;
}

bool IsSoundDeviceAwake() {
    return pause_device != nullptr && resume_device != nullptr && !asleep;
}

void RestSoundDevice() {
    asleep = true;
    pause_device(device);
}

void CloseSoundDevice() {
    wanted = false;
    Close();
}
