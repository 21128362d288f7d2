// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What failing_calls.h says, by standing before the C library.
#include "tests/store/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <new>
#include <string>

namespace {

bool watching = false;
bool full = false;
bool replaced = false;  ///< a rename has been done
int calls = 0;
std::string spoilt = "none";  ///< what SpoiltCall() returns
bool inside = false;          ///< this library is at work, whose memory is not spoilt
int allocations = 0;
int spoilt_allocation = 0;  ///< the number of the one that fails; 0 for none
std::string made;           ///< what CallsMade() returns
int locked_file = -1;       ///< of the other program, open

/// Returns the function that would have been called without this library.
template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// Returns the inode number of an open file, or 0.
ino_t InodeOf(int file) {
    struct stat status {};
    return Next<decltype(&fstat)>("fstat")(file, &status) == 0 ? status.st_ino : 0;
}

/// Returns the inode number of the file of that name, or 0.
ino_t InodeOf(const char* path) {
    struct stat status {};
    return Next<decltype(&lstat)>("lstat")(path, &status) == 0 ? status.st_ino : 0;
}

bool IsFolder(int file) {
    struct stat status {};
    return Next<decltype(&fstat)>("fstat")(file, &status) == 0 && S_ISDIR(status.st_mode);
}

/// Does what another program might do: puts half a file in the new file's place.
void Steal(bool locked) {
    constexpr char kNewFile[] = "database.bin.new";
    constexpr char kHalf[] = "half";
    Next<decltype(&unlink)>("unlink")(kNewFile);
    const int file = Next<int (*)(const char*, int, ...)>("open")(kNewFile, O_WRONLY | O_CREAT, 0600);
    const ssize_t written = Next<decltype(&write)>("write")(file, kHalf, sizeof kHalf - 1);
    if (written < 0) std::abort();
    if (locked && Next<decltype(&flock)>("flock")(file, LOCK_EX | LOCK_NB) == 0)
        locked_file = file;
    else
        Next<decltype(&close)>("close")(file);
}

/// Marks the time in which this library is at work.
struct Inside {
    Inside() { inside = true; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside() { inside = false; }
};

/// Counts a call of that name, about a file; returns in which way it is spoilt, empty for no way.
template <typename File>
std::string SpoiltWay(const char* name, const File& file) {
    if (!watching) return "";
    const Inside at_work;
    ++calls;
    made += std::string(name) + " " + std::to_string(InodeOf(file)) + "\n";
    const std::string wanted = Variable("ULMARO_SPOIL_CALL");
    const bool first_of_name = wanted == name && spoilt == "none";
    if (wanted != std::to_string(calls) && !first_of_name) return "";
    spoilt = replaced ? std::string("late ") + name : name;
    return Variable("ULMARO_SPOIL_WAY");
}

/// Returns the error of a way; 0 for ways without one.
int ErrorOf(const std::string& way) {
    if (way == "eio") return EIO;
    if (way == "enospc") return ENOSPC;
    if (way == "eintr") return EINTR;
    if (way == "emfile") return EMFILE;
    if (way == "eacces") return EACCES;
    return 0;
}

void Die() {
    kill(getpid(), SIGKILL);
}

/// Does a call about a file, or spoils it. `fails_done` is for calls that do their work even where they fail.
template <typename Result, typename File, typename Call>
Result Spoil(const char* name, const File& file, const Call& call, bool fails_done = false) {
    const std::string way = SpoiltWay(name, file);
    const int error = ErrorOf(way);
    if (way == "kill") Die();
    if (way.starts_with("steal")) Steal(way == "steal-locked");
    if (error != 0 && !fails_done) {
        errno = error;
        return -1;
    }
    const Result result = call();
    if (way == "kill-after") Die();
    if (error == 0) return result;
    errno = error;
    return -1;
}

}  // namespace

void WatchCalls() {
    allocations = 0;
    spoilt_allocation = std::atoi(Variable("ULMARO_SPOIL_MEMORY").c_str());
    watching = true;
    replaced = false;
    calls = 0;
    spoilt = "none";
    made.clear();
}

int ReleaseCalls() {
    watching = false;
    spoilt_allocation = 0;
    full = false;
    if (locked_file >= 0) close(locked_file);
    locked_file = -1;
    return calls;
}

int AllocationsMade() {
    return allocations;
}

void* operator new(std::size_t bytes) {
    const bool spoil = watching && !inside && ++allocations == spoilt_allocation;
    void* memory = spoil ? nullptr : std::malloc(bytes);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

const char* SpoiltCall() {
    return spoilt.c_str();
}

const char* CallsMade() {
    return made.c_str();
}

// The parameters have other names than the C library's.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Spoil<int>("open", path,
                      [&] { return Next<int (*)(const char*, int, ...)>("open")(path, flags, mode); });
}

