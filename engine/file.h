// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A C stream that closes itself, for the readers of files.
#pragma once

#include <cstdio>
#include <memory>

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open stream; null where the file could not be opened.
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a regular file to read its bytes, also through a link. Null for anything else, such as a named pipe,
/// which is never waited for.
File OpenRegularFile(const char* path);
