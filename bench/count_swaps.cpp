// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into a program that finds GL by itself, such as a replayer of traces: counts its frames in the
// record that the desktop tests' library uses too (tests/desktop/probe.h).
//
// Such a program asks the dynamic linker for each function of GL, so the answer for one of them is exchanged.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "tests/desktop/probe.h"

using desktop::Probe;

namespace {

using SwapBuffers = void (*)(void*, unsigned long);
using Lookup = void* (*)(void*, const char*);

SwapBuffers swap_buffers = nullptr;  ///< GL's own

Probe* MapRecord() {
    const char* path = std::getenv(desktop::kProbeVariable);
    if (path == nullptr) return nullptr;
    const int file = open(path, O_RDWR | O_CLOEXEC);
    if (file < 0) return nullptr;
    void* record = mmap(nullptr, sizeof(Probe), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return record == MAP_FAILED ? nullptr : static_cast<Probe*>(record);
}

void CountSwap(void* display, unsigned long drawable) {
    static Probe* const probe = MapRecord();
    swap_buffers(display, drawable);
    if (probe != nullptr) ++probe->frames;
}

/// Returns the linker's own dlsym, under the version that this C library has it.
Lookup RealLookup() {
    for (const char* version : {"GLIBC_2.34", "GLIBC_2.17", "GLIBC_2.2.5"}) {
        if (void* found = dlvsym(RTLD_NEXT, "dlsym", version)) return reinterpret_cast<Lookup>(found);
    }
    std::abort();
}

}  // namespace

// The parameters have other names than the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" void* dlsym(void* handle, const char* name) noexcept {
    static const Lookup lookup = RealLookup();
    void* found = lookup(handle, name);
    if (found == nullptr || std::strcmp(name, "glXSwapBuffers") != 0) return found;
    swap_buffers = reinterpret_cast<SwapBuffers>(found);
    return reinterpret_cast<void*>(CountSwap);
}
