// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A part of the program in builds that measure coverage, and of no other: writes the counters when a test
// ends the program by SIGTERM.
#include <unistd.h>

#include <csignal>

extern "C" void __gcov_dump();  // NOLINT(bugprone-reserved-identifier): its name in the compiler's library

namespace {

void DumpAndEnd(int /*signal*/) {
    __gcov_dump();
    _exit(128 + SIGTERM);
}

__attribute__((constructor)) void Listen() {
    std::signal(SIGTERM, DumpAndEnd);
}

}  // namespace