ssize_t read(int file, void* buffer, size_t bytes) {
    return Spoil<ssize_t>("read", file, [&] { return Next<decltype(&read)>("read")(file, buffer, bytes); });
}

ssize_t write(int file, const void* buffer, size_t bytes) {
    static const auto next = Next<decltype(&write)>("write");
    if (file <= STDERR_FILENO) return next(file, buffer, bytes);
    const std::string way = SpoiltWay("write", file);
    const bool half = way == "short" || way == "full" || way == "kill-after";
    if (way == "kill") Die();
    if (way.starts_with("steal")) Steal(way == "steal-locked");
    if (full || ErrorOf(way) != 0) {
        errno = full ? ENOSPC : ErrorOf(way);
        return -1;
    }
    if (way == "full") full = true;
    const ssize_t result = next(file, buffer, half ? std::max<size_t>(bytes / 2, 1) : bytes);
    if (way == "kill-after") Die();
    return result;
}

int close(int file) {
    return Spoil<int>(
        "close", file, [&] { return Next<decltype(&close)>("close")(file); }, true);
}

int fsync(int file) {
    if (watching && !Variable("ULMARO_NO_FOLDER_FLUSH").empty() && IsFolder(file)) {
        SpoiltWay("no flush", file);
        errno = EINVAL;
        return -1;
    }
    return Spoil<int>("fsync", file, [&] { return Next<decltype(&fsync)>("fsync")(file); });
}

int flock(int file, int operation) noexcept {
    if (watching && !Variable("ULMARO_NO_LOCKS").empty()) {
        SpoiltWay("no lock", file);
        errno = ENOLCK;
        return -1;
    }
    return Spoil<int>("flock", file, [&] { return Next<decltype(&flock)>("flock")(file, operation); });
}

int fstat(int file, struct stat* status) noexcept {
    return Spoil<int>("fstat", file, [&] { return Next<decltype(&fstat)>("fstat")(file, status); });
}

int stat(const char* path, struct stat* status) noexcept {
    return Spoil<int>("stat", path,
                      [&] { return Next<int (*)(const char*, struct stat*)>("stat")(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
    return Spoil<int>("lstat", path, [&] { return Next<decltype(&lstat)>("lstat")(path, status); });
}

int fchmod(int file, mode_t mode) noexcept {
    return Spoil<int>("fchmod", file, [&] { return Next<decltype(&fchmod)>("fchmod")(file, mode); });
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
    return Spoil<int>("fchown", file, [&] { return Next<decltype(&fchown)>("fchown")(file, owner, group); });
}

int rename(const char* from, const char* to) noexcept {
    const int result =
        Spoil<int>("rename", from, [&] { return Next<decltype(&rename)>("rename")(from, to); });
    if (result == 0) replaced = true;
    return result;
}

int link(const char* from, const char* to) noexcept {
    if (watching && !Variable("ULMARO_NO_LINKS").empty()) {
        SpoiltWay("no link", from);
        errno = EPERM;
        return -1;
    }
    return Spoil<int>("link", from, [&] { return Next<decltype(&link)>("link")(from, to); });
}

int unlink(const char* path) noexcept {
    return Spoil<int>("unlink", path, [&] { return Next<decltype(&unlink)>("unlink")(path); });
}

ssize_t readlink(const char* path, char* buffer, size_t bytes) noexcept {
    return Spoil<ssize_t>("readlink", path,
                          [&] { return Next<decltype(&readlink)>("readlink")(path, buffer, bytes); });
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
