// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace desktop {

void Fail(const std::string& message) {
    throw std::runtime_error(message);
}

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void SleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

bool WaitUntil(const std::function<bool()>& condition, double seconds) {
    constexpr double kShortWait = 0.03;  // most waits are for a frame or two: they are asked about more often
    const double start = Now();
    while (!condition()) {
        const double waited = Now() - start;
        if (waited > seconds) return false;
        SleepSeconds(waited < kShortWait ? 0.001 : 0.005);
    }
    return true;
}

namespace {

/// Turns the forked child into the command; never returns.
[[noreturn]] void BecomeCommand(const Command& command) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int in = open("/dev/null", O_RDONLY);
    const int out = open(command.error_file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    if (command.inherited_pipe >= 0) fcntl(command.inherited_pipe, F_SETFD, 0);
    for (const auto& [name, value] : command.environment) setenv(name.c_str(), value.c_str(), 1);
    if (chdir(command.folder.c_str()) != 0) _exit(126);

    std::vector<char*> words;
    for (const std::string& word : command.words) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
}

}  // namespace

Process::Process(const Command& command) : id_(fork()) {
    if (id_ < 0) Fail("cannot start " + command.words[0]);
    if (id_ == 0) BecomeCommand(command);
}

Process::~Process() {
    if (!Running()) return;
    kill(id_, SIGTERM);
    if (WaitForEnd(2)) return;
    kill(id_, SIGKILL);
    WaitForEnd(2);
}

bool Process::Running() {
    if (status_) return false;
    int status = 0;
    if (waitpid(id_, &status, WNOHANG) != id_) return true;
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return false;
}

std::optional<int> Process::WaitForEnd(double seconds) {
    WaitUntil([this] { return !Running(); }, seconds);
    return status_;
}

double Process::ProcessorSeconds() const {
    std::ifstream in("/proc/" + std::to_string(id_) + "/stat");
    std::string line;
    std::getline(in, line);
    const std::size_t end_of_name = line.rfind(')');  // the name may hold blanks
    if (end_of_name == std::string::npos) return 0;
    std::istringstream words(line.substr(end_of_name + 1));
    std::string word;
    for (int i = 0; i < 11; ++i) words >> word;  // state up to cmajflt
    double user_ticks = 0;
    double system_ticks = 0;
    words >> user_ticks >> system_ticks;
    return (user_ticks + system_ticks) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

}  // namespace desktop
