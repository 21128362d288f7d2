// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Measuring two programs that draw frames by turns: while one is measured the other is stopped.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// What a frame takes, milliseconds.
struct Cost {
    double real, processor;
};

/// A running program that counts its frames. Stop() and Continue() may come in any order; it must run again
/// before it is ended.
struct Runner {
    pid_t process = -1;
    std::function<std::uint64_t()> frames;  ///< returns how many it has drawn so far

    void Stop() const;
    void Continue() const;

    /// Lets the program run for a slice of time and stops it. Returns what a frame took meanwhile.
    Cost FrameCost(double seconds) const;
};

/// Returns the processor time that all threads of a process have used so far, seconds to the nanosecond.
double ProcessorSeconds(pid_t process);

/// Returns the resident memory of a process, mebibytes.
double ResidentMebibytes(pid_t process);

/// The values of two programs, pair by pair.
class Series {
  public:
    void Add(double measured, double compared);

    /// Prints the medians and the median of the pairs' ratios; returns whether that is within the limit.
    bool Print(const std::string& what, double limit, const std::string& unit = "ms") const;

  private:
    std::vector<double> measured_, compared_, ratios_;
};

/// Measures two programs by turns and prints two lines, of real time and of processor time. Returns whether
/// both ratios are within the limit. Leaves both stopped.
bool CompareFrames(const std::string& what, const Runner& measured, const Runner& compared, int pairs,
                   double seconds, double limit);

/// Runs a comparison as a whole program: with the number of pairs that the first argument says, else
/// `pairs`. Returns the exit status: 0 where the comparison returns true, 1 where it does not, 2 after a line
/// on standard error where it cannot be made.
int RunComparison(int argc, char** argv, int pairs, const std::function<bool(int pairs)>& compare);

}  // namespace bench
