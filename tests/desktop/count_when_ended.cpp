// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A part of the program and of the unit tests in builds that measure coverage, and of no others: writes the
// counters also where the process ends by SIGTERM, as a test ends it, by abort() or by _Exit().
#include <unistd.h>

#include <csignal>

extern "C" void __gcov_dump();  // NOLINT(bugprone-reserved-identifier): its name in the compiler's library

// Stands before the C library's.
extern "C" [[noreturn]] void _Exit(int status) noexcept {  // NOLINT(bugprone-reserved-identifier)
    __gcov_dump();
    _exit(status);
}

namespace {

void DumpAndEnd(int /*signal*/) {
    __gcov_dump();
    _exit(128 + SIGTERM);
}

void DumpAndAbort(int /*signal*/) {
    __gcov_dump();  // abort() ends the process afterwards
}

__attribute__((constructor)) void Listen() {
    std::signal(SIGTERM, DumpAndEnd);
    std::signal(SIGABRT, DumpAndAbort);
}

}  // namespace
