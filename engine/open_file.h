// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A file descriptor that closes itself, for what the C streams of file.h cannot do: open a name without
// blocking or without following a link, lock, flush to the disk, change permissions.
//
// Errors are values: a function that can fail returns 0, or the errno of the call that failed. `errno` itself
// is read in ErrorOf() and OpenFile::Close() alone.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>

/// Makes a system call, a function without arguments that gives a negative number where it fails. One that a
/// signal interrupts (EINTR) is repeated: so never close a file by it. Returns 0, or the errno of the
/// failure.
template <typename Call>
[[nodiscard]] int ErrorOf(const Call& call) {
    while (call() < 0) {
        if (errno != EINTR) return errno;
    }
    return 0;
}

/// What OpenFile::Read() has done.
struct ReadResult {
    std::int64_t bytes = 0;  ///< how many were read
    int error = 0;           ///< the errno that ended the reading; 0 at the end of the file or of the buffer
};

/// An open file, or none.
class OpenFile {
  public:
    OpenFile() = default;
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// Opens a file after closing the one before. `flags` are those of open(2), to which O_CLOEXEC is added;
    /// `mode` are the permissions of a file that this makes. Returns 0, or an errno; then no file is open.
    [[nodiscard]] int Open(const std::string& path, int flags, mode_t mode = 0);

    /// Closes the file, which unlocks it. Returns 0, also where none is open, or the errno of an error that
    /// was reported no sooner; the file is closed all the same.
    int Close();

    bool IsOpen() const { return descriptor_ >= 0; }
    int Descriptor() const { return descriptor_; }

    /// Finds out what is open: its kind, its length and so on. Returns 0, or an errno.
    [[nodiscard]] int Status(struct stat& status) const;

    /// Reads until so many bytes are read, the file ends or a call fails.
    ReadResult Read(void* buffer, std::int64_t bytes) const;

    /// Writes all bytes, or as many as it can before a call fails. Returns 0, or an errno.
    [[nodiscard]] int Write(const void* data, std::size_t bytes) const;

    /// Waits until all that was written is on the disk. Returns 0, or an errno.
    [[nodiscard]] int Flush() const;

  private:
    int descriptor_ = -1;
};
