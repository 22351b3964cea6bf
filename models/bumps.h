// Sizes of the steps by which models difference a price in its rate and in time.
#pragma once

namespace kestran {

/// Step in a rate r (per year): 0.1 % of it, or 0.0001 at a zero rate, where a relative step would vanish.
/// Negative for a negative rate.
inline double rate_step(double r) { return r == 0.0 ? 0.0001 : 0.001 * r; }

/// Step in the time T (years, above 0) to expiry: one day, but never past the middle of what is left.
inline double day_step(double T) {
  constexpr double day = 1.0 / 365.25;
  return T / 2.0 < day ? T / 2.0 : day;
}

}  // namespace kestran
