// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/open_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

OpenFile::~OpenFile() {
    Close();
}

int OpenFile::Open(const std::string& path, int flags, mode_t mode) {
    Close();
    return ErrorOf([&] { return descriptor_ = open(path.c_str(), flags | O_CLOEXEC, mode); });
}

int OpenFile::Close() {
    const int descriptor = std::exchange(descriptor_, -1);
    if (descriptor < 0) return 0;
    if (close(descriptor) == 0) return 0;
    return errno == EINTR ? 0 : errno;  // never repeated: the descriptor is free even after an error
}

int OpenFile::Status(struct stat& status) const {
    return ErrorOf([&] { return fstat(descriptor_, &status); });
}

ReadResult OpenFile::Read(void* buffer, std::int64_t bytes) const {
    ReadResult result;
    while (result.bytes < bytes) {
        char* rest = static_cast<char*>(buffer) + result.bytes;
        ssize_t n = 0;
        result.error = ErrorOf(
            [&] { return n = read(descriptor_, rest, static_cast<std::size_t>(bytes - result.bytes)); });
        if (result.error != 0 || n == 0) break;
        result.bytes += n;
    }
    return result;
}

int OpenFile::Write(const void* data, std::size_t bytes) const {
    std::size_t written = 0;
    while (written < bytes) {
        const char* rest = static_cast<const char*>(data) + written;
        ssize_t n = 0;
        const int error = ErrorOf([&] { return n = write(descriptor_, rest, bytes - written); });
        if (error != 0) return error;
        written += static_cast<std::size_t>(n);
    }
    return 0;
}

int OpenFile::Flush() const {
    return ErrorOf([&] { return fsync(descriptor_); });
}
