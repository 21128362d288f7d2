// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The part of the seam to the desktop that any POSIX system with xdg-open fills in: the clock and web pages.
#include <linux/close_range.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "app/desktop.h"

namespace {

std::uint64_t Nanoseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

/// Returns the text as one word of a shell command, whatever characters it has.
std::string ShellQuoted(const char* text) {
    std::string quoted = "'";
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c == '\'') quoted += "'\\'";
        quoted += *c;
    }
    return quoted + "'";
}

}  // namespace

std::uint64_t MonotonicNanoseconds() {
    return Nanoseconds(CLOCK_MONOTONIC);
}

std::uint64_t ProcessorNanoseconds() {
    return Nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
}

void OpenWebAddress(const char* address) {
    // The browser inherits nothing of ours: neither the window's connection nor a lock that we hold.
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    // In a session of its own, so that neither a terminal that is closed nor a signal to the owl's process
    // group ends the browser; without setsid (util-linux) it opens all the same. In the background, because a
    // browser that stays in the foreground must not freeze the owl.
    const std::string command =
        "session=; command -v setsid >/dev/null && session=setsid; $session xdg-open " +
        ShellQuoted(address) + " </dev/null >/dev/null 2>&1 &";
    [[maybe_unused]] const int status = std::system(command.c_str());  // no browser: nothing is shown
}
