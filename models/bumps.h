// Sizes of the steps by which models difference a price in its rate and in time.
#pragma once

#include "models/calendar.h"

namespace kestran {

/// Step in a rate r (per year): 0.1 % of it, but where |r| is below 0.0001, zero included, 0.0001, since a
/// smaller step would drown in rounding. Negative for a negative rate, so that it never crosses zero.
inline double rate_step(double r) {
  if (r >= 0.0 && r < 0.0001) return 0.0001;
  if (r < 0.0 && r > -0.0001) return -0.0001;
  return 0.001 * r;
}

/// Step in the time T (years, above 0) to expiry: one day, but never past the middle of what is left.
inline double day_step(double T) { return T / 2.0 < one_day ? T / 2.0 : one_day; }

}  // namespace kestran
