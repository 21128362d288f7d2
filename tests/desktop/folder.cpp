// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/folder.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/desktop/process.h"
#include "tests/scratch.h"

namespace desktop {

namespace files = std::filesystem;

// ---- Folder ----

Folder::Folder() : path_((ScratchRoot() / "ulmaro-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) Fail("cannot make " + path_);
}

Folder::~Folder() {
    std::error_code ignored;
    files::remove_all(path_, ignored);
}

void Folder::LinkAll(const std::string& other) const {
    for (const files::directory_entry& file : files::directory_iterator(other)) {
        files::create_symlink(files::absolute(file.path()), Path(file.path().filename().string()));
    }
}

void Folder::Remove(const std::string& file) const {
    files::remove(Path(file));
}

void Folder::MakePipe(const std::string& file) const {
    Remove(file);
    if (mkfifo(Path(file).c_str(), S_IRUSR | S_IWUSR) != 0) Fail("no pipe " + file);
}

void Folder::Write(const std::string& file, const std::string& bytes) const {
    Remove(file);  // else the bytes would go where the link points
    std::ofstream(Path(file), std::ios::binary) << bytes;
}

std::string Folder::Read(const std::string& file) const {
    std::ifstream in(Path(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace desktop
