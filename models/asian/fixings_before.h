// Fixings that come before an option expires, given the price at its expiry.
#pragma once

namespace kestran {

/// Fixings of a driftless lognormal price between now and an expiry. Times are shares of the way there.
/// The arrays hold `count` numbers each; the last two are work space, with room for as many prices at expiry
/// as are worked on side by side.
struct FixingsBefore {
  int count = 0;
  double variance = 0.0;  // of the price's logarithm over the whole way
  double* time = nullptr;
  double* level = nullptr;
  double* covariance = nullptr;
};

/// Sum of the fixings over today's price that is expected given that the price's logarithm moves by x until
/// expiry and that the variable which stands for all fixings on the Brownian bridge lies z deviations from
/// its mean. The variable is the bridge's value at each fixing weighted with that fixing's expected level: it
/// carries the variance of the sum to first order. A fixing today or at expiry adds the known price, whatever
/// z.
double sum_given_expiry(const FixingsBefore& fixings, double x, double z);

}  // namespace kestran
