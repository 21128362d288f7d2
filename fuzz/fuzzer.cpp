// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The part that all fuzzers share. Besides libFuzzer's own options each knows
//
//   NAME_fuzzer --seeds FOLDER     writes the seeds into a folder, and ends
#include "fuzz/fuzzer.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fuzz {

namespace {

/// The two folders between which InOwnFolder goes to and fro, as open descriptors.
struct Folders {
    int outside = open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    int own = -1;

    Folders() {
        std::string path = (std::filesystem::temp_directory_path() / "ulmaro-fuzz-XXXXXX").string();
        if (mkdtemp(path.data()) != nullptr) own = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        Check(outside >= 0 && own >= 0, "there is a folder to work in");
    }
};

const Folders& TheFolders() {
    static const Folders folders;
    return folders;
}

void WriteSeeds(const std::string& folder) {
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const std::string& seed : Seeds()) {
        std::ofstream(folder + "/seed" + std::to_string(number++), std::ios::binary) << seed;
    }
}

}  // namespace

InOwnFolder::InOwnFolder() {
    Check(fchdir(TheFolders().own) == 0, "the own folder can be entered");
}

InOwnFolder::~InOwnFolder() {
    Check(fchdir(TheFolders().outside) == 0, "the own folder can be left");
}

void WriteFile(const char* name, const void* bytes, std::size_t size) {
    const int file = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    Check(file >= 0 && write(file, bytes, size) == static_cast<ssize_t>(size), "the input can be written");
    close(file);
}

std::string ReadFile(const char* name) {
    const int file = open(name, O_RDONLY | O_CLOEXEC);
    if (file < 0) return "";
    std::string bytes(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
    Check(pread(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
          "a file can be read back");
    close(file);
    return bytes;
}

void EndAsUsual(int status) {
    reinterpret_cast<void (*)(int)>(dlsym(RTLD_NEXT, "exit"))(status);
    std::abort();  // never reached
}

void Check(bool holds, const char* promise) {
    if (holds) return;
    std::fprintf(stderr, "Does not hold: %s\n", promise);
    std::abort();
}

}  // namespace fuzz

/// Called by libFuzzer before all else.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    if (*argc == 3 && std::string((*argv)[1]) == "--seeds") {
        fuzz::WriteSeeds((*argv)[2]);
        std::exit(0);
    }
    return 0;
}
