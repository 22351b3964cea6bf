// The kernel of spread_sums, compiled for two and for four lanes.
#pragma once

#include "models/exotics/spread_sums.h"
#include "numerics/normal.h"

namespace kestran {

/// The nodes go through exponentials, logarithms and normal distributions in a loop each: in a single one the
/// processor would wait for one after the other, node by node.
template <class Width>
[[gnu::always_inline]] inline SpreadSums spread_sums_kernel(const SpreadIntegrand& c,
                                                            const SpreadNodes& nodes) {
  using Real = typename Width::Real;
  constexpr int width = sizeof(Real) / sizeof(double);
  constexpr int groups = spread_slots / width;
  Real density[groups], growth[groups], given_growth[groups], d1[groups];

  for (int i = 0; i < groups; ++i) {
    const Real z = load<Width>(nodes.z + i * width);
    density[i] = load<Width>(nodes.weight + i * width) * exponential(-z * z / 2.0);
    growth[i] = exponential(c.m * (z - c.m / 2.0));
    given_growth[i] = exponential(c.v * (z - c.v / 2.0));
  }
  const double per_deviation = 1.0 / c.s;
  for (int i = 0; i < groups; ++i) {
    const Real z = load<Width>(nodes.z + i * width);
    const Real strike = c.given * given_growth[i] + c.strike;
    // Nothing or less to pay is certain exercise, which d1 = infinity gives.
    const Real log_strike = natural_log(strike > 0.0 ? strike : Real{});
    d1[i] = (c.log_optioned + c.m * (z - c.m / 2.0) - log_strike) * per_deviation + c.s / 2.0;
  }
  __m128d value = _mm_setzero_pd(), in_optioned = value, in_given = value;
  for (int i = 0; i < groups; ++i) {
    const Real strike = c.given * given_growth[i] + c.strike;
    const Real n1 = density[i] * normal::cnorm_inlined<Width>(c.sign * d1[i]);
    const Real n2 = density[i] * normal::cnorm_inlined<Width>(c.sign * (d1[i] - c.s));
    value = sum_of_pairs(value, c.optioned * growth[i] * n1 - strike * n2);
    in_optioned = sum_of_pairs(in_optioned, growth[i] * n1);
    in_given = sum_of_pairs(in_given, given_growth[i] * n2);
  }
  return {sum_of_lanes(value), sum_of_lanes(in_optioned), sum_of_lanes(in_given)};
}

}  // namespace kestran
