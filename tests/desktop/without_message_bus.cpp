// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into the program: the library that speaks to message buses seems not to be installed.
#include <dlfcn.h>

#include <cstring>

// The parameters have other names than the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" void* dlopen(const char* file, int mode) noexcept {
    static const auto next = reinterpret_cast<decltype(&dlopen)>(dlsym(RTLD_NEXT, "dlopen"));
    if (file != nullptr && std::strstr(file, "libsystemd") != nullptr) return nullptr;
    return next(file, mode);
}
