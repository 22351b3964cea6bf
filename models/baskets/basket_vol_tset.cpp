#include "models/baskets/basket_vol_tset.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/baskets/basket_vol.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

// `value` has room for the basket.
double moment_match(const FixingBasket& basket, double** C, double T, double* value) {
  const double* const sigma = basket.sigma;
  const double* const Tset = basket.Tset;
  double mean = 0.0;
  double variance = 0.0;
  for (int i = 0; i < basket.n; ++i) {
    value[i] = basket.F[i] * basket.w[i];
    const double own_time = std::min(Tset[i], T);
    const auto exponent = [&](int j) { return sigma[i] * sigma[j] * C[i][j] * std::min(Tset[j], own_time); };

    // The excess over the squared mean is added up pair by pair: without volatility it is exactly 0.
    variance += 2.0 * value[i] * (exponential_sum(value, i, exponent) - mean) +
                value[i] * value[i] * (exponential(exponent(i)) - 1.0);
    mean += value[i];
  }
  const double mean_squared = mean * mean;
  return std::sqrt(natural_log((mean_squared + variance) / mean_squared) / T);
}

}  // namespace

void unpack_lower_correl(const double* packed_correl, double** C, int n) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < i; ++j) C[i][j] = C[j][i] = *packed_correl++;
    C[i][i] = 1.0;
  }
}

double basket_vol_tset(const FixingBasket& basket, const double* packed_correl, double T, int RetType) {
  const int n = basket.n;
  double forward_value = 0.0;
  for (int i = 0; i < n; ++i) forward_value += basket.F[i] * basket.w[i];
  if (forward_value == 0.0 || T <= 0.0) return 0.0;
  if (RetType != 0) return forward_value;

  double result = std::numeric_limits<double>::quiet_NaN();
  double** C = dmatrix(0, n - 1, 0, n - 1);
  double* value = dvector(0, n - 1);
  if (C && value) {
    unpack_lower_correl(packed_correl, C, n);
    result = moment_match(basket, C, T, value);
  }
  free_dvector(value, 0, n - 1);
  free_dmatrix(C, 0, n - 1, 0, n - 1);
  return result;
}

}  // namespace kestran
