// What all strips of daily options have in common: which days they price and how these are averaged.
#pragma once

#include <cmath>
#include <limits>

#include "models/calendar.h"
#include "numerics/elementary.h"

namespace kestran {

/// How many days from B to E (in days from today) are still to come, today's among them.
inline double strip_days_ahead(int B, int E) {
  const double first = B < 0 ? 0.0 : B;
  return E < B || E < 0 ? 0.0 : E - first + 1.0;
}

/// The mean over the days from B to E of value(t, D), t being the years to the day and D its discount factor
/// at the rate r, in out[0], and that of t value(t, D) in out[1], both after the clock has moved on by `age`
/// days. Past days count in the mean with nothing, for their options are settled; a strip that is over or has
/// no days is worth 0. With more than `most_days` to come both are not a number.
template <class Value>
void average_over_days(int B, int E, int age, double r, double most_days, const Value& value, double out[2]) {
  out[0] = out[1] = 0.0;
  const double ahead = strip_days_ahead(B, E);
  if (ahead > most_days) {
    out[0] = out[1] = std::numeric_limits<double>::quiet_NaN();
    return;
  }
  const double first = B < 0 ? 0.0 : B;
  for (double day = first; day <= E; day += 1.0) {
    const double t = positive_part(day - age) * one_day;
    const double V = value(t, exponential(-r * t));
    out[0] += V;
    out[1] += t * V;
  }
  const double n = static_cast<double>(E) - B + 1.0;
  if (ahead > 0.0) {
    out[0] /= n;
    out[1] /= n;
  }
}

}  // namespace kestran
