// The kernel of exercise_at_nodes, compiled for two and for four lanes: sum_given_expiry, sum_option and
// exercise_margin with a price at expiry in each lane, in the same steps, so that each has their bits.
// Everything is expanded where it is used: what was compiled for AVX2 must not serve other files.
#pragma once

#include "models/asian/compound_asian_nodes.h"
#include "numerics/lanes.h"
#include "numerics/normal.h"

namespace kestran {

/// The sum of term(0) to term(count - 1) in the order of a loop over pairs of terms.
template <class Real, class Term>
[[gnu::always_inline]] inline Real sum_by_pairs(int count, const Term& term) {
  Real even{}, odd{};
  int k = 0;
  for (; k + 1 < count; k += 2) {
    even += term(k);
    odd += term(k + 1);
  }
  Real sum = even + odd;
  if (k < count) sum += term(k);
  return sum;
}

/// sum_given_expiry, x being what the price's logarithm moves by.
template <class Width>
[[gnu::always_inline]] inline typename Width::Real sums_given_expiry(const FixingsBefore& fixings,
                                                                     typename Width::Real x, double z) {
  using Real = typename Width::Real;
  constexpr int width = sizeof(Real) / sizeof(double);
  const int count = fixings.count;
  const double half_variance = fixings.variance / 2.0;
  double* const levels = fixings.level;
  double* const covariances = fixings.covariance;

  Real up_to{};  // of level times time
  for (int k = 0; k < count; ++k) {
    const double u = fixings.time[k];
    const Real level = exponential(u * (x + half_variance * (1.0 - u)));
    store(levels + k * width, level);
    up_to += level * u;
    store(covariances + k * width, (1.0 - u) * up_to);
  }
  Real after{};  // of level times 1 - time
  Real total{};
  for (int k = count - 1; k >= 0; --k) {
    const double u = fixings.time[k];
    const Real level = load<Width>(levels + k * width);
    const Real covariance = load<Width>(covariances + k * width) + u * after;
    store(covariances + k * width, covariance);
    total += level * covariance;
    after += level * (1.0 - u);
  }

  const Real scale = total > 0.0 ? square_root(fixings.variance / total) : Real{};
  return sum_by_pairs<Real>(
      count, [&](int k) __attribute__((always_inline)) {
        const Real loading = load<Width>(covariances + k * width) * scale;
        return load<Width>(levels + k * width) * exponential(loading * (z - loading * 0.5));
      });
}

/// The z at which each sum is expected at e^log_sum: as sum_option looks for it. Lanes that are not
/// `wanted` keep 0.
template <class Width, class Mask>
[[gnu::always_inline]] inline typename Width::Real sum_boundaries(const FixingsAhead& fixings,
                                                                  typename Width::Real log_sum, Mask wanted) {
  using Real = typename Width::Real;
  Real z = (log_sum - fixings.log_count + fixings.mean_half_square) / fixings.mean_loading;
  z = wanted ? z : Real{};
  Mask on = wanted;
  for (int i = 0; i < sum_boundary_steps; ++i) {
    Real even{}, odd{}, even_slope{}, odd_slope{};
    int k = 0;
    const auto add = [&](Real & value, Real & slope) __attribute__((always_inline)) {
      const double a = fixings.loading[k++];
      const Real term = exponential(a * (z - a * 0.5));
      value += term;
      slope += a * term;
    };
    while (k + 1 < fixings.count) {
      add(even, even_slope);
      add(odd, odd_slope);
    }
    Real sum = even + odd, slope = even_slope + odd_slope;
    if (k < fixings.count) add(sum, slope);
    const Real step = (natural_log(sum) - log_sum) * sum / slope;
    z = on ? z - step : z;
    on &= (absolute(step) > sum_boundary_close_enough) & ~(z < certain_sum_boundary);
    if (lanes_where(reinterpret_cast<const Real&>(on)) == 0) break;
  }
  return z;
}

/// sum_option at the price S in each lane.
template <class Width>
[[gnu::always_inline]] inline typename Width::Real sum_options(const FixingsAhead& fixings,
                                                               typename Width::Real S,
                                                               typename Width::Real strike, bool is_call) {
  using Real = typename Width::Real;
  const Real sum = static_cast<double>(fixings.count) * S;
  const Real on_expected_sum = is_call ? sum - strike : strike - sum;
  const auto conditional = ~(strike <= 0.0);
  Real value = on_expected_sum;
  if (fixings.count != 0 && fixings.deviation != 0.0 &&
      lanes_where(reinterpret_cast<const Real&>(conditional)) != 0) {
    const Real log_sum = natural_log(conditional ? strike / S : Real{} + 1.0);
    const Real z = sum_boundaries<Width>(fixings, log_sum, conditional);
    const double side = is_call ? 1.0 : -1.0;
    const Real exercised = sum_by_pairs<Real>(
        fixings.count, [&](int k) __attribute__((always_inline)) {
          return normal::cnorm_precise_inlined(side * (fixings.loading[k] - z));
        });
    const Real given_average = side * (S * exercised - strike * normal::cnorm_precise_inlined(-side * z));
    value = conditional ? given_average : value;
  }
  return value <= 0.0 ? Real{} : value;
}

/// exercise_at_nodes with the lanes of Width.
template <class Width>
[[gnu::always_inline]] inline void exercise_at_nodes_kernel(const CompoundAsianPayoff& payoff, double z,
                                                            const CompoundAsianNodes& nodes) {
  using Real = typename Width::Real;
  constexpr int width = sizeof(Real) / sizeof(double);
  static_assert(width <= most_payoff_lanes);
  for (int i = 0; i < nodes.count; i += width) {
    const Real y = load<Width>(nodes.y + i);
    const Real log_growth = payoff.deviation * (y - payoff.deviation / 2.0);
    const Real S = payoff.S0 * exponential(log_growth);
    const Real strike = payoff.strike - payoff.S0 * sums_given_expiry<Width>(payoff.before, log_growth, z);
    const Real value = payoff.discount * sum_options<Width>(payoff.ahead, S, strike, payoff.is_call);
    store(nodes.price + i, S);
    store(nodes.strike + i, strike);
    store(nodes.margin + i, payoff.is_call_on ? value - payoff.X : payoff.X - value);
    store(nodes.bell + i, exponential(-y * y / 2.0));
  }
}

}  // namespace kestran
