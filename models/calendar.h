// The calendar of all models: years of equal length, counted in days.
#pragma once

namespace kestran {

constexpr double days_per_year = 365.25;

/// One day in years.
constexpr double one_day = 1.0 / days_per_year;

}  // namespace kestran
