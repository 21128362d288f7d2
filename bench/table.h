// The table that the benchmarks print: one line a measurement, a ratio and its limit.
#pragma once

#include <algorithm>
#include <cstdio>
#include <vector>

namespace bench {

/// Returns the middle value; of an even number of values the upper of the two. There must be one.
inline double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Prints a measurement: milliseconds of what is measured and of what it is compared with, the ratio (the
/// median of those of the pairs) and its limit. Returns whether the ratio is within it.
inline bool PrintRow(const char* what, double milliseconds, double compared, double ratio, double limit) {
    const bool good = ratio <= limit;
    std::printf("%-52s %9.3f ms %9.3f ms %7.2f %7.2f  %s\n", what, milliseconds, compared, ratio, limit,
                good ? "good" : "MISSED");
    std::fflush(stdout);
    return good;
}

}  // namespace bench
