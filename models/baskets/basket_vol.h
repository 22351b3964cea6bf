// Volatility of a weighted basket of forwards.
#pragma once

#include "numerics/elementary.h"

namespace kestran {

/// The sum of weight[j] e^exponent(j) for j = 0 .. count - 1, added in that order.
template <class Exponent>
double exponential_sum(const double* weight, int count, Exponent exponent) {
  double sum = 0.0;
  int j = 0;
  for (; j + 1 < count; j += 2) {
    double factor[2];
    _mm_storeu_pd(factor, exponential(_mm_set_pd(exponent(j + 1), exponent(j))));
    sum += weight[j] * factor[0];
    sum += weight[j + 1] * factor[1];
  }
  if (j < count) sum += weight[j] * exponential(exponent(j));
  return sum;
}

/// Volatility, per year, of the one lognormal variable that has the mean and the variance of a weighted
/// basket of lognormal forwards (matching of two moments, Levy 1992 for a sum of correlated lognormal
/// prices).
///
/// F forward prices, sigma volatilities (per year), mu drifts (per year) and w weights of the n assets; rho
/// their n x n correlations row after row, each `apart` doubles behind the last: both (i, j) and (j, i) are
/// read, and a matrix that is not symmetric counts with the mean of the two terms. T horizon in years.
///
/// Nothing is checked: T = 0, a basket worth nothing or moments without a real logarithm give infinity or not
/// a number, and so does n < 1. Without memory for a work array the result is not a number.
double basket_vol_moment_match(const double* F, const double* sigma, const double* mu, const double* w,
                               const double* rho, int n, double T, int apart = 1);

}  // namespace kestran
