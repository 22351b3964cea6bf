// The least volatility of the models, and the steps by which they difference a price.
#pragma once

#include "models/calendar.h"

namespace kestran {

/// Volatility (per year) that models take instead of one that is not above 0.
constexpr double least_volatility = 1e-5;

inline double floored_volatility(double sigma) { return sigma <= 0.0 ? least_volatility : sigma; }

/// Step in a price, a volatility or a rate, relative to it, and the factors of a step up and down.
constexpr double bump = 0.001;
constexpr double bump_up = 1.001;
constexpr double bump_down = 0.999;

/// Step in a rate r (per year): 0.1 % of it, but where |r| is below 0.0001, zero included, 0.0001, since a
/// smaller step would drown in rounding. Negative for a negative rate, so that it never crosses zero.
inline double rate_step(double r) {
  if (r >= 0.0 && r < 0.0001) return 0.0001;
  if (r < 0.0 && r > -0.0001) return -0.0001;
  return bump * r;
}

/// Step in the time T (years, above 0) to expiry: one day, but never past the middle of what is left.
inline double day_step(double T) { return T / 2.0 < one_day ? T / 2.0 : one_day; }

}  // namespace kestran
