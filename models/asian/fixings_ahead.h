// Options on the sum of evenly spaced fixings still to come.
#pragma once

namespace kestran {

/// Evenly spaced fixings of a driftless lognormal price. Given that the logarithm of their geometric average
/// lies z deviations from its mean, fixing k is expected at price times e^(loading z - loading^2 / 2).
struct FixingsAhead {
  int count = 0;
  const double* loading = nullptr;  // covariance with the average's logarithm over the average's deviation
  double deviation = 0.0;           // of the logarithm of the geometric average
  double log_count = 0.0;
  double mean_loading = 0.0;
  double mean_half_square = 0.0;  // of loading^2 / 2
};

/// Describes `count` fixings from the variances of the price's logarithm until the first (`before`) and from
/// each to the next (`step`). The loadings are written to `loading`, which must hold `count` of them and
/// outlive the result.
FixingsAhead fixings_ahead(int count, double before, double step, double* loading);

/// Expected payoff of an option on the sum of the fixings, undiscounted, at the price S: the payoff on the
/// sum that is expected given the geometric average, from the average on at which that sum is worth the
/// strike (Curran 1994, "Valuing Asian and portfolio options by conditioning on the geometric mean price",
/// Management Science 40, with the boundary solved for). A lower bound, at least the payoff on the expected
/// sum; what is already known can be part of the sum or come off the strike, the value is the same. A strike
/// of 0 or less: the payoff on the expected sum. S must be positive.
double sum_option(const FixingsAhead& fixings, double S, double strike, bool is_call);

/// How sum_option looks for the boundary: Newton steps at most, the last step's size, for the square of what
/// is left is what counts (the payoff is 0 at the boundary), and where exercise is certain.
constexpr int sum_boundary_steps = 50;
constexpr double sum_boundary_close_enough = 1e-4;
constexpr double certain_sum_boundary = -45.0;

}  // namespace kestran
