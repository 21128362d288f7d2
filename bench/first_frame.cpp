// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "bench/first_frame.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/desktop/process.h"

namespace bench {

void EnterDesktop(const desktop::Desktop& desk) {
    for (const auto& [name, value] : desk.ClientEnvironment()) setenv(name.c_str(), value.c_str(), 1);
}

double FirstFrameMilliseconds(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const double start = desktop::Now();
    pid_t child = 0;
    setenv("LD_PRELOAD", ULMARO_EXIT_AT_FIRST_SWAP, 1);
    const int error = posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
    unsetenv("LD_PRELOAD");
    int status = 0;
    if (error != 0 || waitpid(child, &status, 0) != child || status != 0) {
        desktop::Fail(words[0] + " does not come to its first frame");
    }
    return 1000 * (desktop::Now() - start);
}

}  // namespace bench
