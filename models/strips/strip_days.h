// What all strips of daily options have in common: which days they price and how these are averaged.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/calendar.h"
#include "numerics/elementary.h"
#include "numerics/gauss_legendre.h"
#include "numerics/lanes.h"
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

/// The same for options whose deviation grows with the root of the time since day `origin`, where value is a
/// smooth function of time. value(t, 1) is worked out at the nodes of a Gauss-Legendre rule in the fourth
/// root of that time, since most happens soon after the origin, and a polynomial through them gives the days.
/// Few days are worked out as they are.
template <class Value>
void add_smooth_days(double first, double last, double origin, double r, const Value& value, DaySums& sums) {
  const double ratio = (last - origin) / (first - origin);
  const QuadratureRule rule = gauss_legendre(ratio <= 64.0 ? 18 : ratio <= 400.0 ? 24 : 55);
  if (last - first < rule.size) return add_days(first, last, r, value, sums);

  // Days go in pairs.
  const auto fourth_root = [&](__m128d days) { return square_root(square_root(days - origin)); };
  const __m128d ends = fourth_root(_mm_set_pd(last, first));
  const double centre = (ends[1] + ends[0]) / 2.0;
  const double half = (ends[1] - ends[0]) / 2.0;
  double values[legendre_most_terms];
  for (int i = 0; i < rule.size; ++i) {
    const double root = centre + half * rule.nodes[i].x;
    values[i] = value((origin + root * root * root * root) * one_day, 1.0);
  }
  const LegendreSeries series = legendre_series(rule, values);
  for (double day = first; day <= last; day += 2.0) {
    const __m128d days = _mm_set_pd(day + 1.0, day);
    const __m128d t = days * one_day;
    const __m128d V = exponential(-r * t) * legendre_sum(series, (fourth_root(days) - centre) / half);
    sums.add(t[0], V[0]);
    if (day < last) sums.add(t[1], V[1]);
  }
}

/// The last of the days from `first` to `last` up to which layout(t) stays as on the first, t being years to
/// the day: looked up on every 24th part of them, and between two that differ.
template <class Layout>
double last_day_alike(double first, double last, const Layout& layout) {
  const auto alike = [&, of_first = layout(first * one_day)](double day) {
    return layout(day * one_day) == of_first;
  };
  const double step = std::max(1.0, std::ceil((last - first) / 24.0));
  double same = first;
  double other = first;
  while (same < last && alike(other = std::min(same + step, last))) same = other;
  if (same >= last) return last;
  while (other - same > 1.0) {
    const double middle = same + std::floor((other - same) / 2.0);
    (alike(middle) ? same : other) = middle;
  }
  return same;
}

/// The first day from `first` on that comes a day or more after the origin.
inline double first_smooth_day(double first, double origin) {
  return std::max(first, first + std::ceil(origin + 1.0 - first));
}

/// add_smooth_days from one change of layout(t) to the next, value being smooth in between. Days less than
/// one after the origin are worked out as they are.
template <class Value, class Layout>
void add_days_by_layout(double first, double last, double origin, double r, const Value& value,
                        const Layout& layout, DaySums& sums) {
  double start = std::min(first_smooth_day(first, origin), std::max(first, last + 1.0));
  add_days(first, start - 1.0, r, value, sums);
  while (start <= last) {
    const double end = last_day_alike(start, last, layout);
    add_smooth_days(start, end, origin, r, value, sums);
    start = end + 1.0;
  }
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
