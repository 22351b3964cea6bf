// The payoff of an option on an average-price option, and its mean.
#pragma once

#include "models/asian/fixings_ahead.h"
#include "models/asian/fixings_before.h"

namespace kestran {

/// An option on an average-price option as it stands at its own expiry.
struct CompoundAsianPayoff {
  FixingsBefore before;    // fixings until expiry
  FixingsAhead ahead;      // fixings after it
  double S0 = 0.0;         // today's price, above 0
  double deviation = 0.0;  // of the price's logarithm until expiry
  double strike = 0.0;     // of the average-price option, on the sum of the fixings not made yet
  double discount = 0.0;   // from the average-price option's payment to expiry, over the fixings in all
  double X = 0.0;          // strike of the option on it
  bool is_call_on = true;  // call on the average-price option
  bool is_call = true;     // which is a call
};

/// What exercise is worth, positive or not, when the price is S and `strike` is left for the fixings ahead.
double exercise_margin(const CompoundAsianPayoff& payoff, double S, double strike);

/// Expected payoff, undiscounted, given that the variable which stands for the fixings before expiry lies z
/// deviations from its mean (see FixingsBefore): quadrature over the price at expiry, cut at the exercise
/// boundaries. Error against panels a quarter as wide, of 4000 options with volatilities of 2 to 200 % and
/// up to 700 days: half of them within 1e-16 of S0, 99 % within 2e-15, all within 1e-11. Not a number where
/// the deviation is 0 or above 25.
double mean_payoff(const CompoundAsianPayoff& payoff, double z);

}  // namespace kestran
