// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/al.h"

#define AL_ALEXT_PROTOTYPES  // the functions of extensions, which the program asks for by name
#include <AL/alext.h>

#include <algorithm>
#include <cstddef>

#include "tests/fakes/log.h"

namespace fakes {
namespace {

struct AlName {
    ALenum value;
    const char* name;
};

#define NAMED(constant) \
    { constant, #constant }

constexpr AlName kAlConstants[] = {
    NAMED(AL_SOURCE_RELATIVE),
    NAMED(AL_PITCH),
    NAMED(AL_POSITION),
    NAMED(AL_DIRECTION),
    NAMED(AL_VELOCITY),
    NAMED(AL_LOOPING),
    NAMED(AL_BUFFER),
    NAMED(AL_GAIN),
    NAMED(AL_MIN_GAIN),
    NAMED(AL_MAX_GAIN),
    NAMED(AL_ORIENTATION),
    NAMED(AL_SOURCE_STATE),
    NAMED(AL_REFERENCE_DISTANCE),
    NAMED(AL_ROLLOFF_FACTOR),
    NAMED(AL_MAX_DISTANCE),
    NAMED(AL_FREQUENCY),
    NAMED(AL_BITS),
    NAMED(AL_CHANNELS),
    NAMED(AL_SIZE),
    NAMED(AL_FORMAT_MONO8),
    NAMED(AL_FORMAT_MONO16),
    NAMED(AL_FORMAT_STEREO8),
    NAMED(AL_FORMAT_STEREO16),
};

#undef NAMED

Arg AlConstant(ALenum value) {
    for (const AlName& constant : kAlConstants) {
        if (constant.value == value) return {static_cast<double>(value), constant.name};
    }
    return {value};
}

void Fail(ALenum flag, const char* call, const char* what) {
    if (al().error == AL_NO_ERROR) al().error = flag;
    al().errors.push_back(std::string(call) + ": " + what);
}

// Returns whether the object exists; without a current context nothing does and nothing is an error.
template <typename Object>
Object* Find(const char* call, std::map<ALuint, Object>& objects, ALuint name) {
    if (!al().context_current) return nullptr;
    const auto found = objects.find(name);
    if (found != objects.end()) return &found->second;
    Fail(AL_INVALID_NAME, call, "no such name");
    return nullptr;
}

template <typename Object>
void Generate(const char* call, std::map<ALuint, Object>& objects, ALuint& next, ALsizei n, ALuint* names) {
    Record(call, {n});
    if (!al().context_current) return;
    for (ALsizei i = 0; i < n; ++i) {
        names[i] = next++;
        objects[names[i]];
    }
}

void SetState(const char* call, ALuint name, ALint state) {
    Record(call, {name});
    if (Source* source = Find(call, al().sources, name)) source->state = state;
}

void SetNumber(const char* call, Source& source, ALenum parameter, float value) {
    switch (parameter) {
        case AL_GAIN:
            if (value < 0) return Fail(AL_INVALID_VALUE, call, "negative gain");
            source.gain = value;
            break;
        case AL_PITCH:
            if (value <= 0) return Fail(AL_INVALID_VALUE, call, "pitch not positive");
            source.pitch = value;
            break;
        case AL_LOOPING:
            source.looping = value != 0;
            break;
        case AL_SOURCE_RELATIVE:
            source.relative = value != 0;
            break;
        default:
            source.other[parameter] = value;
    }
}

void SetVector(const char* call, Source& source, ALenum parameter, const std::array<float, 3>& value) {
    if (parameter == AL_POSITION)
        source.position = value;
    else if (parameter == AL_VELOCITY)
        source.velocity = value;
    else
        Fail(AL_INVALID_ENUM, call, "a parameter that the fake does not know");
}

void AttachBuffer(const char* call, Source& source, ALuint buffer) {
    if (buffer != 0 && !al().buffers.contains(buffer)) return Fail(AL_INVALID_VALUE, call, "no such buffer");
    if (source.state == AL_PLAYING || source.state == AL_PAUSED)
        return Fail(AL_INVALID_OPERATION, call, "the source is in use");
    source.buffer = buffer;
}

bool IsAttached(ALuint buffer) {
    return std::any_of(al().sources.begin(), al().sources.end(),
                       [buffer](const auto& entry) { return entry.second.buffer == buffer; });
}

void SetListener(const char* call, ALenum parameter, const float* values) {
    if (!al().context_current) return;
    Listener& listener = al().listener;
    switch (parameter) {
        case AL_POSITION:
            std::copy_n(values, listener.position.size(), listener.position.begin());
            break;
        case AL_VELOCITY:
            std::copy_n(values, listener.velocity.size(), listener.velocity.begin());
            break;
        case AL_ORIENTATION:
            std::copy_n(values, listener.orientation.size(), listener.orientation.begin());
            break;
        case AL_GAIN:
            listener.gain = values[0];
            break;
        default:
            Fail(AL_INVALID_ENUM, call, "a parameter that the fake does not know");
    }
}

// Devices and contexts are never looked into, so any address will do.
char device_at_this_address;
char context_at_this_address;

ALCdevice* TheDevice() {
    return reinterpret_cast<ALCdevice*>(&device_at_this_address);
}
ALCcontext* TheContext() {
    return reinterpret_cast<ALCcontext*>(&context_at_this_address);
}

}  // namespace

Al& al() {
    static Al model;
    return model;
}

void ResetAl() {
    al() = Al();
}

std::vector<ALuint> Al::Playing() const {
    std::vector<ALuint> playing;
    for (const auto& [name, source] : sources) {
        if (source.state == AL_PLAYING) playing.push_back(name);
    }
    return playing;
}

}  // namespace fakes

using namespace fakes;  // NOLINT(google-build-using-namespace): the C functions below are all this file's
                        // users

extern "C" {

// The logged number says whether there was a name: 1, or 0 for null, the default device.
ALCdevice* alcOpenDevice(const ALCchar* devicename) {
    Record("alcOpenDevice", {devicename != nullptr ? 1 : 0}, devicename != nullptr ? devicename : "");
    if (!al().has_device) return nullptr;
    ++al().open_devices;
    al().connected = true;
    return TheDevice();
}

// The logged number says whether there was a device: 1, or 0 for null.
ALCcontext* alcCreateContext(ALCdevice* device, const ALCint* attrlist) {
    Record("alcCreateContext", {device != nullptr ? 1 : 0, attrlist != nullptr ? 1 : 0});
    if (device == nullptr || !al().has_context) return nullptr;
    ++al().contexts;
    return TheContext();
}

// The logged number says whether there was a context: 1, or 0 for null.
ALCboolean alcMakeContextCurrent(ALCcontext* context) {
    Record("alcMakeContextCurrent", {context != nullptr ? 1 : 0});
    al().context_current = context != nullptr;
    return ALC_TRUE;
}

// The logged number says whether there was a context: 1, or 0 for null.
void alcDestroyContext(ALCcontext* context) {
    Record("alcDestroyContext", {context != nullptr ? 1 : 0});
    if (context == nullptr) return;
    --al().contexts;
    al().sources.clear();
    al().buffers.clear();
    al().next_source = al().next_buffer = 1;
}

// The logged number says whether there was a device: 1, or 0 for null.
ALCboolean alcCloseDevice(ALCdevice* device) {
    Record("alcCloseDevice", {device != nullptr ? 1 : 0});
    if (device == nullptr) return ALC_FALSE;
    --al().open_devices;
    al().paused = false;
    return ALC_TRUE;
}

ALCboolean alcIsExtensionPresent(ALCdevice* /*device*/, const ALCchar* extname) {
    const std::string name = extname;
    if (name == "ALC_SOFT_pause_device") return al().can_pause ? ALC_TRUE : ALC_FALSE;
    if (name == "ALC_EXT_disconnect") return al().tells_loss ? ALC_TRUE : ALC_FALSE;
    return ALC_FALSE;
}

// Gives the functions of the device's extensions, and nothing where the device lacks them.
ALCvoid* alcGetProcAddress(ALCdevice* /*device*/, const ALCchar* funcname) {
    const std::string name = funcname;
    if (!al().can_pause) return nullptr;
    if (name == "alcDevicePauseSOFT") return reinterpret_cast<void*>(&alcDevicePauseSOFT);
    if (name == "alcDeviceResumeSOFT") return reinterpret_cast<void*>(&alcDeviceResumeSOFT);
    return nullptr;
}

// The logged number says whether there was a device: 1, or 0 for null; so do the two after it.
void alcGetIntegerv(ALCdevice* device, ALCenum param, ALCsizei size, ALCint* values) {
    Record("alcGetIntegerv", {device != nullptr ? 1 : 0, param});
    if (param == ALC_CONNECTED && size >= 1) *values = al().connected ? ALC_TRUE : ALC_FALSE;
}

void alcDevicePauseSOFT(ALCdevice* device) {
    Record("alcDevicePauseSOFT", {device != nullptr ? 1 : 0});
    al().paused = true;
}

void alcDeviceResumeSOFT(ALCdevice* device) {
    Record("alcDeviceResumeSOFT", {device != nullptr ? 1 : 0});
    al().paused = false;
}

ALenum alGetError() {
    Record("alGetError");
    const ALenum error = al().error;
    al().error = AL_NO_ERROR;
    return error;
}

void alGenSources(ALsizei n, ALuint* sources) {
    Generate("alGenSources", al().sources, al().next_source, n, sources);
}

void alGenBuffers(ALsizei n, ALuint* buffers) {
    Generate("alGenBuffers", al().buffers, al().next_buffer, n, buffers);
}

// Like the real one, deletes nothing if any of the names does not exist.
void alDeleteSources(ALsizei n, const ALuint* sources) {
    for (ALsizei i = 0; i < n; ++i) Record("alDeleteSources", {n, sources[i]});
    for (ALsizei i = 0; i < n; ++i) {
        if (Find("alDeleteSources", al().sources, sources[i]) == nullptr) return;
    }
    for (ALsizei i = 0; i < n; ++i) al().sources.erase(sources[i]);
}

// Like the real one, lets the name 0 pass and keeps a buffer that a source still holds.
void alDeleteBuffers(ALsizei n, const ALuint* buffers) {
    for (ALsizei i = 0; i < n; ++i) Record("alDeleteBuffers", {n, buffers[i]});
    for (ALsizei i = 0; i < n; ++i) {
        if (buffers[i] == 0) continue;
        if (Find("alDeleteBuffers", al().buffers, buffers[i]) == nullptr) return;
        if (IsAttached(buffers[i]))
            return Fail(AL_INVALID_OPERATION, "alDeleteBuffers", "a source holds the buffer");
    }
    for (ALsizei i = 0; i < n; ++i) al().buffers.erase(buffers[i]);
}

ALboolean alIsSource(ALuint source) {
    Record("alIsSource", {source});
    return al().context_current && al().sources.contains(source) ? AL_TRUE : AL_FALSE;
}

ALboolean alIsBuffer(ALuint buffer) {
    Record("alIsBuffer", {buffer});
    return al().context_current && (buffer == 0 || al().buffers.contains(buffer)) ? AL_TRUE : AL_FALSE;
}

void alBufferData(ALuint buffer, ALenum format, const ALvoid* data, ALsizei size, ALsizei freq) {
    std::vector<std::uint8_t> bytes;
    if (data != nullptr && size > 0) {
        const auto* from = static_cast<const std::uint8_t*>(data);
        bytes.assign(from, from + size);
    }
    Record("alBufferData", {buffer, AlConstant(format), size, freq}, {}, bytes);
    Buffer* found = Find("alBufferData", al().buffers, buffer);
    if (found == nullptr) return;
    if (size < 0 || freq < 1) return Fail(AL_INVALID_VALUE, "alBufferData", "a size or rate that cannot be");
    if (IsAttached(buffer)) return Fail(AL_INVALID_OPERATION, "alBufferData", "a source holds the buffer");
    found->format = format;
    found->frequency = freq;
    found->data = std::move(bytes);
}

void alSourcei(ALuint source, ALenum param, ALint value) {
    Record("alSourcei", {source, AlConstant(param), value});
    Source* found = Find("alSourcei", al().sources, source);
    if (found == nullptr) return;
    if (param == AL_BUFFER)
        AttachBuffer("alSourcei", *found, static_cast<ALuint>(value));
    else
        SetNumber("alSourcei", *found, param, static_cast<float>(value));
}

void alSourcef(ALuint source, ALenum param, ALfloat value) {
    Record("alSourcef", {source, AlConstant(param), value});
    if (Source* found = Find("alSourcef", al().sources, source)) SetNumber("alSourcef", *found, param, value);
}

void alSource3f(ALuint source, ALenum param, ALfloat value1, ALfloat value2, ALfloat value3) {
    Record("alSource3f", {source, AlConstant(param), value1, value2, value3});
    if (Source* found = Find("alSource3f", al().sources, source))
        SetVector("alSource3f", *found, param, {value1, value2, value3});
}

void alGetSourcei(ALuint source, ALenum param, ALint* value) {
    Record("alGetSourcei", {source, AlConstant(param)});
    const Source* found = Find("alGetSourcei", al().sources, source);
    if (found == nullptr) return;
    switch (param) {
        case AL_SOURCE_STATE:
            *value = found->state;
            break;
        case AL_BUFFER:
            *value = static_cast<ALint>(found->buffer);
            break;
        case AL_LOOPING:
            *value = found->looping ? AL_TRUE : AL_FALSE;
            break;
        case AL_SOURCE_RELATIVE:
            *value = found->relative ? AL_TRUE : AL_FALSE;
            break;
        default:
            Fail(AL_INVALID_ENUM, "alGetSourcei", "a parameter that the fake does not know");
    }
}

void alSourcePlay(ALuint source) {
    SetState("alSourcePlay", source, AL_PLAYING);
}
void alSourceStop(ALuint source) {
    SetState("alSourceStop", source, AL_STOPPED);
}
// Like the real one, pauses only what plays.
void alSourcePause(ALuint source) {
    Record("alSourcePause", {source});
    Source* found = Find("alSourcePause", al().sources, source);
    if (found != nullptr && found->state == AL_PLAYING) found->state = AL_PAUSED;
}

void alListener3f(ALenum param, ALfloat value1, ALfloat value2, ALfloat value3) {
    Record("alListener3f", {AlConstant(param), value1, value2, value3});
    if (param != AL_POSITION && param != AL_VELOCITY)
        return Fail(AL_INVALID_ENUM, "alListener3f", "a parameter of other than three numbers");
    const float values[] = {value1, value2, value3};
    SetListener("alListener3f", param, values);
}

void alListenerfv(ALenum param, const ALfloat* values) {
    if (param == AL_ORIENTATION)
        Record("alListenerfv",
               {AlConstant(param), values[0], values[1], values[2], values[3], values[4], values[5]});
    else if (param == AL_GAIN)
        Record("alListenerfv", {AlConstant(param), values[0]});
    else
        Record("alListenerfv", {AlConstant(param), values[0], values[1], values[2]});
    SetListener("alListenerfv", param, values);
}

}  // extern "C"
