// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The library that the long run loads into the program; witness.h says what for.
#include "tests/longrun/witness.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

using longrun::FrameRecord;

namespace {

struct Sign {
    const char* file;
    std::uint32_t mark;
};

/// What binding a file's texture, or opening a sound, says.
constexpr Sign kPictures[] = {
    {"background", longrun::kOwlScreen},
    {"GUI_01", longrun::kListScreen},
    {"GUI_02", longrun::kEventScreen},
    {"GUI_03", longrun::kQuizScreen},
    {"trash", longrun::kEditor},
    {"stand_01", longrun::kStands},
    {"stand_01_close_eyes", longrun::kStands},
    {"stand_02", longrun::kPerches},
    {"stand_02_close_eyes", longrun::kPerches},
    {"sleep", longrun::kSleeps},
    {"sleep_close_eyes", longrun::kSleeps},
    {"hat", longrun::kHat},
    {"cloud", longrun::kBubble},
    {"notify", longrun::kBadge},
    {"ic6", longrun::kOfferButton},
    {"sleep.zfx", longrun::kLetters},
    {"smoke.zfx", longrun::kSmoke},
};
constexpr Sign kSounds[] = {
    {"question.wav", longrun::kOfferSound}, {"notify.wav", longrun::kNoticeSound},
    {"laugh.wav", longrun::kLaughSound},    {"right.wav", longrun::kQuizSound},
    {"wrong_1.wav", longrun::kQuizSound},   {"wrong_2.wav", longrun::kQuizSound},
    {"wrong_3.wav", longrun::kQuizSound},
};

/// How the names of the store and of a new one that is being written end.
constexpr std::string_view kStore = "database.bin";
constexpr std::string_view kNewStore = "database.bin.new";

constexpr std::size_t kMostTextures = 4096;

struct State {
    int out = -1;
    longrun::World* world = nullptr;
    FrameRecord frame;
    std::uint32_t opened = 0;                            ///< what the picture opened last says
    unsigned int bound = 0;                              ///< the texture bound now
    std::array<std::uint32_t, kMostTextures> says = {};  ///< by texture name
};

State state;

template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

template <std::size_t kCount>
std::uint32_t Find(const Sign (&signs)[kCount], const char* file) {
    for (const Sign& sign : signs) {
        if (std::strcmp(sign.file, file) == 0) return sign.mark;
    }
    return 0;
}

__attribute__((constructor)) void OpenFiles() {
    const char* path = std::getenv(longrun::kWitnessVariable);
    if (path != nullptr) state.out = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    const char* world_path = std::getenv(longrun::kWorldVariable);
    const int file = world_path == nullptr ? -1 : open(world_path, O_RDWR | O_CLOEXEC);
    if (file < 0) return;
    void* world = mmap(nullptr, sizeof *state.world, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (world != MAP_FAILED) state.world = static_cast<longrun::World*>(world);
}

/// Returns whether a descriptor is that of the store, or of one that is being written. Leaves `errno` alone
/// where there is no descriptor.
bool IsStore(int descriptor) {
    if (descriptor < 0) return false;
    char link[64];
    char bytes[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = readlink(link, bytes, sizeof bytes);
    if (length <= 0) return false;
    const std::string_view name(bytes, static_cast<std::size_t>(length));
    return name.ends_with(kNewStore) || name.ends_with(kStore);
}

/// Returns whether the program is to be killed at this call of a save.
bool IsLastCall() {
    return state.world != nullptr && state.world->calls_to_live > 0 && --state.world->calls_to_live == 0;
}

void Die() {
    kill(getpid(), SIGKILL);
}

/// Notes which picture, effect or sound the program reads, by streams or by plain calls.
void NoteOpened(const char* path) {
    if (gettid() != getpid()) return;
    state.opened = Find(kPictures, path);
    state.frame.marks |= Find(kSounds, path);
}

}  // namespace

extern "C" {

void glFinish();
void glGetIntegerv(unsigned int what, int* values);
void* alcOpenDevice(const char* name);
void alcGetIntegerv(void* device, int what, int count, int* values);
void alSourcePlay(unsigned int source);
void glBindTexture(unsigned int target, unsigned int texture);
void glTexImage2D(unsigned int target, int level, int internal_format, int width, int height, int border,
                  unsigned int format, unsigned int type, const void* pixels);

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
std::FILE* fopen(const char* path, const char* mode) {
    static const auto next = Next<std::FILE* (*)(const char*, const char*)>("fopen");
    NoteOpened(path);
    return next(path, mode);
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int open(const char* path, int flags, ...) {
    static const auto next = Next<int (*)(const char*, int, ...)>("open");
    NoteOpened(path);
    std::va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    const int descriptor = next(path, flags, mode);
    if ((flags & O_ACCMODE) != O_RDONLY && IsStore(descriptor) && IsLastCall()) Die();
    return descriptor;
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
std::time_t time(std::time_t* result) noexcept {
    static const auto next = Next<std::time_t (*)(std::time_t*)>("time");
    const std::time_t now = state.world != nullptr ? state.world->seconds.load() : next(nullptr);
    if (result != nullptr) *result = now;
    return now;
}

/// A write that the program is killed at has written half.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    static const auto next = Next<ssize_t (*)(int, const void*, std::size_t)>("write");
    const bool watched = state.world != nullptr && (state.world->disk_full || state.world->calls_to_live > 0);
    if (!watched || !IsStore(descriptor)) return next(descriptor, bytes, count);
    if (IsLastCall()) {
        next(descriptor, bytes, count / 2);
        Die();
    }
    if (!state.world->disk_full) return next(descriptor, bytes, count);
    ++state.world->refused_writes;
    errno = ENOSPC;
    return -1;
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int fsync(int descriptor) {
    static const auto next = Next<int (*)(int)>("fsync");
    if (IsStore(descriptor) && IsLastCall()) Die();
    return next(descriptor);
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int rename(const char* old_name, const char* new_name) noexcept {
    static const auto next = Next<int (*)(const char*, const char*)>("rename");
    const bool saves = std::string_view(old_name).ends_with(kNewStore);
    if (saves && IsLastCall()) Die();
    const int result = next(old_name, new_name);
    if (saves && result == 0) state.frame.marks |= longrun::kSaved;
    if (saves && IsLastCall()) Die();
    return result;
}

void* alcOpenDevice(const char* name) {
    static const auto next = Next<void* (*)(const char*)>("alcOpenDevice");
    if (state.world == nullptr) return next(name);
    ++(state.world->device_gone ? state.world->refused_devices : state.world->opened_devices);
    return state.world->device_gone ? nullptr : next(name);
}

void alcGetIntegerv(void* device, int what, int count, int* values) {
    constexpr int kConnected = 0x313;  // ALC_CONNECTED
    static const auto next = Next<void (*)(void*, int, int, int*)>("alcGetIntegerv");
    next(device, what, count, values);
    if (what == kConnected && state.world != nullptr && state.world->device_gone) *values = 0;
}

void alSourcePlay(unsigned int source) {
    static const auto next = Next<void (*)(unsigned int)>("alSourcePlay");
    next(source);
    static const auto context = Next<void* (*)()>("alcGetCurrentContext");
    if (state.world != nullptr && context() != nullptr) ++state.world->sounds;
}

void glBindTexture(unsigned int target, unsigned int texture) {
    static const auto next = Next<void (*)(unsigned int, unsigned int)>("glBindTexture");
    state.bound = texture;
    if (texture < kMostTextures) state.frame.marks |= state.says[texture];
    next(target, texture);
}

void glTexImage2D(unsigned int target, int level, int internal_format, int width, int height, int border,
                  unsigned int format, unsigned int type, const void* pixels) {
    static const auto next =
        Next<void (*)(unsigned int, int, int, int, int, int, unsigned int, unsigned int, const void*)>(
            "glTexImage2D");
    if (state.bound < kMostTextures) state.says[state.bound] = state.opened;
    next(target, level, internal_format, width, height, border, format, type, pixels);
}

/// Ends the frame's record with the clock that its timers went by: the probe, which moves the clock, calls
/// this before it does.
void glFinish() {
    static const auto next = Next<void (*)()>("glFinish");
    next();
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    state.frame.clock = std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
    constexpr unsigned int kViewport = 0x0BA2;  // GL_VIEWPORT
    int viewport[4] = {};
    glGetIntegerv(kViewport, viewport);
    state.frame.width = static_cast<std::uint16_t>(viewport[2]);
    state.frame.height = static_cast<std::uint16_t>(viewport[3]);
    if (write(state.out, &state.frame, sizeof state.frame) != sizeof state.frame) std::abort();
    state.frame.marks = 0;
}

}  // extern "C"
