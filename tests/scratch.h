// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Where tests make their folders: in memory where that can be, because a flush waits for nothing there,
// however busy the disk is. What a real disk does is tested in tests/store alone.
#pragma once

#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>

/// Returns the folder below which a test makes its own: that of the environment variable ULMARO_SCRATCH or
/// the file system in memory, if it can be written and has space to spare; else the usual temporary folder.
inline std::filesystem::path ScratchRoot() {
    constexpr std::uint64_t kSpareBytes = 256ULL << 20U;  // all tests at once take less than a tenth of it
    const char* own = std::getenv("ULMARO_SCRATCH");
    const char* root = own != nullptr ? own : "/dev/shm";
    struct statvfs space {};
    const bool spacious = statvfs(root, &space) == 0 &&
                          static_cast<std::uint64_t>(space.f_bavail) * space.f_frsize >= kSpareBytes;
    return spacious && access(root, W_OK) == 0 ? std::filesystem::path(root)
                                               : std::filesystem::temp_directory_path();
}
