// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/out_of_memory.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

/// Returns whether the exception that nobody catches is a lack of memory.
bool MemoryIsLacking() {
    try {
        if (const std::exception_ptr exception = std::current_exception()) std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

/// Ends the program. Without what is registered for its end: this may stand in the middle of anything.
[[noreturn]] void End() {
    if (!MemoryIsLacking()) std::abort();
    std::fputs("Ulmaro Assistant: non c'e' abbastanza memoria.\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

void EndClearlyWithoutMemory() {
    std::set_terminate(End);
}
