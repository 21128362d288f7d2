// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A temporary folder for a test: links to files, files with given bytes, named pipes.
#pragma once

#include <string>

namespace desktop {

/// A folder of its own under the temporary folder; it goes with the object.
class Folder {
  public:
    /// Makes an empty folder.
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    /// Returns the path of the folder, or of a file in it.
    const std::string& Path() const { return path_; }
    std::string Path(const std::string& file) const { return path_ + "/" + file; }

    /// Links every file of another folder into this one.
    void LinkAll(const std::string& other) const;

    /// Removes a file or link.
    void Remove(const std::string& file) const;

    /// Puts a named pipe in the place of whatever had the name.
    void MakePipe(const std::string& file) const;

    /// Puts a file with these bytes in the place of whatever had the name.
    void Write(const std::string& file, const std::string& bytes) const;

    /// Returns a file's bytes; empty where there is none.
    std::string Read(const std::string& file) const;

  private:
    std::string path_;
};

}  // namespace desktop
