// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/Sound.h"

#include <AL/al.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "engine/wav_file.h"

struct AudioEngine AudioEngine;

char curr_absolute_path[512];
char retv_absolute_path[512];

namespace {

bool IsSlot(int slot) {
    return 0 <= slot && slot < AudioEngine::kSlots;
}

}  // namespace

// ---- Sound ----

void Sound::Load(const char* file, bool loop) {
    double ignored_duration = 0;
    LoadWAVFile(file, &format, &data, &size, &freq, &ignored_duration);
    alGenSources(1, &source);
    alGenBuffers(1, &buffer);
    alBufferData(buffer, format, data, size, freq);
    std::free(data);
    data = nullptr;
    alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
    alSourcef(source, AL_PITCH, 1);
    alSourcef(source, AL_GAIN, 1);
    alSourcei(source, AL_LOOPING, loop ? AL_TRUE : AL_FALSE);
    SetSourceRelative();
}

void Sound::SetSourceRelative() const {
    alSourcei(source, AL_SOURCE_RELATIVE, AL_TRUE);
}

void Sound::SetProperties(float px, float py, float pz, float vx, float vy, float vz) const {
    alSource3f(source, AL_POSITION, px, py, pz);
    alSource3f(source, AL_VELOCITY, vx, vy, vz);
}

void Sound::Play() const {
    alSourcePlay(source);
}

void Sound::Stop() const {
    alSourceStop(source);
}

void Sound::Pause() const {
    alSourcePause(source);
}

bool Sound::IsPlaying() const {
    if (source == 0) return false;
    ALint state = AL_STOPPED;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    return state == AL_PLAYING;
}

void Sound::Destroy() {
    alDeleteSources(1, &source);
    alDeleteBuffers(1, &buffer);
    source = buffer = 0;
}

// ---- AudioEngine ----

void AudioEngine::initialize() {
    initialized = true;
}

void AudioEngine::spawn_static(int slot, const char* file, bool loop) {
    if (!IsSlot(slot)) return;
    statics[slot].Destroy();
    statics[slot].Load(file, loop);
    statics[slot].Play();
}

void AudioEngine::kill_static(int slot) {
    if (!IsSlot(slot)) return;
    statics[slot].Stop();
    statics[slot].Destroy();
}

void AudioEngine::ForgetNames() {
    for (Sound& sound : statics) sound.source = sound.buffer = 0;
}

// ---- Listener and paths ----

void SetListenerPosition(float x, float y, float z) {
    alListener3f(AL_POSITION, x, y, z);
}

void SetListenerOrientation(float atx, float aty, float atz, float upx, float upy, float upz) {
    const float orientation[] = {atx, aty, atz, upx, upy, upz};
    alListenerfv(AL_ORIENTATION, orientation);
}

char* GetAbsPath(const char* name) {
    std::fill(std::begin(retv_absolute_path), std::end(retv_absolute_path), '\0');
    std::snprintf(retv_absolute_path, sizeof retv_absolute_path, "%s%s", curr_absolute_path, name);
    return retv_absolute_path;
}
