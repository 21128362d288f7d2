// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Stands in libFuzzer's place: tries a fuzzer's seeds, then every file of a folder, once.
//
//   NAME_replay FOLDER
//
// Ends with status 0 where every input was taken without harm, with 2 where there is none. An input that
// breaks a promise ends it by abort(), after its name.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "fuzz/fuzzer.h"
#include "tests/scratch.h"

namespace {

struct Input {
    std::string name;
    std::string bytes;
};

/// The name of the input that is being tried, for a handler of signals.
char trying[512];

extern "C" void SayWhichInput(int number) {
    const ssize_t said = write(STDERR_FILENO, trying, std::strlen(trying));
    std::signal(number, SIG_DFL);
    if (said >= 0) std::raise(number);
    _exit(3);
}

/// Returns the seeds, then the folder's files in the order of their names.
std::vector<Input> Inputs(const char* folder) {
    std::vector<Input> inputs;
    for (const std::string& seed : fuzz::Seeds()) {
        inputs.push_back({"seed " + std::to_string(inputs.size()), seed});
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        inputs.push_back(
            {file.filename(), {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()}});
    }
    return inputs;
}

void Try(const Input& input) {
    std::snprintf(trying, sizeof trying, "The input is %s.\n", input.name.c_str());
    // A buffer of its own and of exactly this length.
    const std::vector<std::uint8_t> bytes(input.bytes.begin(), input.bytes.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
        std::fprintf(stderr, "usage: NAME_replay FOLDER\n");
        return 2;
    }
    std::string own = ScratchRoot() / "ulmaro-replay-XXXXXX";
    if (mkdtemp(own.data()) == nullptr) return 2;
    setenv("TMPDIR", own.c_str(), 1);
    for (const int number : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL}) std::signal(number, SayWhichInput);

    const std::vector<Input> inputs = Inputs(argv[1]);
    for (const Input& input : inputs) Try(input);
    std::printf("%zu inputs, %zu of them seeds\n", inputs.size(), fuzz::Seeds().size());
    std::error_code ignored;
    std::filesystem::remove_all(own, ignored);
    return inputs.size() > fuzz::Seeds().size() ? 0 : 2;
}
