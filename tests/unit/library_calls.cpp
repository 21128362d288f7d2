// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/unit/library_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace {

std::vector<FailingCall*> failing_calls;  // written by FailingCall
std::string stood_in_for, stand_in;       // written by StandIn
ZonesSet* zones_set = nullptr;            // written by ZonesSet

/// Returns the C library's own function.
template <typename Function>
Function Original(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// Counts a call; returns whether it is to fail, and sets errno then.
bool Fails(const char* name) {
    return std::ranges::any_of(failing_calls, [&](FailingCall* call) { return call->Takes(name); });
}

/// What a failing call returns: 0 where errno is.
int Failure() {
    return errno == 0 ? 0 : -1;
}

}  // namespace

FailingCall::FailingCall(std::string name, int error, int first, int times)
    : name_(std::move(name)), error_(error), first_(first), times_(times) {
    failing_calls.push_back(this);
}

FailingCall::~FailingCall() {
    std::erase(failing_calls, this);
}

bool FailingCall::Takes(const std::string& name) {
    if (name != name_) return false;
    ++calls_;
    if (calls_ < first_ || calls_ - first_ >= times_) return false;
    errno = error_;
    return true;
}

StandIn::StandIn(std::string path, std::string other) {
    stood_in_for = std::move(path);
    stand_in = std::move(other);
}

StandIn::~StandIn() {
    stood_in_for.clear();
}

ZonesSet::ZonesSet() {
    zones_set = this;
}

ZonesSet::~ZonesSet() {
    zones_set = nullptr;
}

void ZonesSet::Note() {
    const char* zone = std::getenv("TZ");
    names_.emplace_back(zone == nullptr ? "unset" : zone);
}

// The parameters have other names than the C library's.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

int close(int file) {
    static const auto original = Original<decltype(&close)>("close");
    const int result = original(file);
    return Fails("close") ? Failure() : result;
}

int fcntl(int file, int command, ...) {
    if (command == F_DUPFD_CLOEXEC && Fails("fcntl")) return Failure();
    va_list arguments;
    va_start(arguments, command);
    void* const argument =
        va_arg(arguments, void*);  // the kernel's functions take all of them in such a word
    va_end(arguments);
    static const auto original = Original<int (*)(int, int, ...)>("fcntl");
    return original(file, command, argument);
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
    if (Fails("fchown")) return Failure();
    static const auto original = Original<decltype(&fchown)>("fchown");
    return original(file, owner, group);
}

std::FILE* fdopen(int file, const char* mode) noexcept {
    if (Fails("fdopen")) return nullptr;
    static const auto original = Original<decltype(&fdopen)>("fdopen");
    return original(file, mode);
}

int flock(int file, int operation) noexcept {
    if (Fails("flock")) return Failure();
    static const auto original = Original<decltype(&flock)>("flock");
    return original(file, operation);
}

int fstat(int file, struct stat* status) noexcept {
    if (Fails("fstat")) return Failure();
    static const auto original = Original<int (*)(int, struct stat*)>("fstat");
    return original(file, status);
}

int stat(const char* path, struct stat* status) noexcept {
    static const auto original = Original<int (*)(const char*, struct stat*)>("stat");
    const bool other = !stood_in_for.empty() && path == stood_in_for;
    return original(other ? stand_in.c_str() : path, status);
}

int fsync(int file) {
    if (Fails("fsync")) return Failure();
    static const auto original = Original<decltype(&fsync)>("fsync");
    return original(file);
}

int link(const char* from, const char* to) noexcept {
    if (Fails("link")) return Failure();
    static const auto original = Original<decltype(&link)>("link");
    return original(from, to);
}

int lstat(const char* path, struct stat* status) noexcept {
    if (Fails("lstat")) return Failure();
    static const auto original = Original<decltype(&lstat)>("lstat");
    return original(path, status);
}

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (Fails("open")) return Failure();
    static const auto original = Original<int (*)(const char*, int, ...)>("open");
    return original(path, flags, mode);
}

int rename(const char* from, const char* to) noexcept {
    if (Fails("rename")) return Failure();
    static const auto original = Original<decltype(&rename)>("rename");
    return original(from, to);
}

int unlink(const char* path) noexcept {
    if (Fails("unlink")) return Failure();
    static const auto original = Original<decltype(&unlink)>("unlink");
    return original(path);
}

ssize_t read(int file, void* buffer, size_t bytes) {
    if (Fails("read")) return Failure();
    static const auto original = Original<decltype(&read)>("read");
    return original(file, buffer, bytes);
}

ssize_t write(int file, const void* buffer, size_t bytes) {
    if (Fails("write")) return Failure();
    static const auto original = Original<decltype(&write)>("write");
    return original(file, buffer, bytes);
}

void tzset() noexcept {
    if (zones_set != nullptr) zones_set->Note();
    static const auto original = Original<decltype(&tzset)>("tzset");
    original();
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
