#include "numerics/normal.h"

#include <cmath>

#include "numerics/elementary.h"

namespace kestran {
namespace {

// 1 - N(x) for x >= 0, one value or two lanes.
template <class Real>
Real upper_tail(Real x) {
  const Real t = 1.0 / (1.0 + 0.2316419 * x);
  const Real polynomial =
      t * (0.31938153 + t * (-0.356563782 + t * (1.781477937 + t * (-1.821255978 + t * 1.330274429))));
  // The divisor is the published ten-digit root of 2 pi; results depend on it.
  return exponential(-x * x / 2.0) / 2.506628275 * polynomial;
}

}  // namespace

double cnorm(double x) {
  if (x < -25.0) return 0.0;
  if (x > 25.0) return 1.0;
  const double tail = upper_tail(std::fabs(x));
  return x >= 0.0 ? 1.0 - tail : tail;
}

__m128d cnorm(__m128d x) {
  const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
  const __m128d far_out = _mm_cmpgt_pd(magnitude, _mm_set1_pd(25.0));
  const __m128d tail = _mm_andnot_pd(far_out, upper_tail(magnitude));
  const __m128d upper = _mm_cmpge_pd(x, _mm_setzero_pd());
  return _mm_or_pd(_mm_and_pd(upper, 1.0 - tail), _mm_andnot_pd(upper, tail));
}

double ipow(double x, int n) {
  double product = 1.0;
  for (int i = 0; i < n; ++i) product *= x;
  return product;
}

double cnorm3_poly(double x) {
  const double t = 1.0 / (1.0 + 0.33267 * std::fabs(x));
  return 0.4361836 * t + -0.1201676 * ipow(t, 2) + 0.937298 * ipow(t, 3);
}

double cnorm3(double x, double polynomial) {
  if (x > 40.0) return 1.0;
  if (x < -40.0) return 0.0;
  // 2 pi to twelve digits: the constant of this approximation.
  const double density = exponential(-x * x / 2.0) * (1.0 / std::sqrt(6.28318530718));
  const double upper = 1.0 - density * polynomial;
  return x < 0.0 ? 1.0 - upper : upper;
}

}  // namespace kestran
