#include "models/baskets/basket_vol.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "numerics/arrays.h"

namespace kestran {

double basket_vol_moment_match(const double* F, const double* sigma, const double* mu, const double* w,
                               const double* rho, int n, double T) {
  double* grown = n < 1 ? nullptr : dvector(0, n - 1);
  if (!grown) return std::numeric_limits<double>::quiet_NaN();

  const auto correlation = [&](int i, int j) { return rho[static_cast<std::ptrdiff_t>(i) * n + j]; };
  double mean = 0.0;
  double variance = 0.0;
  for (int i = 0; i < n; ++i) {
    grown[i] = w[i] * F[i] * exponential(mu[i] * T);

    const double scale = T * sigma[i];
    const auto row_exponent = [&](int j) { return scale * sigma[j] * correlation(i, j); };
    const auto column_exponent = [&](int j) { return scale * sigma[j] * correlation(j, i); };
    bool symmetric = true;
    for (int j = 0; j < i; ++j) symmetric = symmetric && correlation(i, j) == correlation(j, i);
    const double row = exponential_sum(grown, i, row_exponent);
    const double column = symmetric ? row : exponential_sum(grown, i, column_exponent);

    // The excess over the squared mean is added up pair by pair: without volatility it is exactly 0.
    variance += grown[i] * ((row - mean) + (column - mean)) +
                grown[i] * grown[i] * (exponential(row_exponent(i)) - 1.0);
    mean += grown[i];
  }
  free_dvector(grown, 0, n - 1);
  const double mean_squared = mean * mean;
  return std::sqrt((natural_log(mean_squared + variance) - natural_log(mean_squared)) / T);
}

}  // namespace kestran
