// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Limits that tests put on their own process for a while, so that reading or writing files fails; and what it
// holds.
#pragma once

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iterator>

/// Gives new files all the permissions they ask for, while it exists.
class NoMask {
  public:
    NoMask() : before_(umask(0)) {}
    NoMask(const NoMask&) = delete;
    NoMask& operator=(const NoMask&) = delete;
    ~NoMask() { umask(before_); }

  private:
    mode_t before_;
};

/// Limits how long files may become, while it exists: writing more fails with EFBIG.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limited = before_;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

  private:
    rlimit before_{};
    void (*handler_)(int);
};

/// Lets no file be opened, while it exists: that fails with EMFILE.
class NoMoreFiles {
  public:
    NoMoreFiles() {
        getrlimit(RLIMIT_NOFILE, &before_);
        rlimit limited = before_;
        limited.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &limited);
    }
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;
    ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &before_); }

  private:
    rlimit before_{};
};

/// Takes root's rights away, while it exists: root may write into any folder.
class NotRoot {
  public:
    NotRoot() : was_root_(geteuid() == 0) {
        constexpr uid_t kNobody = 65534;
        if (was_root_) works_ = seteuid(kNobody) == 0;
    }
    NotRoot(const NotRoot&) = delete;
    NotRoot& operator=(const NotRoot&) = delete;
    ~NotRoot() {
        if (was_root_ && seteuid(0) != 0) std::abort();
    }

    bool Works() const { return works_; }

  private:
    bool was_root_;
    bool works_ = true;
};

/// Returns the permissions of a file, 0 where there is none.
inline mode_t ModeOf(const char* file) {
    struct stat status {};
    return stat(file, &status) == 0 ? status.st_mode & 07777U : 0;
}

/// Returns how many files this process has open.
inline std::ptrdiff_t OpenFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}
