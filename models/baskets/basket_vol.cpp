#include "models/baskets/basket_vol.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "numerics/arrays.h"

namespace kestran {
namespace {

// Whether the n x n matrix rho equals its transpose, two rows and two columns at a time: a column read from
// top to bottom would fetch its cells one by one from all over the memory.
bool is_symmetric(const double* rho, std::ptrdiff_t n) {
  __m128d unequal = _mm_setzero_pd();
  for (std::ptrdiff_t i = 0; i + 1 < n; i += 2) {
    const double* const row = rho + i * n;
    for (std::ptrdiff_t j = 0; j <= i; j += 2) {
      const double* const column = rho + j * n + i;
      const __m128d upper = _mm_loadu_pd(column), lower = _mm_loadu_pd(column + n);
      const __m128d differs =
          _mm_or_pd(_mm_cmpneq_pd(_mm_loadu_pd(row + j), _mm_unpacklo_pd(upper, lower)),
                    _mm_cmpneq_pd(_mm_loadu_pd(row + n + j), _mm_unpackhi_pd(upper, lower)));
      unequal = _mm_or_pd(unequal, differs);
    }
  }
  bool equal = _mm_movemask_pd(unequal) == 0;
  if (n % 2 != 0)
    for (std::ptrdiff_t j = 0; j < n; ++j) equal = equal && rho[(n - 1) * n + j] == rho[j * n + n - 1];
  return equal;
}

}  // namespace

double basket_vol_moment_match(const double* F, const double* sigma, const double* mu, const double* w,
                               const double* rho, int n, double T) {
  // Small baskets need no memory from the heap.
  constexpr int few = 16;
  double few_grown[few];
  double* const allocated = n > few ? dvector(0, n - 1) : nullptr;
  double* const grown = n > few ? allocated : few_grown;
  if (n < 1 || !grown) return std::numeric_limits<double>::quiet_NaN();

  const auto correlation = [&](int i, int j) { return rho[static_cast<std::ptrdiff_t>(i) * n + j]; };
  const bool symmetric = is_symmetric(rho, n);
  double mean = 0.0;
  double variance = 0.0;
  for (int i = 0; i < n; ++i) {
    const double scale = T * sigma[i];
    const auto row_exponent = [&](int j) { return scale * sigma[j] * correlation(i, j); };
    const auto column_exponent = [&](int j) { return scale * sigma[j] * correlation(j, i); };
    const __m128d growth_and_own = exponential(_mm_set_pd(row_exponent(i), mu[i] * T));
    grown[i] = w[i] * F[i] * growth_and_own[0];

    const double row = exponential_sum(grown, i, row_exponent);
    const double column = symmetric ? row : exponential_sum(grown, i, column_exponent);

    // The excess over the squared mean is added up pair by pair: without volatility it is exactly 0.
    variance += grown[i] * ((row - mean) + (column - mean)) + grown[i] * grown[i] * (growth_and_own[1] - 1.0);
    mean += grown[i];
  }
  free_dvector(allocated, 0, n - 1);
  const double mean_squared = mean * mean;
  const __m128d logs = natural_log(_mm_set_pd(mean_squared, mean_squared + variance));
  return std::sqrt((logs[0] - logs[1]) / T);
}

}  // namespace kestran
