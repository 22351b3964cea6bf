// The results that both models of American options work out by pricing again.
#pragma once

#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "models/repricings.h"

namespace kestran {

/// What moves from one repricing of an American option to the next.
struct AmericanTerms {
  double T, r, q, sigma;
};
template <class Value>
using AmericanRepricings = Repricings<AmericanTerms, Value, 6>;

/// One result of an American option with T years to expiry, rate r, yield q and volatility sigma (per year,
/// above 0): value(T, r, q, sigma) gives its price, delta and gamma. result is a EuropeanResult; rates move
/// by rate_step, the volatility by bump, time by day_step.
template <class Value>
double american_result(const Value& value, double T, double r, double q, double sigma,
                       EuropeanResult result) {
  const auto base = value(T, r, q, sigma);
  const double h = rate_step(r);
  const double day = day_step(T);
  switch (result) {
    case EuropeanResult::premium:
      return base.price;
    case EuropeanResult::delta:
      return base.delta;
    case EuropeanResult::gamma:
      return base.gamma;
    case EuropeanResult::vega:
      return (value(T, r, q, bump_up * sigma).price - base.price) / (bump * sigma);
    case EuropeanResult::carry_rho:
      return (value(T, r + h, q + h, sigma).price - base.price) / h;
    case EuropeanResult::theta:
      return (value(T - day, r, q, sigma).price - base.price) / day;
    case EuropeanResult::rho:
      return (value(T, r + h, q, sigma).price - base.price) / h;
    case EuropeanResult::delta_by_volatility:
      return (value(T, r, q, bump_up * sigma).delta - base.delta) / (bump * sigma);
    case EuropeanResult::delta_by_time:
      return (value(T - day, r, q, sigma).delta - base.delta) / day;
    default:
      return 99.0;
  }
}

}  // namespace kestran
