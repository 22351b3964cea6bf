// The kernel of spread_sums, compiled for two and for four lanes.
#pragma once

#include "models/exotics/spread_sums.h"
#include "numerics/normal.h"

namespace kestran {

/// The nodes go through exponentials, logarithms and normal distributions in a loop each: in a single one the
/// processor would wait for one after the other, node by node. `ordinary` says that all of them have finite
/// values at arguments of a usual size, which is then not asked again.
template <class Width, bool ordinary>
[[gnu::always_inline]] inline SpreadSums spread_sums_kernel(const SpreadIntegrand c,
                                                            const SpreadNodes& nodes) {
  using Real = typename Width::Real;
  constexpr int width = sizeof(Real) / sizeof(double);
  constexpr int groups = spread_slots / width;
  Real density[groups], exponent[groups], growth[groups], given_growth[groups], strike[groups], d1[groups];

  const auto exponential_of = [](Real x) __attribute__((always_inline)) {
    if constexpr (ordinary)
      return elementary::exponential_in_range<Width>(x);
    else
      return exponential(x);
  };
  Real least_strike = Real{} + elementary::largest_finite;
  for (int i = 0; i < groups; ++i) {
    const Real z = load<Width>(nodes.z + i * width);
    density[i] = load<Width>(nodes.weight + i * width) * exponential_of(-z * z / 2.0);
    exponent[i] = c.m * (z - c.m / 2.0);
    growth[i] = exponential_of(exponent[i]);
    given_growth[i] = exponential_of(c.v * (z - c.v / 2.0));
    strike[i] = c.given * given_growth[i] + c.strike;
    least_strike = lesser(strike[i], least_strike);
  }
  const double per_deviation = 1.0 / c.s;
  const auto place = [&](int i, Real log_strike) __attribute__((always_inline)) {
    d1[i] = c.sign * ((c.log_optioned + exponent[i] - log_strike) * per_deviation + c.s / 2.0);
  };
  if (ordinary && lanes_where(least_strike < elementary::smallest_normal) == 0)
    for (int i = 0; i < groups; ++i) place(i, elementary::log_of_scaled(elementary::scaled(strike[i])));
  else  // nothing or less to pay is certain exercise, which d1 = infinity gives
    for (int i = 0; i < groups; ++i) place(i, natural_log(strike[i] > 0.0 ? strike[i] : Real{}));
  const double signed_s = c.sign * c.s;
  __m128d value = _mm_setzero_pd(), in_optioned = value, in_given = value;
  for (int i = 0; i < groups; ++i) {
    const Real n1 = density[i] * normal::cnorm_inlined<Width>(d1[i]);
    const Real n2 = density[i] * normal::cnorm_inlined<Width>(d1[i] - signed_s);
    value = sum_of_pairs(value, c.optioned * growth[i] * n1 - strike[i] * n2);
    in_optioned = sum_of_pairs(in_optioned, growth[i] * n1);
    in_given = sum_of_pairs(in_given, given_growth[i] * n2);
  }
  return {sum_of_lanes(value), sum_of_lanes(in_optioned), sum_of_lanes(in_given)};
}

}  // namespace kestran
