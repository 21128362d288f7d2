// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What every fuzzer has besides LLVMFuzzerTestOneInput: a folder to work in, seeds to start from, and checks
// that end it.
//
// NAME_fuzzer.cpp defines the two functions below; fuzzer.cpp does the rest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Tries one input; called by libFuzzer millions of times. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Returns good and bad inputs to start from. Defined by each fuzzer.
std::vector<std::string> Seeds();

/// Enters the fuzzer's own folder for as long as it lives, since libFuzzer's paths are of the folder that it
/// was started in. The folder is under TMPDIR and empty at first.
class InOwnFolder {
  public:
    InOwnFolder();
    ~InOwnFolder();
    InOwnFolder(const InOwnFolder&) = delete;
    InOwnFolder& operator=(const InOwnFolder&) = delete;
};

/// Writes a file in the current folder; ends the fuzzer where that fails.
void WriteFile(const char* name, const void* bytes, std::size_t size);

/// Returns a file's bytes; empty where there is none.
std::string ReadFile(const char* name);

/// Ends the process as the C library's exit() does, for a fuzzer that has put one of its own before it.
[[noreturn]] void EndAsUsual(int status);

/// Ends the fuzzer, with the input as a finding, where a promise does not hold.
void Check(bool holds, const char* promise);

}  // namespace fuzz
