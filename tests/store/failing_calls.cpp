// What failing_calls.h says, by standing before the C library.
#include "tests/store/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <string>

namespace {

bool watching = false;
bool full = false;
bool replaced = false;  ///< a rename has been done
int calls = 0;
const char* spoilt = "none";

/// Returns the function that would have been called without this library.
template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// Counts a call of that name; returns in which way it is spoilt, empty for no way.
std::string SpoiltWay(const char* name) {
    if (!watching) return "";
    ++calls;
    if (Variable("ULMARO_SPOIL_CALL") != std::to_string(calls)) return "";
    spoilt = replaced ? "late" : name;
    return Variable("ULMARO_SPOIL_WAY");
}

/// Returns the error of a way; 0 for ways without one.
int ErrorOf(const std::string& way) {
    if (way == "eio") return EIO;
    if (way == "enospc") return ENOSPC;
    if (way == "eintr") return EINTR;
    return 0;
}

void Die() {
    kill(getpid(), SIGKILL);
}

/// Does a call, or spoils it. `fails_done` is for calls that do their work even where they fail.
template <typename Result, typename Call>
Result Spoil(const char* name, const Call& call, bool fails_done = false) {
    const std::string way = SpoiltWay(name);
    const int error = ErrorOf(way);
    if (way == "kill") Die();
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
    watching = true;
    replaced = false;
    calls = 0;
    spoilt = "none";
}

int ReleaseCalls() {
    watching = false;
    full = false;
    return calls;
}

const char* SpoiltCall() {
    return spoilt;
}

// The parameters have other names than the C library's.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Spoil<int>("open",
                      [&] { return Next<int (*)(const char*, int, ...)>("open")(path, flags, mode); });
}

ssize_t read(int file, void* buffer, size_t bytes) {
    return Spoil<ssize_t>("read", [&] { return Next<decltype(&read)>("read")(file, buffer, bytes); });
}

ssize_t write(int file, const void* buffer, size_t bytes) {
    static const auto next = Next<decltype(&write)>("write");
    if (file <= STDERR_FILENO) return next(file, buffer, bytes);
    const std::string way = SpoiltWay("write");
    const bool half = way == "short" || way == "full" || way == "kill-after";
    if (way == "kill") Die();
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
        "close", [&] { return Next<decltype(&close)>("close")(file); }, true);
}

int fsync(int file) {
    return Spoil<int>("fsync", [&] { return Next<decltype(&fsync)>("fsync")(file); });
}

int fstat(int file, struct stat* status) noexcept {
    return Spoil<int>("fstat", [&] { return Next<decltype(&fstat)>("fstat")(file, status); });
}

int stat(const char* path, struct stat* status) noexcept {
    return Spoil<int>("stat", [&] { return Next<int (*)(const char*, struct stat*)>("stat")(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
    return Spoil<int>("lstat", [&] { return Next<decltype(&lstat)>("lstat")(path, status); });
}

int fchmod(int file, mode_t mode) noexcept {
    return Spoil<int>("fchmod", [&] { return Next<decltype(&fchmod)>("fchmod")(file, mode); });
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
    return Spoil<int>("fchown", [&] { return Next<decltype(&fchown)>("fchown")(file, owner, group); });
}

int rename(const char* from, const char* to) noexcept {
    const int result = Spoil<int>("rename", [&] { return Next<decltype(&rename)>("rename")(from, to); });
    if (result == 0) replaced = true;
    return result;
}

int link(const char* from, const char* to) noexcept {
    if (watching && !Variable("ULMARO_NO_LINKS").empty()) {
        ++calls;
        errno = EPERM;
        return -1;
    }
    return Spoil<int>("link", [&] { return Next<decltype(&link)>("link")(from, to); });
}

int unlink(const char* path) noexcept {
    return Spoil<int>("unlink", [&] { return Next<decltype(&unlink)>("unlink")(path); });
}

ssize_t readlink(const char* path, char* buffer, size_t bytes) noexcept {
    return Spoil<ssize_t>("readlink",
                          [&] { return Next<decltype(&readlink)>("readlink")(path, buffer, bytes); });
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
