// What all strips of daily options have in common: which days they price and how these are averaged.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/calendar.h"
#include "numerics/elementary.h"
#include "numerics/gauss_legendre.h"
#include "numerics/legendre_series.h"

namespace kestran {

/// How many days from B to E (in days from today) are still to come, today's among them.
inline double strip_days_ahead(int B, int E) {
  const double first = B < 0 ? 0.0 : B;
  return E < B || E < 0 ? 0.0 : E - first + 1.0;
}

/// The sums over days of value and of years to the day times value.
struct DaySums {
  double value = 0.0;
  double timed = 0.0;

  void add(double t, double V) {
    value += V;
    timed += t * V;
  }
};

/// Adds value(t, D) of the days first, first + 1 .. last from now on, t being the years to the day and D its
/// discount factor at the rate r. A day before now counts as now.
template <class Value>
void add_days(double first, double last, double r, const Value& value, DaySums& sums) {
  for (double day = first; day <= last; day += 1.0) {
    const double t = positive_part(day) * one_day;
    sums.add(t, value(t, exponential(-r * t)));
  }
}

/// The same for options whose deviation grows with the root of the time since day `origin`, within 1e-9 of
/// the price on the average of many days. value(t, 1) is worked out at the nodes of a Gauss-Legendre rule in
/// the fourth root of that time, since most happens soon after the origin, and a polynomial through them
/// gives the days. Few days, and those less than one after the origin, are worked out as they are. The choice
/// of nodes depends on days alone: sums of inputs that differ a little differ smoothly.
template <class Value>
void add_smooth_days(double first, double last, double origin, double r, const Value& value, DaySums& sums) {
  double start = first;
  while (start <= last && start < origin + 1.0) start += 1.0;
  add_days(first, start - 1.0, r, value, sums);
  const double ratio = (last - origin) / (start - origin);
  const QuadratureRule rule = gauss_legendre(ratio <= 64.0 ? 18 : ratio <= 400.0 ? 24 : 55);
  if (last - start < rule.size) return add_days(start, last, r, value, sums);

  const auto fourth_root = [&](double day) { return std::sqrt(std::sqrt(day - origin)); };
  const double centre = (fourth_root(last) + fourth_root(start)) / 2.0;
  const double half = (fourth_root(last) - fourth_root(start)) / 2.0;
  double values[legendre_most_terms];
  for (int i = 0; i < rule.size; ++i) {
    const double root = centre + half * rule.nodes[i].x;
    values[i] = value((origin + root * root * root * root) * one_day, 1.0);
  }
  const LegendreSeries series = legendre_series(rule, values);
  for (double day = start; day <= last; day += 1.0) {
    const double t = day * one_day;
    sums.add(t, exponential(-r * t) * legendre_sum(series, (fourth_root(day) - centre) / half));
  }
}

/// The same for options whose strike is set `set_days` from now: smooth up to that day and from it on.
template <class Value>
void add_days_around_setting(double first, double last, double set_days, double r, const Value& value,
                             DaySums& sums) {
  const double before = std::min(last, std::floor(set_days));
  add_smooth_days(first, before, 0.0, r, value, sums);
  add_smooth_days(std::max(first, before + 1.0), last, set_days, r, value, sums);
}

/// The mean over the days from B to E of their values in out[0], and that of years to the day times value in
/// out[1], both after the clock has moved on by `age` days: add(first, last, sums) adds the days that lie
/// ahead, counted from the moved clock. Past days count in the mean with nothing, for their options are
/// settled; a strip that is over or has no days is worth 0. With more than `most_days` to come both are not a
/// number.
template <class Add>
void average_over_days(int B, int E, int age, double most_days, const Add& add, double out[2]) {
  const double ahead = strip_days_ahead(B, E);
  DaySums sums;
  if (ahead > most_days) {
    sums.value = sums.timed = std::numeric_limits<double>::quiet_NaN();
  } else if (ahead > 0.0) {
    const double first = B < 0 ? 0.0 : B;
    add(first - age, static_cast<double>(E) - age, sums);
    const double n = static_cast<double>(E) - B + 1.0;
    sums.value /= n;
    sums.timed /= n;
  }
  out[0] = sums.value;
  out[1] = sums.timed;
}

}  // namespace kestran
