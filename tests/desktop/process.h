// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Child processes of the desktop tests: the X server, the window manager and the program itself.
//
// A Process never outlives the test: its destructor ends the child, and the kernel ends it where the test
// itself dies. Waiting is always for a condition and never longer than the given number of seconds.
#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// Stops the test with a message; GoogleTest reports it as a failure.
[[noreturn]] void Fail(const std::string& message);

/// Asks again and again until `condition` holds. Returns whether it did within `seconds`.
bool WaitUntil(const std::function<bool()>& condition, double seconds);

/// Returns seconds of a clock that never goes back.
double Now();

/// Sleeps for that many seconds.
void SleepSeconds(double seconds);

/// What a child starts with.
struct Command {
    std::vector<std::string> words;                  ///< program and arguments; the PATH is searched
    std::map<std::string, std::string> environment;  ///< added to the test's own environment
    std::string folder = ".";                        ///< working directory
    std::string error_file = "/dev/null";            ///< where standard output and standard error go
    int inherited_pipe = -1;                         ///< a descriptor that the child keeps open, or -1
};

/// A running child.
class Process {
  public:
    /// Starts the command; stops the test where no child can be made.
    explicit Process(const Command& command);

    /// Ends the child: politely first, by force after two seconds.
    ~Process();

    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Returns the child's process id.
    pid_t Id() const { return id_; }

    /// Returns whether the child still runs.
    bool Running();

    /// Waits for the child's end. Returns its exit status, 128 + the signal that ended it, or nothing after
    /// `seconds`.
    std::optional<int> WaitForEnd(double seconds);

    /// Returns the processor time that the child has used so far, seconds, all threads together.
    double ProcessorSeconds() const;

  private:
    pid_t id_ = -1;
    std::optional<int> status_;
};

}  // namespace desktop
