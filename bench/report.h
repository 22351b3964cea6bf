// What the passes measured, as tables and against limits.
#pragma once

#include <string>

namespace kestran::bench {

/// Prints the medians of the measurements in a file, lines of build, case, side and nanoseconds. The exit
/// status.
int print_report(const std::string& measurements);

/// Compares ratios of measurements with the limits of a file, whose lines are `at_least` or `at_most`, a
/// number, and numerator and denominator as BUILD:CASE:SIDE; # starts a remark. A ratio of which a part was
/// not measured is left out. Prints those beyond their limit; the exit status is 1 when there is one.
int check_limits(const std::string& measurements, const std::string& limits);

}  // namespace kestran::bench
