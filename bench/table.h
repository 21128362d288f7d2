// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The table that the benchmarks print: one line a measurement. Its columns stand at least two blanks apart,
// so that a script can take them apart: what, measured, compared with, ratio, limit, verdict.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace bench {

/// Returns the middle value; of an even number of values the upper of the two. There must be one.
inline double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Prints a line of columns as they are.
inline void PrintColumns(const std::string& what, const std::string& measured, const std::string& compared,
                         const std::string& ratio, const std::string& limit, const char* verdict) {
    std::printf("%-56s  %13s  %13s  %7s  %7s  %s\n", what.c_str(), measured.c_str(), compared.c_str(),
                ratio.c_str(), limit.c_str(), verdict);
    std::fflush(stdout);
}

/// Returns a number with so many digits behind the point, and its unit.
inline std::string Number(double value, int digits, const std::string& unit = "") {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return unit.empty() ? text : text + (" " + unit);
}

/// Prints a measurement: what is measured and what it is compared with, in the unit, the ratio (the median of
/// those of the pairs) and its limit. Returns whether the ratio is within it.
inline bool PrintRow(const std::string& what, double measured, double compared, double ratio, double limit,
                     const std::string& unit = "ms") {
    const bool good = ratio <= limit;
    PrintColumns(what, Number(measured, 3, unit), Number(compared, 3, unit), Number(ratio, 2),
                 Number(limit, 2), good ? "good" : "MISSED");
    return good;
}

/// Prints a number that has a limit of its own. Returns whether it is within it.
inline bool PrintCount(const std::string& what, double count, double limit) {
    const bool good = count <= limit;
    PrintColumns(what, Number(count, 2), "-", "-", Number(limit, 2), good ? "good" : "MISSED");
    return good;
}

/// Prints a measurement that must be the same as what it is compared with, but for a part such as 0.02.
/// Returns whether it is.
inline bool PrintSame(const std::string& what, double measured, double compared, double part,
                      const std::string& unit = "") {
    const double ratio = measured / compared;
    const bool good = std::fabs(ratio - 1) <= part;
    PrintColumns(what, Number(measured, 2, unit), Number(compared, 2, unit), Number(ratio, 3),
                 "1 +- " + Number(part, 2), good ? "good" : "MISSED");
    return good;
}

/// Prints a number that must lie between two others or be one of them. Returns whether it does.
inline bool PrintBetween(const std::string& what, double value, double least, double most) {
    const bool good = value >= least && value <= most;
    const std::string limit = least == most ? Number(most, 0) : Number(least, 0) + " to " + Number(most, 0);
    PrintColumns(what, Number(value, 2), "-", "-", limit, good ? "good" : "MISSED");
    return good;
}

/// Prints a number that is only recorded: it has no limit.
inline void PrintRecord(const std::string& what, double count, int digits = 0) {
    PrintColumns(what, Number(count, digits), "-", "-", "-", "recorded");
}

}  // namespace bench
