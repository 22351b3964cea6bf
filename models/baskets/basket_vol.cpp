#include "models/baskets/basket_vol.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "numerics/arrays.h"

namespace kestran {
namespace {

// Whether the n x n matrix rho equals its transpose, two rows and two columns at a time and 16 columns after
// 16: a column read from top to bottom would fetch its cells one by one from all over the memory.
bool is_symmetric(const double* rho, std::ptrdiff_t n, std::ptrdiff_t apart) {
  const auto place = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return rho + (i * n + j) * apart; };
  const auto two = [&](const double* first) { return _mm_set_pd(first[apart], *first); };
  __m128d unequal = _mm_setzero_pd();
  for (std::ptrdiff_t left = 0; left + 1 < n; left += 16)
    for (std::ptrdiff_t i = left; i + 1 < n; i += 2)
      for (std::ptrdiff_t j = left; j <= i && j < left + 16; j += 2) {
        const __m128d upper = two(place(j, i)), lower = two(place(j + 1, i));
        const __m128d differs = _mm_or_pd(_mm_cmpneq_pd(two(place(i, j)), _mm_unpacklo_pd(upper, lower)),
                                          _mm_cmpneq_pd(two(place(i + 1, j)), _mm_unpackhi_pd(upper, lower)));
        unequal = _mm_or_pd(unequal, differs);
      }
  if (_mm_movemask_pd(unequal) != 0) return false;
  if (n % 2 != 0)
    for (std::ptrdiff_t j = 0; j < n; ++j)
      if (!(*place(n - 1, j) == *place(j, n - 1))) return false;
  return true;
}

}  // namespace

double basket_vol_moment_match(const double* F, const double* sigma, const double* mu, const double* w,
                               const double* rho, int n, double T, int apart) {
  // Small baskets need no memory from the heap.
  constexpr int few = 16;
  double few_grown[few];
  double* const allocated = n > few ? dvector(0, n - 1) : nullptr;
  double* const grown = n > few ? allocated : few_grown;
  if (n < 1 || !grown) return std::numeric_limits<double>::quiet_NaN();

  const auto correlation = [&](std::ptrdiff_t i, std::ptrdiff_t j) { return rho[(i * n + j) * apart]; };
  const bool symmetric = is_symmetric(rho, n, apart);
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
