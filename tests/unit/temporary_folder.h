// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A folder of its own for tests that read and write real files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "tests/scratch.h"

/// An empty temporary folder that is the current directory from its making to its end; afterwards it is gone.
class TemporaryFolder {
  public:
    TemporaryFolder() : came_from_(std::filesystem::current_path()) {
        std::string pattern = ScratchRoot() / "ulmaro-test-XXXXXX";
        path_ = mkdtemp(pattern.data());
        std::filesystem::current_path(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::filesystem::current_path(came_from_);
        std::filesystem::remove_all(path_);
    }

    const std::filesystem::path& Path() const { return path_; }

    /// Returns the names of everything in the folder.
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

  private:
    std::filesystem::path came_from_;
    std::filesystem::path path_;
};

/// Returns the bytes of a file; none if it cannot be read.
inline std::string ReadFile(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Writes a file.
inline void WriteFile(const std::string& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}
