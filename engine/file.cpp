// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/file.h"

#include <fcntl.h>
#include <unistd.h>

#include "engine/open_file.h"

File OpenRegularFile(const char* path) {
    OpenFile file;
    struct stat status {};
    if (file.Open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY) != 0) return nullptr;
    if (file.Status(status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
    const int descriptor = fcntl(file.Descriptor(), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0) return nullptr;
    File stream(fdopen(descriptor, "rb"));
    if (stream == nullptr) close(descriptor);
    return stream;
}
